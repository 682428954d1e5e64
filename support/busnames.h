// Names of what a monitor sees on the bus, for tools of the family that list messages.
#pragma once

#include <QMap>
#include <QString>

namespace CAN
{

/// Names of the errors that a CAN controller reports, by the number that drivers give them.
QMap<quint8, QString> errorNames();

} // namespace CAN

namespace CANopen
{

/// What a CAN message is to CANopen (CiA 301 and the profiles that add services).
enum class MessageType : quint8 {
    Unknown = 0,
    SdoRequest = 1,
    SdoResponse = 2,
    SdoSegmentStartStop = 3,
    SdoAbort = 4,
    Sync = 5,
    Srdo = 6, ///< EN 50325-5
    Pdo = 7,
    Nmt = 8,
    Emergency = 9,
    ErrorControl = 10, ///< heartbeat or node guarding
    BootUp = 11,
    Time = 12,
    LssRequest = 13, ///< CiA 305
    LssResponse = 14,
    SdoDynamicRequest = 15,
    FlyingMaster = 16, ///< CiA 302-2
    Info = 17,
    Sleep = 18,
    GlobalFailSafe = 19, ///< EN 50325-5
};

/// Names of all message types.
QMap<MessageType, QString> messageTypeNames();

} // namespace CANopen
