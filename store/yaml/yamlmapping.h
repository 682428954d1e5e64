// The mapping of a PDO in its short form: a list of what is in it.
#pragma once

#include "formats/yamlwriter.h"
#include "store/projectrecords.h"
#include "store/yaml/yamlcontext.h"
#include "store/yaml/yamldefaults.h"
#include "store/yaml/yamlstandard.h"

#include <vector>

namespace YamlMapping
{

/// An entry of a mapping that names what it maps: 0x2011 or 0x2012:1.
struct Item {
    quint8 place = 0; ///< its subindex of the mapping
    quint16 index = 0;
    quint8 sub = 0;
};

struct Mapping {
    ObjectRecord object;
    std::vector<Item> items; ///< whose default values want the lengths of what they name
};

/// Takes the keys of a PDO that are about its mapping; the others are what it gives.
QVector<YamlNode::Entry> read(const QVector<YamlNode::Entry> &entries, const YamlStandardForm &form,
                              int number, Mapping *mapping, const YamlDefaults &defaults,
                              YamlContext &context);

/// The default value of an item.
QString valueOf(const Item &item, const std::map<quint16, ObjectRecord> &objects);

/// Appends to \a map what read() needs. False if the object is no mapping that has a short form.
bool write(const ObjectRecord &object, const YamlStandardForm &form, int number,
           const std::map<quint16, ObjectRecord> &objects, const YamlDefaults &defaults,
           YamlValue *map);

QStringList keys();

} // namespace YamlMapping
