// Data types of signals in the J1939 source: variables and type tags.
#pragma once

#include "generators/j1939/pgncontext.h"

namespace Pgn
{

/// The array for the managed variable of a type; none for a type that has no such variable.
std::optional<ValueArray> arrayOf(quint32 dataType);

/// SAE J1939-71: all bits set say that a parameter is not available. None for signed types and
/// reals, where the standard has no such value.
std::optional<quint64> notAvailable(quint32 dataType);

/// A type whose size is given by the signal: its variable is an array.
bool isTextOfGroup(quint32 dataType);

/// The type word of a mapping row of a group, and of a raw CAN identifier.
const char *typeTagOfGroup(quint32 dataType);
const char *typeTagOfIdentifier(quint32 dataType);

} // namespace Pgn
