// The program as its users see it: arguments in, standard output, exit code and files out.
#include "store/yaml/yamlschema.h"
#include "tests/fixtures/sarifrules.h"
#include "tests/fixtures/toolfixture.h"

const QByteArray kHelp =
    "CANopen Tessarine 3.11.2 \n"
    "\t-dbmod\t\tApply a db modification. Only for internal use.\n"
    "\t-import\t\tSets an importfile. This argument is optional.\n"
    "\t-project\t\tSets the project file to use. This argument is mandatory.\n"
    "\t-s\t\tSaves the project file. Could be helpful in combination with import option.\n"
    "\t-save\t\tSaves the project file. Could be helpful in combination with import option.\n";

const QByteArray kCheckStart =
    "\nCheck of model consistency started\n"
    "Info: Path to protocol stack not specified. Cannot check if generated code fits to installed "
    "stack/framework.\n"
    "Specify path to protocol stack at Options -> Settings.\n";

const QByteArray kCheck = kCheckStart + "\nCheck of model consistency finished.\n\n";

/// A file that is begun and done.
QByteArray step(const QByteArray &started, const QByteArray &completed)
{
    return "Generation of " + started + " in %DIR% started\nGeneration of " + completed +
           " completed.\n";
}

const QByteArray kDefines = step("gen_define.h", "gen_define.h");
const QByteArray kFullRun =
    kCheck + step("gen_indices.h", "gen_indices.h generator") +
    step("textual object dictionary documentation", "textual documenation") +
    step("HTML object dictionary documentation", "HTML documentation") +
    step("gen_objdict.c", "gen_objdict.c") + kDefines + step("gen_indication", "gen_indication.h") +
    step("CSV file (deprecated)", "CSV documentation") + step("ICSV file", "ICSV documentation") +
    step(" EDS file", "EDS file") + "Generation finished.\nGeneration completed.\n";

/// One error, and a wrong value of subindex 0 that can be corrected.
const QByteArray kFaulty =
    QByteArray(kProject)
        .replace("receivebuffersize=1\n", "receivebuffersize=\n")
        .replace("0x1018\\0x0\\defaultvalue=1\n", "0x1018\\0x0\\defaultvalue=5\n");

/// A device with one object that no other file of the tests has.
const QByteArray kDescription = "[MandatoryObjects]\nSupportedObjects=1\n1=0x1000\n"
                                "[1000]\nParameterName=Wind gauge\nDataType=7\nAccessType=ro\n";

class tst_CommandLine : public ToolTest
{
    Q_OBJECT

private slots:
    void init()
    {
        makeFolder();
        for (const char *name : {"/folder.tsrt", "/folder.eds", "/taken_doc.txt"})
            QVERIFY(QDir().mkpath(folder + name));
        QVERIFY(write("taken.tsrt", kProject));
        QVERIFY(write("untyped.tsrt", kUntyped));
        QVERIFY(write("bad.tsrt", kFaulty));
        QVERIFY(write("text.yaml", QByteArray("; a comment\n\n") + kFaulty));
        QVERIFY(write("data.yaml", QByteArray("SQLite format 3\0", 16)));
        QVERIFY(write("foreign.tsrp", "no database at all"));
        QVERIFY(write("gauge.EDS", kDescription));
        QVERIFY(write("gauge.txt", kDescription));
        QVERIFY(QFile::link("none", folder + "/dangling.eds"));
        QVERIFY(QFile::link("/proc/self/mem", folder + "/memory.eds"));
        QVERIFY(write("huge.csv", {}) &&
                QFile::resize(folder + "/huge.csv", 256 * 1024 * 1024 + 1));
        QVERIFY(write("mod.txt", "GeneralSettings:line0type:1\n"));
        QVERIFY(write("odd.txt", "\nGeneralSettings:usdo_server_cnt:-1\n"));
    }

