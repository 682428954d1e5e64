// The objects of CiA 301 that the YAML form has in short: a word of a line, and below it values.
// Each row is a subindex whose default value is such a value; all that is not said is as here.
#pragma once

#include "store/projectrecords.h"
#include "support/objectindex.h"
#include "support/objectranges.h"

#include <QStringList>

#include <optional>

/// A value of a short form: the default value of a subindex, or a map of the words of a subindex
/// (with "name" and "description", of the object if it is a variable).
struct YamlStandardRow {
    const char *key; ///< in the map of the form; null: what stands behind its word or number
    quint16 index;   ///< if the form is numbered, that of number 1
    quint8 sub;
    const char *name; ///< "%1" is its number
    quint16 type;
    const char *access;
    const char *help;
    bool isOptional = true; ///< not there unless it is named
    const char *value = "0";
    PDOMappingType pdo = PDOMappingType::No;
    quint8 implementation = Implementation::kManagedVariable;
};

/// What stands behind the word of a form.
enum class YamlStandardShape {
    Value,     ///< heartbeat: 1000
    Presence,  ///< error-register: true, since the value is the device's own; or a value
    Variables, ///< emcy: {cob-id: .., inhibit: ..}, each key an object of its own
    Record,    ///< identity: {vendor: .., product: ..}, each key a subindex
    Records,   ///< sdo-server: {1: {request: ..}}, a record for each number
    Pdos,      ///< the same with the mapping, see YamlKeys::kMap and those below it
    Members,   ///< heartbeat-consumers: {1: .., 2: ..}, a subindex for each number
};

struct YamlStandardForm {
    const char *word;
    YamlStandardShape shape;
    ObjectRange objects; ///< the parameters of PDOs
    const char *name;    ///< of the record or array; "%1" is its number
    const YamlStandardRow *rows;
    int count;
    const char *help;

    template <int N>
    constexpr YamlStandardForm(const char *key, YamlStandardShape what, ObjectRange range,
                               const char *objectName, const YamlStandardRow (&values)[N],
                               const char *about)
        : word(key), shape(what), objects(range), name(objectName), rows(values), count(N),
          help(about)
    {
    }
    const YamlStandardRow *begin() const { return rows; }
    const YamlStandardRow *end() const { return rows + count; }
    /// The numbers go from 1 up to this.
    constexpr int highestNumber() const
    {
        return shape == YamlStandardShape::Members ? 127 : objects.numberOf(objects.last);
    }
};

