// The words by which the YAML form names the columns of columns.h, and how their cells are spelled.
#pragma once

#include "store/columns.h"
#include "store/yaml/yamlforms.h"
#include "support/direction.h"

// clang-format off
inline constexpr YamlWord kCodeWords[] = {
    {7, "VAR"}, {8, "ARRAY"}, {9, "RECORD"}, {2, "DOMAIN"}, {5, "DEFTYPE"}, {6, "DEFSTRUCT"}, {0, "NULL"},
};
inline constexpr YamlWord kPdoWords[] = {
    {0, "no"}, {1, "default"}, {2, "optional"}, {3, "rpdo"}, {4, "tpdo"},
}; // "no" is written in quotes, and read with and without
inline constexpr YamlWord kImplementationWords[] = {
    {0, "managedvariable"}, {1, "managedconst"}, {2, "variable"}, {3, "virtualobject"},
};
inline constexpr YamlWord kDefaultToEdsWords[] = {{0, "never"}, {1, "with-default"}, {2, "always"}};
inline constexpr YamlWord kDirectionWords[] = {{Direction::kTransmitted, "transmit"}, {Direction::kReceived, "receive"}};
inline constexpr YamlWord kAccessWords[] = { // their numbers mean nothing
    {0, "const"}, {1, "ro"}, {2, "rw"}, {3, "wo"}, {4, "rww"}, {5, "rwr"},
};
inline constexpr YamlWord kServiceWords[] = {
    {16, "session-control"}, {17, "ecu-reset"}, {20, "clear-diagnostic-information"}, {25, "read-dtc-information"},
    {34, "read-data-by-identifier"}, {35, "read-memory-by-address"}, {39, "security-access"},
    {40, "communication-control"}, {46, "write-data-by-identifier"}, {47, "io-control-by-identifier"},
    {49, "routine-control"}, {52, "request-download"}, {53, "request-upload"}, {54, "transfer-data"},
    {55, "request-transfer-exit"}, {61, "write-memory-by-address"}, {62, "tester-present"},
};

inline constexpr YamlColumn kNodeWords[] = {
    {"name", "name"},
    {"edspath", "eds-path"}, {"xddpath", "xdd-path"}, {"dcfpath", "dcf-path"},
    {"tpdocnt", "tpdo-count", YamlForm::Number}, {"rpdocnt", "rpdo-count", YamlForm::Number},
    {"ismaster", "master", YamlForm::Flag},
    {"issyncproducer", "sync-producer", YamlForm::Flag}, {"issyncconsumer", "sync-consumer", YamlForm::Flag},
    {"ishbconsumer", "heartbeat-consumer", YamlForm::Flag},
    {"isemergencyproducer", "emergency-producer", YamlForm::Flag},
    {"isemergencyconsumer", "emergency-consumer", YamlForm::Flag},
    {"ismpdosupported", "mpdo", YamlForm::Flag}, {"iscanopengateway", "canopen-gateway", YamlForm::Flag},
    {"allpdosstatic", "static-pdos", YamlForm::Flag},
    {"excludegeneration", "exclude-generation", YamlForm::Flag}, {"generatedcf", "generate-dcf", YamlForm::Flag},
    {"prefix", "prefix"}, {"outputpath", "output-path"}, {"iconpath", "icon-path"},
    {"isbootupmanager", "bootup-manager", YamlForm::Flag},
    {"isconfigmanager", "configuration-manager", YamlForm::Flag},
    {"excludepdolinking", "exclude-pdo-linking", YamlForm::Flag},
    {"multilinedata", "multiline-data", YamlForm::Number},
    {"lssslave", "lss-slave", YamlForm::Flag},
};
static_assert(belongTogether(kNodeWords, kNodeColumns), "a word for each column");

