// The section of gen_define.h on the events that the application hears of.
#pragma once

#include "generators/defines/definecontext.h"

namespace Defines
{

/// Static events are calls of one named function, dynamic ones need slots for registrations. Sets
/// the flags dynamicCan and eventSlots.
void generateEventDefines(DefineContext &context);

/// Those of ISO-TP alone, for devices whose header has no section of events, unless they are
/// written already.
void writeIsoTpSlots(DefineContext &context);

/// One slot for the dynamic event that \a setting counts, unless some are written already.
void reserveEventSlot(DefineContext &context, const char *setting);

} // namespace Defines
