// The columns in which two records differ.
#pragma once

#include "store/comparison/projectchange.h"
#include "store/yaml/yamlrecord.h"

#include <algorithm>
#include <initializer_list>

namespace ChangedFields
{

/// A field of both values; an empty one was not there. Long ones are cut.
ChangedField field(const QString &name, const QString &before, const QString &after);

/// Does the column describe a new or removed record? Its name stands elsewhere, where its value is
/// follows from the variable, and what is kept for other tools tells nobody what it is.
bool isTelling(const YamlColumn &column);

/// Is it told of a new or removed record even if it is what most have?
bool isAlwaysTold(const YamlColumn &column);

using Words = std::initializer_list<const char *>;

inline bool isOneOf(const char *word, Words words)
{
    return std::any_of(words.begin(), words.end(),
                       [word](const char *other) { return isSameText(word, other); });
}

template <class Record>
QString shown(const YamlTable<Record> &table, int i, const Record &record)
{
    return YamlWriter::oneLine(YamlCells::toYaml(table.words[i], table.columns[i].get(record)));
}

/// Of a record that both projects have: columns with other values, but for those of \a except.
template <class Record>
QVector<ChangedField> ofBoth(const YamlTable<Record> &table, const Record &before,
                             const Record &after, Words except = {})
{
    QVector<ChangedField> fields;
    for (int i = 0; i < table.count; ++i) {
        const char *word = table.words[i].word;
        if (word && !YamlRecord::isEqual(table.columns[i], before, after) && !isOneOf(word, except))
            fields << field(QLatin1String(word), shown(table, i, before), shown(table, i, after));
    }
    return fields;
}

/// Of a record that only one of them has: what tells it from others.
template <class Record>
QVector<ChangedField> ofOne(const YamlTable<Record> &table, const Record &record, bool isNew,
                            Words except = {})
{
    QVector<ChangedField> fields;
    const Record usual;
    for (int i = 0; i < table.count; ++i) {
        const YamlColumn &column = table.words[i];
        if (!isTelling(column) || isOneOf(column.word, except) ||
            (!isAlwaysTold(column) && YamlRecord::isEqual(table.columns[i], record, usual)))
            continue;
        const QString value = shown(table, i, record);
        fields << field(QLatin1String(column.word), isNew ? QString() : value,
                        isNew ? value : QString());
    }
    return fields;
}

/// The same for a record of which one of \a before and \a after may be null.
template <class Record>
QVector<ChangedField> of(const YamlTable<Record> &table, const Record *before, const Record *after,
                         Words except = {})
{
    if (before && after)
        return ofBoth(table, *before, *after, except);
    return ofOne(table, after ? *after : *before, after != nullptr, except);
}

} // namespace ChangedFields
