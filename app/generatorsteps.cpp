// The table of generation steps and the facts that select them.
#include "app/generatorsteps.h"

#include "generators/descriptions/textdocgenerator.h"

#include <iterator>

namespace
{

/// The lines above it are scratch lines.
constexpr quint8 kHighestLine = 253;

template <typename Generator>
std::unique_ptr<AbstractGenerator> make(const ObjectDataBase &)
{
    return std::make_unique<Generator>();
}

// clang-format off
constexpr GeneratorStep kSteps[] = {                // row order is run order
    {'B', [](const ProjectFacts &f) { return f.hasCANopen; }, StepLines::CANopen, true,
     make<TextDocGenerator>,
     "The file in %2_doc.txt in %1 is not writable",
     "Generation of textual object dictionary documentation in %1 started"},
};
// clang-format on

bool isMeantFor(StepLines lines, LineType type)
{
    switch (lines) {
    case StepLines::CANopen:
        return carriesCANopen(type);
    case StepLines::J1939:
        return carriesJ1939(type);
    case StepLines::All:
        return true;
    case StepLines::Once:
        break;
    }
    return false;
}

} // namespace

ProjectFacts readProjectFacts(const ObjectDataBase &store)
{
    ProjectFacts facts;
    const QList<quint8> nodes = store.getNodes();
    for (const quint8 line : nodes) {
        if (line > kHighestLine)
            continue;
        const ProjectLine projectLine = {line, readLineType(store, line)};
        facts.lines.append(projectLine);
        if (!projectLine.choosesGenerators())
            continue;
        facts.hasCANopen |= carriesCANopen(projectLine.type);
        facts.hasJ1939 |= carriesJ1939(projectLine.type);
        facts.hasRaw |= projectLine.type == LineType::RawCan;
    }
    return facts;
}

StepRange generatorSteps()
{
    return {std::begin(kSteps), std::end(kSteps)};
}

QList<quint8> linesOfStep(const GeneratorStep &step, const ProjectFacts &facts)
{
    QList<quint8> lines;
    if (!step.when(facts))
        return lines;
    if (step.lines == StepLines::Once)
        return {0};
    for (const ProjectLine &line : facts.lines) {
        if (isMeantFor(step.lines, line.type))
            lines << line.number;
    }
    return lines;
}
