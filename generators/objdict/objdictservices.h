// Objects of the communication profile that the stack keeps by itself.
#pragma once

#include "support/objectranges.h"

#include <QtGlobal>

namespace ObjDict
{

/// What the reference column of such an object holds.
enum class Reference {
    Position, ///< of its value, as with all other objects
    Index,
    Number, ///< 1 for the first object of the range
};

struct ServiceRow {
    ObjectRange objects;
    quint8 firstSub;
    quint8 lastSub;
    const char *suffix; ///< of the data type tag: the module that answers
    bool hasVariable;   ///< a managed variable is kept for it all the same
    Reference reference;
};

/// The row of a subindex that the stack keeps; null for all others.
const ServiceRow *serviceOf(quint16 index, quint8 sub);

} // namespace ObjDict
