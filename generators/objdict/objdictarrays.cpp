// Values of the object dictionary as arrays.
#include "generators/objdict/objdictarrays.h"

#include "generators/abstractgenerator.h"
#include "support/numbers.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace
{

using namespace ObjDict;
using Type = CAN::CANopenDataType;

// Row order is the order of ValueClass.
// clang-format off
constexpr ClassRow kClasses[] = {
    {ValueClass::U8, NumberKind::Unsigned, 8, Type::Unknown, "\t(UNSIGNED8)", "u", ",\n",
     "static UNSIGNED8 $storage$\tod_u8[", "static $const$ UNSIGNED8 $storage$\tod_const_u8[",
     "static UNSIGNED8 $storage$ * $const$ \tod_ptr_u8[", "od_u8", "od_const_u8"},
    {ValueClass::U16, NumberKind::Unsigned, 16, Type::Unknown, "\t(UNSIGNED16)", "u", ",\n",
     "static UNSIGNED16 $storage$\tod_u16[", "static $const$ UNSIGNED16 $storage$\tod_const_u16[",
     "static UNSIGNED16 $storage$ * $const$ \tod_ptr_u16[", "od_u16", "od_const_u16"},
    {ValueClass::U24, NumberKind::Unsigned, 24, Type::Unsigned24, "\t", "", ",\n",
     "static UNSIGNED24 $storage$\tod_u24[", "static $const$ UNSIGNED24 $storage$\tod_const_u24[",
     "static UNSIGNED24 $storage$ * $const$ \tod_ptr_u24[", "od_u24", "od_const_u24"},
    {ValueClass::U32, NumberKind::Unsigned, 32, Type::Unknown, "\t(UNSIGNED32)", "UL", ",\n",
     "static UNSIGNED32 $storage$\tod_u32[", "static $const$ UNSIGNED32 $storage$\tod_const_u32[",
     "static UNSIGNED32 $storage$ * $const$ \tod_ptr_u32[", "od_u32", "od_const_u32"},
    {ValueClass::U40, NumberKind::Unsigned, 40, Type::Unsigned40, "\t", "", ",\n",
     "static UNSIGNED40 $storage$\tod_u40[", "static $const$ UNSIGNED40 $storage$\tod_const_u40[",
     "static UNSIGNED40 $storage$ * $const$ \tod_ptr_u40[", "od_u40", "od_const_u40"},
    {ValueClass::U48, NumberKind::Unsigned, 48, Type::Unsigned48, "\t", "", ",\n",
     "static UNSIGNED48 $storage$\tod_u48[", "static $const$ UNSIGNED48 $storage$\tod_const_u48[",
     "static UNSIGNED48 $storage$ * $const$ \tod_ptr_u48[", "od_u48", "od_const_u48"},
    {ValueClass::U64, NumberKind::Unsigned, 64, Type::Unsigned64, "\t", "", ",\n",
     "static UNSIGNED64 $storage$\tod_u64[", "static $const$ UNSIGNED64 $storage$\tod_const_u64[",
     "static UNSIGNED64 $storage$ * $const$ \tod_ptr_u64[", "od_u64", "od_const_u64"},
    {ValueClass::I8, NumberKind::Signed, 8, Type::Unknown, "\t(INTEGER8)", "", ",\n",
     "static INTEGER8  $storage$\tod_i8[", "static $const$ INTEGER8 $storage$\tod_const_i8[",
     "static INTEGER8  $storage$ * $const$ \tod_ptr_i8[", "od_i8", "od_const_i8"},
    {ValueClass::I16, NumberKind::Signed, 16, Type::Unknown, "\t(INTEGER16)", "", ",\n",
     "static INTEGER16 $storage$\tod_i16[", "static $const$ INTEGER16 $storage$\tod_const_i16[",
     "static INTEGER16 $storage$ * $const$ \tod_ptr_i16[", "od_i16", "od_const_i16"},
    {ValueClass::I24, NumberKind::Signed, 24, Type::Integer24, "\t", "", ",\n",
     "static INTEGER24 $storage$\tod_i24[", "static $const$ INTEGER24 $storage$\tod_const_i24[",
     "static INTEGER24 $storage$ * $const$ \tod_ptr_i24[", "od_i24", "od_const_i24"},
    // Deliberate: the blank after the line end of variables, held by tst_golden.
    {ValueClass::I32, NumberKind::Signed, 32, Type::Unknown, "\t(INTEGER32)", "L", ",\n ",
     "static INTEGER32 $storage$\tod_i32[", "static $const$ INTEGER32 $storage$\tod_const_i32[",
     "static INTEGER32 $storage$ * $const$ \tod_ptr_i32[", "od_i32", "od_const_i32"},
    {ValueClass::R32, NumberKind::Real, 32, Type::Unknown, "\t(REAL32)", "f", ",\n",
     "static REAL32 $storage$\tod_r32[", "static $const$ REAL32 $storage$\tod_const_r32[",
     "static REAL32 $storage$ * $const$ \tod_ptr_r32[", "od_r32", "od_const_r32"},
};
// clang-format on

constexpr bool rowsFollowTheEnum()
{
    for (std::size_t i = 0; i < std::size(kClasses); ++i) {
        if (numberOf(kClasses[i].valueClass) != i)
            return false;
    }
    return std::size(kClasses) == std::size_t(kValueClassCount);
}
static_assert(rowsFollowTheEnum(), "a class is found by its number");

quint64 bitsOf(float value)
{
    quint32 bits = 0;
    static_assert(sizeof bits == sizeof value, "a float is 32 bits wide");
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

float floatOf(quint64 value)
{
    const auto bits = static_cast<quint32>(value);
    float result = 0;
    std::memcpy(&result, &bits, sizeof result);
    return result;
}

quint64 parseReal(const QString &text)
{
    bool isNumber = false;
    const float value = text.toFloat(&isNumber);
    // Deliberate: C has no literal for "inf" and "nan", held by tst_generatedc.
    return isNumber && std::isfinite(value) ? bitsOf(value) : 0;
}

/// \a value in as many bits; the highest of them is the sign.
quint64 signExtended(qint64 value, int bits)
{
    const int unused = 64 - bits;
    return static_cast<quint64>(static_cast<qint64>(static_cast<quint64>(value) << unused) >>
                                unused);
}

} // namespace

const ObjDict::ClassRow &ObjDict::rowOf(ValueClass valueClass)
{
    return kClasses[numberOf(valueClass)];
}

quint64 ObjDict::parseValue(ValueClass valueClass, const QString &text)
{
    const ClassRow &row = rowOf(valueClass);
    if (row.kind == NumberKind::Real)
        return parseReal(text);
    if (row.kind == NumberKind::Signed)
        return signExtended(Numbers::toLongLongByPrefix(text), row.bits);
    const quint64 value =
        row.bits > 32 ? Numbers::toULongLongByPrefix(text) : Numbers::toUIntByPrefix(text);
    return value & (~quint64(0) >> (64 - row.bits));
}

quint64 ObjDict::parseLimit(ValueClass valueClass, const QString &text)
{
    const ClassRow &row = rowOf(valueClass);
    return row.kind == NumberKind::Signed ? signExtended(Numbers::toIntDecimal(text), row.bits)
                                          : parseValue(valueClass, text);
}

void ObjDict::writeElement(TextWriter &out, ValueClass valueClass, quint64 value, int realDigits)
{
    const ClassRow &row = rowOf(valueClass);
    const auto asSigned = static_cast<qint64>(value);
    out.raw(row.start);
    if (row.byteWiseType != Type::Unknown)
        out.raw(AbstractGenerator::convertValue(row.byteWiseType, value, asSigned));
    else if (row.kind == NumberKind::Real)
        out.raw(QString::number(double(floatOf(value)), 'f', realDigits));
    else if (row.kind == NumberKind::Signed) // of 32 bits at most, as all that are left
        out.parts(asSigned < 0 ? "-" : "", static_cast<quint32>(qAbs(asSigned)));
    else
        out.raw(static_cast<quint32>(value));
    out.raw(row.end);
}

int ObjDict::ValueArray::append(quint64 value)
{
    values << value;
    return values.size() - 1;
}

int ObjDict::ValueArray::find(ValueClass valueClass, quint64 value)
{
    // -0.0 and 0.0 differ in their bits but are equal.
    const bool isZero = valueClass == ValueClass::R32 && floatOf(value) == 0;
    const quint64 key = isZero ? 0 : value;
    const auto known = places.constFind(key);
    if (known != places.constEnd())
        return *known;
    const int place = append(value);
    places.insert(key, place);
    return place;
}

void ObjDict::note(Positions &positions, Positions::Map Positions::*map, Key key, int position)
{
    if (position > std::numeric_limits<quint16>::max())
        positions.isOverfull = true;
    (positions.*map).insert(key, static_cast<quint16>(position));
}
