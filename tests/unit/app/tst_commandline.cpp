// The program as its users see it: arguments in, standard output, exit code and files out.
#include "tests/unit/store/storefixture.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTest>
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

const QByteArray kCheckStart =
    "\nCheck of model consistency started\n"
    "Info: Path to protocol stack not specified. Cannot check if generated code fits to installed "
    "stack/framework.\n"
    "Specify path to protocol stack at Options -> Settings.\n";

const QByteArray kCheck = kCheckStart + "\nCheck of model consistency finished.\n\n";

const QByteArray kFullRun =
    kCheck + "Generation of textual object dictionary documentation in %DIR% started\n"
             "Generation of textual documenation completed.\n"
             "Generation finished.\n";

/// As much of a project as the check asks for, without the type of its line.
const QByteArray kUntyped = "[GeneralSettings]\n"
                            "co_node_id=1\n"
                            "receivebuffersize=1\n"
                            "transmitbuffersize=1\n"
                            "co_timer_interval=1000\n"
                            "[Objects0]\n"
                            "0x1000\\name=type\n0x1000\\objecttype=7\n"
                            "0x1001\\name=error\n0x1001\\objecttype=7\n"
                            "0x1017\\name=heartbeat\n0x1017\\objecttype=7\n"
                            "0x1018\\name=identity\n0x1018\\objecttype=9\n"
                            "[SubObjects0]\n"
                            "0x1018\\0x0\\name=count\n0x1018\\0x0\\datatype=5\n"
                            "0x1018\\0x0\\accesstype=const\n0x1018\\0x0\\defaultvalue=%COUNT%\n"
                            "0x1018\\0x0\\implementation=1\n0x1018\\0x0\\defaultineds=1\n"
                            "0x1018\\0x0\\writedefaulttoeds=1\n"
                            "0x1018\\0x1\\name=vendor\n0x1018\\0x1\\datatype=7\n"
                            "0x1018\\0x1\\accesstype=ro\n0x1018\\0x1\\defaultvalue=1\n";

