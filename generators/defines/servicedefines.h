// The section of gen_define.h that tells the stack which CANopen services it needs, and how often.
#pragma once

#include "generators/defines/definecontext.h"

namespace Defines
{

/// Writes nothing in a project without a CANopen line. Sets all flags but dynamicCan.
void generateServiceDefines(DefineContext &context);

} // namespace Defines
