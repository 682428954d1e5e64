// Diagnostic services of a line (ISO 14229-1). They are read once a line; every writer makes the
// line be read again.
#include "store/objectdatabase_p.h"

#include <algorithm>

namespace
{

constexpr quint8 kFirstService = 16; // those below are of OBD, SAE J1979
constexpr quint8 kLastService = 254;

} // namespace

const QMap<quint8, UdsServiceData> &StorePrivate::udsServices(quint8 line)
{
    const auto known = services.constFind(line);
    if (known != services.constEnd())
        return *known;
    QMap<quint8, UdsServiceData> read;
    Statement rows(
        *this, QStringLiteral("select sid,%1 from %2 where sid between 0 and 255 order by rowid")
                   .arg(columnList(kUdsServiceColumns), Schema::table("UDSSettings", line)));
    while (rows.next()) {
        const auto sid = static_cast<quint8>(rows.value(0).toUInt());
        if (read.contains(sid))
            continue; // an older project may hold a service twice
        UdsServiceData &service = read[sid];
        int i = 1;
        for (const Column<UdsServiceData> &field : kUdsServiceColumns)
            readColumn(field, service, rows.value(i++));
    }
    return *services.insert(line, read);
}

void StorePrivate::forgetServicesAndSignals()
{
    services.clear();
    allSignals.reset();
}

QList<quint8> ObjectDataBase::getUDSServices(quint8 line) const
{
    return d->udsServices(line).keys();
}

bool ObjectDataBase::getUDSServiceData(quint8 line, quint8 sid, UDS_SERVICE_T &data) const
{
    const auto &services = d->udsServices(line);
    const auto found = services.constFind(sid);
    if (found == services.constEnd())
        return false;
    data = *found;
    return true;
}

bool ObjectDataBase::isUDSServiceActive(quint8 line, quint8 sid) const
{
    return d->udsServices(line).value(sid).active;
}

QString ObjectDataBase::getUDSServiceSessions(quint8 line, quint8 sid) const
{
    return d->udsServices(line).value(sid).sessions;
}

QString ObjectDataBase::getUDSServiceUserLevels(quint8 line, quint8 sid) const
{
    return d->udsServices(line).value(sid).userLevels;
}

int ObjectDataBase::getUDSServiceActiveCnt(quint8 line) const
{
    const auto &services = d->udsServices(line);
    return int(std::count_if(services.keyValueBegin(), services.keyValueEnd(), [](const auto &row) {
        return row.first >= kFirstService && row.first <= kLastService && row.second.active;
    }));
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
    d->services.remove(line);
    const QString table = Schema::table("UDSSettings", line);
    const Statement update(
        *d, QStringLiteral("update %1 set %2=? where sid = ?").arg(table, QLatin1String(column)),
        {value, sid});
    return update.affectedRows() > 0 ||
           d->exec(QStringLiteral("insert into %1 (sid,%2) values(?,?)")
                       .arg(table, QLatin1String(column)),
                   {sid, value});
}

bool ObjectDataBase::delUDSService(quint8 line, quint8 sid)
{
    if (d->lockWriteAccess)
        return false;
    d->services.remove(line);
    return d->exec(
        QStringLiteral("delete from %1 where sid = ?").arg(Schema::table("UDSSettings", line)),
        {sid});
}
