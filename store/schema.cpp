// The tables of a project.
#include "store/schema.h"

#include "store/columns.h"
#include "support/numbers.h"

namespace
{

template <class Record, size_t N>
QString declare(const Column<Record> (&columns)[N])
{
    QStringList parts;
    for (const Column<Record> &field : columns)
        parts << QString::fromLatin1(field.name) + QLatin1Char(' ') +
                     QString::fromLatin1(field.type);
    return parts.join(QStringLiteral(", "));
}

QString tableColumns(const Schema::TableRow &row)
{
    if (row.columns)
        return QString::fromLatin1(row.columns);
    if (QLatin1String(row.name) == QLatin1String("Connections"))
        return declare(kConnectionColumns);
    if (QLatin1String(row.name) == QLatin1String("Signals"))
        return QStringLiteral("sigid integer primary key, ") + declare(kLineSignalColumns);
    return QStringLiteral("nodeId integer primary key, ") + declare(kNodeColumns);
}

QString lineColumns(const char *family)
{
    const QLatin1String name(family);
    if (name == QLatin1String("Objects"))
        return QStringLiteral("objectindex integer primary key, ") + declare(kIndexColumns);
    if (name == QLatin1String("SubObjects")) {
        return QStringLiteral("objectindex integer not null, subindex integer not null, ") +
               declare(kSubIndexColumns) + QStringLiteral(", UNIQUE(objectindex,subindex)");
    }
    if (name == QLatin1String("PGNs"))
        return declare(kPgnColumns);
    if (name == QLatin1String("SPNs"))
        return declare(kSpnColumns);
    if (name == QLatin1String("CANIDs"))
        return declare(kCanIdColumns);
    if (name == QLatin1String("DataElements"))
        return declare(kDataElementColumns);
    Q_ASSERT(name == QLatin1String("UDSSettings"));
    return QStringLiteral("sid integer not null, ") + declare(kUdsServiceColumns) +
           QStringLiteral(", UNIQUE(sid)");
}

} // namespace

// clang-format off
const Schema::TableRow Schema::kTables[14] = {
    {"Strings",             "id integer primary key, string text", false},
    {"Nodes",               nullptr, false}, // made from the column table of its record
    {"GeneralSettings",     "item text unique, value text", true},
    {"DescriptionSettings", "item text unique, value text", true},
    {"EnergyBusSettings",   "item text unique, value text", true},
    {"J1939Settings",       "item text unique, value text", true},
    {"MiscSettings",        "item text unique, value text", true},
    {"Connections",         nullptr, false}, // as well
    {"LockedMappings",      "node integer, pdoindex integer", false},
    {"LockedPDOs",          "node integer, pdoindex integer", false},
    {"VirtualNodes",        "virtualnodeid integer primary key, line integer, dbnodeid integer, name text", true},
    {"SignalGroups",        "sigid integer primary key, name text", true},
    {"Signals",             nullptr, true}, // as well
    {"Groups",              "name text, nodeidlist text", true},
};

const char *const Schema::kLineFamilies[6] = {
    "Objects", "SubObjects", "PGNs", "SPNs", "CANIDs", "DataElements",
};

const Schema::AddedColumns Schema::kFixedLadder[8] = {
    {"SubObjects0", "writedefaulttoeds integer"},
    {"SPNs0", "pos integer, bitsize integer, direction integer, slot_df integer"},
    {"SPNs1", "pos integer, bitsize integer, direction integer, slot_df integer"},
    {"SPNs2", "pos integer, bitsize integer, direction integer, slot_df integer"},
    {"SPNs3", "pos integer, bitsize integer, direction integer, slot_df integer"},
    {"SubObjects0", "cyclicread integer, dcfcomponent integer, changedbyuser integer, "
                    "wizardsource integer, sharedlines integer, managedbyolm integer, "
                    "signalid integer, nvstorage integer, metadata blob"},
    {"Nodes", "dcfpath text, tpdocnt integer, rpdocnt integer, ismaster integer, "
              "issyncproducer integer, issyncconsumer integer, ishbconsumer integer, "
              "isemergencyproducer integer, isemergencyconsumer integer, ismpdosupported integer, "
              "iscanopengateway integer, allpdosstatic integer, excludegeneration integer, "
              "generatedcf integer, prefix text, outputpath text, iconpath text, "
              "isbootupmanager integer, isconfigmanager integer, excludepdolinking integer, "
              "multilinedata integer, lssslave integer"},
    {"Signals", "transmittype integer, transmittrigger integer, eventtimer integer, "
                "syncvalue integer, syncstartvalue integer, routing integer"},
};

const Schema::AddedColumns Schema::kLineLadder[3] = {
    {"Objects", "fwsupported integer, device_class integer, metadata blob"},
    {"SubObjects", "writedefaulttoeds integer, cyclicread integer, dcfcomponent integer, "
                   "changedbyuser integer, wizardsource integer, denotation integer, "
                   "sharedlines integer, nvstorage integer, metadata blob, managedbyolm integer, "
                   "signalid integer"},
    {"PGNs", "issafe integer, srvt_ms integer, FD_TrailerFormat integer, FD_AssuranceType integer, "
             "FD_AssuranceDataSize integer"},
};
// clang-format on

QString Schema::table(const char *family, int line)
{
    return QString::fromLatin1(family) + QString::number(line);
}

int Schema::lineOfTable(const QString &table, const char *family)
{
    if (!table.startsWith(QLatin1String(family)))
        return -1;
    const QStringRef digits = table.midRef(int(qstrlen(family)));
    bool ok = false;
    const uint line = digits.toUInt(&ok);
    // As table() writes it, for "Objects07" is no table of a project.
    return ok && line <= 0xFF && digits == QString::number(line) ? int(line) : -1;
}

QString Schema::createTable(const TableRow &row, bool ifNotExists)
{
    return QStringLiteral("create table %1%2 (%3)")
        .arg(ifNotExists ? QStringLiteral("if not exists ") : QString(),
             QString::fromLatin1(row.name), tableColumns(row));
}

bool Schema::isAsToday(const QString &table, const QString &sql)
{
    QString columns;
    for (const TableRow &row : kTables) {
        if (table == QLatin1String(row.name))
            columns = tableColumns(row);
    }
    for (const char *family : kLineFamilies) {
        if (lineOfTable(table, family) >= 0)
            columns = lineColumns(family);
    }
    if (lineOfTable(table, "UDSSettings") >= 0)
        columns = lineColumns("UDSSettings");
    return !columns.isEmpty() && sql == QStringLiteral("CREATE TABLE %1 (%2)").arg(table, columns);
}

QStringList Schema::lineColumnNames(const char *family)
{
    QStringList names;
    const QStringList columns = lineColumns(family).split(QStringLiteral(", "));
    for (const QString &column : columns) {
        if (!column.startsWith(QLatin1String("UNIQUE")))
            names << column.section(QLatin1Char(' '), 0, 0);
    }
    return names;
}

QString Schema::nullableColumns(const char *family)
{
    QStringList result;
    const QStringList columns = lineColumns(family).split(QStringLiteral(", "));
    for (const QString &column : columns) {
        const bool isKey =
            column.contains(QLatin1String("primary")) || column.startsWith(QLatin1String("UNIQUE"));
        if (!isKey && !column.endsWith(QLatin1String("not null")))
            result << column;
    }
    return result.join(QStringLiteral(", "));
}

QString Schema::createLineTable(const char *family, int line)
{
    return QStringLiteral("create table if not exists %1 (%2)")
        .arg(table(family, line), lineColumns(family));
}
