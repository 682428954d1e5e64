// J1939 modules.
#include "generators/defines/j1939defines.h"

#include "generators/defines/definecounts.h"
#include "generators/defines/definelists.h"
#include "generators/defines/eventdefines.h"
#include "generators/defines/servicedefines.h"
#include "generators/defines/shareddefines.h"
#include "generators/j1939settings.h"
#include "store/linetype.h"
#include "support/parametergroups.h"

#include <QStringList>

#include <algorithm>

namespace
{

constexpr int kHighestDiagnosticMessage = 64;

/// One line. Groups are those of the tables of groups, safe ones those of the safety tables.
struct LineGroups {
    LineType type{};
    quint32 transmit = 0;
    quint32 receive = 0;
    quint32 safeTransmit = 0;
    quint32 safeReceive = 0;
    quint32 servers = 0; ///< for SDO, as clients
    quint32 clients = 0;
    quint32 cobs = 0;
    bool hasInhibit = false;
};

struct Facts {
    QVector<LineGroups> lines; ///< at least one
    J1939Settings j1939;
    GeneralSettings general;
    ProjectFeatures features;
    bool isMultiLine = false;

    explicit Facts(const DefineContext &context)
        : j1939(context.store), general(context.settings), features(context.features),
          isMultiLine(context.lines.numbers.size() >= 2)
    {
    }

