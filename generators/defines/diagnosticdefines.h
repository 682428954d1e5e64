// The sections of gen_define.h for ISO-TP, the transport of long messages (ISO 15765-2), and for
// UDS, the diagnostic services above it (ISO 14229-1).
#pragma once

#include "generators/defines/definecontext.h"

namespace Defines
{

/// Writes the section of each that the project uses; UDS brings ISO-TP with it. They follow the
/// section of J1939.
void generateISOTP_UDS_Defines(DefineContext &context);

} // namespace Defines
