// What stands between and beside the lines of a project in the YAML form.
#pragma once

#include "formats/yamlwriter.h"
#include "store/projectrecords.h"
#include "store/yaml/yamlcontext.h"

#include <QHash>

/// Connections, signals and their groups, groups of lines, nodes of other devices, and PDOs that
/// the user fixed. Signals and locks stand in their line, if there is one, else beside the lines.
class YamlNetwork
{
public:
    // --- Reading ---

    YamlNetwork(ProjectRecord *target, YamlContext &told) : project(target), context(told) {}

    /// False if the key is about something else.
    bool readOfProject(const YamlNode::Entry &entry);
    bool readOfLine(quint8 line, const YamlNode::Entry &entry);

    // --- Writing, in the order of the file ---

    static void writeBeforeLines(const ProjectRecord &project, YamlWriter &writer);
    static void writeOfLine(const ProjectRecord &project, quint8 line, YamlWriter &writer);
    static void writeAfterLines(const ProjectRecord &project, YamlWriter &writer);

    /// The keys that readOfProject() and readOfLine() take.
    static QStringList keysOfProject();
    static QStringList keysOfLine();

private:
    void readSignals(YamlNode map, std::optional<quint8> line);
    void readSignal(const YamlContext::Numbered &entry, std::optional<quint8> line);
    void readSignalGroups(YamlNode map);
    void readVirtualNodes(YamlNode map);
    void readLineGroups(YamlNode list);
    void readLocks(quint8 line, YamlNode map);
    QList<quint16> readIndices(YamlNode list);

    ProjectRecord *project;
    YamlContext &context;
    QHash<qint32, int> linesOfSignals; ///< of the file
};
