// The sections before the tables.
#include "generators/objdict/objdictpreamble.h"

#include "generators/ctext.h"
#include "generators/objdict/objdictdescription.h"
#include "generators/outputname.h"
#include "generators/sourcehead.h"
#include "support/implementation.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace
{

using namespace ObjDict;

constexpr quint8 kHighestLine = 31;

/// A pointer to a function of the application, written if the setting names one.
struct IndicationRow {
    const char *setting;
    const char *declaration; ///< after the constant macro
};

// clang-format off
constexpr IndicationRow kIndications[] = { // row order is file order
    {"fct_sdo_server_read", "CO_EVENT_SDO_SERVER_T coEventSdoServerReadInd = "},
    {"fct_sdo_server_write", "CO_EVENT_SDO_SERVER_T coEventSdoServerWriteInd = "},
    {"fct_sdo_server_check_write", "CO_EVENT_SDO_SERVER_CHECK_WRITE_T coEventSdoServerCheckWriteInd = "},
    {"fct_pdo", "CO_EVENT_PDO_T coEventPdoInd = "},
    {"fct_pdo_receive", "CO_EVENT_PDO_T coEventPdoRecInd = "},
    {"fct_pdo_sync", "CO_EVENT_PDO_T coEventPdoSyncInd = "},
    {"fct_nmt", "CO_EVENT_NMT_T coEventNmtInd = "},
    {"fct_errctrl", "CO_EVENT_ERRCTRL_T coEventErrCtrlInd = "},
    {"fct_sync", "CO_EVENT_SYNC_T coEventSyncInd = "},
    {"fct_sync_finished", "CO_EVENT_SYNC_FINISHED_T coEventSyncFinishedInd = "},
    {"fct_led_green", "CO_EVENT_LED_T coEventLedGreenInd = "},
    {"fct_led_red", "CO_EVENT_LED_T coEventLedRedInd = "},
    {"fct_can", "CO_EVENT_CAN_STATE_T coEventCanStateInd = "},
    {"fct_cfgman", "CO_EVENT_CFG_MANAGER_T coEventCfgManInd = "},
    {"fct_flyma", "CO_EVENT_FLYMA_T coEventFlyMaInd = "},
    {"fct_sdo_client_read", "CO_EVENT_SDO_CLIENT_READ_T coEventSdoClientReadInd = "},
    {"fct_sdo_client_write", "CO_EVENT_SDO_CLIENT_WRITE_T coEventSdoClientWriteInd = "},
    {"fct_emcy", "CO_EVENT_EMCY_T coEventEmcyInd = "},
    {"fct_emcy_consumer", "CO_EVENT_EMCY_CONS_T coEventEmcyConsumerInd = "},
    {"fct_time", "CO_EVENT_TIME_T coEventTimeInd = "},
    {"fct_store", "CO_EVENT_STORE_T coEventStoreInd = "},
    {"fct_lss", "CO_EVENT_LSS_T coEventLssInd = "},
    {"fct_lss_master", "CO_EVENT_LSS_MASTER_T coEventLssMasterInd = "},
    {"fct_comm", "CO_EVENT_COMM_T coEventCommInd = "},
    {"fct_manager", "CO_EVENT_MANAGER_BOOTUP_T coEventManagerInd = "},
    {"fct_mpdo", "CO_EVENT_MPDO_T coEventMPdoInd = "},
};

constexpr IndicationRow kUsdoServerIndications[] = {
    {"usdo_server_read_ind_function", "CO_EVENT_USDO_SERVER_T coEventUsdoServerReadInd = "},
    {"usdo_server_read_finished_ind_function", "CO_EVENT_USDO_SERVER_FINISHED_T coEventUsdoServerReadFinishedInd = "},
    {"usdo_server_write_ind_function", "CO_EVENT_USDO_SERVER_T coEventUsdoServerWriteInd = "},
    {"usdo_server_ind_check_write_function", "CO_EVENT_USDO_SERVER_CHECK_WRITE_T coEventUsdoServerCheckWriteInd = "},
    {"usdo_server_domain_read_ind_function", "CO_EVENT_USDO_SERVER_DOMAIN_READ_T coEventUsdoServerDomainReadInd = "},
    {"usdo_server_domain_write_ind_function", "CO_EVENT_USDO_SERVER_DOMAIN_WRITE_T coEventUsdoServerDomainWriteInd = "},
};

constexpr IndicationRow kUsdoClientIndications[] = {
    {"usdo_client_read_ind_function", "CO_EVENT_USDO_CLIENT_READ_T coEventUsdoClientReadInd = "},
    {"usdo_client_write_ind_function", "CO_EVENT_USDO_CLIENT_WRITE_T coEventUsdoClientWriteInd = "},
    {"usdo_client_domain_read_ind_function", "CO_EVENT_USDO_CLIENT_DOMAIN_TRANSFER_T coEventUsdoClientDomainReadInd = "},
    {"usdo_client_domain_write_ind_function", "CO_EVENT_USDO_CLIENT_DOMAIN_TRANSFER_T coEventUsdoClientDomainWriteInd = "},
};
// clang-format on

template <std::size_t Count>
void writePointers(Context &context, const IndicationRow (&rows)[Count])
{
    for (const IndicationRow &row : rows) {
        const QString function = CText::name(context.settings.freeText(row.setting));
        if (function.isEmpty())
            continue;
        context.out.parts(context.dialect.constMacro, " ", row.declaration, function, ";\n");
    }
}

void writeUdsIncludes(Context &context)
{
    if (context.features.hasUds())
        context.out.raw("#include <iso_tp.h>\n"
                        "#include <uds_uds.h>\n");
}

bool namesApplicationVariables(const Context &context)
{
    return std::any_of(context.form.lines.begin(), context.form.lines.end(), [&](quint8 line) {
        return !context.store
                    .getSubsByProperty(line, "implementation",
                                       QString::number(Implementation::kApplicationVariable))
                    .isEmpty();
    });
}

void writeSdoServerIncludes(Context &context)
{
    context.out.raw(context.features.namesCoreHeaders() ? "#include <core_datatype.h>\n"
                                                        : "#include <co_datatype.h>\n");
    context.out.raw("#include <co_odaccess.h>\n"
                    "#include <j1939_cam11_cam21.h>\n");
    writeUdsIncludes(context);
    if (namesApplicationVariables(context))
        context.out.raw("#include <gen_extern_decl.h>\n");
}

/// The prototypes of a device with one bus speed, or of one that may use CAN FD.
struct PrototypeTexts {
    const char *common;
    const char *ofLine; ///< with $line$ for its number
    const char *byNumber;
};

constexpr PrototypeTexts kClassicCan = {
    "RET_T coCanOpenStackInit_common(CO_EVENT_STORE_T pLoadFunction);\n",
    "RET_T coCanOpenStackInit_line$line$(UNSIGNED8 canLine, CO_INIT_OPTION_T *pCoOptions);\n",
    "RET_T coCanOpenStackInit_line(UNSIGNED8 canLine, CO_INIT_OPTION_T *pCoOptions);\n"};

constexpr PrototypeTexts kCanFd = {
    "RET_T coCanOpenStackInit_common(CO_EVENT_STORE_T pLoadFunction, BOOL_T *pModes);\n",
    "RET_T coCanOpenStackInit_line$line$(UNSIGNED8 canLine, CO_INIT_OPTION_T *pCoOptions, BOOL_T "
    "*pModes);\n",
    "RET_T coCanOpenStackInit_line(UNSIGNED8 canLine, CO_INIT_OPTION_T *pCoOptions, BOOL_T "
    "*pModes);\n"};

} // namespace

