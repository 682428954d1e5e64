// The driver on an open store: what the command line's tests cannot see or set up.
#include "app/generatormainhandler.h"
#include "app/outputhandlerbase.h"
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
    void init() { store = makeStore(); }

    void headsEachLineOfSeveral()
    {
        store->addNode(7, Node());
        setLineType(0, "5");
        setLineType(7, "3");
        RecordingHandler report;
        QCOMPARE(run(report), Result::GenerationOk);
        const QString folder = fixture.path();
        const QString bar(40, '_');
        const QStringList expected = {
            "\nCheck of model consistency started",
            "@",
            "@<strong>" + bar + " Checking line 0 " + bar + "</strong>",
            "@",
            "@<strong>" + bar + " Checking line 7 " + bar + "</strong>",
            "Warning line type not set for line 7.",
            "\nCheck of model consistency finished.\n",
            "Generation of textual object dictionary documentation in " + folder + " started",
            "Generation of textual documenation completed.",
            "Generation finished.",
        };
        QCOMPARE(report.lines, expected);
        QVERIFY(QFile::exists(fixture.path("demo_0.txt")));
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

    void removesForeignFilesOfJ1939Projects()
    {
        const QStringList names = {"gen_indication.h", "j1939_adapter.c"};
        const auto filesLeft = [&](const QString &type, const QString &adapter) {
            for (const QString &name : names)
                writeFile(fixture.path(name), {});
            setLineType(0, type);
            store->setJ1939SettingsValue("j1939adapter", adapter);
            RecordingHandler report;
            run(report);
            return QDir(fixture.path()).entryList(names, QDir::Files, QDir::Name).join(' ');
        };
        QCOMPARE(filesLeft("2", ""), "");
        QCOMPARE(filesLeft("2", "1"), "j1939_adapter.c");
        QCOMPARE(filesLeft("5", ""), "gen_indication.h j1939_adapter.c");
    }

private:
    void setLineType(int line, const QString &type)
    {
        store->setGeneralSettingsValue(QString("line%1type").arg(line), type);
    }

    Result run(RecordingHandler &report, const QString &folder = QString())
    {
        GeneratorMainHandler driver(&report);
        driver.openProject(store.get(), folder.isEmpty() ? fixture.path() : folder, "demo");
        QSignalSpy finished(&driver, &GeneratorMainHandler::finished);
        driver.generateOutput(false);
        return finished.count() == 1 ? finished.first().first().value<Result>()
                                     : static_cast<Result>(-1);
    }
};

QTEST_GUILESS_MAIN(tst_GeneratorMainHandler)
#include "tst_generatormainhandler.moc"
