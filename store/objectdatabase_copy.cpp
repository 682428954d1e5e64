// Copying and comparing lines of two stores.
#include "store/objectdatabase_p.h"
#include "store/sidebyside.h"
#include "support/logging.h"

#include <algorithm>

/// The frames of a line, or their signals.
struct ObjectDataBase::GroupTable {
    const char *family;
    const char *number; ///< the column that holds the number of the frame
};

namespace
{

using Kind = LineDifferenceData::Kind;

/// Number and direction of a parameter group or a CAN identifier.
using GroupKey = QPair<quint32, quint8>;

QSet<GroupKey> readGroups(StorePrivate &store, const QString &table, const char *number,
                          const QString &condition, const Cells &values)
{
    QSet<GroupKey> groups;
    Statement rows(store,
                   QStringLiteral("select %1,direction from %2 where %3")
                       .arg(QLatin1String(number), table, condition),
                   values);
    while (rows.next())
        groups.insert({rows.value(0).toUInt(), static_cast<quint8>(rows.value(1).toUInt())});
    return groups;
}

/// In one walk over the table, which has no index.
void removeGroups(StorePrivate &store, const QString &table, const char *number,
                  const QSet<GroupKey> &groups)
{
    QVector<qlonglong> doomed;
    {
        Statement rows(
            store,
            QStringLiteral("select rowid,%1,direction from %2").arg(QLatin1String(number), table));
        while (rows.next()) {
            if (groups.contains(
                    {rows.value(1).toUInt(), static_cast<quint8>(rows.value(2).toUInt())}))
                doomed << rows.value(0).toLongLong();
        }
    }
    for (const qlonglong row : qAsConst(doomed))
        store.exec(QStringLiteral("delete from %1 where rowid = ?").arg(table), {row});
}

/// Nodes of the same numbers give way.
bool copyVirtualNodes(StorePrivate &from, quint8 otherLine, StorePrivate &to, quint8 line)
{
    QVector<Cells> nodes;
    {
        Statement rows(from,
                       QStringLiteral("select dbnodeid,name from VirtualNodes where line = ? "
                                      "order by virtualnodeid"),
                       {otherLine});
        while (rows.next())
            nodes.append({line, rows.value(0), rows.value(1)});
    }
    bool done = true;
    for (const Cells &node : qAsConst(nodes))
        done = to.exec(QStringLiteral("delete from VirtualNodes where line = ? and dbnodeid = ?"),
                       node.mid(0, 2)) &&
               done;
    for (const Cells &node : qAsConst(nodes))
        done = to.exec(QStringLiteral("insert into VirtualNodes (line,dbnodeid,name) "
                                      "values(?,?,?)"),
                       node) &&
               done;
    return done;
}

/// Reports each key from \a low up to and including \a high whose values differ, with the kind;
/// \a both gets the values of the keys that both have.
template <class Map, class Report, class Both>
void compare(const Map &here, const Map &there, typename Map::key_type low,
             typename Map::key_type high, const Report &report, const Both &both)
{
    if (low > high)
        return;
    const auto endOf = [high](const Map &map) {
        auto end = map.lowerBound(high);
        if (end != map.constEnd() && end.key() == high)
            ++end;
        return end;
    };
    SideBySide::walk(here.lowerBound(low), endOf(here), there.lowerBound(low), endOf(there),
                     [&](auto key, const auto *mine, const auto *theirs) {
                         if (!theirs)
                             return report(Kind::OnlyHere, key);
                         if (!mine)
                             return report(Kind::OnlyThere, key);
                         if (!mine->contentCompare(*theirs))
                             report(Kind::Content, key);
                         both(key);
                     });
}

} // namespace

std::optional<quint8> ObjectDataBase::sourceLine(quint8 line) const
{
    const QList<quint8> lines = getNodes();
    if (line == kFirstLine)
        return lines.isEmpty() ? std::nullopt : std::optional<quint8>(lines.first());
    return lines.contains(line) ? std::optional<quint8>(line) : std::nullopt;
}

bool ObjectDataBase::mayCopy(const ObjectDataBase &other, quint8 line,
                             std::optional<quint8> otherLine) const
{
    const bool may = !d->lockWriteAccess && !other.d->sourceUnreadable && otherLine &&
                     (&other != this || *otherLine != line);
    if (!may)
        qCDebug(lcStore) << "no line to copy in" << other.getProjectFileName();
    return may;
}

template <class Copy>
bool ObjectDataBase::runCopy(const ObjectDataBase &other, quint8 line, quint8 otherLine,
                             const Copy &copy)
{
    const std::optional<quint8> source = other.sourceLine(otherLine);
    if (!mayCopy(other, line, source))
        return false;
    bool done = true;
    beginBatch();
    {
        const QSignalBlocker quiet(this); // all of it is announced at the end
        NODE_DATA_T node;
        if (!existNode(line))
            done = other.getNodeData(*source, node) && addNode(line, node);
        done = copy(*source) && done;
    }
    commitBatch();
    emit updateNotify(ChangeSet());
    return done;
}

