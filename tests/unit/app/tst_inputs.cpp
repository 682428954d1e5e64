// The files that a run reads, under names that its outputs have too.
#include "tests/fixtures/toolfixture.h"

const QByteArray kDescription = "[MandatoryObjects]\nSupportedObjects=1\n1=0x1000\n"
                                "[1000]\nParameterName=Wind gauge\nDataType=7\nAccessType=ro\n";

class tst_Inputs : public ToolTest
{
    Q_OBJECT

private slots:
    void init()
    {
        makeFolder();
        QVERIFY(write("in.eds", kDescription));
        QVERIFY(write("mod", "# none\n"));
        QVERIFY(write("p.tsrt", kProject));
        QVERIFY(write("m.tsrt", kProject + "[MiscSettings]\ngenerateML=true\n"));
        ObjectDataBase store;
        QVERIFY(store.openDataBase(folder + "/p.tsrt"));
        for (const char *key :
             {"identitynumber", "manufacturercode", "ecuinstance", "functioninstance", "function",
              "vehiclesystem", "vehicleinstance", "industrygroup", "startaddress"})
            store.setJ1939SettingsValue(key, "1");
        QVERIFY(store.saveDataBase(folder + "/q.eds"));
        store.setGeneralSettingsValue("line0type", "5");
        QVERIFY(store.saveDataBase(folder + "/both.tsrp"));
    }

    void areNotReplaced_data()
    {
        // clang-format off
        columns<QString, QString, QString, QString, QByteArray, QByteArray>("setUp", "project", "option", "output",
                "told", "role");
        const QByteArray import = "the file to import", modifier = "the modifier file",
            report = "the report for machines";
        const QByteArray eds = "EDS file p.eds", objdict = "file gen_objdict.c", adapter = "file gen_j1939_adapter.c";
        const QString define = "echo GeneralSettings:overwrite_predef:1 >gen_user.h";
        const QString withAdapter = "printf 'GeneralSettings:line0type:2\nJ1939Settings:j1939adapter:1\n' "
            ">j1939_adapter.c";
        QTest::newRow("import") << "mv in.eds p.eds" << "p.tsrt" << "-import p.eds" << "p.eds" << eds << import;
        QTest::newRow("unchanged") << "mv in.eds p.eds" << "p.tsrt" << "-keep-unchanged -import p.eds" << "p.eds"
            << eds << import;
        QTest::newRow("hard_link") << "ln in.eds p.eds" << "p.tsrt" << "-import in.eds" << "p.eds" << eds << import;
        QTest::newRow("link_to_input") << "ln -s in.eds p.eds" << "p.tsrt" << "-import in.eds" << "p.eds" << eds
            << import;
        QTest::newRow("linked_input") << "mv in.eds p.eds; ln -s p.eds in.eds" << "p.tsrt" << "-import in.eds"
            << "p.eds" << eds << import;
        QTest::newRow("table") << "printf 'index,sub,edsname,datatype\\n0x2000,0,a,U8\\n' >p.csv" << "p.tsrt"
            << "-import p.csv" << "p.csv" << QByteArray("file p.csv") << import;
        QTest::newRow("project") << "" << "q.eds" << "" << "q.eds" << QByteArray("EDS file q.eds")
            << QByteArray("the project");
        QTest::newRow("line") << "mv in.eds m_0.eds" << "m.tsrt" << "-import m_0.eds" << "m_0.eds"
            << QByteArray("EDS file m.eds") << import;
        QTest::newRow("definitions") << "mv mod gen_define.h" << "p.tsrt" << "-dbmod gen_define.h" << "gen_define.h"
            << QByteArray("file gen_define.h") << modifier;
        QTest::newRow("user_header") << define << "p.tsrt" << "-dbmod gen_user.h" << "gen_user.h" << objdict
            << modifier;
        QTest::newRow("dbc") << "mv mod both.dbc" << "both.tsrp" << "-dbmod both.dbc" << "both.dbc"
            << QByteArray("file in both.html") << modifier;
        QTest::newRow("several_protocols") << "mv mod gen_mp.c" << "both.tsrp" << "-dbmod gen_mp.c" << "gen_mp.c"
            << QByteArray("file gen_mp.c") << modifier;
        QTest::newRow("adapter") << withAdapter << "both.tsrp" << "-dbmod j1939_adapter.c" << "j1939_adapter.c"
            << adapter << modifier;
        QTest::newRow("report") << "" << "p.tsrt" << "-report p.html" << "p.html" << QByteArray("file in p.html")
            << report;
        QTest::newRow("log") << "mv mod __tsrerrorlog.txt" << "p.tsrt" << "-dbmod __tsrerrorlog.txt"
            << "__tsrerrorlog.txt" << QByteArray() << modifier;
        // clang-format on
    }
    void areNotReplaced()
    {
        QFETCH(QString, setUp);
        QFETCH(QString, project);
        QFETCH(QString, option);
        QFETCH(QString, output);
        QFETCH(QByteArray, told);
        QFETCH(QByteArray, role);
        QVERIFY(inShell(setUp));
        const QByteArray before = read(output);
        const QByteArray text = run("-project " + project + ' ' + option);
        if (!told.isEmpty())
            QVERIFY2(text.contains(filled("\nThe " + told + " in %DIR% is not writable\n")), text);
        QVERIFY2(
            text.endsWith(ended(0, "\nGeneration completed.\nerrors:\n%DIR%/" + output.toUtf8() +
                                       ": error: was not written, since it is " + role +
                                       "; give that another name or folder, for the next run "
                                       "writes here [output-is-input]\n")),
            text);
        if (!option.startsWith("-report"))
            QVERIFY(read(output) == before);
    }

