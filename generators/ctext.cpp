// Texts of a project inside generated C.
#include "generators/ctext.h"

#include <QDateTime>

QString CText::comment(const QString &text)
{
    QString safe = text;
    // Deliberate: the only change to a comment's text, held by tst_ctext.
    return safe.replace(QLatin1String("*/"), QLatin1String("* /"));
}

QString CText::stringContent(const QString &text)
{
    QString content;
    content.reserve(text.size());
    bool isEscaped = false;
    for (const QChar character : text) {
        if (character == QLatin1Char('\n'))
            content += isEscaped ? QLatin1String("\\\\n") : QLatin1String("\\n");
        else if (character == QLatin1Char('\r'))
            content += isEscaped ? QLatin1String("\\\\r") : QLatin1String("\\r");
        else if (character == QLatin1Char('"') && !isEscaped)
            content += QLatin1String("\\\"");
        else
            content += character;
        isEscaped = character == QLatin1Char('\\') && !isEscaped;
    }
    if (isEscaped)
        content += QLatin1Char('\\');
    return content;
}

QString CText::generationTime()
{
    return QDateTime::currentDateTime().toString(Qt::TextDate);
}
