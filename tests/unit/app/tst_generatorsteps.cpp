// Which steps a project asks for.
#include "app/generatorsteps.h"
#include "tests/fixtures/casefile.h"
#include "tests/fixtures/projecttext.h"
#include "tests/fixtures/storefixture.h"

constexpr char kNoHtml[] = "The file in %2.html in %1 is not writable"; // of a DBC file

class tst_GeneratorSteps : public QObject
{
    Q_OBJECT

private slots:
    void cases_data() { addCases(TEST_CASES "/generatorsteps.txt"); }
    void cases()
    {
        const auto [project, expected] = fetchRow<QString, QString>();
        const StoreFixture fixture;
        const auto store = makeStore();
        buildProject(*store, project);
        ProjectFacts facts = readProjectFacts(*store);
        if (caseGroup() == "facts") {
            const QString letters = QString(facts.hasCANopen ? "C" : "") +
                                    (facts.hasJ1939 ? "J" : "") + (facts.hasRaw ? "R" : "") +
                                    (facts.isPureJ1939() ? "p" : "") +
                                    (facts.isMultiLine() ? "m" : "");
            QCOMPARE(letters + '\n', expected);
            return;
        }
        readContentFacts(*store, facts);
        QString files;
        for (const StepRange steps : {generatorSteps(), stepsBehindEds()}) {
            for (const GeneratorStep &step : steps) {
                if (!linesOfStep(step, facts).isEmpty())
                    files += step.file + QString('\n');
                QVERIFY(qstrcmp(step.file, "<project>.dbc") != 0 ||
                        qstrcmp(step.notWritable, kNoHtml) == 0);
            }
        }
        QCOMPARE(files, expected);
    }

    void takesTheStackAsItIsWritten()
    {
        const StoreFixture fixture;
        const auto store = makeStore();
        for (const QString stack : {"V4", "V4\\"}) {
            store->setGeneralSettingsValue("use_core_headers", stack);
            QCOMPARE(readProjectFacts(*store).isForV4, stack == "V4");
        }
    }

    void choosesTheLinesOfAStep()
    {
        ProjectFacts facts;
        facts.hasCANopen = true;
        // clang-format off
        facts.lines = {{1, LineType::CANopen}, {2, LineType::J1939}, {3, LineType::RawCan},
                       {4, LineType::CANopenAndJ1939}, {5, static_cast<LineType>(0)}};
        // clang-format on
        GeneratorStep step = *generatorSteps().begin();
        step.when = [](const ProjectFacts &f) { return f.hasCANopen; };
        const auto linesFor = [&](StepLines lines) {
            step.lines = lines;
            return linesOfStep(step, facts);
        };
        QCOMPARE(linesFor(StepLines::Once), QList<quint8>({0}));
        QCOMPARE(linesFor(StepLines::CANopen), QList<quint8>({1, 4}));
        QCOMPARE(linesFor(StepLines::J1939), QList<quint8>({2, 4}));
        QCOMPARE(linesFor(StepLines::All), QList<quint8>({1, 2, 3, 4, 5}));
        facts.hasCANopen = false;
        QVERIFY(linesFor(StepLines::All).isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_GeneratorSteps)
#include "tst_generatorsteps.moc"
