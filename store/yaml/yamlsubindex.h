// A subindex as a map of the YAML form.
#pragma once

#include "store/yaml/yamldefaults.h"
#include "store/yaml/yamlrecord.h"

namespace YamlSubIndex
{

/// \a base with what follows from other columns of \a record: a variable of the application where
/// one is named, a constant where the access is, the size of a text, the range of a type, and that
/// limits count which are given.
SubIndexData follow(SubIndexData base, const SubIndexData &record, const YamlDefaults &defaults);

/// Puts what \a entries say over \a base; the entries with other keys are what it gives.
QVector<YamlNode::Entry> read(const QVector<YamlNode::Entry> &entries, const SubIndexData &base,
                              SubIndexData *record, const YamlDefaults &defaults,
                              YamlContext &context);

/// Appends to \a map what read() needs to make the record of the same base.
void write(const SubIndexData &record, const SubIndexData &base, const YamlDefaults &defaults,
           YamlValue *map);

/// The keys that read() takes.
const QStringList &keys();

/// Do both hold the same but for the columns of these words, which end with a null?
bool isEqualBut(const char *const *words, const SubIndexData &one, const SubIndexData &other);

} // namespace YamlSubIndex
