// The generation phase as data: which generator runs for which project, in which order.
#pragma once

#include "generators/abstractgenerator.h"
#include "generators/objdict/objectnames.h"
#include "store/linetype.h"
#include "store/objectdatabase.h"
#include "store/projectfeatures.h"

#include <QList>
#include <QVector>

#include <memory>

struct ProjectLine {
    quint8 number;
    LineType type;

    /// Lines from 240 on count as lines of the project, but its generators do not hang on them.
    constexpr bool choosesGenerators() const { return number < 240; }
};

/// What the choice of generators depends on.
struct ProjectFacts {
    QVector<ProjectLine> lines; ///< all but the scratch lines, ascending
    bool hasCANopen = false;
    bool hasJ1939 = false;
    bool hasRaw = false;

    ProjectFeatures features; ///< as generated files take them
    bool isForV4 = false;     ///< which generation of the stack the files are for

    // What the lines hold; see readContentFacts().
    bool hasSrdo = false;
    bool hasVirtualObjects = false; ///< that the stack of the project reads

    std::shared_ptr<ObjectNamesByLine> objectNames; ///< if they are made already

    bool isMultiLine() const { return lines.size() >= 2; }
    bool hasTypedLine() const { return hasCANopen || hasJ1939 || hasRaw; }
    bool isPureCANopen() const { return hasCANopen && !hasJ1939 && !hasRaw; }
    bool isPureJ1939() const { return hasJ1939 && !hasCANopen && !hasRaw; }
    /// Several protocols, which share the stack's tables.
    bool isMixed() const { return (hasJ1939 && hasCANopen) || hasRaw; }
    /// Does the tool declare variables of the application?
    bool hasDeclarations() const
    {
        return hasJ1939 || hasRaw || (hasCANopen && features.hasGeneratedVariables());
    }
};

/// The lines and their types, and the features.
ProjectFacts readProjectFacts(const ObjectDataBase &store);

/// Does the generated C of the device describe the objects of its lines, whatever they speak?
bool hasDictionary(const ProjectFacts &facts);

/// Adds what the lines hold. Read after the check, which may change the objects.
void readContentFacts(ObjectDataBase &store, ProjectFacts &facts);

/// How often a step runs, and with which active line.
enum class StepLines {
    Once,    ///< one file for the project, active line 0
    CANopen, ///< a file for each line that carries CANopen
    J1939,   ///< a file for each line that carries J1939
    RawCan,  ///< a file for each line of raw CAN
    All,     ///< a file for each line
};

/// One file, or one file a line. The texts are filled with the output directory and the project
/// name.
struct GeneratorStep {
    /// What it writes, as the debug log names it; of two protocols that describe their lines in
    /// files of one name, with the protocol.
    const char *file;
    bool (*when)(const ProjectFacts &);
    StepLines lines;
    bool takesMultiLine; ///< the generator is told that the project has several lines
    std::unique_ptr<AbstractGenerator> (*create)(const ObjectDataBase &, const ProjectFacts &);
    const char *notWritable;
    const char *started; ///< null: nothing is said
};

struct StepRange {
    const GeneratorStep *first;
    const GeneratorStep *last;
    const GeneratorStep *begin() const { return first; }
    const GeneratorStep *end() const { return last; }
};

/// All steps but the EDS files, whose number depends on the objects, in the order in which they
/// run: those before and those after the EDS files.
StepRange generatorSteps();
StepRange stepsBehindEds();

/// The active lines of the step's runs; empty if the project does not ask for the step.
QList<quint8> linesOfStep(const GeneratorStep &step, const ProjectFacts &facts);
