// What descriptions keep of a DBC file, where a project has no place for it.
#pragma once

#include "import/dbclayout.h"

#include <QString>

namespace DbcText
{

/// Has the signal more than a raw number: factor, offset, unit, or limits within its bits?
bool isScaled(const DbcSignal &signal);

/// The comment of the signal that the element is of, and what its number means; of the parts of a
/// signal only the first has all.
QString ofElement(const DbcElement &element);

/// The comment of the message, from where to where it goes, and what of it \a leftOut is not in
/// the frame.
QString ofMessage(const DbcMessage &message, bool isGroup,
                  const QVector<const DbcSignal *> &leftOut);

} // namespace DbcText