    void printsAndReturns_data()
    {
        // clang-format off
        columns<QString, QByteArray, int>("arguments", "output", "exitCode");
        const QByteArray noParameter = kHelp + "Error - Parameter error.\n";
        const QByteArray noProject = "Project not given.\n" + kHelp + "Error - No project specified.\n";
        const QByteArray notOpened = "Error - Open project failed.\n";
        const auto unopened = [&](const QByteArray &project, const QByteArray &why) { return notOpened + "errors:\n" +
            project + ": error: could not be opened: " + why + " [not-opened]\n"; };
        const auto notImported = [](const QByteArray &file,
            const QByteArray &why) { return "Import failed.\nError - Import error.\nerrors:\n" + file +
            ": error: could not be imported: " + why + " [not-imported]\n"; };
        const QByteArray untyped = "\nCheck of model consistency started\nWarning line type not set for line "
            "0.\n\nCheck of model consistency finished.\n\n" + kDefines +
            "Generation finished.\nGeneration completed.\n";
        const QByteArray notWritten = QByteArray(kFullRun).replace("Generation of textual documenation completed.",
            "ERROR - Generation of textual documenation failed. Could not open %DIR%/taken_doc.txt") +
            "errors:\n%DIR%/taken_doc.txt: error: could not be written: it is a folder [output-not-written]\n";
        QTest::newRow("no_arguments") << "" << noParameter << 4;
        QTest::newRow("help") << "-help" << kHelp << 0;
        QTest::newRow("help_goes_first") << "-project none.tsrp -help" << kHelp << 0;
        QTest::newRow("version") << "-project none.tsrp -version" << QByteArray("CANopen Tessarine 3.11.2\n") << 0;
        QTest::newRow("schema") << "-schema -project none.tsrp" << YamlSchema::text() << 0;
        const auto slip = [](const QByteArray &text) { return "errors:\nwarning: " + text + '\n'; };
        const auto alone = [](const QByteArray &option, const QByteArray &value) {
            return '"' + option + "\" stands last, without its " + value +
            ", and has no effect [option-without-value]"; };
        const auto unknown = [](const QByteArray &word, const QByteArray &advice) {
            return '"' + word + "\" is no option and has no effect" + advice + " [unknown-option]"; };
        QTest::newRow("project_without_value") << "-save -project" << noProject + slip(alone("-project", "file")) << 2;
        QTest::newRow("project_without_option") << "pümp.tsrt"
            << noProject + slip(unknown("pümp.tsrt", "; put \"-project\" before it")) << 2;
        QTest::newRow("option_of_other_tools") << "--project=pümp.tsrt"
            << noProject + slip(unknown("--project=pümp.tsrt", "; did you mean \"-project\"")) << 2;
        QTest::newRow("missing_project") << "-project none.tsrp" << unopened("none.tsrp", "there is no such file") << 3;
        QTest::newRow("option_as_project") << "-project -save"
            << QByteArray(unopened("-save", "there is no such file")).replace("errors:\n",
            slip("the option \"-save\" is taken for the file of \"-project\"; put the file between them "
            "[option-as-value]")) << 3;
        QTest::newRow("folder_as_project") << "-project ." << unopened(".", "it is a folder") << 3;
        QTest::newRow("folder_as_text_project") << "-project folder.tsrt"
            << unopened("folder.tsrt", "it is a folder") << 3;
        QTest::newRow("device_as_project") << "-project /dev/zero"
            << unopened("/dev/zero", "it is a device or a pipe") << 3;
        QTest::newRow("foreign_file") << "-project foreign.tsrp"
            << notOpened + "errors:\nforeign.tsrp: error: is no project: it is no SQLite database, and the "
            "name of a text project ends in tsrt, of one in YAML in .yaml [no-project]\n" << 3;
        QTest::newRow("text_project_as_yaml") << "-project text.yaml"
            << notOpened + "errors:\ntext.yaml: error: is a text project: give it a name that ends in .tsrt "
            "[no-project]\n" << 3;
        QTest::newRow("database_as_yaml") << "-project data.yaml"
            << notOpened + "errors:\ndata.yaml: error: is a database: give it a name that ends in .tsrp "
            "[no-project]\n" << 3;
        QTest::newRow("missing_import") << "-project pümp.tsrt -import none.eds"
            << notImported("none.eds", "there is no such file") << 5;
        QTest::newRow("unknown_suffix") << "-project pümp.tsrt -import gauge.txt"
            << notImported("gauge.txt", "its name has none of the endings .csv, .dbc, .dcf, .eds, .icsv, .tsrp, .tsrt, "
            ".xdc, .xdd, .yaml, .yml") << 5;
        QTest::newRow("folder_as_import") << "-project pümp.tsrt -import folder.eds"
            << notImported("folder.eds", "it is a folder") << 5;
        QTest::newRow("dangling_import") << "-project pümp.tsrt -import dangling.eds"
            << notImported("dangling.eds", "it is a link to a file that is not there") << 5;
        QTest::newRow("huge_import") << "-project pümp.tsrt -import huge.csv"
            << notImported("huge.csv", "it is larger than 256 MiB") << 5;
        QTest::newRow("import_that_fails_to_read") << "-project pümp.tsrt -import memory.eds"
            << notImported("memory.eds", "Input/output error") << 5;
        QTest::newRow("missing_modifier") << "-project pümp.tsrt -dbmod none.txt"
            << kFullRun + "errors:\nnone.txt: error: could not be read: there is no such file [modifier-not-read]\n"
            << 0;
        QTest::newRow("text_project") << "-project pümp.tsrt" << kFullRun << 0;
        QTest::newRow("any_order") << "-x -s -project pümp.tsrt" << kFullRun + slip(unknown("-x", "")) << 0;
        QTest::newRow("misspelt_option") << "-Svae -impotr gauge.EDS -project pümp.tsrt"
            << kFullRun + slip(unknown("-Svae", "; did you mean \"-save\"") + "\nwarning: " +
            unknown("-impotr", "; did you mean \"-import\"")) << 0;
        QTest::newRow("option_cut_short") << "-p pümp.tsrt"
            << noProject + slip(unknown("-p", "; did you mean \"-project\"")) << 2;
        QTest::newRow("flags_given_twice") << "-s -s -save -no-commands -no-commands -project pümp.tsrt"
            << kFullRun << 0;
        QTest::newRow("file_given_twice") << "-project pümp.tsrt -project none.tsrt" << kFullRun +
            slip("\"-project\" is given more than once; the first one counts, and \"none.tsrt\" has no effect "
            "[option-twice]") << 0;
        QTest::newRow("long_word") << "-project pümp.tsrt " + QString(100000, 'x')
            << kFullRun + slip(unknown(QByteArray(60, 'x') + "...", "")) << 0;
        QTest::newRow("import_without_value") << "-project pümp.tsrt -import"
            << kFullRun + slip(alone("-import", "file")) << 0;
        QTest::newRow("empty_folder") << "-check -project pümp.tsrt -output ''" << kCheck + slip("the folder of "
            "\"-output\" is an empty text, as that of a variable that is not set [option-without-value]") << 0;
        QTest::newRow("check") << "-check -project pümp.tsrt" << kCheck << 0;
        QTest::newRow("check_with_save") << "-check -save -project pümp.tsrt" << kCheck + "errors:\npümp.tsrt: "
            "warning: was not saved, since \"-check\" writes no project; leave that option out to save "
            "[check-saves-nothing]\n" << 0;
        QTest::newRow("comparison") << "-check -project pümp.tsrt -compare untyped.tsrt -dbmod mod.txt"
            << kCheck + "\nComparison with untyped.tsrt: 1 added\n\nLine 0, CANopen\n  + protocol: CANopen\n" << 0;
        QTest::newRow("compared_with_itself") << "-project pümp.tsrt -compare pümp.tsrt"
            << kFullRun + "\nNothing differs from pümp.tsrt.\n" << 0;
        QTest::newRow("no_project_to_compare_with") << "-project pümp.tsrt -compare none.tsrt -import none.eds"
            << unopened("none.tsrt", "there is no such file") << 3;
        QTest::newRow("folder_in_a_file") << "-project pümp.tsrt -output mod.txt/x" << kCheck +
            "ABORT - The output folder %DIR%/mod.txt/x is not writeable.\nError - The output folder is not writeable\n"
            "errors:\nmod.txt/x: error: cannot take the files: Not a directory [no-output-folder]\n" << 8;
        QTest::newRow("file_as_folder") << "-project pümp.tsrt -output mod.txt" << kCheck +
            "ABORT - The output folder %DIR%/mod.txt is not writeable.\nError - The output folder is not writeable\n"
            "errors:\nmod.txt: error: cannot take the files: it is no folder [no-output-folder]\n" << 8;
        QTest::newRow("import") << "-project pümp.tsrt -import gauge.EDS" << kFullRun << 0;
        QTest::newRow("folder_in_place_of_an_output") << "-project taken.tsrt" << notWritten << 0;
        QTest::newRow("untyped_line") << "-project untyped.tsrt" << untyped << 0;
        QTest::newRow("import_into_untyped_line") << "-project untyped.tsrt -import gauge.EDS" << untyped << 0;
        QTest::newRow("modifier_before_check") << "-project untyped.tsrt -dbmod mod.txt" << kFullRun << 0;
        // clang-format on
    }
    void printsAndReturns()
    {
        const auto [arguments, output, exitCode] = fetchRow<QString, QByteArray, int>();
        QCOMPARE(run(arguments), ended(exitCode, output));
        QCOMPARE(fixture->temporaryCopies(), QStringList());
    }

