// The vocabulary of CANopen object dictionaries: names and sizes of data types, names of object
// codes, access types and mappings.
#pragma once

#include "support/candatatype.h"
#include "support/pdomapping.h"

#include <QString>

/// Look-ups in constant tables; an object holds no state and may be used from any thread.
class COHelper
{
public:
    /// Bits of a fixed-size type, 1 to 64; 0 for strings, domains and unknown types.
    static quint8 getDataLengthBits(CAN::CANopenDataType type);

    /// Bytes and strings whose size is a property of the object, not of the type.
    static bool isStringLike(CAN::CANopenDataType type);

    /// A type that holds a whole number with a sign.
    static bool isSignedInteger(CAN::CANopenDataType type);

    /// Value range of an integer or boolean as decimal text; empty texts for all other types.
    static void getDefaultLimits(CAN::CANopenDataType type, QString &low, QString &high);

    /// CiA 301 name such as "UNSIGNED8"; empty for an unknown type.
    static QString index2DataTypeString(quint16 type);

    /// Short name such as "U8", from which names in generated C are made; empty for an unknown
    /// type.
    static QString index2DataTypeShortString(quint16 type);

    /// Type number of a long or short name, or of a number in decimal or hexadecimal; in any case.
    /// 0 if the text is none of these.
    static quint16 mapDataTypeString(const QString &text);

    /// "VAR", "ARRAY" and so on; empty for an unknown code.
    static QString objectCode2String(CANopen::ObjectCode code);

    /// Takes the words of objectCode2String and "VARIABLE", in any case; Null for any other text.
    static CANopen::ObjectCode string2objectCode(const QString &text);

    static QString pdoMapping2String(PDOMapping mapping) { return mapping.getCSVStringValue(); }

    /// Display text of an implementation type, 0 to 3; empty above.
    static QString implementation2String(quint8 implementation);

    /// Word of an implementation type in tables: "managedvariable", "managedconst", "variable",
    /// "virtualobject"; empty above 3.
    static QString implementation2Word(quint8 implementation);

    /// Takes the words of implementation2Word(), in any case; -1 for any other text.
    static int word2Implementation(const QString &text);

    /// One of "const", "ro", "rw", "wo", "rww", "rwr". Takes these in any case and with blanks, "r"
    /// and "w" for short, and "ro" for whatever is none of them.
    static QString normalizeAccessType(const QString &text);
};
