// What other tools of the family do with a project: editors copy objects and set single cells,
// monitors read signals from memory.
#include "store/objectdatabase_frames_p.h"
#include "store/textrowwriter.h"

using Groups = Frames<PgnData>;

namespace
{

constexpr int kLastLine = 0xFF;

} // namespace

// --- statements and tables ---

bool ObjectDataBase::queryExec(QSqlQuery *query, const QString &sql) const
{
    if (!query)
        return false;
    d->awaitUnblocked();
    const bool done = query->exec(sql);
    if (!done)
        d->noteFailure(*query);
    if (!query->isSelect())
        d->forgetRows();
    return done;
}

bool ObjectDataBase::createSubObjectsTable(int line, QSqlQuery query)
{
    return line >= 0 && line <= kLastLine &&
           queryExec(&query, Schema::createLineTable("SubObjects", line));
}

bool ObjectDataBase::createUDSSettingsTable(int line, QSqlQuery query)
{
    return line >= 0 && line <= kLastLine &&
           queryExec(&query, Schema::createLineTable("UDSSettings", line));
}

bool ObjectDataBase::addUniqueColumnsToSubDatabase(int line, QSqlQuery query)
{
    return rebuildLineTable("SubObjects", line, query, true);
}

bool ObjectDataBase::addUniqueColumnsToUDSSettings(int line, QSqlQuery query)
{
    return rebuildLineTable("UDSSettings", line, query, false);
}

bool ObjectDataBase::rebuildLineTable(const char *family, int line, QSqlQuery &query,
                                      bool stopAtFailure)
{
    if (line < 0 || line > kLastLine || !existNode(static_cast<quint8>(line)))
        return false;
    query.finish(); // half read, it would keep the table from being renamed
    beginBatch();
    const bool done = d->rebuildTable(family, line, stopAtFailure);
    commitBatch();
    d->forgetRows(); // which of two equal rows counts may have changed
    return done;
}

// --- single cells ---

bool ObjectDataBase::setObjectIndexSqlValue(const QString &table, const QString &index,
                                            const QString &column, const QVariant &value)
{
    const int line = Schema::lineOfTable(table, "Objects");
    return line >= 0 && value.isValid() &&
           TextRowWriter<IndexData>(*d, quint8(line)).writeCell({index}, column, value);
}

bool ObjectDataBase::setSubindexSqlValue(const QString &table, const QString &index,
                                         const QString &sub, const QString &column,
                                         const QVariant &value)
{
    const int line = Schema::lineOfTable(table, "SubObjects");
    return line >= 0 && value.isValid() &&
           TextRowWriter<SubIndexData>(*d, quint8(line)).writeCell({index, sub}, column, value);
}

// --- copies of objects ---

std::optional<SavedObject> ObjectDataBase::readObject(quint8 line, quint16 index) const
{
    SavedObject saved;
    saved.line = line;
    if (!getIndexData(line, index, saved.object))
        return std::nullopt;
    const QList<quint8> subs = getSubIndices(line, index, 0);
    for (const quint8 sub : subs) {
        if (const auto data = d->storedSub(line, index, sub))
            saved.members.insert(sub, *data);
    }
    return saved;
}

std::optional<SubIndexData> StorePrivate::storedSub(quint8 line, quint16 index, quint8 sub) const
{
    SubIndexData data;
    if (!owner->getSubIndexData(line, index, sub, data))
        return std::nullopt;
    return isEscaped(line, index, sub) ? withoutEscapes(line, index, sub, data) : data;
}

ObjectDataBase::SUBINDEX_DATA_T ObjectDataBase::forPlace(SUBINDEX_DATA_T data, quint8 line,
                                                         quint8 targetLine) const
{
    data.managedByOlm = false;
    // A saved object may have outlived its signals.
    if (line != targetLine || !d->lineSignals().contains(data.signalId))
        data.signalId = 0;
    return data;
}

