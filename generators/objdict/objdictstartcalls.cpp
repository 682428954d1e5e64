// Start-up calls of the single services.
#include "generators/objdict/objdictstartcalls.h"

#include "generators/commonstart.h"
#include "generators/initstructversions.h"
#include "generators/objdict/objdictpdo.h"
#include "generators/projectlines.h"
#include "generators/udsstart.h"
#include "support/implementation.h"
#include "support/objectindex.h"

namespace ObjDict
{

namespace
{

/// A service that an object brings, whose call has no argument but the line.
struct ObjectService {
    quint16 index;
    const char *comment;
    const char *call;
};

// clang-format off
constexpr ObjectService kEmcyProducer = {ObjectIndex::kEmergencyCobId,  "    /* initialize emergency */\n",                           "    retVal = coEmcyProducerInit("};
constexpr ObjectService kSrd          = {ObjectIndex::kRequestSdo,      "\n    /* initialize SDO Requesting Device (SRD) */\n",       "    retVal = coSrdInit("};
constexpr ObjectService kGuarding     = {ObjectIndex::kSlaveAssignment, "\n    /* initialization of node guarding master*/\n",        "    retVal = coGuardingInit("};

// Between the services that all forms start in one order.
constexpr WriteService kCommonServices[] = {
    initErrorControl, initEmcyProducer, initSync, initEmcyConsumer, initTime, initPdos, initSrd,
};
// clang-format on

constexpr const char *kGfcCall = "    retVal = coGfcInit(";

/// Up to the bracket and the line, without the other arguments.
void openCall(Context &context, const CallForm &form, const char *call, bool hasArguments)
{
    context.out.raw(call);
    if (form.namesLine)
        context.out.raw(hasArguments ? "canLine, " : "canLine");
}

void writeObjectService(Context &context, const CallForm &form, const ObjectService &service)
{
    if (!context.store.existIndex(form.line, service.index))
        return;
    context.out.raw(service.comment);
    writeCheckedCall(context, form, service.call);
}

/// Subindices without the count in subindex 0; 0 for an object that is not there.
int countEntries(const Context &context, quint8 line, quint16 index)
{
    return qMax(0, context.store.getSubIndices(line, index, 0).size() - 1);
}

} // namespace

void addRetValHandling(Context &context, int indent)
{
    const QString blanks(indent, QLatin1Char(' '));
    context.out.block(R"(
$blanks$    if (retVal != RET_OK) {
$blanks$        return(retVal);
$blanks$    }
$blanks$    $watchdog$
)",
                      {{"blanks", blanks}, {"watchdog", context.dialect.watchdogMacro}});
}

void writeCheckedCall(Context &context, const CallForm &form, const char *call,
                      const QString &arguments, int indent)
{
    openCall(context, form, call, !arguments.isEmpty());
    context.out.raw(arguments);
    context.out.raw(");\n");
    addRetValHandling(context, indent);
}

void initFurtherSdoServers(Context &context, const CallForm &form)
{
    const QList<quint16> servers =
        context.store.getIndices(form.line, ObjectRanges::kFurtherSdoServers);
    for (const quint16 index : servers)
        writeCheckedCall(context, form, "    retVal = coSdoServerInit(",
                         QStringLiteral("%1u").arg(ObjectRanges::kSdoServers.numberOf(index)));
}

void initUsdoClient(Context &context, const CallForm &form)
{
    if (!context.form.canFd || context.settings.byPrefix("usdo_client_cnt") == 0)
        return;
    context.out.raw("    /* initialize sdo clients(s) */\n");
    writeCheckedCall(context, form, "    retVal = coUsdoClientInit(");
}

void initSdoClients(Context &context, const CallForm &form)
{
    if (context.store.existIndex(form.line, ObjectRanges::kSdoClients.first))
        context.out.raw("    /* initialize sdo clients(s) */\n");
    initUsdoClient(context, form);
    const QList<quint16> clients = context.store.getIndices(form.line, ObjectRanges::kSdoClients);
    for (const quint16 index : clients)
        writeCheckedCall(context, form, "    retVal = coSdoClientInit(",
                         QStringLiteral("%1u").arg(ObjectRanges::kSdoClients.numberOf(index)));
}

void initErrorControl(Context &context, const CallForm &form)
{
    const bool hasHeartbeat = context.store.existIndex(form.line, ObjectIndex::kHeartbeatProducer);
    if (!hasHeartbeat && !context.store.existIndex(form.line, ObjectIndex::kGuardTime))
        return;
    const QString consumers = QStringLiteral(", %1u").arg(
        countEntries(context, form.line, ObjectIndex::kHeartbeatConsumer));
    if (hasHeartbeat) {
        const QString time = constantArgument(context, form.line, ObjectIndex::kHeartbeatProducer,
                                              0, ValueClass::U16);
        context.out.raw("    /* initialize error control */\n");
        writeCheckedCall(context, form, "    retVal = coErrorCtrlInit(", time + consumers);
    } else {
        context.out.raw("    /* initialize error control (Node Guarding) */\n");
        writeCheckedCall(context, form, "    retVal = coErrorCtrlInit(",
                         QLatin1Char('0') + consumers);
    }
}