inline constexpr YamlColumn kIndexWords[] = {
    {"name", "name"}, {"datatype", "type", YamlForm::Type}, {"objecttype", "code", YamlForm::Word, kCodeWords},
    {"description", "description"}, {"category", "category", YamlForm::Number}, {"device_class", "device-class"},
    {"fwsupported", "fw-supported", YamlForm::Flag}, {"metadata", "metadata", YamlForm::Map},
};
static_assert(belongTogether(kIndexWords, kIndexColumns), "a word for each column");

inline constexpr YamlColumn kSubIndexWords[] = {
    {"name", "name"}, {"datatype", "type", YamlForm::Type},
    {"accesstype", "access", YamlForm::WordText, kAccessWords},
    {"defaultvalue", "default", YamlForm::Written}, {"currentvalue", "current", YamlForm::Written},
    {"pdomapping", "pdo", YamlForm::Word, kPdoWords},
    {"lowlimit", "low-limit", YamlForm::Written}, {"uplimit", "up-limit", YamlForm::Written}, // written as YamlKeys::kLimits
    {"size", "size", YamlForm::Number},
    {"defaultineds", "default-in-eds", YamlForm::Flag}, {"limitineds", "limits-in-eds", YamlForm::Flag},
    {"refuseread", "refuse-read", YamlForm::Flag}, {"refusewrite", "refuse-write", YamlForm::Flag},
    {"allowedaccesstypes", "allowed-access"},
    {"implementation", "implementation", YamlForm::Word, kImplementationWords},
    {"varname", "variable"}, {"description", "description"}, {"category", "category", YamlForm::Number},
    {"writedefaulttoeds", "write-default-to-eds", YamlForm::Word, kDefaultToEdsWords},
    {"cyclicread", "cyclic-read", YamlForm::Flag}, {"dcfcomponent", "dcf-component", YamlForm::Flag},
    {"changedbyuser", "changed-by-user", YamlForm::Flag}, {"wizardsource", "wizard-source", YamlForm::Number},
    {"denotation", "display-name"}, {"sharedlines", "shared-lines", YamlForm::Flag},
    {"managedbyolm", "managed-by-olm", YamlForm::Flag}, {"signalid", "signal", YamlForm::Number},
    {"nvstorage", "nv-storage", YamlForm::Flag}, {"metadata", "metadata", YamlForm::Map},
};
static_assert(belongTogether(kSubIndexWords, kSubIndexColumns), "a word for each column");

inline constexpr YamlColumn kConnectionWords[] = { // one text for each end
    {"prodnode", nullptr}, {"prodindex", nullptr}, {"prodsub", nullptr},
    {"connode", nullptr}, {"conindex", nullptr}, {"consub", nullptr},
    {"priority", "priority", YamlForm::Number},
};
static_assert(belongTogether(kConnectionWords, kConnectionColumns), "a word for each column");

inline constexpr YamlColumn kUdsServiceWords[] = {
    {"active", "active", YamlForm::Flag},
    {"sessions", "sessions", YamlForm::NumberList}, {"userlevels", "levels", YamlForm::NumberList},
};
static_assert(belongTogether(kUdsServiceWords, kUdsServiceColumns), "a word for each column");

inline constexpr YamlColumn kLineSignalWords[] = {
    {"nodeid", nullptr, YamlForm::Number}, // its line
    {"name", "name"}, {"datatype", "type", YamlForm::Type},
    {"accesstype", "access", YamlForm::WordText, kAccessWords}, {"defaultvalue", "default", YamlForm::Written},
    {"signalgroup", "group", YamlForm::Number}, {"ref", "ref", YamlForm::Number},
    {"transmittype", "transmit-type", YamlForm::Number}, {"transmittrigger", "transmit-trigger", YamlForm::Number},
    {"eventtimer", "event-timer", YamlForm::Number}, {"syncvalue", "sync", YamlForm::Number},
    {"syncstartvalue", "sync-start", YamlForm::Number}, {"routing", "routing", YamlForm::Number},
};
static_assert(belongTogether(kLineSignalWords, kLineSignalColumns), "a word for each column");

