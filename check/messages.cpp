// The table of messages. Odd blanks and missing brackets in it belong to the texts that users and
// their scripts know.
#include "check/messages.h"

#include "support/printable.h"

#include <QCoreApplication>
#include <QMetaEnum>
#include <QRegularExpression>

#include <iterator>

namespace Check
{

namespace
{

struct KindRow {
    Kind kind;
    Level level;
    const char *prefix;
};

// clang-format off
constexpr KindRow kKinds[] = {                      // in the order of Kind
    {Kind::Error,           Level::Error,   "<strong>Error: </strong>"},
    {Kind::SevereError,     Level::Error,   "<strong><font color='red'>Error: </font></strong>"},
    {Kind::Warning,         Level::Warning, "Warning: "},
    {Kind::StrongWarning,   Level::Warning, "<strong>Warning: </strong>"},
    {Kind::Correction,      Level::Note,    "<i>Corrected: "},
    {Kind::Hint,            Level::Note,    "<strong>Hint: </strong>"},
    {Kind::Info,            Level::Note,    "Info: "},
    {Kind::VerbatimError,   Level::Error,   ""},
    {Kind::VerbatimWarning, Level::Warning, ""},
    {Kind::Verbatim,        Level::Note,    ""},
};

#define TEXT(text) QT_TRANSLATE_NOOP("ModelChecker", text)

constexpr MessageRow kMessages[] = {
    {Msg::SubIndicesMissing, Kind::Error, true, 1,
     TEXT("Object 0x%1: This array does not contain any sub-indices")},
    {Msg::Sub0ValueCorrected, Kind::Correction, false, 1,
     TEXT("Object 0x%1</i>: The value of subindex 0 does not fit to the highest subindex.")},
    {Msg::Sub0DefaultFlagMissing, Kind::Error, true, 1,
     TEXT("Object 0x%1-0:The 'default value' flag must be set for this subindex.")},
    {Msg::Sub0MadeConstant, Kind::Correction, false, 1,
     TEXT("Object 0x%1-0</i>:'Managed Const' is used as implementation type for this subindex.")},
    {Msg::Sub0DefaultNotInEds, Kind::Warning, false, 1,
     TEXT("Object 0x%1-0:The defaultvalue of this subindex should be written into the EDS/XDD file.")},
    {Msg::ObjectNameMissing, Kind::Error, true, 1,
     TEXT("Object 0x%1: The object does not have a name. (Required for EDS)")},
    {Msg::VariableHasSubIndices, Kind::Error, true, 1,
     TEXT("Object 0x%1: The object is a VARIABLE but has multiple subindices.")},

    {Msg::LimitCheckOff, Kind::Warning, false, 2,
     TEXT("Object 0x%1-0x%2: Limit Check is activated, but it is deactivated in the global settings.")},
    {Msg::SubIndexNameMissing, Kind::Error, true, 2,
     TEXT("Object 0x%1-0x%2: The object does not have a name. (Required for EDS)")},
    {Msg::VariableNameMissing, Kind::Error, true, 2,
     TEXT("Object 0x%1-0x%2: The variable name is missing.")},
    {Msg::VariableNameInvalid, Kind::Error, true, 2,
     TEXT("Object 0x%1-0x%2: The variable name contains invalid characters like spaces or commas.")},
    {Msg::AccessTypeInvalid, Kind::Error, true, 3,
     TEXT("Object 0x%1-0x%2: The access type '%3' is invalid. Use ro, rw, const, wo, rww or rwr instead.")},
    {Msg::ConstantIsWritable, Kind::Error, true, 2,
     TEXT("Object 0x%1-0x%2: The implementation type is Managed Const, but the access type allows write access.")},
    {Msg::OctetStringManaged, Kind::Error, true, 2,
     TEXT("Object 0x%1-0x%2: The implementation type 'Managed Variable' is not possible for octet strings.")},
    {Msg::VisibleStringManaged, Kind::Error, true, 2,
     TEXT("Object 0x%1-0x%2: The implementation type 'Managed Variable' is not possible for visible strings. Use 'Managed Const' or 'Variable' instead.")},
    {Msg::Utf8StringManaged, Kind::Error, true, 2,
     TEXT("Object 0x%1-0x%2: The implementation type 'Managed Variable' is not possible for UTF8 strings. Use 'Managed Const' or 'Variable' instead.")},
    {Msg::ValueOutOfType, Kind::Error, true, 2,
     TEXT("Object 0x%1-0x%2: The values of the limits or defaultvalue does to fit to the datatype.")},
    {Msg::DatatypeUnknown, Kind::Error, true, 2,
     TEXT("Object 0x%1-0x%2: Unknown or unsupported datatype.")},
    {Msg::DefaultOutOfLimits, Kind::Error, true, 2,
     TEXT("Object 0x%1-0x%2: The defaultvalue is not in the range of the limits.")},

    {Msg::UdsServerAndClient, Kind::SevereError, true, 0,
     TEXT("UDS server and UDS client together on one line is not possible.")},
    {Msg::AddCommonMemcpy, Kind::Hint, false, 0,
     TEXT("Add <font color='red'>co_common.c and co_memcpy.c</font> to your project or Makefile.")},
    {Msg::AddCommonMemcpyMapping, Kind::Hint, false, 0,
     TEXT("Add <font color='red'>co_common.c, co_memcpy.c and co_mapping.c</font> to your project or Makefile.")},
    {Msg::AddMemcpy, Kind::Hint, false, 0,
     TEXT("Add <font color='red'>co_memcpy.c</font> to your project or Makefile.")},
    {Msg::AddMemcpyMapping, Kind::Hint, false, 0,
     TEXT("Add <font color='red'>co_memcpy.c and co_mapping.c</font> to your project or Makefile.")},
    {Msg::AddUdsInit, Kind::Hint, false, 0,
     TEXT("Add <font color='red'>uds_init.c</font> to your project or Makefile.")},
    {Msg::SdoBlockSizeTooLarge, Kind::SevereError, true, 0,
     TEXT("CANopen SDO block size may not exceed 127.")},
    {Msg::TimerIntervalMissing, Kind::SevereError, true, 0,
     TEXT("Timer interval not set in Common Settings -> Hardware/Target.")},

    {Msg::StackPathMissing, Kind::Info, false, 0,
     TEXT("Path to protocol stack not specified. Cannot check if generated code fits to installed stack/framework.")},
    {Msg::StackPathAdvice, Kind::Verbatim, false, 0,
     TEXT("Specify path to protocol stack at Options -> Settings.")},
    {Msg::FeatureFileMissing, Kind::Info, false, 1,
     TEXT("No *_featureinfo_*.xml file found in protocol stack folder %1. Cannot check if generated code fits to installed stack/framework.")},
    {Msg::StackTooOld, Kind::SevereError, true, 0,
     TEXT("Version of installed stack does not fit. It requires an older version of the tool. Cannot generate files.")},
    {Msg::StackNeedsOtherTool, Kind::SevereError, true, 1,
     TEXT("Version of installed stack does not fit. It requires tool version %1. Cannot generate files.")},

    {Msg::NodeIdMissing, Kind::Error, true, 1,
     TEXT("CANopen basic Stack Settings: No Node-Id specified for line %1: Specify a number between 1 and 127, or 255 for LSS or a function name like e.g. readDipSwitch in the line below.")},
    {Msg::NodeIdFunctionOpensBracket, Kind::Error, true, 0,
     TEXT("CANopen basic Stack Settings: The name of the NodeId function may not include a (.")},
    {Msg::NodeIdFunctionClosesBracket, Kind::Error, true, 0,
     TEXT("CANopen basic Stack Settings: The name of the NodeId function may not include a ).")},
    {Msg::ReceiveBufferInvalid, Kind::Error, true, 0,
     TEXT("Common Settings: CAN receive buffer size must be specified individually for each line.")},
    {Msg::TransmitBufferInvalid, Kind::Error, true, 0,
     TEXT("Common Settings: CAN transmit buffer size must be specified individually for each line.")},
    {Msg::MultiMasterNotPerLine, Kind::Error, true, 0,
     TEXT("General Settings: The ML master/slave settings size must be specified individually for each line. (e.g 0,1)")},

    {Msg::DeviceTypeNotArray, Kind::Error, true, 1,
     TEXT("Object 0x%1 (Device Type) must be an ARRAY according to the CANopen FD specification.")},
    {Msg::DeviceTypeNotVariable, Kind::Error, true, 1,
     TEXT("Object 0x%1 (Device Type) must be a VARIABLE according to the CANopen specification.")},
    {Msg::DeviceTypeMissing, Kind::Error, true, 1,
     TEXT("Object 0x%1 (Device Type) does not exist, but it is mandatory according to CANopen specification.")},
    {Msg::ErrorRegisterMissing, Kind::Error, true, 1,
     TEXT("Object 0x%1 (Error Register) does not exist, but it is mandatory according to CANopen specification.")},
    {Msg::ErrorControlMissing, Kind::Error, true, 1,
     TEXT("Object 0x%1 (Producer Heartbeat) and 0x100C (Guard Time) do not exist, but one of them is mandatory.")},
    {Msg::SlaveAssignmentTooLarge, Kind::Error, true, 0,
     TEXT("Object 0x1f81: Value of 'max slave Assigment count' may not exceed number of subindices of object 0x1f81.")},
    {Msg::ObjectHasGaps, Kind::Error, true, 1,
     TEXT("Object 0x%1 may not have gaps.")},
    {Msg::AutoStoreValueAbove1, Kind::Error, true, 2,
     TEXT("Object 0x%1:%2 only default values between 0 and 1 are supported. Enable CO_AUTO_STORE_HANDLED_BY_APPLICATION to support other values")},
    {Msg::AutoStoreValueAbove3, Kind::Error, true, 2,
     TEXT("Object 0x%1:%2 only default values between 0 and 3 are supported.")},
    {Msg::NmtInhibitMissing, Kind::Warning, false, 1,
     TEXT("Object 0x%1: The object 0x102A (NMT inhibit time) is highly recommended for masters. It may be added via 'Add Communication Service'.")},
    {Msg::VendorIdEmpty, Kind::Error, true, 1,
     TEXT("Object 0x%1-0x01: The value of subindex 1 (vendor-ID) is empty.")},
    {Msg::VendorIdOfMaker, Kind::VerbatimWarning, false, 1,
     TEXT("<strong>Warning: Object 0x%1-0x01: The vendor-ID 0x319 (Korvel) may not be used for production. </strong>")},
    {Msg::ProductCodeEmpty, Kind::Error, true, 1,
     TEXT("Object 0x%1: The value of subindex 2 (product code) is empty.")},
    {Msg::RevisionNumberEmpty, Kind::Error, true, 1,
     TEXT("Object 0x%1: The value of subindex 3 (revision number) is empty.")},
    {Msg::SerialNumberConstant, Kind::VerbatimWarning, false, 1,
     TEXT("<strong>Warning</strong>: Object 0x%1: The implementation type of subindex 4 (serial number) is 'Managed Const'. This is not useful in most cases.")},
    {Msg::EmergencyIdMissing, Kind::Error, true, 1,
     TEXT("Object 0x%1: This object can only be used, if object 0x1014 exists as well.")},
    {Msg::EmergencyConsumerZero, Kind::Error, true, 2,
     TEXT("Object 0x%1-%2: The value of this sub index may not be 0x00000000.")},

    {Msg::PdoCommunicationMissing, Kind::Error, true, 2,
     TEXT("Object 0x%1: The corresponding PDO communication parameter object 0x%2 does not exist.")},
    {Msg::PdoMappingEmpty, Kind::Error, true, 2,
     TEXT("Object 0x%1 of line %2: The PDO mapping table does not contain any mapped object.")},
    {Msg::PdoMappingAccessMixed, Kind::Error, true, 1,
     TEXT("Object 0x%1: All subindices of a PDO mapping object must have the same access type. (const for static mapping or rw for dynamic mapping")},
    {Msg::MappedObjectMissing, Kind::Error, true, 3,
     TEXT("Object 0x%1: The mapped object 0x%2:%3 does not exist.")},
    {Msg::MappedObjectNotMappable, Kind::Error, true, 3,
     TEXT("Object 0x%1: PDO mapping is not allowed for object 0x%2:%3.")},
    {Msg::MappedSizeTooSmall, Kind::Warning, false, 3,
     TEXT("Object 0x%1: The size of the mapped object 0x%2:%3 is too small.")},
    {Msg::MappedSizeTooLarge, Kind::Error, true, 3,
     TEXT("Object 0x%1: The size of the mapped object 0x%2:%3 is too large.")},
    {Msg::RpdoAccessUnfit, Kind::Error, true, 3,
     TEXT("Object 0x%1: The access right of the mapped object 0x%2:%3 does not fit for an RPDO.")},
    {Msg::TpdoAccessUnfit, Kind::Error, true, 3,
     TEXT("Object 0x%1: The access right of the mapped object 0x%2:%3 does not fit for a TPDO.")},
    {Msg::PdoTooLong, Kind::Error, true, 1,
     TEXT("Object 0x%1: Size of PDO exceeds the limit. ")},
    {Msg::PdoEntryCountInvalid, Kind::Error, true, 1,
     TEXT("Object 0x%1:  Invalid number of mapping entries.")},
    {Msg::PdoDisabled, Kind::Correction, false, 2,
     TEXT("Object 0x%1</i>: The COB-ID of this PDO has been disabled (%2), because it does not contain active mapping entries.")},

    {Msg::PdoMappingMissing, Kind::Error, true, 2,
     TEXT("Object 0x%1: The corresponding PDO mapping object 0x%2 does not exist.")},
    {Msg::PdoCobIdNotInEds, Kind::Hint, false, 1,
     TEXT("Subindex 1 of 0x%2 should have its default value in the EDS file.")},
    {Msg::PdoTransmissionTypeNotInEds, Kind::Hint, false, 1,
     TEXT("Subindex 2 of 0x%2 should have its default value in the EDS file.")},
    {Msg::EventTimerTooShort, Kind::StrongWarning, false, 1,
     TEXT("Subindex 3 and 5 of 0x%1: Event timer value should be greater than inhibit time value.")},

    {Msg::SrdoMappingMissing, Kind::Error, true, 2,
     TEXT("Object 0x%1: The corresponding SRDO mapping object 0x%2 does not exist.")},
    {Msg::SrdoObjectMissing, Kind::Error, true, 3,
     TEXT("Object 0x%1: The object 0x%2:%3 mapped into an SRDO does not exist.")},
    {Msg::SrdoObjectNotVariable, Kind::Error, true, 3,
     TEXT("Object 0x%1: The object 0x%2:%3 mapped into an SRDO must be an application variable.")},
    {Msg::SrdoObjectNotMappable, Kind::Error, true, 3,
     TEXT("Object 0x%1: The PDO mapping must be enabled for object 0x%2:%3 to use it in an SRDO.")},

    {Msg::BitwiseMappingGranularity, Kind::StrongWarning, false, 0,
     TEXT("Bitwise mapping cannot be used with a granularity of 8. Correct device description settings or PDO mapping.")},
    {Msg::BitwiseMappingOff, Kind::Error, true, 0,
     TEXT("Bitwise mapping not enabled in general settings. Correct general settings or PDO mapping.")},
    // Deliberate: worded as an error, and does not stop the run; held by tst_modelchecker
    // "dynamic_granularity".
    {Msg::DynamicMappingGranularity, Kind::Error, false, 0,
     TEXT("Dynamic mapping cannot be used with a granularity of 0. Correct device description settings or PDO mapping.")},

    {Msg::CobIdNotPredefined, Kind::Warning, false, 1,
     TEXT("Object 0x%1-0x01: The COB-ID for this PDO does not follow the pre-defined connection set.")},
    {Msg::CobIdAdvice, Kind::Verbatim, false, 0,
     TEXT("Enable CANopen Stack Settings -> Overwrite pre-defined connection set and call userOverwriteCobIdSettings() to use these COB-ID settings.\n\n")},

    {Msg::StackPathRequired, Kind::VerbatimError, true, 0,
     TEXT("\n<strong><font color='red'>Error: Path to protocol stack not specified. </font></strong>Cannot check if generated code fits to installed stack/framework.")},
    {Msg::StackPathRequiredAdvice, Kind::Info, false, 0,
     TEXT("Specify path to protocol stack at Options -> Settings.")},
    {Msg::FeatureFileRequired, Kind::VerbatimError, true, 1,
     TEXT("<strong><font color='red'>Error: No *_featureinfo_*.xml file found in protocol stack folder %1.</font></strong> Cannot check if generated code fits to installed stack/framework.")},
    {Msg::TooManySdoServers, Kind::SevereError, true, 1,
     TEXT("Number of SDO servers in project exceed limit (%1) of stack version.")},
    {Msg::TooManySdoClients, Kind::SevereError, true, 1,
     TEXT("Number of SDO clients in project exceed limit (%1) of stack version.")},
    {Msg::TooManyTransmitPdos, Kind::SevereError, true, 1,
     TEXT("Number of Transmit-PDOs in project exceed limit (%1) of stack version.")},
    {Msg::TooManyReceivePdos, Kind::SevereError, true, 1,
     TEXT("Number of Recieve-PDOs in project exceed limit (%1) of stack version.")},
    {Msg::TooManyEmergencyConsumers, Kind::SevereError, true, 1,
     TEXT("Number of Emergency consumers in project exceed limit (%1) of stack version.")},
    {Msg::TooManyHeartbeatConsumers, Kind::SevereError, true, 1,
     TEXT("Number of Heartbeat consumers in project exceed limit (%1) of stack version.")},
    {Msg::NmtSlaveUnsupported, Kind::SevereError, true, 0,
     TEXT("NMT slave functionality is not supported by stack version.")},
    {Msg::NmtMasterUnsupported, Kind::SevereError, true, 0,
     TEXT("NMT master functionality is not supported by stack version.")},
    {Msg::LssSlaveUnsupported, Kind::SevereError, true, 0,
     TEXT("LSS slave functionality is not supported by stack version.")},
    {Msg::LssMasterUnsupported, Kind::SevereError, true, 0,
     TEXT("LSS master functionality is not supported by stack version.")},
    {Msg::SyncConsumerUnsupported, Kind::SevereError, true, 0,
     TEXT("SYNC consumer functionality is not supported by stack version.")},
    {Msg::SyncProducerUnsupported, Kind::SevereError, true, 0,
     TEXT("SYNC producer functionality is not supported by stack version.")},
    {Msg::SrdoUnsupported, Kind::SevereError, true, 0,
     TEXT("SRDO functionality is not supported by stack version.")},
    {Msg::DynamicMappingUnsupported, Kind::SevereError, true, 0,
     TEXT("Dynamic PDO mapping is not supported by stack version.")},
    {Msg::MpdoUnsupported, Kind::SevereError, true, 0,
     TEXT("MPDOs are not supported by stack version.")},
    {Msg::BootupManagerUnsupported, Kind::SevereError, true, 0,
     TEXT("CANopen Bootup Manager functionality is not supported by stack version.")},
    {Msg::ConfigurationManagerUnsupported, Kind::SevereError, true, 0,
     TEXT("CANopen Configuration Manager functionality is not supported by stack version.")},
    {Msg::SortedCobListWithJ1939, Kind::Error, true, 0,
     TEXT("Sorted COB list may not used with J1939 projects.")},
    {Msg::GroupFilterWithoutCANopen, Kind::StrongWarning, false, 0,
     TEXT("Group filter is only useful for CANopen or mixed projects.")},
    {Msg::AdditionalCobsMissing, Kind::Error, true, 0,
     TEXT("Additional COBs need to be specific with dynamic PGN support.")},
    {Msg::IdentityNumberMissing, Kind::Error, true, 1,
     TEXT("Identity number not defined in J1939 configuration tab for line %1.")},
    {Msg::ManufacturerCodeMissing, Kind::Error, true, 1,
     TEXT("Manufacturer code not defined in J1939 configuration tab for line %1.")},
    {Msg::ManufacturerCodeOfMaker, Kind::VerbatimWarning, false, 0,
     TEXT("<strong>Warning: The manufacturer code 1193 (Korvel) may not be used for production. </strong>")},
    {Msg::EcuInstanceMissing, Kind::Error, true, 1,
     TEXT("ECU instance not defined in J1939 configuration tab for line %1.")},
    {Msg::FunctionInstanceMissing, Kind::Error, true, 1,
     TEXT("Function instance not defined in J1939 configuration tab for line %1")},
    {Msg::FunctionMissing, Kind::Error, true, 1,
     TEXT("Function not defined in J1939 configuration tab for line %1.")},
    {Msg::VehicleSystemMissing, Kind::Error, true, 1,
     TEXT("Vehicle system not defined in J1939 configuration tab for line %1.")},
    {Msg::VehicleInstanceMissing, Kind::Error, true, 1,
     TEXT("Vehicle instance not defined in J1939 configuration tab for line %1.")},
    {Msg::IndustryGroupMissing, Kind::Error, true, 1,
     TEXT("Industry Group not defined in J1939 configuration tab for line %1.")},
    {Msg::StartAddressMissing, Kind::Error, true, 1,
     TEXT("An address needs to defined in the J1939 configuration for line %1.")},
    {Msg::PgnHandledByStack, Kind::Error, true, 2,
     TEXT("Special PGN %1/0x%2 is handled by the J1939 stack directly and may not be included in the signal definitions.\n")},
    {Msg::SafeGroupWithoutSupport, Kind::StrongWarning, false, 2,
     TEXT("PG (%1/0x%2) shall be transmitted as SDM but SHM support is not activated.")},
    {Msg::SafeGroupHasManagedVariable, Kind::Error, true, 2,
     TEXT("PG (%1/0x%2) transmitted as SDM may not contain managed variables.")},
    {Msg::SafeGroupTypeUnsupported, Kind::Error, true, 2,
     TEXT("PG (%1/0x%2) contains unsuppported data types.")},
    {Msg::SafeGroupStructureUnsupported, Kind::Error, true, 2,
     TEXT("Structure of PG (%1/0x%2) not supported.")},
    {Msg::SafeGroupTooLong, Kind::Error, true, 2,
     TEXT("PG (%1/0x%2) transmitted as SDM may not exceed 64 bit.")},
    {Msg::TransportProtocolMissing, Kind::Error, true, 0,
     TEXT("Neither BAM nor TP.CMDT supported but PGNs with length > 64 bit defined.")},
    {Msg::TransportPacketCountZero, Kind::Error, true, 0,
     TEXT("CMDT packet count should not be 0 in J1939 configuration.")},
    {Msg::SpnVariableMissing, Kind::Error, true, 2,
     TEXT("The SPN %1 in PGN %2 needs a variable name.")},
};

#undef TEXT
// clang-format on

/// Number of different place holders of \a text.
constexpr int countPlaceHolders(const char *text)
{
    bool seen[10] = {};
    for (; *text; ++text) {
        if (text[0] == '%' && text[1] >= '1' && text[1] <= '9')
            seen[text[1] - '0'] = true;
    }
    int count = 0;
    for (const bool place : seen)
        count += place;
    return count;
}

constexpr bool kindsAreSound()
{
    for (size_t i = 0; i < std::size(kKinds); ++i) {
        if (static_cast<size_t>(kKinds[i].kind) != i)
            return false;
    }
    return std::size(kKinds) == static_cast<size_t>(Kind::Verbatim) + 1;
}

constexpr bool messagesAreSound()
{
    for (size_t i = 0; i < std::size(kMessages); ++i) {
        const MessageRow &row = kMessages[i];
        const Level level = kKinds[static_cast<size_t>(row.kind)].level;
        if (static_cast<size_t>(row.id) != i || row.arguments > 3 ||
            countPlaceHolders(row.text) != row.arguments || (row.counted && level != Level::Error))
            return false;
    }
    return std::size(kMessages) == static_cast<size_t>(Msg::SpnVariableMissing) + 1;
}

static_assert(kindsAreSound(), "rows follow the enum");
static_assert(messagesAreSound(), "rows follow the enum, place holders match, errors count only");

const KindRow &kindRow(Kind kind)
{
    return kKinds[static_cast<size_t>(kind)];
}

QString patternOf(const MessageRow &row)
{
    return QLatin1String(kindRow(row.kind).prefix) +
           QCoreApplication::translate("ModelChecker", row.text);
}

/// Without markup and outer white space.
QString plainPattern(const MessageRow &row)
{
    static const QRegularExpression tags(QStringLiteral("<[^>]*>"));
    return patternOf(row).remove(tags).trimmed();
}

/// All place holders at once, so that a "%2" in a project's text stays what it is.
QString filled(const QString &pattern, const QStringList &arguments)
{
    switch (arguments.size()) {
    case 0:
        return pattern;
    case 1:
        return pattern.arg(arguments.at(0));
    case 2:
        return pattern.arg(arguments.at(0), arguments.at(1));
    default:
        return pattern.arg(arguments.at(0), arguments.at(1), arguments.at(2));
    }
}

} // namespace

MessageRange messages()
{
    return {std::begin(kMessages), std::end(kMessages)};
}

const MessageRow &messageRow(Msg id)
{
    return kMessages[static_cast<size_t>(id)];
}

Level levelOf(const MessageRow &row)
{
    return kindRow(row.kind).level;
}

QString ruleName(Msg id)
{
    return QString::fromLatin1(QMetaEnum::fromType<Msg>().valueToKey(static_cast<int>(id)));
}

QString markedUpText(const MessageRow &row, const QStringList &arguments)
{
    QStringList lines; // a line end in a name would begin what looks like another message
    for (const QString &argument : arguments)
        lines << printableLine(argument);
    return filled(patternOf(row), lines);
}

QString plainText(const MessageRow &row, const QStringList &arguments)
{
    return filled(plainPattern(row), arguments);
}

QString ruleDescription(const MessageRow &row)
{
    // A text that begins with the place of a finding is the same without it.
    static const QRegularExpression start(QStringLiteral(
        "^((Error|Warning|Corrected|Hint|Info): *)?(Object 0x%1(:%2 |(-0?[x0-9%]+| of line "
        "%2)?: *))?"));
    static const QRegularExpression holders(
        QStringLiteral("'?(0x)?%\\d([:/](0x)?%\\d)*'?(\\.(?= |$))?"));
    QString text = plainPattern(row).remove(start);
    text.replace(0, 1, text.left(1).toUpper());
    return text.replace(holders, QStringLiteral("..."));
}

} // namespace Check