QByteArray project(const QByteArray &settings, const QByteArray &count = "1")
{
    return QByteArray(kUntyped).replace("%COUNT%", count) + "[GeneralSettings]\n" + settings;
}

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
        folder = fixture->path(QString::fromUtf8("wörk"));
        QVERIFY(QDir().mkpath(folder + "/folder.tsrt"));
        QVERIFY(QDir().mkpath(folder + "/folder.eds"));
        QVERIFY(write("pümp.tsrt", project("line0type=1\n")));
        QVERIFY(write("untyped.tsrt", project("")));
        QVERIFY(write("foreign.tsrp", "no database at all"));
        QVERIFY(write("gauge.EDS", kDescription));
        QVERIFY(write("gauge.txt", kDescription));
        QVERIFY(write("mod.txt", "GeneralSettings:line0type:1\n"));
    }

    void printsAndReturns_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<int>("exitCode");
        const QByteArray noProject =
            "Project not given.\n" + kHelp + "Error - No project specified.\n";
        const QByteArray notOpened = "Error - Open project failed.\n";
        const QByteArray notImported = "Import failed.\nError - Import error.\n";
        const QString pump = "pümp.tsrt";

        QTest::newRow("no_arguments") << QStringList() << kHelp + "Error - Parameter error.\n" << 4;
        QTest::newRow("help") << QStringList{"-help"} << kHelp << 0;
        QTest::newRow("help_goes_first")
            << QStringList{"-project", "none.tsrp", "-help"} << kHelp << 0;
        QTest::newRow("project_without_value")
            << QStringList{"-save", "-project"} << noProject << 2;
        QTest::newRow("missing_project") << QStringList{"-project", "none.tsrp"} << notOpened << 3;
        QTest::newRow("option_as_project") << QStringList{"-project", "-save"} << notOpened << 3;
        QTest::newRow("folder_as_project") << QStringList{"-project", "."} << notOpened << 3;
        QTest::newRow("folder_as_text_project")
            << QStringList{"-project", "folder.tsrt"} << notOpened << 3;
        QTest::newRow("device_as_project")
            << QStringList{"-project", "/dev/zero"} << notOpened << 3;
        QTest::newRow("foreign_file") << QStringList{"-project", "foreign.tsrp"} << notOpened << 3;
        QTest::newRow("missing_import")
            << QStringList{"-project", pump, "-import", "none.eds"} << notImported << 5;
        QTest::newRow("unknown_suffix")
            << QStringList{"-project", pump, "-import", "gauge.txt"} << notImported << 5;
        QTest::newRow("folder_as_import")
            << QStringList{"-project", pump, "-import", "folder.eds"} << notImported << 5;
        QTest::newRow("text_project") << QStringList{"-project", pump} << kFullRun << 0;
        QTest::newRow("any_order") << QStringList{"-x", "-s", "-project", pump} << kFullRun << 0;
        QTest::newRow("import_without_value")
            << QStringList{"-project", pump, "-import"} << kFullRun << 0;
        QTest::newRow("import") << QStringList{"-project", pump, "-import", "gauge.EDS"} << kFullRun
                                << 0;
        QTest::newRow("untyped_line") << QStringList{"-project", "untyped.tsrt"}
                                      << QByteArray("\nCheck of model consistency started\n"
                                                    "Warning line type not set for line 0.\n"
                                                    "\nCheck of model consistency finished.\n\n"
                                                    "Generation finished.\n")
                                      << 0;
        QTest::newRow("modifier_before_check")
            << QStringList{"-project", "untyped.tsrt", "-dbmod", "mod.txt"} << kFullRun << 0;
    }
    void printsAndReturns()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QByteArray, output);
        const Outcome outcome = run(arguments);
        QCOMPARE(outcome.output, output.replace("%DIR%", folder.toUtf8()));
        QTEST(outcome.exitCode, "exitCode");
        QCOMPARE(outcome.errors, QByteArray());
        QCOMPARE(fixture->temporaryCopies(), QStringList());
    }

    void fileThatCannotBeOpenedIsReported()
    {
        QVERIFY(QDir().mkpath(folder + "/pümp_doc.txt"));
        const Outcome outcome = run({"-project", "pümp.tsrt"});
        QByteArray expected =
            kCheck + "Generation of textual object dictionary documentation in %DIR% started\n"
                     "ERROR - Generation of textual documenation failed. "
                     "Could not open %DIR%/pümp_doc.txt\n"
                     "Generation finished.\n";
        QCOMPARE(outcome.output, expected.replace("%DIR%", folder.toUtf8()));
        QCOMPARE(outcome.exitCode, 0);
    }

    void filesWithoutPermission()
    {
        if (geteuid() == 0)
            QSKIP("permissions do not bind the superuser");
        QVERIFY(write("pümp_doc.txt", "old"));
        QFile::setPermissions(folder + "/pümp_doc.txt", QFile::ReadOwner);
        Outcome outcome = run({"-project", "pümp.tsrt"});
        QVERIFY(outcome.output.contains("\nThe file in pümp_doc.txt in " + folder.toUtf8() +
                                        " is not writable\nGeneration finished.\n"));
        QCOMPARE(outcome.exitCode, 0);

        QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
        outcome = run({"-project", "pümp.tsrt"});
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(outcome.output.endsWith("ABORT - The output folder " + folder.toUtf8() +
                                        " is not writeable.\n"
                                        "Error - The output folder is not writeable\n"));
        QCOMPARE(outcome.exitCode, 8);
    }

    void savesOnRequestOnly_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<bool>("saved");
        QTest::newRow("no") << QStringList() << false;
        QTest::newRow("s") << QStringList{"-s"} << true;
        QTest::newRow("save") << QStringList{"-save"} << true;
    }
    void savesOnRequestOnly()
    {
        QFETCH(QStringList, options);
        QFETCH(bool, saved);
        const QByteArray before = read("pümp.tsrt");
        const Outcome outcome =
            run(QStringList{"-project", "pümp.tsrt", "-import", "gauge.EDS"} + options);
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY(read("pümp_doc.txt").contains("Index:       0x1000 - Wind gauge\n"));
        const QByteArray after = read("pümp.tsrt");
        QCOMPARE(after != before, saved);
        QCOMPARE(after.contains("Wind gauge") && after.contains("new_init_structure=1"), saved);
    }

    void failedSaveIsReported()
    {
        ObjectDataBase store;
        QVERIFY(store.openDataBase(folder + "/pümp.tsrt"));
        QVERIFY(store.saveDataBase(folder + "/db.tsrp"));
        const QByteArray before = read("db.tsrp");
        // The name under which the new file is written first is taken by a folder.
        QVERIFY(QDir().mkpath(folder + "/db.tsrp.new"));
        const Outcome outcome = run({"-project", "db.tsrp", "-save"});
        QCOMPARE(outcome.errors, QByteArray("Could not save db.tsrp\n"));
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(read("db.tsrp"), before);
    }

    void failedCheckEndsTheRun()
    {
        const QByteArray found =
            kCheckStart + "Common Settings: CAN receive buffer size must be specified individually "
                          "for each line.\n";
        QVERIFY(write("bad.tsrt", project("line0type=1\nreceivebuffersize=\n", "5")));
        QVERIFY(write("__tsrerrorlog.txt.bak", "of a former run"));
        Outcome outcome = run({"-project", "bad.tsrt", "-save"});
        // The console drops what stands between two tags of a sentence, here the object.
        const QByteArray corrected = ": The value of subindex 0 does not fit to the highest "
                                     "subindex.\n";
        QCOMPARE(outcome.output,
                 found + corrected +
                     "ABORT - Check of model consistency finished: failed (1 errors)\n"
                     "Error - Check of model consistency returns error.\n");
        QCOMPARE(outcome.exitCode, 7);
        QCOMPARE(read("__tsrerrorlog.txt"), found + corrected);
        QVERIFY(!QFile::exists(folder + "/bad_doc.txt"));
        // The correction was saved. A run without errors leaves the older copy of the log alone.
        QVERIFY(write("options.txt", "GeneralSettings:receivebuffersize:1\n"));
        outcome = run({"-project", "bad.tsrt", "-dbmod", "options.txt"});
        QVERIFY(outcome.output.startsWith(kCheck));
        QCOMPARE(outcome.exitCode, 0);
        QVERIFY(!QFile::exists(folder + "/__tsrerrorlog.txt"));
        QCOMPARE(read("__tsrerrorlog.txt.bak"), QByteArray("of a former run"));
    }

    void writesFindingsForMachines()
    {
        QVERIFY(write("bad.tsrt", project("line0type=1\nreceivebuffersize=\n", "5")));
        const Outcome outcome = run({"-report", "out.sarif", "-project", "bad.tsrt"});
        QCOMPARE(outcome.exitCode, 7);
        QCOMPARE(outcome.errors, QByteArray());
        const QJsonObject log = QJsonDocument::fromJson(read("out.sarif")).object();
        QCOMPARE(log["version"].toString(), QString("2.1.0"));
        const QJsonObject report = log["runs"].toArray().at(0).toObject();
        const QJsonObject invocation = report["invocations"].toArray().at(0).toObject();
        QCOMPARE(invocation["exitCode"].toInt(), 7);
        QCOMPARE(invocation["exitCodeDescription"].toString(),
                 QString("Check of model consistency returns error."));
        QVERIFY(!invocation["executionSuccessful"].toBool(true));

        const QJsonArray rules = report["tool"].toObject()["driver"].toObject()["rules"].toArray();
        QStringList results;
        for (const QJsonValue &value : report["results"].toArray()) {
            const QJsonObject result = value.toObject();
            QCOMPARE(rules.at(result["ruleIndex"].toInt()).toObject()["id"], result["ruleId"]);
            const QJsonObject location = result["locations"].toArray().at(0).toObject();
            QVERIFY(location["physicalLocation"]
                        .toObject()["artifactLocation"]
                        .toObject()["uri"]
                        .toString()
                        .endsWith("/w%C3%B6rk/bad.tsrt"));
            results << result["level"].toString() + ' ' + result["ruleId"].toString() + ' ' +
                           QJsonDocument(result["properties"].toObject())
                               .toJson(QJsonDocument::Compact);
            if (results.size() == 4)
                QCOMPARE(result["message"].toObject()["text"].toString(),
                         QString("Corrected: Object 0x1018: The value of subindex 0 does not fit "
                                 "to the highest subindex."));
        }
        const QStringList expected = {
            "note StackPathMissing {\"line\":0}", "note StackPathAdvice {\"line\":0}",
            "error ReceiveBufferInvalid {\"line\":0}",
            "note Sub0ValueCorrected {\"index\":4120,\"line\":0,\"subindex\":0}"};
        QCOMPARE(results, expected);
    }

    void reportSparesOtherFiles_data()
    {
        QTest::addColumn<QString>("report");
        QTest::newRow("folder") << "folder.eds";
        QTest::newRow("missing_folder") << "none/out.sarif";
        QTest::newRow("project") << "../wörk/pümp.tsrt";
        QTest::newRow("modifier") << "mod.txt";
    }
    void reportSparesOtherFiles()
    {
        QFETCH(QString, report);
        const QByteArray before = read(report);
        const Outcome outcome =
            run({"-project", "pümp.tsrt", "-dbmod", "mod.txt", "-report", report});
        QCOMPARE(outcome.errors, "Could not write " + report.toUtf8() + "\n");
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(read(report), before);
    }

    void logsOnRequest()
    {
        const Outcome outcome = run({"-project", "pümp.tsrt"}, "1");
        QVERIFY2(outcome.errors.contains("debug tessarine.app: step B line 0\n"), outcome.errors);
        QCOMPARE(outcome.exitCode, 0);
    }

private:
    Outcome run(const QStringList &arguments, const QByteArray &logging = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", fixture->path(QString()));
        environment.insert("XDG_CONFIG_HOME", fixture->path(QString()));
        environment.insert("TESSARINE_LOG", logging);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder);
        process.start(TESSARINE_BINARY, arguments);
        Outcome outcome;
        if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
            outcome.exitCode = process.exitCode();
        outcome.output = process.readAllStandardOutput();
        outcome.errors = process.readAllStandardError();
        return outcome;
    }

    bool write(const QString &name, const QByteArray &content)
    {
        QFile file(folder + '/' + name);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    QByteArray read(const QString &name)
    {
        QFile file(folder + '/' + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

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
