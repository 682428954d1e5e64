// The section of gen_define.h that tells the stack which CANopen services it needs, and how often.
#pragma once

#include "generators/defines/definecontext.h"

namespace Defines
{

/// Writes nothing in a project without a CANopen line. Sets the flags of what it writes.
void generateServiceDefines(DefineContext &context);

/// The switches that the tables of an object dictionary depend on, limits and types of values, for
/// one without CANopen services around it. Nothing if the services have written them.
void generateTableSwitches(DefineContext &context);

} // namespace Defines
