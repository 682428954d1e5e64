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

// The help of a key that several tables have. A pointer: with -fsanitize=undefined the address of an
// array is no constant to GCC 12.
inline constexpr const char *kWhereHelp =
    "Where the value is: in a variable or constant that generated C declares, in the application's variable, or nowhere";

inline constexpr YamlColumn kNodeWords[] = {
    {"name",                "name",                  YamlForm::Text,   {}, "Name of the line, for people"},
    {"edspath",             "eds-path",              YamlForm::Text,   {}, "Kept for other tools: where the EDS of the line is"},
    {"xddpath",             "xdd-path",              YamlForm::Text,   {}, "Kept for other tools: where the XDD of the line is"},
    {"dcfpath",             "dcf-path",              YamlForm::Text,   {}, "Kept for other tools: where the DCF of the line is"},
    {"tpdocnt",             "tpdo-count",            YamlForm::Number, {}, "Kept for other tools: number of transmit PDOs"},
    {"rpdocnt",             "rpdo-count",            YamlForm::Number, {}, "Kept for other tools: number of receive PDOs"},
    {"ismaster",            "master",                YamlForm::Flag,   {}, "Kept for other tools: the line is NMT master. The setting `nmt-master` decides"},
    {"issyncproducer",      "sync-producer",         YamlForm::Flag,   {}, "Kept for other tools: the line sends SYNC"},
    {"issyncconsumer",      "sync-consumer",         YamlForm::Flag,   {}, "Kept for other tools: the line receives SYNC"},
    {"ishbconsumer",        "heartbeat-consumer",    YamlForm::Flag,   {}, "Kept for other tools: the line watches heartbeats"},
    {"isemergencyproducer", "emergency-producer",    YamlForm::Flag,   {}, "Kept for other tools: the line sends emergency messages"},
    {"isemergencyconsumer", "emergency-consumer",    YamlForm::Flag,   {}, "Kept for other tools: the line receives emergency messages"},
    {"ismpdosupported",     "mpdo",                  YamlForm::Flag,   {}, "Kept for other tools: the line has multiplexed PDOs"},
    {"iscanopengateway",    "canopen-gateway",       YamlForm::Flag,   {}, "Kept for other tools: the line is a gateway to another one"},
    {"allpdosstatic",       "static-pdos",           YamlForm::Flag,   {}, "Kept for other tools: no PDO can be changed from the bus"},
    {"excludegeneration",   "exclude-generation",    YamlForm::Flag,   {}, "Kept for other tools: no sources are written for the line"},
    {"generatedcf",         "generate-dcf",          YamlForm::Flag,   {}, "Kept for other tools: a DCF is written for the line"},
    {"prefix",              "prefix",                YamlForm::Text,   {}, "Kept for other tools: what variable names begin with"},
    {"outputpath",          "output-path",           YamlForm::Text,   {}, "Kept for other tools: where the files of the line go"},
    {"iconpath",            "icon-path",             YamlForm::Text,   {}, "Kept for other tools: picture of the device"},
    {"isbootupmanager",     "bootup-manager",        YamlForm::Flag,   {}, "Kept for other tools: the line starts other nodes"},
    {"isconfigmanager",     "configuration-manager", YamlForm::Flag,   {}, "Kept for other tools: the line configures other nodes"},
    {"excludepdolinking",   "exclude-pdo-linking",   YamlForm::Flag,   {}, "Kept for other tools: no PDO of the line is linked"},
    {"multilinedata",       "multiline-data",        YamlForm::Number, {}, "Kept for other tools"},
    {"lssslave",            "lss-slave",             YamlForm::Flag,   {}, "Kept for other tools: the line gets its node-ID by LSS"},
};
static_assert(belongTogether(kNodeWords, kNodeColumns), "a word for each column");

inline constexpr YamlColumn kIndexWords[] = {
    {"name",         "name",         YamlForm::Text,   {},         "Name in device descriptions, of which names in generated C are made"},
    {"datatype",     "type",         YamlForm::Type,   {},         "Data type, such as `U16` or `VISIBLE_STRING`; of an array that of its elements"},
    {"objecttype",   "code",         YamlForm::Word,   kCodeWords, "Object code: what kind of object it is"},
    {"description",  "description",  YamlForm::Text,   {},         "What the object is for; may have several lines"},
    {"category",     "category",     YamlForm::Number, {},         "Kept for other tools: whether a device must have the object"},
    {"device_class", "device-class", YamlForm::Text,   {},         "Kept for other tools: class of devices that have the object"},
    {"fwsupported",  "fw-supported", YamlForm::Flag,   {},         "Kept for other tools: the firmware has the object"},
    {"metadata",     "metadata",     YamlForm::Map,    {},         "Free attributes of the object, such as `eds_define`"},
};
static_assert(belongTogether(kIndexWords, kIndexColumns), "a word for each column");

