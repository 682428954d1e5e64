// Tables of the virtual objects.
#include "generators/objdict/vobjdictgenerator.h"

#include "generators/objdict/objdictarrays.h"
#include "generators/objdict/objdictdescription.h"
#include "generators/objdict/objdictpreamble.h"
#include "generators/objdict/objdictvalues.h"
#include "generators/projectlines.h"
#include "generators/virtualobjects.h"

#include <QFile>
#include <QSet>

namespace
{

using namespace ObjDict;
using Type = CAN::CANopenDataType;

/// A subindex without a value of its own has no position.
constexpr quint32 kNoPosition = 0xFFFF;

/// The array of one type; %1 is the storage class.
struct ValueRow {
    Type type;
    const char *declaration;
    bool isString;
};

// clang-format off
constexpr ValueRow kValues[] = {
    {Type::Unsigned8,     "UNSIGNED8 %1\tvobj_u8[CO_VIRTUAL_U8_CNT]",            false},
    {Type::Unsigned16,    "UNSIGNED16 %1\tvobj_u16[CO_VIRTUAL_U16_CNT]",         false},
    {Type::Unsigned32,    "UNSIGNED32 %1\tvobj_u32[CO_VIRTUAL_U32_CNT]",         false},
    {Type::Integer8,      "INTEGER8 %1\tvobj_i8[CO_VIRTUAL_I8_CNT]",             false},
    {Type::Integer16,     "INTEGER16 %1\tvobj_i16[CO_VIRTUAL_I16_CNT]",          false},
    {Type::Integer32,     "INTEGER32 %1\tvobj_i32[CO_VIRTUAL_I32_CNT]",          false},
    {Type::Real32,        "REAL32 %1\tvobj_r32[CO_VIRTUAL_R32_CNT]",             false},
    {Type::Unsigned24,    "UNSIGNED24 %1\tvobj_u24[CO_VIRTUAL_U24_CNT]",         false},
    {Type::OctetString,   "OCTET_STRING %1\t*vobj_os[CO_VIRTUAL_OS_CNT]",        true},
    {Type::VisibleString, "VIS_STRING %1\tvobj_vs[CO_VIRTUAL_VS_CNT]",           true},
    {Type::Domain,        "CO_DOMAIN_PTR %1\tvobj_domain[CO_VIRTUAL_DOMAIN_CNT]", true},
};
// clang-format on

bool isCounted(const ValueRow &row, const VobjDict::Counted &counted)
{
    return counted.hasStrings || !row.isString;
}

/// Initialisers of the values, empty if variables have none.
QStringList entriesOf(const Context &context, const QVector<VirtualObjects::Value> &values,
                      const ValueRow &row)
{
    QStringList entries;
    const std::optional<ValueClass> valueClass = valueClassOf(static_cast<quint16>(row.type));
    if (!valueClass || context.settings.decimal("init_static_variables") != 1)
        return entries;
    for (const VirtualObjects::Value &value : values) {
        const QString text = context.store.getSubIndexValue(value.line, value.index, value.sub);
        entries << elementText(*valueClass, parseValue(*valueClass, text), kVariableDigits) +
                       entryComment(context, keyOf(value.line, value.index, value.sub));
    }
    return entries;
}

void writeArray(Context &context, const ValueRow &row, const QStringList &entries)
{
    context.out.raw(
        QString::fromLatin1(row.declaration).arg(QLatin1String(context.dialect.storageMacro)));
    if (entries.isEmpty()) {
        context.out.raw(";\n");
        return;
    }
    context.out.raw(" = {\n");
    writeEntries(context.out, entries, kSeparator);
}

void describeSub(Context &context, const VirtualObjects::Object &object, quint8 sub,
                 const Positions::Map &values)
{
    ObjectDataBase::SUBINDEX_DATA_T data;
    if (!context.store.getSubIndexData(object.line, object.index, sub, data))
        return;
    const Key key = keyOf(object.line, object.index, sub);
    const Positions::Map &constants = context.positions.constants;
    const bool isRun = object.endsInRun && sub == object.subs.last();
    writeDescriptionStart(
        context, sub, getImplementationDataType(data, object.index, sub),
        values.contains(key) ? values.value(key) : kNoPosition,
        getODAttributes(data, data.defaultInEds && constants.contains(key), false, isRun));
    context.out.raw(QStringLiteral(" (UNSIGNED16)%1").arg(constants.value(key)));
    writeDescriptionEnd(context, object.line, object.index, sub);
}

QString constTable(const Context &context, const char *start)
{
    return QString::fromLatin1(start).arg(QLatin1String(context.dialect.constMacro),
                                          QLatin1String(context.dialect.constStorageMacro));
}

} // namespace

