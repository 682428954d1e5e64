// Managed variables, addresses and tags of values, and the structure by which the stack finds the
// arrays.
#include "generators/objdict/objdictvalues.h"

#include "generators/ctext.h"
#include "generators/objdict/objdictarrays.h"
#include "generators/objdict/objdictservices.h"
#include "support/accesstype.h"
#include "support/cohelper.h"
#include "support/helper.h"
#include "support/implementation.h"

#include <cstring>

namespace
{

using namespace ObjDict;

/// Variables of one class, with the place of each.
struct VariableArray {
    ValueArray values;
    QVector<Key> keys;
};

/// What stands after the count of a managed array.
struct ManagedStyle {
    bool isInitialised = false;
    QString specifier;
};

void writeManagedArray(Context &context, ValueClass valueClass, const VariableArray &array,
                       const ManagedStyle &style)
{
    const ClassRow &row = rowOf(valueClass);
    const QVector<quint64> &values = array.values.all();
    context.out.fill(row.managed, {{"storage", context.dialect.storageMacro}});
    context.out.parts(quint32(values.size()), "]", style.specifier);
    if (!style.isInitialised) {
        context.out.raw(";\n");
        return;
    }
    context.out.raw("= {\n");
    auto key = array.keys.cbegin();
    writeEntries(context.out, values, row.separator, [&](quint64 value) {
        writeElement(context.out, valueClass, value, kVariableDigits);
        writeEntryComment(context, *key++);
    });
}

/// A line of the structure of all arrays, if its array was written.
struct MemberRow {
    const char *text;
    bool (*isWritten)(const Positions &);
};

template <Positions::Presence Positions::*Arrays, ValueClass Class>
bool hasArray(const Positions &positions)
{
    return (positions.*Arrays)[numberOf(Class)];
}

template <ValueClass Class>
constexpr auto hasConstants = hasArray<&Positions::constArrays, Class>;
template <ValueClass Class>
constexpr auto hasManaged = hasArray<&Positions::managedArrays, Class>;
template <ValueClass Class>
constexpr auto hasPointers = hasArray<&Positions::pointerArrays, Class>;

template <bool Positions::*Flag>
bool has(const Positions &positions)
{
    return positions.*Flag;
}

bool always(const Positions &)
{
    return true;
}

// The stack's structure has no members for 24-bit signed values.
// clang-format off
constexpr MemberRow kMembers[] = {
    {"    , &od_const_u16[0]\n", hasConstants<ValueClass::U16>},
    {"    , &od_const_u32[0]\n", hasConstants<ValueClass::U32>},
    {"    , &od_const_r32[0]\n", hasConstants<ValueClass::R32>},
    {"#ifdef CO_EXTENDED_DATA_TYPES\n", always},
    {"    , &od_const_u24[0]\n", hasConstants<ValueClass::U24>},
    {"    , &od_const_u40[0]\n", hasConstants<ValueClass::U40>},
    {"    , &od_const_u48[0]\n", hasConstants<ValueClass::U48>},
    {"    , &od_const_u64[0]\n", hasConstants<ValueClass::U64>},
    {"#endif /* CO_EXTENDED_DATA_TYPES */\n", always},
    {"    , &od_u8[0]\n", hasManaged<ValueClass::U8>},
    {"    , &od_u16[0]\n", hasManaged<ValueClass::U16>},
    {"    , &od_u32[0]\n", hasManaged<ValueClass::U32>},
    {"    , &od_r32[0]\n", hasManaged<ValueClass::R32>},
    {"#ifdef CO_EXTENDED_DATA_TYPES\n", always},
    {"    , &od_u24[0]\n", hasManaged<ValueClass::U24>},
    {"    , &od_u40[0]\n", hasManaged<ValueClass::U40>},
    {"    , &od_u48[0]\n", hasManaged<ValueClass::U48>},
    {"    , &od_u64[0]\n", hasManaged<ValueClass::U64>},
    {"#endif /* CO_EXTENDED_DATA_TYPES */\n", always},
    {"    , &od_const_i8[0]\n", hasConstants<ValueClass::I8>},
    {"    , &od_const_i16[0]\n", hasConstants<ValueClass::I16>},
    {"    , &od_const_i32[0]\n", hasConstants<ValueClass::I32>},
    {"    , &od_i8[0]\n", hasManaged<ValueClass::I8>},
    {"    , &od_i16[0]\n", hasManaged<ValueClass::I16>},
    {"    , &od_i32[0]\n", hasManaged<ValueClass::I32>},
    {"    , &od_ptr_u8[0]\n", hasPointers<ValueClass::U8>},
    {"    , &od_ptr_u16[0]\n", hasPointers<ValueClass::U16>},
    {"    , &od_ptr_u32[0]\n", hasPointers<ValueClass::U32>},
    {"#ifdef CO_EXTENDED_DATA_TYPES\n", always},
    {"    , &od_ptr_u24[0]\n", hasPointers<ValueClass::U24>},
    {"    , &od_ptr_u40[0]\n", hasPointers<ValueClass::U40>},
    {"    , &od_ptr_u48[0]\n", hasPointers<ValueClass::U48>},
    {"    , &od_ptr_u64[0]\n", hasPointers<ValueClass::U64>},
    {"#endif /* CO_EXTENDED_DATA_TYPES */\n", always},
    {"    , &od_ptr_i8[0]\n", hasPointers<ValueClass::I8>},
    {"    , &od_ptr_i16[0]\n", hasPointers<ValueClass::I16>},
    {"    , &od_ptr_i32[0]\n", hasPointers<ValueClass::I32>},
    {"    , &od_ptr_r32[0]\n", hasPointers<ValueClass::R32>},
    {"    , &od_const_vis_string[0]\n", has<&Positions::hasConstVisString>},
    {"    , &od_const_vis_string_len[0]\n", has<&Positions::hasConstVisString>},
    {"    , &od_vis_string[0]\n", has<&Positions::hasVisString>},
    {"    , &od_vis_string_len[0]\n", has<&Positions::hasVisString>},
    {"    , &od_vis_string_actLen[0]\n", has<&Positions::hasVisString>},
    {"#ifdef CO_UTF8_DATA_TYPE\n", always},
    {"    , &od_const_utf8_string[0]\n", has<&Positions::hasConstUtf8String>},
    {"    , &od_const_utf8_string_len[0]\n", has<&Positions::hasConstUtf8String>},
    {"    , &od_utf8_string[0]\n", has<&Positions::hasUtf8String>},
    {"    , &od_utf8_string_len[0]\n", has<&Positions::hasUtf8String>},
    {"    , &od_utf8_string_actLen[0]\n", has<&Positions::hasUtf8String>},
    {"#endif\n", always},
    {"    , &od_octet_string[0]\n", has<&Positions::hasOctetString>},
    {"    , &od_octet_string_len[0]\n", has<&Positions::hasOctetString>},
    {"    , &od_octet_string_actLen[0]\n", has<&Positions::hasOctetString>},
    {"    , &od_domain[0]\n", has<&Positions::hasDomain>},
    {"    , &od_domain_len[0]\n", has<&Positions::hasDomain>},
    {"    , &od_domain_actLen[0]\n", has<&Positions::hasDomain>},
};
// clang-format on

/// Element \a position of an array; NULL if the value has no place in it.
QString elementAddress(const char *array, const Positions::Map &places, Key key)
{
    const auto place = places.constFind(key);
    // Deliberate: without a place there is no address, rather than that of another object's value;
    // held by tst_golden.
    if (place == places.constEnd())
        return QStringLiteral("NULL");
    return QStringLiteral("&%1[%2]").arg(QLatin1String(array), QString::number(*place));
}

QString tagWord(quint16 dataType)
{
    const QString word = COHelper::index2DataTypeShortString(dataType); // in upper case
    if (word == QLatin1String("D"))
        return QStringLiteral("DOMAIN");
    if (word == QLatin1String("B"))
        return QStringLiteral("BOOL");
    const std::optional<ValueClass> valueClass = valueClassOf(dataType);
    return valueClass == ValueClass::U8 ? QStringLiteral("U8") : word;
}

/// How the stack reaches a value that is not constant.
const char *accessSuffix(const ObjectDataBase::SUBINDEX_DATA_T &data, quint16 index, quint8 sub)
{
    if (const ServiceRow *service = serviceOf(index, sub))
        return service->suffix;
    if (data.dataType == CAN::typeNumber(CAN::CANopenDataType::Domain))
        return "";
    if (data.implementation == Implementation::kManagedVariable)
        return "_VAR";
    return data.implementation == Implementation::kApplicationVariable ? "_PTR" : "";
}

} // namespace

