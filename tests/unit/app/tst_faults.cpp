// Trouble from outside: killed runs, full disks, files that others take away.
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/toolfixture.h"

#include <QLoggingCategory>
#include <QRandomGenerator>

#include <csignal>
#include <sys/mount.h>
#include <sys/stat.h>

constexpr int kKilledRuns = 150;
constexpr int kLongestMs = 20000; // where runs are slow

class tst_Faults : public ToolTest
{
    Q_OBJECT

private slots:
    void initTestCase() { QLoggingCategory::setFilterRules("tessarine.*=false"); }

    void init()
    {
        makeFolder();
        // Large enough that kills fall into all phases of a run, the save among them.
        ObjectDataBase store;
        QVERIFY(store.openDataBase(folder + "/pümp.tsrt"));
        QString rows;
        for (int index = 0x2000; index < 0x2000 + kObjects; ++index)
            rows += QString("%1:0 U8 rw 0 1\n").arg(index, 4, 16);
        buildProject(store, rows);
        QVERIFY(store.saveDataBase(folder + "/big.tsrp"));
        QVERIFY(store.saveDataBase(folder + "/big.tsrt"));
    }

    void projectSurvivesKills_data()
    {
        columns<QString, int>("project", "signal");
        QTest::newRow("database_term") << "big.tsrp" << SIGTERM;
        QTest::newRow("database_kill") << "big.tsrp" << SIGKILL;
        QTest::newRow("text_kill") << "big.tsrt" << SIGKILL;
    }
    void projectSurvivesKills()
    {
        const auto [project, signal] = fetchRow<QString, int>();
        const QString arguments = "-keep-unchanged -save -project " + project;
        QElapsedTimer timer;
        timer.start();
        QVERIFY(run(arguments).endsWith("Generation completed.\nexit code 0\n"));
        auto length = quint32(timer.nsecsElapsed() / 1000);
        const QStringList filesOfARun = files();
        QRandomGenerator random(testSeed()); // of the moments of the kills
        int killed = 0;
        int i = 0;
        for (; i < kKilledRuns && timer.elapsed() < kLongestMs; ++i) {
            QProcess process;
            start(process, arguments);
            QVERIFY(process.waitForStarted(kLongestWaitMs));
            // The last moments are those of the save.
            const quint32 span = length * (i % 3 == 0 ? 1.1 : 0.2);
            QThread::usleep(quint32(length * 1.1) - span + random.bounded(span));
            signal == SIGTERM ? process.terminate() : process.kill();
            QVERIFY(process.waitForFinished(kLongestWaitMs));
            const bool isKilled = process.exitStatus() == QProcess::CrashExit;
            killed += isKilled ? 1 : 0;
            length = isKilled ? length * 1.05 : length * 0.9; // how long a run takes just now
            if (i % 10 == 0)
                QVERIFY2(isComplete(project), qPrintable(project));
            if (!QFile::exists(folder + '/' + project))
                QVERIFY(QFile::rename(folder + '/' + project + ".bak", folder + '/' + project));
        }
        // It takes some runs to learn their length, and a busy machine may have no time for more.
        QVERIFY2(killed > i / 4 || i < 60, qPrintable(QString::number(killed)));
        QVERIFY(isComplete(project));
        QVERIFY(run(arguments).endsWith("Generation completed.\nexit code 0\n"));
        QCOMPARE(files(), filesOfARun);
        QCOMPARE(fixture->temporaryCopies(), QStringList());
    }

