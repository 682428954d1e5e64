// Whole files, byte by byte: what no compiler sees in generated C, and documents. Each folder
// <case>/<dialect> is a row, and tells the expected files; the others of the run do not count.
// GOLDEN_UPDATE=1 rewrites them.
#include "generators/descriptions/edsgenerator.h"
#include "tests/fixtures/generatorrun.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"
#include "tests/stack/device.h"

#include <QRegularExpression>

class tst_Golden : public StoreTest
{
    Q_OBJECT

private slots:
    void files_data()
    {
        columns<QString>("folder");
        const QDir golden(TEST_GOLDEN);
        for (const QString &name : golden.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            for (const char *dialect : {"classic", "v4"}) {
                const QString folder = name + '/' + dialect;
                if (golden.exists(folder))
                    QTest::newRow(qPrintable(folder)) << golden.filePath(folder);
            }
        }
    }

    void files()
    {
        QFETCH(QString, folder);
        store = makeStore();
        buildProject(*store, QString::fromUtf8(readFile(folder + "/../project.txt")));
        if (folder.endsWith("/v4"))
            store->setGeneralSettingsValue("use_core_headers", "V4");
        for (const quint8 line : store->getNodes())
            store->cacheAllSubs(line, 0);
        QCOMPARE(runGenerators(*store, fixture.path(), "demo"), QString());
        for (const QString &name : QDir(folder).entryList({"*.expected"}, QDir::Files))
            compare(name.chopped(9), folder + '/' + name);
    }

private:
    void compare(const QString &name, const QString &expectedFile)
    {
        if (name.endsWith(".eds")) {
            const quint8 line = store->getNodes().last();
            EDSGenerator generator(EdsVariants(*store, line), QString(), false, false);
            (void)generateWith(generator, "demo", name, line, store->getNodes().size() > 1);
        }
        const QByteArray written = masked(fixture.path(name));
        if (qEnvironmentVariableIsSet("GOLDEN_UPDATE"))
            QVERIFY(writeFile(expectedFile, written));
        const QByteArray place =
            difference({QString::fromUtf8(written)}, {QString::fromUtf8(readFile(expectedFile))});
        QVERIFY2(place.isEmpty(), qPrintable(name) + QByteArray(": ") + place);
        QCOMPARE(written, readFile(expectedFile)); // ends of lines count as well
    }

    /// A file without the time at which it was made.
    static QByteArray masked(const QString &name)
    {
        static const QRegularExpression dateAndTime("\\w{3} \\w{3} +\\d+ [0-9:]{8} \\d{4}( GMT)?");
        static const QRegularExpression time("\\d\\d:\\d\\dPM");
        static const QRegularExpression date("\\d\\d-\\d\\d-\\d\\d\\b");
        QString text = QString::fromUtf8(readFile(name));
        return text.replace(dateAndTime, "(date)")
            .replace(time, "(time)PM")
            .replace(date, "(date)")
            .toUtf8();
    }
};

QTEST_GUILESS_MAIN(tst_Golden)
#include "tst_golden.moc"
