// The date and time that generated files show.
#include "generators/generationdate.h"

#include <QLocale>

#include <algorithm>
#include <optional>

namespace
{

constexpr qint64 kLastSecond = 253402300799; // of the year 9999

std::optional<QDateTime> fixedMoment()
{
    const QByteArray seconds = qgetenv("SOURCE_DATE_EPOCH");
    const bool isDigits =
        std::all_of(seconds.cbegin(), seconds.cend(), [](char c) { return c >= '0' && c <= '9'; });
    bool isNumber = false;
    const qint64 value = seconds.toLongLong(&isNumber);
    if (!isDigits || !isNumber || value > kLastSecond)
        return std::nullopt;
    return QDateTime::fromSecsSinceEpoch(value, Qt::UTC);
}

} // namespace

QDateTime GenerationDate::local()
{
    return fixedMoment().value_or(QDateTime::currentDateTime());
}

QDateTime GenerationDate::utc()
{
    return fixedMoment().value_or(QDateTime::currentDateTimeUtc());
}

QString GenerationDate::text(const QDateTime &moment)
{
    return QLocale::c().toString(moment, QStringLiteral("ddd MMM d HH:mm:ss yyyy"));
}

QString GenerationDate::day(const QDateTime &moment)
{
    return QLocale::c().toString(moment, QStringLiteral("MM-dd-yy"));
}

QString GenerationDate::clock(const QDateTime &moment)
{
    return QLocale::c().toString(moment, QStringLiteral("HH:mm"));
}

QString GenerationDate::fullDay(const QDateTime &moment)
{
    return QLocale::c().toString(moment, QStringLiteral("MM-dd-yyyy"));
}

QString GenerationDate::halfDayClock(const QDateTime &moment)
{
    return QLocale::c().toString(moment, QStringLiteral("hh:mmAP"));
}

QString GenerationDate::isoDay(const QDateTime &moment)
{
    return QLocale::c().toString(moment, QStringLiteral("yyyy-MM-dd"));
}

QString GenerationDate::isoClock(const QDateTime &moment)
{
    return QLocale::c().toString(moment, QStringLiteral("HH:mm:ss"));
}
