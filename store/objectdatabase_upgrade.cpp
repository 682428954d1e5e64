// What opening does to a project that an older tool made.
#include "store/objectdatabase_p.h"
#include "support/logging.h"
#include "support/numbers.h"
#include "support/udssiddefinitions.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace
{

// Versions of the schema from which on a project has what the step brings.
constexpr quint32 kVersionPgnDirections = 100;
constexpr quint32 kVersionUniqueSubObjects = 101;
constexpr quint32 kVersionUniqueUds = 103;

constexpr quint8 kFirstSid = 16;
constexpr quint8 kLastSid = 254;

QString translated(const char *text)
{
    return QCoreApplication::translate("ObjectDataBase", text);
}

} // namespace

bool StorePrivate::createMissing(const QString &table, const QString &sql)
{
    return tablesOfToday.contains(table) || exec(sql);
}

void StorePrivate::addMissingColumns(const QString &table, const QString &columns)
{
    if (tablesOfToday.contains(table))
        return;
    const QStringList present = columnNames(table);
    if (present.isEmpty())
        return; // no such table
    const QStringList wanted = columns.split(QStringLiteral(", "));
    for (const QString &column : wanted) {
        const QString name = column.section(QLatin1Char(' '), 0, 0);
        if (!present.contains(name, Qt::CaseInsensitive))
            exec(QStringLiteral("alter table %1 add %2").arg(table, column));
    }
}

bool StorePrivate::rebuildTable(const char *family, int line, bool stopAtFailure)
{
    const QString table = Schema::table(family, line);
    const QString old = table + QStringLiteral("_old");
    // Copied by name, because columns that came one by one stand in another order; of rows that are
    // not unique the first one counts, as it did for every reader.
    QStringList columns = columnNames(table);
    exec(QStringLiteral("DROP TABLE IF EXISTS %1").arg(old));
    bool done = exec(QStringLiteral("ALTER TABLE %1 RENAME TO %2").arg(table, old));
    if (!done && stopAtFailure)
        return false;
    done = exec(Schema::createLineTable(family, line));
    if (!done && stopAtFailure)
        return false;
    const QStringList known = columnNames(table);
    for (int i = columns.size() - 1; i >= 0; --i) {
        if (!known.contains(columns.at(i)))
            columns.removeAt(i);
    }
    const QString list = columns.join(QLatin1Char(','));
    // An empty cell where none may be is no reason to lose the row.
    QString cells = list;
    cells.replace(QRegularExpression(QStringLiteral("\\b(datatype|accesstype|implementation)\\b")),
                  QStringLiteral("ifnull(\\1,0)"));
    done =
        !columns.isEmpty() && exec(QStringLiteral("INSERT OR IGNORE INTO %1 (%2) SELECT %4 FROM %3")
                                       .arg(table, list, old, cells));
    if (!done && stopAtFailure)
        return false;
    return exec(QStringLiteral("DROP TABLE IF EXISTS %1").arg(old));
}

bool ObjectDataBase::upgradeOpenedProject()
{
    beginBatch();
    const bool settingsUsable = createMissingTables();
    runLadder();
    if (settingsUsable)
        createMissingLineZeroTables();
    const bool rightTool = checkTool();
    if (rightTool)
        repairOpenedProject();
    d->tablesOfToday.clear();
    commitBatch();
    return rightTool;
}

bool ObjectDataBase::createMissingTables()
{
    bool miscUsable = false;
    for (const Schema::TableRow &row : Schema::kTables) {
        const QLatin1String name(row.name);
        // Deliberate: a project that lacks the table gets it with a key column of its own, unlike a
        // new project; both forms are in the field. Held by tst_projectlifecycle.
        const QString sql =
            name == QLatin1String("Groups")
                ? QStringLiteral("create table if not exists Groups "
                                 "(groupid integer primary key, name text, nodeidlist text)")
                : Schema::createTable(row, true);
        const bool done = row.createdOnOpen && d->createMissing(name, sql);
        if (name == QLatin1String("MiscSettings"))
            miscUsable = done;
    }
    return miscUsable;
}

void ObjectDataBase::runLadder()
{
    for (const Schema::AddedColumns &row : Schema::kFixedLadder)
        d->addMissingColumns(QString::fromLatin1(row.table), QLatin1String(row.columns));

    const quint32 version =
        Numbers::toUIntDecimal(getMiscSettingsValue(QStringLiteral("DatabaseVersion")));
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines) {
        for (const Schema::AddedColumns &row : Schema::kLineLadder)
            d->addMissingColumns(Schema::table(row.table, line), QLatin1String(row.columns));
        // Without what still is missing no row could be read, such as the signals of a fifth line.
        for (const char *family : Schema::kLineFamilies)
            d->addMissingColumns(Schema::table(family, line), Schema::nullableColumns(family));
        if (version < kVersionUniqueSubObjects)
            d->rebuildTable("SubObjects", line, true);
        if (version < kVersionUniqueUds)
            d->rebuildTable("UDSSettings", line, false);
    }
    d->addMissingColumns(QStringLiteral("Connections"), QStringLiteral("priority integer"));
    d->forgetServicesAndSignals();
}