void ObjDict::defineManagedVariables(Context &context)
{
    context.out.raw("\n/* definition of managed variables */\n");
    std::array<VariableArray, kValueClassCount> arrays;
    forEachSub(context, [&](const Place &place, const ObjectDataBase::SUBINDEX_DATA_T &data) {
        const std::optional<ValueClass> valueClass = valueClassOf(data.dataType);
        if (!valueClass || data.implementation != Implementation::kManagedVariable)
            return;
        const ServiceRow *service = serviceOf(place.index, place.sub);
        if (service && !service->hasVariable)
            return;
        if (valueLine(context.store, place.line, place.index, place.sub, data) != place.line)
            return;
        VariableArray &array = arrays[numberOf(*valueClass)];
        const int position = array.values.append(parseValue(*valueClass, data.defaultValue));
        array.keys << place.key();
        note(context.positions, &Positions::managed, place.key(), position);
    });
    ManagedStyle style;
    style.isInitialised = context.features.hasStaticValues();
    const QString specifier = context.settings.text("static_memory_specifier");
    if (!specifier.isEmpty())
        style.specifier = QStringLiteral(" %1 ").arg(CText::expression(specifier));
    for (std::size_t i = 0; i < arrays.size(); ++i) {
        if (arrays[i].keys.isEmpty())
            continue;
        context.positions.managedArrays[i] = true;
        writeManagedArray(context, static_cast<ValueClass>(i), arrays[i], style);
    }
}

