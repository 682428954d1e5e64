// Static and dynamic events.
#include "generators/defines/eventdefines.h"

#include "generators/defines/shareddefines.h"
#include "generators/rowtables.h"

#include <array>

namespace
{

/// Written when one of the settings names a function.
struct FunctionRow {
    std::array<const char *, 3> anyOf; ///< null after the last
    const char *line;
};

/// Written with the number of the setting, when that is above zero.
struct SlotRow {
    const char *setting;
    const char *start;
};

// clang-format off
constexpr FunctionRow kStaticEvents[] = { // row order is file order, here and below
    {{"fct_sdo_server_read"}, "#define CO_EVENT_STATIC_SDO_SERVER_READ\t1u\n"},
    {{"fct_sdo_server_write"}, "#define CO_EVENT_STATIC_SDO_SERVER_WRITE\t1u\n"},
    {{"fct_sdo_server_check_write"}, "#define CO_EVENT_STATIC_SDO_SERVER_CHECK_WRITE\t1u\n"},
    {{"fct_pdo", "fct_pdo_received", "fct_pdo_sync"}, "#define CO_EVENT_STATIC_PDO\t1u\n"},
    {{"fct_nmt"}, "#define CO_EVENT_STATIC_NMT\t1u\n"},
    {{"fct_errctrl"}, "#define CO_EVENT_STATIC_ERRCTRL\t1u\n"},
    {{"fct_sync"}, "#define CO_EVENT_STATIC_SYNC\t1u\n"},
    {{"fct_finished"}, "#define CO_EVENT_STATIC_FINISHED\t1u\n"},
    {{"fct_led_green", "fct_led_red"}, "#define CO_EVENT_STATIC_LED\t1u\n"},
    {{"fct_can"}, "#define CO_EVENT_STATIC_CAN\t1u\n"},
    {{"fct_cfgman"}, "#define CO_EVENT_STATIC_CFG_MAN\t1u\n"},
    {{"fct_sdo_client_read"}, "#define CO_EVENT_STATIC_SDO_CLIENT_READ\t1u\n"},
    {{"fct_sdo_client_write"}, "#define CO_EVENT_STATIC_SDO_CLIENT_WRITE\t1u\n"},
    {{"fct_emcy"}, "#define CO_EVENT_STATIC_EMCY\t1u\n"},
    {{"fct_emcy_consumer"}, "#define CO_EVENT_STATIC_EMCY_CONSUMER\t1u\n"},
    {{"fct_time"}, "#define CO_EVENT_STATIC_TIME\t1u\n"},
    {{"fct_store"}, "#define CO_EVENT_STATIC_STORE\t1u\n"},
    {{"fct_srd"}, "#define CO_EVENT_STATIC_SRD\t1u\n"},
    {{"fct_sync_finished"}, "#define CO_EVENT_STATIC_SYNC_FINISHED\t1u\n"},
    {{"fct_lss", "fct_lss_master"}, "#define CO_EVENT_STATIC_LSS\t1u\n"},
    {{"fct_flyma"}, "#define CO_EVENT_STATIC_FLYMA\t1u\n"},
    {{"fct_manager"}, "#define CO_EVENT_STATIC_MANAGER\t1u\n"},
    {{"fct_mpdo"}, "#define CO_EVENT_STATIC_MPDO\t1u\n"},
};

constexpr SlotRow kUsdoSlots[] = { // CAN FD
    {"usdo_server_ind_read_cnt", "#define CO_EVENT_DYNAMIC_USDO_SERVER_READ\t"},
    {"usdo_server_ind_read_finished_cnt", "#define CO_EVENT_DYNAMIC_SUSDO_READ_FINISHED\t"},
    {"usdo_server_ind_write_cnt", "#define CO_EVENT_DYNAMIC_USDO_SERVER_WRITE\t"},
    {"usdo_server_ind_check_write_cnt", "#define CO_EVENT_DYNAMIC_USDO_SERVER_CHECK_WRITE\t"},
    {"usdo_server_ind_domain_write_cnt", "#define CO_EVENT_DYNAMIC_SUSDO_DOMAIN_WRITE\t"},
    {"usdo_server_ind_domain_read_cnt", "#define CO_EVENT_DYNAMIC_SUSDO_DOMAIN_READ\t"},
    {"usdo_client_ind_read_cnt", "#define CO_EVENT_DYNAMIC_USDO_CLIENT_READ\t"},
    {"usdo_client_ind_write_cnt", "#define CO_EVENT_DYNAMIC_USDO_CLIENT_WRITE\t"},
    {"usdo_client_ind_domain_read_cnt", "#define CO_EVENT_DYNAMIC_CUSDO_DOMAIN_READ\t"},
    {"usdo_client_ind_domain_write_cnt", "#define CO_EVENT_DYNAMIC_CUSDO_DOMAIN_WRITE\t"},
};

constexpr SlotRow kSlotsBeforeCan[] = {
    {"event_sdo_server_read", "#define CO_EVENT_DYNAMIC_SDO_SERVER_READ\t"},
    {"event_sdo_server_write", "#define CO_EVENT_DYNAMIC_SDO_SERVER_WRITE\t"},
    {"event_sdo_server_check_write", "#define CO_EVENT_DYNAMIC_SDO_SERVER_CHECK_WRITE\t"},
    {"event_pdo", "#define CO_EVENT_DYNAMIC_PDO\t"},
    {"event_pdo_update", "#define CO_EVENT_DYNAMIC_PDO_UPDATE\t"},
    {"event_nmt", "#define CO_EVENT_DYNAMIC_NMT\t"},
    {"event_errctrl", "#define CO_EVENT_DYNAMIC_ERRCTRL\t"},
    {"event_sync", "#define CO_EVENT_DYNAMIC_SYNC\t"},
    {"event_sync_finished", "#define CO_EVENT_DYNAMIC_SYNC_FINISHED\t"},
    {"event_finished", "#define CO_EVENT_DYNAMIC_FINISHED\t"},
    {"event_led", "#define CO_EVENT_DYNAMIC_LED\t"},
    {"event_cfg", "#define CO_EVENT_DYNAMIC_CFG_MAN\t"},
    {"event_flyma", "#define CO_EVENT_DYNAMIC_FLYMA\t"},
    {"event_sdorouter", "#define CO_EVENT_DYNAMIC_NETWORK_SDOCLIENT_USER\t"},
};

constexpr SlotRow kSlotsAfterCan[] = {
    {"event_sdo_client_read", "#define CO_EVENT_DYNAMIC_SDO_CLIENT_READ\t"},
    {"event_sdo_client_write", "#define CO_EVENT_DYNAMIC_SDO_CLIENT_WRITE\t"},
    {"event_emcy", "#define CO_EVENT_DYNAMIC_EMCY\t"},
    {"event_emcy_consumer", "#define CO_EVENT_DYNAMIC_EMCY_CONSUMER\t"},
    {"event_time", "#define CO_EVENT_DYNAMIC_TIME\t"},
    {"event_store", "#define CO_EVENT_DYNAMIC_STORE\t"},
    {"event_srd", "#define CO_EVENT_DYNAMIC_SRD\t"},
    {"event_lss", "#define CO_EVENT_DYNAMIC_LSS\t"},
    {"event_idnego", "#define CO_EVENT_DYNAMIC_IDNEGO\t"},
    {"event_manager", "#define CO_EVENT_DYNAMIC_MANAGER\t"},
    {"event_mpdo", "#define CO_EVENT_DYNAMIC_MPDO\t"},
    {"event_gfc", "#define CO_EVENT_DYNAMIC_GFC\t"},
    {"object_changed_event", "#define CO_EVENT_DYNAMIC_OBJECT_CHANGED\t"},
    {"event_ssdo_domain_write", "#define CO_EVENT_DYNAMIC_SSDO_DOMAIN_WRITE\t"},
    {"event_ssdo_domain_read", "#define CO_EVENT_DYNAMIC_SSDO_DOMAIN_READ\t"},
};

constexpr SlotRow kIsoTpSlots[] = { // read by prefix, in 8 bits
    {"isotp_server_event", "#define ISOTP_EVENT_DYNAMIC_SERVER\t"},
    {"isotp_client_event", "#define ISOTP_EVENT_DYNAMIC_CLIENT\t"},
};
// clang-format on

static_assert(RowTables::settingsAreUnique(kUsdoSlots));
static_assert(RowTables::settingsAreUnique(kSlotsBeforeCan));
static_assert(RowTables::settingsAreUnique(kSlotsAfterCan));

void writeStaticEvents(DefineContext &context)
{
    for (const FunctionRow &row : kStaticEvents) {
        bool isSet = false;
        for (const char *setting : row.anyOf)
            isSet = isSet || (setting && context.settings.isSet(setting));
        if (isSet)
            context.out.raw(row.line);
    }
}

void writeSleepMode(DefineContext &context)
{
    const qint32 mode = context.settings.decimal("sleep_mode_selection");
    if (mode <= 0)
        return;
    context.raw({"#define CO_EVENT_DYNAMIC_SLEEP\t1u\n"});
    if (mode == 1)
        context.raw({"#define CO_SLEEP_447\t1u\n"});
    if (mode == 2)
        context.raw({"#define CO_SLEEP_454\t1u\n"});
    context.define({"#define CO_SLEEP_WAITTIME\t"},
                   Numbers::toUIntDecimal(context.settings.text("sleep_wait_time")));
}

void writeSlot(DefineContext &context, const SlotRow &row, quint32 count)
{
    if (context.written.eventSlots.contains(row.setting))
        return;
    context.out.define(row.start, count);
    context.written.eventSlots.insert(row.setting);
}

template <size_t N>
void writeSlots(DefineContext &context, const SlotRow (&rows)[N])
{
    for (const SlotRow &row : rows) {
        const qint32 count = context.settings.decimal(row.setting);
        if (count > 0)
            writeSlot(context, row, quint32(count));
    }
}

template <size_t N>
void writeSlotOf(DefineContext &context, const char *setting, const SlotRow (&rows)[N])
{
    for (const SlotRow &row : rows) {
        if (RowTables::isSameText(row.setting, setting))
            writeSlot(context, row, 1);
    }
}

/// A setting that is missing or not a number leaves dynamic events on.
bool hasDynamicEvents(const GeneralSettings &settings)
{
    bool isNumber = false;
    const qint32 enabled = Numbers::toIntDecimal(settings.text("enable_dynamic"), &isNumber);
    return !isNumber || enabled != 0;
}

} // namespace

void Defines::generateEventDefines(DefineContext &context)
{
    writeStaticEvents(context);
    writeSleepMode(context);
    if (!hasDynamicEvents(context.settings))
        return;
    context.raw({"/* Definition of number of call-back functions for each service*/\n"});
    if (context.features.hasCanFd())
        writeSlots(context, kUsdoSlots);
    writeSlots(context, kSlotsBeforeCan);
    writeCanEvents(context, context.settings.decimal("event_can"));
    writeSlots(context, kSlotsAfterCan);
    writeIsoTpSlots(context);
    context.raw({"\n"});
}

void Defines::writeIsoTpSlots(DefineContext &context)
{
    if (!hasDynamicEvents(context.settings))
        return;
    for (const SlotRow &row : kIsoTpSlots) {
        const quint8 count = static_cast<quint8>(context.settings.byPrefix(row.setting));
        if (count != 0)
            writeSlot(context, row, count);
    }
}

void Defines::reserveEventSlot(DefineContext &context, const char *setting)
{
    writeSlotOf(context, setting, kSlotsBeforeCan);
    writeSlotOf(context, setting, kSlotsAfterCan);
}