    /// What a run removes, keeps or adjusts beside its outputs.
    void areLeftAlone_data()
    {
        // clang-format off
        columns<QString, QString, QByteArray>("input", "arguments", "error");
        const QByteArray noBackup = "both.tsrp: error: could not be saved: %DIR%/both.tsrp.bak, where the former "
            "state is kept: it is the modifier file [not-saved]\n";
        const QByteArray notRemoved = "%DIR%/gen_vobjdict.c: warning: was not removed, since it is the modifier "
            "file; give that another name or folder, for the next run removes it [output-is-input]\n";
        QTest::newRow("stale_file") << "gen_vobjdict.c" << "-project p.tsrt" << notRemoved;
        QTest::newRow("stale_header") << "gen_user.h" << "-project p.tsrt"
            << QByteArray(notRemoved).replace("gen_vobjdict.c", "gen_user.h");
        QTest::newRow("backup") << "both.tsrp.bak" << "-project both.tsrp -save" << noBackup;
        QTest::newRow("line_ends") << "gen_pgn.c" << "-project p.tsrt" << QByteArray();
        // clang-format on
    }
    void areLeftAlone()
    {
        QFETCH(QString, input);
        QFETCH(QString, arguments);
        QFETCH(QByteArray, error);
        QVERIFY(writeUserSettings("[General]\nline_ending_index=1\n"));
        QVERIFY(inShell("mv mod " + input));
        const QByteArray output = run(arguments + " -dbmod " + input);
        const QByteArray errors = error.isEmpty() ? error : "errors:\n" + error;
        QVERIFY2(output.endsWith(ended(0, "\nGeneration completed.\n" + errors)), output);
        QCOMPARE(read(input), "# none\n");
    }

    void linksStayInTheFolder_data()
    {
        // clang-format off
        columns<QString, QString, bool>("setUp", "outside", "isFollowed");
        QTest::newRow("out") << "echo old >../out; ln -s ../out p_doc.txt" << "../out" << false;
        QTest::newRow("out_to_nothing") << "ln -s ../none p_doc.txt" << "../none" << false;
        QTest::newRow("out_by_a_folder") << "mkdir ../far; ln -s ../far near; ln -s near/out p_doc.txt"
            << "../far/out" << false;
        QTest::newRow("within") << "mkdir sub; ln -s sub/doc p_doc.txt" << "sub/doc" << true;
        QTest::newRow("within_by_full_name") << "ln -s \"$PWD/doc\" p_doc.txt" << "doc" << true;
        // clang-format on
    }
    void linksStayInTheFolder()
    {
        QFETCH(QString, setUp);
        QFETCH(QString, outside);
        QFETCH(bool, isFollowed);
        QVERIFY(inShell(setUp));
        const QByteArray before = read(outside);
        const QByteArray output = run("-project p.tsrt");
        const QByteArray refusal = filled("\nThe file in p_doc.txt in %DIR% is not writable\n");
        const QByteArray error = "of the project, to " + folder.section('/', 0, -2).toUtf8() +
                                 outside.mid(2).toUtf8() +
                                 "; remove the link [output-leads-away]\n";
        QVERIFY2(output.contains(refusal) != isFollowed, output);
        QVERIFY2(output.contains(error) != isFollowed, output);
        QCOMPARE(read(outside) == before, !isFollowed);
    }

private:
    bool inShell(const QString &commands) const
    {
        QProcess shell;
        shell.setWorkingDirectory(folder);
        shell.start("sh", {"-ec", commands});
        return shell.waitForFinished() && shell.exitCode() == 0;
    }
};

QTEST_GUILESS_MAIN(tst_Inputs)
#include "tst_inputs.moc"