namespace YamlStandard
{

inline constexpr quint16 kU8 = CAN::typeNumber(CAN::CANopenDataType::Unsigned8);
inline constexpr quint16 kU16 = CAN::typeNumber(CAN::CANopenDataType::Unsigned16);
inline constexpr quint16 kU32 = CAN::typeNumber(CAN::CANopenDataType::Unsigned32);
inline constexpr quint16 kText = CAN::typeNumber(CAN::CANopenDataType::VisibleString);
inline constexpr auto kUnmapped = PDOMappingType::No;
inline constexpr auto kTpdo = PDOMappingType::Tpdo;
inline constexpr quint8 kConst = Implementation::kManagedConst;

// clang-format off
inline constexpr YamlStandardRow kDeviceType[] = {
    {nullptr, 0x1000, 0, "Device type", kU32, "ro", "Device profile, and what it says of the device", true, "0", kUnmapped, kConst},
};
inline constexpr YamlStandardRow kErrorRegister[] = {
    {nullptr, 0x1001, 0, "Error register", kU8, "ro", "Which kinds of errors there are", true, "0", kTpdo},
};
inline constexpr YamlStandardRow kSync[] = {
    {"cob-id", 0x1005, 0, "COB-ID SYNC message", kU32, "rw", "Identifier of SYNC; bit 30: the device sends it"},
    {"cycle", 0x1006, 0, "Communication cycle period", kU32, "rw", "Period of SYNC in microseconds"},
    {"window", 0x1007, 0, "Synchronous window length", kU32, "rw", "Time for synchronous PDOs in microseconds"},
};
inline constexpr YamlStandardRow kManufacturer[] = {
    {"device-name", 0x1008, 0, "Manufacturer device name", kText, "const", "Name of the device", true, "", kUnmapped, kConst},
    {"hardware", 0x1009, 0, "Manufacturer hardware version", kText, "const", "Version of the hardware", true, "", kUnmapped, kConst},
    {"software", 0x100A, 0, "Manufacturer software version", kText, "const", "Version of the software", true, "", kUnmapped, kConst},
};
inline constexpr YamlStandardRow kEmergency[] = {
    {"cob-id", 0x1014, 0, "COB-ID emergency message", kU32, "rw", "Identifier of emergencies, such as `$NODEID+0x80`"},
    {"inhibit", 0x1015, 0, "Inhibit time emergency", kU16, "rw", "Least time between two, in steps of 100 microseconds"},
};
inline constexpr YamlStandardRow kHeartbeat[] = {
    {nullptr, 0x1017, 0, "Producer heartbeat time", kU16, "rw", "Milliseconds from one heartbeat to the next; 0: none"},
};
inline constexpr YamlStandardRow kHeartbeatConsumers[] = {
    {nullptr, 0x1016, 1, "Consumer heartbeat time %1", kU32, "rw", "Node in bits 16 to 23, below it milliseconds"},
};
inline constexpr YamlStandardRow kIdentity[] = {
    {"vendor", 0x1018, 1, "Vendor-ID", kU32, "ro", "Number of the maker", false, "0", kUnmapped, kConst},
    {"product", 0x1018, 2, "Product code", kU32, "ro", "Number of the product", true, "0", kUnmapped, kConst},
    {"revision", 0x1018, 3, "Revision number", kU32, "ro", "Major revision in the upper half, minor in the lower", true, "0", kUnmapped, kConst},
    {"serial", 0x1018, 4, "Serial number", kU32, "ro", "Serial number, mostly with a variable"},
};
inline constexpr YamlStandardRow kSdoServer[] = {
    {"request", 0x1200, 1, "COB-ID client to server", kU32, "ro", "Identifier of requests", false, "$NODEID+0x600"},
    {"response", 0x1200, 2, "COB-ID server to client", kU32, "ro", "Identifier of responses", false, "$NODEID+0x580"},
    {"node", 0x1200, 3, "Node-ID of the SDO client", kU8, "rw", "Node of the client"},
};
inline constexpr YamlStandardRow kSdoClient[] = {
    {"request", 0x1280, 1, "COB-ID client to server", kU32, "rw", "Identifier of requests", false, "0x80000000"},
    {"response", 0x1280, 2, "COB-ID server to client", kU32, "rw", "Identifier of responses", false, "0x80000000"},
    {"node", 0x1280, 3, "Node-ID of the SDO server", kU8, "rw", "Node of the server", false},
};
inline constexpr YamlStandardRow kRpdo[] = {
    {"cob-id", 0x1400, 1, "COB-ID used by PDO", kU32, "rw", "Identifier, such as `$NODEID+0x200`; bit 31: not in use", false, "0x80000000"},
    {"transmission", 0x1400, 2, "Transmission type", kU8, "rw", "0 to 240: with SYNC; 254 and 255: at once", false, "255"},
    {"inhibit", 0x1400, 3, "Inhibit time", kU16, "rw", "Steps of 100 microseconds"},
    {"event-timer", 0x1400, 5, "Event timer", kU16, "rw", "Milliseconds after which the PDO counts as lost"},
};
inline constexpr YamlStandardRow kTpdoRows[] = {
    {"cob-id", 0x1800, 1, "COB-ID used by PDO", kU32, "rw", "Identifier, such as `$NODEID+0x180`; bit 31: not in use", false, "0x80000000"},
    {"transmission", 0x1800, 2, "Transmission type", kU8, "rw", "0 to 240: with SYNC; 254 and 255: by events", false, "255"},
    {"inhibit", 0x1800, 3, "Inhibit time", kU16, "rw", "Least time between two, in steps of 100 microseconds"},
    {"event-timer", 0x1800, 5, "Event timer", kU16, "rw", "Milliseconds after which it is sent anyway"},
    {"sync-start", 0x1800, 6, "SYNC start value", kU8, "rw", "Count of the SYNC with which the first one is sent"},
};

/// In the order of the file.
inline constexpr YamlStandardForm kForms[] = {
    {"device-type", YamlStandardShape::Value, {0x1000, 0x1000}, nullptr, kDeviceType, "Device type"},
    {"error-register", YamlStandardShape::Presence, {0x1001, 0x1001}, nullptr, kErrorRegister, "Error register"},
    {"sync", YamlStandardShape::Variables, {0x1005, 0x1007}, nullptr, kSync, "SYNC"},
    {"manufacturer", YamlStandardShape::Variables, {0x1008, 0x100A}, nullptr, kManufacturer, "Name and versions of the device"},
    {"emcy", YamlStandardShape::Variables, {0x1014, 0x1015}, nullptr, kEmergency, "Emergencies that the device sends"},
    {"heartbeat", YamlStandardShape::Value, {0x1017, 0x1017}, nullptr, kHeartbeat, "Heartbeat that the device sends, in milliseconds"},
    {"heartbeat-consumers", YamlStandardShape::Members, {0x1016, 0x1016}, "Consumer heartbeat time", kHeartbeatConsumers, "Heartbeats that the device waits for"},
    {"identity", YamlStandardShape::Record, {0x1018, 0x1018}, "Identity object", kIdentity, "Who made the device, and which one it is"},
    {"sdo-server", YamlStandardShape::Records, ObjectRanges::kSdoServers, "SDO server parameter", kSdoServer, "SDO servers by number"},
    {"sdo-client", YamlStandardShape::Records, ObjectRanges::kSdoClients, "SDO client parameter", kSdoClient, "SDO clients by number"},
    {"rpdo", YamlStandardShape::Pdos, ObjectRanges::kRpdoParameters, "Receive PDO %1 parameter", kRpdo, "Receive PDOs by number"},
    {"tpdo", YamlStandardShape::Pdos, ObjectRanges::kTpdoParameters, "Transmit PDO %1 parameter", kTpdoRows, "Transmit PDOs by number"},
};
// clang-format on

/// The subindex of a row, of the record or the member with that number.
SubIndexData subIndexOf(const YamlStandardRow &row, int number);
/// The object of a variable's row.
ObjectRecord variableOf(const YamlStandardRow &row);
/// The record or array with that number.
IndexData objectOf(const YamlStandardForm &form, int number);

/// The form that has that object, also the mapping of a PDO; null if there is none.
const YamlStandardForm *formOf(quint16 index);

/// Where a short form has an object, or the default value of one of its subindices: the keys from
/// the line on, such as "tpdo", "1", "cob-id". An item of a mapping has its place in the list, from
/// 0, as the last one. The keys of the object, if nothing is said of the subindex; empty, if no
/// form has the object.
QStringList keysOf(quint16 index, std::optional<quint8> sub = std::nullopt);

} // namespace YamlStandard
