// The files that a run reads, under names that its outputs have too.
#include "tests/fixtures/casefile.h"
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

    void areNotReplaced_data() { addCases(TEST_CASES "/inputs.txt", {{}}, "replaced"); }
    void areNotReplaced()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        const QStringList given = project.split('\n');
        const QString told = expected.section('\n', 0, 0);
        const QString role = expected.section('\n', 1, 1);
        QVERIFY(inShell(given.at(0)));
        const QByteArray before = read(given.at(2));
        const QByteArray text = run(given.at(1));
        if (told != "-")
            QVERIFY2(
                text.contains(filled("\nThe " + told.toUtf8() + " in %DIR% is not writable\n")),
                text);
        const QString error = "%DIR%/" + given.at(2) + ": error: was not written, since it is " +
                              role +
                              "; give that another name or folder, for the next run writes "
                              "here [output-is-input]\n";
        QVERIFY2(text.endsWith(ended(0, "\nGeneration completed.\nerrors:\n" + error.toUtf8())),
                 text);
        if (!given.at(1).contains("-report"))
            QVERIFY(read(given.at(2)) == before);
    }

    /// What a run removes, keeps or adjusts beside its outputs.
    void areLeftAlone_data() { addCases(TEST_CASES "/inputs.txt", {{}}, "left"); }
    void areLeftAlone()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        const QString input = project.section('\n', 0, 0);
        QVERIFY(writeUserSettings("[General]\nline_ending_index=1\n"));
        QVERIFY(inShell("mv mod " + input));
        const QByteArray output = run(project.section('\n', 1, 1) + " -dbmod " + input);
        const QByteArray end = "\nGeneration completed.\n" + expected.toUtf8();
        QVERIFY2(output.endsWith(ended(0, end)), output);
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
        const auto [setUp, outside, isFollowed] = fetchRow<QString, QString, bool>();
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