VobjDict::Counted VobjDict::readCounted(const ObjectDataBase &store)
{
    const QList<quint8> lines = readProjectLines(store).numbers;
    if (dialectOf(store).preferV4)
        return {lines.mid(0, 1), false};
    return {lines, true};
}

Positions::Map VobjDict::writeValues(Context &context, const Counted &counted)
{
    QHash<quint16, QVector<VirtualObjects::Value>> byType;
    const QVector<VirtualObjects::Value> all =
        VirtualObjects::readValues(context.store, counted.lines);
    for (const VirtualObjects::Value &value : all)
        byType[value.dataType] << value;
    context.out.raw("\n/* values of virtual objects */\n");
    Positions::Map places;
    for (const ValueRow &row : kValues) {
        const QVector<VirtualObjects::Value> values = byType.value(static_cast<quint16>(row.type));
        if (values.isEmpty() || !isCounted(row, counted))
            continue;
        for (int i = 0; i < values.size(); ++i) {
            const VirtualObjects::Value &value = values.at(i);
            places.insert(keyOf(value.line, value.index, value.sub), static_cast<quint16>(i));
        }
        writeArray(context, row, entriesOf(context, values, row));
    }
    return places;
}

void VobjDict::describeObjects(Context &context, const Positions::Map &values)
{
    context.out.raw("\n/* description of the virtual objects */\n");
    context.out.raw(
        constTable(context, "%1 CO_VOBJ_DESC_T %2 vobj_description[CO_VOBJ_DESC_CNT] = {\n"));
    const QVector<VirtualObjects::Object> objects =
        VirtualObjects::readObjects(context.store, VirtualObjects::describedLines(context.store));
    for (const VirtualObjects::Object &object : objects) {
        for (const quint8 sub : object.subs)
            describeSub(context, object, sub, values);
    }
    context.out.raw("};\n");
}

void VobjDict::assignObjects(Context &context)
{
    context.out.raw("\n/* assignment of the virtual objects */\n");
    context.out.raw(
        constTable(context, "%1 CO_VOD_ASSIGN_T %2 vod_assign[CO_VOD_ASSIGN_CNT] = {\n"));
    const QVector<VirtualObjects::Object> objects =
        VirtualObjects::readObjects(context.store, VirtualObjects::describedLines(context.store));
    quint32 firstRow = 0;
    for (const VirtualObjects::Object &object : objects) {
        ObjectDataBase::INDEX_DATA_T data;
        (void)context.store.getIndexData(object.line, object.index, data); // listed, so it exists
        const QList<quint8> subs = context.store.getSubIndices(object.line, object.index, 0);
        AssignRow row;
        row.index = object.index;
        row.rows = object.subs.size();
        row.highestSub = subs.last();
        row.objectType = objectTypeWord(data.objectCode, subs.size());
        row.firstRow = firstRow;
        context.out.raw(assignText(row));
        firstRow += quint32(object.subs.size());
    }
    context.out.raw("};\n");
}

VobjDictGenerator::VobjDictGenerator() : AbstractGenerator(QStringLiteral("gen_vobjdict.c")) {}

QString VobjDictGenerator::targetFile() const
{
    return QStringLiteral("%1/gen_vobjdict.c").arg(outputDirectory);
}

bool VobjDictGenerator::checkWritability()
{
    return isNewOrWritable(targetFile());
}

bool VobjDictGenerator::areVirtualObjectsPresent() const
{
    if (!database)
        return false;
    const VobjDict::Counted counted = VobjDict::readCounted(*database);
    QSet<quint16> types;
    const QVector<VirtualObjects::Value> values =
        VirtualObjects::readValues(*database, counted.lines);
    for (const VirtualObjects::Value &value : values)
        types << value.dataType;
    bool isAnyCounted = false;
    for (const ValueRow &row : kValues) {
        if (isCounted(row, counted) && types.contains(static_cast<quint16>(row.type)))
            isAnyCounted = true;
    }
    return isAnyCounted &&
           !VirtualObjects::readObjects(*database, VirtualObjects::describedLines(*database))
                .isEmpty();
}

void VobjDictGenerator::doJob()
{
    const JobBracket bracket(*this);
    QFile file(targetFile());
    if (!openOutputFile(file))
        return;
    TextWriter out(&file);
    const ObjDict::Dialect dialect = dialectOf(*database);
    Context context{*database, out, dialect, GeneralSettings(*database), {}, {}, {}};
    context.form = readForm(*database, activeLine);
    writeHead(context, "virtual object dictionary", {projectName, toolVersion});
    writeIncludes(context, hasStandardLibrary(outputDirectory));
    writeApplicationHeaders(context);
    writeMemorySpecifiers(context);
    collectConstants(context);
    const Positions::Map places = VobjDict::writeValues(context, VobjDict::readCounted(*database));
    VobjDict::describeObjects(context, places);
    VobjDict::assignObjects(context);
    closeOutputFile(out, file);
}
