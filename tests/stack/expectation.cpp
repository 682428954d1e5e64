// The meaning of a project, told in the words of the test program.
#include "tests/stack/expectation.h"

#include "support/cohelper.h"
#include "support/helper.h"

#include <QRegularExpression>

#include <cmath>

namespace
{

/// Value of a text as all project files write numbers: hexadecimal behind 0x, else decimal.
qint64 numberOf(const QString &text)
{
    const QString digits = text.trimmed();
    if (digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        return static_cast<qint64>(digits.mid(2).toULongLong(nullptr, 16));
    return digits.startsWith(QLatin1Char('-')) ? digits.toLongLong()
                                               : static_cast<qint64>(digits.toULongLong());
}

QString withoutNodeId(const QString &text)
{
    return QString(text).remove(QStringLiteral("$NODEID+"), Qt::CaseInsensitive);
}

bool hasNodeId(const QString &text)
{
    return text.contains(QLatin1String("$NODEID+"), Qt::CaseInsensitive);
}

/// Type names of the test stack. Signals below a byte live in one.
QString typeName(quint16 dataType)
{
    const QString name = COHelper::index2DataTypeShortString(dataType).toUpper();
    static const QRegularExpression belowByte(QStringLiteral("^U[2-7]$"));
    if (name == QLatin1String("B"))
        return QStringLiteral("BOOL");
    if (name == QLatin1String("D"))
        return QStringLiteral("DOMAIN");
    return belowByte.match(name).hasMatch() ? QStringLiteral("U8") : name;
}

/// Types whose values have arrays that the stack can reach.
bool hasArray(quint16 dataType)
{
    static const QStringList names = {"BOOL", "U8",  "U16", "U24", "U32", "U40",
                                      "U48",  "U64", "I8",  "I16", "I32", "R32"};
    return names.contains(typeName(dataType));
}

bool hasLimits(quint16 dataType)
{
    static const QStringList names = {"BOOL", "U8", "U16", "U32", "I8", "I16", "I32", "R32"};
    return names.contains(typeName(dataType));
}

/// Has the subindex a default that a table can tell?
bool hasDefault(const SubIndexData &sub)
{
    const bool isText = sub.dataType == 9 || sub.dataType == 10 || sub.dataType == 124;
    return hasArray(sub.dataType) || sub.dataType == 16 || (isText && sub.implementation == 1);
}

bool isWritten(const SubIndexData &sub)
{
    return sub.accessType.contains(QLatin1Char('w'));
}

QString numberText(quint16 dataType, const QString &value)
{
    const QString type = typeName(dataType);
    if (type == QLatin1String("R32")) {
        const double real = static_cast<double>(value.toFloat()); // C has no literal for infinity
        return QString::number(std::isfinite(real) ? real : 0.0, 'g', 6);
    }
    const quint64 bits = static_cast<quint64>(numberOf(value));
    const int width = type == QLatin1String("BOOL") ? 8 : type.mid(1).toInt();
    if (type.startsWith(QLatin1Char('I')))
        return QString::number(static_cast<qint64>(bits << (64 - width)) >> (64 - width));
    return QString::number(bits << (64 - width) >> (64 - width));
}

struct StorageRow {
    quint16 low;
    quint16 high;
    int subs; ///< -1 all, 0 those from 1, else that number
    const char *storage;
    int reference; ///< 1: the index, 0: none, else what the number of the service counts from
};

// clang-format off
/// Objects whose values the services of the stack hold themselves.
constexpr StorageRow kServiceObjects[] = {
    {0x1003, 0x1003, -1, "EMCY", 1},
    {0x1005, 0x1006, -1, "SYNC", 1},
    {0x100C, 0x100D, -1, "ERRCTRL", 1},
    {0x1010, 0x1011,  0, "STORE", 1},
    {0x1012, 0x1012, -1, "TIME", 0},
    {0x1014, 0x1015, -1, "EMCY", 1},
    {0x1016, 0x1016,  0, "ERRCTRL", 1},
    {0x1017, 0x1017, -1, "ERRCTRL", 1},
    {0x1019, 0x1019, -1, "SYNC", 1},
    {0x1028, 0x1028,  0, "EMCY", 1},
    {0x1029, 0x1029,  1, "ERRCTRL", 1},
    {0x102A, 0x102A, -1, "NMT", 1},
    {0x1032, 0x1032, -1, "EMCY", 1},
    {0x1200, 0x127F,  0, "SDO_SERVER", 0x11FF},
    {0x1280, 0x12FF,  0, "SDO_CLIENT", 0x127F},
    {0x1300, 0x1300, -1, "GFC", 0},
    {0x1301, 0x13F0,  0, "SRDO", 1},
    {0x13FE, 0x13FF, -1, "SRDO", 1},
    {0x1400, 0x15FF,  0, "RPDO", 0x13FF},
    {0x1600, 0x17FF, -1, "RMAP", 0x15FF},
    {0x1800, 0x19FF,  0, "TPDO", 0x17FF},
    {0x1A00, 0x1BFF, -1, "TMAP", 0x19FF},
    {0x1F10, 0x1F11, -1, "SRD", 0},
    {0x1F2C, 0x1F2C,  0, "NETWORK", 1},
    {0x1F80, 0x1F82, -1, "NMT", 1},
    {0x1F90, 0x1F90,  0, "FLYMA", 1},
    {0x1F90, 0x1F90, -1, "FLYMA", 0}, // subindex 0
};

struct IndicationRow {
    const char *setting;
    const char *pointer;
    const char *condition; ///< setting that must not be 0
};
constexpr IndicationRow kIndications[] = { // in the order of the test program
    {"fct_sdo_server_read", "SdoServerReadInd", nullptr},
    {"fct_sdo_server_write", "SdoServerWriteInd", nullptr},
    {"fct_sdo_server_check_write", "SdoServerCheckWriteInd", nullptr},
    {"fct_pdo", "PdoInd", nullptr},
    {"fct_pdo_receive", "PdoRecInd", nullptr},
    {"fct_pdo_sync", "PdoSyncInd", nullptr},
    {"fct_nmt", "NmtInd", nullptr},
    {"fct_errctrl", "ErrCtrlInd", nullptr},
    {"fct_sync", "SyncInd", nullptr},
    {"fct_sync_finished", "SyncFinishedInd", nullptr},
    {"fct_led_green", "LedGreenInd", nullptr},
    {"fct_led_red", "LedRedInd", nullptr},
    {"fct_can", "CanStateInd", nullptr},
    {"fct_cfgman", "CfgManInd", nullptr},
    {"fct_flyma", "FlyMaInd", nullptr},
    {"fct_sdo_client_read", "SdoClientReadInd", nullptr},
    {"fct_sdo_client_write", "SdoClientWriteInd", nullptr},
    {"fct_emcy", "EmcyInd", nullptr},
    {"fct_emcy_consumer", "EmcyConsumerInd", nullptr},
    {"fct_time", "TimeInd", nullptr},
    {"fct_store", "StoreInd", nullptr},
    {"fct_lss", "LssInd", nullptr},
    {"fct_lss_master", "LssMasterInd", nullptr},
    {"fct_comm", "CommInd", nullptr},
    {"fct_manager", "ManagerInd", nullptr},
    {"fct_mpdo", "MPdoInd", nullptr},
    {"usdo_server_read_ind_function", "UsdoServerReadInd", "usdo_server_enabled"},
    {"usdo_server_read_finished_ind_function", "UsdoServerReadFinishedInd", "usdo_server_enabled"},
    {"usdo_server_write_ind_function", "UsdoServerWriteInd", "usdo_server_enabled"},
    {"usdo_server_ind_check_write_function", "UsdoServerCheckWriteInd", "usdo_server_enabled"},
    {"usdo_server_domain_read_ind_function", "UsdoServerDomainReadInd", "usdo_server_enabled"},
    {"usdo_server_domain_write_ind_function", "UsdoServerDomainWriteInd", "usdo_server_enabled"},
    {"usdo_client_read_ind_function", "UsdoClientReadInd", "usdo_client_enabled"},
    {"usdo_client_write_ind_function", "UsdoClientWriteInd", "usdo_client_enabled"},
    {"usdo_client_domain_read_ind_function", "UsdoClientDomainReadInd", "usdo_client_enabled"},
    {"usdo_client_domain_write_ind_function", "UsdoClientDomainWriteInd", "usdo_client_enabled"},
};
// clang-format on

const StorageRow *serviceOf(quint16 index, quint8 sub)
{
    for (const StorageRow &row : kServiceObjects) {
        const bool isSub = row.subs < 0 || (row.subs == 0 && sub > 0) || (row.subs > 0 && row.subs == sub);
        if (index >= row.low && index <= row.high && isSub)
            return &row;
    }
    return nullptr;
}

/// \a tellsLimits: the tables have columns for limits, which only those that are written fill.
QString attributes(const SubIndexData &sub, bool tellsLimits)
{
    QStringList words;
    if (sub.dataType <= 8 || sub.dataType == 22)
        words << "NUM";
    const bool isMapped = sub.pdoMapping != PDOMapping();
    const bool isRead = sub.accessType != QLatin1String("wo");
    if (isRead)
        words << "READ";
    if (isWritten(sub))
        words << "WRITE";
    if (isMapped && isRead && sub.accessType != QLatin1String("rww"))
        words << "MAP_TR";
    if (isMapped && isWritten(sub) && sub.accessType != QLatin1String("rwr"))
        words << "MAP_REC";
    if (sub.defaultInEds && hasDefault(sub))
        words << "DEFVAL";
    if (sub.limitInEds && hasLimits(sub.dataType) && (isWritten(sub) || !tellsLimits))
        words << "LIMIT";
    if (sub.nvStorage)
        words << "STORE";
    return words.join('|');
}

/// The bytes of a string; its escapes are those of C.
QByteArray textBytes(const QString &value)
{
    if (value.startsWith(QLatin1String("|x")))
        return QByteArray::fromHex(value.mid(2).toLatin1());
    return QString(value).replace("\\\"", "\"").replace("\\x41", "A").toUtf8();
}

/// A text as the test program prints it.
QString printable(const QByteArray &text)
{
    QString result;
    for (const char c : text) {
        if (c > ' ' && c <= '~' && c != '%')
            result += QLatin1Char(c);
        else
            result += QStringLiteral("%%1").arg(static_cast<quint8>(c), 2, 16, QLatin1Char('0'));
    }
    return result;
}

QString joinNumbers(const QVector<quint32> &numbers)
{
    QStringList texts;
    for (const quint32 number : numbers)
        texts << QString::number(number);
    return texts.join(',');
}

} // namespace

Expectation::Expectation(ObjectDataBase &database) : store(database), lines(database.getNodes())
{
    for (const quint8 line : lines) {
        if (store.getIndices(line, 0x1000, 0xFFFF).size() > 1)
            served << line;
    }
    multiLine = lines.size() > 1 || store.getMiscSettingsValue("generateML") == QLatin1String("true");
}

int Expectation::number(const char *setting) const
{
    return store.getGeneralSettingsValue(setting).toInt();
}

int Expectation::number(const char *setting, quint8 line) const
{
    return store.getGeneralSettingsValueLine(setting, line).toInt();
}

quint32 Expectation::value(quint8 line, quint16 index, quint8 sub) const
{
    return static_cast<quint32>(numberOf(withoutNodeId(store.getSubIndexValue(line, index, sub))));
}

int Expectation::entries(quint8 line, quint16 index) const
{
    return store.getSubIndices(line, index, 1).size();
}

SubIndexData Expectation::subOf(const Place &place) const
{
    SubIndexData data;
    if (!store.getSubIndexData(place.line, place.index, place.sub, data))
        qWarning("no subindex");
    return data;
}

bool Expectation::hasType(quint16 dataType) const
{
    return std::any_of(lines.begin(), lines.end(), [this, dataType](quint8 line) {
        return !store.getSubsByProperty(line, "datatype", QString::number(dataType)).isEmpty();
    });
}

bool Expectation::choosesMaster() const
{
    return multiLine ? store.getGeneralSettingsValue("nmtmaster").contains('2') : number("nmtmaster") == 2;
}

QMap<QString, quint16> Expectation::appVariables() const
{
    QMap<QString, quint16> variables;
    for (const quint8 line : lines) {
        for (const auto &place : store.getSubsByProperty(line, "implementation", "2")) {
            const SubIndexData sub = subOf({line, place.index, place.subindex});
            if (sub.dataType != 15)
                variables.insert(Helper::substituteVariables(sub.varName, place.index, place.subindex),
                                 sub.dataType);
        }
    }
    return variables;
}

/// A shared subindex of a line is that of line 0, if that has one.
quint8 Expectation::homeOf(const Place &place) const
{
    SubIndexData first;
    const bool isShared = place.line != 0 && subOf(place).sharedLines &&
                          store.getSubIndexData(0, place.index, place.sub, first) && first.sharedLines;
    return isShared ? 0 : place.line;
}

// --- Dictionary ---

QStringList Expectation::dictionary() const
{
    static const QMap<int, QString> kinds = {{2, "DOM"}, {7, "VAR"}, {8, "ARRAY"}, {9, "STRUCT"}};
    QStringList rows;
    for (const quint8 line : multiLine ? served : lines) {
        for (const quint16 index : store.getIndices(line, 0x1000, 0xFFFF)) {
            const QList<quint8> subs = store.getSubIndices(line, index, 0);
            SubIndexData first;
            if (store.getSubIndexData(line, index, 0, first) && first.implementation == 3)
                continue;
            IndexData object;
            (void)store.getIndexData(line, index, object); // it was listed
            const int code = static_cast<int>(object.objectCode);
            rows << QStringLiteral("object %1 %2 highest=%3 %4")
                        .arg(shown(line))
                        .arg(index, 4, 16, QLatin1Char('0'))
                        .arg(subs.isEmpty() ? 0 : subs.last())
                        .arg(kinds.value(code, subs.size() > 1 ? "STRUCT" : "VAR"));
            for (const quint8 sub : subs) {
                if (subOf({line, index, sub}).implementation != 3)
                    rows << subRow({line, index, sub});
            }
        }
    }
    return rows;
}

QString Expectation::subRow(const Place &place) const
{
    const SubIndexData sub = subOf({homeOf(place), place.index, place.sub});
    const StorageRow *service = serviceOf(place.index, place.sub);
    QString type = typeName(sub.dataType);
    QString storage;
    if (sub.implementation == 1)
        storage = QStringLiteral("_CONST");
    else if (service)
        storage = QLatin1Char('_') + QLatin1String(service->storage);
    else if (sub.dataType != 15)
        storage = sub.implementation == 2 ? QStringLiteral("_PTR") : QStringLiteral("_VAR");
    if (storage == QLatin1String("_CONST") && type == QLatin1String("OS"))
        type = QStringLiteral("VS");
    return QStringLiteral("sub %1 %2:%3 %4%5 ")
               .arg(shown(place.line))
               .arg(place.index, 4, 16, QLatin1Char('0'))
               .arg(place.sub)
               .arg(type, storage) +
           attributes(sub, number("limit_check") > 0) + valueText(place, sub, storage) + boundsText(sub);
}

QString Expectation::valueText(const Place &place, const SubIndexData &sub, const QString &storage) const
{
    const bool isText = sub.dataType == 9 || sub.dataType == 10 || sub.dataType == 124;
    const QString size = isText ? QStringLiteral(" size=%1").arg(sub.size) : QString();
    if (storage == QLatin1String("_CONST") && isText) {
        const int bytes = static_cast<int>(sub.size);
        return QStringLiteral(" value=") +
               printable(textBytes(sub.defaultValue).leftJustified(bytes, 0, true)) + size;
    }
    if (storage == QLatin1String("_PTR") && (isText || hasArray(sub.dataType)))
        return QStringLiteral(" value=->") +
               Helper::substituteVariables(sub.varName, place.index, place.sub) + size;
    if (storage == QLatin1String("_PTR") || storage == QLatin1String("_VAR") ||
        storage == QLatin1String("_CONST")) {
        if (!hasArray(sub.dataType))
            return QStringLiteral(" value=none");
        const bool isZero = storage == QLatin1String("_VAR") &&
                            (number("init_static_variables") != 1 || hasNodeId(sub.defaultValue));
        return QStringLiteral(" value=") +
               (isZero ? QStringLiteral("0") : numberText(sub.dataType, withoutNodeId(sub.defaultValue)));
    }
    const StorageRow *service = serviceOf(place.index, place.sub);
    if (!service || service->reference == 0)
        return storage.isEmpty() ? QStringLiteral(" domain=%1").arg(domainNumber(place)) : QString();
    return QStringLiteral(" ref=%1").arg(service->reference == 1 ? place.index
                                                                  : place.index - service->reference);
}

/// Each domain has a place of its own.
int Expectation::domainNumber(const Place &place) const
{
    int number = 0;
    for (quint8 line = 0; line <= homeOf(place); ++line) {
        for (const auto &each : store.getSubsByProperty(line, "datatype", "15")) {
            const bool isBefore =
                line < homeOf(place) || each.index < place.index ||
                (each.index == place.index && each.subindex < place.sub);
            const quint8 implementation = subOf({line, each.index, each.subindex}).implementation;
            number += isBefore && implementation != 1 && implementation != 3 ? 1 : 0;
        }
    }
    return number;
}

QString Expectation::boundsText(const SubIndexData &sub) const
{
    QString text;
    if (hasArray(sub.dataType))
        text = QStringLiteral(" default=") + numberText(sub.dataType, withoutNodeId(sub.defaultValue));
    if (number("limit_check") > 0 && sub.limitInEds && hasLimits(sub.dataType) && isWritten(sub))
        text += QStringLiteral(" limits=%1..%2")
                    .arg(numberText(sub.dataType, sub.lowLimit), numberText(sub.dataType, sub.upLimit));
    return text;
}

QStringList Expectation::virtualObjects() const
{
    QStringList rows;
    // The newer stack asks for none if no number of the first line is among them.
    static const QList<quint16> numbers = {2, 3, 4, 5, 6, 7, 8, 22};
    const quint8 first = store.getNodes().value(0);
    const auto all = store.getSubsByProperty(first, "implementation", "3");
    const bool hasNumber = std::any_of(all.begin(), all.end(), [this, first](const auto &place) {
        return numbers.contains(store.getSubIndexDatatype(first, place.index, place.subindex));
    });
    if (store.getGeneralSettingsValue("use_core_headers") == "V4" && !hasNumber)
        return rows;
    for (const quint8 line : served) {
        for (const quint16 index : store.getIndices(line, 0x1000, 0xFFFF)) {
            const QList<quint8> subs = store.getSubIndices(line, index, 0);
            QStringList entries;
            for (const quint8 each : subs) {
                const SubIndexData sub = subOf({line, index, each});
                if (sub.implementation == 3)
                    entries << QStringLiteral("virtual  %1 %2 %3")
                                   .arg(each)
                                   .arg(typeName(sub.dataType), attributes(sub, false));
            }
            if (!entries.isEmpty())
                rows << QStringLiteral("virtual %1 highest=%2").arg(index, 4, 16, QLatin1Char('0')).arg(subs.last())
                     << entries;
        }
    }
    return rows;
}

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
        {"sdoServers", [](const Expectation &e, quint8 line) { return qMax(e.store.getIndices(line, 0x1200, 0x127F).size(), e.isSet("canfd_supported") ? 0 : 1); }},
        {"nodeIds", [](const Expectation &e, quint8 line) { return e.number("co_node_id", line); }},
        {"sdoClients", [](const Expectation &e, quint8 line) { return e.store.getIndices(line, 0x1280, 0x12FF).size(); }},
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
    return texts;
}