    void fullDisk()
    {
        const QByteArray disk = folder.toUtf8();
        const QByteArray text = read("big.tsrt");
        const QByteArray database = read("big.tsrp");
        if (::mount("none", disk, "tmpfs", 0, "size=1m") != 0)
            QSKIP("no right to mount a small disk");
        const auto unmount = qScopeGuard([&] { ::umount2(disk, MNT_DETACH); });
        QVERIFY(write("big.tsrt", text) && write("big.tsrp", database));
        QFile filler(folder + "/filler");
        QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (filler.write(QByteArray(4096, 'x')) > 0) {
        }
        for (const QString project : {"big.tsrt", "big.tsrp"}) {
            const QByteArray told = run("-save -report r.sarif -project " + project);
            QVERIFY2(told.contains(filled("\nERROR - Generation of gen_objdict.c failed. Could not "
                                          "write %DIR%/gen_objdict.c\n")),
                     told);
            const QByteArray full = ": error: could not be %1: No space left on device [";
            const QByteArray copy =
                project == "big.tsrp" ? "saved: %DIR%/big.tsrp.tessarine-new" : "saved";
            QVERIFY2(told.contains(filled("\n%DIR%/gen_objdict.c: error: could not be written: No "
                                          "space left on device [output-not-written]\n")),
                     told);
            QVERIFY2(told.endsWith(
                         '\n' + project.toUtf8() + filled(QByteArray(full).replace("%1", copy)) +
                         "not-saved]\nr.sarif" + QByteArray(full).replace("%1", "written") +
                         "not-written]\nexit code 0\n"),
                     told);
        }
        environment.insert("XDG_DATA_HOME", folder); // and the working copy there as well
        const QByteArray told = run("-save -project big.tsrt");
        QVERIFY2(told.endsWith(" [no-working-copy]\nexit code 3\n"), told);
        environment.remove("XDG_DATA_HOME");
        QCOMPARE(read("big.tsrt"), text);
        QCOMPARE(read("big.tsrp"), database);
        QVERIFY(files().filter(QRegularExpression("tessarine-new|sarif")).isEmpty());

        // With room again, nothing of that is left.
        QVERIFY(filler.remove());
        QVERIFY(run("-project big.tsrt").endsWith("\nGeneration completed.\nexit code 0\n"));
        QVERIFY(!read("gen_objdict.c").isEmpty());
    }

    void foldersInPlaceOfFiles()
    {
        for (const QString name : {"gen_define.h", "gen_objdict.c", "gen_user.h", "big.eds",
                                   "__tsrerrorlog.txt", "__tsrerrorlog.txt.bak", "big.tsrp.bak"})
            QVERIFY(QDir(folder).mkpath(name + "/x"));
        const QByteArray before = read("big.tsrp");
        for (const QString option : {"", " -keep-unchanged"}) {
            const QByteArray told = run("-save -project big.tsrp" + option);
            for (const char *line : {"gen_define.h failed. Could not write %DIR%/gen_define.h\n",
                                     "gen_objdict.c failed. Could not open %DIR%/gen_objdict.c\n",
                                     "EDS file failed. Could not open %DIR%/big.eds\n"})
                QVERIFY2(told.contains(filled("\nERROR - Generation of " + QByteArray(line))),
                         told);
            QVERIFY2(told.contains("\nGeneration completed.\nerrors:\n"), told);
            QVERIFY2(told.endsWith(filled(
                         "\nbig.tsrp: error: could not be saved: %DIR%/big.tsrp.bak, where the "
                         "former state is kept: it is a folder [not-saved]\nexit code 0\n")),
                     told);
            QVERIFY(isComplete("big.tsrp"));
            QCOMPARE(read("big.tsrp"), before);
        }
    }

    /// Writing to a pipe would wait for a reader.
    void pipesInPlaceOfFiles()
    {
        QVERIFY(write("mod.txt", "GeneralSettings:overwrite_predef:1\n"));
        for (const char *name : {"/big_doc.txt", "/gen_user.h"})
            QCOMPARE(::mkfifo((folder + name).toUtf8(), 0600), 0);
        for (const QString option : {"", " -keep-unchanged"}) {
            const QByteArray told = run("-dbmod mod.txt -project big.tsrp" + option);
            for (const char *line : {"The file in big_doc.txt in %DIR% is not writable\n",
                                     "gen_objdict.c failed. Could not open %DIR%/gen_user.h\n"})
                QVERIFY2(told.contains(filled(line)), told);
            QVERIFY2(told.endsWith(filled("\nGeneration completed.\nerrors:\n"
                                          "%DIR%/big_doc.txt: error: could not be written: it is a "
                                          "device or a pipe [output-not-written]\n"
                                          "%DIR%/gen_user.h: error: could not be written: it is a "
                                          "device or a pipe [output-not-written]\nexit code 0\n")),
                     told);
        }
    }

