// CANopen services.
#include "generators/defines/servicedefines.h"

#include "generators/defines/definecounts.h"
#include "generators/defines/definelists.h"
#include "generators/defines/servicefacts.h"
#include "generators/defines/shareddefines.h"
#include "generators/rowtables.h"

#include <QStringList>

#include <algorithm>
#include <numeric>

namespace
{

using Defines::LineServices;
using Facts = Defines::ServiceFacts;

/// A number a line.
struct ListRow {
    const char *start;
    quint32 LineServices::*value;
};

/// A number, or 1 for a service that is used. Written if it is above zero.
struct ServiceRow {
    const char *start;
    quint32 (*value)(const Facts &);
};

/// A function that the project names; the text is written if it does.
struct FunctionRow {
    const char *setting;
    const char *line;
};

// clang-format off
constexpr ListRow kCommunicationLists[] = { // row order is file order, here and below
    {"#define CO_TXPDO_COUNTS\t",      &LineServices::tpdos},
    {"#define CO_RXPDO_COUNTS\t",      &LineServices::rpdos},
    {"#define CO_SSDO_COUNTS\t",       &LineServices::listedServers},
    {"#define CO_CSDO_COUNTS\t",       &LineServices::listedClients},
    {"#define CO_ASSIGN_COUNTS\t",     &LineServices::assignments},
    {"#define CO_MAX_ASSIGN_COUNTS\t", &LineServices::maxAssignments},
};

constexpr ListRow kErrorLists[] = {
    {"#define CO_ERR_HIST_COUNTS\t",     &LineServices::errorHistory},
    {"#define CO_ACT_ERR_HIST_COUNTS\t", &LineServices::activeErrors},
    {"#define CO_EMCY_CONS_COUNTS\t",    &LineServices::emcyConsumers},
};

/// 1 if the setting, as a decimal number, is above zero, or just one; else 0.
quint32 isOn(const Facts &f, const char *setting) { return f.settings.decimal(setting) > 0; }
quint32 isOne(const Facts &f, const char *setting) { return f.settings.decimal(setting) == 1; }

constexpr ServiceRow kManagementServices[] = {
    {"#define CO_NMT_MASTER\t",              [](const Facts &f) { return quint32(f.hasMaster); }},
    {"#define CO_FLYING_MASTER_SUPPORTED\t", [](const Facts &f) { return quint32(f.hasFlyingMaster); }},
    {"#define CO_LSS_MASTER_SUPPORTED\t",    [](const Facts &f) { return quint32(f.features.hasLss() && f.hasMaster); }},
    {"#define CO_LSS_SUPPORTED\t",           [](const Facts &f) -> quint32 {
         return f.features.hasLss() && !(f.hasMaster && f.lines.size() >= 2); }},
    {"#define CO_LSS_INQUIRY_SERVICES\t",    [](const Facts &f) -> quint32 {
         return f.features.hasLss() && isOn(f, "lss_inquiry_supported"); }},
    {"#define CO_IDNEGO_SUPPORTED\t",        [](const Facts &f) { return quint32(f.features.hasIdNegotiation()); }},
    {"#define CO_GFC_SUPPORTED\t",           [](const Facts &f) { return quint32(f.hasGfc); }},
    {"#define CO_DYNAMIC_OBJDIC\t",          [](const Facts &f) { return isOn(f, "dynod"); }},
    {"#define CO_EVENT_CSDO_DOMAIN_WRITE\t", [](const Facts &f) { return isOn(f, "csdo_write_special"); }},
    {"#define CO_EMCY_NETWORKING\t",         [](const Facts &f) { return isOn(f, "emcy_routing"); }},
    {"#define CO_SDO_NETWORKING\t",          [](const Facts &f) { return isOn(f, "sdo_routing"); }},
};

constexpr FunctionRow kUsdoServerFunctions[] = {
    {"usdo_server_read_ind_function",          "#define CO_EVENT_STATIC_USDO_SERVER_READ 1u\n"},
    {"usdo_server_read_finished_ind_function", "#define CO_EVENT_STATIC_SUSDO_READ_FINISHED 1u\n"},
    {"usdo_server_write_ind_function",         "#define CO_EVENT_STATIC_USDO_SERVER_WRITE 1u\n"},
    {"usdo_server_ind_check_write_function",   "#define CO_EVENT_STATIC_USDO_CHECK_WRITE 1u\n"},
    {"usdo_server_domain_write_ind_function",  "#define CO_EVENT_STATIC_SUSDO_DOMAIN_WRITE 1u\n"},
    {"usdo_server_domain_read_ind_function",   "#define CO_EVENT_STATIC_SUSDO_DOMAIN_READ 1u\n"},
};

constexpr FunctionRow kUsdoClientFunctions[] = {
    {"usdo_client_read_ind_function",         "#define CO_EVENT_STATIC_CUSDO_CLIENT_READ 1u\n"},
    {"usdo_client_write_ind_function",        "#define CO_EVENT_STATIC_CUSDO_CLIENT_WRITE 1u\n"},
    {"usdo_client_domain_write_ind_function", "#define CO_EVENT_STATIC_CUSDO_DOMAIN_WRITE 1u\n"},
    {"usdo_client_domain_read_ind_function",  "#define CO_EVENT_STATIC_CUSDO_DOMAIN_READ 1u\n"},
};

constexpr ServiceRow kMultiplexedPdos[] = {
    {"#define CO_MPDO_PRODUCER\t", [](const Facts &f) { return quint32(f.isMpdoProducer); }},
    {"#define CO_MPDO_CONSUMER\t", [](const Facts &f) { return quint32(f.isMpdoConsumer); }},
    {"#define CO_MPDO_SAM\t",      [](const Facts &f) { return quint32(f.hasScannerMpdo); }},
    {"#define CO_MPDO_DAM\t",      [](const Facts &f) { return quint32(f.hasDestinationMpdo); }},
};

constexpr ServiceRow kMappingServices[] = {
    {"#define CO_TR_PDO_DYN_MAP_ENTRIES\t",  [](const Facts &f) { return f.dynamicTpdoEntries; }},
    {"#define CO_REC_PDO_DYN_MAP_ENTRIES\t", [](const Facts &f) { return f.dynamicRpdoEntries; }},
    {"#define CO_PDO_BIT_MAPPING\t",         [](const Facts &f) { return quint32(f.features.hasBitwiseMapping() && f.maxMapEntries > 0); }},
    {"#define CO_HB_CONSUMER_CNT ",          [](const Facts &f) { return f.hbConsumers; }},
    {"#define CO_SYNC_SUPPORTED\t",          [](const Facts &f) { return quint32(f.hasSync); }},
};

constexpr ServiceRow kNodeServices[] = {
    {"#define CO_CFG_MANAGER\t",    [](const Facts &f) { return isOn(f, "config_manager"); }},
    {"#define CO_EMCY_PRODUCER\t",  [](const Facts &f) { return quint32(f.hasEmcyProducer); }},
    {"#define CO_SRD_SUPPORTED\t",  [](const Facts &f) { return quint32(f.hasSrd); }},
    {"#define CO_GUARDING_SLAVE\t", [](const Facts &f) { return quint32(f.hasGuarding); }},
};

constexpr ServiceRow kErrorServices[] = {
    {"#define CO_EMCY_CONSUMER_CNT ",       [](const Facts &f) { return f.emcyConsumers; }},
    {"#define CO_EMCY_ERROR_HISTORY ",      [](const Facts &f) { return f.errorHistory; }},
    {"#define CO_EMCY_ACTIVE_ERROR_LIST\t", [](const Facts &f) { return f.features.hasCanFd() ? f.sum(&LineServices::activeErrors) : 0; }},
    {"#define CO_TIME_SUPPORTED\t",         [](const Facts &f) { return quint32(f.hasTime); }},
};

constexpr ServiceRow kLimitSwitches[] = {
    {"#define CO_CONFIG_LIMIT_CHECK\t\t",   [](const Facts &f) { return quint32(f.features.hasLimitCheck()); }},
};

constexpr ServiceRow kLastServices[] = {
    {"#define CO_SSDO_DOMAIN_CNT\t",        [](const Facts &f) { return f.settings.byPrefix("event_ssdo_domain_counter") & 0xFFFF; }},
    {"#define CO_SDO_SPLIT_INDICATION\t\t", [](const Facts &f) { return quint32(f.settings.byPrefix("sdo_split") > 0); }},
    // Deliberate: a second, equal define for a manager with such objects; held by tst_definesections.
    {"#define CO_CFG_MANAGER\t",            [](const Facts &f) { return quint32(f.hasConfiguration); }},
    {"#define CO_SELF_STARTING_DEVICE\t",   [](const Facts &f) { return quint32(f.isSelfStarting); }},
};

constexpr ServiceRow kTypeSwitches[] = {
    {"#define CO_EXTENDED_DATA_TYPES\t\t",  [](const Facts &f) { return quint32(f.hasExtendedTypes); }},
    {"#define CO_UTF8_DATA_TYPE\t\t",       [](const Facts &f) { return quint32(f.hasUtf8); }},
};
// clang-format on

static_assert(RowTables::settingsAreUnique(kUsdoServerFunctions));
static_assert(RowTables::settingsAreUnique(kUsdoClientFunctions));

template <size_t N>
void writeLists(DefineContext &context, const Facts &facts, const ListRow (&rows)[N])
{
    for (const ListRow &row : rows)
        context.out.defineList(row.start, facts.perLine(row.value));
}

template <size_t N>
void writeServices(DefineContext &context, const Facts &facts, const ServiceRow (&rows)[N])
{
    for (const ServiceRow &row : rows) {
        if (const quint32 value = row.value(facts))
            context.out.define(row.start, value);
    }
}

template <size_t N>
void writeFunctions(DefineContext &context, const FunctionRow (&rows)[N])
{
    for (const FunctionRow &row : rows) {
        if (context.settings.isSet(row.setting))
            context.out.raw(row.line);
    }
}

void writeObjectCounts(DefineContext &context, const Facts &facts)
{
    context.raw({"/* Number of objects per line */\n"});
    for (const LineServices &line : facts.lines)
        context.out.fill("#define CO_OBJECTS_LINE_$number$_CNT\t$objects$u\n",
                         {{"number", line.number}, {"objects", line.objects}});
    context.out.defineList("#define CO_OBJECT_COUNTS\t", facts.perLine(&LineServices::objects));
    if (!context.multiProtocol)
        context.defineList({"#define CO_COB_COUNTS\t", "#define CORE_COB_COUNTS\t"},
                           facts.perLine(&LineServices::cobs));
    writeLists(context, facts, kCommunicationLists);
    context.raw({"#define CO_GUARDING_COUNTS\tCO_MAX_ASSIGN_COUNTS\n"});
    context.out.defineList("#define CO_ERR_CTRL_COUNTS\t",
                           facts.perLine(&LineServices::hbConsumers));
    const QVector<quint32> groups = facts.perLine(&LineServices::storeGroups);
    context.out.define("#define CO_STORE_CNT_MAX\t",
                       *std::max_element(groups.begin(), groups.end()));
    writeLists(context, facts, kErrorLists);
}

void writeNodeIds(DefineContext &context)
{
    const QList<quint8> &lines = context.lines.numbers;
    QString ids = context.settings.trimmed("co_node_id");
    if (QString(ids).remove(QLatin1Char(',')).isEmpty())
        ids.clear();
    context.raw({"#define CO_NODE_IDS\t"});
    context.out.parts(Defines::lineList(ids, lines, QStringLiteral("0u")), "\n");

    const QString empty = QStringLiteral("NULL");
    // Deliberate: the length tells an empty list from a filled one, held by tst_definesections.
    if (lines.size() >= context.settings.trimmed("co_node_id_fct").size()) {
        QStringList functions;
        while (functions.size() < lines.size())
            functions << empty;
        context.raw({"#define CO_NODE_ID_FUNCTIONS "});
        context.out.parts(functions.join(QLatin1String(", ")), "\n");
    } else {
        context.raw({"#define CO_NODE_ID_FUNCTIONS\t"});
        context.out.parts(Defines::lineList(context.settings.text("co_node_id_fct"), lines, empty),
                          "\n\n");
    }

    const QString network = context.settings.text("co_network_id");
    if (!network.isEmpty())
        context.out.fill("#define CO_NETWORK_ID\t$network$\n", {{"network", network}});
    context.raw({"\n"});
}

void writeLineSettings(DefineContext &context, const Facts &facts)
{
    context.raw({"/* Line Settings */\n"});
    if (context.lines.multiLine)
        Defines::writeMultiLine(context);
    context.raw({"#define CANOPEN_SUPPORTED\t1u\n"});
    Defines::writeBufferCounts(context, false);
    writeObjectCounts(context, facts);
    writeNodeIds(context);
}

void writeFunctionGroups(DefineContext &context, quint32 mask, int firstNumber)
{
    for (int bit = 0; bit < 32; ++bit) {
        if (mask >> bit & 1)
            context.out.fill("#define CO_P447_VDFG_$number$ \t1u\n",
                             {{"number", firstNumber + bit}});
    }
}

void writeProfile(DefineContext &context, const Facts &facts)
{
    if (facts.profile == 0)
        return;
    context.out.fill("#define CO_PROFILE_$profile$\t1u\n", {{"profile", facts.profile}});
    if (facts.profile == 454)
        context.raw({"#define CO_EVENT_PROFILE_STORE\t1u\n"});
    if (facts.profile == 447) {
        writeFunctionGroups(context, facts.vdfgs[0], 1);
        writeFunctionGroups(context, facts.vdfgs[1], 33);
    }
}

/// The tables of a gateway need the counts whether or not SDOs are routed.
void writeRouting(DefineContext &context, const Facts &facts)
{
    QVector<quint32> routes = facts.perLine(&LineServices::routes);
    if (facts.sum(&LineServices::routes) == 0) {
        if (!isOn(facts, "sdo_routing"))
            return;
        routes.fill(1);
    }
    context.out.defineList("#define CO_NETWORK_ROUTING_COUNTS\t", routes);
    context.out.define("#define CO_NETWORK_ROUTING_CNT\t",
                       std::accumulate(routes.begin(), routes.end(), 0U));
}

void writeUsdo(DefineContext &context)
{
    const GeneralSettings &settings = context.settings;
    context.raw({"#define CO_USDO_SUPPORTED\t1u\n"});
    if (context.features.hasUsdoServer()) {
        context.define({"#define CO_USDO_SERVER_MAX_CON\t"}, settings.byPrefix("usdo_server_cnt"));
        const quint32 domainSize = settings.byPrefix("usdo_server_domain_write_ind_size");
        if (domainSize != 0)
            context.define({"#define CO_SUSDO_DOMAIN_CNT\t"}, domainSize);
        writeFunctions(context, kUsdoServerFunctions);
    }
    if (context.features.hasUsdoClient()) {
        context.raw({"#define CO_USDO_CLIENT_SUPPORTED\t1u\n"});
        context.define({"#define CO_USDO_CLIENT_MAX_CON\t"}, settings.byPrefix("usdo_client_cnt"));
        writeFunctions(context, kUsdoClientFunctions);
    }
}

void writeSrdos(DefineContext &context, const Facts &facts)
{
    const quint32 srdos = facts.sum(&LineServices::srdos);
    if (srdos == 0)
        return;
    context.raw({"#define CO_SRDO_SUPPORTED\t1u\n"});
    context.out.defineList("#define CO_SRDO_COUNTS\t", facts.perLine(&LineServices::srdos));
    context.out.define("#define CO_SRDO_CNT\t", srdos);
}

void writePdos(DefineContext &context, const Facts &facts)
{
    context.out.define("#define CO_PDO_TRANSMIT_CNT\t", facts.sum(&LineServices::tpdoMappings));
    context.out.define("#define CO_PDO_RECEIVE_CNT\t", facts.sum(&LineServices::rpdoMappings));
    if (facts.hasEventTimer)
        context.raw({"#define CO_PDO_REC_TIMER_SUPPORTED\t1u\n"});
    writeSrdos(context, facts);
    writeServices(context, facts, kMultiplexedPdos);
    context.out.define("#define CO_MAX_MAP_ENTRIES\t", facts.maxMapEntries);
    writeServices(context, facts, kMappingServices);
}

void writeBootupManager(DefineContext &context, const Facts &facts)
{
    if (!isOn(facts, "bootup_manager"))
        return;
    context.raw({"#define CO_BOOTUP_MANAGER\t1u\n"});
    context.out.define("#define CO_SLAVE_ASSIGNMENT_CNT\t", facts.sum(&LineServices::assignments));
    context.out.define("#define CO_MAX_SLAVE_ASSIGNMENT_CNT\t", facts.maxAssignments);
    if (facts.maxAssignments != 0)
        context.raw({"#define CO_GUARDING_CNT CO_MAX_SLAVE_ASSIGNMENT_CNT\n"});
}

void writeStore(DefineContext &context, const Facts &facts)
{
    if (!facts.hasStore)
        return;
    if (isOne(facts, "1010autostore_by_application"))
        context.raw({"#define CO_AUTO_STORE_HANDLED_BY_APPLICATION\t1u\n"});
    context.raw({"#define CO_STORE_SUPPORTED\t1u\n"});
    context.out.defineList("#define CO_STORE_NVS_CNT\t", facts.perLine(&LineServices::nvSubs));
}

void writeSdoBlock(DefineContext &context)
{
    const GeneralSettings &settings = context.settings;
    if (settings.decimal("sdo_blocktransfer_supported") != 1)
        return;
    const quint32 least = Numbers::toUIntDecimal(settings.text("sdo_blocktransfer_min_data"));
    context.raw({"#define CO_SDO_BLOCK\t\t1u\n"});
    context.define({"#define CO_SDO_BLOCK_SIZE\t"},
                   Numbers::toUIntDecimal(settings.text("sdo_blocktransfer_block_size")));
    context.define({"#define CO_SDO_BLOCK_MIN_SIZE\t"}, least != 0 ? least : 64);
    if (settings.decimal("sdo_blocktransfer_crc_supported") == 1)
        context.raw({"#define CO_SDO_BLOCK_CRC\t1u\n"});
}

void writeSdoQueue(DefineContext &context)
{
    const GeneralSettings &settings = context.settings;
    if (settings.decimal("sdo_client_queue_supported") != 1)
        return;
    context.raw({"#define CO_SDO_QUEUE\t\t1u\n"});
    context.define({"#define CO_SDO_QUEUE_LEN\t"},
                   Numbers::toUIntDecimal(settings.text("sdo_client_queue_size")));
    if (settings.decimal("sdo_client_queue_internal_access_supported") == 1)
        context.raw({"#define CO_SDOQUEUE_INTERNAL_ACCESS\t\t1u\n"});
}

void writeCobTotal(DefineContext &context)
{
    if (!context.multiProtocol) {
        context.raw({"/* number of used COB objects */\n"});
        context.define({"#define CO_COB_CNT\t", "#define CORE_COB_CNT\t"},
                       Defines::getCobCount(context, Defines::kAllLines));
        context.raw({"\n"});
    }
    context.raw({"\n"});
}

bool hasCANopenLine(const DefineContext &context)
{
    const QList<quint8> &lines = context.lines.numbers;
    return std::any_of(lines.begin(), lines.end(), [&context](quint8 line) {
        return carriesCANopen(readLineType(context.store, line));
    });
}

} // namespace

