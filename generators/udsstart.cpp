// Start-up code of UDS.
#include "generators/udsstart.h"

#include "generators/codefeatures.h"
#include "generators/generalsettings.h"
#include "generators/initstructversions.h"
#include "generators/projectlines.h"
#include "generators/textwriter.h"
#include "store/objectdatabase.h"
#include "support/numbers.h"
#include "support/udssiddefinitions.h"

#include <algorithm>
#include <iterator>

namespace
{

using namespace UdsStart;

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

/// A setting as a number of C: a leading zero would make it octal there, and what is not a number
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

/// The elements of a comma list, without those that are not numbers of 8 bits.
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

QVector<Service> readSessions(const ObjectDataBase &store, quint8 line)
{
    QVector<Service> services;
    if (store.getUDSServiceActiveCnt(line) == 0)
        return services;
    const QMap<quint8, QString> names = UDSSIDDefinitions::getSIDNames();
    for (auto name = names.begin(); name != names.end(); ++name) {
        if (!store.isUDSServiceActive(line, name.key()))
            continue;
        Service service = {name.key(), name.value(), {}};
        const auto sessions = byteList(store.getUDSServiceSessions(line, name.key()));
        for (const quint8 session : sessions)
            service.list << sessionWord(session);
        services << service;
    }
    return services;
}

QVector<Service> readSecurity(const ObjectDataBase &store, quint8 line,
                              const QVector<Service> &active)
{
    QVector<Service> services;
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

void writeRows(TextWriter &out, const QVector<Service> &services)
{
    for (const Service &service : services) {
        out.parts("\t\t/* ", service.name, " */\n");
        // Deliberate: C99 has no empty initialiser, so that an empty list holds a 0 that its length
        // does not count; held by tst_golden.
        const QString list =
            service.list.isEmpty() ? QStringLiteral("0u") : service.list.join(QStringLiteral(", "));
        const QStringList subFunctions = subFunctionsOf(service.sid);
        for (const QString &subFunction : subFunctions) {
            out.block(R"(
		{ $service$, $subFunction$,
			{$list$}, $length$u},
)",
                      {{"service", twoHexDigits(service.sid)},
                       {"subFunction", subFunction},
                       {"list", list},
                       {"length", service.list.size()}});
        }
    }
    out.raw("\n\t};\n\n");
}

/// One number a line of the device; 0 for all without a client.
QString clientCounts(const ObjectDataBase &store)
{
    const GeneralSettings settings(store);
    const bool hasClient = readCodeFeatures(store).hasUdsClient();
    QString counts;
    const QList<quint8> lines = readProjectLines(store).numbers;
    for (const quint8 line : lines) {
        const QString count = hasClient ? settings.ofLine("uds_client_cnt", line) : QString();
        counts += QStringLiteral("%1,").arg(numberText(count));
    }
    return counts;
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

void writeLineStructure(TextWriter &out, const ObjectDataBase &store, const Tables &tables)
{
    const GeneralSettings settings(store);
    const quint8 line = tables.line;
    out.block(R"(
	/* UDS CAN-IDs for line $line$ */
	const UDS_CONFIG_INIT_VAL_T	udsLine$line$ = {
)",
              {{"line", line}});
    for (const char *key : kUdsIdentifiers)
        out.parts("\t\t", numberText(settings.ofLine(key, line)), "u,\n");
    out.raw(addressingFormat(settings.ofLine("uds_ext_addressing", line)));
    const bool isActive = Numbers::toUIntByPrefix(settings.ofLine("uds_server_active", line)) != 0;
    out.block(R"(
		$sessions$,
		$sessionRows$,
		$security$,
		$securityRows$,
		$active$
	};

)",
              {{"sessions", tables.sessionName()},
               {"sessionRows", countRows(tables.sessions)},
               {"security", tables.securityName()},
               {"securityRows", countRows(tables.security)},
               {"active", isActive ? "CO_TRUE" : "CO_FALSE"}});
}

} // namespace

QString UdsStart::Tables::sessionName() const
{
    return sessions.isEmpty() ? QStringLiteral("NULL")
                              : QStringLiteral("udsSessionTbl_%1").arg(line);
}

QString UdsStart::Tables::securityName() const
{
    return security.isEmpty() ? QStringLiteral("NULL")
                              : QStringLiteral("securityLvlTbl_%1").arg(line);
}

UdsStart::Tables UdsStart::readTables(const ObjectDataBase &store, quint8 line)
{
    const QVector<Service> sessions = readSessions(store, line);
    return {line, sessions, readSecurity(store, line, sessions)};
}

int UdsStart::countRows(const QVector<Service> &services)
{
    int rows = 0;
    for (const Service &service : services)
        rows += subFunctionsOf(service.sid).size();
    return rows;
}

QString UdsStart::sessionWord(quint8 session)
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

void UdsStart::writeSessionTable(TextWriter &out, const Tables &tables)
{
    if (tables.sessions.isEmpty())
        return;
    out.parts("\tstatic UDS_REQ_SESSION_TYPE_TABLE_T\t", tables.sessionName(), "[] = {\n");
    writeRows(out, tables.sessions);
}

void UdsStart::writeSecurityTable(TextWriter &out, const Tables &tables)
{
    if (tables.security.isEmpty())
        return;
    out.parts("\tstatic UDS_SECURITY_LEVEL_TABLE_T\t", tables.securityName(), "[] = {\n");
    writeRows(out, tables.security);
}

void UdsStart::writeStructures(TextWriter &out, const ObjectDataBase &store,
                               const QList<quint8> &startedLines)
{
    out.block(
        R"(
	/* UDS common initialization structure */ 
	const UDS_SERVICE_INIT_VAL_T udsServiceInitVars = {
		$version$u,
		{$clients$},
	};

)",
        {{"version", initStructVersion(InitStruct::Uds, store)}, {"clients", clientCounts(store)}});
    QVector<Tables> tables;
    for (const quint8 line : startedLines)
        tables << readTables(store, line);
    for (const Tables &ofLine : qAsConst(tables)) {
        writeSessionTable(out, ofLine);
        if (!ofLine.sessions.isEmpty())
            out.raw("\n");
        writeSecurityTable(out, ofLine);
    }
    for (const Tables &ofLine : qAsConst(tables))
        writeLineStructure(out, store, ofLine);
}

void UdsStart::writeCommonCall(TextWriter &out)
{
    out.parts("\t/* UDS common initialization */ \n"
              "\tretVal = udsStackInit_common(&udsServiceInitVars);\n",
              kReturnTest);
}

void UdsStart::writeLineCall(TextWriter &out, quint8 line, bool multi)
{
    out.raw("\t/* UDS line initialization */ \n");
    out.fill(multi ? "\tretVal = udsStackInit_line($line$, &udsLine$line$);\n"
                   : "\tretVal = udsStackInit_line(&udsLine$line$);\n",
             {{"line", line}});
    out.raw(kReturnTest);
}
