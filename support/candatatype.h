// The data types of the object dictionary by number, and the object codes. Names and sizes are
// looked up with COHelper.
#pragma once

#include <QtGlobal>

namespace CAN
{

/// Data type numbers: 1 to 27 are the indices of CiA 301, 7.4.7.2; 100 and above are this tool's
/// own types for signals that are narrower than a byte or lie across bytes, and for strings.
/// Records keep them as quint16, because a project may hold any number.
enum class CANopenDataType : quint16 {
    Unknown = 0,
    Boolean = 1,
    Integer8 = 2,
    Integer16 = 3,
    Integer32 = 4,
    Unsigned8 = 5,
    Unsigned16 = 6,
    Unsigned32 = 7,
    Real32 = 8,
    VisibleString = 9,
    OctetString = 10,
    UnicodeString = 11,
    TimeOfDay = 12,
    TimeDifference = 13,
    Domain = 15,
    Integer24 = 16,
    Real64 = 17,
    Integer40 = 18,
    Integer48 = 19,
    Integer56 = 20,
    Integer64 = 21,
    Unsigned24 = 22,
    Unsigned40 = 24,
    Unsigned48 = 25,
    Unsigned56 = 26,
    Unsigned64 = 27,
    Unsigned2 = 100,
    Unsigned3 = 101,
    Unsigned4 = 102,
    Unsigned5 = 103,
    Unsigned6 = 104,
    Unsigned7 = 105,
    Unsigned9 = 106,
    Unsigned10 = 107,
    Unsigned11 = 108,
    Unsigned12 = 109,
    Unsigned13 = 110,
    Unsigned14 = 111,
    Unsigned15 = 112,
    Unsigned19 = 117,
    Unsigned18 = 118,
    Unsigned21 = 119,
    StringNull = 120,     ///< string that ends with a zero byte (SAE J1939-71)
    StringAsterisk = 121, ///< string that ends with "*" (SAE J1939-71)
    Utf8String = 124,
    Unsigned29 = 129,
};

/// The number by which a record keeps a type.
constexpr quint16 typeNumber(CANopenDataType type)
{
    return static_cast<quint16>(type);
}

} // namespace CAN

namespace CANopen
{

/// Object codes of CiA 301, 7.4.3.
enum class ObjectCode : qint32 {
    Null = 0,
    Domain = 2,
    DefType = 5,
    DefStruct = 6,
    Var = 7,
    Array = 8,
    Record = 9,
};

} // namespace CANopen

namespace J1939
{

/// Kinds of signals, numbered as DBC files of J1939 number them.
enum class SigType {
    Default = 0,
    Range = 1,
    RangeSigned = 2,
    Ascii = 3,
    Discrete = 4,
    Control = 5,
    ReferencePgn = 6,
    Dtc = 7,
    StringDelimiter = 8,
    StringLength = 9,
    StringLengthControl = 10,
};

} // namespace J1939
