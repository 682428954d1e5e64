// The program as its users see it: arguments in, standard output, exit code and files out.
#include "tests/fixtures/storefixture.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTextCodec>

#include <unistd.h>

const QByteArray kHelp =
    "CANopen Tessarine 3.11.2 \n"
    "\t-dbmod\t\tApply a db modification. Only for internal use.\n"
    "\t-import\t\tSets an importfile. This argument is optional.\n"
    "\t-project\t\tSets the project file to use. This argument is mandatory.\n"
    "\t-s\t\tSaves the project file. Could be helpful in combination with import option.\n"
    "\t-save\t\tSaves the project file. Could be helpful in combination with import option.\n";

const QByteArray kCheck = "\nCheck of model consistency started\n"
                          "\nCheck of model consistency finished.\n\n";

const QByteArray kFullRun =
    kCheck + "Generation of textual object dictionary documentation in %DIR% started\n"
             "Generation of textual documenation completed.\n"
             "Generation finished.\n";

const QByteArray kProject = "[GeneralSettings]\nline0type=1\n";

/// A device with one object that no other file of the tests has.
const QByteArray kDescription = "[MandatoryObjects]\nSupportedObjects=1\n1=0x1000\n"
                                "[1000]\nParameterName=Wind gauge\nDataType=7\nAccessType=ro\n";