    /// As the user left it: a comparison knows nothing of what the check corrects.
    void comparesBeforeTheCheck()
    {
        const QByteArray output = run("-project bad.tsrt -compare pümp.tsrt");
        QVERIFY2(
            output.endsWith("\nComparison with pümp.tsrt: 1 removed, 1 changed\n\nLine 0, CANopen\n"
                            "  - receivebuffersize: 1\n  ~ 0x1018:0 count: default 1 -> 5\n"
                            "Error - Check of model consistency returns error.\nexit code 7\n"),
            output);
    }

    void filesWithoutPermission()
    {
        const QStringList names = {"pümp_doc.txt", "gen_define.h", "out.sarif"};
        for (const QString &name : names)
            QVERIFY(write(name, "old\n"));
        QVERIFY(writeUserSettings("[General]\nline_ending_index=1\n"));
        if (!bindPermissions())
            QSKIP("no other user can run the tool");
        for (const QString &name : names)
            QFile::setPermissions(folder + '/' + name, QFile::ReadOwner);
        QFile::setPermissions(folder + "/pümp.tsrt", QFile::ReadOwner);
        PlainUserProcess first;
        QByteArray output = run(first, "-project pümp.tsrt -save -report out.sarif");
        QVERIFY2(output.contains(filled("\nThe file in pümp_doc.txt in %DIR% is not writable\n")),
                 output);
        QVERIFY(output.endsWith(ended(
            0,
            "Generation finished.\nGeneration completed.\nerrors:\n"
            "%DIR%/pümp_doc.txt: error: could not be written: there is no permission to write it "
            "[output-not-written]\n"
            "%DIR%/gen_define.h: error: could not be written: there is no permission to write it "
            "[output-not-written]\n"
            "pümp.tsrt: error: could not be saved: there is no permission to write it [not-saved]\n"
            "out.sarif: error: could not be written: there is no permission to write it "
            "[not-written]\n")));
        QCOMPARE(read("pümp.tsrt"), kProject);
        for (const QString &name : names)
            QCOMPARE(read(name), "old\n");

        QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
        PlainUserProcess second;
        output = run(second, "-project pümp.tsrt -save");
        PlainUserProcess third;
        QVERIFY(run(third, "-project pümp.tsrt -check").endsWith("\nexit code 0\n"));
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY2(output.endsWith(ended(8, "ABORT - The output folder %DIR% is not writeable.\n"
                                          "Error - The output folder is not writeable\n"
                                          "errors:\npümp.tsrt: error: could not be saved: there is "
                                          "no permission to write it [not-saved]\n")),
                 output);
        QCOMPARE(read("pümp.tsrt"), kProject);
    }

    /// Neither in the project's folder nor in that for files, whatever the check and the save find.
    void checkWritesNothing()
    {
        QVERIFY(saveAs("bad.tsrt", "bad.tsrp"));
        for (const char *leftover : {"bad.tsrp.tessarine-new", "__tsrerrorlog.txt"})
            QVERIFY(write(leftover, "of a former run"));
        const QStringList before = files();
        for (const QByteArray project : {"bad.tsrt 7", "bad.tsrp 7", "pümp.tsrt 0"}) {
            const QByteArray output = run(
                "-check -output new -save -report ../out.sarif -overview ../out.html -project " +
                QString::fromUtf8(project.left(project.size() - 2)));
            QVERIFY2(output.endsWith(project.right(2) + '\n'), output);
            QVERIFY(QFile::remove(folder + "/../out.sarif"));
            QVERIFY(read("../out.html").contains("\"kind\":\"error\"") != project.endsWith('0'));
            QVERIFY(QFile::remove(folder + "/../out.html"));
        }
        QCOMPARE(files(), before);
        QCOMPARE(read("__tsrerrorlog.txt"), "of a former run");
        QVERIFY(read("bad.tsrt") == kFaulty && !QFile::exists(folder + "/new"));
        QVERIFY(run("-project bad.tsrp").endsWith(" 7\n"));
        QVERIFY(!files().contains("bad.tsrp.tessarine-new"));
    }

    void writesToAnotherFolder()
    {
        const QByteArray section = "/* user-specific section: start */\n#define %1\n"
                                   "/* user-specific section: end */\n";
        QVERIFY(QDir().mkpath(folder + "/far/öut"));
        QVERIFY(write("far/öut/gen_define.h", QByteArray(section).replace("%1", "OURS")));
        QVERIFY(write("gen_define.h", QByteArray(section).replace("%1", "NOT_OURS")));
        for (const char *name : {"gen_vobjdict.c", "far/öut/gen_vobjdict.c"})
            QVERIFY(write(name, "stale"));
        QVERIFY(write("p.tsrt", kProject + "[MiscSettings]\npostGenEnabled=1\npostgencmd=touch\n"
                                           "postgencmdargs=here %D/there\npostGenWait=1\n"));
        QVERIFY(writeUserSettings("[General]\nline_ending_index=1\n"));
        QVERIFY(write("no_stdlib_include.txt", {}));
        const QStringList before = files();
        const QByteArray output = run("-project p.tsrt -output far/öut");
        QVERIFY2(output.contains(filled("gen_define.h in %DIR%/far/öut started\n")), output);
        QVERIFY2(output.endsWith("\nGeneration completed.\nexit code 0\n"), output);
        QVERIFY(QFile::remove(folder + "/there"));
        QCOMPARE(files(), before);
        QVERIFY(read("far/öut/gen_define.h").contains("#define OURS\r\n"));
        QVERIFY(!read("far/öut/gen_objdict.c").contains("<stdlib.h>"));
        for (const char *name : {"here", "p.eds", "gen_objdict.c", "__tsrerrorlog.txt.bak"})
            QVERIFY2(QFile::exists(folder + "/far/öut/" + name), name);
        QVERIFY(!QFile::exists(folder + "/far/öut/gen_vobjdict.c"));
        QVERIFY(run("-project p.tsrt -output far/new/deep").endsWith(" 0\n"));
        QVERIFY(QFile::exists(folder + "/far/new/deep/gen_define.h"));
        QVERIFY(run("-project p.tsrt -dbmod far/öut/gen_define.h -output far/öut")
                    .contains("it is the modifier file"));
    }

