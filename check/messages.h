// What the check can say: one row a message, in one table.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

namespace Check
{
Q_NAMESPACE

/// Names of the messages; they are also the rule names of the machine-readable report, so that a
/// name that users have met does not change any more. In the order of the table.
enum class Msg {
    // One object
    SubIndicesMissing,
    Sub0ValueCorrected,
    Sub0DefaultFlagMissing,
    Sub0MadeConstant,
    Sub0DefaultNotInEds,
    ObjectNameMissing,
    VariableHasSubIndices,
    // One subindex
    LimitCheckOff,
    SubIndexNameMissing,
    VariableNameMissing,
    VariableNameInvalid,
    AccessTypeInvalid,
    ConstantIsWritable,
    OctetStringManaged,
    VisibleStringManaged,
    Utf8StringManaged,
    ValueOutOfType,
    DatatypeUnknown,
    DefaultOutOfLimits,
    // The project
    UdsServerAndClient,
    AddCommonMemcpy,
    AddCommonMemcpyMapping,
    AddMemcpy,
    AddMemcpyMapping,
    AddUdsInit,
    SdoBlockSizeTooLarge,
    TimerIntervalMissing,
    // The stack that is installed
    StackPathMissing,
    StackPathAdvice,
    FeatureFileMissing,
    StackTooOld,
    StackNeedsOtherTool,
    // Settings of a line
    NodeIdMissing,
    NodeIdFunctionOpensBracket,
    NodeIdFunctionClosesBracket,
    ReceiveBufferInvalid,
    TransmitBufferInvalid,
    MultiMasterNotPerLine,
    // Communication objects
    DeviceTypeNotArray,
    DeviceTypeNotVariable,
    DeviceTypeMissing,
    ErrorRegisterMissing,
    ErrorControlMissing,
    SlaveAssignmentTooLarge,
    ObjectHasGaps,
    AutoStoreValueAbove1,
    AutoStoreValueAbove3,
    NmtInhibitMissing,
    VendorIdEmpty,
    VendorIdOfMaker,
    ProductCodeEmpty,
    RevisionNumberEmpty,
    SerialNumberConstant,
    EmergencyIdMissing,
    EmergencyConsumerZero,
    // PDO mapping
    PdoCommunicationMissing,
    PdoMappingEmpty,
    PdoMappingAccessMixed,
    MappedObjectMissing,
    MappedObjectNotMappable,
    MappedSizeTooSmall,
    MappedSizeTooLarge,
    RpdoAccessUnfit,
    TpdoAccessUnfit,
    PdoTooLong,
    PdoEntryCountInvalid,
    PdoDisabled,
    // PDO communication
    PdoMappingMissing,
    PdoCobIdNotInEds,
    PdoTransmissionTypeNotInEds,
    EventTimerTooShort,
    // SRDO
    SrdoMappingMissing,
    SrdoObjectMissing,
    SrdoObjectNotVariable,
    SrdoObjectNotMappable,
    // Mapping settings
    BitwiseMappingGranularity,
    BitwiseMappingOff,
    DynamicMappingGranularity,
    // Pre-defined connection set
    CobIdNotPredefined,
    CobIdAdvice,
    // Features of the stack
    StackPathRequired,
    StackPathRequiredAdvice,
    FeatureFileRequired,
    TooManySdoServers,
    TooManySdoClients,
    TooManyTransmitPdos,
    TooManyReceivePdos,
    TooManyEmergencyConsumers,
    TooManyHeartbeatConsumers,
    NmtSlaveUnsupported,
    NmtMasterUnsupported,
    LssSlaveUnsupported,
    LssMasterUnsupported,
    SyncConsumerUnsupported,
    SyncProducerUnsupported,
    SrdoUnsupported,
    DynamicMappingUnsupported,
    MpdoUnsupported,
    BootupManagerUnsupported,
    ConfigurationManagerUnsupported,
    // A J1939 line
    SortedCobListWithJ1939,
    GroupFilterWithoutCANopen,
    AdditionalCobsMissing,
    IdentityNumberMissing,
    ManufacturerCodeMissing,
    ManufacturerCodeOfMaker,
    EcuInstanceMissing,
    FunctionInstanceMissing,
    FunctionMissing,
    VehicleSystemMissing,
    VehicleInstanceMissing,
    IndustryGroupMissing,
    StartAddressMissing,
    PgnHandledByStack,
    SafeGroupWithoutSupport,
    SafeGroupHasManagedVariable,
    SafeGroupTypeUnsupported,
    SafeGroupStructureUnsupported,
    SafeGroupTooLong,
    TransportProtocolMissing,
    TransportPacketCountZero,
    SpnVariableMissing,
};
Q_ENUM_NS(Msg)

/// Form of a message: it gives the marked-up words before the text, and how grave the finding is.
/// The Verbatim kinds have none before it; their markup does not follow the forms, and stands in
/// the text.
enum class Kind {
    Error,
    SevereError,
    Warning,
    StrongWarning,
    Correction,
    Hint,
    Info,
    VerbatimError,
    VerbatimWarning,
    Verbatim,
};

enum class Level { Error, Warning, Note };

struct MessageRow {
    Msg id;
    Kind kind;
    bool counted;  ///< adds to the error count, which is not the same as being worded as an error
    int arguments; ///< number of place holders, up to 3
    const char *text; ///< source text of the translation context "ModelChecker"
};

struct MessageRange {
    const MessageRow *first;
    const MessageRow *last;
    const MessageRow *begin() const { return first; }
    const MessageRow *end() const { return last; }
};

/// All messages, in the order of Msg.
MessageRange messages();
const MessageRow &messageRow(Msg id);

Level levelOf(const MessageRow &row);

/// The enumerator's name.
QString ruleName(Msg id);

/// Prefix and translated text, filled. \a arguments are as many as the row says.
QString markedUpText(const MessageRow &row, const QStringList &arguments);

/// What the message is about, for lists of rules: without its kind, and "..." for place holders.
QString ruleDescription(const MessageRow &row);

/// The same without markup and outer white space. What the arguments hold stays, tags too.
QString plainText(const MessageRow &row, const QStringList &arguments);

} // namespace Check