inline constexpr YamlColumn kPgnWords[] = {
    {"number", nullptr, YamlForm::Hex}, {"edp_dp_key", "data-page-key", YamlForm::Number},
    {"priority", "priority", YamlForm::Number}, {"cycletime_ms", "cycle", YamlForm::Number},
    {"inhibittime_ms", "inhibit", YamlForm::Number}, {"mappingcount", "count", YamlForm::Number},
    {"direction", nullptr, YamlForm::Word, kDirectionWords}, {"name", "name"}, {"desc", "description"},
    {"issafe", "safe", YamlForm::Number}, {"srvt_ms", "srvt", YamlForm::Number},
    {"FD_TrailerFormat", "fd-trailer", YamlForm::Number}, {"FD_AssuranceType", "fd-assurance", YamlForm::Number},
    {"FD_AssuranceDataSize", "fd-assurance-size", YamlForm::Number},
};
static_assert(belongTogether(kPgnWords, kPgnColumns), "a word for each column");

inline constexpr YamlColumn kSpnWords[] = {
    {"pgnnumber", nullptr, YamlForm::Hex}, {"spnnumber", "spn", YamlForm::Number}, {"datatype", "type", YamlForm::Type},
    {"implementation", "implementation", YamlForm::Word, kImplementationWords}, {"varname", "variable"},
    {"defaultvalue", "default", YamlForm::Written}, {"name", "name"}, {"desc", "description"},
    {"pos", "pos", YamlForm::Number}, {"bitsize", "bits", YamlForm::Number},
    {"direction", nullptr, YamlForm::Word, kDirectionWords}, {"slot_df", "slot", YamlForm::Number},
};
static_assert(belongTogether(kSpnWords, kSpnColumns), "a word for each column");

inline constexpr YamlColumn kCanIdWords[] = {
    {"id", nullptr, YamlForm::Hex}, {"cycletime_ms", "cycle", YamlForm::Number},
    {"inhibittime_ms", "inhibit", YamlForm::Number}, {"mappingcount", "count", YamlForm::Number},
    {"direction", nullptr, YamlForm::Word, kDirectionWords}, {"name", "name"}, {"desc", "description"},
};
static_assert(belongTogether(kCanIdWords, kCanIdColumns), "a word for each column");

inline constexpr YamlColumn kDataElementWords[] = {
    {"canid", nullptr, YamlForm::Hex}, {"number", "number", YamlForm::Number}, {"datatype", "type", YamlForm::Type},
    {"implementation", "implementation", YamlForm::Word, kImplementationWords}, {"varname", "variable"},
    {"defaultvalue", "default", YamlForm::Written}, {"name", "name"}, {"desc", "description"},
    {"pos", "pos", YamlForm::Number}, {"bitsize", "bits", YamlForm::Number},
    {"direction", nullptr, YamlForm::Word, kDirectionWords},
};
static_assert(belongTogether(kDataElementWords, kDataElementColumns), "a word for each column");
// clang-format on

inline constexpr YamlTable<NodeData> kNodeYaml(kNodeColumns, kNodeWords);
inline constexpr YamlTable<IndexData> kIndexYaml(kIndexColumns, kIndexWords);
inline constexpr YamlTable<SubIndexData> kSubIndexYaml(kSubIndexColumns, kSubIndexWords);
inline constexpr YamlTable<ConnectionData> kConnectionYaml(kConnectionColumns, kConnectionWords);
inline constexpr YamlTable<UdsServiceData> kUdsServiceYaml(kUdsServiceColumns, kUdsServiceWords);
inline constexpr YamlTable<LineSignalData> kLineSignalYaml(kLineSignalColumns, kLineSignalWords);
inline constexpr YamlTable<PgnData> kPgnYaml(kPgnColumns, kPgnWords);
inline constexpr YamlTable<SpnData> kSpnYaml(kSpnColumns, kSpnWords);
inline constexpr YamlTable<CanIdData> kCanIdYaml(kCanIdColumns, kCanIdWords);
inline constexpr YamlTable<DataElementData> kDataElementYaml(kDataElementColumns,
                                                             kDataElementWords);
