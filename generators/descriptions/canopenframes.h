// The frames that a CANopen device sends and receives, for DBC files.
#pragma once

#include "generators/descriptions/dbcframes.h"

#include <optional>

namespace Dbc
{

/// The node-ID of a line from 1 to 127, if the project says it.
std::optional<quint8> nodeIdOf(const ObjectDataBase &store, quint8 line);

/// The services of the device (CiA 301), whose frames have the identifiers of the project's
/// objects, and of the predefined connection set of \a nodeId where it says none.
Frames canopenFramesOf(const Source &source, quint8 nodeId);

} // namespace Dbc
