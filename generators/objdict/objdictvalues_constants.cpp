// Constants: defaults and limits of all subindices, and constant strings.
#include "generators/ctext.h"
#include "generators/objdict/objdictarrays.h"
#include "generators/objdict/objdictstrings.h"
#include "generators/objdict/objdictvalues.h"
#include "support/helper.h"
#include "support/implementation.h"

namespace
{

using namespace ObjDict;
using Type = CAN::CANopenDataType;

struct ConstString {
    QString text;
    quint32 size = 0;
};

struct Constants {
    ValueArrays arrays;
    QVector<ConstString> visStrings;
    QVector<ConstString> utf8Strings;
    bool haveLimits = false; ///< limits are recorded as well
};

// Deliberate: 32 bits stand before 24, in contrast to the variables; held by tst_golden.
constexpr ValueClass kOrder[] = {ValueClass::U8,  ValueClass::U16, ValueClass::U32,
                                 ValueClass::U24, ValueClass::U40, ValueClass::U48,
                                 ValueClass::U64, ValueClass::I8,  ValueClass::I16,
                                 ValueClass::I24, ValueClass::I32, ValueClass::R32};

void collectNumber(Context &context, Constants &constants, const Place &place,
                   ValueClass valueClass, const ObjectDataBase::SUBINDEX_DATA_T &data)
{
    ValueArray &array = constants.arrays[numberOf(valueClass)];
    QString value = data.defaultValue;
    value.remove(QLatin1String("$nodeid+"), Qt::CaseInsensitive);
    Positions &positions = context.positions;
    note(positions, &Positions::constants, place.key(),
         array.find(valueClass, parseValue(valueClass, value)));
    if (!constants.haveLimits || !takesLimits(data.dataType) || !data.limitInEds ||
        !isWriteable(data.accessType))
        return;
    note(positions, &Positions::lowLimits, place.key(),
         array.find(valueClass, parseLimit(valueClass, data.lowLimit)));
    note(positions, &Positions::highLimits, place.key(),
         array.find(valueClass, parseLimit(valueClass, data.upLimit)));
}

void collectString(Context &context, Constants &constants, const Place &place,
                   const ObjectDataBase::SUBINDEX_DATA_T &data)
{
    const auto type = static_cast<Type>(data.dataType);
    const bool isVisible = type == Type::VisibleString || type == Type::OctetString;
    if (data.implementation != Implementation::kManagedConst ||
        (!isVisible && type != Type::Utf8String))
        return;
    QVector<ConstString> &strings = isVisible ? constants.visStrings : constants.utf8Strings;
    note(context.positions, &Positions::constants, place.key(), strings.size());
    strings << ConstString{data.defaultValue, data.size};
}

Constants collect(Context &context)
{
    Constants constants;
    constants.haveLimits = context.form.hasLimitCheck;
    forEachSub(context, [&](const Place &place, const ObjectDataBase::SUBINDEX_DATA_T &data) {
        if (const std::optional<ValueClass> valueClass = valueClassOf(data.dataType))
            collectNumber(context, constants, place, *valueClass, data);
        else
            collectString(context, constants, place, data);
    });
    return constants;
}

void writeStart(Context &context, const char *declaration, int count)
{
    context.out.fill(declaration, {{"const", context.dialect.constMacro},
                                   {"storage", context.dialect.constStorageMacro}});
    context.out.parts(quint32(count), "] = {\n");
}

void writeNumbers(Context &context, ValueClass valueClass, const QVector<quint64> &values)
{
    writeStart(context, rowOf(valueClass).constants, values.size());
    writeEntries(context.out, values, kSeparator, [&](quint64 value) {
        writeElement(context.out, valueClass, value, kConstantDigits);
    });
}

void writeSizes(Context &context, const char *declaration, const QVector<ConstString> &strings)
{
    writeStart(context, declaration, strings.size());
    writeEntries(context.out, strings, kSeparator,
                 [&](const ConstString &string) { context.out.parts("\t", string.size); });
}

QString utf8Bytes(const QString &text)
{
    // Deliberate: C has no empty list of bytes, held by tst_golden.
    return text.isEmpty() ? QStringLiteral("{0x00}") : Helper::UTF8String2ArrayString(text);
}

void writeVisStrings(Context &context, const QVector<ConstString> &strings)
{
    writeStart(context, "static $const$ VIS_STRING $storage$\tod_const_vis_string[",
               strings.size());
    writeEntries(context.out, strings, kSeparator, [&](const ConstString &string) {
        context.out.parts("\t\"", literalOfSize(string.text, string.size), "\"");
    });
    writeSizes(context, "static $const$ UNSIGNED32 $storage$\tod_const_vis_string_len[", strings);
}

void writeUtf8Strings(Context &context, const QVector<ConstString> &strings)
{
    writeStart(context, "static $const$ UTF8_STRING $storage$\tod_const_utf8_string[",
               strings.size());
    writeEntries(context.out, strings, kSeparator, [&](const ConstString &string) {
        context.out.parts("\t", utf8Bytes(string.text));
    });
    writeSizes(context, "static $const$ UNSIGNED32 $storage$\tod_const_utf8_string_len[", strings);
}

} // namespace

bool ObjDict::takesLimits(quint16 dataType)
{
    const std::optional<ValueClass> valueClass = valueClassOf(dataType);
    return valueClass && valueClass != ValueClass::U24 && valueClass != ValueClass::U40 &&
           valueClass != ValueClass::U48 && valueClass != ValueClass::U64;
}

void ObjDict::collectConstants(Context &context)
{
    (void)collect(context); // its positions are wanted
}

void ObjDict::defineAllConsts(Context &context)
{
    context.out.raw("\n/* definition of constants */\n");
    const Constants constants = collect(context);
    for (const ValueClass valueClass : kOrder) {
        const QVector<quint64> &values = constants.arrays[numberOf(valueClass)].all();
        if (values.isEmpty())
            continue;
        context.positions.constArrays[numberOf(valueClass)] = true;
        writeNumbers(context, valueClass, values);
    }
    context.positions.hasConstVisString = !constants.visStrings.isEmpty();
    if (context.positions.hasConstVisString)
        writeVisStrings(context, constants.visStrings);
    context.positions.hasConstUtf8String = !constants.utf8Strings.isEmpty();
    if (context.positions.hasConstUtf8String)
        writeUtf8Strings(context, constants.utf8Strings);
}