QStringList Expectation::indications() const
{
    QStringList rows;
    for (const IndicationRow &row : kIndications) {
        const QString function = store.getGeneralSettingsValue(row.setting).trimmed();
        if (!function.isEmpty() && (!row.condition || number(row.condition) != 0))
            rows << QStringLiteral("indication coEvent%1 %2").arg(QLatin1String(row.pointer), function);
    }
    return rows;
}

// --- Start ---

QString Expectation::call(const char *name, quint8 line, const QVector<quint32> &arguments) const
{
    QString text = QStringLiteral("call ") + QLatin1String(name);
    if (multiLine && line != 0xFF)
        text += QStringLiteral(" line=%1").arg(line);
    for (const quint32 argument : arguments)
        text += QStringLiteral(" %1").arg(argument);
    return text;
}

QStringList Expectation::start(int variant) const
{
    constexpr quint8 noLine = 0xFF;
    const bool hasUds = number("udsserver_supported") == 1 || number("udsclient_supported") == 1;
    const bool isFd = number("canfd_supported") > 0;
    QStringList calls;
    if (number("new_init_structure") == 1)
        calls << call("commonStackInit", noLine, {static_cast<quint32>(lines.size())});
    if (hasUds)
        calls << call("udsStackInit_common", noLine, {static_cast<quint32>(number("udsserver_version"))});
    calls << call("coCanOpenStackVarInit", noLine);
    if (multiLine)
        loadParameters(calls);
    for (const quint8 line : multiLine ? served : lines) {
        if (multiLine && hasUds)
            calls << uds(line);
        calls << call("coOdInitOdPtr", line, {0});
        if (!multiLine && hasUds)
            calls << uds(line);
        startServices(calls, line, isFd && variant == 1);
        if (!multiLine)
            loadParameters(calls);
        startNmt(calls, line, variant == 1);
    }
    if (multiLine && routesAtRunTime())
        calls << call("coPdoNetworkRouting", noLine);
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
    QStringList calls;
    if (!multiLine && number("overwrite_predef") != 0) {
        setCobIds(calls, lines.first(), 0x1201, 0x127F, 2);
        setCobIds(calls, lines.first(), 0x1280, 0x12FF, 2);
        setCobIds(calls, lines.first(), 0x1400, 0x15FF, 1);
        setCobIds(calls, lines.first(), 0x1800, 0x19FF, 1);
    }
    for (const quint8 line : lines) {
        if (!multiLine || number("overwrite_predef", line) == 0)
            continue;
        setCobIds(calls, line, 0x1400, 0x15FF, 1);
        setCobIds(calls, line, 0x1800, 0x19FF, 1);
        setCobIds(calls, line, 0x1201, 0x127F, 2);
        setCobIds(calls, line, 0x1280, 0x12FF, 2);
    }
    return calls;
}

