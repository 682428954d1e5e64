// Prototypes of static indications.
#include "generators/multiproto/indicationgenerator.h"

#include "generators/codefeatures.h"
#include "generators/ctext.h"
#include "generators/generalsettings.h"
#include "generators/projectlines.h"
#include "generators/textwriter.h"

#include <algorithm>
#include <iterator>

namespace
{

/// A function that the stack calls, with the one signature that it expects.
struct IndicationRow {
    const char *setting; ///< holds the function's name
    const char *returnType;
    const char *parameters; ///< after the line, up to the end of the text line
};

// clang-format off
constexpr IndicationRow kEvents[] = {               // row order is file order
    {"fct_sdo_server_read",        "RET_T ", "BOOL_T execute, UNSIGNED8 sdoNr, UNSIGNED16 index, UNSIGNED8 subIndex);\n"},
    {"fct_sdo_server_write",       "RET_T ", "BOOL_T execute, UNSIGNED8 sdoNr, UNSIGNED16 index, UNSIGNED8 subIndex);\n"},
    {"fct_sdo_server_check_write", "RET_T ", "BOOL_T execute, UNSIGNED8 sdoNr, UNSIGNED16 index, UNSIGNED8 subIndex, const UNSIGNED8 *pData);\n"},
    {"fct_pdo",                    "void ",  "UNSIGNED16 pdoNr);\n"},
    // Deliberate: the define of this event asks for "fct_pdo_received"; held by tst_golden.
    {"fct_pdo_receive",            "void ",  "UNSIGNED16 pdoNr);\n"},
    {"fct_pdo_sync",               "void ",  "UNSIGNED16 pdoNr);\n"},
    {"fct_nmt",                    "RET_T ", "BOOL_T execute, CO_NMT_STATE_T nmtState);\n"},
    {"fct_errctrl",                "void ",  "UNSIGNED8 nodeId, CO_ERRCTRL_T errCtrlState, CO_NMT_STATE_T nmtState);\n"},
    {"fct_sync",                   "void ",  "UNSIGNED8 syncCounter);\n"},
    {"fct_sync_finished",          "void ",  "UNSIGNED8 syncCounter);\n"},
    {"fct_led_green",              "void ",  "BOOL_T ledState);\n"},
    {"fct_led_red",                "void ",  "BOOL_T ledState);\n"},
    {"fct_can",                    "void ",  "CO_CAN_STATE_T canState);\n"},
    {"fct_cfgman",                 "void ",  "CO_CFG_TRANSFER_T type, UNSIGNED8 sdoNr, UNSIGNED16 index, UNSIGNED8 sub, UNSIGNED32 reason);\n"},
    {"fct_flyma",                  "void ",  "CO_FLYMA_STATE_T state, UNSIGNED8 node, UNSIGNED8 priority);\n"},
    {"fct_sdo_client_read",        "void ",  "UNSIGNED8 sdoNr, UNSIGNED16 index, UNSIGNED8 subIndex, UNSIGNED32 size, UNSIGNED32 result);\n"},
    {"fct_sdo_client_write",       "void ",  "UNSIGNED8 sdoNr, UNSIGNED16 index, UNSIGNED8 subIndex, UNSIGNED32 result);\n"},
    {"fct_emcy",                   "RET_T ", "UNSIGNED16 errCode, UNSIGNED8 *addErrorCode);\n"},
    {"fct_emcy_consumer",          "void ",  "UNSIGNED8 node, UNSIGNED16 errCode, UNSIGNED8 errorRegister, UNSIGNED8 const *addErrorCode);\n"},
    {"fct_time",                   "void ",  "CO_TIME_T *pTime);\n"},
    {"fct_store",                  "RET_T ", "UNSIGNED8 subIndex);\n"},
    {"fct_lss",                    "void ",  "CO_LSS_SERVICE_T service, UNSIGNED16 bitrate, UNSIGNED8 *pErrCode, UNSIGNED8 *pErrSpec);\n"},
    {"fct_lss_master",             "void ",  "CO_LSS_MASTER_SERVICE_T, UNSIGNED16 errorCode, UNSIGNED8 errorSpec, UNSIGNED32 *pIdentity);\n"},
    {"fct_comm",                   "void ",  "CO_COMM_STATE_EVENT_T commEvent);\n"},
    {"fct_manager",                "void ",  "UNSIGNED8 node, CO_MANAGER_EVENT_T event);\n"},
    {"fct_mpdo",                   "void ",  "UNSIGNED16 pdoNr, UNSIGNED16 index, UNSIGNED8 subIndex);\n"},
};

constexpr IndicationRow kUsdoServer[] = {
    {"usdo_server_read_ind_function",          "RET_T ", "BOOL_T execute, UNSIGNED8 nodeId, UNSIGNED16 index, UNSIGNED8 subIndex);\n"},
    {"usdo_server_read_finished_ind_function", "void ",  "UNSIGNED8 nodeId, UNSIGNED16 index, UNSIGNED8 subIndex);\n"},
    {"usdo_server_write_ind_function",         "RET_T ", "BOOL_T execute, UNSIGNED8 nodeId, UNSIGNED16 index, UNSIGNED8 subIndex);\n"},
    {"usdo_server_ind_check_write_function",   "RET_T ", "UNSIGNED8 nodeId, UNSIGNED16 index, UNSIGNED8 subIndex, CO_CONST UNSIGNED8* pData);\n"},
    {"usdo_server_domain_write_ind_function",  "RET_T ", "UNSIGNED16 index, UNSIGNED8 subIndex, UNSIGNED32 domainBufSize, UNSIGNED32 transferSize);\n"},
    {"usdo_server_domain_read_ind_function",   "RET_T ", "UNSIGNED16 index, UNSIGNED8 subIndex, UNSIGNED32 domainBufSize, UNSIGNED32 transferSize);\n"},
};

constexpr IndicationRow kUsdoClient[] = {
    {"usdo_client_read_ind_function",         "void ",  "UNSIGNED8 nodeId, UNSIGNED16 index, UNSIGNED8 subIndex, RET_T result);\n"},
    {"usdo_client_write_ind_function",        "void ",  "UNSIGNED8 nodeId, UNSIGNED16 index, UNSIGNED8 subIndex, RET_T result);\n"},
    {"usdo_client_domain_write_ind_function", "RET_T ", "UNSIGNED8 nodeId, UNSIGNED16 index, UNSIGNED8 subIndex, UNSIGNED32 domainBufSize, UNSIGNED32 transferSize);\n"},
    {"usdo_client_domain_read_ind_function",  "RET_T ", "UNSIGNED8 nodeId, UNSIGNED16 index, UNSIGNED8 subIndex, UNSIGNED32 domainBufSize, UNSIGNED32 transferSize);\n"},
};

/// Taken for a static indication whether or not there is a USDO server.
constexpr const char *kCountsWithoutServer[] = {
    "usdo_server_read_ind_function",
    "usdo_server_write_ind_function",
    "usdo_server_domain_write_ind_function",
};
// clang-format on

template <size_t N>
bool isAnySet(const GeneralSettings &settings, const IndicationRow (&rows)[N])
{
    return std::any_of(std::begin(rows), std::end(rows), [&settings](const IndicationRow &row) {
        return settings.isSet(row.setting);
    });
}

template <size_t N>
void writeRows(TextWriter &out, const GeneralSettings &settings, const IndicationRow (&rows)[N],
               const char *lineParameter)
{
    for (const IndicationRow &row : rows) {
        if (!settings.isSet(row.setting))
            continue;
        out.raw(row.returnType);
        out.parts(CText::name(settings.freeText(row.setting)), "(");
        out.raw(lineParameter);
        out.raw(row.parameters);
    }
}

/// The macro stands in the prototypes of USDO servers only, and the V4 stack does not have it.
void writeConstMacro(TextWriter &out)
{
    out.block(R"(
#ifndef CO_CONST
#define CO_CONST const
#endif
)");
}

} // namespace

