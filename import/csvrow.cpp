// What each column of an object table means.
#include "import/csvrow.h"

#include "formats/csvtable.h"
#include "support/accesstype.h"
#include "support/cohelper.h"
#include "support/editdistance.h"
#include "support/implementation.h"
#include "support/numbers.h"
#include "support/printable.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace
{

using CsvTable::Column;

bool isYes(const QString &text)
{
    return text.trimmed().compare(QLatin1String("yes"), Qt::CaseInsensitive) == 0;
}

/// Is there nothing in the cell, or what \a isKnown holds?
bool isEmptyOr(const QString &cell, bool isKnown)
{
    return isKnown || cell.trimmed().isEmpty();
}

bool isYesOrNo(const QString &cell)
{
    return isEmptyOr(
        cell, isYes(cell) || cell.trimmed().compare(QLatin1String("no"), Qt::CaseInsensitive) == 0);
}

bool readFlag(bool &flag, const QString &cell)
{
    bool isNumber = false;
    flag = Numbers::toIntDecimal(cell, &isNumber) != 0;
    return isEmptyOr(cell, isNumber);
}

bool readWriteDefault(CsvRow &row, const QString &cell)
{
    bool isNumber = false;
    const qint32 number = Numbers::toIntDecimal(cell, &isNumber);
    row.data.writeDefaultToEds = static_cast<quint8>(qBound(0, number, 0xFF));
    return isEmptyOr(cell, isNumber && row.data.writeDefaultToEds == number);
}

bool readMapping(CsvRow &row, const QString &cell)
{
    row.data.pdoMapping.fromCSVString(cell.trimmed());
    return isEmptyOr(cell, cell.trimmed().compare(row.data.pdoMapping.getCSVStringValue(),
                                                  Qt::CaseInsensitive) == 0);
}

bool readDataType(CsvRow &row, const QString &cell)
{
    bool isNumber = false;
    row.data.dataType = COHelper::mapDataTypeString(cell);
    return row.data.dataType != 0 ||
           isEmptyOr(cell, Numbers::toUIntByPrefix(cell, &isNumber) == 0 && isNumber);
}

bool readMetadata(CsvRow &row, const QString &cell)
{
    const QJsonDocument document = QJsonDocument::fromJson(cell.toUtf8());
    const QJsonObject object = document.object();
    row.data.metadata.clear();
    for (auto it = object.constBegin(); it != object.constEnd(); ++it)
        row.data.metadata.insert(it.key(), it.value().toString());
    return isEmptyOr(cell, document.isObject());
}

QStringList dataTypes()
{
    QStringList words;
    for (quint16 type = 0; type <= 0xFF; ++type)
        words << COHelper::index2DataTypeShortString(type) << COHelper::index2DataTypeString(type);
    return words;
}

QStringList accessTypes()
{
    return QStringList(std::begin(AccessType::kAll), std::end(AccessType::kAll));
}

QStringList implementations()
{
    QStringList words = {QStringLiteral("none")};
    for (quint8 number = 0; number <= Implementation::kVirtualObject; ++number)
        words << COHelper::implementation2Word(number);
    return words;
}

struct ColumnRow {
    Column column;
    /// False if the cell holds a word that \a read has no use for, and took something else.
    bool (*read)(CsvRow &row, const QString &cell);
    const char *replacement = ""; ///< what became of that word
    QStringList (*words)() = nullptr;
};

// clang-format off
constexpr ColumnRow kColumns[] = { // order of the enumeration
    {Column::Index, [](CsvRow &row, const QString &cell) {
        row.index = Numbers::toLongLongByPrefix(cell);
        return true; // 0 is the index of no row
    }},
    {Column::Sub, [](CsvRow &row, const QString &cell) {
        bool isNumber = false;
        row.sub = Numbers::toLongLongByPrefix(cell, &isNumber);
        row.isObject = cell.trimmed().isEmpty();
        return row.isObject || isNumber;
    }, "is no number, and counts as 0"},
    {Column::Line, [](CsvRow &row, const QString &cell) {
        bool isNumber = false;
        if (!cell.trimmed().isEmpty())
            row.line = Numbers::toUIntDecimal(cell, &isNumber);
        return isEmptyOr(cell, isNumber);
    }, "is no decimal number, and counts as 0"},
    {Column::ObjectCode, [](CsvRow &row, const QString &cell) {
        if (!cell.trimmed().isEmpty())
            row.objectCode = cell;
        return COHelper::string2objectCode(row.objectCode) != CANopen::ObjectCode::Null ||
               cell.trimmed().compare(QLatin1String("NULL"), Qt::CaseInsensitive) == 0;
    }, "is no object code, and counts as NULL: use VAR, ARRAY, RECORD or DOMAIN",
     [] { return QStringList{"VAR", "VARIABLE", "ARRAY", "RECORD", "DOMAIN"}; }},
    {Column::EdsName, [](CsvRow &row, const QString &cell) {
        row.data.name = cell;
        row.hasName = !cell.isEmpty();
        return true;
    }},
    {Column::DataType, readDataType, "is no data type, and counts as none: use a name such as U16, or its number", dataTypes},
    {Column::Access, [](CsvRow &row, const QString &cell) {
        row.data.accessType = COHelper::normalizeAccessType(cell);
        return isEmptyOr(cell, row.data.accessType.startsWith(cell.trimmed(), Qt::CaseInsensitive));
    }, "is no access type, and counts as ro: use const, ro, rw, wo, rwr or rww", accessTypes},
    {Column::Mapable, readMapping, "is no mapping, and counts as no: use no, default, optional, RPDO or TPDO",
     [] { return QStringList{"no", "default", "optional", "RPDO", "TPDO"}; }},
    {Column::Value, [](CsvRow &row, const QString &cell) { row.data.defaultValue = cell; return true; }},
    {Column::HasDefault, [](CsvRow &row, const QString &cell) {
        return readFlag(row.data.defaultInEds, cell);
    }, "is no decimal number, and counts as 0: use 0 or 1"},
    {Column::DefaultInEds, readWriteDefault, "is no decimal number from 0 to 255, and counts as 0 or 255: use 0, 1 or 2"},
    {Column::HasLimit, [](CsvRow &row, const QString &cell) {
        row.data.limitInEds = isYes(cell);
        return isYesOrNo(cell);
    }, "counts as no: use yes or no"},
    {Column::LowLimit, [](CsvRow &row, const QString &cell) {
        row.data.lowLimit = cell;
        row.hasLowLimit = true;
        return true;
    }},
    {Column::UpLimit, [](CsvRow &row, const QString &cell) {
        row.data.upLimit = cell;
        row.hasUpLimit = true;
        return true;
    }},
    {Column::Size, [](CsvRow &row, const QString &cell) {
        bool isNumber = false;
        row.data.size = Numbers::toUIntByPrefix(cell, &isNumber);
        return isEmptyOr(cell, isNumber);
    }, "is no number, and counts as 0"},
    {Column::Implementation, [](CsvRow &row, const QString &cell) {
        row.implementation = cell;
        const bool isNone = cell.trimmed().compare(QLatin1String("none"), Qt::CaseInsensitive) == 0;
        return isEmptyOr(cell, isNone || COHelper::word2Implementation(cell) >= 0);
    }, "is no implementation, and one is chosen by data type and access: use managedvariable, "
       "managedconst, variable or virtualobject", implementations},
    {Column::VarName, [](CsvRow &row, const QString &cell) { row.data.varName = cell; return true; }},
    {Column::NvStorage, [](CsvRow &row, const QString &cell) {
        row.data.nvStorage = isYes(cell);
        return isYesOrNo(cell);
    }, "counts as no: use yes or no"},
    {Column::Description, [](CsvRow &row, const QString &cell) { row.data.description = cell; return true; }},
    {Column::Denotation, [](CsvRow &row, const QString &cell) { row.data.denotation = cell; return true; }},
    {Column::Metadata, readMetadata, "is no JSON object, and is passed over"},
};
// clang-format on

constexpr bool followsEnumeration()
{
    int number = 0;
    for (const ColumnRow &row : kColumns) {
        if (static_cast<int>(row.column) != number++)
            return false;
    }
    return number == CsvTable::kColumnCount && number <= 32; // bits of CsvRow::replaced
}
static_assert(followsEnumeration(), "one row for each column");

QStringList columnNames()
{
    QStringList names;
    for (const ColumnRow &column : kColumns)
        names << QLatin1String(CsvTable::nameOf(column.column));
    return names;
}

} // namespace