bool ObjectDataBase::copyLineFromDatabase(ObjectDataBase &other, quint8 line, quint8 otherLine,
                                          quint32 low, quint32 high)
{
    return runCopy(other, line, otherLine, [&](quint8 source) {
        QHash<qint32, qint32> signalIds;
        const bool hasSignals = copySignals(other, line, source, &signalIds);
        const bool hasObjects = copyObjects(other, line, source, low, high, signalIds);
        const bool hasSettings = copyLineSettings(other, line, source);
        const bool hasServices =
            copyLineRows(other, "UDSSettings", line, source, QStringLiteral("sid >= ?"), {0});
        d->services.remove(line);
        return hasSignals && hasObjects && hasSettings && hasServices;
    });
}

bool ObjectDataBase::copySignals(ObjectDataBase &other, quint8 line, quint8 otherLine,
                                 QHash<qint32, qint32> *ids)
{
    const QMap<qint32, QString> groups = other.getSignalGroups();
    const QList<qint32> copied = other.getSignals(otherLine);
    QHash<QString, qint32> present;
    const QList<qint32> own = getSignals(line);
    for (const qint32 id : own)
        present.insert(d->lineSignals().value(id).name, id);
    bool done = true;
    for (const qint32 id : copied) {
        SIGNAL_DATA_T data = other.d->lineSignals().value(id);
        const auto group = groups.constFind(data.group);
        data.group = group != groups.constEnd() ? qMax(0, addSignalGroup(*group)) : 0;
        data.line = line;
        data.ref = 0;
        const qint32 written = addSignal(data, present.value(data.name));
        ids->insert(id, qMax(0, written));
        done = written > 0 && done;
    }
    // Only now all of them have their numbers.
    for (const qint32 id : copied) {
        SIGNAL_DATA_T data = d->lineSignals().value(ids->value(id));
        data.ref = ids->value(other.d->lineSignals().value(id).ref);
        done = (data.ref == 0 || addSignal(data, ids->value(id)) > 0) && done;
    }
    return done;
}

bool ObjectDataBase::copyObjects(ObjectDataBase &other, quint8 line, quint8 otherLine, quint32 low,
                                 quint32 high, const QHash<qint32, qint32> &signalIds)
{
    if (low > 0xFFFF || low > high)
        return true;
    other.cacheAllSubs(otherLine, 0);
    cacheAllSubs(line, 0); // what is written goes in there as well
    // A copy, since the line may be another one of this very store.
    const LineCache source = other.d->cachedSubs.value(otherLine);
    QSet<quint16> copied;
    bool done = true;
    for (auto object = source.objects.lowerBound(static_cast<quint16>(low));
         object != source.objects.constEnd() && object.key() <= high; ++object) {
        copied.insert(object.key());
        // Though the object may not exist: its subindices may, in a project from a text file.
        done = delIndex(line, object.key(), true) && done;
        done = addIndex(line, object.key(), *object) && done;
    }
    for (auto object = source.subs.from(static_cast<quint16>(low));
         object != source.subs.end() && object.key() <= high; ++object) {
        const quint16 index = object.key();
        const ObjectMembers &members = *object;
        if (!copied.contains(index)) // has subindices only
            done = delIndex(line, index, true) && done;
        for (auto sub = members.constBegin(); sub != members.constEnd(); ++sub) {
            SubIndexData data = *sub;
            data.managedByOlm = false;
            data.signalId = signalIds.value(data.signalId);
            done = d->writeSub(line, index, sub.key(), data) && done;
        }
    }
    cacheAllSubs(line, 0);
    return done;
}

bool ObjectDataBase::copyPGNsFromDatabase(ObjectDataBase &other, quint8 line, quint8 otherLine,
                                          quint32 low, quint32 high, quint8 direction)
{
    static constexpr GroupTable kGroups[] = {{"PGNs", "number"}, {"SPNs", "pgnnumber"}};
    const QString condition = QStringLiteral("%1 between ? and ?") +
                              (direction != 0 ? QStringLiteral(" and direction = ?") : QString());
    Cells values{low, high};
    if (direction != 0)
        values << direction;
    return runCopy(other, line, otherLine, [&](quint8 source) {
        d->groups.remove(line);
        return copyFrames(other, kGroups, line, source, condition, values);
    });
}

/// The "%1" of \a condition stands for the number of the frame.
bool ObjectDataBase::copyFrames(ObjectDataBase &other, const GroupTable (&tables)[2], quint8 line,
                                quint8 otherLine, const QString &condition, const Cells &values)
{
    const auto conditionOf = [&condition](const GroupTable &table) {
        return condition.arg(QLatin1String(table.number));
    };
    const GroupTable &frames = tables[0];
    const QSet<GroupKey> copied = readGroups(*other.d, Schema::table(frames.family, otherLine),
                                             frames.number, conditionOf(frames), values);
    bool done = true;
    for (const GroupTable &table : tables) {
        removeGroups(*d, Schema::table(table.family, line), table.number, copied);
        done =
            copyLineRows(other, table.family, line, otherLine, conditionOf(table), values) && done;
    }
    return done;
}

