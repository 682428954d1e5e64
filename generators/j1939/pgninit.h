// The start-up of a J1939 device.
#pragma once

#include "generators/j1939/pgncontext.h"

namespace Pgn
{

/// `j1939StackInit`, which starts all J1939 lines. Refers to the structures of defineJ1939Config().
void generateStackInit(Context &context);

/// The values of a J1939_SERVICE_INIT_VAL_T up to the end of its definition, and an empty line.
void writeServiceValues(Context &context);

} // namespace Pgn
