// Texts that several generators of start-up code share.
#include "generators/commongeneratorhelper.h"

#include "generators/generalsettings.h"
#include "generators/projectlines.h"
#include "store/linetype.h"
#include "support/udssiddefinitions.h"

#include <QStringList>
#include <QVector>

#include <algorithm>
#include <iterator>

namespace
{

constexpr Word kCommonHead = {"CO_COMMON_INIT_VAL_T    commonInitVars = {\n",
                              "CORE_COMMON_INIT_VAL_T    commonInitVars = {\n"};
constexpr Word kBufferCounts[] = {
    {"\t{ CO_REC_BUFFER_COUNTS },\n", "\t{ CORE_REC_BUFFER_COUNTS },\n"},
    {"\t{ CO_TR_BUFFER_COUNTS },\n", "\t{ CORE_TR_BUFFER_COUNTS },\n"},
    {"\t{ CO_COB_COUNTS }, \n", "\t{ CORE_COB_COUNTS }, \n"},
};

constexpr const char *kReturnTest = "\tif (retVal != RET_OK) {\n"
                                    "\t\treturn(retVal);\n"
                                    "\t}\n"
                                    "\n";

// clang-format off
constexpr const char *kUdsIdentifiers[] = {         // order of the members of the structure
    "uds_physical_request_id",
    "uds_physical_response_id",
    "uds_functional_request_id",
    "uds_physical_request_ext_addr",
    "uds_physical_response_ext_addr",
    "uds_functional_request_ext_addr",
};

/// A service that has a row for each of its sub-functions.
struct SubFunctionRow {
    UDS::SID sid;
    const char *name;
};

constexpr SubFunctionRow kSubFunctions[] = {
    {UDS::SID::ECUReset,       "UDS_SUB_RESET_HR"},
    {UDS::SID::ECUReset,       "UDS_SUB_RESET_KOFFONR"},
    {UDS::SID::ECUReset,       "UDS_SUB_RESET_SR"},
    {UDS::SID::RoutineControl, "UDS_ROUTINE_CTRL_START"},
    {UDS::SID::RoutineControl, "UDS_ROUTINE_CTRL_STOP"},
    {UDS::SID::RoutineControl, "UDS_ROUTINE_CTRL_REQ_RESULT"},
};

struct SessionRow {
    quint8 session;
    const char *name;
};

constexpr SessionRow kSessions[] = {
    {1,  "UDS_SUB_SESSION_DS"},
    {2,  "UDS_SUB_SESSION_PRGS"},
    {3,  "UDS_SUB_SESSION_EXTDS"},
    {4,  "UDS_SUB_SESSION_SSDS"},
    {64, "UDS_SUB_SESSION_MANU_40"},
};
// clang-format on

QString twoHexDigits(int number)
{
    return QStringLiteral("0x%1").arg(number, 2, 16, QLatin1Char('0'));
}

/// A setting as a number of C: a leading zero would make it octal there, and what is no number
/// would not compile.
QString numberText(const QString &setting)
{
    bool isNumber = false;
    const quint32 number = Numbers::toUIntByPrefix(setting, &isNumber);
    const QString text = setting.trimmed();
    if (isNumber && text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        return text;
    return QString::number(number);
}

/// The elements of a comma list, without those that are no number of 8 bits.
QVector<quint8> byteList(const QString &list)
{
    QVector<quint8> numbers;
    const QStringList elements = list.split(QLatin1Char(','));
    for (const QString &element : elements) {
        bool isNumber = false;
        const quint32 number = Numbers::toUIntByPrefix(element, &isNumber);
        if (isNumber && number <= 0xFF)
            numbers << static_cast<quint8>(number);
    }
    return numbers;
}

/// An active service of a line and what its rows list, each element as C text.
struct Service {
    quint8 sid;
    QString name;
    QStringList list;
};

bool hasUDS(const ObjectDataBase &store)
{
    const GeneralSettings settings(store);
    return settings.decimal("udsserver_supported") == 1 ||
           settings.decimal("udsclient_supported") == 1;
}

QVector<Service> sessionServices(const ObjectDataBase &store, quint8 line)
{
    QVector<Service> services;
    if (!hasUDS(store) || store.getUDSServiceActiveCnt(line) == 0)
        return services;
    const QMap<quint8, QString> names = UDSSIDDefinitions::getSIDNames();
    for (auto name = names.begin(); name != names.end(); ++name) {
        if (!store.isUDSServiceActive(line, name.key()))
            continue;
        Service service = {name.key(), name.value(), {}};
        const auto sessions = byteList(store.getUDSServiceSessions(line, name.key()));
        for (const quint8 session : sessions)
            service.list << CommonGeneratorHelper::convertSessionToStackDefine(session);
        services << service;
    }
    return services;
}

QVector<Service> securityServices(const ObjectDataBase &store, quint8 line)
{
    QVector<Service> services;
    const QVector<Service> active = sessionServices(store, line);
    for (const Service &service : active) {
        const auto levels = byteList(store.getUDSServiceUserLevels(line, service.sid));
        if (levels.isEmpty())
            continue;
        services << Service{service.sid, service.name, {}};
        for (const quint8 level : levels)
            services.last().list << QString::number(level);
    }
    return services;
}

QStringList subFunctionsOf(quint8 sid)
{
    QStringList names;
    for (const SubFunctionRow &row : kSubFunctions) {
        if (static_cast<quint8>(row.sid) == sid)
            names << QLatin1String(row.name);
    }
    return names.isEmpty() ? QStringList(QStringLiteral("0u")) : names;
}

int countRows(const QVector<Service> &services)
{
    int rows = 0;
    for (const Service &service : services)
        rows += subFunctionsOf(service.sid).size();
    return rows;
}

QString tableText(const QString &head, const QVector<Service> &services)
{
    if (services.isEmpty())
        return QString();
    QString text = head;
    for (const Service &service : services) {
        text += QStringLiteral("\t\t/* %1 */\n").arg(service.name);
        // Deliberate: C99 has no empty initialiser, so that an empty list holds a 0 that its length
        // does not count; held by tst_golden.
        const QString list =
            service.list.isEmpty() ? QStringLiteral("0u") : service.list.join(QStringLiteral(", "));
        const QStringList subFunctions = subFunctionsOf(service.sid);
        for (const QString &subFunction : subFunctions) {
            text += QStringLiteral("\t\t{ %1, %2,\n").arg(twoHexDigits(service.sid), subFunction) +
                    QStringLiteral("\t\t\t{%1}, %2u},\n")
                        .arg(list, QString::number(service.list.size()));
        }
    }
    return text + QStringLiteral("\n\t};\n\n");
}

QString addressingFormat(const QString &setting)
{
    switch (Numbers::toUIntDecimal(setting)) {
    case 1:
        return QStringLiteral("\t\tISOTP_FORMAT_NORMAL_FIXED,\n");
    case 2:
        return QStringLiteral("\t\tISOTP_FORMAT_EXTENDED,\n");
    default:
        return QStringLiteral("\t\tISOTP_FORMAT_NORMAL,\n");
    }
}

Dialect v4Words()
{
    Dialect words;
    words.preferV4 = true;
    return words;
}

} // namespace

CommonGeneratorHelper::CommonGeneratorHelper(ObjectDataBase *database, QObject *parent)
    : CommonGeneratorHelper(database, Dialect(), parent)
{
}

CommonGeneratorHelper::CommonGeneratorHelper(ObjectDataBase *database, const Dialect &words,
                                             QObject *parent)
    : QObject(parent), store(database), dialect(words)
{
}

CommonGeneratorHelperV4::CommonGeneratorHelperV4(ObjectDataBase *database, QObject *parent)
    : CommonGeneratorHelper(database, v4Words(), parent)
{
}

quint8 CommonGeneratorHelper::getInitStructVersion(InitStructTypes type) const
{
    return initStructVersion(type, *store);
}

QString CommonGeneratorHelper::protocolOfLine(quint8 line) const
{
    QString protocol = QStringLiteral("MP_PROT_TYPE_UNKNOWN");
    switch (readLineType(*store, line)) {
    case LineType::CANopen:
        protocol = QStringLiteral("MP_PROT_TYPE_CANOPEN");
        break;
    case LineType::J1939:
        protocol = QStringLiteral("MP_PROT_TYPE_J1939");
        break;
    case LineType::RawCan:
        protocol = QStringLiteral("MP_PROT_TYPE_RAWCAN");
        break;
    case LineType::CANopenAndJ1939:
        protocol = QStringLiteral("MP_PROT_TYPE_J1939 | MP_PROT_TYPE_CANOPEN");
        break;
    }
    return hasUDS(*store) ? protocol + QStringLiteral(" | MP_PROT_TYPE_UDS") : protocol;
}

QString CommonGeneratorHelper::getCommonInitVars() const
{
    const QList<quint8> lines = readProjectLines(*store).numbers;
    QStringList protocols;
    QStringList canFdModes;
    for (const quint8 line : lines) {
        protocols << protocolOfLine(line);
        canFdModes << QStringLiteral("CO_TRUE");
    }
    QString text = QString::fromLatin1(dialect.of(kCommonHead));
    text += QStringLiteral("\t%1u,\n").arg(lines.size());
    for (const Word &word : kBufferCounts)
        text += QLatin1String(dialect.of(word));
    text += QStringLiteral("\t{ %1}").arg(protocols.join(QStringLiteral(", ")));
    if (hasUDS(*store)) {
        text += QStringLiteral(",\n"
                               "\t{ ISOTP_CLIENT_COUNTS },\n"
                               "\t{ ISOTP_SERVER_COUNTS },\n");
    }
    if (GeneralSettings(*store).decimal("canfd_supported") >= 1) {
        // Deliberate: the element in front ends in a comma only with UDS, and two commas would not
        // compile; held by tst_golden.
        if (!hasUDS(*store))
            text += QStringLiteral(",\n");
        text += QStringLiteral("\t{ %1 }\n").arg(canFdModes.join(QStringLiteral(", ")));
    }
    return text + QStringLiteral("};\n\n");
}

QString CommonGeneratorHelper::getUDSInit_common() const
{
    if (!hasUDS(*store))
        return QString();
    return QStringLiteral("\t/* UDS common initialization */ \n"
                          "\tretVal = udsStackInit_common(&udsServiceInitVars);\n") +
           QLatin1String(kReturnTest);
}

QString CommonGeneratorHelper::getUDSInit_lines(quint8 line, bool multi) const
{
    if (!hasUDS(*store))
        return QString();
    const QString number = QString::number(line);
    const QString call =
        multi
            ? QStringLiteral("\tretVal = udsStackInit_line(%1, &udsLine%2);\n").arg(number, number)
            : QStringLiteral("\tretVal = udsStackInit_line(&udsLine%1);\n").arg(number);
    return QStringLiteral("\t/* UDS line initialization */ \n") + call + QLatin1String(kReturnTest);
}

QString CommonGeneratorHelper::clientCounts() const
{
    const GeneralSettings settings(*store);
    const bool hasClient = settings.decimal("udsclient_supported") == 1;
    QString counts;
    const QList<quint8> lines = readProjectLines(*store).numbers;
    for (const quint8 line : lines) {
        const QString count = hasClient ? settings.ofLine("uds_client_cnt", line) : QString();
        counts += QStringLiteral("%1,").arg(numberText(count));
    }
    return counts;
}

QString CommonGeneratorHelper::lineStructure(quint8 line) const
{
    const GeneralSettings settings(*store);
    const QString number = QString::number(line);
    QString text = QStringLiteral("\t/* UDS CAN-IDs for line %1 */\n").arg(number) +
                   QStringLiteral("\tconst UDS_CONFIG_INIT_VAL_T\tudsLine%1 = {\n").arg(number);
    for (const char *key : kUdsIdentifiers)
        text += QStringLiteral("\t\t%1u,\n").arg(numberText(settings.ofLine(key, line)));
    text += addressingFormat(settings.ofLine("uds_ext_addressing", line));
    const QString values[] = {getUDSSessionTableName(line), getUDSSessionTableSize(line),
                              getUDSSecurityTableName(line), getUDSSecurityTableSize(line)};
    for (const QString &value : values)
        text += QStringLiteral("\t\t%1,\n").arg(value);
    text += Numbers::toUIntByPrefix(settings.ofLine("uds_server_active", line)) != 0
                ? QStringLiteral("\t\tCO_TRUE\n")
                : QStringLiteral("\t\tCO_FALSE\n");
    return text + QStringLiteral("\t};\n"
                                 "\n");
}

QString CommonGeneratorHelper::getUDSInitStructures() const
{
    return getUDSInitStructures(readProjectLines(*store).numbers);
}

QString CommonGeneratorHelper::getUDSInitStructures(const QList<quint8> &startedLines) const
{
    if (!hasUDS(*store))
        return QString();
    QString text = QStringLiteral("\t/* UDS common initialization structure */ \n"
                                  "\tconst UDS_SERVICE_INIT_VAL_T udsServiceInitVars = {\n") +
                   QStringLiteral("\t\t%1u,\n").arg(getInitStructVersion(InitStruct::Uds)) +
                   QStringLiteral("\t\t{%1},\n").arg(clientCounts()) +
                   QStringLiteral("\t};\n"
                                  "\n");
    for (const quint8 line : startedLines) {
        const QString sessions = getUDSSessionTable(line);
        if (!sessions.isEmpty())
            text += sessions + QLatin1Char('\n') + getUDSSecurityTable(line);
    }
    for (const quint8 line : startedLines)
        text += lineStructure(line);
    return text;
}

QString CommonGeneratorHelper::getUDSSessionTable(quint8 line) const
{
    return tableText(
        QStringLiteral("\tstatic UDS_REQ_SESSION_TYPE_TABLE_T\tudsSessionTbl_%1[] = {\n").arg(line),
        sessionServices(*store, line));
}

QString CommonGeneratorHelper::getUDSSecurityTable(quint8 line) const
{
    return tableText(
        QStringLiteral("\tstatic UDS_SECURITY_LEVEL_TABLE_T\tsecurityLvlTbl_%1[] = {\n").arg(line),
        securityServices(*store, line));
}

QString CommonGeneratorHelper::getUDSSessionTableName(quint8 line) const
{
    return sessionServices(*store, line).isEmpty() ? QStringLiteral("NULL")
                                                   : QStringLiteral("udsSessionTbl_%1").arg(line);
}

QString CommonGeneratorHelper::getUDSSecurityTableName(quint8 line) const
{
    return securityServices(*store, line).isEmpty() ? QStringLiteral("NULL")
                                                    : QStringLiteral("securityLvlTbl_%1").arg(line);
}

QString CommonGeneratorHelper::getUDSSessionTableSize(quint8 line) const
{
    return QString::number(countRows(sessionServices(*store, line)));
}

QString CommonGeneratorHelper::getUDSSecurityTableSize(quint8 line) const
{
    return QString::number(countRows(securityServices(*store, line)));
}

QString CommonGeneratorHelper::convertSessionToStackDefine(quint8 session)
{
    const auto row = std::find_if(std::begin(kSessions), std::end(kSessions),
                                  [session](const SessionRow &r) { return r.session == session; });
    if (row != std::end(kSessions))
        return QString::fromLatin1(row->name);
    constexpr quint8 kFirstOfManufacturer = 64;
    if (session > kFirstOfManufacturer) {
        return QStringLiteral("UDS_SUB_SESSION_MANU_40 + ") +
               twoHexDigits(session - kFirstOfManufacturer);
    }
    return twoHexDigits(session);
}
