// The date and time that generated files show, in the same form in any locale.
#pragma once

#include <QDateTime>
#include <QString>

namespace GenerationDate
{

/// The moment of the run in local time. Where the environment variable SOURCE_DATE_EPOCH holds
/// seconds since 1970 in decimal, that moment in UTC, so that builds can be repeated byte by byte;
/// any other content of the variable counts as unset.
QDateTime local();

/// The same in UTC in any case.
QDateTime utc();

/// "Sat Nov 21 09:05:00 2026", without a word on the time zone.
QString text(const QDateTime &moment);

/// "11-21-26": month, day, year.
QString day(const QDateTime &moment);

/// "11-21-2026"
QString fullDay(const QDateTime &moment);

/// "09:05"
QString clock(const QDateTime &moment);

/// "09:05PM", on the clock of twelve hours.
QString halfDayClock(const QDateTime &moment);

/// "2026-11-21", as XML has it.
QString isoDay(const QDateTime &moment);

/// "09:05:00"
QString isoClock(const QDateTime &moment);

} // namespace GenerationDate
