// Nodes: the lines of the device.
#include "store/objectdatabase_p.h"
#include "support/logging.h"
#include "support/numbers.h"
#include "support/objectindex.h"
#include "support/udssiddefinitions.h"

#include <algorithm>

namespace
{

constexpr quint8 kScratchLine = 254;

Cells nodeCells(const NodeData &data, int count)
{
    Cells cells;
    for (int i = 0; i < count; ++i)
        cells << kNodeColumns[i].get(data);
    return cells;
}

QString assignments(int count)
{
    QStringList parts;
    for (int i = 0; i < count; ++i)
        parts << QLatin1String(kNodeColumns[i].name) + QStringLiteral("=?");
    return parts.join(QLatin1Char(','));
}

} // namespace

bool ObjectDataBase::existNode(quint8 line) const
{
    return Statement(*d, QStringLiteral("select nodeId from Nodes where nodeId = ?"), {line})
        .next();
}

QList<quint8> ObjectDataBase::getNodes() const
{
    QList<quint8> lines;
    Statement statement(*d, QStringLiteral("select nodeId from Nodes order by nodeId"));
    while (statement.next()) {
        const qlonglong line = statement.value(0).toLongLong();
        if (line >= 0 && line <= 0xFF)
            lines << static_cast<quint8>(line);
    }
    return lines;
}

bool ObjectDataBase::getNodeName(quint8 line, QString &name) const
{
    Statement statement(*d, QStringLiteral("select name from Nodes where nodeId = ?"), {line});
    if (!statement.next())
        return false;
    name = statement.value(0).toString();
    return true;
}

bool ObjectDataBase::getNodeData(quint8 line, NODE_DATA_T &data) const
{
    Statement statement(
        *d, QStringLiteral("select %1 from Nodes where nodeId = ?").arg(columnList(kNodeColumns)),
        {line});
    if (!statement.next())
        return false;
    int i = 0;
    for (const Column<NodeData> &field : kNodeColumns)
        field.set(data, statement.value(i++));
    return true;
}

bool ObjectDataBase::addNode(quint8 line, const NODE_DATA_T &data)
{
    if (d->lockWriteAccess)
        return false;
    beginBatch();
    if (existNode(line)) {
        d->exec(QStringLiteral("update Nodes set %1 where nodeId = ?")
                    .arg(assignments(kNodeUpdatedColumns)),
                nodeCells(data, kNodeUpdatedColumns) << line);
    } else {
        constexpr int count = static_cast<int>(std::size(kNodeColumns));
        d->exec(QStringLiteral("insert into Nodes (nodeId,%1) values(?,%2)")
                    .arg(columnList(kNodeColumns), placeHolders(count)),
                Cells{line} + nodeCells(data, count));
    }
    bool created = true;
    for (const char *family : Schema::kLineFamilies)
        created = d->exec(Schema::createLineTable(family, line)) && created;
    addLineSettings(line);
    commitBatch();

    ChangeSet change;
    change.kind = ChangeSet::Kind::AddNode;
    change.line = line;
    emit updateNotify(change);
    return created;
}

void ObjectDataBase::addLineSettings(quint8 line)
{
    if (line != kScratchLine) {
        // Widens the comma lists, so that a new line starts with the values of the highest one.
        const QStringList keys = getGeneralLineDependentSettings();
        for (const QString &key : keys)
            setGeneralSettingsValueLine(key, getGeneralSettingsValueLine(key, line), line);
        addDefaultDescriptionSettings(line);
    }
    d->exec(Schema::createLineTable("UDSSettings", line));
    for (const UDS::SID sid : UDS::kOfNewLine)
        setUDSServiceActive(line, quint8(sid), true);
    for (const UDS::SID sid : UDS::kOfNewLine)
        setUDSServiceSessions(line, quint8(sid), QString::fromLatin1(UDS::kSessionsOfNewLine));
}

bool ObjectDataBase::delNode(quint8 line)
{
    if (d->lockWriteAccess)
        return false;
    beginBatch();
    // Every save deletes the scratch lines, which are hardly ever there: a list of the project that
    // is as long must not lose two elements each time.
    const bool hasSettings = line < kScratchLine || existNode(line);
    for (const char *family : Schema::kLineFamilies) {
        const QString table = Schema::table(family, line);
        d->exec(QStringLiteral("DROP TABLE IF EXISTS %1").arg(table));
        d->keyWrites.remove(table);
    }
    d->exec(QStringLiteral("DROP TABLE IF EXISTS %1").arg(Schema::table("UDSSettings", line)));
    const bool deleted = d->exec(QStringLiteral("delete from Nodes where nodeId = ?"), {line});
    if (hasSettings) {
        removeNodeInDescriptionSettings(line);
        removeNodeInGeneralSettings(line);
    }
    removeConnnection(line);
    d->deleteSignals(QStringLiteral("nodeid = ?"), {line});
    d->removeFromGroups(line);
    commitBatch();
    clearCachedSubs(line);
    d->forgetCachedNames(line);
    d->groups.remove(line);
    d->identifiers.remove(line);
    d->services.remove(line);

    ChangeSet change;
    change.kind = ChangeSet::Kind::DelNode;
    change.line = line;
    emit updateNotify(change);
    return deleted;
}

bool ObjectDataBase::setNodeSqlValue(const QString &column, const QString &value,
                                     const QString &line)
{
    const QString text = value.simplified();
    if (text.isEmpty())
        return true;
    const Column<NodeData> *field = findColumn(kNodeColumns, column);
    if (!field) {
        qCDebug(lcStore) << "a node has no" << column;
        return false;
    }
    return d->exec(
        QStringLiteral("update Nodes set %1=? where nodeId = ?").arg(QLatin1String(field->name)),
        {text, Numbers::toUIntDecimal(line)});
}

quint8 ObjectDataBase::getNetworkMaster()
{
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines) {
        if (existIndex(line, ObjectIndex::kNmtStartup) &&
            Numbers::toUIntByPrefix(getSubIndexCurrentValue(line, ObjectIndex::kNmtStartup, 0)) & 1)
            return line;
    }
    return 0;
}
