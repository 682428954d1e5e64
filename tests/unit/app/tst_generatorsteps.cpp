// Which steps a project asks for.
#include "app/generatorsteps.h"
#include "tests/unit/store/storefixture.h"

#include <QTest>

using Lines = QMap<int, int>; ///< number and type

class tst_GeneratorSteps : public QObject
{
    Q_OBJECT

private slots:
    void readsFacts_data()
    {
        QTest::addColumn<Lines>("lines");
        QTest::addColumn<QString>("protocols");
        QTest::addColumn<bool>("multiLine");
        QTest::newRow("canopen") << Lines{{0, 1}} << "C" << false;
        QTest::newRow("j1939") << Lines{{0, 2}} << "Jp" << false;
        QTest::newRow("raw") << Lines{{0, 4}} << "R" << false;
        QTest::newRow("both_on_one_line") << Lines{{0, 5}} << "CJ" << false;
        QTest::newRow("raw_beside_j1939") << Lines{{0, 2}, {1, 4}} << "JR" << true;
        QTest::newRow("unknown_type") << Lines{{0, 3}} << "" << false;
        QTest::newRow("lines_that_choose_nothing") << Lines{{0, 9}, {240, 1}} << "" << true;
        QTest::newRow("last_line_that_chooses") << Lines{{0, 9}, {239, 1}} << "C" << true;
        QTest::newRow("scratch_line") << Lines{{0, 1}, {254, 2}} << "C" << false;
    }
    void readsFacts()
    {
        QFETCH(Lines, lines);
        const StoreFixture fixture;
        ObjectDataBase store;
        QVERIFY(store.createNewDataBase());
        for (auto line = lines.cbegin(); line != lines.cend(); ++line) {
            store.addNode(static_cast<quint8>(line.key()), ObjectDataBase::NODE_DATA_T());
            store.setGeneralSettingsValue(QStringLiteral("line%1type").arg(line.key()),
                                          QString::number(line.value()));
        }
        const ProjectFacts facts = readProjectFacts(store);
        QString protocols;
        protocols += facts.hasCANopen ? "C" : "";
        protocols += facts.hasJ1939 ? "J" : "";
        protocols += facts.hasRaw ? "R" : "";
        protocols += facts.isPureJ1939() ? "p" : "";
        QTEST(protocols, "protocols");
        QTEST(facts.isMultiLine(), "multiLine");
    }

    void choosesTheLinesOfAStep_data()
    {
        QTest::addColumn<int>("lines");
        QTest::addColumn<QList<quint8>>("expected");
        QTest::newRow("once") << static_cast<int>(StepLines::Once) << QList<quint8>{0};
        QTest::newRow("canopen") << static_cast<int>(StepLines::CANopen) << QList<quint8>{1, 4};
        QTest::newRow("j1939") << static_cast<int>(StepLines::J1939) << QList<quint8>{2, 4};
        QTest::newRow("all") << static_cast<int>(StepLines::All) << QList<quint8>{1, 2, 3, 4, 5};
    }
    void choosesTheLinesOfAStep()
    {
        QFETCH(int, lines);
        ProjectFacts facts;
        facts.hasCANopen = true;
        facts.lines = {{1, LineType::CANopen},
                       {2, LineType::J1939},
                       {3, LineType::RawCan},
                       {4, LineType::CANopenAndJ1939},
                       {5, static_cast<LineType>(0)}};
        GeneratorStep step = *generatorSteps().begin();
        step.when = [](const ProjectFacts &f) { return f.hasCANopen; };
        step.lines = static_cast<StepLines>(lines);
        QTEST(linesOfStep(step, facts), "expected");
        facts.hasCANopen = false;
        QVERIFY(linesOfStep(step, facts).isEmpty());
    }

    void stepsOfAProject_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("letters");
        QTest::newRow("canopen") << 1 << QByteArray("B");
        QTest::newRow("j1939") << 2 << QByteArray();
        QTest::newRow("raw") << 4 << QByteArray();
        QTest::newRow("canopen_and_j1939") << 5 << QByteArray("B");
    }
    void stepsOfAProject()
    {
        QFETCH(int, type);
        const auto lineType = static_cast<LineType>(type);
        ProjectFacts facts;
        facts.lines = {{0, lineType}};
        facts.hasCANopen = carriesCANopen(lineType);
        facts.hasJ1939 = carriesJ1939(lineType);
        facts.hasRaw = lineType == LineType::RawCan;
        QByteArray letters;
        for (const GeneratorStep &step : generatorSteps()) {
            if (!linesOfStep(step, facts).isEmpty())
                letters += step.letter;
        }
        QTEST(letters, "letters");
    }
};

QTEST_GUILESS_MAIN(tst_GeneratorSteps)
#include "tst_generatorsteps.moc"