inline constexpr YamlColumn kSubIndexWords[] = {
    {"name",               "name",                 YamlForm::Text,     {},                   "Name in device descriptions, of which names in generated C are made"},
    {"datatype",           "type",                 YamlForm::Type,     {},                   "Data type, such as `U16` or `VISIBLE_STRING`"},
    {"accesstype",         "access",               YamlForm::WordText, kAccessWords,         "Access from the bus; `rwr` is `rw` that is transmitted in PDOs, `rww` is `rw` that is received in them"},
    {"defaultvalue",       "default",              YamlForm::Written,  {},                   "Value after a reset: a number, also hexadecimal, one such as `$NODEID+0x180`, or a text"},
    {"currentvalue",       "current",              YamlForm::Written,  {},                   "Value of the device's configuration, which only DCF files hold"},
    {"pdomapping",         "pdo",                  YamlForm::Word,     kPdoWords,            "PDOs that may map it: none, any (`optional`), any and mapped by default (`default`), receive or transmit PDOs"},
    {"lowlimit",           "low-limit",            YamlForm::Written,  {},                   "Least value; empty for none. Of signed types decimal"}, // both are written as YamlKeys::kLimits
    {"uplimit",            "up-limit",             YamlForm::Written,  {},                   "Greatest value; empty for none. Of signed types decimal"},
    {"size",               "size",                 YamlForm::Number,   {},                   "Bytes of a string or domain"},
    {"defaultineds",       "default-in-eds",       YamlForm::Flag,     {},                   "It has a default value"},
    {"limitineds",         "limits-in-eds",        YamlForm::Flag,     {},                   "Limits stand in descriptions, and writing beyond them is refused if the setting `limit_check` is on"},
    {"refuseread",         "refuse-read",          YamlForm::Flag,     {},                   "Tools leave it out when they read all objects"},
    {"refusewrite",        "refuse-write",         YamlForm::Flag,     {},                   "Tools leave it out when they write all objects"},
    {"allowedaccesstypes", "allowed-access",       YamlForm::Text,     {},                   "Kept for other tools: access words to choose from, parted by commas"},
    {"implementation",     "implementation",       YamlForm::Word,     kImplementationWords, kWhereHelp},
    {"varname",            "variable",             YamlForm::Text,     {},                   "C expression: the variable of the application that holds the value"},
    {"description",        "description",          YamlForm::Text,     {},                   "What the value means; may have several lines"},
    {"category",           "category",             YamlForm::Number,   {},                   "Kept for other tools: whether a device must have it"},
    {"writedefaulttoeds",  "write-default-to-eds", YamlForm::Word,     kDefaultToEdsWords,   "Whether descriptions hold the default value; `with-default`: if `default-in-eds` is true"},
    {"cyclicread",         "cyclic-read",          YamlForm::Flag,     {},                   "Kept for other tools"},
    {"dcfcomponent",       "dcf-component",        YamlForm::Flag,     {},                   "Kept for other tools: it has a value in the DCF"},
    {"changedbyuser",      "changed-by-user",      YamlForm::Flag,     {},                   "Kept for other tools: somebody changed it"},
    {"wizardsource",       "wizard-source",        YamlForm::Number,   {},                   "Kept for other tools"},
    {"denotation",         "display-name",         YamlForm::Text,     {},                   "Name in a DCF, for people"},
    {"sharedlines",        "shared-lines",         YamlForm::Flag,     {},                   "Given on line 0 and on another: both lines have one variable, that of line 0"},
    {"managedbyolm",       "managed-by-olm",       YamlForm::Flag,     {},                   "Kept for other tools"},
    {"signalid",           "signal",               YamlForm::Number,   {},                   "Number of the signal of this line that it is tied to; 0 for none"},
    {"nvstorage",          "nv-storage",           YamlForm::Flag,     {},                   "The value is kept in non-volatile memory"},
    {"metadata",           "metadata",             YamlForm::Map,      {},                   "Free attributes of the subindex"},
};
static_assert(belongTogether(kSubIndexWords, kSubIndexColumns), "a word for each column");

