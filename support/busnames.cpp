// Names of messages and errors on the bus.
#include "support/busnames.h"

QMap<quint8, QString> CAN::errorNames()
{
    return {
        {1, QStringLiteral("Stuff error")},          {2, QStringLiteral("Form error")},
        {3, QStringLiteral("Acknowledgment error")}, {4, QStringLiteral("Bit error")},
        {5, QStringLiteral("Fast data bit error")},  {6, QStringLiteral("CRC error")},
        {7, QStringLiteral("Data length error")},    {8, QStringLiteral("unspecified error")},
    };
}

QMap<CANopen::MessageType, QString> CANopen::messageTypeNames()
{
    return {
        {MessageType::Unknown, QStringLiteral("UNKNOWN")},
        {MessageType::SdoRequest, QStringLiteral("SDO_REQ")},
        {MessageType::SdoResponse, QStringLiteral("SDO_RES")},
        {MessageType::SdoSegmentStartStop, QStringLiteral("SDO_SEGSTARTSTOP")},
        {MessageType::SdoAbort, QStringLiteral("SDO_ABORT")},
        {MessageType::Sync, QStringLiteral("SYNC")},
        {MessageType::Srdo, QStringLiteral("SRDO")},
        {MessageType::Pdo, QStringLiteral("PDO")},
        {MessageType::Nmt, QStringLiteral("NMT")},
        {MessageType::Emergency, QStringLiteral("EMCY")},
        {MessageType::ErrorControl, QStringLiteral("NMT_EC")},
        {MessageType::BootUp, QStringLiteral("NMT_EC_BOOTUP")},
        {MessageType::Time, QStringLiteral("TIME")},
        {MessageType::LssRequest, QStringLiteral("LSS_REQ")},
        {MessageType::LssResponse, QStringLiteral("LSS_RES")},
        {MessageType::SdoDynamicRequest, QStringLiteral("SDO_DYN_REQ")},
        {MessageType::FlyingMaster, QStringLiteral("FLYMA")},
        {MessageType::Info, QStringLiteral("INFO")},
        {MessageType::Sleep, QStringLiteral("Sleep")},
        {MessageType::GlobalFailSafe, QStringLiteral("GFC")},
    };
}
