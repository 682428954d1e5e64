// Short forms of a line: objects of the standards as a few values.
//
// A form is written exactly if all that it leaves out is as yamlstandard.h has it. A value is then
// the default of its subindex, or a map that names its variable or describes it as well. Reading
// takes all words of a subindex in such a map.
#pragma once

#include "formats/yamlwriter.h"
#include "store/yaml/yamlmapping.h"
#include "store/yaml/yamlobjects.h"
#include "store/yaml/yamlstandard.h"

#include <QSet>

#include <vector>

class YamlShortForms
{
public:
    YamlShortForms(YamlObjectSink *target, const YamlDefaults *ofLine, YamlContext *who)
        : sink(target), defaults(*ofLine), context(*who)
    {
    }

    /// False if the key is no short form.
    bool read(const YamlNode::Entry &entry);
    /// When all objects of the line were read: items of mappings get the sizes of what they name.
    void finish();

    /// Writes what fits, and gives the objects that need not be written any more.
    static QSet<quint16> write(const std::map<quint16, ObjectRecord> &objects,
                               const YamlDefaults &defaults, YamlWriter &writer);

    static QStringList keys();

private:
    void addUsual(const YamlStandardRow &row, YamlNode key);
    void readVariable(const YamlStandardRow &row, const YamlNode::Entry &entry);
    void readVariables(const YamlStandardForm &form, const YamlNode::Entry &entry);
    void readRecord(const YamlStandardForm &form, int number, const YamlNode::Entry &entry);
    void readRecords(const YamlStandardForm &form, const YamlNode::Entry &entry);
    void readMembers(const YamlStandardForm &form, const YamlNode::Entry &entry);
    QVector<YamlNode::Entry> readMapping(const YamlStandardForm &form, int number,
                                         const YamlNode::Entry &entry);

    YamlObjectSink *sink;
    const YamlDefaults &defaults;
    YamlContext &context;
    std::vector<std::pair<quint16, YamlMapping::Item>> items; ///< with the index of the mapping
};
