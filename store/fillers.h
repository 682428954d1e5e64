// Bits of a frame that no signal has: elements that stand in their place, so that those after them
// lie where they should.
#pragma once

#include "store/records.h"

/// A filler has "dummy" in its name, by which writers of the signals know it, and a variable that
/// generated sources keep.
namespace Fillers
{

constexpr quint32 kFirstNumber = 1 << 19; ///< in groups, whose signals have numbers of 19 bits

/// By the name.
bool isFiller(const SignalData &signal);

/// The type of that many bits, or the widest of whole bytes that are less; of 1 bit at least.
CAN::CANopenDataType typeFor(quint32 bits);

/// Can a filler be of that type?
bool canHaveType(quint32 dataType);

/// Makes a filler of a signal that has its frame, direction and place.
void make(SignalData *signal, quint32 dataType);

} // namespace Fillers