void ObjDict::initDataTypeStructure(Context &context)
{
    TextWriter &out = context.out;
    out.block(R"(

/**********************************************************************/
/* Structure for all OD variables */
$const$ CO_OD_DATA_VARIABLES_T od_data_variables = {
)",
              {{"const", context.dialect.constMacro}});
    const bool hasBytes = hasConstants<ValueClass::U8>(context.positions);
    out.raw(hasBytes ? "   &od_const_u8[0]\n" : "   NULL\n");
    for (const MemberRow &member : kMembers)
        out.raw(member.isWritten(context.positions) ? member.text : "    , NULL\n");
    out.raw("};\n"
            "\n");
}

QString ObjDict::variableName(const ObjectDataBase::SUBINDEX_DATA_T &data, quint16 index,
                              quint8 sub)
{
    return CText::expression(Helper::substituteVariables(data.varName, index, sub));
}

QString ObjDict::getObjectAddress(const Context &context, quint8 line, quint16 index, quint8 sub)
{
    ObjectDataBase::SUBINDEX_DATA_T data;
    if (!context.store.getSubIndexData(line, index, sub, data))
        return QStringLiteral("NULL");
    if (data.implementation == Implementation::kApplicationVariable) {
        const QString name = variableName(data, index, sub);
        return name.contains(QLatin1Char('(')) ? name : QStringLiteral("&(%1)").arg(name);
    }
    if (data.implementation > Implementation::kApplicationVariable)
        return QStringLiteral("0");
    const std::optional<ValueClass> valueClass = valueClassOf(data.dataType);
    if (!valueClass)
        return QStringLiteral("NULL");
    const ClassRow &row = rowOf(*valueClass);
    if (data.implementation == Implementation::kManagedConst)
        return elementAddress(row.constantName, context.positions.constants,
                              keyOf(line, index, sub));
    const quint8 owner = valueLine(context.store, line, index, sub, data);
    return elementAddress(row.managedName, context.positions.managed, keyOf(owner, index, sub));
}

void ObjDict::writeImplementationDataType(TextWriter &out,
                                          const ObjectDataBase::SUBINDEX_DATA_T &data,
                                          quint16 index, quint8 sub)
{
    static constexpr char kStart[] = "CO_DTYPE_";
    static constexpr char kBlanks[] = "                  "; // up to the width of all tags
    QString word = tagWord(data.dataType);
    const bool isConstant = data.implementation == Implementation::kManagedConst;
    // One array holds both kinds of constant strings.
    if (isConstant && word == QLatin1String("OS"))
        word = QStringLiteral("VS");
    const char *const suffix = isConstant ? "_CONST" : accessSuffix(data, index, sub);
    const size_t size = sizeof kStart - 1 + size_t(word.size()) + std::strlen(suffix);
    out.parts(kStart, word, suffix, kBlanks + qMin(size, sizeof kBlanks - 1));
}

bool ObjDict::isWriteable(const QString &accessType)
{
    return accessType == AccessType::kReadWrite || accessType == AccessType::kReadWriteRead ||
           accessType == AccessType::kReadWriteWrite || accessType == AccessType::kWriteOnly;
}

quint8 ObjDict::valueLine(const ObjectDataBase &store, quint8 line, quint16 index, quint8 sub,
                          const ObjectDataBase::SUBINDEX_DATA_T &data)
{
    if (line == 0 || !data.sharedLines)
        return line;
    ObjectDataBase::SUBINDEX_DATA_T first;
    // Deliberate: without a partner of the same kind on line 0 the line keeps a value of its own,
    // held by tst_generatedc.
    const bool isShared = store.getSubIndexData(0, index, sub, first) && first.sharedLines &&
                          first.dataType == data.dataType &&
                          first.implementation == data.implementation;
    return isShared ? 0 : line;
}

void ObjDict::writeEntryComment(Context &context, Key key)
{
    context.out.raw(" /* ");
    if (context.form.multiLine)
        context.out.parts(key >> 24, "-");
    context.out.parts("0x", HexNumber{quint16(key >> 8), 4}, ":", quint8(key), " */");
}
