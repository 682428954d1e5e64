// Identifiers of CANopen: the bits beside them, and those that services have by default.
#pragma once

#include <QtGlobal>

/// Bits of a COB-ID beside the identifier (CiA 301, 7.5.2.5 and others).
namespace CobIdBit
{

constexpr quint32 kNotValid = quint32(1) << 31; ///< of SDO, PDO and EMCY
constexpr quint32 kConsumer = quint32(1) << 31; ///< of TIME
constexpr quint32 kProducer = quint32(1) << 30; ///< of SYNC and TIME
constexpr quint32 kExtendedFrame = quint32(1) << 29;

constexpr quint32 kStandardId = 0x7FF;
constexpr quint32 kExtendedId = 0x1FFFFFFF;

} // namespace CobIdBit

/// Identifiers of the predefined connection set (CiA 301, 7.3.5), without node-ID, and of the layer
/// setting services (CiA 305).
namespace ConnectionSet
{

constexpr quint32 kNmt = 0x000;
constexpr quint32 kSync = 0x080;
constexpr quint32 kEmergency = 0x080;
constexpr quint32 kTime = 0x100;
constexpr quint32 kTpdo = 0x180;
constexpr quint32 kRpdo = 0x200;
constexpr quint32 kSdoResponse = 0x580;
constexpr quint32 kSdoRequest = 0x600;
constexpr quint32 kHeartbeat = 0x700;
constexpr quint32 kBetweenPdos = 0x100;
constexpr quint16 kPdos = 4;
constexpr quint32 kLssResponse = 0x7E4;
constexpr quint32 kLssRequest = 0x7E5;

} // namespace ConnectionSet
