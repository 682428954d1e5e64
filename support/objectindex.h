// The single objects of the communication profile that have a meaning to the tool.
#pragma once

#include <QtGlobal>

/// Indices by the names of CiA 301, 7.5.2; other standards stand beside theirs.
namespace ObjectIndex
{

constexpr quint16 kDeviceType = 0x1000;
constexpr quint16 kErrorRegister = 0x1001;
constexpr quint16 kErrorHistory = 0x1003; ///< pre-defined error field
constexpr quint16 kSyncCobId = 0x1005;
constexpr quint16 kGuardTime = 0x100C;
constexpr quint16 kStoreParameters = 0x1010;
constexpr quint16 kRestoreParameters = 0x1011;
constexpr quint16 kTimeCobId = 0x1012;
constexpr quint16 kEmergencyCobId = 0x1014;
constexpr quint16 kEmergencyInhibitTime = 0x1015;
constexpr quint16 kHeartbeatConsumer = 0x1016;
constexpr quint16 kHeartbeatProducer = 0x1017;
constexpr quint16 kIdentity = 0x1018;
constexpr quint16 kEmergencyConsumer = 0x1028;
constexpr quint16 kNmtInhibitTime = 0x102A;  ///< CiA 302-2
constexpr quint16 kActiveErrors = 0x1032;    ///< active error history
constexpr quint16 kGlobalFailsafe = 0x1300;  ///< global fail-safe command (EN 50325-5)
constexpr quint16 kRequestSdo = 0x1F10;      ///< SDO requesting device (CiA 302-5)
constexpr quint16 kDcfStorage = 0x1F20;      ///< of the configuration manager (CiA 302-3)
constexpr quint16 kConciseDcf = 0x1F22;      ///< as above
constexpr quint16 kPdoRouting = 0x1F2C;      ///< of a gateway (CiA 302-7)
constexpr quint16 kNmtStartup = 0x1F80;      ///< CiA 302-2
constexpr quint16 kSlaveAssignment = 0x1F81; ///< CiA 302-2

} // namespace ObjectIndex

/// Subindices of ObjectIndex::kIdentity (CiA 301, 7.5.2.19).
namespace Identity
{

constexpr quint8 kVendorId = 1;
constexpr quint8 kProductCode = 2;
constexpr quint8 kRevisionNumber = 3;
constexpr quint8 kSerialNumber = 4;

} // namespace Identity

/// Subindices of the communication parameters of a PDO (CiA 301, 7.5.2.35 and 7.5.2.37).
namespace PdoParameter
{

constexpr quint8 kCobId = 1;
constexpr quint8 kTransmissionType = 2;
constexpr quint8 kInhibitTime = 3;    ///< of TPDOs, in steps of 100 us
constexpr quint8 kEventTimer = 5;     ///< ms; of an RPDO the time until it counts as lost
constexpr quint8 kSyncStartValue = 6; ///< of TPDOs

} // namespace PdoParameter

/// Values of subindex 0 of a PDO mapping; up to kHighest it counts the entries (CiA 301, 7.5.2.36
/// and 7.5.2.38).
namespace PdoEntryCount
{

constexpr quint8 kHighest = 64;
constexpr quint8 kSourceMpdo = 254;      ///< multiplexed PDO, the object is one of the producer
constexpr quint8 kDestinationMpdo = 255; ///< multiplexed PDO, the object is one of the consumer

} // namespace PdoEntryCount
