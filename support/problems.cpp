// Problems on their way to standard error.
#include "support/problems.h"

#include "support/printable.h"

#include <QMutex>

namespace
{

QMutex handlerMutex;
Problems::Handler currentHandler;

} // namespace

namespace Problems
{

QString Problem::asLine() const
{
    QString place = file;
    for (const int number : {line, column}) {
        if (number > 0)
            place += QLatin1Char(':') + QString::number(number);
    }
    if (!place.isEmpty())
        place += QLatin1String(": ");
    static constexpr const char *kWords[] = {"error", "warning", "note"}; // in the order of Level
    const QLatin1String word(kWords[static_cast<size_t>(level)]);
    return printableLine(place + word + QLatin1String(": ") + text + QLatin1String(" [") + rule +
                         QLatin1Char(']'));
}

Handler setHandler(Handler handler)
{
    const QMutexLocker lock(&handlerMutex);
    std::swap(currentHandler, handler);
    return handler;
}

void report(const Problem &problem)
{
    const QMutexLocker lock(&handlerMutex);
    if (currentHandler)
        currentHandler(problem);
}

void error(const char *rule, const QString &file, const QString &text, int line)
{
    report({Level::Error, file, line, text, QLatin1String(rule)});
}

void warning(const char *rule, const QString &file, const QString &text, int line)
{
    report({Level::Warning, file, line, text, QLatin1String(rule)});
}

void note(const char *rule, const QString &file, const QString &text, int line)
{
    report({Level::Note, file, line, text, QLatin1String(rule)});
}

} // namespace Problems
