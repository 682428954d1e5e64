// An object with its subindices as a map of the YAML form.
//
// A variable has its words in one map. An array has the words of its first member, and "members"
// only for what differs in others. All other objects have all members.
#pragma once

#include "formats/yamlwriter.h"
#include "store/projectrecords.h"
#include "store/yaml/yamlcontext.h"
#include "store/yaml/yamldefaults.h"

namespace YamlObject
{

void read(YamlNode map, ObjectRecord *object, const YamlDefaults &defaults, YamlContext &context);
YamlValue write(const ObjectRecord &object, const YamlDefaults &defaults);

/// A variable: one subindex, with all that the object has in common with it.
bool isVariable(const ObjectRecord &object);
/// Puts what \a entries say over the variable \a base, and tells of all else; \a where is "an
/// object", say.
void readVariable(const QVector<YamlNode::Entry> &entries, const ObjectRecord &base,
                  const QString &where, ObjectRecord *object, const YamlDefaults &defaults,
                  YamlContext &context);
void writeVariable(const ObjectRecord &object, const ObjectRecord &base,
                   const YamlDefaults &defaults, YamlValue *map);

/// Subindex 0 of records and arrays.
SubIndexData countMember(quint8 highest, const YamlDefaults &defaults);

} // namespace YamlObject
