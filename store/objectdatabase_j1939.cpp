// Parameter groups of J1939 lines and their signals (SAE J1939-21, SAE J1939-71).
#include "store/objectdatabase_frames_p.h"

using Groups = Frames<PgnData>;

QList<quint32> ObjectDataBase::getPGNs(quint8 line, quint8 direction, bool noSafe) const
{
    if (!noSafe)
        return Groups(*d).numbers(line, direction);
    return Groups(*d).numbers(line, direction, QStringLiteral("(issafe = 0 or issafe is NULL)"),
                              [](const PGN &group) { return group.isSafe == 0; });
}

bool ObjectDataBase::existsPGN(quint8 line, quint32 pgn, quint8 direction) const
{
    PGN data;
    return getPGNData(line, pgn, direction, data);
}

bool ObjectDataBase::getPGNData(quint8 line, quint32 pgn, quint8 direction, PGN &data) const
{
    return Groups(*d).get(line, {pgn, direction}, data);
}

QString ObjectDataBase::getPGNName(quint8 line, quint32 pgn, quint8 direction) const
{
    PGN data;
    (void)getPGNData(line, pgn, direction, data); // one that is not there has no name
    return data.name;
}

quint16 ObjectDataBase::getPGNMappingCount(quint8 line, quint32 pgn, quint8 direction) const
{
    PGN data;
    (void)getPGNData(line, pgn, direction, data); // as above
    return data.mappingCount;
}

bool ObjectDataBase::addPGN(quint8 line, quint32 pgn, const PGN &data)
{
    return Groups(*d).add(line, pgn, data);
}

bool ObjectDataBase::delPGN(quint8 line, quint32 pgn, quint8 direction)
{
    return Groups(*d).del(line, {pgn, direction});
}

QList<quint32> ObjectDataBase::getSPNs(quint8 line, quint32 pgn, quint8 direction) const
{
    return Groups(*d).signalNumbers(line, {pgn, direction});
}

bool ObjectDataBase::existsSPN(quint8 line, quint32 pgn, quint8 direction, quint32 spn) const
{
    SPN data;
    return getSPNData(line, pgn, direction, spn, data);
}

bool ObjectDataBase::getSPNData(quint8 line, quint32 pgn, quint8 direction, quint32 spn,
                                SPN &data) const
{
    return Groups(*d).getSignal(line, {pgn, direction}, spn, data);
}

QVector<ObjectDataBase::SPN> ObjectDataBase::getSPNRecords(quint8 line, quint32 pgn,
                                                           quint8 direction) const
{
    return Groups(*d).signalsOf(line, {pgn, direction});
}

QString ObjectDataBase::getSPNName(quint8 line, quint32 pgn, quint8 direction, quint32 spn) const
{
    SPN data;
    (void)getSPNData(line, pgn, direction, spn, data); // one that is not there has no name
    return data.name;
}

quint16 ObjectDataBase::getSPNDataType(quint8 line, quint32 pgn, quint8 direction,
                                       quint32 spn) const
{
    SPN data;
    (void)getSPNData(line, pgn, direction, spn, data); // nor a type
    return static_cast<quint16>(data.dataType);
}

QList<quint16> ObjectDataBase::getSPNDataTypes(quint8 line, quint32 pgn, quint8 direction) const
{
    QList<quint16> types;
    const QVector<SPN> all = getSPNRecords(line, pgn, direction);
    for (const SPN &spn : all)
        types << static_cast<quint16>(spn.dataType);
    return types;
}

bool ObjectDataBase::addSPN(quint8 line, quint32 pgn, quint8 direction, quint32 spn,
                            const SPN &data)
{
    return Groups(*d).addSignal(line, {pgn, direction}, spn, data);
}

bool ObjectDataBase::delSPN(quint8 line, quint32 pgn, quint8 direction, quint32 spn)
{
    return Groups(*d).delSignal(line, {pgn, direction}, spn);
}

QVector<ObjectDataBase::SPN> ObjectDataBase::getSPNsWithoutGroup(quint8 line) const
{
    return Groups(*d).signalsWithoutFrame(line);
}

void ObjectDataBase::cacheAllSpnDataForLine(quint8 line)
{
    Groups(*d).cacheLine(line);
    Frames<CanIdData>(*d).cacheLine(line);
}

void ObjectDataBase::clearAllCachedSpnData()
{
    d->groups.clear();
    d->identifiers.clear();
}

void ObjectDataBase::fixEDP_DP_PGNs()
{
    beginBatch();
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines) {
        for (const quint8 direction : {Direction::kReceived, Direction::kTransmitted}) {
            const QList<quint32> numbers = getPGNs(line, direction, false);
            for (const quint32 number : numbers)
                foldDataPage(line, number, direction);
        }
    }
    commitBatch();
    clearAllCachedSpnData();
}

void ObjectDataBase::foldDataPage(quint8 line, quint32 number, quint8 direction)
{
    PGN group;
    if (!getPGNData(line, number, direction, group) || group.edpDpKey == 0)
        return;
    const quint32 whole = (quint32(group.edpDpKey) << 16) + number;
    const QVector<SPN> spns = getSPNRecords(line, number, direction);
    group.edpDpKey = 0;
    (void)addPGN(line, whole, group); // a locked store keeps its groups as they are
    for (const SPN &spn : spns)
        (void)addSPN(line, whole, direction, spn.number, spn); // as above
    (void)delPGN(line, number, direction);                     // as above
}

bool ObjectDataBase::pgnEqual(ObjectDataBase *other, quint8 line, quint8 otherLine, quint32 pgn,
                              quint32 otherPgn, quint8 direction) const
{
    return Groups::isEqual(Groups(*d), line, {pgn, direction}, Groups(*other->d), otherLine,
                           {otherPgn, direction});
}

void ObjectDataBase::fixFaultyPGNSPNCount()
{
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines) {
        d->groups.remove(line);
        Groups(*d).cacheLine(line); // whoever opens a project asks for them later on
        auto &cache = d->groups[line];
        for (auto group = cache.frames.begin(); group != cache.frames.end(); ++group) {
            const FrameKey &key = group.key();
            const bool hasDirection =
                key.direction == Direction::kReceived || key.direction == Direction::kTransmitted;
            const int count = cache.signalsOf.value(key).size();
            if (!hasDirection || (group->mappingCount & 0xFF) == count)
                continue;
            group->mappingCount = static_cast<quint16>(count);
            d->exec(
                QStringLiteral("update %1 set mappingcount = ? where number = ? and direction = ?")
                    .arg(Schema::table("PGNs", line)),
                {count, key.number, key.direction});
        }
    }
}

void ObjectDataBase::updatePGNdirectionAttributes(quint8 line)
{
    d->groups.remove(line);
    // Of a group that goes both ways the last row decides; max() makes the direction that of its
    // row.
    d->exec(QStringLiteral("with known as (select number n, direction d, max(rowid) "
                           "from %1 group by number) "
                           "update %2 set direction = (select d from known where n = pgnnumber) "
                           "where pgnnumber in (select n from known)")
                .arg(Schema::table("PGNs", line), Schema::table("SPNs", line)));
}
