// Words and quotes of object tables.
#include "formats/csvtable.h"

#include "support/characters.h"

#include <algorithm>

namespace
{

struct ColumnRow {
    CsvTable::Column column;
    const char *name;
};

// clang-format off
constexpr ColumnRow kColumns[] = { // order of the enumeration
    {CsvTable::Column::Index,          "index"},
    {CsvTable::Column::Sub,            "sub"},
    {CsvTable::Column::Line,           "line"},
    {CsvTable::Column::ObjectCode,     "objectcode"},
    {CsvTable::Column::EdsName,        "edsname"},
    {CsvTable::Column::DataType,       "datatype"},
    {CsvTable::Column::Access,         "access"},
    {CsvTable::Column::Mapable,        "mapable"},
    {CsvTable::Column::Value,          "value"},
    {CsvTable::Column::HasDefault,     "hasdefault"},
    {CsvTable::Column::DefaultInEds,   "defaultineds"},
    {CsvTable::Column::HasLimit,       "haslimit"},
    {CsvTable::Column::LowLimit,       "lowlimit"},
    {CsvTable::Column::UpLimit,        "uplimit"},
    {CsvTable::Column::Size,           "size"},
    {CsvTable::Column::Implementation, "implementation"},
    {CsvTable::Column::VarName,        "varname"},
    {CsvTable::Column::NvStorage,      "nvstorage"},
    {CsvTable::Column::Description,    "description"},
    {CsvTable::Column::Denotation,     "denotation"},
    {CsvTable::Column::Metadata,       "metadata"},
};
// clang-format on

constexpr bool followsEnumeration()
{
    int number = 0;
    for (const ColumnRow &row : kColumns) {
        if (static_cast<int>(row.column) != number++)
            return false;
    }
    return number == CsvTable::kColumnCount;
}
static_assert(followsEnumeration(), "one row for each column");

/// Some readers end lines also where Unicode does; NUL ends the field for others.
bool isSeparator(QChar character)
{
    const ushort code = character.unicode();
    return code == ';' || code == '"' || (code >= '\n' && code <= '\r') || code == 0x85 ||
           code == 0x2028 || code == 0x2029 || code == 0;
}

} // namespace

const char *CsvTable::nameOf(Column column)
{
    return kColumns[static_cast<int>(column)].name;
}

bool CsvTable::needsQuotes(const QString &text)
{
    using namespace Characters;
    const auto mayNeed = [](Eight characters) {
        return areOdd(characters) | Eight(characters == quint16(';')) |
               Eight(characters == quint16('"'));
    };
    return any(text, mayNeed) && std::any_of(text.begin(), text.end(), isSeparator);
}

QString CsvTable::field(const QString &text, bool inQuotes)
{
    if (!inQuotes && !needsQuotes(text))
        return text;
    QString content = text;
    content.replace(QLatin1Char('"'), QLatin1String("\"\"")).replace(QChar(0), QLatin1Char(' '));
    return QLatin1Char('"') + content + QLatin1Char('"');
}
