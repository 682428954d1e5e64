// Synthetic J1939 groups and raw CAN identifiers, half of them sent, half received. The same number
// always gives the same frames.
#pragma once

#include "store/objectdatabase.h"

namespace Bench
{

/// Each group has eight signals.
void addGroups(ObjectDataBase &store, quint8 line, int count);

/// Groups of the same kind as a DBC file of the nodes "Unit" and "Other", which send half of them
/// each; at most 8192. False if the file cannot be written.
bool writeDbc(int count, const QString &path);

/// Each identifier has eight data elements.
void addIdentifiers(ObjectDataBase &store, quint8 line, int count);

} // namespace Bench
