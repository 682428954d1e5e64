// The frames of J1939 and raw CAN lines.
#pragma once

#include "generators/frames/frameform.h"
#include "store/objectdatabase.h"

#include <QVector>

namespace Frames
{

/// Where frames come from, and how they are told.
struct Source {
    const ObjectDataBase &store;
    const Form &form;
    quint8 line;
    quint8 address = 0; ///< of the device, in J1939
    bool isCanFd = false;
    bool withImplementation = false;
    /// Also what is no part of the project as it stands: frames that are switched off, fillers,
    /// signals that are not within their frame, and the claim of the device's address.
    bool keepsAll = false;
};

/// Received ones before sent ones, each by number.
struct Collected {
    QVector<Frame> frames;
    int unfitSignals = 0;     ///< left out, for want of room in their frame
    int unfitIdentifiers = 0; ///< left out, for want of bits
};

/// The groups of a J1939 line.
Collected groupsOf(const Source &source);

/// The identifiers of a raw CAN line.
Collected identifiersOf(const Source &source);

} // namespace Frames
