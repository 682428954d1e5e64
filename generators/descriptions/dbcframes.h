// The frames of J1939 and raw CAN lines for DBC files.
#pragma once

#include "generators/descriptions/dbcform.h"
#include "generators/descriptions/dbcframe.h"
#include "store/objectdatabase.h"

#include <QVector>

namespace Dbc
{

/// Where frames come from, and how they are told.
struct Source {
    const ObjectDataBase &store;
    const DbcForm &form;
    quint8 line;
    quint8 address = 0; ///< of the device, in J1939
    bool isCanFd = false;
    bool withImplementation = false;
};

/// Received ones before sent ones, each by number.
struct Frames {
    QVector<Frame> frames;
    int unfitSignals = 0;     ///< left out, for want of room in their frame
    int unfitIdentifiers = 0; ///< left out, for want of bits
};

/// The groups of a J1939 line.
Frames groupsOf(const Source &source);

/// The identifiers of a raw CAN line.
Frames identifiersOf(const Source &source);

/// Bytes of a frame that has room for \a bytes, of which CAN FD has only some numbers.
int frameLength(int bytes);

} // namespace Dbc
