// Parameter groups of J1939 lines (SAE J1939-21).
#include "store/objectdatabase_p.h"

QList<quint32> ObjectDataBase::getPGNs(quint8 line, quint8 direction, bool noSafe) const
{
    QStringList conditions;
    Cells values;
    if (direction != 0) {
        conditions << QStringLiteral("direction = ?");
        values << direction;
    }
    if (noSafe)
        conditions << QStringLiteral("(issafe = 0 or issafe is NULL)");
    const QString where = conditions.isEmpty()
                              ? QString()
                              : QStringLiteral("where ") + conditions.join(QStringLiteral(" AND "));
    QList<quint32> numbers;
    Statement statement(*d,
                        QStringLiteral("select number from %1 %2 order by number asc")
                            .arg(Schema::table("PGNs", line), where),
                        values);
    while (statement.next())
        numbers << statement.value(0).toUInt();
    return numbers;
}

QList<quint16> ObjectDataBase::getSPNDataTypes(quint8 line, quint32 pgn, quint8 direction) const
{
    QList<quint16> types;
    Statement statement(*d,
                        QStringLiteral("select datatype from %1 where pgnnumber = ? and "
                                       "direction = ? order by pos asc")
                            .arg(Schema::table("SPNs", line)),
                        {pgn, direction});
    while (statement.next())
        types << static_cast<quint16>(statement.value(0).toUInt());
    return types;
}

bool ObjectDataBase::delPGN(quint8 line, quint32 pgn, quint8 direction)
{
    if (d->lockWriteAccess)
        return false;
    d->exec(QStringLiteral("delete from %1 where pgnnumber = ? and direction = ?")
                .arg(Schema::table("SPNs", line)),
            {pgn, direction});
    const bool done = d->exec(QStringLiteral("delete from %1 where number = ? and direction = ?")
                                  .arg(Schema::table("PGNs", line)),
                              {pgn, direction});
    ChangeSet change;
    change.kind = ChangeSet::Kind::DelPgn;
    change.line = line;
    change.pgn = pgn;
    emit updateNotify(change);
    return done;
}

void ObjectDataBase::fixFaultyPGNSPNCount()
{
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines) {
        d->exec(QStringLiteral(
                    "with counted as (select pgnnumber p, direction d, count(*) n "
                    "from %2 group by pgnnumber, direction) "
                    "update %1 set mappingcount = "
                    "coalesce((select n from counted where p = number and d = direction), 0) "
                    "where direction in (0x77, 0x55) and (coalesce(mappingcount, 0) & 255) != "
                    "coalesce((select n from counted where p = number and d = direction), 0)")
                    .arg(Schema::table("PGNs", line), Schema::table("SPNs", line)));
    }
}

void ObjectDataBase::updatePGNdirectionAttributes(quint8 line)
{
    d->exec(QStringLiteral("update %2 set direction = (select direction from %1 "
                           "where number = pgnnumber) where pgnnumber in (select number from %1)")
                .arg(Schema::table("PGNs", line), Schema::table("SPNs", line)));
}
