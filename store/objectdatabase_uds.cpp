// Diagnostic services of a line (ISO 14229-1).
#include "store/objectdatabase_p.h"

QVariant ObjectDataBase::udsColumn(quint8 line, quint8 sid, const char *column) const
{
    Statement statement(*d,
                        QStringLiteral("select %1 from %2 where sid = ?")
                            .arg(QLatin1String(column), Schema::table("UDSSettings", line)),
                        {sid});
    return statement.next() ? statement.value(0) : QVariant();
}

bool ObjectDataBase::isUDSServiceActive(quint8 line, quint8 sid) const
{
    return udsColumn(line, sid, "active").toInt() != 0;
}

QString ObjectDataBase::getUDSServiceSessions(quint8 line, quint8 sid) const
{
    return udsColumn(line, sid, "sessions").toString();
}

QString ObjectDataBase::getUDSServiceUserLevels(quint8 line, quint8 sid) const
{
    return udsColumn(line, sid, "userlevels").toString();
}

int ObjectDataBase::getUDSServiceActiveCnt(quint8 line) const
{
    Statement statement(*d, QStringLiteral("select count(*) from %1 where active != 0 and "
                                           "sid between 16 and 254")
                                .arg(Schema::table("UDSSettings", line)));
    return statement.next() ? statement.value(0).toInt() : 0;
}

bool ObjectDataBase::setUDSServiceActive(quint8 line, quint8 sid, bool active)
{
    return setUdsColumn(line, sid, "active", int(active));
}

bool ObjectDataBase::setUDSServiceSessions(quint8 line, quint8 sid, const QString &sessions)
{
    return setUdsColumn(line, sid, "sessions", sessions);
}

bool ObjectDataBase::setUDSServiceUserLevels(quint8 line, quint8 sid, const QString &levels)
{
    return setUdsColumn(line, sid, "userlevels", levels);
}

bool ObjectDataBase::setUdsColumn(quint8 line, quint8 sid, const char *column,
                                  const QVariant &value)
{
    if (d->lockWriteAccess)
        return false;
    const QString table = Schema::table("UDSSettings", line);
    const Statement update(
        *d, QStringLiteral("update %1 set %2=? where sid = ?").arg(table, QLatin1String(column)),
        {value, sid});
    return update.affectedRows() > 0 ||
           d->exec(QStringLiteral("insert into %1 (sid,%2) values(?,?)")
                       .arg(table, QLatin1String(column)),
                   {sid, value});
}
