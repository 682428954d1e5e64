// Control characters shown instead of sent.
#include "support/printable.h"

namespace
{

bool isLayout(const QString &text, int at)
{
    const QChar character = text.at(at);
    const bool beginsLineEnd =
        character == QLatin1Char('\r') && text.midRef(at + 1).startsWith(QLatin1Char('\n'));
    return character == QLatin1Char('\n') || character == QLatin1Char('\t') || beginsLineEnd;
}

QString withoutControls(const QString &text, bool keepsLayout)
{
    QString result;
    int done = 0;
    for (int at = 0; at < text.size(); ++at) {
        if (text.at(at).category() != QChar::Other_Control || (keepsLayout && isLayout(text, at)))
            continue;
        result += text.midRef(done, at - done) +
                  QStringLiteral("\\x%1").arg(text.at(at).unicode(), 2, 16, QLatin1Char('0'));
        done = at + 1;
    }
    return done == 0 ? text : result + text.midRef(done);
}

} // namespace

QString printableText(const QString &text)
{
    return withoutControls(text, true);
}

QString printableLine(const QString &text)
{
    return withoutControls(text, false);
}

QString quotedWord(const QString &text)
{
    constexpr int kLongest = 60;
    const QString shown =
        text.size() > kLongest ? text.left(kLongest) + QLatin1String("...") : text;
    return QLatin1Char('"') + shown + QLatin1Char('"');
}
