// The frames that a CANopen device sends and receives.
#pragma once

#include "generators/frames/busframes.h"

#include <optional>

namespace Frames
{

/// The node-ID of a line from 1 to 127, if the project says it.
std::optional<quint8> nodeIdOf(const ObjectDataBase &store, quint8 line);

/// What tells a value of an object apart: the name of a member alone often says too little.
QString nameOf(const IndexData &object, const SubIndexData &data);

/// The services of the device (CiA 301), whose frames have the identifiers of the project's
/// objects, and of the predefined connection set of \a nodeId where it says none.
Collected canopenFramesOf(const Source &source, quint8 nodeId);

} // namespace Frames
