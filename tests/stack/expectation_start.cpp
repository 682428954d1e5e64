// What a project's start-up code calls, told in the words of the test program.
#include "support/helper.h"
#include "tests/stack/expectation.h"
#include "tests/stack/meaning.h"

using namespace Meaning;

// --- Start structure and indications ---

QStringList Expectation::counts() const
{
    struct Row {
        const char *name;
        int (*count)(const Expectation &, quint8 line);
    };
    // clang-format off
    static const Row rows[] = {
        {"objects", [](const Expectation &e, quint8 line) { return e.store.getIndices(line, 0x1000, 0xFFFF).size(); }},
        {"tpdos", [](const Expectation &e, quint8 line) { return e.store.getIndices(line, 0x1800, 0x19FF).size(); }},
        {"rpdos", [](const Expectation &e, quint8 line) { return e.store.getIndices(line, 0x1400, 0x15FF).size(); }},
        {"sdoServers", [](const Expectation &e, quint8 line) {
             const int objects = e.store.getIndices(line, 0x1200, 0x127F).size();
             return qMax(objects, e.isSet("canfd_supported") ? 0 : 1); }},
        {"nodeIds", [](const Expectation &e, quint8 line) { return e.listed("co_node_id", line).toInt(); }},
        {"nodeIdFunctions",
         [](const Expectation &e, quint8 line) { return int(e.listed("co_node_id_fct", line).contains("OfLine")); }},
        {"sdoClients",
         [](const Expectation &e, quint8 line) { return e.store.getIndices(line, 0x1280, 0x12FF).size(); }},
        {"monitoredNodes", [](const Expectation &e, quint8 line) { return e.entries(line, 0x1016); }},
        {"errorHistory", [](const Expectation &e, quint8 line) { return e.entries(line, 0x1003); }},
        {"activeErrors", [](const Expectation &e, quint8 line) { return e.entries(line, 0x1032); }},
        {"emcyConsumers", [](const Expectation &e, quint8 line) { return e.entries(line, 0x1028); }},
        {"assignments", [](const Expectation &e, quint8 line) { return e.entries(line, 0x1F81); }},
    };
    // clang-format on
    QStringList texts;
    for (const Row &row : rows) {
        QVector<quint32> numbers;
        for (const quint8 line : lines)
            numbers << static_cast<quint32>(row.count(*this, line));
        texts << QStringLiteral("  %1 %2").arg(QLatin1String(row.name), joinNumbers(numbers));
    }
    return texts + commonCounts();
}

/// What all protocols share, and the diagnostic services.
QStringList Expectation::commonCounts() const
{
    QVector<quint32> types, received, sent, clients;
    for (const quint8 line : lines) {
        types << protocolsOf(line);
        received << qMax(bufferCount("receivebuffersize", line), 0);
        sent << qMax(bufferCount("transmitbuffersize", line), 0);
        clients << (number("udsclient_supported") == 1 ? number("uds_client_cnt", line) : 0);
    }
    QStringList texts;
    if (number("new_init_structure") == 1)
        texts << "  protocolType " + joinNumbers(types)
              << "  receiveBuffers " + joinNumbers(received)
              << "  transmitBuffers " + joinNumbers(sent);
    if (hasUds())
        texts << "  clientCounts " + joinNumbers(clients);
    return texts;
}

/// The element of the line's own number. An array has at least one, so that of a list which ends
/// before all lines the last is there.
QString Expectation::listed(const char *setting, quint8 line) const
{
    const QStringList list = store.getGeneralSettingsValue(setting).split(',');
    const bool endsBeforeAll = list.size() <= lines.first();
    return endsBeforeAll && line == lines.first() ? list.last() : list.value(line, "0");
}

int Expectation::bufferCount(const char *setting, quint8 line) const
{
    const QString text = listed(setting, line).remove('u').trimmed();
    if (!text.isEmpty())
        return text.toInt();
    return QLatin1String(setting) == QLatin1String("receivebuffersize") ? 10 : 5;
}

QStringList Expectation::indications() const
{
    QStringList rows;
    for (const QStringList &row : table("indications.txt")) {
        const QString function = store.getGeneralSettingsValue(row.at(0)).trimmed();
        if (!function.isEmpty() && (row.size() < 3 || number(qPrintable(row.at(2))) != 0))
            rows << QStringLiteral("indication coEvent%1 %2").arg(row.at(1), function);
    }
    return rows;
}