inline constexpr YamlColumn kConnectionWords[] = { // one text for each end
    {"prodnode", nullptr}, {"prodindex", nullptr}, {"prodsub", nullptr},
    {"connode", nullptr}, {"conindex", nullptr}, {"consub", nullptr},
    {"priority", "priority", YamlForm::Number, {}, "Priority of the connection"},
};
static_assert(belongTogether(kConnectionWords, kConnectionColumns), "a word for each column");

inline constexpr YamlColumn kUdsServiceWords[] = {
    {"active",     "active",   YamlForm::Flag,       {}, "The line answers the service"},
    {"sessions",   "sessions", YamlForm::NumberList, {}, "Diagnostic sessions in which it may be asked for, by number"},
    {"userlevels", "levels",   YamlForm::NumberList, {}, "Security levels that may ask for it, by number"},
};
static_assert(belongTogether(kUdsServiceWords, kUdsServiceColumns), "a word for each column");

inline constexpr YamlColumn kLineSignalWords[] = {
    {"nodeid",          nullptr,            YamlForm::Number}, // its line
    {"name",            "name",             YamlForm::Text,     {},           "Name of the signal"},
    {"datatype",        "type",             YamlForm::Type,     {},           "Data type, such as `U16`"},
    {"accesstype",      "access",           YamlForm::WordText, kAccessWords, "Access to the value; `txmpdo`: sent in a multiplexed PDO"},
    {"defaultvalue",    "default",          YamlForm::Written,  {},           "Value after a reset"},
    {"signalgroup",     "group",            YamlForm::Number,   {},           "Number of its group in `signal-groups`; 0 for none"},
    {"ref",             "ref",              YamlForm::Number,   {},           "Number of the signal that it takes its value from; 0 for none"},
    {"transmittype",    "transmit-type",    YamlForm::Number,   {},           "How it is sent"},
    {"transmittrigger", "transmit-trigger", YamlForm::Number,   {},           "What makes it be sent"},
    {"eventtimer",      "event-timer",      YamlForm::Number,   {},           "Milliseconds between two messages"},
    {"syncvalue",       "sync",             YamlForm::Number,   {},           "SYNC messages between two of its own"},
    {"syncstartvalue",  "sync-start",       YamlForm::Number,   {},           "Count of the SYNC message that it begins with"},
    {"routing",         "routing",          YamlForm::Number,   {},           "Kept for other tools: its way through a gateway"},
};
static_assert(belongTogether(kLineSignalWords, kLineSignalColumns), "a word for each column");

inline constexpr YamlColumn kPgnWords[] = {
    {"number",               nullptr,             YamlForm::Hex},
    {"edp_dp_key",           "data-page-key",     YamlForm::Number, {},              "Data page bits, in older projects whose numbers of groups lack them"},
    {"priority",             "priority",          YamlForm::Number, {},              "Priority on the bus: 0 is the highest, 7 the lowest"},
    {"cycletime_ms",         "cycle",             YamlForm::Number, {},              "Milliseconds between two messages; 0: not cyclic"},
    {"inhibittime_ms",       "inhibit",           YamlForm::Number, {},              "Least milliseconds between two messages"},
    {"mappingcount",         "count",             YamlForm::Number, {},              "Number of signals, if it is not that of the list"},
    {"direction",            nullptr,             YamlForm::Word,   kDirectionWords},
    {"name",                 "name",              YamlForm::Text,   {},              "Name of the group"},
    {"desc",                 "description",       YamlForm::Text,   {},              "What the group is for; may have several lines"},
    {"issafe",               "safe",              YamlForm::Number, {},              "1: a safety data group (SAE J1939-76)"},
    {"srvt_ms",              "srvt",              YamlForm::Number, {},              "Safety-relevant validation time of a safety data group in ms"},
    {"FD_TrailerFormat",     "fd-trailer",        YamlForm::Number, {},              "Format of the assurance trailer in CAN FD frames: 0 none, to 5"},
    {"FD_AssuranceType",     "fd-assurance",      YamlForm::Number, {},              "0 none, 1 cybersecurity, 2 functional safety, 3 both"},
    {"FD_AssuranceDataSize", "fd-assurance-size", YamlForm::Number, {},              "Size of the assurance data in CAN FD frames"},
};
static_assert(belongTogether(kPgnWords, kPgnColumns), "a word for each column");