    /// Only what was there; and what was written is no input, for builds refuse a circle.
    void tellsDependencies()
    {
        const auto rule = [this](const QString &arguments) {
            QFile::remove(folder + "/deps");
            const QByteArray told = run(arguments + " -depfile deps");
            return told.endsWith(" 0\n") && !told.contains("errors:") ? read("deps") : told;
        };
        QVERIFY(QDir().mkpath(folder + "/stack") &&
                write("stack/a_featureinfo_b.xml",
                      "<s><required_tool_version>3.11</required_tool_version></s>"));
        QVERIFY(writeUserSettings("[General]\ncostackpath=%DIR%/stack\n"));
        for (const char *name : {"no_stdlib_include.txt", "gen_define.h"})
            QVERIFY(write(name, {}));
        const QByteArray settings =
            QSettings("Korvel", "CANopen Tessarine").fileName().replace(" ", "\\ ").toUtf8();
        const QByteArray inputs =
            "pümp.tsrt \\\n  taken.tsrt \\\n  gauge.EDS \\\n  untyped.tsrt \\\n  mod.txt \\\n  " +
            settings + " \\\n  stack/a_featureinfo_b.xml";
        const QString all =
            "-import gauge.EDS -import 0:untyped.tsrt#0 -dbmod mod.txt -compare taken.tsrt "
            "-project pümp.tsrt";
        QCOMPARE(rule("-check " + all), filled("deps: \\\n  " + inputs + '\n'));
        QCOMPARE(rule("-check -report r " + all), filled("r: \\\n  " + inputs + '\n'));
        const QByteArray outputs =
            "gen_indices.h,pümp_doc.txt,pümp.html,gen_objdict.c,gen_define.h,"
            "gen_indication.h,pümp.csv,pümp.icsv,pümp.eds";
        for (const QString option : {"", "-keep-unchanged ", "-output new/deep "}) {
            const QByteArray folderName = option.startsWith("-o") ? "new/deep/" : "";
            QCOMPARE(rule(option + all),
                     filled(folderName + QByteArray(outputs).replace(",", " \\\n  " + folderName) +
                            ": \\\n  " + inputs + " \\\n  no_stdlib_include.txt\n"));
        }
        QVERIFY(rule("-export new/p.tsrp " + all).contains("pümp.eds \\\n  new/p.tsrp: \\\n"));
        QVERIFY(run(all + " -depfile ./mod.txt").contains("it is the modifier file"));
        QVERIFY(run(all + " -depfile taken.tsrt").contains("it is the project to compare with"));
        QVERIFY(run(all + " -depfile no_stdlib_include.txt")
                    .contains("it is a file that the run reads"));
        QVERIFY(run(all + " -report r -depfile r").contains("it is the report for machines"));
        QVERIFY(run(all + " -depfile gen_indices.h").contains("it is the dependency file"));
        QVERIFY(run(all + " -depfile r -overview r").contains("it is the dependency file"));
        QVERIFY(run(all + " -overview pümp.html").contains("it is the overview"));
        QVERIFY(rule("-overview o.html " + all).contains("pümp.eds \\\n  o.html: \\\n"));
        QVERIFY(run("-project bad.tsrt -depfile of_failure").endsWith(" 7\n"));
        QVERIFY(!QFile::exists(folder + "/of_failure"));
    }

    void setsValues()
    {
        QVERIFY(write("pümp.tsrt",
                      QByteArray(kProject).replace("0x0\\defaultvalue=1", "0x0\\defaultvalue=2") +
                          "[SubObjects0]\n0x1018\\0x2\\name=version\n0x1018\\0x2\\datatype="
                          "9\n0x1018\\0x2\\accesstype=const\n0x1018\\0x2\\implementation=1\n"
                          "0x1018\\0x2\\size=3\n"));
        QVERIFY(write("mod.txt", "GeneralSettings:co_node_id:2\n"));
        const QByteArray output =
            run("-set co_node_id=33 -set Misc:disableDocu=true -set Description:VendorName_1=A=B "
                "-set 0x1018:1=1A -set 0/0x1018:0x02=V1;2 -dbmod mod.txt -project pümp.tsrt -save");
        QVERIFY2(output.endsWith("\nGeneration completed.\nexit code 0\n"), output);
        ObjectDataBase store;
        QVERIFY(store.openDataBase(folder + "/pümp.tsrt"));
        QCOMPARE(store.getGeneralSettingsValue("co_node_id"), "33");
        QCOMPARE(store.getMiscSettingsValue("disableDocu"), "true");
        QCOMPARE(store.getDescriptionSettingsValue("VendorName_1"), "A=B");
        QCOMPARE(store.getSubIndexValue(0, 0x1018, 1), "0x1A");
        ObjectDataBase::SUBINDEX_DATA_T version;
        QVERIFY(store.getSubIndexData(0, 0x1018, 2, version));
        QCOMPARE(joined(version.defaultValue, version.size), "V1;2/4");
    }

