// The table of generation steps and the facts that select them.
#include "app/generatorsteps.h"

#include "generators/codefeatures.h"
#include "generators/defines/codefinegenerator.h"
#include "generators/defines/gendefinegenerator.h"
#include "generators/descriptions/csvgenerator.h"
#include "generators/descriptions/dbcgenerator.h"
#include "generators/descriptions/htmlgenerator.h"
#include "generators/descriptions/icsvgenerator.h"
#include "generators/descriptions/j1939htmlgenerator.h"
#include "generators/descriptions/j1939textdocgenerator.h"
#include "generators/descriptions/textdocgenerator.h"
#include "generators/descriptions/xddgenerator.h"
#include "generators/generalsettings.h"
#include "generators/j1939/extdeclgenerator.h"
#include "generators/j1939/j1939adaptergenerator.h"
#include "generators/j1939/pgngenerator.h"
#include "generators/j1939/sdmgenerator.h"
#include "generators/multiproto/indicationgenerator.h"
#include "generators/multiproto/multiprogenerator.h"
#include "generators/objdict/indicesgenerator.h"
#include "generators/objdict/objdictgenerator.h"
#include "generators/objdict/srdogenerator.h"
#include "generators/objdict/vobjdictgenerator.h"

#include <iterator>

namespace
{

/// The lines above it are scratch lines.
constexpr quint8 kHighestLine = 253;

template <typename Generator>
std::unique_ptr<AbstractGenerator> make(const ObjectDataBase &, const ProjectFacts &)
{
    return std::make_unique<Generator>();
}

/// The class for the stack that the project is generated for.
template <typename Classic, typename V4, typename... Arguments>
std::unique_ptr<AbstractGenerator> makeForStack(const ProjectFacts &facts,
                                                const Arguments &...arguments)
{
    if (facts.isForV4)
        return std::make_unique<V4>(arguments...);
    return std::make_unique<Classic>(arguments...);
}

std::unique_ptr<AbstractGenerator> makeIndices(const ObjectDataBase &, const ProjectFacts &facts)
{
    auto generator = std::make_unique<IndicesGenerator>();
    QList<quint8> lines;
    for (const ProjectLine &line : facts.lines)
        lines << line.number;
    generator->setLines(lines);
    generator->setNames(facts.objectNames);
    return generator;
}

std::unique_ptr<AbstractGenerator> makeObjDict(const ObjectDataBase &store,
                                               const ProjectFacts &facts)
{
    return makeForStack<ObjDictGenerator, ObjDictGeneratorV4>(
        facts, GeneralSettings(store).decimal("compact_array_description") == 1);
}

std::unique_ptr<AbstractGenerator> makeVirtualObjects(const ObjectDataBase &,
                                                      const ProjectFacts &facts)
{
    auto generator = std::make_unique<VobjDictGenerator>();
    generator->cia510ServerMode = facts.isPureJ1939();
    return generator;
}

std::unique_ptr<AbstractGenerator> makeMultiPro(const ObjectDataBase &, const ProjectFacts &facts)
{
    return makeForStack<MultiProGenerator, MultiProGeneratorV4>(facts);
}

std::unique_ptr<AbstractGenerator> makeDefines(const ObjectDataBase &, const ProjectFacts &facts)
{
    auto generator = makeForStack<CoDefineGenerator, GenDefineGenerator>(facts);
    auto &defines = static_cast<DefineGenerator &>(*generator);
    defines.j1939Present = facts.hasJ1939;
    defines.multiProtocol = facts.isMixed();
    return generator;
}

std::unique_ptr<AbstractGenerator> makeGroupTables(const ObjectDataBase &,
                                                   const ProjectFacts &facts)
{
    return makeForStack<PGNGenerator, PGNGeneratorV4>(facts);
}

/// The SDO server of a J1939 device is the same for both generations of the stack.
std::unique_ptr<AbstractGenerator> makeSdoServerObjDict(const ObjectDataBase &,
                                                        const ProjectFacts &)
{
    auto generator = std::make_unique<ObjDictGenerator>(false);
    generator->cia510ServerMode = true;
    return generator;
}

std::unique_ptr<AbstractGenerator> makeDeclarations(const ObjectDataBase &,
                                                    const ProjectFacts &facts)
{
    return makeForStack<ExtDeclGenerator, ExtDeclGeneratorV4>(facts);
}

std::unique_ptr<AbstractGenerator> makeIcsv(const ObjectDataBase &store, const ProjectFacts &)
{
    auto generator = std::make_unique<ICSVGenerator>();
    if (store.getMiscSettingsValue(QStringLiteral("disableDocu")) == QLatin1String("true"))
        generator->setIncludeDescription(false);
    return generator;
}

using Facts = const ProjectFacts &;

// clang-format off
constexpr GeneratorStep kSteps[] = {                // row order is run order
    {"gen_indices.h",
     [](Facts f) { return f.hasTypedLine(); }, StepLines::Once, true, makeIndices,
     "The file in gen_indices.h in %1 is not writable",
     "Generation of gen_indices.h in %1 started"},
    {"<project>_doc.txt of CANopen",
     [](Facts f) { return f.hasCANopen; }, StepLines::CANopen, true, make<TextDocGenerator>,
     "The file in %2_doc.txt in %1 is not writable",
     "Generation of textual object dictionary documentation in %1 started"},
    {"<project>.html of CANopen",
     [](Facts f) { return f.hasCANopen; }, StepLines::CANopen, true, make<HTMLGenerator>,
     "The file in %2.html in %1 is not writable",
     "Generation of HTML object dictionary documentation in %1 started"},
    {"gen_objdict.c",
     [](Facts f) { return f.isPureCANopen(); }, StepLines::Once, false, makeObjDict,
     "The file gen_objdict.c in %1 is not writable",
     "Generation of gen_objdict.c in %1 started"},
    // Deliberate: also beside other protocols where gen_define.h announces the tables, which the
    // stack would miss when it is linked; held by tst_mixedc.
    {"gen_vobjdict.c",
     [](Facts f) { return f.hasVirtualObjects; }, StepLines::Once, false,
     makeVirtualObjects,
     "The file gen_vobjdict.c in %1 is not writable",
     "Generation of gen_vobjdict.c in %1 started"},
    {"gen_mp.c",
     [](Facts f) { return f.isMixed(); }, StepLines::Once, false, makeMultiPro,
     "The file gen_mp.c in %1 is not writable",
     "Generation of gen_mp.c in %1 started"},
    {"<project>_doc.txt of J1939",
     [](Facts f) { return f.isMixed(); }, StepLines::J1939, true, make<J1939TextDocGenerator>,
     "The file in %2_doc.txt in %1 is not writable",
     "Generation of textual PGN documentation in %1 started"},
    {"<project>.html of J1939",
     [](Facts f) { return f.isMixed(); }, StepLines::J1939, true, make<J1939HTMLGenerator>,
     "The file in %2.html in %1 is not writable",
     "Generation of HTML pgn documentation in %1 started"},
    // Deliberate: the text speaks of an HTML file, here and below; held by tst_generatorsteps.
    {"<project>.dbc",
     [](Facts f) { return f.isMixed(); }, StepLines::J1939, true, make<DBCGenerator>,
     "The file in %2.html in %1 is not writable",
     "Generation of DBC_file in %1 started"},
    {"<project>.dbc of raw CAN",
     [](Facts f) { return f.hasRaw && f.features.hasPortableDescriptions(); }, StepLines::RawCan, true,
     make<DBCGenerator>,
     "The file %2.dbc in %1 is not writable",
     "Generation of DBC_file in %1 started"},
    {"gen_srdo.c",
     [](Facts f) { return f.hasSrdo; }, StepLines::Once, false, make<SrdoGenerator>,
     "The file gen_srdo.c in %1 is not writable",
     nullptr},
    {"gen_define.h",
     [](Facts) { return true; }, StepLines::Once, false, makeDefines,
     "The file gen_define.h in %1 is not writable",
     "Generation of gen_define.h in %1 started"},
    {"gen_pgn.c",
     [](Facts f) { return f.isPureJ1939(); }, StepLines::Once, false, makeGroupTables,
     "The file gen_pgn.c in %1 is not writable",
     "Generation of gen_pgn.c in %1 started"},
    {"gen_objdict.c",
     [](Facts f) { return f.isPureJ1939() && f.features.hasSdoServer(); }, StepLines::Once, false,
     makeSdoServerObjDict,
     "The file gen_objdict.c in %1 is not writable",
     "Generation of gen_objdict.c for CAM11/CAM21 SDO server in %1 started"},
    // Deliberate: a pure J1939 project writes this file twice, here and below; held by
    // tst_generatorsteps.
    {"gen_sdg.c",
     [](Facts f) { return f.isPureJ1939() && f.features.hasSafetyGroups(); }, StepLines::Once, false,
     make<SDMGenerator>,
     "The file in %1 is not writable",
     "Generation of file in %1 started"},
    {"<project>_doc.txt of J1939",
     [](Facts f) { return f.isPureJ1939(); }, StepLines::All, true,
     make<J1939TextDocGenerator>,
     "The file in %2_doc.txt in %1 is not writable",
     "Generation of textual PGN documentation in %1 started"},
    {"<project>.html of J1939",
     [](Facts f) { return f.isPureJ1939(); }, StepLines::All, true, make<J1939HTMLGenerator>,
     "The file in %2.html in %1 is not writable",
     "Generation of HTML pgn documentation in %1 started"},
    {"<project>.dbc",
     [](Facts f) { return f.isPureJ1939(); }, StepLines::J1939, true, make<DBCGenerator>,
     "The file in %2.html in %1 is not writable",
     "Generation of DBC_file in %1 started"},
    {"gen_j1939_adapter.c",
     [](Facts f) { return f.isPureJ1939() && f.features.hasAdapter(); }, StepLines::Once, false,
     make<J1939AdapterGenerator>,
     "The file gen_j1939_adapter.c in %1 is not writable",
     "Generation of gen_j1939_adapter.c in %1 started"},
    {"gen_extern_decl.h",
     [](Facts f) { return f.hasDeclarations(); }, StepLines::Once, false, makeDeclarations,
     "The file gen_extern_decl.h in %1 is not writable",
     "Generation of gen_extern_decl.h in %1 started"},
    {"gen_sdg.c",
     [](Facts f) { return (f.hasJ1939 || f.hasRaw) && f.features.hasSafetyGroups(); }, StepLines::Once,
     false, make<SDMGenerator>,
     "The file in %1 is not writable",
     "Generation of file in %1 started"},
    {"gen_indication.h",
     [](Facts f) { return f.hasCANopen; }, StepLines::Once, false, make<indicationgenerator>,
     "The file gen_indication.h in %1 is not writable",
     "Generation of gen_indication in %1 started"},
    {"<project>.csv",
     [](Facts f) { return f.hasCANopen; }, StepLines::CANopen, true, make<CSVGenerator>,
     "The file %2.csv in %1 is not writable",
     "Generation of CSV file (deprecated) in %1 started"},
    {"<project>.icsv",
     [](Facts f) { return f.hasCANopen; }, StepLines::CANopen, true, makeIcsv,
     "The file %2.icsv in %1 is not writable",
     "Generation of ICSV file in %1 started"},
    {"<project>_<line>_canopen.dbc",
     [](Facts f) { return f.hasCANopen && f.features.hasPortableDescriptions(); }, StepLines::CANopen,
     true, make<CanopenDbcGenerator>,
     "The DBC file of the CANopen device in %1 is not writable",
     "Generation of DBC file of the CANopen device in %1 started"},
};

constexpr GeneratorStep kStepsBehindEds[] = {
    {"<project>.xdd",
     [](Facts f) { return f.hasCANopen && f.features.hasCanFd(); }, StepLines::CANopen, true,
     make<XDDGenerator>,
     "The XDD file %2.xdd in %1 is not writable",
     "Generation of XDD file in %1 started"},
};
// clang-format on

bool isMeantFor(StepLines lines, LineType type)
{
    switch (lines) {
    case StepLines::CANopen:
        return carriesCANopen(type);
    case StepLines::J1939:
        return carriesJ1939(type);
    case StepLines::RawCan:
        return type == LineType::RawCan;
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
    facts.features = readCodeFeatures(store);
    // Deliberate: the setting as it is, which the files take as the rest of a line of C; held by
    // tst_generatorsteps.
    facts.isForV4 = readProjectFeatures(store).isForV4();
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

bool hasDictionary(const ProjectFacts &facts)
{
    return facts.hasCANopen || (facts.isPureJ1939() && facts.features.hasSdoServer());
}

void readContentFacts(ObjectDataBase &store, ProjectFacts &facts)
{
    for (const ProjectLine &line : facts.lines)
        facts.hasSrdo |=
            !store.getIndices(line.number, ObjectRanges::kSrdoParameterPlaces).isEmpty();
    VobjDictGenerator virtualObjects;
    virtualObjects.setDataBase(&store);
    const bool readsVirtualObjects = facts.isMixed()
                                         ? facts.hasCANopen && !facts.isForV4
                                         : facts.hasCANopen || facts.features.hasSdoServer();
    facts.hasVirtualObjects = readsVirtualObjects && virtualObjects.areVirtualObjectsPresent();
}

StepRange generatorSteps()
{
    return {std::begin(kSteps), std::end(kSteps)};
}

StepRange stepsBehindEds()
{
    return {std::begin(kStepsBehindEds), std::end(kStepsBehindEds)};
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
