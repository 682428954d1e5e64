// The words of DBC files, for those that read them and those that write them.
#pragma once

namespace DbcKeys
{

// --- Statements ---

constexpr const char *kVersion = "VERSION";
constexpr const char *kNewSymbols = "NS_";
constexpr const char *kBitTiming = "BS_";
constexpr const char *kNodes = "BU_";
constexpr const char *kMessage = "BO_";
constexpr const char *kSignal = "SG_";
constexpr const char *kVariable = "EV_";

/// Statements besides those above, as the section of new symbols lists them.
// clang-format off
constexpr const char *kSymbols[] = {
    "NS_DESC_", "CM_", "BA_DEF_", "BA_", "VAL_", "CAT_DEF_", "CAT_", "FILTER", "BA_DEF_DEF_",
    "EV_DATA_", "ENVVAR_DATA_", "SGTYPE_", "SGTYPE_VAL_", "BA_DEF_SGTYPE_", "BA_SGTYPE_",
    "SIG_TYPE_REF_", "VAL_TABLE_", "SIG_GROUP_", "SIG_VALTYPE_", "SIGTYPE_VALTYPE_", "BO_TX_BU_",
    "BA_DEF_REL_", "BA_REL_", "BA_DEF_DEF_REL_", "BU_SG_REL_", "BU_EV_REL_", "BU_BO_REL_",
    "SG_MUL_VAL_",
};
// clang-format on

// --- Names ---

constexpr int kLongestName = 32;
constexpr const char *kNobody = "Vector__XXX"; ///< no sender, no receiver
/// The message of signals that are in no message.
constexpr const char *kLooseSignals = "VECTOR__INDEPENDENT_SIG_MSG";

// --- Attributes ---

// Names that are longer than a file may have them.
constexpr const char *kLongNodeName = "SystemNodeLongSymbol";
constexpr const char *kLongMessageName = "SystemMessageLongSymbol";
constexpr const char *kLongSignalName = "SystemSignalLongSymbol";
constexpr const char *kLongVariableName = "SystemEnvVarLongSymbol";

constexpr const char *kProtocolType = "ProtocolType"; ///< of the network
constexpr const char *kFrameFormat = "VFrameFormat";  ///< of messages

constexpr const char *kBusType = "BusType";                 ///< of the network
constexpr const char *kStationAddress = "NmStationAddress"; ///< of nodes
constexpr const char *kNamePart = "NmJ1939";                ///< begins those of a node's NAME
constexpr const char *kCycleTime = "GenMsgCycleTime";       ///< of messages; ms
constexpr const char *kStartValue = "GenSigStartValue";     ///< of signals; the raw number
constexpr const char *kSpn = "SPN";                         ///< of signals; 0 if it has none
constexpr const char *kSignalType = "SigType";              ///< of signals of J1939
constexpr const char *kVariableLength = "TpJ1939VarDlc";    ///< of messages of J1939

// What this tool adds to signals.
constexpr const char *kImplementation = "korvel_implementation_type";
constexpr const char *kVariableName = "korvel_variable_name";
constexpr const char *kTextBits = "korvel_bitsize"; ///< of a text that a byte stands for

} // namespace DbcKeys
