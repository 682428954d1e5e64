// How the signals of a DBC message lie in a frame of a project.
#pragma once

#include "formats/dbcfile.h"
#include "import/dbctally.h"
#include "support/candatatype.h"

#include <QVector>

/// A stretch of a frame.
struct DbcElement {
    enum class Part {
        Whole, ///< all of the signal, or a gap
        Byte,  ///< the bits that a big-endian signal has in one byte
        Bits,  ///< some bits of a number for which there is no type
    };

    const DbcSignal *signal = nullptr; ///< null: a gap
    quint32 start = 0;                 ///< its first bit, as in the file
    quint32 bits = 0;
    CAN::CANopenDataType type = CAN::CANopenDataType::Unknown;
    Part part = Part::Whole;
    int number = 0;    ///< of the byte, from the most significant one
    quint32 shift = 0; ///< bits of the signal's value below these
};

/// Frames of projects have no places for their elements but one after the other, and numbers in
/// them have their least significant bit first.
namespace DbcLayout
{

/// From the first bit of the message to the last. Signals that do not fit are left out and counted
/// by \a tally; their names go to \a leftOut. Octet strings only in a group of J1939.
QVector<DbcElement> of(const DbcMessage &message, bool isGroup, DbcTally *tally,
                       QVector<const DbcSignal *> *leftOut);

} // namespace DbcLayout
