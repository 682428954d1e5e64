// Signals that lines exchange, the groups of signals, and the groups of lines. Signals are read
// once; every writer makes them be read again, or changes what is in memory as well.
#include "store/objectdatabase_p.h"
#include "support/numbers.h"

namespace
{

constexpr char kSelectGroup[] = "select nodeidlist from Groups where name = ?";

QList<quint8> linesOf(const QString &list)
{
    QList<quint8> lines;
    const QStringList elements = list.split(QLatin1Char(','));
    for (const QString &element : elements) {
        bool isNumber = false;
        const quint32 line = Numbers::toUIntDecimal(element, &isNumber);
        if (isNumber && line <= 0xFF)
            lines << static_cast<quint8>(line);
    }
    return lines;
}

QString listOf(const QList<quint8> &lines)
{
    QStringList elements;
    for (const quint8 line : lines)
        elements << QString::number(line);
    return elements.join(QLatin1Char(','));
}

} // namespace

const QMap<qint32, LineSignalData> &StorePrivate::lineSignals()
{
    if (allSignals)
        return *allSignals;
    QMap<qint32, LineSignalData> read;
    Statement rows(*this, QStringLiteral("select sigid,%1 from Signals order by sigid")
                              .arg(columnList(kLineSignalColumns)));
    while (rows.next()) {
        LineSignalData &record = *read.insert(read.constEnd(), rows.value(0).toInt(), {});
        int i = 1;
        for (const Column<LineSignalData> &field : kLineSignalColumns)
            readColumn(field, record, rows.value(i++));
    }
    allSignals = read;
    return *allSignals;
}

QList<qint32> ObjectDataBase::getSignals(quint8 line) const
{
    QList<qint32> ids;
    const auto &all = d->lineSignals();
    for (auto signal = all.begin(); signal != all.end(); ++signal) {
        if (signal->line == line)
            ids << signal.key();
    }
    return ids;
}

bool ObjectDataBase::getSignalData(qint32 id, SIGNAL_DATA_T &data) const
{
    const auto &all = d->lineSignals();
    const auto found = all.constFind(id);
    if (found == all.constEnd())
        return false;
    data = *found;
    return true;
}

qint32 ObjectDataBase::addSignal(const SIGNAL_DATA_T &data, qint32 id)
{
    if (d->lockWriteAccess)
        return -1;
    const auto &all = d->lineSignals();
    const qint32 last = all.isEmpty() ? 0 : all.lastKey();
    if (id == 0 && last == std::numeric_limits<qint32>::max())
        return -1;
    const qint32 number = id != 0 ? id : qMax(0, last) + 1;
    Cells cells{number};
    for (const Column<SIGNAL_DATA_T> &field : kLineSignalColumns)
        cells << d->cellOf(field, data);
    const bool done = d->exec(QStringLiteral("insert or replace into Signals (sigid,%1) values(%2)")
                                  .arg(columnList(kLineSignalColumns), placeHolders(cells.size())),
                              cells);
    if (done)
        d->allSignals->insert(number, data);
    return done ? number : -1;
}

/// Of the signals that \a condition names.
bool StorePrivate::deleteSignals(const QString &condition, const Cells &values)
{
    QSet<qint32> doomed;
    {
        Statement rows(*this, QStringLiteral("select sigid from Signals where ") + condition,
                       values);
        while (rows.next())
            doomed << rows.value(0).toInt();
    }
    if (doomed.isEmpty())
        return true;
    const QString chosen = QStringLiteral("(select sigid from Signals where %1)").arg(condition);
    const QList<quint8> lines = owner->getNodes();
    for (const quint8 line : lines)
        exec(QStringLiteral("update %1 set signalid = 0 where signalid in %2")
                 .arg(Schema::table("SubObjects", line), chosen),
             values);
    exec(QStringLiteral("update Signals set ref = 0 where ref in ") + chosen, values);
    const bool done = exec(QStringLiteral("delete from Signals where ") + condition, values);
    allSignals.reset();
    for (LineCache &cache : cachedSubs) {
        cache.subs.changeEach([&doomed](SubIndexData &data) {
            if (doomed.contains(data.signalId))
                data.signalId = 0;
        });
    }
    return done;
}

bool ObjectDataBase::delSignal(qint32 id)
{
    return !d->lockWriteAccess && d->deleteSignals(QStringLiteral("sigid = ?"), {id});
}

bool ObjectDataBase::delAllSignals(quint8 line)
{
    if (d->lockWriteAccess)
        return false;
    const bool done = d->deleteSignals(QStringLiteral("nodeid = ?"), {line});
    ChangeSet change;
    change.kind = ChangeSet::Kind::DelAllSignals;
    change.line = line;
    emit updateNotify(change);
    return done;
}

