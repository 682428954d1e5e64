// Runs the seeds of the fuzzers, the examples, and all that the fuzzers have found: no input may
// crash the tool or hold it up. The sanitizers see more, in a build that has them.
#include "fuzz/harness.h"
#include "tests/fixtures/testkit.h"

#include <QDirIterator>

#include <ctime>

class TestFuzzRegression : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { Fuzz::prepare(); }

    void inputs_data()
    {
        columns<QByteArray, QString>("target", "file");
        for (const QString folder : {FUZZ_FOLDER "/seeds", FUZZ_FOLDER "/findings"}) {
            QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
            while (files.hasNext()) {
                const QString file = files.next();
                const QString name = QDir(FUZZ_FOLDER).relativeFilePath(file);
                QTest::newRow(qPrintable(name)) << name.section('/', 1, 1).toUtf8() << file;
            }
        }
    }
    void inputs()
    {
        QFETCH(QByteArray, target);
        QFETCH(QString, file);
        const Fuzz::Target *found = Fuzz::findTarget(target);
        QVERIFY(found);
        const std::clock_t start = std::clock();
        found->run(readFile(file));
        const auto seconds = (std::clock() - start) / CLOCKS_PER_SEC;
        QVERIFY2(seconds < 10, qPrintable(QString::number(seconds)));
    }
};

QTEST_GUILESS_MAIN(TestFuzzRegression)
#include "tst_fuzzregression.moc"
