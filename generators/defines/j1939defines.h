// The section of gen_define.h that tells the stack which J1939 modules it needs, and sizes the
// tables of parameter groups.
#pragma once

#include "generators/defines/definecontext.h"

namespace Defines
{

/// In a project without CANopen it also writes what the services and events would. The tool named
/// "CAN Tessarine" writes it for J1939 lines only.
void generateJ1939Defines(DefineContext &context);

} // namespace Defines
