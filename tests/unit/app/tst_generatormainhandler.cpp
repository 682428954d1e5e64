// The driver on an open store: what the command line's tests cannot see or set up.
#include "app/generatormainhandler.h"
#include "app/outputhandlerbase.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

using Result = GeneratorMainHandler::GeneratorResult;

/// Keeps the lines as they are reported, tags and all.
class RecordingHandler : public OutputHandlerBase
{
    Q_OBJECT

public:
    void printLine(const QVariant &line) override { lines << line.toString(); }
    void printLinePassTime(const QVariant &line) override { lines << '@' + line.toString(); }
    QString getLogging() override { return lines.join('\n'); }

    QStringList lines;
};

class tst_GeneratorMainHandler : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        buildProject(*store, "set co_node_id=1 receivebuffersize=1 transmitbuffersize=1\n"
                             "set co_timer_interval=1; 1000 var; 1001 var; 1017 var; 1018 var\n"
                             "1018:1 type=U32 value=1; identity 1");
    }

    void headsEachLineOfSeveral()
    {
        store->addNode(7, Node());
        setLineType(0, "5");
        setLineType(7, "3");
        RecordingHandler report;
        QCOMPARE(run(report), Result::GenerationOk);
        const QString bar(40, '_');
        const QStringList expected = {
            "\nCheck of model consistency started",
            "@",
            "@<strong>" + bar + " Checking line 0 " + bar + "</strong>",
            "Info: Path to protocol stack not specified. Cannot check if generated code fits to "
            "installed stack/framework.",
            "Specify path to protocol stack at Options -> Settings.",
            "@",
            "@<strong>" + bar + " Checking line 7 " + bar + "</strong>",
            "Warning line type not set for line 7.",
            "\nCheck of model consistency finished.\n",
        };
        QCOMPARE(report.lines.mid(0, expected.size()), expected);
        QVERIFY(QFile::exists(fixture.path("demo_0.txt")));
    }

    /// The variants of a device description, and the files of a CAN FD line.
    void writesEachVariantOfTheDevice()
    {
        // The device type is an array, as CAN FD devices have it.
        buildProject(*store, "line 0; canfd_supported=1; 1000 arr meta=eds_define:slim\n"
                             "1000:0 U8 const 1 1; 1000:1 U32 const 1 1");
        RecordingHandler report;
        QVERIFY2(run(report) == Result::GenerationOk, qPrintable(report.lines.join('|')));
        const QString folder = fixture.path();
        QStringList told;
        for (const QString &line : report.lines.filter(QRegularExpression("EDS file|XDD")))
            told << QString(line).remove(" in " + folder + " started");
        const QString done = "Generation of EDS file completed.";
        const QStringList expected = {"Generation of  EDS file",
                                      done,
                                      "Generation of  classical EDS file",
                                      done,
                                      "Generation of slim EDS file",
                                      done,
                                      "Generation of slim classical EDS file",
                                      done,
                                      "Warning: multiple different EDS files to be generated.\n",
                                      "Generation of XDD file",
                                      "Generation of XDD file completed."};
        QCOMPARE(told, expected);
    }

    void writesAConfigurationBesideTheDescription()
    {
        const auto files = [this](const char *form, const char *isAskedFor, const char *current) {
            init();
            setLineType(0, "1");
            Sub sub = subOf(*store, 0, 0x1018, 1);
            sub.currentValue = current;
            store->addSubIndex(0, 0x1018, 1, sub);
            store->setNodeSqlValue("generatedcf", isAskedFor, "0");
            store->setMiscSettingsValue("description_form", form);
            QFile::remove(fixture.path("demo.dcf"));
            RecordingHandler report;
            (void)run(report); // the files tell
            return QDir(fixture.path()).entryList({"demo.eds", "demo.dcf"}).join(' ');
        };
        QCOMPARE(files("classic", "1", "7"), "demo.eds");
        QCOMPARE(files("portable", "0", ""), "demo.eds");
        QCOMPARE(files("portable", "1", ""), "demo.dcf demo.eds");
        QCOMPARE(files("portable", "0", "7"), "demo.dcf demo.eds");
    }

    void tellsWhatTheUserWroteIntoTheHeader()
    {
        setLineType(0, "1");
        writeFile(fixture.path("gen_define.h"),
                  "/* user-specific section: start */\n#define MINE 1\n\n"
                  "/* user-specific section: end */\n");
        writeFile(fixture.path("gen_vobjdict.c"), "of an earlier run");
        RecordingHandler report;
        run(report);
        QVERIFY(report.lines.contains("gen_define.h contains user section:\n#define MINE 1"));
        QVERIFY(readFile(fixture.path("gen_define.h")).contains("#define MINE 1"));
        QVERIFY(!QFile::exists(fixture.path("gen_vobjdict.c")));
    }

    void tellsOfCorrections()
    {
        for (const bool isWrong : {false, true}) {
            buildProject(*store, QString("line 0; 1018 rec; 1018:0 U8 const 1 %1").arg(!isWrong));
            RecordingHandler report;
            GeneratorMainHandler driver(&report);
            driver.openProject(store.get(), fixture.path(), "demo");
            QSignalSpy corrected(&driver, &GeneratorMainHandler::doneCorrection);
            driver.generateOutput(false);
            QCOMPARE(corrected.count(), isWrong ? 1 : 0);
            QCOMPARE(driver.findings().size(), isWrong ? 3 : 2);
        }
    }

    void tellsOfAnImportWithoutItsLine()
    {
        QVERIFY(writeFile(fixture.path("x.csv"), "index,subindex\n"));
        store->addNode(1, Node());
        for (const bool isThere : {true, false}) {
            QVERIFY(isThere || store->delNode(0));
            RecordingHandler report;
            GeneratorMainHandler driver(&report);
            driver.openProject(store.get(), fixture.path(), "demo");
            const ProblemRecorder recorder;
            QVERIFY(driver.setImportFile(fixture.path("x.csv")));
            QCOMPARE(recorder.lines.filter("[import-without-line]").size(), isThere ? 0 : 1);
        }
    }

    void errorsCanBeIgnored()
    {
        store->setGeneralSettingsValue("co_timer_interval", "");
        RecordingHandler report;
        QCOMPARE(run(report), Result::GenerationCheckFailed);
        QVERIFY(QFile::exists(fixture.path("__tsrerrorlog.txt")));
        QCOMPARE(run(report, QString(), true), Result::GenerationOk);
        QVERIFY(!QFile::exists(fixture.path("__tsrerrorlog.txt")));
        QVERIFY(QFile::exists(fixture.path("__tsrerrorlog.txt.bak")));
    }

    /// Those of the first check count again in the second one of the same line.
    void countsTheErrorsOfBothProtocols()
    {
        setLineType(0, "5");
        store->setGeneralSettingsValue("co_node_id", "");
        store->setJ1939SettingsValue("function", "");
        RecordingHandler report;
        QCOMPARE(run(report), Result::GenerationCheckFailed);
        QCOMPARE(report.lines.last(),
                 "ABORT - Check of model consistency finished: failed (3 errors)");
    }

    /// Generated C describes the objects of lines that do not speak CANopen, too.
    void countsNamelessTypesOfEachDictionary_data()
    {
        // clang-format off
        columns<QString, QString, bool>("types", "server", "isTold");
        QTest::newRow("canopen_and_j1939") << "12" << "" << true;
        QTest::newRow("canopen_and_raw") << "14" << "" << true;
        QTest::newRow("canopen_and_unknown") << "19" << "" << true;
        QTest::newRow("j1939_with_sdo_server") << "22" << "0x1" << true;
        QTest::newRow("j1939") << "22" << "0" << false;
        QTest::newRow("no_canopen") << "24" << "1" << false;
        // clang-format on
    }

    void countsNamelessTypesOfEachDictionary()
    {
        const auto [types, server, isTold] = fetchRow<QString, QString, bool>();
        store->addNode(1, Node());
        store->addIndex(1, 0x2000, {});
        store->addSubIndex(1, 0x2000, 0, makeSub("Structure", 64, "0"));
        store->setJ1939SettingsValue("cia510serversupport", server);
        setLineType(0, types.left(1));
        setLineType(1, types.mid(1));
        RecordingHandler report;
        run(report);
        QCOMPARE(report.lines.filter("0x2000-0x00: Unknown or unsupported datatype.").size(),
                 isTold ? 1 : 0);
    }

    void stopsAtAMissingFolder()
    {
        RecordingHandler report;
        const QString folder = fixture.path("none");
        QCOMPARE(run(report, folder), Result::GenerationOutputNotWritable);
        QCOMPARE(report.lines.last(), "ABORT - The output folder " + folder + " is not writeable.");
    }

    void dropsTheDeclaredGroup()
    {
        setLineType(0, "2");
        store->executeSql("insert into PGNs0 (number,direction) values (60928,85), (60928,119)");
        RecordingHandler report;
        run(report);
        QVERIFY(store->getPGNs(0, 0x55, false).isEmpty());
        QCOMPARE(store->getPGNs(0, 0x77, false), QList<quint32>{60928});
    }

    void yamlHasNoDeclaredGroup()
    {
        const QString file = fixture.path("demo.yaml");
        QVERIFY(writeFile(file,
                          "tessarine: 1\nlines: {0: {protocol: J1939, groups: {transmit: {0xEE00: "
                          "{}}, receive: {0xEE00: {}}}}}\n"));
        RecordingHandler report;
        GeneratorMainHandler driver(&report);
        QVERIFY(driver.openProject(file));
        QVERIFY(driver.saveProject());
        const QString text = readFile(file);
        QVERIFY2(text.contains("groups:\n      receive:\n        0xEE00: {}\n"), qPrintable(text));
    }

    void removesForeignFilesOfJ1939Projects_data()
    {
        // clang-format off
        columns<QString, QString, QByteArray, QString>("type", "adapter", "section", "left");
        QTest::newRow("no_adapter") << "2" << "" << QByteArray(" \n\t\n") << "";
        QTest::newRow("code_of_the_user_stays") << "2" << "0" << QByteArray("int mine;\n") << "j1939_adapter.c";
        QTest::newRow("adapter") << "2" << "1" << QByteArray()
            << "gen_j1939_adapter.c j1939_adapter.c j1939_adapter.cs";
        QTest::newRow("both_protocols") << "5" << "" << QByteArray()
            << "gen_indication.h gen_j1939_adapter.c j1939_adapter.c j1939_adapter.cs";
        // clang-format on
    }
    void removesForeignFilesOfJ1939Projects()
    {
        const auto [type, adapter, section, left] =
            fetchRow<QString, QString, QByteArray, QString>();
        const QStringList names = {"gen_indication.h", "gen_j1939_adapter.c", "j1939_adapter.c",
                                   "j1939_adapter.cs"};
        for (const QString &name : names)
            writeFile(fixture.path(name), {});
        writeFile(fixture.path("gen_vobjdict.c"), {}); // of a line of CANopen
        const QByteArray code = "#include \"gen_define.h\"\n/* user-specific section: start */\n" +
                                section + "/* user-specific section: end */\n";
        writeFile(fixture.path("j1939_adapter.c"), code);
        setLineType(0, type);
        store->setJ1939SettingsValue("j1939adapter", adapter);
        RecordingHandler report;
        run(report);
        QCOMPARE(QDir(fixture.path()).entryList(names, QDir::Files, QDir::Name).join(' '), left);
        QCOMPARE(QFile::exists(fixture.path("gen_vobjdict.c")), type == "2");
        if (left == "j1939_adapter.c")
            QCOMPARE(readFile(fixture.path("j1939_adapter.c")), code);
    }

    void adaptersOfTheUserStay()
    {
        const QByteArray code = "int mine; // generated by hand\n";
        const QStringList names = {"gen_j1939_adapter.c", "gen_j1939_adapter.cs", "j1939_adapter.c",
                                   "j1939_adapter.cs"};
        for (const QString &name : names)
            writeFile(fixture.path(name), code);
        setLineType(0, "2");
        for (const char *adapter : {"0", "1"}) {
            store->setJ1939SettingsValue("j1939adapter", adapter);
            RecordingHandler report;
            run(report);
            for (const QString &name : names)
                QCOMPARE(readFile(fixture.path(name)), code);
            QCOMPARE(report.lines.contains("The file gen_j1939_adapter.c in " + fixture.path() +
                                           " is not writable"),
                     *adapter == '1');
        }
    }

    /// Names that differ in what no file name may hold.
    void tellsOfVariantsWithOneFileName()
    {
        buildProject(*store, "line 0; canfd_supported=1; 1002 var meta=eds_define:a/b\n"
                             "1003 var meta=eds_define:a_b; 1004 var meta=eds_define:c");
        ProblemRecorder problems;
        RecordingHandler report;
        run(report, {}, true);
        QCOMPARE(
            problems.lines.filter("[eds-name]"),
            QStringList(fixture.path("demo_a_b.eds") +
                        ": error: describes the variant \"a_b\" of line 0, and not the variant "
                        "\"a/b\" of line 0 any more, since both have this file name; name one "
                        "of them otherwise [eds-name]"));
    }

private:
    void setLineType(int line, const QString &type)
    {
        store->setGeneralSettingsValue(QString("line%1type").arg(line), type);
    }

    Result run(RecordingHandler &report, const QString &folder = QString(),
               bool ignoreErrors = false)
    {
        GeneratorMainHandler driver(&report);
        driver.openProject(store.get(), folder.isEmpty() ? fixture.path() : folder, "demo");
        QSignalSpy finished(&driver, &GeneratorMainHandler::finished);
        driver.generateOutput(ignoreErrors);
        return finished.count() == 1 ? finished.first().first().value<Result>()
                                     : static_cast<Result>(-1);
    }
};

QTEST_GUILESS_MAIN(tst_GeneratorMainHandler)
#include "tst_generatormainhandler.moc"
