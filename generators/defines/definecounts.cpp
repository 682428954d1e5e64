// Counts of message objects and of table rows.
#include "generators/defines/definecounts.h"

#include "generators/j1939settings.h"
#include "store/linetype.h"
#include "support/linelist.h"
#include "support/objectindex.h"
#include "support/parametergroups.h"

namespace
{

constexpr quint32 kFlyingMasterBit = 0x20;

using Defines::countIndices;
using Defines::countSubs;

quint16 cobsOfSdos(const ObjectDataBase &store, quint8 line)
{
    const quint16 servers = countIndices(store, line, ObjectRanges::kSdoServers);
    // Without objects for it, a device still has its default server (CiA 301, 7.2.4.2.5).
    const quint16 serverCobs =
        servers ? 2 * servers : (store.existIndex(line, ObjectIndex::kDeviceType) ? 2 : 0);
    return serverCobs + 2 * countIndices(store, line, ObjectRanges::kSdoClients);
}

quint16 cobsOfHeartbeat(const DefineContext &context, quint8 line)
{
    const quint16 subs = countSubs(context.store, line, ObjectIndex::kHeartbeatConsumer, 0);
    if (subs <= 1)
        return 0;
    return context.settings.decimal("only_one_hb_buffer") > 0 ? 1 : subs - 1;
}

quint16 cobsOfEmergency(const ObjectDataBase &store, quint8 line)
{
    const quint16 consumers = countSubs(store, line, ObjectIndex::kEmergencyConsumer, 0);
    return store.existIndex(line, ObjectIndex::kEmergencyCobId) +
           (consumers > 1 ? consumers - 1 : 0);
}

quint16 cobsOfSlaves(const DefineContext &context, quint8 line)
{
    if (!context.store.existIndex(line, ObjectIndex::kSlaveAssignment))
        return 0;
    const qint32 most = context.settings.decimal("max_slave_assignment");
    return static_cast<quint16>(
        most ? most : countSubs(context.store, line, ObjectIndex::kSlaveAssignment, 1));
}

quint16 cobsOfSleepMode(const GeneralSettings &settings, quint8 line)
{
    switch (settings.decimal("sleep_mode_selection")) {
    case 1:
        return settings.decimalOfLine("nmtmaster", line) != 0 ? 16 : 2;
    case 2:
        return 3;
    default:
        return 0;
    }
}

quint16 additionalCobs(const GeneralSettings &settings, quint8 line)
{
    const QString setting = settings.text("additional_cob_count");
    if (!LineList::isList(setting))
        return settings.byPrefix("additional_cob_count")
                   ? static_cast<quint16>(settings.decimal("additional_cob_count"))
                   : 0;
    return static_cast<quint8>(Numbers::toIntDecimal(LineList::element(setting, line)));
}

/// Of ISO-TP and UDS, which a project of several protocols counts by itself.
quint16 cobsOfTransport(const DefineContext &context, quint8 line)
{
    const GeneralSettings &settings = context.settings;
    quint16 cobs = 0;
    if (context.features.hasIsoTp())
        cobs += static_cast<quint8>(Defines::isoTpCobs(settings, line));
    quint8 uds = context.features.hasUdsServer() ? 6 : 0;
    if (context.features.hasUdsClient())
        uds += 3 * Numbers::toUIntByPrefix(settings.ofLine("uds_client_cnt", 0));
    return cobs + uds;
}

quint16 cobsOfLine(const DefineContext &context, quint8 line)
{
    const ObjectDataBase &store = context.store;
    const GeneralSettings &settings = context.settings;
    const auto has = [&store, line](quint16 index) { return store.existIndex(line, index); };

    quint16 cobs = 0;
    if (context.features.hasCanFd())
        cobs += settings.byPrefix("usdo_client_cnt") ? 4 : 2;
    cobs += has(ObjectIndex::kDeviceType) ? 2 : 0; // NMT and error control
    cobs += cobsOfEmergency(store, line);
    cobs += cobsOfSdos(store, line);
    cobs += has(ObjectIndex::kGlobalFailsafe) ? 2 : 0;
    cobs += countIndices(store, line, ObjectRanges::kTpdoMappings) +
            countIndices(store, line, ObjectRanges::kRpdoMappings);
    cobs += has(ObjectIndex::kSyncCobId);
    cobs += cobsOfHeartbeat(context, line);
    cobs += has(ObjectIndex::kTimeCobId) ? 2 : 0;
    cobs += context.features.hasLss() ? 2 : 0;
    cobs += context.features.hasIdNegotiation() ? 2 : 0;
    cobs += cobsOfSlaves(context, line);
    cobs += cobsOfSleepMode(settings, line);
    cobs += has(ObjectIndex::kRequestSdo);
    cobs += 2 * countIndices(store, line, ObjectRanges::kSrdoParameterPlaces);
    cobs += additionalCobs(settings, line);
    cobs += Defines::hasFlyingMaster(store, line) ? 10 : 0;
    if (!context.multiProtocol)
        cobs += cobsOfTransport(context, line);
    return cobs;
}

template <size_t N>
quint16 countSet(const J1939Settings &settings, const QString &keyFormat,
                 const quint8 (&numbers)[N])
{
    quint16 count = 0;
    for (const quint8 number : numbers)
        count += Numbers::toIntDecimal(settings.text(keyFormat.arg(number))) > 0;
    return count;
}

/// Diagnostic messages of SAE J1939-73, of the device and as a tool.
quint16 cobsOfDiagnostics(const J1939Settings &settings)
{
    static constexpr quint8 kMessages[] = {7, 13, 14, 16, 17, 18, 22, 23, 57, 34, 36, 37, 39};
    static constexpr quint8 kToolMessages[] = {1,  2,  7,  13, 14, 16, 17, 18,
                                               22, 23, 57, 34, 36, 37, 39};
    quint16 cobs = 3;
    if (settings.isOn("diagsupport"))
        cobs += 1 + countSet(settings, QStringLiteral("diagsupport_dm%1"), kMessages);
    if (settings.isOn("diagtoolsupport"))
        cobs += 1 + countSet(settings, QStringLiteral("diagsupport_dmtool%1"), kToolMessages);
    return cobs;
}

/// What the modules of the J1939 stack take besides groups and diagnostics.
quint16 cobsOfJ1939Modules(const J1939Settings &settings, const ProjectFeatures &features)
{
    quint16 cobs = 0;
    cobs += settings.isOn("diagtoolsupport") ? 2 : 0;
    cobs += settings.isOn("requestsupport");
    cobs += settings.isOn("acknowledgeindication_cnt");
    cobs += features.hasBam() || features.hasCmdt() ? 6 : 0;
    cobs += settings.isOn("nmea2000support") ? 2 : 0;
    cobs += features.hasSafetyGroups() ? 2 : 0;
    cobs += features.hasDynamicGroups();
    cobs += features.hasSdoServer() ? 2 : 0;
    cobs += features.hasSdoClient() ? 2 : 0;
    cobs += settings.decimal("j1939fd_11bitmultipg") == 1;
    return cobs;
}

} // namespace

