// The EnergyBus section of gen_define.h (CiA 454): the settings that this tool's edition for
// EnergyBus keeps.
#pragma once

#include "generators/defines/definecontext.h"

namespace Defines
{

/// Writes one define for each setting that has a value, in that edition of the tool alone.
void generateEnergyBusDefines(DefineContext &context);

} // namespace Defines
