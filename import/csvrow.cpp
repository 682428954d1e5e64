// What each column of an object table means.
#include "import/csvrow.h"

#include "formats/csvtable.h"
#include "support/cohelper.h"
#include "support/numbers.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace
{

using CsvTable::Column;

bool isYes(const QString &text)
{
    return text.trimmed().compare(QLatin1String("yes"), Qt::CaseInsensitive) == 0;
}

quint8 toByte(const QString &text)
{
    return static_cast<quint8>(qBound(0, Numbers::toIntDecimal(text), 0xFF));
}

Metadata toMetadata(const QString &text)
{
    Metadata metadata;
    const QJsonObject object = QJsonDocument::fromJson(text.toUtf8()).object();
    for (auto it = object.constBegin(); it != object.constEnd(); ++it)
        metadata.insert(it.key(), it.value().toString());
    return metadata;
}

struct ColumnRow {
    Column column;
    void (*read)(CsvRow &row, const QString &cell);
};

// clang-format off
constexpr ColumnRow kColumns[] = {
    {Column::Index, [](CsvRow &row, const QString &cell) { row.index = Numbers::toLongLongByPrefix(cell); }},
    {Column::Sub, [](CsvRow &row, const QString &cell) {
        row.sub = Numbers::toLongLongByPrefix(cell);
        row.isObject = cell.trimmed().isEmpty();
    }},
    {Column::Line, [](CsvRow &row, const QString &cell) {
        if (!cell.trimmed().isEmpty())
            row.line = Numbers::toUIntDecimal(cell);
    }},
    {Column::ObjectCode, [](CsvRow &row, const QString &cell) {
        if (!cell.trimmed().isEmpty())
            row.objectCode = cell;
    }},
    {Column::EdsName, [](CsvRow &row, const QString &cell) {
        row.data.name = cell;
        row.hasName = !cell.isEmpty();
    }},
    {Column::DataType, [](CsvRow &row, const QString &cell) {
        row.data.dataType = COHelper::mapDataTypeString(cell);
    }},
    {Column::Access, [](CsvRow &row, const QString &cell) {
        row.data.accessType = COHelper::normalizeAccessType(cell);
    }},
    {Column::Mapable, [](CsvRow &row, const QString &cell) {
        row.data.pdoMapping.fromCSVString(cell.trimmed());
    }},
    {Column::Value, [](CsvRow &row, const QString &cell) { row.data.defaultValue = cell; }},
    {Column::HasDefault, [](CsvRow &row, const QString &cell) {
        row.data.defaultInEds = Numbers::toIntDecimal(cell) != 0;
    }},
    {Column::DefaultInEds, [](CsvRow &row, const QString &cell) {
        row.data.writeDefaultToEds = toByte(cell);
    }},
    {Column::HasLimit, [](CsvRow &row, const QString &cell) { row.data.limitInEds = isYes(cell); }},
    {Column::LowLimit, [](CsvRow &row, const QString &cell) {
        row.data.lowLimit = cell;
        row.hasLowLimit = true;
    }},
    {Column::UpLimit, [](CsvRow &row, const QString &cell) {
        row.data.upLimit = cell;
        row.hasUpLimit = true;
    }},
    {Column::Size, [](CsvRow &row, const QString &cell) { row.data.size = Numbers::toUIntByPrefix(cell); }},
    {Column::Implementation, [](CsvRow &row, const QString &cell) { row.implementation = cell; }},
    {Column::VarName, [](CsvRow &row, const QString &cell) { row.data.varName = cell; }},
    {Column::NvStorage, [](CsvRow &row, const QString &cell) { row.data.nvStorage = isYes(cell); }},
    {Column::Description, [](CsvRow &row, const QString &cell) { row.data.description = cell; }},
    {Column::Denotation, [](CsvRow &row, const QString &cell) { row.data.denotation = cell; }},
    {Column::Metadata, [](CsvRow &row, const QString &cell) { row.data.metadata = toMetadata(cell); }},
};
// clang-format on

} // namespace

CsvColumns::CsvColumns(const QStringList &header)
{
    QStringList names;
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
        if (place >= 0 && place < fields.size())
            kColumns[i].read(row, fields.at(place));
    }
    // In other tables an empty cell is the number 0, as everywhere.
    row.isObject = row.isObject && isGroupedTable;
    return row;
}