bool ObjDict::needsUserHeader(const GeneralSettings &settings, const ProjectFeatures &features)
{
    qint64 wanted = settings.decimal("overwrite_predef");
    if (wanted == 0) {
        for (quint8 line = 0; line <= kHighestLine; ++line)
            wanted += settings.decimalOfLine("overwrite_predef", line);
    }
    return wanted + features.stringDefaults > 0;
}

void ObjDict::writeUserHeader(TextWriter &out, const HeadFacts &facts)
{
    out.block(R"(
/*
 * gen_user.h for $project$ - generated by $tool$ $version$
 */

/* protect against multiple inclusion of the file */
#ifndef GEN_USER_H
#define GEN_USER_H 1

#include <gen_define.h>
#include <co_canopen.h>

/* prototype for function to overwrite predefined connection set */
RET_T userOverwriteCobIdSettings(void);

/* prototype for function to set default values of strings */
RET_T userOverwriteStringDefaultvalues(void);

#endif /* GEN_USER */
)",
              {{"project", CText::comment(facts.projectName)},
               {"tool", QCoreApplication::applicationName()},
               {"version", facts.toolVersion}});
}

void ObjDict::writeIncludes(Context &context, bool withStandardLibrary)
{
    TextWriter &out = context.out;
    if (withStandardLibrary)
        out.raw("#include <stdlib.h>\n\n");
    out.raw("#include <gen_define.h>\n");
    if (context.form.sdoServerOnly) {
        writeSdoServerIncludes(context);
    } else {
        out.raw("#include <co_canopen.h>\n");
        writeUdsIncludes(context);
        out.raw("#include <gen_indication.h>\n");
        if (context.features.hasGeneratedVariables())
            out.raw("#include <gen_extern_decl.h>\n");
    }
    if (needsUserHeader(context.settings, context.features))
        out.raw("#include <gen_user.h>\n");
    out.raw("\n");
}

