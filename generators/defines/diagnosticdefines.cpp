// ISO-TP and UDS.
#include "generators/defines/diagnosticdefines.h"

#include "generators/defines/eventdefines.h"
#include "generators/defines/shareddefines.h"
#include "generators/initstructversions.h"
#include "generators/rowtables.h"
#include "support/udssiddefinitions.h"

#include <numeric>

namespace
{

struct Facts {
    GeneralSettings settings;
    ProjectFeatures features;
    quint8 version = 0;            ///< of the structures of UDS
    QVector<quint32> isoTpClients; ///< connections by line, as those below
    QVector<quint32> isoTpServers;
    QVector<quint32> udsClients;
    QSet<quint8> services; ///< active on some line

    explicit Facts(const DefineContext &context)
        : settings(context.settings), features(context.features)
    {
    }

    bool hasIsoTp() const
    {
        return features.hasUds() || features.hasIsoTp() ||
               Defines::isoTpConnectionCount(settings) != 0;
    }
};

/// Written with the number of the setting, when that is above zero.
struct CountRow {
    const char *setting;
    const char *start;
};

/// Written when the setting, as a number, is above zero.
struct SwitchRow {
    const char *setting;
    const char *line;
};

struct ServiceRow {
    UDS::SID sid;
    const char *line;
};

// clang-format off
constexpr SwitchRow kIsoTpSwitches[] = { // row order is file order, here and below
    {"isotp_dyn_client_ind",       "#define ISOTP_DYN_CLIENT_IND\t1u\n"},
    {"isotp_dyn_client_txack_ind", "#define ISOTP_DYN_CLIENT_TXACK_IND\t1u\n"},
    {"isotp_dyn_server_ind",       "#define ISOTP_DYN_SERVER_IND\t1u\n"},
    {"isotp_dyn_split_ind",        "#define ISOTP_DYN_SPLIT_IND\t1u\n"},
};

constexpr CountRow kUdsCounts[] = {
    {"uds_seedkey_length",  "#define UDS_SEEDKEY_LENGTH\t"},
    {"uds_session_timeout", "#define UDS_SESSION_TIMEOUT\t"},
};

constexpr SwitchRow kUdsChecks[] = {
    {"uds_only_appl_session_check",  "#define UDS_ONLY_APPL_SESSION_CHECK\t1u\n"},
    {"uds_only_appl_security_check", "#define UDS_ONLY_APPL_SECURITY_CHECK\t1u\n"},
};

constexpr ServiceRow kServices[] = {
    {UDS::SID::DiagnosticSessionControl,       "#define UDS_SERVICE_DIAGNOSTIC_SESSION_CONTROL\t1u\n"},
    {UDS::SID::ECUReset,                       "#define UDS_SERVICE_ECU_RESET\t1u\n"},
    {UDS::SID::ClearDiagnosticInformation,     "#define UDS_SERVICE_CLEAR_DIAGNOSTIC_INFORMATION\t1u\n"},
    {UDS::SID::ReadDTCInformation,             "#define UDS_SERVICE_READ_DTC_INFORMATION\t1u\n"},
    {UDS::SID::ReadDataByIdentifier,           "#define UDS_SERVICE_READ_DATA_BY_IDENTIFIER\t1u\n"},
    {UDS::SID::ReadMemoryByAddress,            "#define UDS_SERVICE_READ_MEMORY_BY_ADDRESS\t1u\n"},
    {UDS::SID::SecurityAccess,                 "#define UDS_SERVICE_SECURITY_ACCESS\t1u\n"},
    {UDS::SID::CommunicationControl,           "#define UDS_SERVICE_COMMUNICATION_CONTROL\t1u\n"},
    {UDS::SID::WriteDataByIdentifier,          "#define UDS_SERVICE_WRITE_DATA_BY_IDENTIFIER\t1u\n"},
    {UDS::SID::InputOutputControlByIdentifier, "#define UDS_SERVICE_INPUT_OUTPUT_CONTROL_BY_IDENTIFIER\t1u\n"},
    {UDS::SID::RoutineControl,                 "#define UDS_SERVICE_ROUTINE_CONTROL\t1u\n"},
    {UDS::SID::RequestDownload,                "#define UDS_SERVICE_REQUEST_DOWNLOAD\t1u\n"},
    {UDS::SID::RequestUpload,                  "#define UDS_SERVICE_REQUEST_UPLOAD\t1u\n"},
    {UDS::SID::TransferData,                   "#define UDS_SERVICE_TRANSFER_DATA\t1u\n"},
    {UDS::SID::RequestTransferExit,            "#define UDS_SERVICE_REQUEST_TRANSFER_EXIT\t1u\n"},
    {UDS::SID::WriteMemoryByAddress,           "#define UDS_SERVICE_WRITE_MEMORY_BY_ADDRESS\t1u\n"},
    {UDS::SID::TesterPresent,                  "#define UDS_SERVICE_TESTER_PRESENT\t1u\n"},
};
// clang-format on

static_assert(RowTables::settingsAreUnique(kIsoTpSwitches));
static_assert(RowTables::settingsAreUnique(kUdsCounts));
static_assert(RowTables::settingsAreUnique(kUdsChecks));

Facts readFacts(const DefineContext &context)
{
    Facts facts(context);
    facts.version = initStructVersion(InitStruct::Uds, context.store);
    for (const quint8 line : context.lines.numbers) {
        const auto count = [&facts, line](const char *setting) {
            return Numbers::toUIntByPrefix(facts.settings.ofLine(setting, line));
        };
        facts.isoTpClients << count("isotp_client_con");
        facts.isoTpServers << count("isotp_server_con");
        facts.udsClients << count("uds_client_cnt");
        for (const ServiceRow &row : kServices) {
            const auto sid = static_cast<quint8>(row.sid);
            if (context.store.isUDSServiceActive(line, sid))
                facts.services << sid;
        }
    }
    return facts;
}

quint32 sum(const QVector<quint32> &perLine)
{
    return std::accumulate(perLine.begin(), perLine.end(), 0U);
}

template <size_t N>
void writeSwitches(DefineContext &context, const SwitchRow (&rows)[N])
{
    for (const SwitchRow &row : rows) {
        if (context.settings.decimal(row.setting) > 0)
            context.out.raw(row.line);
    }
}

void writeIsoTpSection(DefineContext &context, const Facts &facts)
{
    TextWriter &out = context.out;
    Defines::writeHeading(context, "/* ISO-TP Defines */\n");
    Defines::writeIsoTp(context);
    out.defineList("#define ISOTP_CLIENT_COUNTS\t", facts.isoTpClients);
    out.defineList("#define ISOTP_SERVER_COUNTS\t", facts.isoTpServers);
    out.define("#define ISOTP_CLIENT_CONNECTION_CNT\t", sum(facts.isoTpClients));
    out.define("#define ISOTP_SERVER_CONNECTION_CNT\t", sum(facts.isoTpServers));
    writeSwitches(context, kIsoTpSwitches);
    Defines::writeIsoTpSlots(context);
    out.raw("\n");
}

void writeUdsSection(DefineContext &context, const Facts &facts)
{
    TextWriter &out = context.out;
    out.raw("/* UDS Defines */\n");
    if (facts.features.hasUdsServer())
        out.raw("#define UDS_SERVER_SUPPORTED\t1u\n");
    if (facts.features.hasUdsClient()) {
        out.raw("#define UDS_CLIENT_SUPPORTED\t1u\n");
        out.defineList("#define UDS_CLIENT_COUNTS\t", facts.udsClients);
    }
    for (const CountRow &row : kUdsCounts) {
        if (const quint32 value = context.settings.byPrefix(row.setting))
            out.define(row.start, value);
    }
    writeSwitches(context, kUdsChecks);
    if (facts.features.hasUdsServer())
        out.define("#define UDS_SERVER_VERSION\t", facts.version);
    for (const ServiceRow &row : kServices) {
        if (facts.services.contains(static_cast<quint8>(row.sid)))
            out.raw(row.line);
    }
    out.raw("\n");
}

} // namespace

void Defines::generateISOTP_UDS_Defines(DefineContext &context)
{
    const Facts facts = readFacts(context);
    if (facts.hasIsoTp())
        writeIsoTpSection(context, facts);
    if (facts.features.hasUds())
        writeUdsSection(context, facts);
}
