// The columns of object tables, and how a cell becomes text: for those that write tables and those
// that read them. CsvReader takes the text apart.
#pragma once

#include <QString>

namespace CsvTable
{

/// In the order in which tables are written; readers go by the names.
enum class Column {
    Index,
    Sub,
    Line,
    ObjectCode,
    EdsName,
    DataType,
    Access,
    Mapable,
    Value,
    HasDefault,
    DefaultInEds,
    HasLimit,
    LowLimit,
    UpLimit,
    Size,
    Implementation,
    VarName,
    NvStorage,
    Description,
    Denotation,
    Metadata,
    Count
};
constexpr int kColumnCount = static_cast<int>(Column::Count);

/// In lower case.
const char *nameOf(Column column);

/// Does only a grouped table have the column? Objects have rows of their own there, ahead of those
/// of their subindices.
constexpr bool isOfGroupedTable(Column column)
{
    return column == Column::Denotation || column == Column::Metadata;
}

/// Could \a text not be read back as it stands?
bool needsQuotes(const QString &text);

/// \a text as a field; in quotes if asked for or needed.
QString field(const QString &text, bool inQuotes = false);

} // namespace CsvTable