CsvColumns::CsvColumns(const QStringList &header)
{
    for (const QString &name : header)
        names << name.trimmed().toLower();
    for (const ColumnRow &column : kColumns) {
        places << names.indexOf(QLatin1String(CsvTable::nameOf(column.column)));
        if (CsvTable::isOfGroupedTable(column.column) && places.last() < 0)
            isGroupedTable = false;
    }
    for (int i = 0; i < places.size(); ++i) {
        if (CsvTable::isOfGroupedTable(kColumns[i].column) && !isGroupedTable)
            places[i] = -1;
    }
}

CsvRow CsvColumns::read(const QStringList &fields) const
{
    CsvRow row;
    for (int i = 0; i < places.size(); ++i) {
        const int place = places.at(i);
        if (place >= 0 && place < fields.size() && !kColumns[i].read(row, fields.at(place)))
            row.replaced |= 1u << i;
    }
    // In other tables an empty cell is the number 0, as everywhere.
    row.isObject = row.isObject && isGroupedTable;
    return row;
}

QString CsvColumns::cell(const QStringList &fields, Column column) const
{
    return fields.value(places.at(static_cast<int>(column))).trimmed();
}

bool CsvColumns::has(Column column) const
{
    return places.at(static_cast<int>(column)) >= 0;
}