    void refusesToSet_data()
    {
        // clang-format off
        columns<QString, QByteArray>("assignment", "reason");
        const auto form = [](const QByteArray &text) { return text + " [setting-form]\n"; };
        const auto unknown = [](const QByteArray &text) { return "there is no " + text + " [unknown-setting]\n"; };
        const auto object = [](const QByteArray &text) { return text + " [unknown-object]\n"; };
        const auto place = [](const QByteArray &text) { return '"' + text + "\" is no place of an object; it is "
            "written as 0x1018:4, or 1/0x1018:4 for line 1 [setting-form]\n"; };
        QTest::newRow("no_value") << "co_node_id" << form("it is not of the form <key>=<value>");
        QTest::newRow("no_key") << "=1" << form("it is not of the form <key>=<value>");
        QTest::newRow("misspelt") << "co_nodeid=1"
            << unknown("general setting \"co_nodeid\"; did you mean \"co_node_id\"");
        QTest::newRow("far_from_all") << "qwertyuiop=1"
            << unknown("general setting \"qwertyuiop\"; docs/settings.md has all");
        QTest::newRow("of_another_kind") << "bamsupport=1"
            << unknown("general setting \"bamsupport\"; did you mean \"J1939:bamsupport\"");
        QTest::newRow("unknown_kind") << "Mics:disableDocu=1"
            << form("before the colon stands none of J1939, Misc and Description");
        QTest::newRow("huge") << QString(100000, 'x') + "=1"
            << unknown("general setting \"" + QByteArray(60, 'x') + "...\"; docs/settings.md has all");
        QTest::newRow("hexadecimal_where_it_is_not_read") << "nmtmaster=1,,0x10"
            << form("it takes a decimal number, and \"0x10\" is none");
        QTest::newRow("word_for_a_flag") << "init_static_variables=yes"
            << form("it takes a decimal number, and \"yes\" is none");
        QTest::newRow("number_for_a_word") << "Misc:generateML=1"
            << form("it takes \"true\" or \"false\", and \"1\" is none");
        QTest::newRow("kind_of_modifier_files") << "J1939Settings:bamsupport=1"
            << form("before the colon stands none of J1939, Misc and Description; did you mean "
            "\"J1939:bamsupport\"");
        QTest::newRow("object_without_subindex") << "0x1018=1" << place("0x1018");
        QTest::newRow("decimal_object") << "4120:1=1" << place("4120:1");
        QTest::newRow("high_subindex") << "0x1018:256=1" << place("0x1018:256");
        QTest::newRow("no_such_line") << "1/0x1018:1=1" << object("the project has no line 1");
        QTest::newRow("no_such_object") << "0x2000:0=1" << object("line 0 of the project has no object 0x2000");
        QTest::newRow("no_such_subindex") << "0x1018:9=1" << object("the object 0x1018 of line 0 has no subindex 9");
        QTest::newRow("no_number") << "0x1018:1=one" << form("the type of the object has no value \"one\"");
        QTest::newRow("too_high") << "0x1018:1=0x100000000"
            << form("the type of the object has no value \"0x100000000\"");
        QTest::newRow("too_high_for_a_real") << "0x1018:2=1e39" << form("the type of the object has no value \"1e39\"");
        QTest::newRow("too_long_for_the_variable") << "0x1018:3=four" << QByteArray("the variable of the application "
            "has a size of 3 bytes, and the value has 4; with generate_variables=1 set before it, the tool defines the "
            "variable, and makes room [setting-too-long]\n");
        QTest::newRow("no_sum_with_the_node_id") << "0x1018:1=$NODEID-1"
            << form("the type of the object has no value \"$NODEID-1\"");
        QTest::newRow("too_high_with_the_node_id") << "0x1018:1=$NODEID+0x100000000"
            << form("the type of the object has no value \"$NODEID+0x100000000\"");
        // clang-format on
    }
    void refusesToSet()
    {
        QFETCH(QString, assignment);
        QFETCH(QByteArray, reason);
        const QString shown = assignment.size() > 60 ? assignment.left(60) + "..." : assignment;
        const QByteArray before = "Setting failed.\nError - Import error.\nerrors:\nerror: \"";
        const QByteArray project = kProject +
                                   "[SubObjects0]\n0x1018\\0x2\\datatype=8\n0x1018\\0x3\\datatype="
                                   "9\n0x1018\\0x3\\implementation=2\n0x1018\\0x3\\size=3\n";
        QVERIFY(write("pümp.tsrt", project));
        QCOMPARE(run("-save -project pümp.tsrt -set co_node_id=5 -set " + assignment),
                 ended(5, before + shown.toUtf8() + "\" could not be set: " + reason));
        QCOMPARE(read("pümp.tsrt"), project);
    }

    void savesOnRequestOnly()
    {
        for (const QString option : {"", "-s", "-save"}) {
            QVERIFY(write("pümp.tsrt", kProject));
            QVERIFY(run("-project pümp.tsrt -import gauge.EDS " + option).endsWith(" 0\n"));
            QVERIFY(read("pümp_doc.txt").contains("Index:       0x1000 - Wind gauge\n"));
            const QByteArray after = read("pümp.tsrt");
            QCOMPARE(after == kProject, option.isEmpty());
            QCOMPARE(after.contains("Wind gauge") && after.contains("new_init_structure=1"),
                     !option.isEmpty());
        }
    }

