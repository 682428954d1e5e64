// Lists by line.
#include "generators/defines/definelists.h"

#include "generators/ctext.h"
#include "generators/generalsettings.h"
#include "support/linelist.h"

#include <QStringList>

namespace
{

QString bufferSize(const QString &setting, const QList<quint8> &lines, const QString &byDefault)
{
    const QString sizes = setting.trimmed();
    return Defines::lineList(sizes.isEmpty() ? byDefault : sizes, lines, byDefault);
}

} // namespace

QString Defines::lineList(const QString &setting, const QList<quint8> &lines,
                          const QString &emptyElement)
{
    // Deliberate: an array cannot take more elements than the device has lines, nor empty ones, nor
    // none at all; held by tst_definecounts.
    QStringList elements;
    for (const quint8 line : lines) {
        if (LineList::reaches(setting, line))
            elements << CText::line(LineList::element(setting, line));
    }
    if (elements.isEmpty() && !lines.isEmpty())
        elements << CText::line(LineList::element(setting, lines.first(), LineList::Beyond::Last));
    for (QString &element : elements) {
        if (element.trimmed().isEmpty())
            element = emptyElement;
    }
    return elements.join(QLatin1Char(','));
}

Defines::BufferSizes Defines::readBufferSizes(const GeneralSettings &settings,
                                              const QList<quint8> &lines)
{
    return {bufferSize(settings.text("receivebuffersize"), lines, QStringLiteral("10")),
            bufferSize(settings.text("transmitbuffersize"), lines, QStringLiteral("5"))};
}

QString Defines::withUnsignedEnd(const QString &list)
{
    return list.endsWith(QLatin1Char('u')) ? list : list + QLatin1Char('u');
}

QString Defines::combineCobBufferCounts(QString list)
{
    list.remove(QLatin1Char('u')).remove(QLatin1Char(' '));
    if (!list.contains(QLatin1Char(',')))
        return CText::line(list); // what is removed may have separated the signs of a comment
    quint32 sum = 0;
    const QStringList elements = list.split(QLatin1Char(','));
    for (const QString &element : elements)
        sum += Numbers::toUIntByPrefix(element);
    return QString::number(sum);
}
