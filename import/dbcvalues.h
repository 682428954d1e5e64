// Values that attributes of a DBC file give to frames and signals.
#pragma once

#include "formats/dbcfile.h"
#include "import/dbclayout.h"

#include <QString>

namespace DbcValues
{

/// The milliseconds of the message's cycle, 0 for none. \a isFit becomes false if a project cannot
/// hold them; the nearest that it can is the result.
quint16 cycleTimeMs(const DbcFile &file, const DbcMessage &message, bool *isFit);

/// What the bits of the element are at the start, as the default value of a project. \a isFit
/// becomes false if the signal cannot hold what the file tells; the result is that of 0 then.
QString startValue(const DbcFile &file, const DbcElement &element, bool *isFit);

/// What kind of text the signal stands for, as the writer of this tool leaves it: a byte that says
/// how long a text can be that "*" ends, or the longest text in a message of variable length.
/// Type::Unknown if it is no text of variable length.
CAN::CANopenDataType typeOfText(const DbcFile &file, const DbcMessage &message,
                                const DbcSignal &signal);
/// Of such a text.
quint16 bitsOfText(const DbcFile &file, const DbcSignal &signal);

} // namespace DbcValues