inline constexpr YamlColumn kSpnWords[] = {
    {"pgnnumber",      nullptr,          YamlForm::Hex},
    {"spnnumber",      "spn",            YamlForm::Number,  {},                   "Suspect parameter number"},
    {"datatype",       "type",           YamlForm::Type,    {},                   "Data type, such as `U16`, which gives the size in the frame"},
    {"implementation", "implementation", YamlForm::Word,    kImplementationWords, kWhereHelp},
    {"varname",        "variable",       YamlForm::Text,    {},                   "C expression: the variable of the application that holds the value"},
    {"defaultvalue",   "default",        YamlForm::Written, {},                   "Value at the start of the application's variable; numbers that generated C declares start as not available"},
    {"name",           "name",           YamlForm::Text,    {},                   "Name of the signal; fillers have \"dummy\" in theirs"},
    {"desc",           "description",    YamlForm::Text,    {},                   "What the value means; may have several lines"},
    {"pos",            "pos",            YamlForm::Number,  {},                   "Place in the frame, if it is not that in the list"},
    {"bitsize",        "bits",           YamlForm::Number,  {},                   "Bits of a text, whose type does not say them"},
    {"direction",      nullptr,          YamlForm::Word,    kDirectionWords},
    {"slot_df",        "slot",           YamlForm::Number,  {},                   "Kept for other tools: number of its scaling (SLOT)"},
};
static_assert(belongTogether(kSpnWords, kSpnColumns), "a word for each column");

inline constexpr YamlColumn kCanIdWords[] = {
    {"id",             nullptr,       YamlForm::Hex},
    {"cycletime_ms",   "cycle",       YamlForm::Number, {},              "Milliseconds between two messages; 0: not cyclic"},
    {"inhibittime_ms", "inhibit",     YamlForm::Number, {},              "Least milliseconds between two messages"},
    {"mappingcount",   "count",       YamlForm::Number, {},              "Number of elements, if it is not that of the list"},
    {"direction",      nullptr,       YamlForm::Word,   kDirectionWords},
    {"name",           "name",        YamlForm::Text,   {},              "Name of the frame"},
    {"desc",           "description", YamlForm::Text,   {},              "What the frame is for; may have several lines"},
};
static_assert(belongTogether(kCanIdWords, kCanIdColumns), "a word for each column");

inline constexpr YamlColumn kDataElementWords[] = {
    {"canid",          nullptr,          YamlForm::Hex},
    {"number",         "number",         YamlForm::Number,  {},                   "Number of the element, which orders the frame; one more than that before it if not given"},
    {"datatype",       "type",           YamlForm::Type,    {},                   "Data type, such as `U16`, which gives the size in the frame"},
    {"implementation", "implementation", YamlForm::Word,    kImplementationWords, kWhereHelp},
    {"varname",        "variable",       YamlForm::Text,    {},                   "C expression: the variable of the application that holds the value"},
    {"defaultvalue",   "default",        YamlForm::Written, {},                   "Value at the start; a frame that is sent begins with it"},
    {"name",           "name",           YamlForm::Text,    {},                   "Name of the element"},
    {"desc",           "description",    YamlForm::Text,    {},                   "What the value means; may have several lines"},
    {"pos",            "pos",            YamlForm::Number,  {},                   "Place in the frame, if it is not that in the list"},
    {"bitsize",        "bits",           YamlForm::Number,  {},                   "Bits of a text, whose type does not say them"},
    {"direction",      nullptr,          YamlForm::Word,    kDirectionWords},
};
static_assert(belongTogether(kDataElementWords, kDataElementColumns), "a word for each column");

inline constexpr YamlColumn kVirtualNodeWords[] = {
    {"line",     "line", YamlForm::Number, {}, "CAN line that the node is on"},
    {"dbnodeid", "node", YamlForm::Number, {}, "Number of the node"},
    {"name",     "name", YamlForm::Text,   {}, "Name of the node"},
};
static_assert(belongTogether(kVirtualNodeWords, kVirtualNodeColumns), "a word for each column");

inline constexpr YamlColumn kLineGroupWords[] = {
    {"name",       "name",  YamlForm::Text,       {}, "Name of the group of lines"},
    {"nodeidlist", "lines", YamlForm::NumberList, {}, "Its lines, by number"},
};
static_assert(belongTogether(kLineGroupWords, kLineGroupColumns), "a word for each column");
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
inline constexpr YamlTable<VirtualNodeRecord> kVirtualNodeYaml(kVirtualNodeColumns,
                                                               kVirtualNodeWords);
inline constexpr YamlTable<LineGroupRecord> kLineGroupYaml(kLineGroupColumns, kLineGroupWords);