    void exportsTheProject_data()
    {
        // clang-format off
        columns<QString, QString, QByteArray, int>("target", "arguments", "reason", "exitCode");
        const QString import = "-project pümp.tsrt -import gauge.EDS ";
        QTest::newRow("database") << "new.tsrp" << import << QByteArray() << 0;
        QTest::newRow("yaml") << "new.yaml" << import << QByteArray() << 0;
        QTest::newRow("yaml_of_windows") << "new.YML" << import << QByteArray() << 0;
        QTest::newRow("text_in_place_of_another") << "untyped.tsrt" << import << QByteArray() << 0;
        QTest::newRow("with_the_save") << "new.tsrt" << import + "-save" << QByteArray() << 0;
        QTest::newRow("found_errors") << "new.tsrt" << "-project bad.tsrt -import gauge.EDS" << QByteArray() << 7;
        QTest::newRow("no_folder_for_files") << "new.tsrt" << import + "-output mod.txt" << QByteArray() << 8;
        QTest::newRow("check_only") << "new.tsrt" << import + "-check" << QByteArray("was not written, since "
            "\"-check\" writes no project; leave that option out to export [check-exports-nothing]") << 0;
        const auto failed = [](const char *name, const QString &target, const QString &arguments,
            const QByteArray &reason, int exitCode = 8) { QTest::newRow(name) << target << arguments
            << "could not be exported: " + reason + " [not-exported]" << exitCode; };
        failed("unknown_ending", "new.sql", import, "the ending of its name tells no form; give it one of .yaml, "
            ".yml, .tsrt and .tsrp");
        failed("upper_case", "new.TSRT", import, "the ending of its name tells no form; give it one of .yaml, "
            ".yml, .tsrt and .tsrp");
        failed("project", "./pümp.tsrt", import, "it is the project; give it another name");
        failed("link_to_modifier_file", "link.tsrp", import + "-dbmod mod.txt",
            "it is the modifier file; give it another name");
        failed("former_state", "link.tsrt", "-project db.tsrp",
            "it is the former state of the project; give it another name");
        failed("folder", "folder.tsrt", import, "it is a folder");
        failed("missing_folder", "none/new.tsrt", import,
            "none/new.tsrt.tessarine-new, where the new file is made first: No such file or directory");
        failed("errors_and_a_folder", "folder.tsrt", "-project bad.tsrt", "it is a folder", 7);
        failed("open_in_an_editor", "open.tsrp", import, "open.tsrp-wal beside it holds changes that are not in it "
            "yet; close it in the editor that has it open, or if that was killed, open and close it there once");
        failed("read_in_part", "new.tsrp", "-project part.tsrt",
            "it would lack what was not understood in \"part.tsrt\"; mend line 30");
        // clang-format on
    }
    void exportsTheProject()
    {
        const auto [target, arguments, reason] = fetchRow<QString, QString, QByteArray>();
        QFETCH(int, exitCode);
        QVERIFY(QFile::link("mod.txt", folder + "/link.tsrp") &&
                QFile::link("db.tsrp.bak", folder + "/link.tsrt"));
        QVERIFY(write("open.tsrp-wal", "x") &&
                write("part.tsrt", kProject + "[Objects0]\nx\\name=x\n"));
        QVERIFY(saveAs("pümp.tsrt", "db.tsrp"));
        const QByteArray former = read(target);
        const QByteArray told = run(arguments + " -export " + target);
        const QByteArray place = target.toUtf8() + ": " + (exitCode == 0 ? "warning" : "error");
        QVERIFY2(told.endsWith(ended(exitCode, {})), told);
        QCOMPARE(told.contains(place), !reason.isEmpty());
        QVERIFY2(told.contains(reason.isEmpty() ? "" : place + ": " + reason + '\n'), told);
        QCOMPARE(told.contains("Error - Export failed.\n"), exitCode == 8 && !reason.isEmpty());
        QVERIFY(arguments.contains("-save") || read("pümp.tsrt") == kProject);
        QVERIFY(!files().join(' ').contains("-new") && fixture->temporaryCopies().isEmpty());
        if (!reason.isEmpty()) {
            QCOMPARE(read(target), former);
            return;
        }
        ObjectDataBase exported;
        QVERIFY(exported.openDataBase(folder + '/' + target));
        QCOMPARE(exported.getIndexName(0, 0x1000), "Wind gauge");
        QCOMPARE(exported.getMiscSettingsValue("SaveToolVersion"), "3.11.2");
    }

    /// An export in between changes nothing of it.
    void exportsBesideTheSave()
    {
        for (const QString name : {"a.tsrt", "a.tsrp"}) {
            QVERIFY(saveAs("pümp.tsrt", name) &&
                    QFile::copy(folder + '/' + name, folder + "/b" + name.mid(1)));
            QVERIFY(run("-import gauge.EDS -save -project " + name).endsWith(" 0\n"));
            QVERIFY(run("-import gauge.EDS -save -export c.tsrt -project b" + name.mid(1))
                        .endsWith(" 0\n"));
            QCOMPARE(read(name), read("b" + name.mid(1)));
            for (const QString exported : {"c.tsrp", "c.tsrt"}) {
                const QString arguments =
                    "-project " + name + " -keep-unchanged -export " + exported;
                QVERIFY(run(arguments).endsWith(" 0\n"));
                const auto state = ProjectFile::State::of(folder + '/' + exported);
                QVERIFY(run(arguments).endsWith(" 0\n"));
                QVERIFY(ProjectFile::State::of(folder + '/' + exported) == state);
            }
        }
    }

    void tellsWhatIsLost()
    {
        QVERIFY(saveAs("pümp.tsrt", "plain.yaml"));
        const QByteArray plain = read("plain.yaml");
        QVERIFY(write("a.yaml", "\n# mine\n" + plain));
        QByteArray told = run("-project a.yaml -export b.yaml -set J1939:bamsupport=1 -output out");
        QVERIFY2(!told.contains("comments-lost") && !told.contains("export-loses"), told);
        QVERIFY(read("a.yaml").startsWith("\n# mine"));
        told = run("-project a.yaml -export c.tsrt -set J1939:bamsupport=1 -output out -save");
        QVERIFY2(told.contains(
                     "\na.yaml:2: warning: the save has removed the comments, of which this line "
                     "had the first one; \"-export\" to another file leaves this one as it is "
                     "[comments-lost]\n"),
                 told);
        QVERIFY(
            told.contains("\nc.tsrt: warning: was written without 1 J1939 setting, which a text "
                          "project cannot hold; one in .yaml or .tsrp can [export-loses]\n"));
        QVERIFY(!read("a.yaml").contains('#') && !QFile::exists(folder + "/a.yaml.bak"));
        told = run("-project a.yaml -output out -save");
        QVERIFY2(!told.contains("comments-lost"), told);
    }

    void failedSaveIsReported()
    {
        QVERIFY(saveAs("pümp.tsrt", "db.tsrp"));
        const QByteArray before = read("db.tsrp");
        // The name under which the new file is written first is taken by a folder.
        QVERIFY(QDir().mkpath(folder + "/db.tsrp.tessarine-new"));
        QVERIFY(
            run("-project db.tsrp -save")
                .endsWith(ended(
                    0, "errors:\ndb.tsrp: error: could not be saved: %DIR%/db.tsrp.tessarine-new, "
                       "where the new file is made first: Is a directory [not-saved]\n")));
        QCOMPARE(read("db.tsrp"), before);
    }

