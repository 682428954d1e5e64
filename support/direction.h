// Which way a frame of a J1939 or raw CAN line goes.
#pragma once

#include <QtGlobal>

/// Numbers of the column "direction", seen from the device. Records keep them as integers, because
/// a project may hold any number.
namespace Direction
{

constexpr quint8 kBoth = 0; ///< in questions to the store only: frames of either direction
constexpr quint8 kTransmitted = 0x55;
constexpr quint8 kReceived = 0x77;

} // namespace Direction
