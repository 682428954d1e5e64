// Control characters shown instead of sent.
#include "support/printable.h"

namespace
{

bool isControl(QChar character, bool keepsLayout)
{
    if (keepsLayout && (character == QLatin1Char('\n') || character == QLatin1Char('\t')))
        return false;
    return character.category() == QChar::Other_Control;
}

QString withoutControls(const QString &text, bool keepsLayout)
{
    QString result;
    int done = 0;
    for (int at = 0; at < text.size(); ++at) {
        if (!isControl(text.at(at), keepsLayout))
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