// --- Start ---

QString Expectation::call(const char *name, quint8 line, const QVector<quint32> &arguments) const
{
    QString text = QStringLiteral("call ") + QLatin1String(name);
    if (multiLine && line != kNoLine)
        text += QStringLiteral(" line=%1").arg(line);
    for (const quint32 argument : arguments)
        text += QStringLiteral(" %1").arg(argument);
    return text;
}

QStringList Expectation::start(int variant) const
{
    const bool isFd = number("canfd_supported") > 0;
    QStringList calls;
    if (number("new_init_structure") == 1)
        calls << call("commonStackInit", kNoLine, {static_cast<quint32>(lines.size())});
    if (hasUds())
        calls << call("udsStackInit_common", kNoLine,
                      {static_cast<quint32>(number("udsserver_version"))});
    calls << call("coCanOpenStackVarInit", kNoLine);
    if (multiLine)
        loadParameters(calls);
    for (const quint8 line : multiLine ? served : lines) {
        if (multiLine && hasUds())
            calls << uds(line);
        calls << call("coOdInitOdPtr", line, {0});
        if (!multiLine && hasUds())
            calls << uds(line);
        startServices(calls, line, isFd && variant == 1);
        if (!multiLine)
            loadParameters(calls);
        startNmt(calls, line, variant == 1);
    }
    if (multiLine && routesAtRunTime())
        calls << call("coPdoNetworkRouting", kNoLine);
    return calls;
}

/// Rows of a table of diagnostic services, one for each of a service's functions.
QStringList Expectation::udsRows(quint8 line, const char *kind) const
{
    QStringList rows;
    for (int service = 0; service <= 0xFF; ++service) {
        const auto sid = static_cast<quint8>(service);
        const bool isSession = QLatin1String(kind) == QLatin1String("session");
        const QString list = isSession ? store.getUDSServiceSessions(line, sid)
                                       : store.getUDSServiceUserLevels(line, sid);
        if (!store.isUDSServiceActive(line, sid) || (!isSession && list.isEmpty()))
            continue;
        const bool hasFunctions = service == 0x11 || service == 0x31; // reset, routine control
        for (int function = hasFunctions ? 1 : 0; function <= (hasFunctions ? 3 : 0); ++function)
            rows << QStringLiteral("  %1 %2 %3: %4")
                        .arg(QLatin1String(kind))
                        .arg(service, 2, 16, QLatin1Char('0'))
                        .arg(function)
                        .arg(QString(list).replace(',', ' '));
    }
    return rows;
}

QStringList Expectation::uds(quint8 line) const
{
    // clang-format off
    static const char *const lists[] = {
        "uds_physical_request_id", "uds_physical_response_id", "uds_functional_request_id",
        "uds_physical_request_ext_addr", "uds_physical_response_ext_addr", "uds_functional_request_ext_addr",
        "uds_ext_addressing",
    };
    // clang-format on
    QVector<quint32> arguments;
    for (const char *list : lists)
        arguments << static_cast<quint32>(numberOf(store.getGeneralSettingsValueLine(list, line)));
    const bool isServer = number("uds_server_active", line) != 0;
    arguments << (isServer ? 1 : 0);
    return QStringList{call("udsStackInit_line", line, arguments)} + udsRows(line, "session") +
           udsRows(line, "security");
}

QStringList Expectation::services(quint8 line, bool isFd, bool asMaster) const
{
    QStringList calls;
    startServices(calls, line, isFd);
    startNmt(calls, line, asMaster);
    return calls;
}

void Expectation::startServices(QStringList &calls, quint8 line, bool isFd) const
{
    if (!multiLine && number("event_led") > 0)
        calls << call("coLedInit", line);
    startSdo(calls, line, isFd);
    startErrorControl(calls, line);
    startPdos(calls, line);
    startMinorServices(calls, line);
    if (multiLine && number("event_led") > 0)
        calls << call("coLedInit", line);
}

