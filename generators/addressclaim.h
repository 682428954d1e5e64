// The group by which a J1939 device claims its address (SAE J1939-81, 4.1.1).
#pragma once

#include "store/records.h"

#include <QVector>

class ObjectDataBase;

namespace AddressClaim
{

/// The group, and its signals with the NAME of the device as the settings give it. \a reservedSpn
/// is the number of the NAME's reserved bit.
PgnData group();
QVector<SpnData> signalsOf(const ObjectDataBase &store, quint8 line, quint32 reservedSpn);

/// Address of the line from the list of start addresses; the null address if there is none.
constexpr quint8 kNullAddress = 0xFE;
quint8 addressOf(const ObjectDataBase &store, quint8 line);

/// The NAME as the number that is sent, of the settings that are numbers.
quint64 nameOf(const ObjectDataBase &store, quint8 line);

/// Gives a line the group with its signals. Where \a reservedSpn is the number of a field before
/// the bit, the bit takes the field's place. Other signals of the group stay. Writes to the
/// project, so that it runs before a job.
void declare(ObjectDataBase &store, quint8 line, quint32 reservedSpn);

} // namespace AddressClaim
