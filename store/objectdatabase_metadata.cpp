// Free attributes of objects and subindices.
#include "store/objectdatabase_p.h"

bool ObjectDataBase::saveIndexMetaData(quint8 line, quint16 index, const Metadata &metadata)
{
    const bool done = d->exec(QStringLiteral("update %1 SET metadata = ? where objectindex = ?")
                                  .arg(Schema::table("Objects", line)),
                              {packMetadata(metadata), index});
    const auto cache = d->cachedSubs.find(line);
    if (done && cache != d->cachedSubs.end() && cache->objects.contains(index))
        cache->objects[index].metadata = metadata;
    return done;
}

bool ObjectDataBase::saveSubIndexMetaData(quint8 line, quint16 index, quint8 sub,
                                          const Metadata &metadata)
{
    const bool done =
        d->exec(QStringLiteral("update %1 SET metadata = ? where objectindex = ? and subindex = ?")
                    .arg(Schema::table("SubObjects", line)),
                {packMetadata(metadata), index, sub});
    if (SubIndexData *cached = d->cachedSub(line, index, sub); done && cached)
        cached->metadata = metadata;
    return done;
}

bool ObjectDataBase::getAllIndexMetaData(quint8 line, QList<Metadata> &result) const
{
    Statement statement(*d, QStringLiteral("select metadata from %1 where objectindex >= 4096 "
                                           "order by objectindex")
                                .arg(Schema::table("Objects", line)));
    QSet<QByteArray> known;
    for (const Metadata &metadata : qAsConst(result))
        known.insert(packMetadata(metadata));
    while (statement.next()) {
        const Metadata metadata = unpackMetadata(statement.value(0).toByteArray());
        const QByteArray packed = packMetadata(metadata);
        if (!metadata.isEmpty() && !known.contains(packed))
            result << metadata;
        known.insert(packed);
    }
    return true;
}

bool ObjectDataBase::getAllSubIndicesWithMetaData(quint8 line,
                                                  QList<INDEX_SUB_METADATA_T> &result) const
{
    Statement statement(*d, QStringLiteral("SELECT objectindex, subindex, metadata from %1 "
                                           "WHERE metadata IS NOT NULL")
                                .arg(Schema::table("SubObjects", line)));
    while (statement.next()) {
        const Metadata metadata = unpackMetadata(statement.value(2).toByteArray());
        if (!metadata.isEmpty()) {
            result << INDEX_SUB_METADATA_T{static_cast<quint16>(statement.value(0).toUInt()),
                                           static_cast<quint8>(statement.value(1).toUInt()),
                                           metadata};
        }
    }
    return statement.ok();
}
