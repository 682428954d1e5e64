// Defines that several sections of gen_define.h may write. The first section that asks writes one,
// for the others it is there: WrittenDefines remembers.
#pragma once

#include "generators/defines/definecontext.h"

namespace Defines
{

/// The comment line that begins a section, with a blank line before it if there is none.
void writeHeading(DefineContext &context, const char *line);

/// That the device has several lines, and how many.
void writeMultiLine(DefineContext &context);

/// Sizes of the CAN queues by line; \a withSizes also by the names that have no list.
void writeBufferCounts(DefineContext &context, bool withSizes);

/// Nothing if \a count is zero, as for clients and for CAN events.
void writeSdoServerCount(DefineContext &context, quint32 count);
void writeSdoClientCount(DefineContext &context, quint32 count);

/// That some message has an inhibit time.
void writeInhibit(DefineContext &context);

/// Functions that the application may register for CAN events.
void writeCanEvents(DefineContext &context, qint32 count);

/// That the device has ISO-TP, and its number of connections if the project gives one.
void writeIsoTp(DefineContext &context);
quint8 isoTpConnectionCount(const GeneralSettings &settings);

} // namespace Defines
