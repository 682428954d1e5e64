// The raw CAN section of gen_define.h: identifiers that the application sends and receives without
// a protocol above them.
#pragma once

#include "generators/defines/definecontext.h"

namespace Defines
{

/// Writes the section if a line is of raw CAN. It follows the sections of CANopen and J1939.
void generateCANRAWDefines(DefineContext &context);

} // namespace Defines
