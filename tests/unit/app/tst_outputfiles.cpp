// The files of two runs: the same bytes where the date is given, and the same files where they are
// kept.
#include "tests/fixtures/toolfixture.h"

#include <QRegularExpression>

const QDateTime kLongAgo(QDate(2001, 2, 3), QTime(4, 5));

/// Two lines, one of them of both protocols, with CAN FD: all generators that tell a date.
const QByteArray kMixed = kUntyped +
                          "[GeneralSettings]\nline0type=5\nline1type=1\ncanfd_supported=1\n"
                          "co_node_id=\"1,2\"\n[Nodes]\n0\\name=a\n1\\name=b\n";

class tst_OutputFiles : public ToolTest
{
    Q_OBJECT

private slots:
    void init() { makeFolder(); }

    void tellsTheGivenMoment()
    {
        QVERIFY(write("pümp.tsrt", kMixed));
        environment.insert("SOURCE_DATE_EPOCH", "1000000000");
        environment.remove("QT_HASH_SEED");
        QMap<QString, QByteArray> first;
        for (const QString locale : {"C", "ar_EG.UTF-8", "de_DE.UTF-8"}) {
            environment.insert("LC_ALL", locale);
            environment.insert("TZ", locale == "C" ? "Asia/Tokyo" : "UTC");
            QVERIFY(run("-project pümp.tsrt -dbmod none").endsWith(" 0\n"));
            QMap<QString, QByteArray> contents;
            for (const QString &name : generated())
                contents.insert(name, read(name));
            if (first.isEmpty())
                first = contents;
            QCOMPARE(contents, first);
        }
        QVERIFY(first.size() > 10);
        const QString today = QLocale::c().toString(QDateTime::currentDateTime(), "yyyy");
        for (auto file = first.cbegin(); file != first.cend(); ++file)
            QVERIFY2(!file.value().contains(today.toUtf8()), qPrintable(file.key()));
        QVERIFY(first["gen_define.h"].contains("\n * Sun Sep 9 01:46:40 2001\n"));
        QVERIFY(first["pümp_1.eds"].contains("\nCreationTime=01:46PM\nCreationDate=09-09-01\n"));
    }

    void ignoresWhatIsNoMoment()
    {
        for (const QString value : {"", "x", "-1", "1e9", " 1", "0x10", "99999999999999999999"}) {
            environment.insert("SOURCE_DATE_EPOCH", value);
            QVERIFY(run("-project pümp.tsrt").endsWith(" 0\n"));
            const QString year = QString::number(QDate::currentDate().year());
            QVERIFY2(read("gen_define.h").contains(year.toUtf8()), qPrintable(value));
        }
    }

    void keepsUnchangedFiles_data()
    {
        columns<QByteArray, QByteArray>("project", "lineEnd");
        QTest::newRow("one_line") << kProject << QByteArray("0");
        QTest::newRow("written_twice_in_a_run") << kUntyped + "[GeneralSettings]\nline0type=5\n"
                                                << QByteArray("0");
        QTest::newRow("adjusted_line_ends") << kMixed << QByteArray("1");
        QTest::newRow("lines_without_line_feed") << kProject << QByteArray("3");
    }
    void keepsUnchangedFiles()
    {
        QFETCH(QByteArray, project);
        QFETCH(QByteArray, lineEnd);
        QVERIFY(write("pümp.tsrt", project));
        writeFile(QSettings("Korvel", "CANopen Tessarine").fileName(),
                  "[General]\nline_ending_index=" + lineEnd + '\n');
        environment.insert("SOURCE_DATE_EPOCH", "1000000000");
        QVERIFY(run("-project pümp.tsrt").endsWith(" 0\n"));
        environment.remove("SOURCE_DATE_EPOCH");
        QMap<QString, QByteArray> before;
        for (const QString &name : generated())
            before.insert(name, read(name));

        makeOld();
        const QByteArray report = run("-project pümp.tsrt -keep-unchanged");
        QVERIFY2(report.endsWith(" 0\n"), report);
        QCOMPARE(newFiles(), QString());
        for (auto file = before.cbegin(); file != before.cend(); ++file)
            QVERIFY2(read(file.key()) == file.value(), qPrintable(file.key()));

        // A change that one file tells, and none but its date.
        QVERIFY(write("mod.txt", "DescriptionSettings:FileVersion:77\n"));
        run("-project pümp.tsrt -keep-unchanged -dbmod mod.txt");
        QVERIFY2(newFiles().contains(".eds") && !newFiles().contains(".c"), qPrintable(newFiles()));
        QVERIFY(write("gen_indices.h", before["gen_indices.h"].replace("9 01", "8 01") + " "));
        makeOld();
        run("-project pümp.tsrt -keep-unchanged -dbmod mod.txt");
        QCOMPARE(newFiles(), "gen_indices.h");

        run("-project pümp.tsrt");
        for (const QString &name : before.keys())
            QVERIFY2(newFiles().contains(name), qPrintable(name));
    }

private:
    QStringList generated() const
    {
        QStringList names = files();
        for (const char *name : {"pümp.tsrt", "__tsrerrorlog.txt.bak", "mod.txt"})
            names.removeOne(name);
        return names;
    }

    void makeOld()
    {
        for (const QString &name : generated()) {
            QFile file(folder + '/' + name);
            QVERIFY(file.open(QIODevice::ReadWrite) &&
                    file.setFileTime(kLongAgo, QFileDevice::FileModificationTime));
        }
    }

    QString newFiles() const
    {
        QStringList names;
        for (const QString &name : generated()) {
            if (QFileInfo(folder + '/' + name).lastModified() != kLongAgo)
                names << name;
        }
        return names.join(' ');
    }
};

QTEST_GUILESS_MAIN(tst_OutputFiles)
#include "tst_outputfiles.moc"
