// What the sources of DatabaseTextConverter share.
#pragma once

#include "formats/initext.h"
#include "store/objectdatabase.h"
#include "support/numbers.h"

#include <QStringList>
#include <QVector>

/// A row as the text form has it.
struct TextRow {
    QStringList numbers; ///< of its key
    QVector<ObjectDataBase::ColumnValue> cells;
    const IniText::Entry *first = nullptr; ///< the entry of the first cell; the others follow it
    QVector<int> lists;                    ///< cells with commas and without quotation marks
};

namespace TextForm
{

/// Tables, and groups named like them, that are no part of the text form.
bool isExcludedTable(const QString &table);

/// Groups whose keys are settings. A name that holds more is read as well.
bool isSettings(const QString &group);

/// The line above 16 bits of the index.
inline quint32 objectKey(int line, const QString &index)
{
    return quint32(line) << 16 | Numbers::toUIntByPrefix(index);
}

/// The index of a row of subindices above 8 bits of its subindex.
inline quint32 subKey(const TextRow &row)
{
    return Numbers::toUIntByPrefix(row.numbers.at(0)) << 8 |
           Numbers::toUIntByPrefix(row.numbers.at(1));
}

} // namespace TextForm
