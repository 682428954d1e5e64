// The section of gen_define.h that adapts the stack to its hardware.
#pragma once

#include "generators/defines/definecontext.h"

namespace Defines
{

/// Timers, byte order and filters of the active target, or of all targets, each guarded by its
/// macro, so that one header serves them all.
void generateHardwareDefines(DefineContext &context);

} // namespace Defines
