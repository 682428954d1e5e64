// The settings stores of a project in the YAML form: those with an element for each line stand with
// the line.
#pragma once

#include "formats/yamlwriter.h"
#include "store/projectrecords.h"
#include "store/yaml/yamlcontext.h"

/// Takes the settings of a project apart, or puts them together.
class YamlSettings
{
public:
    // --- Reading: the project's keys and those of all lines, in any order, then finish() ---

    /// False if the key is not about settings.
    bool readOfProject(const YamlNode::Entry &entry, YamlContext &context);
    bool readOfLine(quint8 line, const YamlNode::Entry &entry, YamlContext &context);
    /// Puts all into the five stores of \a project, whose lines are all there.
    void finish(ProjectRecord *project, YamlContext &context);

    // --- Writing ---

    explicit YamlSettings(const ProjectRecord &project);
    YamlSettings() = default;
    void writeOfProject(YamlWriter &writer) const;
    /// The protocol, which is the first key of a line.
    void writeProtocol(quint8 line, YamlWriter &writer) const;
    /// All other settings that stand with the line.
    void writeOfLine(quint8 line, YamlWriter &writer) const;

    /// The keys that readOfProject() and readOfLine() take.
    static QStringList keysOfProject();
    static QStringList keysOfLine();
};
