// Tables of the data types of signals.
#include "generators/j1939/pgntypes.h"

#include "support/candatatype.h"

namespace
{

using Type = CAN::CANopenDataType;
using Pgn::ValueArray;

/// A type that has an array.
struct ArrayRow {
    Type type;
    ValueArray array;
    quint64 notAvailable; ///< 0 for none
};

struct TagRow {
    Type type;
    const char *tag;
};

// clang-format off
constexpr ArrayRow kArrays[] = {
    {Type::Boolean,    ValueArray::U8,  1},
    {Type::Unsigned8,  ValueArray::U8,  0xFF},
    {Type::Unsigned2,  ValueArray::U8,  0x3},
    {Type::Unsigned3,  ValueArray::U8,  0x7},
    {Type::Unsigned4,  ValueArray::U8,  0xF},
    {Type::Unsigned5,  ValueArray::U8,  0x1F},
    {Type::Unsigned6,  ValueArray::U8,  0x3F},
    // Deliberate: one bit less than the type has, held by tst_pgngenerator.
    {Type::Unsigned7,  ValueArray::U8,  0x3F},
    {Type::Unsigned16, ValueArray::U16, 0xFFFF},
    {Type::Unsigned9,  ValueArray::U16, 0x1FF},
    {Type::Unsigned10, ValueArray::U16, 0x3FF},
    {Type::Unsigned11, ValueArray::U16, 0x7FF},
    {Type::Unsigned12, ValueArray::U16, 0xFFF},
    {Type::Unsigned13, ValueArray::U16, 0x1FFF},
    {Type::Unsigned14, ValueArray::U16, 0x3FFF},
    {Type::Unsigned15, ValueArray::U16, 0x7FFF},
    {Type::Unsigned32, ValueArray::U32, 0xFFFFFFFF},
    {Type::Unsigned24, ValueArray::U32, 0xFFFFFF},
    {Type::Unsigned19, ValueArray::U32, 0x7FFFF},
    {Type::Unsigned18, ValueArray::U32, 0x3FFFF},
    {Type::Unsigned21, ValueArray::U32, 0x1FFFFF},
    {Type::Unsigned29, ValueArray::U32, 0x1FFFFFFF},
    {Type::Unsigned40, ValueArray::U64, 0xFFFFFFFFFF},
    {Type::Unsigned48, ValueArray::U64, 0xFFFFFFFFFFFF},
    {Type::Unsigned64, ValueArray::U64, 0xFFFFFFFFFFFFFFFF},
    {Type::Integer8,   ValueArray::I8,  0},
    {Type::Integer16,  ValueArray::I16, 0},
    {Type::Integer32,  ValueArray::I32, 0},
    {Type::Integer24,  ValueArray::I32, 0},
    {Type::Real32,     ValueArray::R32, 0},
};

constexpr TagRow kTextTags[] = { // of groups
    {Type::StringAsterisk, "CORE_DTYPE_STRING_ASTERIKS"}, // so spelled in the stack
    {Type::StringNull,     "CORE_DTYPE_STRING_NULL"},
    {Type::OctetString,    "CORE_DTYPE_NON_NUMERIC"},
    {Type::Domain,         "CORE_DTYPE_NON_NUMERIC"},
};

constexpr TagRow kTags[] = {
    {Type::Boolean,        "CORE_DTYPE_U1"},
    {Type::Integer8,       "CORE_DTYPE_I8"},
    {Type::Integer16,      "CORE_DTYPE_I16"},
    {Type::Integer32,      "CORE_DTYPE_I32"},
    {Type::Unsigned8,      "CORE_DTYPE_U8"},
    {Type::Unsigned16,     "CORE_DTYPE_U16"},
    {Type::Unsigned32,     "CORE_DTYPE_U32"},
    {Type::Real32,         "CORE_DTYPE_R32"},
    {Type::VisibleString,  "CORE_DTYPE_VS"},
    {Type::OctetString,    "CORE_DTYPE_OS"},
    {Type::UnicodeString,  "CORE_DTYPE_US"},
    {Type::TimeOfDay,      "CORE_DTYPE_U48"},
    {Type::TimeDifference, "CORE_DTYPE_TD"},
    {Type::Domain,         "CORE_DTYPE_D"},
    {Type::Integer24,      "CORE_DTYPE_I24"},
    {Type::Real64,         "CORE_DTYPE_R64"},
    {Type::Integer40,      "CORE_DTYPE_I40"},
    {Type::Integer48,      "CORE_DTYPE_I48"},
    {Type::Integer56,      "CORE_DTYPE_I56"},
    {Type::Integer64,      "CORE_DTYPE_I64"},
    {Type::Unsigned24,     "CORE_DTYPE_U32"},
    {Type::Unsigned40,     "CORE_DTYPE_U40"},
    {Type::Unsigned48,     "CORE_DTYPE_U48"},
    {Type::Unsigned56,     "CORE_DTYPE_U56"},
    {Type::Unsigned64,     "CORE_DTYPE_U64"},
    {Type::Unsigned2,      "CORE_DTYPE_U2"},
    {Type::Unsigned3,      "CORE_DTYPE_U3"},
    {Type::Unsigned4,      "CORE_DTYPE_U4"},
    {Type::Unsigned5,      "CORE_DTYPE_U5"},
    {Type::Unsigned6,      "CORE_DTYPE_U6"},
    {Type::Unsigned7,      "CORE_DTYPE_U7"},
    {Type::Unsigned9,      "CORE_DTYPE_U16"},
    {Type::Unsigned10,     "CORE_DTYPE_U16"},
    {Type::Unsigned11,     "CORE_DTYPE_U16"},
    {Type::Unsigned12,     "CORE_DTYPE_U16"},
    {Type::Unsigned13,     "CORE_DTYPE_U16"},
    {Type::Unsigned14,     "CORE_DTYPE_U16"},
    {Type::Unsigned15,     "CORE_DTYPE_U16"},
    {Type::Unsigned19,     "CORE_DTYPE_U32"},
    {Type::Unsigned18,     "CORE_DTYPE_U32"},
    {Type::Unsigned21,     "CORE_DTYPE_U32"},
    {Type::StringNull,     "CORE_DTYPE_STRING_NULL"},
    {Type::StringAsterisk, "CORE_DTYPE_STRING_ASTERIKS"},
    {Type::Utf8String,     "CORE_DTYPE_UTF8"},
    {Type::Unsigned29,     "CORE_DTYPE_U32"},
};
// clang-format on

template <class Row, size_t N>
const Row *rowOf(const Row (&rows)[N], quint32 dataType)
{
    for (const Row &row : rows) {
        if (static_cast<quint32>(row.type) == dataType)
            return &row;
    }
    return nullptr;
}

} // namespace

std::optional<Pgn::ValueArray> Pgn::arrayOf(quint32 dataType)
{
    const ArrayRow *row = rowOf(kArrays, dataType);
    return row ? std::make_optional(row->array) : std::nullopt;
}

std::optional<quint64> Pgn::notAvailable(quint32 dataType)
{
    const ArrayRow *row = rowOf(kArrays, dataType);
    return row && row->notAvailable != 0 ? std::make_optional(row->notAvailable) : std::nullopt;
}

bool Pgn::isTextOfGroup(quint32 dataType)
{
    return rowOf(kTextTags, dataType) != nullptr;
}

const char *Pgn::typeTagOfGroup(quint32 dataType)
{
    const TagRow *row = rowOf(kTextTags, dataType);
    return row ? row->tag : typeTagOfIdentifier(dataType);
}

const char *Pgn::typeTagOfIdentifier(quint32 dataType)
{
    const TagRow *row = rowOf(kTags, dataType);
    // Deliberate: a number that is not a type has no word of its own, and no bits either; held by
    // tst_pgngenerator.
    return row ? row->tag : "CORE_DTYPE_NON_NUMERIC";
}