void Expectation::setCobIds(QStringList &calls, quint8 line, quint16 low, quint16 high, int subs) const
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
                const int nodeIds = store.getSubIndexValue(line, index, sub).toUpper().count("$NODEID");
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
            const QString name = Helper::substituteVariables(sub.varName, place.index, place.subindex);
            rows.insert(name, QStringLiteral("string %1 ").arg(name) + QString::fromLatin1(bytes.toHex()));
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

/// Value of subindex 0 of a static mapping, which no table of the project exceeds but as the mark of a
/// multiplexed PDO.
quint32 Expectation::mappedCount(quint8 line, quint16 index) const
{
    int rows = 1;
    for (const quint8 each : served) {
        for (const quint16 mapping : store.getIndices(each, 0x1600, 0x17FF) + store.getIndices(each, 0x1A00, 0x1BFF))
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
                  {index - 0x17FFu, value(line, index, 2), value(line, index, 3), value(line, index, 5),
                   value(line, index, 6), count});
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
                  {index - 0x13FFu, value(line, index, 2), value(line, index, 3), value(line, index, 5), count});
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
        return QStringLiteral("->") + Helper::substituteVariables(sub.varName, place.index, place.sub);
    if (!hasArray(sub.dataType) || sub.implementation > 2)
        return QStringLiteral("NULL");
    if (sub.implementation == 1)
        return QStringLiteral("constant ") + numberText(sub.dataType, sub.defaultValue);
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

/// TPDO on each line that sends the mapped variable on, 0 where none does; empty in a device that routes
/// nothing.
QString Expectation::routing(quint32 mapping) const
{
    if (!isRouted() && !isSet("sdo_routing"))
        return QString();
    QVector<quint32> numbers;
    for (const quint8 line : lines) {
        SubIndexData sub;
        quint32 tpdo = 0;
        if (isRouted() && store.getSubIndexData(line, mapping >> 16, mapping >> 8 & 0xFF, sub) &&
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
