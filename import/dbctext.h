// What descriptions keep of a DBC file, where a project has no place for it.
#pragma once

#include "import/dbclayout.h"

#include <QString>

namespace DbcText
{

/// What a project says of its device besides the frames, which descriptions need not repeat.
struct Device {
    bool isTold = false; ///< else descriptions hold all
    QString node;        ///< by its name in the file; empty: none
    int address = -1;    ///< -1: not known
};

/// Has the signal more than a raw number: factor, offset, unit, or limits within its bits?
bool isScaled(const DbcSignal &signal);

/// The comment of the signal that the element is of, and what its number means; of the parts of a
/// signal only the first has all.
QString ofElement(const DbcElement &element);

/// Of a text in a group: as above, without what our files add of its length.
QString ofText(const DbcElement &element);

/// The comment of the message, from where to where it goes, and what of it \a leftOut is not in
/// the frame.
QString ofMessage(const DbcMessage &message, bool isGroup, const Device &own,
                  const QVector<const DbcSignal *> &leftOut);

} // namespace DbcText
