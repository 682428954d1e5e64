// Line ends and control characters.
#include "support/plaintext.h"

#include "support/characters.h"

#include <algorithm>

namespace
{

/// What some reader takes for the end of a line: Unicode TR 13 names these.
bool isLineEnd(QChar character)
{
    const ushort code = character.unicode();
    return (code >= '\n' && code <= '\r') || code == 0x85 || code == 0x2028 || code == 0x2029;
}

bool breaksLine(QChar character)
{
    return (character.unicode() < ' ' && character != QLatin1Char('\t')) || isLineEnd(character);
}

/// \a text with \a lineEnd for each end of a line.
QString withLineEnds(const QString &text, char lineEnd)
{
    if (!Characters::any(text, Characters::areOdd) ||
        std::none_of(text.begin(), text.end(), breaksLine))
        return text; // as most are
    QString result = text;
    result.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (QChar &character : result) {
        if (isLineEnd(character))
            character = QLatin1Char(lineEnd);
        else if (breaksLine(character))
            character = QLatin1Char(' ');
    }
    return result;
}

} // namespace

QString oneLine(const QString &text)
{
    return withLineEnds(text, ' ');
}

QStringList textLines(const QString &text)
{
    return withLineEnds(text, '\n').split(QLatin1Char('\n'));
}
