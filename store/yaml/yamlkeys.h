// The keys of the YAML form that are no column: they give the file its structure.
#pragma once

namespace YamlKeys
{

// Of the project, in the order of the file.
inline constexpr char kVersion[] = "tessarine"; ///< of the form; the only key that must be there
inline constexpr int kVersionNumber = 1;
inline constexpr char kDescription[] = "description";
inline constexpr char kSettings[] = "settings";
inline constexpr char kJ1939[] = "j1939"; ///< of a line as well
inline constexpr char kEnergyBus[] = "energybus";
inline constexpr char kMisc[] = "misc";
inline constexpr char kSignalGroups[] = "signal-groups";
inline constexpr char kVirtualNodes[] = "virtual-nodes";
inline constexpr char kLineGroups[] = "line-groups";
inline constexpr char kLines[] = "lines";
inline constexpr char kSignals[] = "signals"; ///< of a line and of a parameter group as well
inline constexpr char kConnections[] = "connections";
inline constexpr char kLocks[] = "locks"; ///< of a line as well

// Of a line; the short forms of objects stand between kDescription and kObjects.
inline constexpr char kProtocol[] = "protocol";
inline constexpr char kObjectDefaults[] = "object-defaults"; ///< of their subindices
inline constexpr char kObjects[] = "objects";
inline constexpr char kGroups[] = "groups";
inline constexpr char kFrames[] = "frames";
inline constexpr char kOtherSignals[] = "other-signals";
inline constexpr char kOtherElements[] = "other-elements";
inline constexpr char kUds[] = "uds";

// Of an object.
inline constexpr char kArray[] = "array";
inline constexpr char kMembers[] = "members";
inline constexpr char kLimits[] = "limits";
inline constexpr char kOfType[] = "type"; ///< the range of the type, for limits in kObjectDefaults
inline constexpr char kObject[] = "object"; ///< kNone: there are subindices only

// Of a short form that is a record, besides those of its rows.
inline constexpr char kAbout[] = "description"; ///< of the object

// Of a PDO, besides those.
inline constexpr char kMap[] = "map";
inline constexpr char kMapSlots[] = "map-slots"; ///< the mapping may be changed, and has so many
inline constexpr char kMapAbout[] = "map-description"; ///< of the object with the mapping

// Of a CAN frame.
inline constexpr char kElements[] = "elements";
inline constexpr char kSkip[] = "skip"; ///< bits of the frame that hold no signal
// Of a signal whose frame the line does not have.
inline constexpr char kGroup[] = "group";
inline constexpr char kFrame[] = "frame";
inline constexpr char kDirection[] = "direction";

// Of locks.
inline constexpr char kPdos[] = "pdos";
inline constexpr char kMappings[] = "mappings";

/// Of a signal that stands beside the lines.
inline constexpr char kLine[] = "line";

// Of connections.
inline constexpr char kFrom[] = "from";
inline constexpr char kTo[] = "to";

/// The diagnostic services that a line of an opened project has if it has none of its own.
inline constexpr char kAll[] = "all";
/// What is not there though it usually is: subindex 0 of a record, the object of subindices.
inline constexpr char kNone[] = "none";

} // namespace YamlKeys