bool ObjectDataBase::putObject(quint8 line, quint16 index, const SavedObject &object)
{
    bool done = true;
    beginBatch();
    {
        const QSignalBlocker quiet(this); // all of it is announced at the end
        done = delIndex(line, index, true) && addIndex(line, index, object.object);
        for (auto sub = object.members.constBegin(); sub != object.members.constEnd(); ++sub)
            done = d->writeSub(line, index, sub.key(), forPlace(*sub, object.line, line)) && done;
    }
    commitBatch();
    cacheAllSubs(line, 0);
    notifySub(ChangeSet::Kind::AddIndex, line, index, 0);
    return done;
}

bool ObjectDataBase::copyIndex(quint8 line, quint16 index, quint8 targetLine, quint16 targetIndex)
{
    const std::optional<SavedObject> object = readObject(line, index);
    if (d->lockWriteAccess || !object || !existNode(targetLine))
        return false;
    const bool isItself = line == targetLine && index == targetIndex;
    return isItself || putObject(targetLine, targetIndex, *object);
}

bool ObjectDataBase::copySubIndex(quint8 line, quint16 index, quint8 sub, quint8 targetLine,
                                  quint16 targetIndex, quint8 targetSub)
{
    const std::optional<SubIndexData> data = d->storedSub(line, index, sub);
    if (d->lockWriteAccess || !data || !existIndex(targetLine, targetIndex))
        return false;
    const bool isItself = line == targetLine && index == targetIndex && sub == targetSub;
    return isItself ||
           addSubIndex(targetLine, targetIndex, targetSub, forPlace(*data, line, targetLine));
}

bool ObjectDataBase::saveIndex(quint8 line, quint16 index)
{
    if (d->lockWriteAccess)
        return false;
    const std::optional<SavedObject> object = readObject(line, index);
    if (object)
        d->savedObject = object;
    return object.has_value();
}

bool ObjectDataBase::pasteSavedIndex(quint8 line, quint16 index)
{
    if (d->lockWriteAccess || !d->savedObject || !existNode(line))
        return false;
    const SavedObject object = *d->savedObject;
    return putObject(line, index, object);
}

// --- signals in memory ---

bool ObjectDataBase::getSPNsFromCache(quint8 line, quint32 pgn, quint8 direction,
                                      QList<quint32> &spns) const
{
    if (!Groups(*d).cachedSignals(line, {pgn, direction}))
        return false;
    spns = getSPNs(line, pgn, direction);
    return true;
}

bool ObjectDataBase::getSPNDataFromCache(quint8 line, quint32 pgn, quint8 direction, quint32 spn,
                                         SPN &data) const
{
    return Groups(*d).cachedSignals(line, {pgn, direction}) &&
           getSPNData(line, pgn, direction, spn, data);
}

bool ObjectDataBase::getSPNDataFromCache(const SPN_Identifier &place, SPN &data) const
{
    return getSPNDataFromCache(place.line, place.pgn, place.direction, place.spn, data);
}

bool ObjectDataBase::getSPNDataTypesFromCache(quint8 line, quint32 pgn, quint8 direction,
                                              QList<quint16> &types) const
{
    if (!Groups(*d).cachedSignals(line, {pgn, direction}))
        return false;
    types = getSPNDataTypes(line, pgn, direction);
    return true;
}

void ObjectDataBase::cacheAllSpnDataTypes(quint8 line)
{
    Groups(*d).cacheLine(line);
}

bool ObjectDataBase::getSPNDataTypes(quint8 line, quint32 pgn, const QList<quint32> &spns,
                                     QList<quint16> &types) const
{
    Statement rows(*d,
                   QStringLiteral("select spnnumber,datatype from %1 where pgnnumber = ? "
                                  "order by rowid desc")
                       .arg(Schema::table("SPNs", line)),
                   {pgn});
    QHash<quint32, quint16> known; // of a signal that goes both ways the first row counts
    while (rows.next())
        known.insert(rows.value(0).toUInt(), static_cast<quint16>(rows.value(1).toUInt()));
    if (!rows.ok())
        return false;
    types.clear();
    for (const quint32 spn : spns)
        types << known.value(spn);
    return true;
}
