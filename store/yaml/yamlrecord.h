// Records of a project as maps of the YAML form: what differs from a base record is written, and
// reading puts it over the same base. So reading undoes writing whatever the base is.
#pragma once

#include "store/yaml/yamlcells.h"
#include "store/yaml/yamlcolumns.h"

#include <cstring>
#include <limits>
#include <vector>

namespace YamlRecord
{

/// What the column of that record can hold.
template <class Record>
YamlCells::Bounds boundsOf(const Column<Record> &column)
{
    Record probe;
    column.set(probe, QVariant(qlonglong(-1)));
    if (qint64 high = column.get(probe).toLongLong(); high >= 0) {
        // A type with few numbers counts the others as its first one.
        for (; high < 0xFF; ++high) {
            column.set(probe, QVariant(qlonglong(high + 1)));
            if (column.get(probe).toLongLong() != high + 1)
                break;
        }
        return {0, high};
    }
    YamlCells::Bounds bounds{-128, 127};
    for (const int bits : {15, 31, 63}) {
        const qint64 high = std::numeric_limits<qint64>::max() >> (63 - bits);
        column.set(probe, QVariant(qlonglong(high)));
        if (column.get(probe).toLongLong() == high)
            bounds = {-high - 1, high};
    }
    return bounds;
}

/// The same for the column in place \a i. They are looked for once: a record has one table.
template <class Record>
YamlCells::Bounds boundsOf(const YamlTable<Record> &table, int i)
{
    static const std::vector<YamlCells::Bounds> all = [&table] {
        std::vector<YamlCells::Bounds> bounds;
        for (int column = 0; column < table.count; ++column)
            bounds.push_back(boundsOf(table.columns[column]));
        return bounds;
    }();
    return all[size_t(i)];
}

/// The place of the column with that word in its table; -1 if there is none.
template <class Record>
int find(const YamlTable<Record> &table, YamlNode key)
{
    for (int i = 0; i < table.count; ++i) {
        if (table.words[i].word && key.is(table.words[i].word))
            return i;
    }
    return -1;
}

template <class Record>
const Column<Record> *column(const YamlTable<Record> &table, const char *word)
{
    for (int i = 0; i < table.count; ++i) {
        if (table.words[i].word && std::strcmp(table.words[i].word, word) == 0)
            return &table.columns[i];
    }
    return nullptr;
}

/// All words of a table, for messages.
template <class Record>
QStringList words(const YamlTable<Record> &table)
{
    QStringList result;
    for (int i = 0; i < table.count; ++i) {
        if (table.words[i].word)
            result << QString::fromLatin1(table.words[i].word);
    }
    return result;
}

/// Sets the column with the word \a key, if there is one. What does not fit is told, and the record
/// keeps what it has. False if the table has no such column.
template <class Record>
bool readColumn(const YamlTable<Record> &table, YamlNode key, YamlNode value, Record *record,
                YamlContext &context)
{
    const int i = find(table, key);
    if (i < 0)
        return false;
    if (const auto cell = YamlCells::fromYaml(table.words[i], value, boundsOf(table, i), context))
        table.columns[i].set(*record, *cell);
    return true;
}

/// Sets the columns that \a map has; the entries with other keys are what it gives.
template <class Record>
QVector<YamlNode::Entry> read(const YamlTable<Record> &table, YamlNode map, Record *record,
                              YamlContext &context)
{
    QVector<YamlNode::Entry> others;
    const QVector<YamlNode::Entry> entries = map.entries();
    for (const YamlNode::Entry &entry : entries) {
        if (!readColumn(table, entry.key, entry.value, record, context))
            others.append(entry);
    }
    return others;
}

/// Do both hold the same in that column?
template <class Record>
bool isEqual(const Column<Record> &column, const Record &one, const Record &other)
{
    return column.get(one) == column.get(other);
}

/// Do both hold the same in all columns? Unlike the operators of the records.
template <class Record>
bool isEqual(const YamlTable<Record> &table, const Record &one, const Record &other)
{
    for (int i = 0; i < table.count; ++i) {
        if (!isEqual(table.columns[i], one, other))
            return false;
    }
    return true;
}

/// Appends the column in place \a i to \a map if the record differs from \a base there.
template <class Record>
void writeColumn(const YamlTable<Record> &table, int i, const Record &record, const Record &base,
                 YamlValue *map)
{
    if (table.words[i].word && !isEqual(table.columns[i], record, base))
        map->add(QString::fromLatin1(table.words[i].word),
                 YamlCells::toYaml(table.words[i], table.columns[i].get(record)));
}

/// Appends what differs from \a base, in the order of the table.
template <class Record>
void write(const YamlTable<Record> &table, const Record &record, const Record &base, YamlValue *map)
{
    for (int i = 0; i < table.count; ++i)
        writeColumn(table, i, record, base, map);
}

} // namespace YamlRecord
