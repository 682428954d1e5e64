// Mapping tables of static PDOs.
#include "generators/objdict/objdictpdo.h"

#include "generators/objdict/objdictvalues.h"
#include "generators/projectlines.h"
#include "support/accesstype.h"
#include "support/implementation.h"
#include "support/objectindex.h"

#include <algorithm>

namespace ObjDict
{

namespace
{

constexpr quint16 kToMapping = ObjectRanges::kFromPdoParameterToMapping;

quint16 mappedIndex(quint32 mapping)
{
    return quint16(mapping >> 16);
}

quint8 mappedSub(quint32 mapping)
{
    return quint8(mapping >> 8);
}

quint32 lengthBytes(quint32 mapping)
{
    return (mapping >> 3) & 0x1F;
}

quint32 readMapping(const ObjectDataBase &store, quint8 line, quint16 mappingIndex, quint8 sub)
{
    return Numbers::toUIntByPrefix(store.getSubIndexValue(line, mappingIndex, sub));
}

quint8 readMappedCount(const Context &context, quint8 line, quint16 pdoIndex)
{
    return quint8(readMapping(context.store, line, pdoIndex + kToMapping, 0));
}

/// Entries that a table holds for the value of subindex 0; a multiplexed PDO has one.
int entriesFor(quint8 mappedCount)
{
    return mappedCount > PdoEntryCount::kHighest ? 1 : mappedCount;
}

/// Of all tables of the project.
struct TableShape {
    int rows = 1; ///< what the stack reserves for a table, at least 1
    bool hasEntries = false;
    bool bitwise = false;
    bool bitLengths() const { return hasEntries && bitwise; }
};

TableShape readTableShape(const Context &context)
{
    int maxEntries = 0;
    for (const quint8 line : context.form.servedLines) {
        const QList<quint16> mappings =
            context.store.getIndices(line, ObjectRanges::kRpdoMappings) +
            context.store.getIndices(line, ObjectRanges::kTpdoMappings);
        for (const quint16 index : mappings)
            maxEntries =
                std::max(maxEntries, context.store.getSubIndices(line, index, 0).size() - 1);
    }
    TableShape shape;
    shape.rows = std::max(1, maxEntries);
    shape.hasEntries = maxEntries > 0;
    shape.bitwise = context.features.hasBitwiseTables();
    return shape;
}

/// The rows of a table that carry entries. Deliberate: a mapping that claims more entries than any
/// mapping object of the project has is cut, since the stack reserves no more rows, held by
/// tst_generatedc.
int filledRows(quint8 mappedCount, const TableShape &shape)
{
    return std::min(entriesFor(mappedCount), shape.rows);
}

/// Deliberate: with the rows their count is cut, so that the stack does not read beyond the table.
/// Held by tst_generatedc.
int writtenCount(quint8 mappedCount, const TableShape &shape)
{
    return mappedCount > PdoEntryCount::kHighest ? mappedCount : filledRows(mappedCount, shape);
}

/// Between "mapTable..." and the number: tells the tables of several lines apart. Deliberate: the
/// letters go on with capitals after line 25, since the next characters of ASCII end an identifier,
/// held by tst_golden.
QString lineSuffix(const Context &context, quint8 line)
{
    if (!context.form.multiLine)
        return QString();
    const int letter = line <= 'z' - 'a' ? 'a' + line : 'A' + line - ('z' - 'a' + 1);
    return QString(QLatin1Char(char(letter)));
}

QString hex8(quint32 number)
{
    return QStringLiteral("0x%1UL").arg(number, 8, 16, QLatin1Char('0'));
}

QString entryAddress(const Context &context, quint8 line, quint32 mapping)
{
    return getObjectAddress(context, line, mappedIndex(mapping), mappedSub(mapping));
}

/// Deliberate: an RPDO never writes into a constant; its bytes are passed over, like those of a
/// dummy entry. Held by tst_generatedc.
QString receiveAddress(const Context &context, quint8 line, quint32 mapping)
{
    ObjectDataBase::SUBINDEX_DATA_T data;
    const bool isConstant =
        context.store.getSubIndexData(line, mappedIndex(mapping), mappedSub(mapping), data) &&
        data.implementation == Implementation::kManagedConst;
    return isConstant ? QStringLiteral("NULL") : entryAddress(context, line, mapping);
}

/// From the declaration up to the rows.
void openTable(Context &context, const char *type, const char *name, quint8 line, int number,
               int count)
{
    context.out.block(R"(
static $const$ $type$ $storage$	$name$$suffix$$number$ = {
	(UNSIGNED8)$count$u,
	{
)",
                      {{"const", context.dialect.constMacro},
                       {"type", type},
                       {"storage", context.dialect.constStorageMacro},
                       {"name", name},
                       {"suffix", lineSuffix(context, line)},
                       {"number", number},
                       {"count", count}});
}

/// All tables have the same number of rows; \a emptyRow fills those after the last entry.
void closeTable(TextWriter &out, int filled, const TableShape &shape, const QString &emptyRow)
{
    for (int row = filled + 1; row <= shape.rows; ++row) {
        out.raw(emptyRow);
        out.raw(row < shape.rows ? ",\n" : "\n");
    }
    out.raw("\t}\n"
            "};\n");
}

const char *const kEmptyRow = "\t\t{NULL, (UNSIGNED8)0u, CO_FALSE, 0ul}";

bool isNumeric(quint16 dataType)
{
    constexpr auto kReal32 = CAN::typeNumber(CAN::CANopenDataType::Real32);
    constexpr auto kInteger24 = CAN::typeNumber(CAN::CANopenDataType::Integer24);
    return dataType <= kReal32 || dataType == kInteger24;
}

void writeTpdoRow(Context &context, quint8 line, quint32 mapping, const TableShape &shape)
{
    const quint32 length = shape.bitLengths() ? quint8(mapping) : lengthBytes(mapping);
    const quint16 dataType =
        context.store.getSubIndexDatatype(line, mappedIndex(mapping), mappedSub(mapping));
    context.out.fill("\t\t{$address$, $length$u, $isNumeric$, $mapping$ },\n",
                     {{"address", entryAddress(context, line, mapping)},
                      {"length", length},
                      {"isNumeric", isNumeric(dataType) ? "CO_TRUE" : "CO_FALSE"},
                      {"mapping", hex8(mapping)}});
}

void writeTpdoTable(Context &context, quint8 line, quint16 pdoIndex, const TableShape &shape)
{
    const int number = ObjectRanges::kTpdoParameters.numberOf(pdoIndex);
    context.out.fill("/* Mapping table TPDO $number$*/\n", {{"number", number}});
    const quint8 mappedCount = readMappedCount(context, line, pdoIndex);
    if (mappedCount == 0)
        return;
    openTable(context, "PDO_TR_MAP_TABLE_T", "mapTableTPDO", line, number,
              writtenCount(mappedCount, shape));
    const int filled = filledRows(mappedCount, shape);
    for (int sub = 1; sub <= filled; ++sub)
        writeTpdoRow(context, line,
                     readMapping(context.store, line, pdoIndex + kToMapping, quint8(sub)), shape);
    closeTable(context.out, filled, shape, QLatin1String(kEmptyRow));
}

QList<quint16> staticPdos(const Context &context, quint8 line, ObjectRange parameters)
{
    QList<quint16> found;
    const QList<quint16> all = context.store.getIndices(line, parameters);
    for (const quint16 index : all) {
        if (isStaticMapping(context, line, index))
            found << index;
    }
    return found;
}

MappingTable readRpdoMapping(const Context &context, quint8 line, quint16 pdoIndex)
{
    MappingTable table;
    table.mappedCount = readMappedCount(context, line, pdoIndex);
    const int count = entriesFor(table.mappedCount);
    for (int sub = 1; sub <= count; ++sub) {
        MappingTable::Entry entry;
        entry.mapping = readMapping(context.store, line, pdoIndex + kToMapping, quint8(sub));
        entry.bits = quint8(entry.mapping);
        entry.address = receiveAddress(context, line, entry.mapping);
        table.entries << entry;
    }
    return table;
}

void writeUniqueRpdoTable(Context &context, quint8 line, int position, const TableShape &shape)
{
    const MappingTable table = context.rpdoTables[line][position];
    // Deliberate: the comment's spelling, held by tst_golden.
    context.out.raw("/* unique rpdo defintion */\n");
    openTable(context, "PDO_REC_MAP_TABLE_T", "mapTableRPDO", line, position,
              writtenCount(table.mappedCount, shape));
    const int filled = filledRows(table.mappedCount, shape);
    for (int row = 0; row < filled; ++row) {
        const MappingTable::Entry &entry = table.entries[row];
        const int length = shape.bitwise ? entry.bits : entry.bits >> 3;
        context.out.fill(
            "\t\t{$address$, $length$u, CO_TRUE, $mapping$ },\n",
            {{"address", entry.address}, {"length", length}, {"mapping", hex8(entry.mapping)}});
    }
    closeTable(context.out, filled, shape, QLatin1String(kEmptyRow));
}

void writeUniqueRpdoTables(Context &context, quint8 line, const TableShape &shape)
{
    QVector<MappingTable> &tables = context.rpdoTables[line];
    for (const quint16 pdoIndex : staticPdos(context, line, ObjectRanges::kRpdoParameters)) {
        const MappingTable table = readRpdoMapping(context, line, pdoIndex);
        if (!tables.contains(table)) // a line has at most 512
            tables << table;
    }
    for (int position = 0; position < tables.size(); ++position)
        writeUniqueRpdoTable(context, line, position, shape);
}

/// What the tables of a gateway have besides those of other devices.
struct RouteTables {
    QList<quint8> lines; ///< columns of a routing list
    TpdoLookup tpdos;
};

/// The TPDO of each line that sends the received object on.
QString routingList(const Context &context, RouteTables &routes, quint32 mapping)
{
    QStringList numbers;
    for (const quint8 line : qAsConst(routes.lines)) {
        ObjectDataBase::SUBINDEX_DATA_T data;
        const bool isShared =
            context.store.getSubIndexData(line, mappedIndex(mapping), mappedSub(mapping), data) &&
            data.sharedLines;
        numbers << QString::number(isShared ? routes.tpdos.getTPDO(line, mapping) : 0);
    }
    return QStringLiteral("{%1}").arg(numbers.join(QLatin1Char(',')));
}

/// "{0,0}": nothing is sent on.
QString noRoutes(const RouteTables &routes)
{
    return QStringLiteral("{%1}").arg(
        QStringLiteral("0,").repeated(routes.lines.size()).chopped(1));
}

void writeRoutedRpdoTable(Context &context, quint8 line, quint16 pdoIndex, RouteTables &routes,
                          const TableShape &shape)
{
    const int number = ObjectRanges::kRpdoParameters.numberOf(pdoIndex);
    context.out.fill("/* Mapping table RPDO $number$*/\n", {{"number", number}});
    const quint8 mappedCount = readMappedCount(context, line, pdoIndex);
    if (mappedCount == 0)
        return;
    openTable(context, "PDO_REC_MAP_TABLE_T", "mapTableRPDO", line, number,
              writtenCount(mappedCount, shape));
    const int filled = filledRows(mappedCount, shape);
    for (int sub = 1; sub <= filled; ++sub) {
        const quint32 mapping =
            readMapping(context.store, line, pdoIndex + kToMapping, quint8(sub));
        context.out.fill("\t\t{$address$, $length$u, CO_TRUE, $mapping$, $routes$ },\n",
                         {{"address", receiveAddress(context, line, mapping)},
                          {"length", lengthBytes(mapping)},
                          {"mapping", hex8(mapping)},
                          {"routes", routingList(context, routes, mapping)}});
    }
    closeTable(context.out, filled, shape,
               QStringLiteral("\t\t{NULL, (UNSIGNED8)0u, CO_FALSE, 0ul,%1}").arg(noRoutes(routes)));
}

bool routesPdos(const Context &context)
{
    return std::any_of(
        context.form.servedLines.cbegin(), context.form.servedLines.cend(), [&](quint8 line) {
            return !context.store.getSubIndices(line, ObjectIndex::kPdoRouting, 1).isEmpty();
        });
}

const char *constantArray(ValueClass valueClass)
{
    switch (valueClass) {
    case ValueClass::U8:
        return "od_const_u8";
    case ValueClass::U16:
        return "od_const_u16";
    case ValueClass::U32:
        return "od_const_u32";
    default:
        return nullptr; // no communication parameter has another class
    }
}

QString literal(quint32 value, ValueClass valueClass)
{
    switch (valueClass) {
    case ValueClass::U8:
        return QStringLiteral("%1u").arg(quint8(value));
    case ValueClass::U16:
        return QStringLiteral("%1u").arg(quint16(value));
    default:
        return value == 0 ? QStringLiteral("0u") : QStringLiteral("%1UL").arg(value);
    }
}

/// The value that the constants of another class hold for this subindex.
quint32 parameterValue(const Context &context, quint8 line, quint16 index, quint8 sub)
{
    QString text = context.store.getSubIndexValue(line, index, sub);
    text.remove(QStringLiteral("$nodeid+"), Qt::CaseInsensitive);
    return Numbers::toUIntByPrefix(text);
}

/// Line and number, transmission type, inhibit time and event timer: what both directions have.
void writePdoArguments(Context &context, quint8 line, quint16 index, int number)
{
    TextWriter &out = context.out;
    if (context.form.multiLine)
        out.parts(quint32(line), ", ");
    out.parts(quint32(number), "u");
    constexpr struct {
        quint8 sub;
        ValueClass valueClass;
    } kParameters[] = {{PdoParameter::kTransmissionType, ValueClass::U8},
                       {PdoParameter::kInhibitTime, ValueClass::U16},
                       {PdoParameter::kEventTimer, ValueClass::U16}};
    for (const auto &parameter : kParameters) {
        out.raw(", ");
        out.raw(constantArgument(context, line, index, parameter.sub, parameter.valueClass));
    }
}

} // namespace

void createMappingTables(Context &context)
{
    const TableShape shape = readTableShape(context);
    const bool routed = routesPdos(context);
    // Deliberate: a routing list has a column for each existing line, as the counts of the
    // definitions header have, not only for those that get tables; held by tst_golden.
    RouteTables routes{readProjectLines(context.store).numbers, TpdoLookup(context.store)};
    context.out.raw("\n/* static PDO mapping tables */\n");
    for (const quint8 line : qAsConst(context.form.servedLines)) {
        context.rpdoTables[line].clear();
        for (const quint16 pdoIndex : staticPdos(context, line, ObjectRanges::kTpdoParameters))
            writeTpdoTable(context, line, pdoIndex, shape);
        if (!routed) {
            writeUniqueRpdoTables(context, line, shape);
            continue;
        }
        for (const quint16 pdoIndex : staticPdos(context, line, ObjectRanges::kRpdoParameters))
            writeRoutedRpdoTable(context, line, pdoIndex, routes, shape);
    }
    context.out.raw("\n");
}

bool isStaticMapping(const Context &context, quint8 line, quint16 pdoIndex)
{
    ObjectDataBase::SUBINDEX_DATA_T data;
    return !context.store.getSubIndexData(line, pdoIndex + kToMapping, 0, data) ||
           data.accessType != AccessType::kReadWrite;
}

quint16 TpdoLookup::getTPDO(quint8 line, quint32 mapping)
{
    const auto known = numbersByLine.constFind(line);
    if (known != numbersByLine.constEnd())
        return known->value(mapping);
    QHash<quint32, quint16> &numbers = numbersByLine[line];
    const QList<quint16> indices = store.getIndices(line, ObjectRanges::kTpdoMappings);
    for (const quint16 index : indices) {
        const QList<quint8> subs = store.getSubIndices(line, index, 1);
        for (const quint8 sub : subs)
            numbers.insert(readMapping(store, line, index, sub),
                           ObjectRanges::kTpdoMappings.numberOf(index));
    }
    return numbers.value(mapping);
}

void updatePdoVarName(const Context &context, quint8 line, quint16 pdoIndex, QString &name)
{
    const QVector<MappingTable> tables = context.rpdoTables.value(line);
    if (tables.isEmpty()) // not shared: spares the reading of the mapping
        return;
    const int position = tables.indexOf(readRpdoMapping(context, line, pdoIndex));
    if (position >= 0)
        name = QStringLiteral("&mapTableRPDO%1%2")
                   .arg(lineSuffix(context, line), QString::number(position));
}

void initTpdo(Context &context, quint8 line, quint16 index)
{
    const int number = ObjectRanges::kTpdoParameters.numberOf(index);
    TextWriter &out = context.out;
    out.fill("    /* initialize TPDO $number$ */\n"
             "    retVal = coPdoTransmitInit(",
             {{"number", number}});
    writePdoArguments(context, line, index, number);
    out.raw(", ");
    out.raw(constantArgument(context, line, index, PdoParameter::kSyncStartValue, ValueClass::U8));
    // Deliberate: no table was written for an empty mapping, held by tst_generatedc.
    const bool hasTable =
        isStaticMapping(context, line, index) && readMappedCount(context, line, index) != 0;
    if (hasTable)
        out.fill(", &mapTableTPDO$suffix$$number$);\n",
                 {{"suffix", lineSuffix(context, line)}, {"number", number}});
    else
        out.raw(", NULL);\n");
}

void initRpdo(Context &context, quint8 line, quint16 index)
{
    const int number = ObjectRanges::kRpdoParameters.numberOf(index);
    TextWriter &out = context.out;
    out.fill("    /* initialize RPDO $number$ */\n"
             "    retVal = coPdoReceiveInit(",
             {{"number", number}});
    writePdoArguments(context, line, index, number);
    QString name = QStringLiteral("NULL");
    if (isStaticMapping(context, line, index)) {
        // Deliberate: a gateway has no table for an empty mapping, held by tst_generatedc.
        if (readMappedCount(context, line, index) != 0)
            name = QStringLiteral("&mapTableRPDO%1%2")
                       .arg(lineSuffix(context, line), QString::number(number));
        updatePdoVarName(context, line, index, name);
    }
    out.parts(", ", name, ");\n");
}

QString constantArgument(const Context &context, quint8 line, quint16 index, quint8 sub,
                         ValueClass valueClass)
{
    // Deliberate: a literal instead of the first constant of the array, which belongs to some other
    // object; held by tst_generatedc.
    if (!context.store.existSubIndex(line, index, sub))
        return QStringLiteral("0u");
    const auto place = context.positions.constants.constFind(keyOf(line, index, sub));
    const bool hasPlace =
        place != context.positions.constants.constEnd() && constantArray(valueClass) &&
        valueClassOf(context.store.getSubIndexDatatype(line, index, sub)) == valueClass;
    if (!hasPlace)
        return literal(parameterValue(context, line, index, sub), valueClass);
    return QStringLiteral("%1[%2]").arg(QLatin1String(constantArray(valueClass)),
                                        QString::number(*place));
}

} // namespace ObjDict