class tst_CommandLine : public QObject
{
    Q_OBJECT

private slots:
    // Names of files and arguments.
    void initTestCase() { QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8")); }

    void init()
    {
        fixture = std::make_unique<StoreFixture>();
        // Neither the folder's name nor its files' names are ASCII, and the locale is "C".
        folder = fixture->path("wörk");
        for (const char *name : {"/folder.tsrt", "/folder.eds", "/taken_doc.txt"})
            QVERIFY(QDir().mkpath(folder + name));
        QVERIFY(write("taken.tsrt", kProject));
        QVERIFY(write("pümp.tsrt", kProject));
        QVERIFY(write("untyped.tsrt", ""));
        QVERIFY(write("foreign.tsrp", "no database at all"));
        QVERIFY(write("gauge.EDS", kDescription));
        QVERIFY(write("gauge.txt", kDescription));
        QVERIFY(write("mod.txt", "GeneralSettings:line0type:1\n"));
    }

    void printsAndReturns_data()
    {
        columns<QString, QByteArray, int>("arguments", "output", "exitCode");
        const QByteArray noParameter = kHelp + "Error - Parameter error.\n";
        const QByteArray noProject =
            "Project not given.\n" + kHelp + "Error - No project specified.\n";
        const QByteArray notOpened = "Error - Open project failed.\n";
        const QByteArray notImported = "Import failed.\nError - Import error.\n";
        const QByteArray untyped = "\nCheck of model consistency started\n"
                                   "Warning line type not set for line 0.\n"
                                   "\nCheck of model consistency finished.\n\n"
                                   "Generation finished.\n";
        const QByteArray notWritten =
            kCheck + "Generation of textual object dictionary documentation in %DIR% started\n"
                     "ERROR - Generation of textual documenation failed. "
                     "Could not open %DIR%/taken_doc.txt\n"
                     "Generation finished.\n";
        // clang-format off
        QTest::newRow("no_arguments") << "" << noParameter << 4;
        QTest::newRow("help") << "-help" << kHelp << 0;
        QTest::newRow("help_goes_first") << "-project none.tsrp -help" << kHelp << 0;
        QTest::newRow("project_without_value") << "-save -project" << noProject << 2;
        QTest::newRow("missing_project") << "-project none.tsrp" << notOpened << 3;
        QTest::newRow("option_as_project") << "-project -save" << notOpened << 3;
        QTest::newRow("folder_as_project") << "-project ." << notOpened << 3;
        QTest::newRow("folder_as_text_project") << "-project folder.tsrt" << notOpened << 3;
        QTest::newRow("device_as_project") << "-project /dev/zero" << notOpened << 3;
        QTest::newRow("foreign_file") << "-project foreign.tsrp" << notOpened << 3;
        QTest::newRow("missing_import") << "-project pümp.tsrt -import none.eds" << notImported << 5;
        QTest::newRow("unknown_suffix") << "-project pümp.tsrt -import gauge.txt" << notImported << 5;
        QTest::newRow("folder_as_import") << "-project pümp.tsrt -import folder.eds" << notImported << 5;
        QTest::newRow("text_project") << "-project pümp.tsrt" << kFullRun << 0;
        QTest::newRow("any_order") << "-x -s -project pümp.tsrt" << kFullRun << 0;
        QTest::newRow("import_without_value") << "-project pümp.tsrt -import" << kFullRun << 0;
        QTest::newRow("import") << "-project pümp.tsrt -import gauge.EDS" << kFullRun << 0;
        QTest::newRow("folder_in_place_of_an_output") << "-project taken.tsrt" << notWritten << 0;
        QTest::newRow("untyped_line") << "-project untyped.tsrt" << untyped << 0;
        QTest::newRow("modifier_before_check") << "-project untyped.tsrt -dbmod mod.txt" << kFullRun << 0;
        // clang-format on
    }
    void printsAndReturns()
    {
        QFETCH(QString, arguments);
        QFETCH(QByteArray, output);
        QFETCH(int, exitCode);
        QCOMPARE(run(arguments), ended(exitCode, output));
        QCOMPARE(fixture->temporaryCopies(), QStringList());
    }

    void filesWithoutPermission()
    {
        if (geteuid() == 0)
            QSKIP("permissions do not bind the superuser");
        QVERIFY(write("pümp_doc.txt", "old"));
        QFile::setPermissions(folder + "/pümp_doc.txt", QFile::ReadOwner);
        QByteArray output = run("-project pümp.tsrt");
        QVERIFY(output.endsWith(ended(0, "\nThe file in pümp_doc.txt in %DIR% is not writable\n"
                                         "Generation finished.\n")));

        QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
        output = run("-project pümp.tsrt");
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(output.endsWith(ended(8, "ABORT - The output folder %DIR% is not writeable.\n"
                                         "Error - The output folder is not writeable\n")));
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

    void failedSaveIsReported()
    {
        QVERIFY(makeStore()->saveDataBase(folder + "/db.tsrp"));
        const QByteArray before = read("db.tsrp");
        // The name under which the new file is written first is taken by a folder.
        QVERIFY(QDir().mkpath(folder + "/db.tsrp.tessarine-new"));
        QVERIFY(
            run("-project db.tsrp -save").endsWith(ended(0, "errors:\nCould not save db.tsrp\n")));
        QCOMPARE(read("db.tsrp"), before);
    }

    void logsOnRequest()
    {
        const QByteArray output = run("-project pümp.tsrt", "1");
        QVERIFY2(output.contains("debug tessarine.app: step B line 0\n"), output);
        QVERIFY(output.endsWith(" 0\n"));
    }

private:
    /// Standard output, standard error and the exit code, one behind the other.
    QByteArray run(const QString &arguments, const QByteArray &logging = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", fixture->path());
        environment.insert("XDG_CONFIG_HOME", fixture->path());
        environment.insert("TESSARINE_LOG", logging);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder);
        process.start(TESSARINE_BINARY, arguments.split(' ', Qt::SkipEmptyParts));
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
            return "crashed";
        const QByteArray output = process.readAllStandardOutput();
        const QByteArray errors = process.readAllStandardError();
        return ended(process.exitCode(), output + (errors.isEmpty() ? "" : "errors:\n" + errors));
    }

    QByteArray ended(int exitCode, QByteArray text) const
    {
        text.replace("%DIR%", folder.toUtf8());
        return text + "exit code " + QByteArray::number(exitCode) + '\n';
    }

    bool write(const QString &name, const QByteArray &content)
    {
        return writeFile(folder + '/' + name, content);
    }
    QByteArray read(const QString &name) { return readFile(folder + '/' + name); }

    std::unique_ptr<StoreFixture> fixture;
    QString folder;
};

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_commandline.moc"