void Indications::writeHead(TextWriter &out, const QString &projectName, const QString &toolVersion)
{
    CText::writeHead(
        out, " * static indication definitions for $project$ - generated by $tool$ $version$\n",
        projectName, toolVersion);
    out.block(R"(

/* protect against multiple inclusion of the file */
#ifndef GEN_INDICATION
#define GEN_INDICATION 1

)");
}

bool Indications::staticIndisAvailable(const ObjectDataBase &store)
{
    const GeneralSettings settings(store);
    const ProjectFeatures features = readCodeFeatures(store);
    const bool countsWithoutServer =
        std::any_of(std::begin(kCountsWithoutServer), std::end(kCountsWithoutServer),
                    [&settings](const char *key) { return settings.isSet(key); });
    return isAnySet(settings, kEvents) || countsWithoutServer ||
           (features.hasUsdoServer() && isAnySet(settings, kUsdoServer)) ||
           (features.hasUsdoClient() && isAnySet(settings, kUsdoClient));
}

void Indications::writePrototypes(TextWriter &out, const ObjectDataBase &store, bool multiLine)
{
    const GeneralSettings settings(store);
    const ProjectFeatures features = readCodeFeatures(store);
    const char *lineParameter = multiLine ? "UNSIGNED8 CO_LINE, " : "";
    writeRows(out, settings, kEvents, lineParameter);
    if (features.hasUsdoServer()) {
        if (settings.isSet("usdo_server_ind_check_write_function"))
            writeConstMacro(out);
        writeRows(out, settings, kUsdoServer, lineParameter);
    }
    if (features.hasUsdoClient())
        writeRows(out, settings, kUsdoClient, lineParameter);
}

indicationgenerator::indicationgenerator() : TextFileGenerator(QStringLiteral("gen_indication.h"))
{
}

void indicationgenerator::write(TextWriter &out)
{
    Indications::writeHead(out, projectName, toolVersion);
    if (Indications::staticIndisAvailable(*database)) {
        Indications::writePrototypes(out, *database, readProjectLines(*database).multiLine);
    } else {
        out.block(R"(
/* 
   There are not any static indication functions defined.
   If there were some, they would be declared here. 
 */
)");
    }
    out.raw("\n"
            "#endif /* GEN_INDICATION*/\n");
}