void CsvColumns::tellOfHeader(int line, FileProblems &problems) const
{
    const QStringList known = columnNames();
    for (int i = 0; i < names.size(); ++i) {
        const QString &name = names.at(i);
        const int column = known.indexOf(name);
        const auto tell = [&](const QString &text) {
            problems.add("csv-column", line, [&] { return quotedWord(name) + text; });
        };
        if (column < 0 && !name.isEmpty())
            tell(QLatin1String(" is no column of object tables, and is passed over") +
                 didYouMean(name, known));
        else if (column >= 0 && names.indexOf(name) < i)
            tell(QStringLiteral(" stands twice in the header, and only the first column counts"));
        else if (column >= 0 && places.at(column) < 0)
            tell(QStringLiteral(" counts only in a table that has both denotation and metadata, "
                                "and is passed over"));
    }
    if (!has(Column::Index))
        problems.add("csv-column", line, [] {
            return QStringLiteral("the table has no column \"index\" in its first line, and none "
                                  "of its rows is taken: part the columns by , or by ;");
        });
}

void CsvColumns::tellOfWords(const CsvRow &row, const QStringList &fields, int line,
                             FileProblems &problems) const
{
    for (int i = 0; i < places.size(); ++i) {
        if ((row.replaced & 1u << i) == 0)
            continue;
        problems.add("csv-value", line, [&] {
            const ColumnRow &column = kColumns[i];
            const QString word = cell(fields, column.column);
            return QStringLiteral("%1 in the column %2 %3%4")
                .arg(quotedWord(word), QLatin1String(CsvTable::nameOf(column.column)),
                     QLatin1String(column.replacement),
                     column.words ? didYouMean(word, column.words()) : QString());
        });
    }
}
