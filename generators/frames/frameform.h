// What the forms of frames of J1939 differ in.
#pragma once

#include "generators/frames/frame.h"
#include "store/records.h"

namespace Frames
{

struct Form {
    quint32 reservedSpn = 0; ///< of the reserved bit in the NAME of a device
    int mostGroupBits = 0;
    qint64 highestSpn = 0;

    /// Of a group that the device with \a address sends or receives.
    quint32 (*identifier)(const PgnData &group, quint8 address) = nullptr;
    /// Bits of a signal of a group in the project; texts have a size of their own.
    int (*bitsInGroup)(const SignalData &data) = nullptr;
    /// Of a group whose signals take so many bits.
    int (*groupBytes)(int bits) = nullptr;
    /// How a signal of so many \a bits lies in a frame that has \a room for some more; without bits
    /// if it does not.
    Signal (*signal)(const SignalData &data, int bits, int room) = nullptr;
};

/// As classic DBC files tell them.
const Form &classicForm();
/// As they are on the bus.
const Form &busForm();

} // namespace Frames
