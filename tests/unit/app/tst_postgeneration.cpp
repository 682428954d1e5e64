// What runs after the generation: the user's command and the EDS checker are small scripts here.
#include "app/edscheckerwrapper.h"
#include "app/outputhandlerbase.h"
#include "app/postgenprocessor.h"
#include "app/postgenprogresshandler.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/toolfixture.h"

class JoiningHandler : public OutputHandlerBase
{
    Q_OBJECT

public:
    void printLine(const QVariant &line) override
    {
        text += line.toString() + '\n';
        emit printed();
    }
    QString getLogging() override { return text; }

    QString text;

signals:
    void printed();
};

class tst_PostGeneration : public ToolTest
{
    Q_OBJECT

private slots:
    void init() { makeFolder(); }

    void runsTheCommand_data() { addCases(TEST_CASES "/postgeneration.txt", {{}}, "command"); }
    void runsTheCommand()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        QVERIFY(writeProgram("run.sh", project.section('\n', 1).toUtf8()));
        QVERIFY(writeCommand("run.sh", project.section('\n', 0, 0).toUtf8(), true));
        const QByteArray told = run("-save -project pümp.tsrt");
        const QByteArray end = ended(0, "\nGeneration finished.\n" + expected.toUtf8());
        QVERIFY2(told.endsWith(end), told.right(600));
        QVERIFY(read("pümp.tsrt").contains("SaveToolType"));
    }

    void startsNoPrograms()
    {
        for (const char *program : {"run.sh", "own.sh", "check"})
            QVERIFY(writeScript(program, "touch ran"));
        QVERIFY(writeUserSettings("[General]\npostGenEnabled=true\npostgenerationcommand="
                                  "%DIR%/own.sh\nwaitPostGen=true\n[EDSChecker]\ncheckeds=true\n"
                                  "EDSCheckerPath=\"%DIR%/check\"\n"));
        const QByteArray end = "\nGeneration finished.\nGeneration completed.\nexit code 0\n";
        QVERIFY(run("-no-commands -project pümp.tsrt").endsWith(end));
        QVERIFY(writeCommand("run.sh", {}, true));
        QVERIFY(run("-no-commands -project pümp.tsrt").endsWith(end));
        QVERIFY(!files().contains("ran"));
    }

    void cutsAFlood()
    {
        QVERIFY(writeScript("run.sh", "yes ä | head -c 3000000; yes b | head -c 3000000 >&2; "
                                      "touch done"));
        QVERIFY(writeCommand("run.sh", {}, true));
        const QByteArray told = run("-project pümp.tsrt");
        QCOMPARE(told.count("ä"), 1024 * 1024 / 3);
        const QByteArray end = filled(
            "\nPost generation process finished with code 0\nGeneration completed.\nerrors:\n"
            "%DIR%/run.sh: warning: the command printed more than 1 MiB; the rest of its output is "
            "not shown [command-output-cut]\nexit code 0\n");
        QVERIFY2(told.endsWith(end), told.right(600));
        QVERIFY(files().contains("done"));
    }

    void stopsAChecker_data()
    {
        // clang-format off
        columns<QByteArray, int, QString, int>("script", "longestRun", "reason", "bytes");
        QTest::newRow("flooding") << QByteArray("yes '<' | head -c 30000000; touch done") << kLongestWaitMs
            << "it printed more than 16 MiB" << 16 * 1024 * 1024;
        QTest::newRow("lasting") << QByteArray("exec sleep 1000") << 1000 << "it ran longer than 1 s" << -1;
        // clang-format on
    }
    void stopsAChecker()
    {
        const auto [script, longestRun, reason, bytes] = fetchRow<QByteArray, int, QString, int>();
        QVERIFY(writeScript("check", script));
        ProblemRecorder told;
        EdsCheckerWrapper checker;
        checker.setCheckerPath(folder + "/check");
        checker.setLongestRun(longestRun);
        QSignalSpy finished(&checker, &EdsCheckerWrapper::finished);
        QVERIFY(checker.startEDSCheck("x.eds") && finished.wait(kLongestWaitMs));
        QCOMPARE(told.lines.join('|'), "x.eds: warning: the EDS checker was stopped, since " +
                                           reason +
                                           "; its result is not complete [checker-stopped]");
        QVERIFY(bytes < 0 || checker.getResults().size() == bytes);
        QVERIFY(!files().contains("done"));
    }

    /// The program ends before the command does, and leaves it alone.
    void leavesACommandAlone()
    {
        QVERIFY(writeScript("run.sh", "echo noise; while [ -e hold ]; do sleep 0.1; done; "
                                      "echo more; sh -c 'kill -s PIPE $$'; echo $? >done"));
        QVERIFY(writeCommand("run.sh", {}, false) && write("hold", {}));
        environment.insert("TESSARINE_LOG", "2");
        const QByteArray told = run("-project pümp.tsrt");
        QVERIFY(!files().contains("done") && QFile::remove(folder + "/hold"));
        QVERIFY2(told.contains("\nGeneration finished.\nGeneration completed.\n"), told);
        QVERIFY2(!told.contains("noise") && !told.contains("QProcess"), told);
        QTRY_COMPARE_WITH_TIMEOUT(read("done"), QByteArray("141\n"), kLongestWaitMs);
    }

    /// Other files of the run are named relative to the folder in which the tool was started.
    void prefersTheProjectsCommand()
    {
        for (const QByteArray owner : {"user", "project"})
            QVERIFY(writeScript("run " + owner + ".sh", "echo " + owner));
        QVERIFY(writeUserSettings("[General]\npostGenEnabled=true\npostgenerationcommand="
                                  "%DIR%/run user.sh\nwaitPostGen=true\n"));
        QVERIFY(run("-project pümp.tsrt -report ../wörk/x.sarif").contains("\n\tuser\n"));
        QVERIFY(files().contains("x.sarif"));
        QVERIFY(writeCommand("run project.sh", {}, true));
        QVERIFY(run("-project pümp.tsrt").contains("\n\tproject\n"));
    }

    void checksDataSheets_data() { addCases(TEST_CASES "/postgeneration.txt", {{}}, "checker"); }
    void checksDataSheets()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        QVERIFY(writeProgram("check", project.toUtf8()));
        for (const char *name : {"pümp_7.eds", "pümp_8.eds"})
            QVERIFY(write(name, {}));
        QVERIFY(writeUserSettings("[EDSChecker]\ncheckeds=true\nEDSCheckerPath=\"%DIR%/check\"\n"));
        const QByteArray report = run("-project pümp.tsrt");
        const QByteArray end = ended(0, "\nGeneration finished.\n" + expected.toUtf8());
        QVERIFY2(report.endsWith(end), report.right(600));
    }

    void adjustsLineEnds()
    {
        for (const QByteArray index : {"0", "1", "3", "2", "4"}) {
            QVERIFY(writeUserSettings("[General]\nline_ending_index=" + index + '\n'));
            QVERIFY(write("gen_var_decl.h", "x\n") && write("gen_var_decl.c", "x\n"));
            run("-project pümp.tsrt");
            QCOMPARE(read("gen_var_decl.h").contains('\r'), index == "1" || index == "3");
            QCOMPARE(read("gen_var_decl.c"), "x\n");
            const QByteArray source = read("gen_objdict.c");
            QCOMPARE(source.contains('\n'), index != "3");
            QCOMPARE(source.contains("\r\n"), index == "1");
            QCOMPARE(source.contains('\r'), index == "1" || index == "3");
            QVERIFY(!read("pümp.eds").contains('\r'));
        }
    }

    void cancelsAStubbornCommand()
    {
        QVERIFY(writeScript("run.sh", "trap '' TERM; echo up; exec sleep 1000"));
        QVERIFY(writeUserSettings("[General]\npostGenEnabled=true\nwaitPostGen=true\n"
                                  "postgenerationcommand=%DIR%/run.sh\n"));
        JoiningHandler report;
        PostGenProgressHandler progress;
        PostGenProcessor processor(&report, &progress, nullptr);
        processor.setProjectValues(nullptr, folder, "pümp");
        connect(&report, &JoiningHandler::printed, &processor, [&] {
            if (report.text.endsWith("\tup\n"))
                QTimer::singleShot(0, &progress, &PostGenProgressHandler::cancelProcessTriggered);
        });
        processor.start();
        QVERIFY(!processor.isRunning());
        QCOMPARE(report.text, "Post generation process standard output:\n\n\tup\n"
                              "Post generation process finished with code 9\n<b>Warning: "
                              "Generation completed, but post gen process returned 9.</b>\n");
    }

private:
    bool writeScript(const QString &name, const QByteArray &content)
    {
        return write(name, "#!/bin/sh\n" + content + '\n') &&
               QFile::setPermissions(folder + '/' + name, QFile::ReadOwner | QFile::ExeOwner);
    }

    /// A script of these lines, if any; of "#" alone a file that is neither that nor a program.
    bool writeProgram(const QString &name, const QByteArray &lines)
    {
        return lines == "#\n" ? write(name, "neither a script nor a program")
                              : lines.isEmpty() || writeScript(name, lines);
    }

    /// Asks for a command in the project.
    bool writeCommand(const QString &name, const QByteArray &arguments, bool isWaitedFor)
    {
        return write("pümp.tsrt", kProject + "[MiscSettings]\npostGenEnabled=true\npostgencmd=" +
                                      (folder + '/' + name).toUtf8() +
                                      "\npostgencmdargs=" + arguments +
                                      "\npostGenWait=" + (isWaitedFor ? "1" : "0") + '\n');
    }
};

QTEST_GUILESS_MAIN(tst_PostGeneration)
#include "tst_postgeneration.moc"