void Expectation::startSdo(QStringList &calls, quint8 line, bool isFd) const
{
    const bool isFdProject = number("canfd_supported") > 0;
    int servers = 0;
    for (const quint8 each : lines)
        servers += store.getIndices(each, 0x1200, 0x127F).size();
    if (isFd)
        calls << call("coUsdoServerInit", line);
    else if (!isFdProject || servers > 0)
        calls << call("coSdoServerInit", line, {1});
    if (!isFd || !multiLine) {
        for (const quint16 index : store.getIndices(line, 0x1201, 0x127F))
            calls << call("coSdoServerInit", line, {index - 0x11FFu});
    }
    if (isFdProject && numberOf(store.getGeneralSettingsValue("usdo_client_cnt")) != 0)
        calls << call("coUsdoClientInit", line);
    for (const quint16 index : store.getIndices(line, 0x1280, 0x12FF))
        calls << call("coSdoClientInit", line, {index - 0x127Fu});
}

void Expectation::startErrorControl(QStringList &calls, quint8 line) const
{
    const quint32 consumers = static_cast<quint32>(entries(line, 0x1016));
    if (has(line, 0x1017))
        calls << call("coErrorCtrlInit", line, {value(line, 0x1017, 0), consumers});
    else if (has(line, 0x100C))
        calls << call("coErrorCtrlInit", line, {0, consumers});
    if (has(line, 0x1014))
        calls << call("coEmcyProducerInit", line);
    if (has(line, 0x1005))
        calls << call("coSyncInit", line, {value(line, 0x1005, 0)});
    if (has(line, 0x1028))
        calls << call("coEmcyConsumerInit", line, {static_cast<quint32>(entries(line, 0x1028))});
    if (has(line, 0x1012)) {
        const quint32 cobId = value(line, 0x1012, 0);
        calls << call("coTimeInit", line, {cobId >> 30 & 1, cobId >> 31});
    }
}

void Expectation::startMinorServices(QStringList &calls, quint8 line) const
{
    const QString srd = has(line, 0x1F10) ? call("coSrdInit", line) : QString();
    QStringList safety;
    if (has(line, 0x1300))
        safety << call("coGfcInit", line, {1, 1});
    for (const quint16 index : store.getIndices(line, 0x1301, 0x1340))
        safety << call("coSrdoInit", line, {index - 0x1300u});
    QStringList others;
    if ((numberOf(store.getGeneralSettingsValue("isotp_connection_cnt")) & 0xFF) != 0)
        others << call("isoTpInit", line);
    if (number("idnego_supported") > 0)
        others << call("coIdNegoInit", line);
    if (has(line, 0x1F81))
        others << call("coGuardingInit", line);
    if (!srd.isEmpty())
        calls << srd;
    calls << (multiLine ? others + safety : safety + others);
}

void Expectation::loadParameters(QStringList &calls) const
{
    const QString dynamic = store.getGeneralSettingsValue("enable_dynamic");
    const bool isDynamic = number("event_store") > 0 && dynamic != QLatin1String("0");
    if (isDynamic || (value(lines.first(), 0x1000, 0) & 0xFFFF) == 454)
        calls << call("coEventRegister_LOAD_PARA", 0xFF, {isDynamic ? 1u : 0u});
}

void Expectation::startNmt(QStringList &calls, quint8 line, bool asMaster) const
{
    const int role = multiLine ? number("nmtmaster", line) : number("nmtmaster");
    const bool isMaster = role == 1 || (role == 2 && asMaster);
    const bool hasLss = number("lss_supported") > 0;
    // A line that takes its role at the start sets up NMT first.
    const bool isNmtFirst = multiLine && role == 2;
    const QString nmt = call("coNmtInit", line, {isMaster ? 1u : 0u});
    if (isNmtFirst)
        calls << nmt;
    if (hasLss)
        calls << call(isMaster ? "coLssMasterInit" : "coLssInit", line);
    if (!isNmtFirst)
        calls << nmt;
}

bool Expectation::isRouted() const
{
    return std::any_of(lines.begin(), lines.end(),
                       [this](quint8 line) { return entries(line, 0x1F2C) > 0; });
}

bool Expectation::routesAtRunTime() const
{
    bool isDynamic = false;
    for (const quint8 line : served) {
        for (const quint16 index : store.getIndices(line, 0x1600, 0x17FF))
            isDynamic = isDynamic || !isStatic(line, index);
    }
    return isRouted() && isDynamic;
}

// --- What the application may call later ---