    void failedCheckEndsTheRun()
    {
        // The console drops what stands between two tags of a sentence, here the object.
        const QByteArray report =
            kCheckStart + "Common Settings: CAN receive buffer size must be specified individually "
                          "for each line.\n"
                          ": The value of subindex 0 does not fit to the highest subindex.\n";
        QVERIFY(write("__tsrerrorlog.txt.bak", "of a former run"));
        QCOMPARE(run("-project bad.tsrt -save"),
                 ended(7, report +
                              "ABORT - Check of model consistency finished: failed (1 errors)\n"
                              "Error - Check of model consistency returns error.\n"));
        QCOMPARE(read("__tsrerrorlog.txt"), report);
        QVERIFY(!QFile::exists(folder + "/bad_doc.txt"));
        // The correction was saved. A run without errors leaves the older copy of the log alone.
        QVERIFY(write("options.txt", "GeneralSettings:receivebuffersize:1\n"));
        QCOMPARE(run("-project bad.tsrt -dbmod options.txt"), ended(0, kFullRun));
        QVERIFY(!QFile::exists(folder + "/__tsrerrorlog.txt"));
        QCOMPARE(read("__tsrerrorlog.txt.bak"), "of a former run");
    }

    void tellsFindingsWithTheirPlaces()
    {
        const QByteArray text = QByteArray(kFaulty).replace("accesstype=ro", "accesstype={}");
        QVERIFY(write("bad.tsrt", text));
        const QByteArray told = run("-project bad.tsrt -problems -report out.sarif -save");
        const QByteArray problems =
            "errors:\n"
            "bad.tsrt:6: note: line 0: Info: Path to protocol stack not specified. Cannot check if "
            "generated code fits to installed stack/framework. [StackPathMissing]\n"
            "bad.tsrt:6: note: line 0: Specify path to protocol stack at Options -> Settings. "
            "[StackPathAdvice]\n"
            "bad.tsrt:3: error: line 0: Common Settings: CAN receive buffer size must be "
            "specified "
            "individually for each line. [ReceiveBufferInvalid]\n"
            "bad.tsrt:19: note: 0x1018:0: Corrected: Object 0x1018: The value of subindex 0 does "
            "not fit to the highest subindex. [Sub0ValueCorrected]\n"
            "bad.tsrt:25: error: 0x1018:1: Object 0x1018-0x01: The access type '{}' is invalid. "
            "Use "
            "ro, rw, const, wo, rww or rwr instead. [AccessTypeInvalid]\n";
        QVERIFY2(told.endsWith(problems + "exit code 7\n"), told);
        QVERIFY(read("bad.tsrt") != text); // the places are those of what was read

        const QByteArray log = read("out.sarif");
        QCOMPARE(SarifRules(log).broken, "");
        const QJsonValue report = QJsonDocument::fromJson(log)["runs"][0];
        QCOMPARE(report["invocations"][0]["exitCodeDescription"].toString(),
                 "Check of model consistency returns error.");
        QStringList results;
        for (const QJsonValue &result : report["results"].toArray()) {
            const QJsonValue place = result["locations"][0]["physicalLocation"];
            results << joined(
                place["artifactLocation"]["uri"].toString(), place["region"]["startLine"].toInt(),
                result["level"].toString(), result["ruleId"].toString(),
                QJsonDocument(result["properties"].toObject()).toJson(QJsonDocument::Compact));
        }
        QCOMPARE(results, (QStringList{"bad.tsrt/6/note/StackPathMissing/{\"line\":0}",
                                       "bad.tsrt/6/note/StackPathAdvice/{\"line\":0}",
                                       "bad.tsrt/3/error/ReceiveBufferInvalid/{\"line\":0}",
                                       "bad.tsrt/19/note/Sub0ValueCorrected/"
                                       "{\"index\":4120,\"line\":0,\"subindex\":0}",
                                       "bad.tsrt/25/error/AccessTypeInvalid/"
                                       "{\"index\":4120,\"line\":0,\"subindex\":1}"}));
        const QJsonValue last = report["results"].toArray().last();
        QCOMPARE(last["locations"][0]["logicalLocations"][0]["fullyQualifiedName"].toString(),
                 "0x1018:1");
        QCOMPARE(last["message"]["text"].toString(),
                 "Error: Object 0x1018-0x01: The access type '{{}}' is invalid. Use ro, rw, const, "
                 "wo, rww or rwr instead.");
    }

    void fewOfManyProblemsArePrinted()
    {
        QVERIFY(write("pümp.tsrt", kProject + QByteArray("x\n").repeated(1020)));
        const QByteArray told = run("-project pümp.tsrt -report out.sarif");
        QVERIFY2(told.endsWith("\nwarning: 1000 more of this kind [no-key]\nexit code 0\n"), told);
        QCOMPARE(told.count(" is neither [group] nor key=value"), 20);
        QCOMPARE(read("out.sarif").count("\"ruleId\": \"no-key\""), 1001);
    }

    void errorsOfAYamlProjectArePrinted()
    {
        QByteArray keys;
        for (int i = 0; i < 60; ++i)
            keys += "key" + QByteArray::number(i) + ": 1\n";
        QVERIFY(write("bad.yaml", "tessarine: 1\nlines: {0: {}}\n" + keys));
        const QByteArray told = run("-project bad.yaml");
        QCOMPARE(told.count(" [yaml-unknown-key]\n"), 50);
        QVERIFY2(!told.contains(" more of this kind") && told.endsWith("exit code 3\n"), told);
    }