void initEmcyProducer(Context &context, const CallForm &form)
{
    writeObjectService(context, form, kEmcyProducer);
}

void initSync(Context &context, const CallForm &form)
{
    if (!context.store.existIndex(form.line, ObjectIndex::kSyncCobId))
        return;
    context.out.raw("    /* initialize sync */\n");
    writeCheckedCall(
        context, form, "    retVal = coSyncInit(",
        constantArgument(context, form.line, ObjectIndex::kSyncCobId, 0, ValueClass::U32));
}

void initEmcyConsumer(Context &context, const CallForm &form)
{
    if (!context.store.existIndex(form.line, ObjectIndex::kEmergencyConsumer))
        return;
    context.out.raw("\n"
                    "    /* initialize EMCY consumer */\n");
    const auto consumers =
        static_cast<quint8>(countEntries(context, form.line, ObjectIndex::kEmergencyConsumer));
    writeCheckedCall(context, form, "    retVal = coEmcyConsumerInit(",
                     QStringLiteral("%1u").arg(consumers));
}

void initTime(Context &context, const CallForm &form)
{
    if (!context.store.existIndex(form.line, ObjectIndex::kTimeCobId))
        return;
    constexpr quint32 kProducer = 1u << 30; // CiA 301, 7.5.2.16
    constexpr quint32 kConsumer = 1u << 31;
    const quint32 cobId = Numbers::toUIntByPrefix(
        context.store.getSubIndexValue(form.line, ObjectIndex::kTimeCobId, 0));
    const auto word = [cobId](quint32 bit) {
        return QLatin1String(cobId & bit ? "CO_TRUE" : "CO_FALSE");
    };
    context.out.raw("\n"
                    "    /* initialize Time service */\n");
    writeCheckedCall(context, form, "    retVal = coTimeInit(",
                     QStringLiteral("%1, %2").arg(word(kProducer), word(kConsumer)));
}

void initPdos(Context &context, const CallForm &form)
{
    const QList<quint16> tpdos = context.store.getIndices(form.line, ObjectRanges::kTpdoParameters);
    for (const quint16 index : tpdos) {
        initTpdo(context, form.line, index);
        addRetValHandling(context, 0);
    }
    const QList<quint16> rpdos = context.store.getIndices(form.line, ObjectRanges::kRpdoParameters);
    for (const quint16 index : rpdos) {
        initRpdo(context, form.line, index);
        addRetValHandling(context, 0);
    }
}

void initSrd(Context &context, const CallForm &form)
{
    writeObjectService(context, form, kSrd);
}

void initCommonServices(Context &context, const CallForm &form)
{
    for (const WriteService service : kCommonServices)
        service(context, form);
}

void initGfc(Context &context, const CallForm &form)
{
    if (!context.store.existIndex(form.line, ObjectIndex::kGlobalFailsafe))
        return;
    context.out.raw("\n"
                    "    /* initialize  GFC Producer - Consumer */\n");
    writeCheckedCall(context, form, kGfcCall, QStringLiteral("CO_TRUE, CO_TRUE"));
}

void initGfcOfLine(Context &context, const CallForm &form)
{
    if (!context.store.existIndex(form.line, ObjectIndex::kGlobalFailsafe))
        return;
    context.out.raw("\n"
                    "    /* initialize  GFC (Producer, Consumer) */\n");
    writeCheckedCall(context, form, kGfcCall, QStringLiteral("CO_TRUE, CO_TRUE"));
}

void initSrdos(Context &context, const CallForm &form)
{
    const QList<quint16> srdos = context.store.getIndices(form.line, ObjectRanges::kSrdoParameters);
    for (const quint16 index : srdos) {
        context.out.raw("\n"
                        "    /* initialize SRDO  */\n");
        writeCheckedCall(context, form, "    retVal = coSrdoInit(",
                         QStringLiteral("%1u").arg(ObjectRanges::kSrdoParameters.numberOf(index)));
    }
}

void initIsoTp(Context &context, const CallForm &form)
{
    if (quint8(context.settings.byPrefix("isotp_connection_cnt")) == 0)
        return;
    context.out.raw("\n"
                    "    /* initialize ISO-TP */\n");
    writeCheckedCall(context, form, "    retVal = isoTpInit(");
}

void initIdNego(Context &context, const CallForm &form)
{
    if (!context.features.hasIdNegotiation())
        return;
    context.out.raw("\n"
                    "    /* initialization of ID negotiation module */\n");
    writeCheckedCall(context, form, "    coIdNegoInit(");
}

