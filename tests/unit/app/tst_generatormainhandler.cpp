// The driver on an open store: what the command line's tests cannot see or set up.
#include "app/generatormainhandler.h"
#include "app/outputhandlerbase.h"
#include "tests/unit/store/storefixture.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

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

class tst_GeneratorMainHandler : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        fixture = std::make_unique<StoreFixture>();
        store = std::make_unique<ObjectDataBase>();
        QVERIFY(store->createNewDataBase());
        for (const char *key :
             {"co_node_id", "receivebuffersize", "transmitbuffersize", "co_timer_interval"})
            store->setGeneralSettingsValue(key, "1");
        for (const quint16 index : {0x1000, 0x1001, 0x1017, 0x1018})
            store->addIndex(0, index, ObjectDataBase::INDEX_DATA_T());
        store->addSubIndex(0, 0x1018, 1, makeSub("Vendor-ID", 7, "1"));
    }

    void headsEachLineOfSeveral()
    {
        store->addNode(7, ObjectDataBase::NODE_DATA_T());
        setLineType(0, "5");
        setLineType(7, "3");
        RecordingHandler report;
        QCOMPARE(run(report), Result::GenerationOk);
        const QString folder = fixture->path(QString());
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
            "Generation of textual object dictionary documentation in " + folder + " started",
            "Generation of textual documenation completed.",
            "Generation finished.",
        };
        QCOMPARE(report.lines, expected);
        QVERIFY(QFile::exists(fixture->path("demo_0.txt")));
    }

    void tellsOfCorrections()
    {
        for (const bool isWrong : {false, true}) {
            setLineType(0, "1");
            ObjectDataBase::INDEX_DATA_T identity;
            identity.objectCode = CANopen::ObjectCode::Record;
            store->addIndex(0, 0x1018, identity);
            auto count = makeSub("Count", 5, isWrong ? "0" : "1");
            count.accessType = "const";
            count.implementation = 1;
            store->addSubIndex(0, 0x1018, 0, count);
            RecordingHandler report;
            GeneratorMainHandler driver(&report);
            driver.openProject(store.get(), fixture->path(QString()), "demo");
            QSignalSpy corrected(&driver, &GeneratorMainHandler::doneCorrection);
            driver.generateOutput(false);
            QCOMPARE(corrected.count(), isWrong ? 1 : 0);
            QCOMPARE(driver.findings().size(), isWrong ? 3 : 2);
        }
    }

    void errorsCanBeIgnored()
    {
        store->setGeneralSettingsValue("co_timer_interval", "");
        RecordingHandler report;
        QCOMPARE(run(report), Result::GenerationCheckFailed);
        QVERIFY(QFile::exists(fixture->path("__tsrerrorlog.txt")));
        QCOMPARE(run(report, QString(), true), Result::GenerationOk);
        QVERIFY(!QFile::exists(fixture->path("__tsrerrorlog.txt")));
        QVERIFY(QFile::exists(fixture->path("__tsrerrorlog.txt.bak")));
    }

    void stopsAtAMissingFolder()
    {
        RecordingHandler report;
        const QString folder = fixture->path("none");
        QCOMPARE(run(report, folder), Result::GenerationOutputNotWritable);
        QCOMPARE(report.lines.last(), "ABORT - The output folder " + folder + " is not writeable.");
    }

    void dropsTheDeclaredGroup()
    {
        const QString file = fixture->path("groups.tsrp");
        setLineType(0, "2");
        QVERIFY(store->saveDataBase(file));
        QVERIFY(StoreFixture::runSql(
            file, {"insert into PGNs0 (number, direction) values (60928, 85)",
                   "insert into PGNs0 (number, direction) values (60928, 119)"}));
        QVERIFY(store->openDataBase(file));
        RecordingHandler report;
        run(report);
        QVERIFY(store->getPGNs(0, 0x55, false).isEmpty());
        QCOMPARE(store->getPGNs(0, 0x77, false), QList<quint32>{60928});
    }

    void removesForeignFilesOfJ1939Projects_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("adapter");
        QTest::addColumn<QStringList>("left");
        const QString adapterFile = QStringLiteral("j1939_adapter.c");
        const QString indications = QStringLiteral("gen_indication.h");
        QTest::newRow("pure_j1939") << "2"
                                    << "" << QStringList();
        QTest::newRow("with_adapter") << "2"
                                      << "1" << QStringList{adapterFile};
        QTest::newRow("with_canopen") << "5"
                                      << "" << QStringList{indications, adapterFile};
    }
    void removesForeignFilesOfJ1939Projects()
    {
        QFETCH(QString, type);
        QFETCH(QString, adapter);
        const QStringList names = {"gen_indication.h", "j1939_adapter.c"};
        for (const QString &name : names)
            QVERIFY(QFile(fixture->path(name)).open(QIODevice::WriteOnly));
        setLineType(0, type);
        store->setJ1939SettingsValue("j1939adapter", adapter);
        RecordingHandler report;
        run(report);
        QTEST(QDir(fixture->path(QString())).entryList(names, QDir::Files, QDir::Name), "left");
    }

private:
    void setLineType(int line, const QString &type)
    {
        store->setGeneralSettingsValue(QStringLiteral("line%1type").arg(line), type);
    }

    Result run(RecordingHandler &report, const QString &folder = QString(),
               bool ignoreErrors = false)
    {
        GeneratorMainHandler driver(&report);
        driver.openProject(store.get(), folder.isEmpty() ? fixture->path(QString()) : folder,
                           QStringLiteral("demo"));
        QSignalSpy finished(&driver, &GeneratorMainHandler::finished);
        driver.generateOutput(ignoreErrors);
        return finished.count() == 1 ? finished.first().first().value<Result>()
                                     : static_cast<Result>(-1);
    }

    std::unique_ptr<StoreFixture> fixture;
    std::unique_ptr<ObjectDataBase> store;
};

QTEST_GUILESS_MAIN(tst_GeneratorMainHandler)
#include "tst_generatormainhandler.moc"
