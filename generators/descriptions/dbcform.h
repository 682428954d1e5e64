// What the forms of DBC files differ in.
#pragma once

#include "generators/descriptions/dbcframe.h"
#include "generators/descriptions/descriptionform.h"
#include "store/records.h"

/// Of one kind of frames.
struct DbcForm : DescriptionForm {
    quint32 reservedSpn = 0;  ///< of the reserved bit in the NAME of a device
    bool tellsDevice = false; ///< as a node, which sends and receives
    /// Attributes of frames and signals that readers know beyond those of the classic form.
    bool tellsMore = false;
    bool doublesBackslashes = true;
    bool hasEachIdentifierOnce = false;
    int mostGroupBits = 0;
    qint64 highestSpn = 0;

    QString (*name)(const QString &text) = nullptr;
    /// \a isWhole becomes false if letters are lost.
    QString (*text)(const QString &text, bool *isWhole) = nullptr;

    /// Of a group that the device with \a address sends or receives.
    quint32 (*identifier)(const PgnData &group, quint8 address) = nullptr;
    /// Bits of a signal of a group in the project; texts have a size of their own.
    int (*bitsInGroup)(const SignalData &data) = nullptr;
    /// Of a group whose signals take so many bits.
    int (*groupBytes)(int bits) = nullptr;
    /// How a signal of so many \a bits lies in a frame that has \a room for some more; without bits
    /// if it does not.
    Dbc::Signal (*signal)(const SignalData &data, int bits, int room) = nullptr;
};

const DbcForm &classicDbc();
const DbcForm &portableDbc();

namespace Dbc
{

/// Bits, sign and limits of a number of the type, or of \a bits of it, and the value that it starts
/// with as the project says it.
Signal numberOf(CAN::CANopenDataType type, int bits, const QString &startValue);

/// Gives a signal limits that are within what its bits can hold; others are not taken. An empty one
/// stays that of the bits.
void setLimits(Signal &signal, const QString &low, const QString &high);

} // namespace Dbc
