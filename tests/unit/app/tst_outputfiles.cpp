// The files of two runs: the same bytes where the date is given, and the same files where they are
// kept.
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/toolfixture.h"

#include <QRegularExpression>

const QDateTime kLongAgo(QDate(2001, 2, 3), QTime(4, 5));

class tst_OutputFiles : public ToolTest
{
    Q_OBJECT

private slots:
    void init()
    {
        makeFolder();
        QVERIFY(write("fd.tsrt", kProject +
                                     "canfd_supported=1\n[MiscSettings]\ndescription_form="
                                     "portable\n[Objects0]\n0x1000\\objecttype=8\n[SubObjects0]\n"
                                     "0x1000\\0x0\\datatype=5\n0x1000\\0x0\\name=n\n"
                                     "0x1000\\0x0\\accesstype=const\n0x1000\\0x0\\defaultvalue=1\n"
                                     "0x1000\\0x0\\implementation=1\n0x1000\\0x0\\defaultineds=1\n"
                                     "0x1000\\0x0\\writedefaulttoeds=1\n0x1000\\0x1\\name=t\n"
                                     "0x1000\\0x1\\datatype=7\n0x1000\\0x1\\accesstype=const\n"
                                     "0x1000\\0x1\\defaultvalue=1\n0x1000\\0x1\\implementation=1\n"
                                     "0x1000\\0x1\\defaultineds=1\n"));
        ObjectDataBase store;
        QVERIFY(store.openDataBase(folder + "/pümp.tsrt"));
        buildProject(store, "line 0 5; identity 1,1");
        QVERIFY(store.saveDataBase(folder + "/both.tsrp"));
        // With a second line: all generators, but for those of CAN FD.
        buildProject(store, "line 1 2; set co_node_id=1,1 receivebuffersize=1,1\n"
                            "set transmitbuffersize=1,1 co_timer_interval=1,1");
        QVERIFY(store.saveDataBase(folder + "/mixed.tsrp"));
    }

    void tellsTheGivenMoment()
    {
        environment.insert("SOURCE_DATE_EPOCH", "1000000000");
        environment.remove("QT_HASH_SEED");
        QMap<QString, QByteArray> first;
        for (const QString locale : {"C", "ar_EG.UTF-8", "de_DE.UTF-8"}) {
            environment.insert("LC_ALL", locale);
            environment.insert("TZ", locale == "C" ? "Asia/Tokyo" : "UTC");
            QVERIFY(run("-project mixed.tsrp").endsWith(" 0\n"));
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
        QVERIFY(first["mixed_0.eds"].contains("\nCreationTime=01:46PM\nCreationDate=09-09-01\n"));
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
        columns<QString, QByteArray>("project", "lineEnd");
        QTest::newRow("one_line") << "pümp.tsrt" << QByteArray("0");
        QTest::newRow("written_twice_in_a_run") << "both.tsrp" << QByteArray("0");
        QTest::newRow("can_fd") << "fd.tsrt" << QByteArray("0");
        QTest::newRow("adjusted_line_ends") << "mixed.tsrp" << QByteArray("1");
        QTest::newRow("lines_without_line_feed") << "pümp.tsrt" << QByteArray("3");
    }
    void keepsUnchangedFiles()
    {
        const auto [project, lineEnd] = fetchRow<QString, QByteArray>();
        QVERIFY(writeUserSettings("[General]\nline_ending_index=" + lineEnd + '\n'));
        environment.insert("SOURCE_DATE_EPOCH", "1000000000");
        QVERIFY(run("-project " + project).endsWith(" 0\n"));
        environment.remove("SOURCE_DATE_EPOCH");
        QMap<QString, QByteArray> before;
        for (const QString &name : generated())
            before.insert(name, read(name));

        makeOld();
        const QStringList untouched = sourcesByChange();
        const QByteArray report = run("-project " + project + " -keep-unchanged");
        QVERIFY2(report.endsWith(" 0\n"), report);
        QCOMPARE(newFiles(), QString());
        QCOMPARE(sourcesByChange(), untouched);
        for (auto file = before.cbegin(); file != before.cend(); ++file)
            QVERIFY2(read(file.key()) == file.value(), qPrintable(file.key()));

        // A change that one file tells, and none but its date.
        QVERIFY(write("mod.txt", "GeneralSettings:user_defines:#define X\n"));
        run("-project " + project + " -keep-unchanged -dbmod mod.txt");
        QVERIFY2(newFiles().contains("gen_define.h") && !newFiles().contains(".eds"),
                 qPrintable(newFiles()));
        QVERIFY(write("gen_indices.h", before["gen_indices.h"].replace("9 01", "8 01") + " "));
        makeOld();
        run("-project " + project + " -keep-unchanged -dbmod mod.txt");
        QCOMPARE(newFiles(), "gen_indices.h");

        run("-project " + project);
        for (const QString &name : before.keys())
            QVERIFY2(newFiles().contains(name), qPrintable(name));
    }

private:
    QStringList generated() const
    {
        QStringList names = files();
        for (const char *name : {"pümp.tsrt", "fd.tsrt", "both.tsrp", "mixed.tsrp",
                                 "__tsrerrorlog.txt.bak", "mod.txt"})
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

    /// With the moment at which any byte was last written, which no time stamp hides.
    QStringList sourcesByChange() const
    {
        QStringList sources;
        for (const QFileInfo &file : QDir(folder).entryInfoList({"gen_*"}))
            sources << joined(file.fileName(), file.metadataChangeTime().toMSecsSinceEpoch());
        return sources;
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
