// What the sources of DatabaseTextConverter share.
#pragma once

#include "store/textrows.h"
#include "support/numbers.h"

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
