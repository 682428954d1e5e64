// The caches that spare generators and checks the statements. Every writer of the store keeps a
// cached line as it keeps its rows, so a reader never meets an older state.
#include "store/objectdatabase_p.h"

const LineCache *StorePrivate::completeCache(quint8 line) const
{
    const auto cache = cachedSubs.constFind(line);
    return cache != cachedSubs.constEnd() && cache->complete ? &*cache : nullptr;
}

const SubIndexData *StorePrivate::cachedSub(quint8 line, quint16 index, quint8 sub) const
{
    const auto cache = cachedSubs.constFind(line);
    return cache != cachedSubs.constEnd() ? cache->subs.find(index, sub) : nullptr;
}

SubIndexData *StorePrivate::cachedSub(quint8 line, quint16 index, quint8 sub)
{
    const auto cache = cachedSubs.find(line);
    if (cache == cachedSubs.end())
        return nullptr;
    return cache->subs.find(index, sub);
}

void StorePrivate::refreshCachedName(quint8 line, quint16 index, quint8 sub,
                                     const SubIndexData &data)
{
    const auto cached = cachedSubNames.find(placeKey(line, index, sub));
    if (cached != cachedSubNames.end())
        *cached = data.denotation.isEmpty() ? data.name : data.denotation;
}

bool StorePrivate::readSubs(quint8 line, quint16 index, SubTable &subs)
{
    const QString sql = QStringLiteral("select objectindex,subindex,%1 from %2 %3 where %4%5")
                            .arg(columnList(kSubIndexColumns), Schema::table("SubObjects", line),
                                 // All rows come faster in the order in which they lie.
                                 index ? QString() : QStringLiteral("not indexed"),
                                 QLatin1String(Schema::kSubIndexInRange),
                                 index ? QStringLiteral(" and objectindex = ?") : QString());
    RowReader rows(*this, sql, index ? Cells{index} : Cells());
    while (rows.next()) {
        SubIndexData &record = subs.record(static_cast<quint16>(rows.value(0).toUInt()),
                                           static_cast<quint8>(rows.value(1).toUInt()));
        int i = 2;
        for (const Column<SubIndexData> &field : kSubIndexColumns)
            readColumn(field, record, rows.value(i++));
    }
    return rows.ok();
}

void ObjectDataBase::cacheAllSubs(quint8 line, quint16 index)
{
    const auto present = d->cachedSubs.constFind(line);
    if (index == 0 && present != d->cachedSubs.constEnd() && present->complete &&
        present->escaped.isEmpty())
        return; // as the rows are, for all writers saw to it
    d->cachedSubs.remove(line);
    LineCache cache;
    cache.complete = index == 0;
    if (!d->stringsComplete)
        cacheStrings();
    cache.isWhole = d->readSubs(line, index, cache.subs); // what cannot be read is not there
    if (cache.complete) {
        RowReader statement(
            *d, QStringLiteral("select objectindex,%1 from %2 where %3 order by objectindex")
                    .arg(columnList(kIndexColumns), Schema::table("Objects", line),
                         QLatin1String(Schema::kIndexInRange)));
        while (statement.next()) {
            const quint16 key = static_cast<quint16>(statement.value(0).toUInt());
            IndexData &record = cache.objects[key];
            int i = 1;
            for (const Column<IndexData> &field : kIndexColumns)
                d->readColumn(field, record, statement.value(i++));
        }
    }
    d->cachedSubs[line] = std::move(cache);
    d->sqlite.unmapPages();
}

void ObjectDataBase::clearCachedSubs(quint8 line)
{
    d->cachedSubs.remove(line);
}

void ObjectDataBase::clearAllCachedSubs()
{
    d->cachedSubs.clear();
}

void ObjectDataBase::cacheAllSubNames(quint8 line, quint16 index)
{
    const auto cache = d->cachedSubs.constFind(line);
    if (cache != d->cachedSubs.constEnd() && cache->complete) {
        // The line's records are in memory, the names with them.
        for (auto object = cache->subs.from(index);
             object != cache->subs.end() && (index == 0 || object.key() == index); ++object) {
            const ObjectMembers &members = *object;
            for (auto it = members.constBegin(); it != members.constEnd(); ++it)
                d->cachedSubNames.insert(StorePrivate::placeKey(line, object.key(), it.key()),
                                         it->denotation.isEmpty() ? it->name : it->denotation);
        }
        return;
    }
    RowReader statement(*d,
                        QStringLiteral("select denotation,name,objectindex,subindex from %1%2")
                            .arg(Schema::table("SubObjects", line),
                                 index ? QStringLiteral(" where objectindex = ?") : QString()),
                        index ? Cells{index} : Cells());
    while (statement.next()) {
        const QString denotation = getString(statement.value(0).toInt());
        const quint32 key =
            StorePrivate::placeKey(line, static_cast<quint16>(statement.value(2).toUInt()),
                                   static_cast<quint8>(statement.value(3).toUInt()));
        d->cachedSubNames.insert(key, denotation.isEmpty() ? getString(statement.value(1).toInt())
                                                           : denotation);
    }
}

void StorePrivate::forgetCachedNames(quint8 line)
{
    for (auto it = cachedSubNames.begin(); it != cachedSubNames.end();) {
        const bool isOfLine = quint8(it.key() >> 8) == line;
        it = isOfLine ? cachedSubNames.erase(it) : std::next(it);
    }
}

void ObjectDataBase::clearCachedSubNames()
{
    d->cachedSubNames.clear();
}
