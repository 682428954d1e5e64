// Objects of the object dictionaries.
#include "store/objectdatabase_p.h"
#include "support/logging.h"
#include "support/numbers.h"

namespace
{

/// \a column of a record's table for a search by property; the text is data of a caller, so only
/// known names become part of a statement.
template <class Record, size_t N>
QString searchColumn(const Column<Record> (&columns)[N], const QString &name)
{
    const Column<Record> *field = findColumn(columns, name);
    if (!field)
        qCDebug(lcStore) << "no such property" << name;
    return field ? QString::fromLatin1(field->name) : QString();
}

} // namespace

bool ObjectDataBase::existIndex(quint8 line, quint16 index) const
{
    if (const LineCache *cache = d->completeCache(line))
        return cache->objects.contains(index);
    return Statement(*d,
                     QStringLiteral("select objectindex from %1 where objectindex = ?")
                         .arg(Schema::table("Objects", line)),
                     {index})
        .next();
}

bool ObjectDataBase::getIndexData(quint8 line, quint16 index, INDEX_DATA_T &data) const
{
    if (const LineCache *cache = d->completeCache(line)) {
        const IndexData *found = cache->objects.find(index);
        if (found)
            data = *found;
        return found != nullptr;
    }
    Statement statement(*d,
                        QStringLiteral("select %1 from %2 where objectindex = ?")
                            .arg(columnList(kIndexColumns), Schema::table("Objects", line)),
                        {index});
    if (!statement.next())
        return false;
    int i = 0;
    for (const Column<IndexData> &field : kIndexColumns)
        d->readColumn(field, data, statement.value(i++));
    return true;
}

QString ObjectDataBase::getIndexName(quint8 line, quint16 index) const
{
    INDEX_DATA_T data;
    return getIndexData(line, index, data) ? data.name : QString();
}

bool ObjectDataBase::addIndex(quint8 line, quint16 index, const INDEX_DATA_T &data)
{
    if (d->lockWriteAccess)
        return false;
    RowValues cells{index};
    quint32 kept = 0;
    for (const Column<IndexData> &field : kIndexColumns) {
        // An empty map means that the caller has none to give: a stored one stays.
        if (field.coding == Coding::Blob && data.metadata.isEmpty())
            kept |= RowInserter::bit(cells.size());
        const RowValue value = field.value(data);
        cells.append(field.coding == Coding::StringId ? getStringId(value.text()) : value);
    }
    const bool done = d->inserter(RowKind::Object, line).write(*d, cells, kept);
    const auto cache = d->cachedSubs.find(line);
    if (done && cache != d->cachedSubs.end() && cache->complete) {
        IndexData &cached = cache->objects[index];
        const Metadata stored = cached.metadata;
        cached = data;
        if (data.metadata.isEmpty())
            cached.metadata = stored;
    }
    notifySub(ChangeSet::Kind::AddIndex, line, index, 0);
    return done;
}

bool ObjectDataBase::delIndex(quint8 line, quint16 index, bool keepConnections)
{
    if (d->lockWriteAccess)
        return false;
    const Cells key{index};
    d->exec(QStringLiteral("delete from %1 where objectindex = ?")
                .arg(Schema::table("SubObjects", line)),
            key);
    const bool deleted = d->exec(
        QStringLiteral("delete from %1 where objectindex = ?").arg(Schema::table("Objects", line)),
        key);
    if (!keepConnections)
        removeConnnection(line, index);
    const auto cache = d->cachedSubs.find(line);
    if (cache != d->cachedSubs.end()) {
        cache->objects.remove(index);
        const ObjectMembers &members = cache->subs.of(index);
        for (auto sub = members.constBegin(); sub != members.constEnd(); ++sub)
            cache->escaped.remove(StorePrivate::subKey(index, sub.key()));
        cache->subs.removeObject(index);
    }
    for (int sub = 0; sub <= 0xFF && !d->cachedSubNames.isEmpty(); ++sub)
        d->cachedSubNames.remove(StorePrivate::placeKey(line, index, static_cast<quint8>(sub)));
    if (deleted)
        notifySub(ChangeSet::Kind::DelIndex, line, index, 0);
    return deleted;
}

bool ObjectDataBase::setIndexName(quint8 line, quint16 index, const QString &name)
{
    if (d->lockWriteAccess || !existIndex(line, index))
        return false;
    const bool done = d->exec(QStringLiteral("update %1 set name=? where objectindex = ?")
                                  .arg(Schema::table("Objects", line)),
                              {getStringId(name), index});
    const auto cache = d->cachedSubs.find(line);
    IndexData *cached = cache != d->cachedSubs.end() ? cache->objects.find(index) : nullptr;
    if (done && cached)
        cached->name = name;
    return done;
}

QList<quint16> ObjectDataBase::getIndices(quint8 line, quint16 low, quint16 high) const
{
    QList<quint16> indices;
    if (const LineCache *cache = d->completeCache(line)) {
        for (auto it = cache->objects.lowerBound(low);
             it != cache->objects.constEnd() && it.key() <= high; ++it)
            indices << it.key();
        return indices;
    }
    Statement statement(*d,
                        QStringLiteral("select objectindex from %1 where objectindex >= ? and "
                                       "objectindex <= ? order by objectindex")
                            .arg(Schema::table("Objects", line)),
                        {low, high});
    while (statement.next())
        indices << static_cast<quint16>(statement.value(0).toUInt());
    return indices;
}

QList<quint16> ObjectDataBase::getIndicesByProperty(quint8 line, const QString &column,
                                                    const QString &value) const
{
    QList<quint16> indices;
    const QString name = searchColumn(kIndexColumns, column);
    bool isNumber = false;
    const qint64 number = Numbers::toLongLongByPrefix(value, &isNumber);
    if (name.isEmpty() || !isNumber)
        return indices;
    Statement statement(
        *d,
        QStringLiteral("select objectindex from %1 where %2 = ? order by objectindex")
            .arg(Schema::table("Objects", line), name),
        {number});
    while (statement.next())
        indices << static_cast<quint16>(statement.value(0).toUInt());
    return indices;
}

quint16 ObjectDataBase::getNextFreeIndex(quint8 line, quint16 start) const
{
    const QList<quint16> indices = getIndices(line, start, 0xFFFF);
    if (indices.isEmpty() || indices.first() != start)
        return start;
    for (int i = 0; i < indices.size(); ++i) {
        const quint16 next = static_cast<quint16>(indices.at(i) + 1);
        if (i + 1 == indices.size() || indices.at(i + 1) != next)
            return next == 0 ? 0xFFFF : next;
    }
    return 0xFFFF;
}
