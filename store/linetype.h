// The protocol of a CAN line, as the project's settings say.
#pragma once

#include <QtGlobal>

class ObjectDataBase;

/// Protocol of a line, the number of the general setting "line<n>type"; any other number is
/// unknown.
enum class LineType : qint32 {
    CANopen = 1,
    J1939 = 2,
    RawCan = 4,
    CANopenAndJ1939 = 5,
};

constexpr bool isKnown(LineType type)
{
    return type == LineType::CANopen || type == LineType::J1939 || type == LineType::RawCan ||
           type == LineType::CANopenAndJ1939;
}

constexpr bool carriesCANopen(LineType type)
{
    return type == LineType::CANopen || type == LineType::CANopenAndJ1939;
}

constexpr bool carriesJ1939(LineType type)
{
    return type == LineType::J1939 || type == LineType::CANopenAndJ1939;
}

LineType readLineType(const ObjectDataBase &store, quint8 line);