QStringList Expectation::cobIds() const
{
    struct Range {
        quint16 low, high;
        int subs;
    };
    const QVector<Range> sdos = {{0x1201, 0x127F, 2}, {0x1280, 0x12FF, 2}};
    const QVector<Range> pdos = {{0x1400, 0x15FF, 1}, {0x1800, 0x19FF, 1}};
    QStringList calls;
    for (const quint8 line : lines) {
        if ((multiLine ? number("overwrite_predef", line) : number("overwrite_predef")) == 0)
            continue;
        for (const Range &range : multiLine ? pdos + sdos : sdos + pdos)
            setCobIds(calls, line, range.low, range.high, range.subs);
    }
    return calls;
}

void Expectation::setCobIds(QStringList &calls, quint8 line, quint16 low, quint16 high,
                            int subs) const
{
    for (const quint16 index : store.getIndices(line, low, high)) {
        for (quint8 sub = 1; sub <= subs; ++sub) {
            // The test stack gives node numbers, and defaults that tell what was asked for.
            const bool isRelative = hasNodeId(store.getSubIndexValue(line, index, sub));
            const quint32 cobId = isRelative ? 5u + (multiLine ? line : 0) + value(line, index, sub)
                                             : quint32(index) << 8 | sub;
            calls << call("coOdSetCobid", line, {index, sub, cobId});
        }
    }
}

QStringList Expectation::safety() const
{
    QStringList rows;
    for (const quint8 line : lines) {
        for (const quint16 index : store.getIndices(line, 0x1301, 0x137F)) {
            QStringList words = {QString::number(line), QString::number(index - 0x1300)};
            for (const quint8 sub : {1, 2, 3, 5, 6}) {
                const int nodeIds =
                    store.getSubIndexValue(line, index, sub).toUpper().count("$NODEID");
                words << QString::number(value(line, index, sub) + static_cast<quint32>(nodeIds));
            }
            rows << "srdo " + words.join(' ');
            const quint16 mappingIndex = index + 0x80;
            for (quint32 row = 1; row <= value(line, mappingIndex, 0); ++row) {
                const quint32 mapping = value(line, mappingIndex, static_cast<quint8>(row));
                const QString place = target(line, mapping);
                rows << QStringLiteral("srdo  bits=%1 inverted=%2 %3")
                            .arg(mapping & 0xFF)
                            .arg(row % 2 == 0 ? 1 : 0)
                            .arg(place.startsWith(QLatin1String("->")) ? place : QString());
            }
        }
    }
    return rows;
}

QStringList Expectation::stringDefaults() const
{
    QMap<QString, QString> rows;
    constexpr int kShownBytes = 20;
    for (const quint8 line : number("generate_string_defaults") > 0 ? lines : QList<quint8>()) {
        for (const auto &place : store.getSubsByProperty(line, "implementation", "2")) {
            const SubIndexData sub = subOf({line, place.index, place.subindex});
            if (sub.dataType != 9 && sub.dataType != 10)
                continue;
            const QByteArray bytes = textBytes(sub.defaultValue)
                                         .leftJustified(static_cast<int>(sub.size), 0, true)
                                         .leftJustified(kShownBytes, 0, true);
            const QString name =
                Helper::substituteVariables(sub.varName, place.index, place.subindex);
            rows.insert(name, QStringLiteral("string %1 ").arg(name) +
                                  QString::fromLatin1(bytes.toHex()));
        }
    }
    return rows.values();
}

// --- PDOs ---

void Expectation::startPdos(QStringList &calls, quint8 line) const
{
    for (const quint16 index : store.getIndices(line, 0x1800, 0x19FF))
        tpdo(calls, line, index);
    for (const quint16 index : store.getIndices(line, 0x1400, 0x15FF))
        rpdo(calls, line, index);
}

/// Can the mapping object not be written?
bool Expectation::isStatic(quint8 line, quint16 index) const
{
    SubIndexData count;
    return !store.getSubIndexData(line, index, 0, count) || count.accessType != QLatin1String("rw");
}

/// Value of subindex 0 of a static mapping, which no table of the project exceeds but as the mark
/// of a multiplexed PDO.
quint32 Expectation::mappedCount(quint8 line, quint16 index) const
{
    int rows = 1;
    for (const quint8 each : served) {
        for (const quint16 mapping :
             store.getIndices(each, 0x1600, 0x17FF) + store.getIndices(each, 0x1A00, 0x1BFF))
            rows = qMax(rows, entries(each, mapping));
    }
    const quint32 count = isStatic(line, index) ? value(line, index, 0) & 0xFF : 0;
    return count > 64 ? count : qMin(count, static_cast<quint32>(rows));
}

