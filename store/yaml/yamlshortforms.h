// Short forms of a line: objects of the standards as a few values.
//
// A form is written exactly if all that it leaves out is as yamlstandard.h has it; which words may
// stand beside a default value is fixed. Reading takes all words of a subindex there.
#pragma once

#include "formats/yamlwriter.h"
#include "store/yaml/yamlobjects.h"
#include "store/yaml/yamlstandard.h"

#include <QSet>

#include <vector>

class YamlShortForms
{
public:
    YamlShortForms(YamlObjectSink *target, YamlContext *who) : sink(target), context(*who) {}

    /// False if the key is no short form.
    bool read(const YamlNode::Entry &entry);
    /// When all objects of the line were read: items of mappings get the sizes of what they name.
    void finish();

    /// Writes what fits, and gives the objects that need not be written any more.
    static QSet<quint16> write(const std::map<quint16, ObjectRecord> &objects, YamlWriter &writer);

    static QStringList keys();

private:
    /// An item of a mapping that names an object.
    struct Item {
        quint16 index;
        quint8 sub;
        quint16 target;
        quint8 targetSub;
    };

    YamlObjectSink *sink;
    YamlContext &context;
    std::vector<Item> items;
};
