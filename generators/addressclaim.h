// The group by which a J1939 device claims its address (SAE J1939-81, 4.1.1).
#pragma once

#include <QtGlobal>

class ObjectDataBase;

namespace AddressClaim
{

/// Gives a line the group "Address Claiming" with the NAME of the device as the settings give it.
/// \a reservedSpn is the number of the NAME's reserved bit; with that of a field before it, the bit
/// takes the field's place. Other signals of the group stay. Writes to the project, so that it runs
/// before a job.
void declare(ObjectDataBase &store, quint8 line, quint32 reservedSpn);

} // namespace AddressClaim