void Expectation::tpdo(QStringList &calls, quint8 line, quint16 index) const
{
    const quint16 mappingIndex = index + 0x200;
    const quint32 count = mappedCount(line, mappingIndex);
    calls << call("coPdoTransmitInit", line,
                  {index - 0x17FFu, value(line, index, 2), value(line, index, 3),
                   value(line, index, 5), value(line, index, 6), count});
    for (quint32 row = 1; row <= (count > 64 ? 1 : count); ++row) {
        const quint32 mapping = value(line, mappingIndex, static_cast<quint8>(row));
        const quint16 type = store.getSubIndexDatatype(line, mapping >> 16, mapping >> 8 & 0xFF);
        calls << QStringLiteral("  map %1 length=%2 numeric=%3 %4")
                     .arg(mapping, 8, 16, QLatin1Char('0'))
                     .arg(isSet("bitwise_mapping") ? mapping & 0xFF : mapping >> 3 & 0x1F)
                     .arg(type <= 8 || type == 16 ? 1 : 0)
                     .arg(target(line, mapping));
    }
}

void Expectation::rpdo(QStringList &calls, quint8 line, quint16 index) const
{
    const quint16 mappingIndex = index + 0x200;
    const quint32 count = mappedCount(line, mappingIndex);
    calls << call("coPdoReceiveInit", line,
                  {index - 0x13FFu, value(line, index, 2), value(line, index, 3),
                   value(line, index, 5), count});
    for (quint32 row = 1; row <= (count > 64 ? 1 : count); ++row) {
        const quint32 mapping = value(line, mappingIndex, static_cast<quint8>(row));
        const bool inBits = isSet("bitwise_mapping") && !isRouted();
        calls << QStringLiteral("  map %1 length=%2 numeric=1 %3%4")
                     .arg(mapping, 8, 16, QLatin1Char('0'))
                     .arg(inBits ? mapping & 0xFF : mapping >> 3 & 0x1F)
                     .arg(receiver(line, mapping), routing(mapping));
    }
}

QString Expectation::target(quint8 line, quint32 mapping) const
{
    const Place place{line, static_cast<quint16>(mapping >> 16), static_cast<quint8>(mapping >> 8)};
    if (!store.existSubIndex(line, place.index, place.sub))
        return QStringLiteral("NULL");
    const SubIndexData sub = subOf(place);
    if (sub.implementation == 2)
        return QStringLiteral("->") +
               Helper::substituteVariables(sub.varName, place.index, place.sub);
    if (!hasArray(sub.dataType) || sub.implementation > 2)
        return QStringLiteral("NULL");
    if (sub.implementation == 1)
        return QStringLiteral("constant ") +
               numberText(sub.dataType, withoutNodeId(sub.defaultValue));
    return QStringLiteral("%1-%2:%3")
        .arg(shown(homeOf(place)))
        .arg(place.index, 4, 16, QLatin1Char('0'))
        .arg(place.sub);
}

/// Nothing is received into a constant.
QString Expectation::receiver(quint8 line, quint32 mapping) const
{
    const QString place = target(line, mapping);
    return place.startsWith(QLatin1String("constant")) ? QStringLiteral("NULL") : place;
}

/// TPDO on each line that sends the mapped variable on, 0 where none does; empty in a device that
/// routes nothing.
QString Expectation::routing(quint32 mapping) const
{
    if (!isRouted())
        return QString();
    QVector<quint32> numbers;
    for (const quint8 line : lines) {
        SubIndexData sub;
        quint32 tpdo = 0;
        if (store.getSubIndexData(line, mapping >> 16, mapping >> 8 & 0xFF, sub) &&
            sub.sharedLines) {
            for (const quint16 index : store.getIndices(line, 0x1A00, 0x1BFF)) {
                for (const quint8 entry : store.getSubIndices(line, index, 1))
                    tpdo = value(line, index, entry) == mapping ? index - 0x19FFu : tpdo;
            }
        }
        numbers << tpdo;
    }
    return QStringLiteral("   routing ") + joinNumbers(numbers);
}
