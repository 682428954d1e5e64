// The settings that decide the features of a project.
#include "store/projectfeatures.h"

#include "store/objectdatabase.h"
#include "support/numbers.h"

namespace
{

enum class Base { Decimal, ByPrefix };

using ReadSetting = QString (ObjectDataBase::*)(const QString &key) const;
constexpr ReadSetting kGeneral = &ObjectDataBase::getGeneralSettingsValue;
constexpr ReadSetting kJ1939 = &ObjectDataBase::getJ1939SettingsValue;

struct NumberRow {
    qint64 ProjectFeatures::*number;
    ReadSetting read;
    const char *key;
    Base base = Base::Decimal;
};

// clang-format off
constexpr NumberRow kNumbers[] = {
    {&ProjectFeatures::canFd,            kGeneral, "canfd_supported"},
    {&ProjectFeatures::udsServer,        kGeneral, "udsserver_supported"},
    {&ProjectFeatures::udsClient,        kGeneral, "udsclient_supported"},
    {&ProjectFeatures::isoTp,            kGeneral, "isotp_supported"},
    {&ProjectFeatures::lss,              kGeneral, "lss_supported"},
    {&ProjectFeatures::idNegotiation,    kGeneral, "idnego_supported"},
    {&ProjectFeatures::usdoServer,       kGeneral, "usdo_server_enabled"},
    {&ProjectFeatures::usdoClient,       kGeneral, "usdo_client_enabled"},
    {&ProjectFeatures::limitCheck,       kGeneral, "limit_check", Base::ByPrefix},
    {&ProjectFeatures::sortedCobs,       kGeneral, "sorted_coblist"},
    {&ProjectFeatures::bitwiseMapping,   kGeneral, "bitwise_mapping"},
    {&ProjectFeatures::bitwiseMappingByPrefix, kGeneral, "bitwise_mapping", Base::ByPrefix},
    {&ProjectFeatures::groupFilter,      kGeneral, "drv_group_filter"},
    {&ProjectFeatures::groupFilterByPrefix, kGeneral, "drv_group_filter", Base::ByPrefix},
    {&ProjectFeatures::staticValues,     kGeneral, "init_static_variables"},
    {&ProjectFeatures::stringDefaults,   kGeneral, "generate_string_defaults"},
    {&ProjectFeatures::generatedVariables, kGeneral, "generate_variables"},
    {&ProjectFeatures::newInitStructure, kGeneral, "new_init_structure"},
    {&ProjectFeatures::sdoServers,       kJ1939,   "cia510serversupport", Base::ByPrefix},
    {&ProjectFeatures::sdoClients,       kJ1939,   "cia510clientsupport", Base::ByPrefix},
    {&ProjectFeatures::bam,              kJ1939,   "bamsupport"},
    {&ProjectFeatures::cmdt,             kJ1939,   "cmdtsupport"},
    {&ProjectFeatures::safetyGroups,     kJ1939,   "safetysupport"},
    {&ProjectFeatures::dynamicGroups,    kJ1939,   "dynsupport"},
    {&ProjectFeatures::adapter,          kJ1939,   "j1939adapter"},
};
// clang-format on

} // namespace

ProjectFeatures readProjectFeatures(const ObjectDataBase &store, ReadAs readAs)
{
    const auto textOf = [&](ReadSetting read, const char *key) {
        const QString text = (store.*read)(QLatin1String(key));
        return readAs ? readAs(text) : text;
    };
    ProjectFeatures features;
    for (const NumberRow &row : kNumbers) {
        const QString text = textOf(row.read, row.key);
        features.*row.number = row.base == Base::ByPrefix ? qint64(Numbers::toUIntByPrefix(text))
                                                          : qint64(Numbers::toIntDecimal(text));
    }
    features.coreHeaders = textOf(kGeneral, "use_core_headers");
    features.multiLine = store.getMiscSettingsValue(QStringLiteral("generateML"));
    features.descriptionForm = store.getMiscSettingsValue(QStringLiteral("description_form"));
    return features;
}