    /// The command after the generation stands for somebody else, just before the save.
    void projectChangesDuringTheRun_data()
    {
        columns<QString, QByteArray, QByteArray>("project", "command", "end");
        const QByteArray saved = "Generation completed.\nexit code 0\n";
        const auto notSaved = [](const QByteArray &project, const QByteArray &reason) {
            return "errors:\n" + project + ": error: could not be saved" + reason +
                   " [not-saved]\nexit code 0\n";
        };
        const QByteArray removed = "rm -f $1";
        const QByteArray emptied = "cp /dev/null $1";
        QTest::newRow("deleted") << "big.tsrp" << removed << saved;
        QTest::newRow("replaced") << "big.tsrp" << emptied << saved;
        QTest::newRow("folder") << "big.tsrp" << QByteArray("rm $1; mkdir $1")
                                << notSaved("big.tsrp", ": it is a folder");
        QTest::newRow("text_deleted") << "big.tsrt" << removed << saved;
        QTest::newRow("text_touched") << "big.tsrt" << QByteArray("touch $1") << saved;
        QTest::newRow("text_replaced")
            << "big.tsrt" << emptied
            << notSaved("big.tsrt", ": it was changed after this run had read it; run again");
    }
    void projectChangesDuringTheRun()
    {
        const auto [project, command, end] = fetchRow<QString, QByteArray, QByteArray>();
        QVERIFY(write("do.sh", "#!/bin/sh\n" + command + "\n"));
        QFile::setPermissions(folder + "/do.sh", QFile::ReadOwner | QFile::ExeOwner);
        ObjectDataBase store;
        QVERIFY(store.openDataBase(folder + '/' + project));
        store.setGeneralSettingsValue("new_init_structure", "1"); // as every run does
        store.setMiscSettingsValue("postgencmd", folder + "/do.sh");
        store.setMiscSettingsValue("postgencmdargs", "%D/" + project);
        for (const char *key : {"postGenEnabled", "postGenWait"})
            store.setMiscSettingsValue(key, "1");
        QVERIFY(store.saveDataBase(QString()));
        QFile::remove(folder + "/big.tsrp.bak");
        const QByteArray told = run("-save -project " + project);
        QVERIFY2(told.endsWith(end), told.right(600));
        QCOMPARE(isComplete(project), !end.startsWith("errors"));
    }

    void noPlaceForTheWorkingCopy()
    {
        environment.insert("TMPDIR", folder + "/none");
        environment.insert("XDG_DATA_HOME", "/dev/null/none");
        for (const QString project : {"big.tsrt", "big.tsrp"}) {
            const QByteArray told = run("-save -project " + project);
            QVERIFY2(told.startsWith("Error - Open project failed.\nerrors:\n"), told);
            QVERIFY2(told.contains(filled("no file can be made in %DIR%/none (No such file")),
                     told);
            QVERIFY2(told.endsWith(" [no-working-copy]\nexit code 3\n"), told);
        }
    }

    void fewFilesMayBeOpen()
    {
#ifdef __SANITIZE_ADDRESS__
        QSKIP("UBSan, which looks at memory through a pipe, needs files of its own");
#endif
        for (const QString project : {"big.tsrt", "big.tsrp"}) {
            QProcess process;
            process.setProcessEnvironment(environment);
            process.setWorkingDirectory(folder);
            process.start("sh", {"-c", "ulimit -n 6; exec \"$0\" -save -project " + project,
                                 TESSARINE_BINARY});
            QVERIFY(process.waitForFinished());
            QCOMPARE(process.exitCode(), 3);
            const QByteArray told = process.readAllStandardError();
            // Which file is one too many hangs on those that the test itself was given.
            const bool isClear = told.contains("Too many open files") ||
                                 told.contains("unable to open") ||
                                 told.contains("Unable to commit");
            QVERIFY2(isClear && told.count('\n') == 1, told);
        }
    }

private:
    /// Is the project, or where it is not there its backup, as it was?
    bool isComplete(const QString &project) const
    {
        const QString path = folder + '/' + project;
        ObjectDataBase store;
        return store.openDataBase(QFile::exists(path) ? path : path + ".bak") &&
               store.getIndices(0, 0x2000, 0xFFFF).size() == kObjects &&
               store.getGeneralSettingsValue("line0type") == "1";
    }

    static constexpr int kObjects = 300;
};

QTEST_GUILESS_MAIN(tst_Faults)
#include "tst_faults.moc"
