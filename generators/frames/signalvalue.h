// What the bits of a signal can hold.
#pragma once

#include "generators/frames/frame.h"

namespace Frames
{

/// Bits, sign and limits of a number of the type, or of \a bits of it, and the value that it starts
/// with as the project says it.
Signal numberOf(CAN::CANopenDataType type, int bits, const QString &startValue);

/// Gives a signal limits that are within what its bits can hold; others are not taken. An empty one
/// stays that of the bits.
void setLimits(Signal &signal, const QString &low, const QString &high);

} // namespace Frames