QMap<qint32, QString> ObjectDataBase::getSignalGroups() const
{
    QMap<qint32, QString> groups;
    Statement rows(*d, QStringLiteral("select sigid,name from SignalGroups"));
    while (rows.next())
        groups.insert(rows.value(0).toInt(), rows.value(1).toString());
    return groups;
}

qint32 ObjectDataBase::addSignalGroup(const QString &name)
{
    if (d->lockWriteAccess)
        return -1;
    const QMap<qint32, QString> groups = getSignalGroups();
    const qint32 present = groups.key(name);
    if (present != 0)
        return present;
    const qint32 last = groups.isEmpty() ? 0 : groups.lastKey();
    if (last == std::numeric_limits<qint32>::max())
        return -1;
    const qint32 number = qMax(0, last) + 1;
    return d->exec(QStringLiteral("insert into SignalGroups (sigid,name) values(?,?)"),
                   {number, name})
               ? number
               : -1;
}

bool ObjectDataBase::delSignalGroup(qint32 id)
{
    QMap<qint32, QString> groups = getSignalGroups();
    groups.remove(id);
    return updateSignalGroups(groups);
}

bool ObjectDataBase::updateSignalGroups(const QMap<qint32, QString> &groups)
{
    if (d->lockWriteAccess)
        return false;
    beginBatch();
    bool done = d->exec(QStringLiteral("delete from SignalGroups"));
    for (auto group = groups.begin(); group != groups.end(); ++group)
        done = d->exec(QStringLiteral("insert into SignalGroups (sigid,name) values(?,?)"),
                       {group.key(), *group}) &&
               done;
    done = d->exec(QStringLiteral("update Signals set signalgroup = 0 where signalgroup not in "
                                  "(select sigid from SignalGroups)")) &&
           done;
    commitBatch();
    d->allSignals.reset();
    return done;
}

QStringList ObjectDataBase::getGroups() const
{
    QStringList names;
    Statement rows(*d, QStringLiteral("select name from Groups order by rowid"));
    while (rows.next())
        names << rows.value(0).toString();
    return names;
}

QList<quint8> ObjectDataBase::getGroupNodes(const QString &name) const
{
    Statement rows(*d, QLatin1String(kSelectGroup), {name});
    return rows.next() ? linesOf(rows.value(0).toString()) : QList<quint8>();
}

bool StorePrivate::writeGroup(const QString &sql, const Cells &values)
{
    if (lockWriteAccess)
        return false;
    bool done = false;
    {
        const Statement statement(*this, sql, values);
        done = statement.ok() && statement.affectedRows() > 0;
    }
    if (!done)
        return false;
    ChangeSetData change;
    change.kind = ChangeSetData::Kind::Groups;
    emit owner->updateNotify(change);
    return true;
}

bool StorePrivate::writeGroupNodes(const QString &name, const QList<quint8> &lines)
{
    return writeGroup(QStringLiteral("update Groups set nodeidlist = ? where name = ?"),
                      {listOf(lines), name});
}

bool ObjectDataBase::addGroup(const QString &name)
{
    if (name.isEmpty() || getGroups().contains(name))
        return false;
    return d->writeGroup(QStringLiteral("insert into Groups (name,nodeidlist) values(?,?)"),
                         {name, QString(QLatin1String(""))});
}

bool ObjectDataBase::delGroup(const QString &name)
{
    return d->writeGroup(QStringLiteral("delete from Groups where name = ?"), {name});
}

bool ObjectDataBase::renameGroup(const QString &name, const QString &newName)
{
    if (newName.isEmpty() || getGroups().contains(newName))
        return false;
    return d->writeGroup(QStringLiteral("update Groups set name = ? where name = ?"),
                         {newName, name});
}

bool ObjectDataBase::addNodeToGroup(const QString &name, quint8 line)
{
    const QList<quint8> lines = getGroupNodes(name);
    return !lines.contains(line) && d->writeGroupNodes(name, lines + QList<quint8>{line});
}

bool ObjectDataBase::delNodeFromGroup(const QString &name, quint8 line)
{
    QList<quint8> lines = getGroupNodes(name);
    return lines.removeAll(line) > 0 && d->writeGroupNodes(name, lines);
}

void StorePrivate::removeFromGroups(quint8 line)
{
    const QSignalBlocker quiet(owner); // whoever removes a line announces it
    const QStringList names = owner->getGroups();
    for (const QString &name : names)
        (void)owner->delNodeFromGroup(name, line); // few groups have it
}