bool ObjectDataBase::copyRestOfLineFromDatabase(ObjectDataBase &other, quint8 line,
                                                quint8 otherLine)
{
    static constexpr GroupTable kIdentifiers[] = {{"CANIDs", "id"}, {"DataElements", "canid"}};
    return runCopy(other, line, otherLine, [&](quint8 source) {
        d->identifiers.remove(line);
        const bool hasFrames =
            copyFrames(other, kIdentifiers, line, source, QStringLiteral("%1 >= ?"), {0});
        const bool hasSettings = copyFurtherSettings(other, line, source);
        const bool hasNode = copyNode(other, line, source);
        // A new line has some services, which the other one need not have.
        const bool hasServices =
            d->exec(QStringLiteral("delete from %1").arg(Schema::table("UDSSettings", line))) &&
            copyLineRows(other, "UDSSettings", line, source, QStringLiteral("sid >= ?"), {0});
        d->services.remove(line);
        return copyLinks(other, line, source) && hasFrames && hasSettings && hasNode && hasServices;
    });
}

bool ObjectDataBase::copyNode(ObjectDataBase &other, quint8 line, quint8 otherLine)
{
    NODE_DATA_T node;
    if (!other.getNodeData(otherLine, node))
        return false;
    QStringList assignments;
    Cells cells;
    for (const Column<NodeData> &field : kNodeColumns) {
        assignments << QLatin1String(field.name) + QStringLiteral("=?");
        cells << field.get(node);
    }
    return d->exec(QStringLiteral("update Nodes set %1 where nodeId = ?")
                       .arg(assignments.join(QLatin1Char(','))),
                   cells << line);
}

bool ObjectDataBase::copyLinks(ObjectDataBase &other, quint8 line, quint8 otherLine)
{
    const QList<quint16> pdos = other.getLockedPDOs(otherLine);
    for (const quint16 pdo : pdos)
        setLockedPdo(line, pdo, true);
    const QList<quint16> mappings = other.getLockedMappings(otherLine);
    for (const quint16 mapping : mappings)
        setLockedMapping(line, mapping, true);

    bool done = copyVirtualNodes(*other.d, otherLine, *d, line);
    QList<Connection> links = other.getPDOConnections(true);
    const auto leadsAway = [otherLine](const Connection &link) {
        return link.prodNode != otherLine || link.conNode != otherLine;
    };
    links.erase(std::remove_if(links.begin(), links.end(), leadsAway), links.end());
    for (const Connection &link : qAsConst(links))
        (void)removeConnnection(line, link.prodIndex, link.prodSub, line, link.conIndex,
                                link.conSub); // there may be none
    for (const Connection &link : qAsConst(links))
        done = addConnection(line, link.prodIndex, link.prodSub, line, link.conIndex, link.conSub,
                             link.priority) &&
               done;
    return done;
}

/// Copies the rows that meet \a condition; texts get their numbers in this store.
bool ObjectDataBase::copyLineRows(ObjectDataBase &other, const char *family, quint8 line,
                                  quint8 otherLine, const QString &condition, const Cells &values)
{
    const QStringList names = Schema::lineColumnNames(family);
    const QString columns = names.join(QLatin1Char(','));
    const QString insert =
        QStringLiteral("insert or replace into %1 (%2) values(%3)")
            .arg(Schema::table(family, line), columns, placeHolders(names.size()));
    Statement rows(*other.d,
                   QStringLiteral("select %1 from %2 where %3")
                       .arg(columns, Schema::table(family, otherLine), condition),
                   values);
    bool done = rows.ok();
    while (rows.next()) {
        Cells cells;
        for (int i = 0; i < names.size(); ++i) {
            const bool isText =
                names.at(i) == QLatin1String("name") || names.at(i) == QLatin1String("desc");
            cells << (isText ? QVariant(getStringId(other.getString(rows.value(i).toInt())))
                             : rows.value(i));
        }
        done = d->exec(insert, cells) && done;
    }
    return done;
}

QList<LineDifferenceData> ObjectDataBase::compareLine(quint8 line, ObjectDataBase &other,
                                                      quint8 otherLine, quint16 low, quint16 high)
{
    QList<LineDifference> differences;
    cacheAllSubs(line, 0);
    const quint8 source = other.sourceLine(otherLine).value_or(otherLine);
    other.cacheAllSubs(source, 0);
    const LineCache here = d->cachedSubs.value(line);
    const LineCache there = other.d->cachedSubs.value(source);
    const auto compareSubs = [&](quint16 index) {
        compare(
            here.subs.of(index), there.subs.of(index), 0, 0xFF,
            [&](Kind kind, quint8 sub) {
                differences << LineDifference{kind, index, sub};
            },
            [](quint8) {});
    };
    compare(
        here.objects, there.objects, low, high,
        [&](Kind kind, quint16 index) {
            differences << LineDifference{kind, index, std::nullopt};
        },
        compareSubs);
    return differences;
}