void initGuarding(Context &context, const CallForm &form)
{
    writeObjectService(context, form, kGuarding);
}

void initLed(Context &context, const CallForm &form)
{
    if (context.settings.decimal("event_led") <= 0)
        return;
    context.out.raw("    /* initialization of LED module */\n");
    openCall(context, form, "    coLedInit(", false);
    context.out.raw(");\n\n");
}

void writeLoadParameterBlock(Context &context, const ReturnWords &words)
{
    TextWriter &out = context.out;
    out.block(R"(

    /* initialize load parameter function */
#if defined(CO_EVENT_DYNAMIC_STORE) || defined(CO_EVENT_PROFILE_STORE)
    retVal = coEventRegister_LOAD_PARA(pLoadFunction);
    if (retVal != RET_OK) {
$value$    }
#else
)",
              {{"value", words.value}});
    // Deliberate: with a function that is bound at compile time the parameter is not looked at, and
    // compilers warn about it; held by tst_golden.
    if (context.settings.isSet("fct_store"))
        out.raw("    (void) pLoadFunction;\n");
    else
        out.parts("    if (pLoadFunction != NULL) {\n", words.invalid, "    }\n");
    out.raw("#endif /* CO_EVENT_DYNAMIC_STORE || CO_EVENT_PROFILE_STORE */\n");
}

void writeServiceInitVars(Context &context, const char *start, const char *versionEnd)
{
    TextWriter &out = context.out;
    out.raw(start);
    if (hasNewInitStructure(context)) {
        const quint32 version = initStructVersion(InitStruct::CANopen, context.store);
        out.parts("       ", version, versionEnd);
    }
    // The macros come from the definitions header. The old structure holds the mode of the line as
    // well. Deliberate: so in both forms, since a member without a value makes compilers warn; held
    // by tst_golden.
    const bool holdsMode = context.form.canFd && !hasNewInitStructure(context);
    out.block(R"(
       { CO_OBJECT_COUNTS },
       { CO_TXPDO_COUNTS },
       { CO_RXPDO_COUNTS },
#ifdef CO_SRDO_SUPPORTED
       { CO_SRDO_COUNTS },
#endif /* CO_SRDO_SUPPORTED */
       { CO_SSDO_COUNTS },
       { CO_CSDO_COUNTS },
       { CO_ERR_CTRL_COUNTS },
       { CO_ERR_HIST_COUNTS },
       { CO_ACT_ERR_HIST_COUNTS },
       { CO_EMCY_CONS_COUNTS },
#ifdef CO_NETWORK_ROUTING_CNT
       { CO_NETWORK_ROUTING_COUNTS }, 
#endif /* CO_NETWORK_ROUTING_CNT */
       { CO_ASSIGN_COUNTS },
       { CO_GUARDING_COUNTS },
       { CO_NODE_IDS }, 
       { CO_NODE_ID_FUNCTIONS }$mode$
    };
)",
              {{"mode", holdsMode ? ", \n       { CO_TRUE }" : " "}});
}

void writeCommonInitVars(Context &context)
{
    if (hasNewInitStructure(context))
        ::writeCommonInitVars(context.out, context.dialect, context.store);
}

void writeUdsStructures(Context &context)
{
    if (!context.features.hasUds())
        return;
    UdsStart::writeStructures(context.out, context.store, readProjectLines(context.store).numbers);
    context.out.raw("\n");
}

void writeUdsCommonCall(Context &context)
{
    if (!context.features.hasUds())
        return;
    UdsStart::writeCommonCall(context.out);
    context.out.raw("\n");
}

void writeUdsLineCall(Context &context, const CallForm &form)
{
    if (!context.features.hasUds())
        return;
    UdsStart::writeLineCall(context.out, form.line, form.namesLine);
    context.out.raw("\n");
}

bool hasNewInitStructure(const Context &context)
{
    return context.features.hasNewInitStructure();
}

int countAssignRows(const Context &context, quint8 line)
{
    int rows = 0;
    const QList<quint16> indices = context.store.getIndices(line, ObjectRanges::kAll);
    for (const quint16 index : indices) {
        ObjectDataBase::SUBINDEX_DATA_T data;
        const bool hasData = context.store.getSubIndexData(line, index, 0, data);
        rows += hasData && data.implementation == Implementation::kVirtualObject ? 0 : 1;
    }
    return rows;
}

int countSubIndices(const Context &context, quint8 line)
{
    int count = 0;
    const QList<quint16> indices = context.store.getIndices(line, ObjectRanges::kAll);
    for (const quint16 index : indices)
        count += context.store.getSubIndices(line, index, 0).size();
    return count;
}

} // namespace ObjDict
