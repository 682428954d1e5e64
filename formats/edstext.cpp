// Texts of any language as ASCII.
#include "formats/edstext.h"

#include "formats/edskeys.h"
#include "support/plaintext.h"

#include <algorithm>

namespace
{

struct SubstituteRow {
    ushort character;
    const char *ascii;
};

// clang-format off
/// What Unicode has no decomposition for.
constexpr SubstituteRow kSubstitutes[] = {
    {0x00B0, "deg"}, {0x00B1, "+-"}, {0x00B7, "."},  {0x00D7, "x"},  {0x00F7, "/"},
    {0x00C6, "AE"},  {0x00D8, "O"},  {0x00DF, "ss"}, {0x00E6, "ae"}, {0x00F8, "o"},
    {0x0110, "D"},   {0x0111, "d"},  {0x0131, "i"},  {0x0141, "L"},  {0x0142, "l"},
    {0x0152, "OE"},  {0x0153, "oe"}, {0x03A9, "Ohm"}, {0x03BC, "u"},
    {0x2010, "-"},   {0x2012, "-"},  {0x2013, "-"},  {0x2014, "-"},  {0x2212, "-"},
    {0x2018, "'"},   {0x2019, "'"},  {0x201C, "\""}, {0x201D, "\""}, {0x201E, "\""},
    {0x2044, "/"},   {0x20AC, "EUR"},
};
// clang-format on

bool isPrintable(QChar character)
{
    return character.unicode() >= ' ' && character.unicode() < 0x7F;
}

bool isPrintable(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return isPrintable(c); });
}

/// Marks and formats belong to the characters beside them; of a pair the first half counts.
bool isUnseen(QChar character)
{
    return character.isMark() || character.category() == QChar::Other_Format ||
           character.isLowSurrogate();
}

void append(QString &result, QChar character)
{
    const auto *row =
        std::find_if(std::begin(kSubstitutes), std::end(kSubstitutes),
                     [=](const SubstituteRow &r) { return r.character == character.unicode(); });
    if (isPrintable(character))
        result += character;
    else if (row != std::end(kSubstitutes))
        result += QLatin1String(row->ascii);
    else if (character.category() == QChar::Other_Control || character.isSpace())
        result += QLatin1Char(' ');
    else if (!isUnseen(character))
        result += QLatin1Char('?');
}

/// Readers take what follows a blank and one of these for a comment.
bool beginsComment(QChar character)
{
    return character == QLatin1Char(';') || character == QLatin1Char('#');
}

QString withoutCommentStarts(const QString &text)
{
    QString kept;
    kept.reserve(text.size());
    for (const QChar character : text) {
        while (beginsComment(character) && kept.endsWith(QLatin1Char(' ')))
            kept.chop(1);
        kept += character;
    }
    return kept;
}

int roomBehind(const char *key)
{
    return EdsText::kLineLength - int(qstrlen(key)) - 1;
}

} // namespace

QString EdsText::ascii(const QString &text)
{
    if (isPrintable(text)) // as most are
        return text;
    const QString decomposed = oneLine(text).normalized(QString::NormalizationForm_KD);
    QString result;
    result.reserve(decomposed.size());
    for (const QChar character : decomposed)
        append(result, character);
    return result;
}

QString EdsText::entry(const char *key, const QString &text)
{
    return withoutCommentStarts(ascii(text).trimmed()).left(roomBehind(key)).trimmed();
}

bool EdsText::isHeld(const char *key, const QString &text)
{
    return !text.isEmpty() && entry(key, text) == text;
}

QStringList EdsText::lines(const QString &text, int width)
{
    QStringList pieces;
    const QStringList all = textLines(text);
    for (const QString &line : all) {
        const QString words = ascii(line);
        int start = 0;
        do {
            pieces << words.mid(start, width);
            start += width;
        } while (start < words.size());
    }
    return pieces;
}

QStringList EdsText::commentLines(const QString &text)
{
    constexpr int kDigits = 6; // of the number of a line
    const int width = roomBehind(EdsKeys::kLine) - kDigits;
    QStringList kept;
    const QStringList all = lines(text, width);
    for (const QString &line : all) {
        const QString words = withoutCommentStarts(line.trimmed());
        if (!words.isEmpty())
            kept << words;
    }
    return kept;
}
