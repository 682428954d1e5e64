// Which steps a project asks for.
#include "app/generatorsteps.h"
#include "tests/fixtures/storefixture.h"

using Lines = QMap<int, int>; ///< number and type

constexpr char kNoHtml[] = "The file in %2.html in %1 is not writable"; // of a DBC file

class tst_GeneratorSteps : public QObject
{
    Q_OBJECT

private slots:
    void readsFacts_data()
    {
        columns<Lines, QString>("lines", "expected");
        QTest::newRow("j1939") << Lines{{0, 2}} << "Jp";
        QTest::newRow("raw") << Lines{{0, 4}} << "R";
        QTest::newRow("both_on_one_line") << Lines{{0, 5}} << "CJ";
        QTest::newRow("raw_beside_j1939") << Lines{{0, 2}, {1, 4}} << "JRm";
        QTest::newRow("unknown_type") << Lines{{0, 3}} << "";
        QTest::newRow("lines_that_choose_nothing") << Lines{{0, 9}, {240, 1}} << "m";
        QTest::newRow("last_line_that_chooses") << Lines{{0, 9}, {239, 1}} << "Cm";
        QTest::newRow("last_line") << Lines{{0, 1}, {253, 2}} << "Cm";
        QTest::newRow("scratch_line") << Lines{{0, 1}, {254, 2}} << "C";
    }
    void readsFacts()
    {
        QFETCH(Lines, lines);
        const StoreFixture fixture;
        const auto store = makeStore();
        for (auto line = lines.cbegin(); line != lines.cend(); ++line) {
            store->addNode(static_cast<quint8>(line.key()), Node());
            store->setGeneralSettingsValue(QString("line%1type").arg(line.key()),
                                           QString::number(line.value()));
        }
        const ProjectFacts facts = readProjectFacts(*store);
        QTEST(QString(facts.hasCANopen ? "C" : "") + (facts.hasJ1939 ? "J" : "") +
                  (facts.hasRaw ? "R" : "") + (facts.isPureJ1939() ? "p" : "") +
                  (facts.isMultiLine() ? "m" : ""),
              "expected");
    }

    void choosesSteps_data()
    {
        columns<int, QString>("type", "files");
        // clang-format off
        QTest::newRow("canopen") << 1
            << "gen_indices.h, <project>_doc.txt of CANopen, <project>.html of CANopen, gen_objdict.c, "
               "gen_define.h, gen_indication.h, <project>.csv, <project>.icsv";
        QTest::newRow("j1939") << 2
            << "gen_indices.h, gen_define.h, gen_pgn.c, gen_sdg.c, <project>_doc.txt of J1939, "
               "<project>.html of J1939, <project>.dbc, gen_extern_decl.h, gen_sdg.c";
        QTest::newRow("raw") << 4
            << "gen_indices.h, gen_mp.c, gen_define.h, gen_extern_decl.h, gen_sdg.c";
        QTest::newRow("both_on_one_line") << 5
            << "gen_indices.h, <project>_doc.txt of CANopen, <project>.html of CANopen, gen_mp.c, "
               "<project>_doc.txt of J1939, <project>.html of J1939, <project>.dbc, gen_define.h, "
               "gen_extern_decl.h, gen_sdg.c, gen_indication.h, <project>.csv, <project>.icsv";
        QTest::newRow("unknown_type") << 3 << "gen_define.h";
        // clang-format on
    }
    void choosesSteps()
    {
        QFETCH(int, type);
        const StoreFixture fixture;
        const auto store = makeStore();
        store->setGeneralSettingsValue("line0type", QString::number(type));
        store->setJ1939SettingsValue("safetysupport", "1");
        ProjectFacts facts = readProjectFacts(*store);
        readContentFacts(*store, facts);
        QStringList files;
        for (const StepRange steps : {generatorSteps(), stepsBehindEds()}) {
            for (const GeneratorStep &step : steps) {
                if (!linesOfStep(step, facts).isEmpty())
                    files << step.file;
                QVERIFY(qstrcmp(step.file, "<project>.dbc") != 0 ||
                        qstrcmp(step.notWritable, kNoHtml) == 0);
            }
        }
        QTEST(files.join(", "), "files");
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