void ObjDict::writeStartPrototypes(Context &context)
{
    if (!context.form.multiLine || context.form.sdoServerOnly)
        return;
    const PrototypeTexts &texts = context.form.canFd ? kCanFd : kClassicCan;
    TextWriter &out = context.out;
    out.raw("/* these functions may be used by the application to initialize only a sub set of all "
            "lines.*/\n");
    out.raw(texts.common);
    for (const quint8 line : context.form.servedLines)
        out.fill(texts.ofLine, {{"line", line}});
    out.raw("RET_T coCanOpenStackInit_finish(void);\n");
    out.raw(texts.byNumber);
}

void ObjDict::writeApplicationHeaders(Context &context)
{
    TextWriter &out = context.out;
    if (QCoreApplication::applicationName() == QLatin1String("EnergyBus Morvane"))
        out.block(R"(
/* EnergyBus header files */
#include <eb_energybus.h>

)");
    writeHeaderList(context, "#include \"$header$\"\n");
}

void ObjDict::writeHeaderList(Context &context, const char *include)
{
    TextWriter &out = context.out;
    const QStringList headers = OutputName::headers(context.settings.freeText("applicationheader"));
    if (headers.isEmpty())
        return;
    out.raw("/* application header file(s) */\n");
    for (const QString &header : headers)
        out.fill(include, {{"header", header}});
    out.raw("\n");
}

void ObjDict::writeMemorySpecifiers(Context &context)
{
    SourceHead::writeConstMacro(context.out, context.dialect);
    writeStorageMacros(context);
    SourceHead::writeWatchdogMacro(context.out, context.dialect);
}

void ObjDict::writeStorageMacros(Context &context)
{
    context.out.block(R"(
/* definition of compiler-specific storage classes */
#ifndef $storage$
#define $storage$
#endif
#ifndef $constStorage$
#define $constStorage$
#endif

)",
                      {{"storage", context.dialect.storageMacro},
                       {"constStorage", context.dialect.constStorageMacro}});
}

void ObjDict::writeIndicationPointers(Context &context)
{
    context.out.raw("/* definition of static indication function pointers */\n");
    // Deliberate: the SDO server of a J1939 device has no header that declares the events' types,
    // held by tst_golden.
    if (context.form.sdoServerOnly)
        return;
    writePointers(context, kIndications);
    if (context.features.hasUsdoServer())
        writePointers(context, kUsdoServerIndications);
    if (context.features.hasUsdoClient())
        writePointers(context, kUsdoClientIndications);
}

void ObjDict::writeObjectCounts(Context &context)
{
    const TableRows rows = countRows(context);
    context.out.block(R"(

/* number of objects */
#define CO_OD_ASSIGN_CNT $assignments$u
#define CO_OBJ_DESC_CNT $descriptions$u
)",
                      {{"assignments", rows.assignments}, {"descriptions", rows.descriptions}});
}