quint16 Defines::countIndices(const ObjectDataBase &store, quint8 line, ObjectRange range)
{
    return static_cast<quint16>(store.getIndices(line, range).size());
}

quint16 Defines::countSubs(const ObjectDataBase &store, quint8 line, quint16 index, quint8 minSub)
{
    return static_cast<quint16>(store.getSubIndices(line, index, minSub).size());
}

quint32 Defines::subValue(const ObjectDataBase &store, quint8 line, quint16 index, quint8 sub)
{
    return Numbers::toUIntByPrefix(store.getSubIndexValue(line, index, sub));
}

bool Defines::hasFlyingMaster(const ObjectDataBase &store, quint8 line)
{
    return (subValue(store, line, ObjectIndex::kNmtStartup, 0) & kFlyingMasterBit) != 0;
}

quint32 Defines::isoTpCobs(const GeneralSettings &settings, quint8 line)
{
    return 2 * Numbers::toUIntByPrefix(settings.ofLine("isotp_client_con", line)) +
           2 * Numbers::toUIntByPrefix(settings.ofLine("isotp_server_con", line));
}

quint16 Defines::getCobCount(const DefineContext &context, quint8 line)
{
    if (line != kAllLines)
        return cobsOfLine(context, line);
    quint16 cobs = 0;
    for (const quint8 number : context.lines.numbers) {
        if (context.store.existIndex(number, ObjectIndex::kDeviceType))
            cobs += cobsOfLine(context, number);
    }
    return cobs;
}

quint16 Defines::getJ1939Cobs(const DefineContext &context, quint8 line)
{
    const QList<quint32> sent = context.store.getPGNs(line, Direction::kTransmitted, false);
    const QList<quint32> received = context.store.getPGNs(line, Direction::kReceived, false);
    const int transmit = sent.size() + (sent.isEmpty() ? 0 : 1) -
                         (sent.contains(ParameterGroup::kAddressClaimed) ? 1 : 0);
    const int receive = received.size() + (received.isEmpty() ? 0 : 1);

    const J1939Settings settings(context.store);
    int cobs = cobsOfDiagnostics(settings) + cobsOfJ1939Modules(settings, context.features) +
               transmit + receive;
    // A line with CAN FD always has room for three groups.
    if (transmit + receive <= 2 && context.features.hasCanFdAsOne())
        cobs += 3 - transmit - receive;
    cobs += qMax(0, context.settings.decimal("additional_cob_count"));
    return static_cast<quint16>(cobs);
}

quint16 Defines::getMultiProtocolCobs(const DefineContext &context, quint8 line)
{
    const GeneralSettings &settings = context.settings;
    quint16 cobs = 0;
    switch (readLineType(context.store, line)) {
    case LineType::CANopen:
        cobs = getCobCount(context, line);
        break;
    case LineType::J1939:
        cobs = getJ1939Cobs(context, line);
        break;
    case LineType::CANopenAndJ1939:
        cobs = getCobCount(context, line) + getJ1939Cobs(context, line);
        break;
    case LineType::RawCan:
        cobs = static_cast<quint16>(context.store.getCANIDs(line, Direction::kTransmitted).size() +
                                    context.store.getCANIDs(line, Direction::kReceived).size());
        break;
    default:
        return 0;
    }
    cobs += qMax(0, settings.decimal("additional_cob_count"));
    if (context.features.hasIsoTp())
        cobs += isoTpCobs(settings, line);
    if (context.features.hasUdsServer() && settings.decimalOfLine("uds_server_active", line) == 1)
        cobs += 6;
    if (context.features.hasUdsClient())
        cobs += static_cast<quint8>(
            3 * Numbers::toUIntByPrefix(settings.ofLine("uds_client_cnt", line)));
    return cobs;
}
