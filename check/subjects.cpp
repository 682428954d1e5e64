// What the messages of the check are about.
#include "check/subjects.h"

namespace
{

using Check::Msg;

struct ColumnRow {
    Msg id;
    const char *column;
};

struct SettingRow {
    Msg id;
    const char *store;
    const char *setting;
};

constexpr char kGeneral[] = "GeneralSettings";
constexpr char kDescription[] = "DescriptionSettings";
constexpr char kJ1939[] = "J1939Settings";

// clang-format off
constexpr ColumnRow kColumns[] = {
    {Msg::SubIndicesMissing,           "objecttype"},
    {Msg::Sub0ValueCorrected,          "defaultvalue"},
    {Msg::Sub0DefaultFlagMissing,      "defaultineds"},
    {Msg::Sub0MadeConstant,            "implementation"},
    {Msg::Sub0DefaultNotInEds,         "writedefaulttoeds"},
    {Msg::ObjectNameMissing,           "name"},
    {Msg::VariableHasSubIndices,       "objecttype"},
    {Msg::LimitCheckOff,               "limitineds"},
    {Msg::SubIndexNameMissing,         "name"},
    {Msg::VariableNameMissing,         "varname"},
    {Msg::VariableNameInvalid,         "varname"},
    {Msg::AccessTypeInvalid,           "accesstype"},
    {Msg::ConstantIsWritable,          "accesstype"},
    {Msg::OctetStringManaged,          "implementation"},
    {Msg::VisibleStringManaged,        "implementation"},
    {Msg::Utf8StringManaged,           "implementation"},
    {Msg::ValueOutOfType,              "defaultvalue"},
    {Msg::DatatypeUnknown,             "datatype"},
    {Msg::DefaultOutOfLimits,          "defaultvalue"},
    {Msg::DeviceTypeNotArray,          "objecttype"},
    {Msg::DeviceTypeNotVariable,       "objecttype"},
    {Msg::AutoStoreValueAbove1,        "defaultvalue"},
    {Msg::AutoStoreValueAbove3,        "defaultvalue"},
    {Msg::VendorIdEmpty,               "defaultvalue"},
    {Msg::VendorIdOfMaker,             "defaultvalue"},
    {Msg::ProductCodeEmpty,            "defaultvalue"},
    {Msg::RevisionNumberEmpty,         "defaultvalue"},
    {Msg::SerialNumberConstant,        "implementation"},
    {Msg::EmergencyConsumerZero,       "defaultvalue"},
    {Msg::PdoMappingAccessMixed,       "accesstype"},
    {Msg::MappedObjectMissing,         "defaultvalue"},
    {Msg::MappedObjectNotMappable,     "defaultvalue"},
    {Msg::MappedSizeTooSmall,          "defaultvalue"},
    {Msg::MappedSizeTooLarge,          "defaultvalue"},
    {Msg::RpdoAccessUnfit,             "defaultvalue"},
    {Msg::TpdoAccessUnfit,             "defaultvalue"},
    {Msg::PdoEntryCountInvalid,        "defaultvalue"},
    {Msg::PdoDisabled,                 "defaultvalue"},
    {Msg::PdoCobIdNotInEds,            "writedefaulttoeds"},
    {Msg::PdoTransmissionTypeNotInEds, "writedefaulttoeds"},
    {Msg::EventTimerTooShort,          "defaultvalue"},
    {Msg::SrdoObjectMissing,           "defaultvalue"},
    {Msg::SrdoObjectNotVariable,       "defaultvalue"},
    {Msg::SrdoObjectNotMappable,       "defaultvalue"},
    {Msg::CobIdNotPredefined,          "defaultvalue"},
    {Msg::SpnVariableMissing,          "varname"},
};

constexpr SettingRow kSettings[] = {
    {Msg::UdsServerAndClient,          kGeneral,       "udsclient_supported"},
    {Msg::AddCommonMemcpy,             "MiscSettings", "PreviousToolVersion"},
    {Msg::AddCommonMemcpyMapping,      "MiscSettings", "PreviousToolVersion"},
    {Msg::AddMemcpy,                   "MiscSettings", "PreviousToolVersion"},
    {Msg::AddMemcpyMapping,            "MiscSettings", "PreviousToolVersion"},
    {Msg::AddUdsInit,                  "MiscSettings", "PreviousToolVersion"},
    {Msg::SdoBlockSizeTooLarge,        kGeneral,       "sdo_blocktransfer_block_size"},
    {Msg::TimerIntervalMissing,        kGeneral,       "co_timer_interval"},
    {Msg::NodeIdMissing,               kGeneral,       "co_node_id"},
    {Msg::NodeIdFunctionOpensBracket,  kGeneral,       "co_node_id_fct"},
    {Msg::NodeIdFunctionClosesBracket, kGeneral,       "co_node_id_fct"},
    {Msg::ReceiveBufferInvalid,        kGeneral,       "receivebuffersize"},
    {Msg::TransmitBufferInvalid,       kGeneral,       "transmitbuffersize"},
    {Msg::MultiMasterNotPerLine,       kGeneral,       "co_ml_ms"},
    {Msg::SlaveAssignmentTooLarge,     kGeneral,       "max_slave_assignment"},
    {Msg::BitwiseMappingGranularity,   kDescription,   "Granularity"},
    {Msg::BitwiseMappingOff,           kGeneral,       "bitwise_mapping"},
    {Msg::DynamicMappingGranularity,   kDescription,   "Granularity"},
    {Msg::CobIdAdvice,                 kGeneral,       "overwrite_predef"},
    {Msg::SortedCobListWithJ1939,      kGeneral,       "sorted_coblist"},
    {Msg::GroupFilterWithoutCANopen,   kGeneral,       "drv_group_filter"},
    {Msg::AdditionalCobsMissing,       kGeneral,       "additional_cob_count"},
    {Msg::IdentityNumberMissing,       kJ1939,         "identitynumber"},
    {Msg::ManufacturerCodeMissing,     kJ1939,         "manufacturercode"},
    {Msg::ManufacturerCodeOfMaker,     kJ1939,         "manufacturercode"},
    {Msg::EcuInstanceMissing,          kJ1939,         "ecuinstance"},
    {Msg::FunctionInstanceMissing,     kJ1939,         "functioninstance"},
    {Msg::FunctionMissing,             kJ1939,         "function"},
    {Msg::VehicleSystemMissing,        kJ1939,         "vehiclesystem"},
    {Msg::VehicleInstanceMissing,      kJ1939,         "vehicleinstance"},
    {Msg::IndustryGroupMissing,        kJ1939,         "industrygroup"},
    {Msg::StartAddressMissing,         kJ1939,         "startaddress"},
    {Msg::TransportProtocolMissing,    kJ1939,         "bamsupport"},
    {Msg::TransportPacketCountZero,    kJ1939,         "cmdtpackets"},
};
// clang-format on

} // namespace

Check::Subject Check::subjectOf(Msg id)
{
    for (const ColumnRow &row : kColumns) {
        if (row.id == id)
            return {row.column};
    }
    for (const SettingRow &row : kSettings) {
        if (row.id == id)
            return {nullptr, row.store, row.setting};
    }
    return {};
}
