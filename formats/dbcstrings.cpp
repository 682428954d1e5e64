// Letters of DBC files.
#include "formats/dbcstrings.h"

#include "formats/dbckeys.h"
#include "formats/edstext.h"

#include <QChar>
#include <QRegularExpression>

namespace
{

/// The characters of Windows-1252 beyond Latin-1.
bool isBeyondLatin1(ushort code)
{
    static const QString letters = QString::fromUtf8("€‚ƒ„…†‡ˆ‰Š‹ŒŽ‘’“”•–—˜™š›œžŸ");
    return letters.contains(QChar(code));
}

bool isLetter(ushort code)
{
    return (code >= 0x20 && code < 0x7F) || (code >= 0xA0 && code <= 0xFF) || isBeyondLatin1(code);
}

/// The letters of \a character without its marks, else what stands for it in ASCII.
QString replacement(QChar character)
{
    QString letters;
    const QString parts = QString(character).normalized(QString::NormalizationForm_KD);
    for (const QChar part : parts) {
        if (isLetter(part.unicode()))
            letters += part;
    }
    return letters.isEmpty() ? EdsText::ascii(character) : letters;
}

QString withOneLineEnd(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    return text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
}

/// Readers that go by lines take what looks like the end of a text for it, unless it is on the
/// last.
QString withoutFalseEnds(QString text)
{
    static const QRegularExpression end(QStringLiteral("\" *;"));
    return text.contains(end) ? text.replace(QLatin1Char('\n'), QLatin1Char(' ')) : text;
}

/// Readers differ on what a backslash means there.
QString withPartedBackslashes(const QString &text)
{
    QString parted;
    for (int i = 0; i < text.size(); ++i) {
        parted += text.at(i);
        const QChar next = i + 1 < text.size() ? text.at(i + 1) : QLatin1Char('"');
        if (text.at(i) == QLatin1Char('\\') &&
            (next == QLatin1Char('\\') || next == QLatin1Char('"')))
            parted += QLatin1Char(' ');
    }
    return parted;
}

} // namespace

QString DbcStrings::name(const QString &text)
{
    QString name = text;
    for (QChar &character : name) {
        const ushort code = character.unicode();
        const bool canStand = (code >= '0' && code <= '9') || (code >= 'a' && code <= 'z') ||
                              (code >= 'A' && code <= 'Z');
        if (!canStand)
            character = QLatin1Char('_');
    }
    const bool hasMeaning =
        name == QLatin1String(DbcKeys::kNobody) || name == QLatin1String(DbcKeys::kLooseSignals);
    return hasMeaning ? QLatin1Char('_') + name : name;
}

QString DbcStrings::portable(const QString &text, bool *isWhole)
{
    QString written;
    const QString composed = withOneLineEnd(text).normalized(QString::NormalizationForm_C);
    for (const QChar character : composed) {
        const ushort code = character.unicode();
        const bool isBlank = character.category() == QChar::Other_Control || character.isSpace();
        if (isLetter(code) || code == '\n') {
            written += character;
        } else if (isBlank) {
            written += QLatin1Char(' ');
        } else {
            written += replacement(character);
            *isWhole = false;
        }
    }
    return withPartedBackslashes(withoutFalseEnds(written));
}