void Defines::generateServiceDefines(DefineContext &context)
{
    if (!hasCANopenLine(context))
        return;
    context.written.tableSwitches = true;
    const Facts facts = readServiceFacts(context);
    writeLineSettings(context, facts);
    context.raw({"/* Definition of numbers of CANopen services */\n"});
    writeProfile(context, facts);
    writeServices(context, facts, kManagementServices);
    writeRouting(context, facts);
    writeSdoServerCount(context, facts.sdoServers);
    writeSdoClientCount(context, facts.sdoClients);
    if (context.features.hasCanFd())
        writeUsdo(context);
    writePdos(context, facts);
    writeBootupManager(context, facts);
    writeServices(context, facts, kNodeServices);
    writeStore(context, facts);
    writeServices(context, facts, kErrorServices);
    writeSdoBlock(context);
    writeSdoQueue(context);
    writeServices(context, facts, kLimitSwitches);
    writeServices(context, facts, kLastServices);
    writeServices(context, facts, kTypeSwitches);
    if (facts.hasInhibit)
        writeInhibit(context);
    writeCobTotal(context);
}

void Defines::generateTableSwitches(DefineContext &context)
{
    if (context.written.tableSwitches)
        return;
    const Facts facts = readServiceFacts(context);
    writeServices(context, facts, kLimitSwitches);
    writeServices(context, facts, kTypeSwitches);
    context.written.tableSwitches = true;
}
