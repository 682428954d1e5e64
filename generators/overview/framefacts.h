// The frames of a line, with what lies in their bits, when they are sent, and who uses which
// identifier.
#pragma once

#include "generators/overview/facts.h"
#include "store/linetype.h"

class ObjectDataBase;

namespace Overview
{

/// Fills the line's frames, in the order of a reader, and its identifiers. Its node-ID and whether
/// it has CAN FD are known already.
void readFrames(const ObjectDataBase &store, LineType type, Line &line);

} // namespace Overview
