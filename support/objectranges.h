// Where the standards place the objects of an object dictionary that come in ranges.
#pragma once

#include <QtGlobal>

/// Indices from \a first up to and including \a last.
struct ObjectRange {
    quint16 first;
    quint16 last;

    constexpr bool contains(quint32 index) const { return index >= first && index <= last; }

    /// Place of an object in its range, from 1 on: 0x1800 is TPDO 1.
    constexpr quint16 numberOf(quint16 index) const
    {
        return static_cast<quint16>(index - first + 1);
    }

    /// The inverse of numberOf().
    constexpr quint16 at(quint16 number) const { return static_cast<quint16>(first + number - 1); }
};

namespace ObjectRanges
{

// The parts of the dictionary (CiA 301, 7.4.1).
constexpr ObjectRange kAll = {0x1000, 0xFFFF};      ///< all but the data types
constexpr ObjectRange kAssigned = {0x1000, 0xBFFF}; ///< what lies above is reserved
constexpr ObjectRange kCommunication = {0x1000, 0x1FFF};
constexpr ObjectRange kManufacturer = {0x2000, 0x5FFF};
constexpr ObjectRange kProfile = {0x6000, 0x9FFF};          ///< standardized profiles
constexpr ObjectRange kNetworkVariables = {0xA000, 0xAFFF}; ///< CiA 302-4

// SDO parameters (CiA 301, 7.5.2.33 and 7.5.2.34).
constexpr ObjectRange kSdoServers = {0x1200, 0x127F};
constexpr ObjectRange kFurtherSdoServers = {0x1201, 0x127F}; ///< all but the default one
constexpr ObjectRange kSdoClients = {0x1280, 0x12FF};

// Safety-relevant data objects (EN 50325-5).
constexpr ObjectRange kSafety = {0x1300, 0x13FF}; ///< with global fail-safe command and signature
constexpr ObjectRange kSrdoParameters = {0x1301, 0x1340};
constexpr ObjectRange kSrdoParameterPlaces = {0x1301, 0x137F}; ///< with those that are reserved
constexpr ObjectRange kSrdoMappings = {0x1381, 0x13C0};
constexpr quint16 kFromSrdoParameterToMapping = 0x80;

// PDO parameters and mappings (CiA 301, 7.5.2.35 to 7.5.2.38).
constexpr ObjectRange kRpdoParameters = {0x1400, 0x15FF};
constexpr ObjectRange kRpdoMappings = {0x1600, 0x17FF};
constexpr ObjectRange kTpdoParameters = {0x1800, 0x19FF};
constexpr ObjectRange kTpdoMappings = {0x1A00, 0x1BFF};
constexpr quint16 kFromPdoParameterToMapping = 0x200;

/// Is this the mapping of an RPDO or TPDO?
constexpr bool isPdoMapping(quint32 index)
{
    return kRpdoMappings.contains(index) || kTpdoMappings.contains(index);
}

} // namespace ObjectRanges
