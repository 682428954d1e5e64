// PDOs and mappings that the user fixed: two tables of one shape.
#include "store/objectdatabase_p.h"

namespace
{

constexpr char kPdos[] = "LockedPDOs";
constexpr char kMappings[] = "LockedMappings";

bool isLocked(StorePrivate &store, const char *table, quint8 line, quint16 pdoIndex)
{
    return Statement(store,
                     QStringLiteral("select node from %1 where node = ? and pdoindex = ?")
                         .arg(QLatin1String(table)),
                     {line, pdoIndex})
        .next();
}

void setLocked(StorePrivate &store, const char *table, quint8 line, quint16 pdoIndex, bool lock)
{
    if (store.lockWriteAccess || isLocked(store, table, line, pdoIndex) == lock)
        return;
    const QString sql = lock ? QStringLiteral("insert into %1 (node,pdoindex) values(?,?)")
                             : QStringLiteral("delete from %1 where node = ? and pdoindex = ?");
    store.exec(sql.arg(QLatin1String(table)), {line, pdoIndex});
}

QList<quint16> lockedIndices(StorePrivate &store, const char *table, quint8 line)
{
    QList<quint16> indices;
    Statement statement(store,
                        QStringLiteral("select pdoindex from %1 where node = ? order by pdoindex")
                            .arg(QLatin1String(table)),
                        {line});
    while (statement.next())
        indices << static_cast<quint16>(statement.value(0).toUInt());
    return indices;
}

/// Without a line the locks of all lines.
bool clearLocks(StorePrivate &store, const char *table, const Cells &line = {})
{
    const QString where = line.isEmpty() ? QString() : QStringLiteral(" where node = ?");
    return !store.lockWriteAccess &&
           store.exec(QStringLiteral("delete from %1%2").arg(QLatin1String(table), where), line);
}

} // namespace

bool ObjectDataBase::isPdoLocked(quint8 line, quint16 pdoIndex) const
{
    return isLocked(*d, kPdos, line, pdoIndex);
}

bool ObjectDataBase::isMappingLocked(quint8 line, quint16 pdoIndex) const
{
    return isLocked(*d, kMappings, line, pdoIndex);
}

void ObjectDataBase::setLockedPdo(quint8 line, quint16 pdoIndex, bool lock)
{
    setLocked(*d, kPdos, line, pdoIndex, lock);
}

void ObjectDataBase::setLockedMapping(quint8 line, quint16 pdoIndex, bool lock)
{
    setLocked(*d, kMappings, line, pdoIndex, lock);
}

QList<quint16> ObjectDataBase::getLockedPDOs(quint8 line) const
{
    return lockedIndices(*d, kPdos, line);
}

QList<quint16> ObjectDataBase::getLockedMappings(quint8 line) const
{
    return lockedIndices(*d, kMappings, line);
}

bool ObjectDataBase::clearLockedPDOs()
{
    return clearLocks(*d, kPdos);
}

bool ObjectDataBase::clearLockedPDOs(quint8 line)
{
    return clearLocks(*d, kPdos, {line});
}

bool ObjectDataBase::clearLockedMappings()
{
    return clearLocks(*d, kMappings);
}

bool ObjectDataBase::clearLockedMappings(quint8 line)
{
    return clearLocks(*d, kMappings, {line});
}
