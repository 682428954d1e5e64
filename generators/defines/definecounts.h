// The arithmetic of gen_define.h: how many CAN message objects (COBs) lines need. The stack
// allocates nothing, so each term is kept that may need memory. All sums are of 16 bits and wrap.
#pragma once

#include "generators/defines/definecontext.h"

namespace Defines
{

constexpr quint8 kAllLines = 255;

/// COBs of a CANopen line, or with kAllLines of all lines that have an object 0x1000.
quint16 getCobCount(const DefineContext &context, quint8 line);

/// COBs of a J1939 line.
quint16 getJ1939Cobs(const DefineContext &context, quint8 line);

/// COBs of a line in a project of several protocols, by its type; 0 for an unknown type.
quint16 getMultiProtocolCobs(const DefineContext &context, quint8 line);

/// How many message objects the ISO-TP connections of a line take.
quint32 isoTpCobs(const GeneralSettings &settings, quint8 line);

/// Number of objects from \a low to \a high.
quint16 countIndices(const ObjectDataBase &store, quint8 line, ObjectRange range);

/// Number of an object's subindices from \a minSub up.
quint16 countSubs(const ObjectDataBase &store, quint8 line, quint16 index, quint8 minSub);

/// Default value of a subindex as a number, read by its prefix.
quint32 subValue(const ObjectDataBase &store, quint8 line, quint16 index, quint8 sub);

/// Can the line take part in the choice of a flying master (0x1F80, CiA 302-2)?
bool hasFlyingMaster(const ObjectDataBase &store, quint8 line);

} // namespace Defines