    QVector<quint32> perLine(quint32 LineGroups::*value) const
    {
        QVector<quint32> values;
        for (const LineGroups &line : lines)
            values << line.*value;
        return values;
    }
    quint32 sum(quint32 LineGroups::*value) const
    {
        quint32 total = 0;
        for (const LineGroups &line : lines)
            total += line.*value;
        return total;
    }
    quint32 isOn(const char *setting) const { return j1939.isOn(setting); }
    /// A number that is not above zero counts as none.
    quint32 count(const char *setting) const { return quint32(qMax(0, j1939.decimal(setting))); }
};

/// A number, or 1 for a module that is used. Written if it is above zero.
struct CountRow {
    const char *start;
    quint32 (*value)(const Facts &);
};

/// Diagnostic messages (DM, SAE J1939-73), of the device or as a tool.
struct DiagnosticsRow {
    const char *setting;
    const char *line;
    const char *receiveStart;
    const char *receiveSetting;
    const char *transmitStart;
    const char *transmitSetting;
    const char *messageSetting; ///< %1 is the number of the message
    const char *messageLine;    ///< with $message$ for it
};

// clang-format off
constexpr CountRow kIndications[] = { // row order is file order, here and below
    {"#define J1939_REC_PGN_INDICATION_CNT\t",       [](const Facts &f) { return f.count("rxindication_cnt"); }},
    {"#define J1939_REC_PGN_CHECK_INDICATION_CNT\t", [](const Facts &f) { return f.count("rxcheckindication_cnt"); }},
    {"#define J1939_TR_PGN_INDICATION_CNT\t",        [](const Facts &f) { return f.count("txindication_cnt"); }},
    {"#define J1939_REQ_PGN_INDICATION_CNT\t",       [](const Facts &f) { return f.isOn("requestsupport") * f.count("requestindication_cnt"); }},
    {"#define J1939_ACK_PGN_INDICATION_CNT\t",       [](const Facts &f) { return f.count("acknowledgeindication_cnt"); }},
};

constexpr CountRow kIndicationsAfterCan[] = {
    {"#define J1939_NMEA_GROUP_INDICATION_CNT\t", [](const Facts &f) { return f.count("nmea2000groupindication_cnt"); }},
};

constexpr CountRow kTransportModules[] = {
    {"#define J1939_REC_ALL_CLAIM_SUPPORT\t", [](const Facts &f) { return f.isOn("recalladdrclaims"); }},
    {"#define J1939_BAM_SUPPORTED\t",         [](const Facts &f) { return quint32(f.features.hasBam()); }},
    {"#define J1939_BAM_CYLE_TIME\t",         [](const Facts &f) { return f.features.hasBam() * (f.j1939.byPrefix("bamcycletime") & 0xFF); }},
    {"#define J1939_NMEA2000_SUPPORTED\t",    [](const Facts &f) { return f.isOn("nmea2000support"); }},
    {"#define J1939_CMDT_SUPPORTED\t",        [](const Facts &f) { return quint32(f.features.hasCmdt()); }},
};

constexpr DiagnosticsRow kDiagnostics[] = {
    {"diagsupport", "#define J1939_DIAGNOSTIC_SUPPORTED\t1u\n",
     "#define J1939_DIAG_REC_BUF_SIZE\t", "dm_receivesize",
     "#define J1939_DIAG_TR_BUF_SIZE\t", "dm_transmitsize",
     "diagsupport_dm%1", "#define J1939_DIAGNOSTIC_DM$message$_SUPPORTED\t1u\n"},
    {"diagtoolsupport", "#define J1939_DIAGNOSTIC_TOOL_SUPPORTED\t1u\n",
     "#define J1939_DIAGTOOL_REC_BUF_SIZE\t", "dmtool_receivesize",
     "#define J1939_DIAGTOOL_TR_BUF_SIZE\t", "dmtool_transmitsize",
     "diagsupport_dmtool%1", "#define J1939_DIAGNOSTIC_TOOL_DM$message$_SUPPORTED\t1u\n"},
};

constexpr CountRow kLastModules[] = {
    {"#define J1939_REQUEST_SUPPORTED\t",     [](const Facts &f) { return f.isOn("requestsupport"); }},
    {"#define J1939_PROPRIETARY_SUPPORTED\t", [](const Facts &f) { return f.isOn("propsupport"); }},
    {"#define J1939_DYNAMIC_PGN\t",           [](const Facts &f) { return quint32(f.features.hasDynamicGroups()); }},
    {"#define BITWISE_MAPPING\t",             [](const Facts &f) { return f.isOn("bitwisemapping"); }},
};
// clang-format on

/// ISO-TP connections of a line; here each takes one message object.
quint32 isoTpConnections(const Facts &facts, quint8 line)
{
    if (!facts.features.hasIsoTp() && !facts.features.hasUdsServer())
        return 0;
    return Numbers::toUIntByPrefix(facts.general.ofLine("isotp_client_con", line)) +
           Numbers::toUIntByPrefix(facts.general.ofLine("isotp_server_con", line));
}

void countGroups(const ObjectDataBase &store, bool hasSafety, quint8 number, LineGroups &line)
{
    // Deliberate: groups of a line that does not speak J1939 have no table; held by
    // tst_generatedj1939.
    if (!carriesJ1939(line.type))
        return;
    const auto size = [](const QList<quint32> &groups) { return quint32(groups.size()); };
    // The stack sends its own claim of an address and reads those of others.
    const auto rows = [&size](const QList<quint32> &groups) {
        return size(groups) - (groups.contains(ParameterGroup::kAddressClaimed) ? 1 : 0);
    };
    // Without the safety module, safe groups are sent and received as all others are.
    const QList<quint32> sent = store.getPGNs(number, Direction::kTransmitted, false);
    const QList<quint32> sentPlain = store.getPGNs(number, Direction::kTransmitted, hasSafety);
    const QList<quint32> receivedPlain = store.getPGNs(number, Direction::kReceived, hasSafety);
    line.transmit = rows(sentPlain);
    // Deliberate: a received claim has no row, so that it is not counted; held by
    // tst_generatedj1939.
    line.receive = rows(receivedPlain);
    line.safeTransmit = size(sent) - size(sentPlain);
    line.safeReceive =
        size(store.getPGNs(number, Direction::kReceived, false)) - size(receivedPlain);
}

LineGroups readLine(const DefineContext &context, const Facts &facts, quint8 number)
{
    context.store.cacheAllSpnDataForLine(number);
    const ObjectDataBase &store = context.store;
    LineGroups line;
    line.type = readLineType(store, number);
    countGroups(store, facts.features.hasSafetyGroups(), number, line);
    line.cobs = Defines::getJ1939Cobs(context, number) + isoTpConnections(facts, number);
    const QList<quint32> sent = store.getPGNs(number, Direction::kTransmitted, false);
    for (const quint32 pgn : sent) {
        PgnData group;
        line.hasInhibit |= store.getPGNData(number, pgn, Direction::kTransmitted, group) &&
                           group.inhibitTimeMs != 0;
    }
    if (!facts.isMultiLine) {
        line.servers = facts.features.hasSdoServer();
        line.clients = facts.features.hasSdoClient();
    } else if (line.type == LineType::J1939) {
        line.servers = quint32(facts.features.sdoServers);
        line.clients = quint32(facts.features.sdoClients);
    } else {
        line.servers = Defines::countIndices(store, number, ObjectRanges::kSdoServers);
        line.clients = Defines::countIndices(store, number, ObjectRanges::kSdoClients);
    }
    return line;
}

Facts readFacts(const DefineContext &context)
{
    Facts facts(context);
    const QList<quint8> numbers =
        context.lines.numbers.isEmpty() ? QList<quint8>{0} : context.lines.numbers;
    for (const quint8 number : numbers)
        facts.lines << readLine(context, facts, number);
    return facts;
}

/// A number of the project as C text; it may be a macro.
QString unsignedText(const QString &setting)
{
    const QString text = setting.trimmed();
    // Deliberate: a "u" alone would be no number; held by tst_j1939defines.
    return Defines::withUnsignedEnd(text.isEmpty() ? QStringLiteral("0") : text);
}

template <size_t N>
void writeCounts(DefineContext &context, const Facts &facts, const CountRow (&rows)[N])
{
    for (const CountRow &row : rows) {
        if (const quint32 value = row.value(facts))
            context.out.define(row.start, value);
    }
}

/// After the tab, lists of groups have a blank that single counts have not.
void writeGroupList(DefineContext &context, const char *start, const Facts &facts,
                    quint32 LineGroups::*value)
{
    context.out.raw(start);
    context.out.defineList(facts.isMultiLine ? " " : "", facts.perLine(value));
}

void writeSdoList(DefineContext &context, const char *start, const QVector<quint32> &perLine)
{
    QStringList counts;
    for (const quint32 count : perLine)
        counts << QString::number(count) + QLatin1Char('u');
    context.out.raw(start);
    context.out.parts(counts.join(QLatin1Char(',')), "\n");
}

quint32 countSdoLines(const Facts &facts)
{
    if (!facts.isMultiLine)
        return 1;
    return quint32(
        std::count_if(facts.lines.begin(), facts.lines.end(),
                      [](const LineGroups &line) { return line.type == LineType::J1939; }));
}

void writeGroups(DefineContext &context, const Facts &facts)
{
    context.raw({"#define J1939_SUPPORTED\t1u\n"});
    if (facts.features.hasSdoServer() || facts.features.hasSdoClient())
        context.raw({"#define J1939_CAM11_CAM21_SUPPORTED\t1u\n"});
    context.out.define("#define J1939_RECEIVE_PGN_CNT\t", facts.sum(&LineGroups::receive));
    context.out.define("#define J1939_TRANSMIT_PGN_CNT\t", facts.sum(&LineGroups::transmit));
    writeGroupList(context, "#define J1939_RECEIVE_PGN_COUNTS\t", facts, &LineGroups::receive);
    writeGroupList(context, "#define J1939_TRANSMIT_PGN_COUNTS\t", facts, &LineGroups::transmit);
}

void writeSdos(DefineContext &context, const Facts &facts)
{
    const quint32 servers = facts.features.hasSdoServer() ? countSdoLines(facts) : 0;
    writeSdoList(context, "#define J1939_SSDO_COUNTS\t", facts.perLine(&LineGroups::servers));
    if (!facts.isMultiLine)
        Defines::writeSdoServerCount(context, servers);
    writeSdoList(context, "#define J1939_CSDO_COUNTS\t", facts.perLine(&LineGroups::clients));
    Defines::writeSdoServerCount(context, servers); // is there already for one line
    Defines::writeSdoClientCount(context, facts.features.hasSdoClient() ? countSdoLines(facts) : 0);
}

void writeSafety(DefineContext &context, const Facts &facts)
{
    if (!facts.features.hasSafetyGroups())
        return;
    if (const quint32 total = facts.sum(&LineGroups::safeTransmit))
        context.out.define("#define J1939_SDG_TRANS_CNT\t", total);
    writeGroupList(context, "#define J1939_SDG_TRANS_COUNTS\t", facts, &LineGroups::safeTransmit);
    if (const quint32 total = facts.sum(&LineGroups::safeReceive))
        context.out.define("#define J1939_SDG_REC_CNT\t", total);
    writeGroupList(context, "#define J1939_SDG_REC_COUNTS\t", facts, &LineGroups::safeReceive);
    context.raw({"#define J1939_SDG_SUPPORTED\t1u\n"});
    const QString interval = unsignedText(facts.j1939.text(QStringLiteral("sdm_timer_interval")));
    if (interval != QLatin1String("0u"))
        context.out.parts("#define J1939_SDG_TIMER_INTERVAL\t", interval, "\n");
}

void writeInhibit(DefineContext &context, const Facts &facts)
{
    const bool hasInhibit = std::any_of(facts.lines.begin(), facts.lines.end(),
                                        [](const LineGroups &line) { return line.hasInhibit; });
    if (hasInhibit || facts.features.hasDynamicGroups())
        Defines::writeInhibit(context);
}

/// One element for each line; the last one of the setting stands for the lines beyond.
QStringList destinationBuffers(const DefineContext &context, const QString &setting)
{
    // Deliberate: no more and no fewer elements than lines, since the stack has an array of them;
    // held by tst_j1939defines.
    if (setting.trimmed().isEmpty())
        return QVector<QString>(qMax(1, context.lines.numbers.size()), QStringLiteral("1"))
            .toList();
    QStringList elements;
    for (const quint8 line : context.lines.numbers) {
        const QString element = LineList::element(setting, line, LineList::Beyond::Last);
        elements << (element.trimmed().isEmpty() ? QStringLiteral("0") : element);
    }
    return elements;
}

void writeMultiPg(DefineContext &context, const Facts &facts)
{
    if (!context.features.hasCanFd())
        return;
    if ((facts.j1939.byPrefix("j1939fd_11bitmultipg") & 0xFF) == 1)
        context.raw({"#define J1939_MULTI_PG_11BIT\t1u\n"});
    QStringList buffers =
        destinationBuffers(context, facts.j1939.text(QStringLiteral("j1939fd_multipgbuffer")));
    for (QString &buffer : buffers)
        buffer = unsignedText(buffer);
    const QString list = buffers.join(QLatin1Char(','));
    context.out.parts("#define J1939_DEST_BUFFER_CNT\t", Defines::combineCobBufferCounts(list),
                      "u\n#define J1939_DEST_BUFFER_COUNTS\t", list, "\n");
}

void writeIndications(DefineContext &context, const Facts &facts)
{
    writeCounts(context, facts, kIndications);
    Defines::writeCanEvents(context, facts.j1939.decimal("canindication_cnt"));
    writeCounts(context, facts, kIndicationsAfterCan);
}

void writeDiagnostics(DefineContext &context, const Facts &facts)
{
    const auto number = [&facts](const char *setting) {
        return unsignedText(facts.j1939.text(QLatin1String(setting)));
    };
    for (const DiagnosticsRow &row : kDiagnostics) {
        if (!facts.j1939.isOn(row.setting))
            continue;
        context.out.raw(row.line);
        context.out.parts(row.receiveStart, number(row.receiveSetting), "\n", row.transmitStart,
                          number(row.transmitSetting), "\n");
        for (int message = 1; message <= kHighestDiagnosticMessage; ++message) {
            const QString setting = QString::fromLatin1(row.messageSetting).arg(message);
            if (facts.j1939.isOn(setting.toLatin1()))
                context.out.fill(row.messageLine, {{"message", message}});
        }
    }
}

void writeModules(DefineContext &context, const Facts &facts)
{
    writeCounts(context, facts, kTransportModules);
    if (facts.features.hasCmdt())
        context.out.parts("#define J1939_CMDT_MAX_PACKETS\t",
                          unsignedText(facts.j1939.text(QStringLiteral("cmdtpackets"))), "\n");
    Defines::writeCanEvents(context, facts.general.decimal("event_can"));
    writeDiagnostics(context, facts);
    writeCounts(context, facts, kLastModules);
    if (Defines::isoTpConnectionCount(facts.general) != 0)
        Defines::writeIsoTp(context);
}

/// The SDO server has an object dictionary without the CANopen services around it.
void writeSdoEvents(DefineContext &context, const Facts &facts)
{
    if (facts.features.hasSdoServer()) {
        Defines::reserveEventSlot(context, "event_sdo_server_read");
        Defines::reserveEventSlot(context, "event_sdo_server_write");
    }
    if (facts.features.hasSdoClient()) {
        Defines::reserveEventSlot(context, "event_sdo_client_read");
        Defines::reserveEventSlot(context, "event_sdo_client_write");
    }
    if (facts.features.hasSdoServer())
        Defines::generateTableSwitches(context);
}

void writeCobs(DefineContext &context, const Facts &facts)
{
    const qint32 additional = facts.general.decimal("additional_cob_count");
    context.raw({"\n"
                 "/* COB definitions */\n"});
    context.raw({"#define CO_COB_CNT \t", "#define CORE_COB_CNT \t"});
    context.out.raw(facts.sum(&LineGroups::cobs) + quint32(qMax(0, additional)));
    // Deliberate: the comma, since the stack's tables list the counts; held by tst_j1939defines.
    context.raw({"u ,\n"});
    if (facts.isMultiLine) {
        QStringList counts;
        for (const LineGroups &line : facts.lines)
            counts << QString::number(line.cobs);
        context.raw({"#define CO_COB_COUNTS\t", "#define CORE_COB_COUNTS\t"});
        context.out.parts(counts.join(QLatin1String(", ")), "\n");
    } else {
        context.raw(
            {"#define CO_COB_COUNTS\tCO_COB_CNT\n", "#define CORE_COB_COUNTS\tCORE_COB_CNT\n"});
    }
    context.raw({"\n"});
}

bool isWanted(const DefineContext &context)
{
    // Deliberate: a device of raw CAN has no J1939 stack to switch on, in no edition of the tool;
    // held by tst_j1939defines.
    const QList<quint8> &lines = context.lines.numbers;
    return std::any_of(lines.begin(), lines.end(), [&context](quint8 line) {
        return carriesJ1939(readLineType(context.store, line));
    });
}

} // namespace

void Defines::generateJ1939Defines(DefineContext &context)
{
    if (!isWanted(context))
        return;
    const Facts facts = readFacts(context);
    context.raw({"/* J1939 Defines */\n"});
    if (facts.isMultiLine)
        writeMultiLine(context);
    writeGroups(context, facts);
    writeSdos(context, facts);
    writeSafety(context, facts);
    context.raw({"\n"});
    ::writeInhibit(context, facts);
    writeMultiPg(context, facts);
    writeIndications(context, facts);
    context.raw({"\n"});
    writeModules(context, facts);
    writeSdoEvents(context, facts);
    if (!context.multiProtocol)
        writeCobs(context, facts);
    if (!context.written.bufferCounts) {
        context.raw({"\n"});
        writeBufferCounts(context, true);
    }
    context.written.openSection = true;
}
