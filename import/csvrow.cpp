// What each column of an object table means.
#include "import/csvrow.h"

#include "support/cohelper.h"
#include "support/numbers.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace
{

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
    const char *name;
    void (*read)(CsvRow &row, const QString &cell);
    bool isOfGroupedTable = false; ///< read only where all such columns are there
};

// clang-format off
constexpr ColumnRow kColumns[] = {
    {"index", [](CsvRow &row, const QString &cell) { row.index = Numbers::toLongLongByPrefix(cell); }},
    {"sub", [](CsvRow &row, const QString &cell) {
        row.sub = Numbers::toLongLongByPrefix(cell);
        row.isObject = cell.trimmed().isEmpty();
    }},
    {"line", [](CsvRow &row, const QString &cell) {
        if (!cell.trimmed().isEmpty())
            row.line = Numbers::toUIntDecimal(cell);
    }},
    {"objectcode", [](CsvRow &row, const QString &cell) {
        if (!cell.trimmed().isEmpty())
            row.objectCode = cell;
    }},
    {"edsname", [](CsvRow &row, const QString &cell) {
        row.data.name = cell;
        row.hasName = !cell.isEmpty();
    }},
    {"datatype", [](CsvRow &row, const QString &cell) {
        row.data.dataType = COHelper::mapDataTypeString(cell);
    }},
    {"access", [](CsvRow &row, const QString &cell) {
        row.data.accessType = COHelper::normalizeAccessType(cell);
    }},
    {"mapable", [](CsvRow &row, const QString &cell) {
        row.data.pdoMapping.fromCSVString(cell.trimmed());
    }},
    {"value", [](CsvRow &row, const QString &cell) { row.data.defaultValue = cell; }},
    {"hasdefault", [](CsvRow &row, const QString &cell) {
        row.data.defaultInEds = Numbers::toIntDecimal(cell) != 0;
    }},
    {"defaultineds", [](CsvRow &row, const QString &cell) {
        row.data.writeDefaultToEds = toByte(cell);
    }},
    {"haslimit", [](CsvRow &row, const QString &cell) { row.data.limitInEds = isYes(cell); }},
    {"lowlimit", [](CsvRow &row, const QString &cell) {
        row.data.lowLimit = cell;
        row.hasLowLimit = true;
    }},
    {"uplimit", [](CsvRow &row, const QString &cell) {
        row.data.upLimit = cell;
        row.hasUpLimit = true;
    }},
    {"size", [](CsvRow &row, const QString &cell) { row.data.size = Numbers::toUIntByPrefix(cell); }},
    {"implementation", [](CsvRow &row, const QString &cell) { row.implementation = cell; }},
    {"varname", [](CsvRow &row, const QString &cell) { row.data.varName = cell; }},
    {"nvstorage", [](CsvRow &row, const QString &cell) { row.data.nvStorage = isYes(cell); }},
    {"description", [](CsvRow &row, const QString &cell) { row.data.description = cell; }},
    {"denotation", [](CsvRow &row, const QString &cell) { row.data.denotation = cell; }, true},
    {"metadata", [](CsvRow &row, const QString &cell) { row.data.metadata = toMetadata(cell); }, true},
};
// clang-format on

} // namespace

CsvColumns::CsvColumns(const QStringList &header)
{
    QStringList names;
    for (const QString &name : header)
        names << name.trimmed().toLower();
    for (const ColumnRow &column : kColumns) {
        places << names.indexOf(QLatin1String(column.name));
        if (column.isOfGroupedTable && places.last() < 0)
            isGroupedTable = false;
    }
    for (int i = 0; i < places.size(); ++i) {
        if (kColumns[i].isOfGroupedTable && !isGroupedTable)
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
