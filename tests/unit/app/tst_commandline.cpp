// The program as its users see it: arguments in, standard output, exit code and files out.
#include "tests/fixtures/storefixture.h"

#include <QProcess>
#include <QProcessEnvironment>
#include <QTextCodec>

#include <unistd.h>

namespace
{

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
const QByteArray kDescription = "[MandatoryObjects]\n"
                                "SupportedObjects=1\n"
                                "1=0x1000\n"
                                "[1000]\n"
                                "ParameterName=Wind gauge\n"
                                "DataType=7\n"
                                "AccessType=ro\n";

struct Outcome {
    int exitCode = -1;
    QByteArray output;
    QByteArray errors;
};

} // namespace

class tst_CommandLine : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        fixture = std::make_unique<StoreFixture>();
        // Neither the folder's name nor its files' names are ASCII, and the locale is "C".
        folder = fixture->path("wörk");
        QVERIFY(QDir().mkpath(folder + "/folder.tsrt"));
        QVERIFY(QDir().mkpath(folder + "/folder.eds"));
        QVERIFY(QDir().mkpath(folder + "/taken_doc.txt"));
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
        const Outcome outcome = run(arguments);
        QCOMPARE(outcome.output, output.replace("%DIR%", folder.toUtf8()));
        QTEST(outcome.exitCode, "exitCode");
        QCOMPARE(outcome.errors, QByteArray());
        QCOMPARE(fixture->temporaryCopies(), QStringList());
    }

    void filesWithoutPermission()
    {
        if (geteuid() == 0)
            QSKIP("permissions do not bind the superuser");
        QVERIFY(write("pümp_doc.txt", "old"));
        QFile::setPermissions(folder + "/pümp_doc.txt", QFile::ReadOwner);
        Outcome outcome = run("-project pümp.tsrt");
        QVERIFY(outcome.output.contains("\nThe file in pümp_doc.txt in " + folder.toUtf8() +
                                        " is not writable\nGeneration finished.\n"));
        QCOMPARE(outcome.exitCode, 0);

        QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
        outcome = run("-project pümp.tsrt");
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(outcome.output.endsWith("ABORT - The output folder " + folder.toUtf8() +
                                        " is not writeable.\n"
                                        "Error - The output folder is not writeable\n"));
        QCOMPARE(outcome.exitCode, 8);
    }

    void savesOnRequestOnly()
    {
        for (const QString option : {"", "-s", "-save"}) {
            QVERIFY(write("pümp.tsrt", kProject));
            QCOMPARE(run("-project pümp.tsrt -import gauge.EDS " + option).exitCode, 0);
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
        QVERIFY(QDir().mkpath(folder + "/db.tsrp.new"));
        const Outcome outcome = run("-project db.tsrp -save");
        QCOMPARE(outcome.errors, QByteArray("Could not save db.tsrp\n"));
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(read("db.tsrp"), before);
    }

    void logsOnRequest()
    {
        const Outcome outcome = run("-project pümp.tsrt", "1");
        QVERIFY2(outcome.errors.contains("debug tessarine.app: step B line 0\n"), outcome.errors);
        QCOMPARE(outcome.exitCode, 0);
    }

private:
    Outcome run(const QString &arguments, const QByteArray &logging = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", fixture->path());
        environment.insert("XDG_CONFIG_HOME", fixture->path());
        environment.insert("TESSARINE_LOG", logging);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder);
        process.start(TESSARINE_BINARY, arguments.split(' ', Qt::SkipEmptyParts));
        Outcome outcome;
        if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
            outcome.exitCode = process.exitCode();
        outcome.output = process.readAllStandardOutput();
        outcome.errors = process.readAllStandardError();
        return outcome;
    }

    bool write(const QString &name, const QByteArray &content)
    {
        return writeFile(folder + '/' + name, content);
    }
    QByteArray read(const QString &name) { return readFile(folder + '/' + name); }

    std::unique_ptr<StoreFixture> fixture;
    QString folder;
};

int main(int argc, char *argv[])
{
    QTextCodec::setCodecForLocale(
        QTextCodec::codecForName("UTF-8")); // names of files and arguments
    QCoreApplication application(argc, argv);
    tst_CommandLine test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_commandline.moc"
