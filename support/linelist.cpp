// The elements of lists by line.
#include "support/linelist.h"

#include <QStringList>

namespace
{

constexpr QLatin1Char kComma(',');

} // namespace

bool LineList::isList(const QString &text)
{
    return text.contains(kComma);
}

bool LineList::reaches(const QString &list, quint8 line)
{
    return line <= list.count(kComma);
}

QString LineList::element(const QString &list, quint8 line, Beyond beyond)
{
    const QStringList elements = list.split(kComma); // at least one
    if (line < elements.size())
        return elements.at(line);
    switch (beyond) {
    case Beyond::First:
        return elements.first();
    case Beyond::Last:
        return elements.last();
    case Beyond::Whole:
        return list;
    case Beyond::Nothing:
        break;
    }
    return QString();
}

QString LineList::shared(const QString &setting, quint8 line, Beyond beyond)
{
    return isList(setting) ? element(setting, line, beyond) : setting;
}

QString LineList::withElement(const QString &list, quint8 line, const QString &value)
{
    QStringList elements = list.split(QLatin1Char(','));
    while (elements.size() <= line)
        elements << QString();
    elements[line] = value;
    return elements.join(QLatin1Char(','));
}