void ObjectDataBase::createMissingLineZeroTables()
{
    for (const Schema::TableRow &row : Schema::kTables) {
        const QLatin1String name(row.name);
        if (name == QLatin1String("Connections") || name == QLatin1String("LockedMappings") ||
            name == QLatin1String("LockedPDOs"))
            d->createMissing(name, Schema::createTable(row, true));
    }
    for (const char *family : {"PGNs", "SPNs", "CANIDs", "DataElements"})
        d->createMissing(Schema::table(family, 0), Schema::createLineTable(family, 0));
}

bool ObjectDataBase::checkTool()
{
    const QString tool = QCoreApplication::applicationName();
    const QString savedBy = getMiscSettingsValue(QStringLiteral("SaveToolType"));
    if (savedBy.isEmpty() || savedBy == tool || tool == translated("CAN Tessarine"))
        return true;
    bool holdsCanopen = false;
    bool holdsJ1939 = false;
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines) {
        const quint32 type = Numbers::toUIntByPrefix(
            getGeneralSettingsValue(QStringLiteral("line%1type").arg(line)));
        holdsCanopen = holdsCanopen || type == 1 || type == 5;
        holdsJ1939 = holdsJ1939 || type == 2 || type == 5;
    }
    const bool wrong = (tool == translated("J1939 Tessarine") && holdsCanopen) ||
                       (tool == translated("CANopen Tessarine") && holdsJ1939);
    if (!wrong)
        return true;
    emit wrongTool();
    d->lastError = translated("File was not created with this tool.");
    return false;
}

void ObjectDataBase::repairOpenedProject()
{
    repairLines();
    const QList<quint8> lines = getNodes();
    const quint32 version =
        Numbers::toUIntDecimal(getMiscSettingsValue(QStringLiteral("DatabaseVersion")));
    for (const quint8 line : lines) {
        const QString type = getGeneralSettingsValue(QStringLiteral("line%1type").arg(line));
        if (version < kVersionPgnDirections && type == QLatin1String("2"))
            updatePGNdirectionAttributes(line);
    }
    if (d->projectFile.endsWith(QLatin1String("tsep")))
        morphRelativeEdsToAbsolute();
    completeProject();
}

/// What no line is without, whatever wrote the project.
void ObjectDataBase::repairLines()
{
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines) {
        repairLineType(line);
        repairUdsServices(line);
    }
}

void ObjectDataBase::completeProject()
{
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines)
        addDefaultDescriptionSettings(line);
    fixFaultyPGNSPNCount();
    fixGeneralsettingsLineCount();
}

void ObjectDataBase::repairLineType(quint8 line)
{
    const QString key = QStringLiteral("line%1type").arg(line);
    if (!getGeneralSettingsValue(key).isEmpty())
        return;
    // Deliberate: the maker is looked for under the version key, where very old projects hold it;
    // held by tst_projectlifecycle.
    const QString maker = getMiscSettingsValue(QStringLiteral("CreateToolVersion"));
    bool isJ1939 = maker == QLatin1String("J1939 Tessarine");
    if (!isJ1939 && maker != QLatin1String("CANopen Tessarine"))
        isJ1939 = getIndices(line, ObjectRanges::kAll).size() <=
                  getPGNs(line, Direction::kBoth, false).size();
    setGeneralSettingsValue(key, isJ1939 ? QStringLiteral("2") : QStringLiteral("1"));
}

void ObjectDataBase::repairUdsServices(quint8 line)
{
    d->createMissing(Schema::table("UDSSettings", line),
                     Schema::createLineTable("UDSSettings", line));
    {
        Statement active(*d,
                         QStringLiteral("select count(*) from %1 where active != 0 "
                                        "and sid between ? and ?")
                             .arg(Schema::table("UDSSettings", line)),
                         {kFirstSid, kLastSid});
        if (active.next() && active.value(0).toInt() > 0)
            return;
    }
    for (const UDS::ServiceInSessions &service : UDS::kAllServices) {
        setUDSServiceActive(line, quint8(service.sid), true);
        setUDSServiceSessions(line, quint8(service.sid), QString::fromLatin1(service.sessions));
    }
}

void ObjectDataBase::morphRelativeEdsToAbsolute()
{
    QDir::setCurrent(QFileInfo(d->projectFile).absolutePath());
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines) {
        NODE_DATA_T node;
        if (!getNodeData(line, node) || node.edsPath.isEmpty() ||
            QFileInfo(node.edsPath).isAbsolute())
            continue;
        node.edsPath = QFileInfo(node.edsPath).absoluteFilePath();
        addNode(line, node);
    }
}