    void reportsHoldProblemsToo_data()
    {
        columns<QString, QByteArray, QString>("arguments", "text", "told");
        const QByteArray odd = kProject + "# all is well\n;\n[Colours]\n[SubObjects0]\nx\n";
        const QString lines = "pümp.tsrt:31 unknown-group, pümp.tsrt:33 no-key";
        QTest::newRow("text") << "-project pümp.tsrt" << odd << lines;
        QTest::newRow("save") << "-project pümp.tsrt -save" << odd
                              << lines + ", pümp.tsrt:1 not-saved";
        QTest::newRow("modifier") << "-project pümp.tsrt -dbmod none.txt" << kProject
                                  << "none.txt:1 modifier-not-read";
        QTest::newRow("settings") << "-dbmod odd.txt -set event_pdo=-1 -project pümp.tsrt"
                                  << kProject + "co_nod_id=1\nevent_pdo=-2\nevent_nmt=-1\n"
                                  << "pümp.tsrt:29 unknown-setting, pümp.tsrt:31 setting-range, "
                                     "pümp.tsrt:1 setting-range, odd.txt:2 setting-range";
        QTest::newRow("merge") << "-project pümp.tsrt" << kProject + "=======\n"
                               << "pümp.tsrt:29 conflict-marker";
        QTest::newRow("import") << "-project pümp.tsrt -import none.eds" << odd
                                << lines + ", failed: none.eds:1 not-imported";
        QTest::newRow("project") << "-project none.tsrp" << kProject
                                 << "failed: none.tsrp:1 not-opened";
        QTest::newRow("nothing") << "-project pümp.tsrt" << kProject << "";
    }
    void reportsHoldProblemsToo()
    {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, text);
        QVERIFY(write("pümp.tsrt", text));
        run("-report out.sarif " + arguments);
        const QByteArray log = read("out.sarif");
        QCOMPARE(SarifRules(log).broken, "");
        const QJsonValue report = QJsonDocument::fromJson(log)["runs"][0];
        QStringList told;
        const auto tell = [&told](const QJsonValue &item, const QString &start,
                                  const QString &rule) {
            const QJsonValue place = item["locations"][0]["physicalLocation"];
            const QString uri = place["artifactLocation"]["uri"].toString();
            if (rule.contains('-')) // else a finding of the check
                told << start + QUrl::fromPercentEncoding(uri.toLatin1()) + ':' +
                            QString::number(place["region"]["startLine"].toInt()) + ' ' + rule;
        };
        for (const QJsonValue &result : report["results"].toArray())
            tell(result, "", result["ruleId"].toString());
        const QJsonValue failures = report["invocations"][0]["toolExecutionNotifications"];
        for (const QJsonValue &failure : failures.toArray())
            tell(failure, "failed: ", failure["descriptor"]["id"].toString());
        QTEST(told.join(", "), "told");
    }

    void reportSparesOtherFiles_data()
    {
        columns<QString>("option");
        QTest::newRow("report") << "-report ";
        QTest::newRow("overview") << "-overview ";
    }
    void reportSparesOtherFiles()
    {
        QFETCH(QString, option);
        QMap<QString, QByteArray> reasons = {
            {"folder.eds", "it is a folder"},
            {"none/out.sarif", "none/out.sarif.tessarine-new, where the new file is made first: No "
                               "such file or directory"},
            {"../wörk/pümp.tsrt", "it is the project"},
            {"mod.txt", "it is the modifier file"},
            {"./gen_define.h", "it is a place of your code in generated files"},
            {"dangling.eds", "it is no name of a file, or a link to one that is not there"}};
        if (option.contains("overview"))
            reasons["taken.tsrt"] = "it holds something else than such a page; remove it, or give "
                                    "the page another name";
        environment.insert("SOURCE_DATE_EPOCH", "0"); // each run writes gen_define.h
        for (const QString &report : reasons.keys()) {
            const QByteArray before = read(report);
            QVERIFY(run("-project pümp.tsrt -dbmod mod.txt " + option + report)
                        .endsWith(ended(0, "errors:\n" + report.toUtf8() +
                                               ": error: could not be written: " + reasons[report] +
                                               " [not-written]\n")));
            QCOMPARE(read(report), before);
        }
    }

    void readerOfTheReportEndsEarly()
    {
        for (const QString streams : {"", " 2>&1 >/dev/null"}) {
            QVERIFY(write("pümp.tsrt", kProject));
            QFile::remove(folder + "/pümp.eds");
            QProcess shell;
            shell.setProcessEnvironment(environment);
            shell.setWorkingDirectory(folder);
            shell.start(
                "sh",
                {"-c", "(sleep 0.2; " TESSARINE_BINARY " -save -project pümp.tsrt -dbmod none.txt" +
                           streams +
                           "; echo $? >code) | true; while ! [ -s code ]; do sleep 0.1; done"});
            QVERIFY(shell.waitForFinished(600000));
            QCOMPARE(read("code"), "0\n");
            QVERIFY(QFile::exists(folder + "/pümp.eds") && read("pümp.tsrt") != kProject);
            QFile::remove(folder + "/code");
        }
    }

    /// Opening such a project makes its folder the current one for a while.
    void relativeNamesOfAProjectElsewhere()
    {
        ObjectDataBase store;
        QVERIFY(QDir().mkpath(folder + "/sub") && store.openDataBase(folder + "/pümp.tsrt"));
        QVERIFY(store.saveDataBase(folder + "/sub/p.tsep"));
        QVERIFY(write("mod.txt", "GeneralSettings:user_defines:#define MINE\n"));
        const QByteArray told =
            run("-project sub/p.tsep -import gauge.EDS -dbmod mod.txt -report out.sarif");
        QVERIFY2(told.endsWith("\nGeneration completed.\nexit code 0\n"), told);
        QVERIFY(read("sub/p_doc.txt").contains("Wind gauge"));
        QVERIFY(read("sub/gen_define.h").contains("#define MINE"));
        const QByteArray log = read("out.sarif");
        QVERIFY(SarifRules(log).broken.isEmpty() && log.contains("\"sub/p.tsep\""));
    }

    void logsOnRequest()
    {
        environment.insert("TESSARINE_LOG", "1");
        QByteArray output = run("-project pümp.tsrt");
        QVERIFY2(!output.contains(" tessarine."), output);
        environment.insert("TESSARINE_LOG", "2");
        output = run("-project pümp.tsrt");
        QVERIFY2(output.contains("debug tessarine.app: step gen_define.h line 0\n"), output);
        QVERIFY(output.endsWith(" 0\n"));
    }

private:
    bool saveAs(const QString &project, const QString &name)
    {
        ObjectDataBase store;
        return store.openDataBase(folder + '/' + project) &&
               store.saveDataBase(folder + '/' + name);
    }
};

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_commandline.moc"
