// The sections of gen_define.h on the memory for CAN messages.
#pragma once

#include "generators/defines/definecontext.h"

namespace Defines
{

/// Sizes of the CAN queues, which all lines share.
void generateBufferDefines(DefineContext &context);

/// Message objects by line, for projects of several protocols.
void generateMultiCOBs(DefineContext &context);

} // namespace Defines
