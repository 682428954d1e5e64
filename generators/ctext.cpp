// Texts of a project inside generated C.
#include "generators/ctext.h"

#include "generators/codetext.h"
#include "generators/generationdate.h"
#include "generators/textwriter.h"
#include "support/plaintext.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int kHexDigits = 2;   // of a byte
constexpr int kOctalDigits = 3; // at most

bool isHexDigit(const QString &text, int position)
{
    if (position >= text.size())
        return false;
    const ushort c = text.at(position).unicode();
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Length of the escape that the backslash at \a start begins, up to the one byte that it stands
/// for; 0 if it begins none.
int escapeLength(const QString &text, int start)
{
    const int next = start + 1;
    if (next >= text.size())
        return 0;
    const QChar kind = text.at(next);
    if (kind == QLatin1Char('x')) {
        if (!isHexDigit(text, next + 1))
            return 0;
        return isHexDigit(text, next + kHexDigits) ? 2 + kHexDigits : 1 + kHexDigits;
    }
    int digits = 0;
    int value = 0;
    while (digits < kOctalDigits && next + digits < text.size()) {
        const int digit = text.at(next + digits).unicode() - '0';
        if (digit < 0 || digit > 7)
            break;
        value = value * 8 + digit;
        ++digits;
    }
    if (digits > 0)
        return value <= 0xFF ? 1 + digits : 0;
    return QStringLiteral("'\"?\\abfnrtv").contains(kind) ? 2 : 0;
}

/// What stands in a literal for a character that is not a backslash.
QString literalCharacter(QChar character, bool followsQuestionMark)
{
    switch (character.unicode()) {
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '"':
        return QStringLiteral("\\\"");
    case '?': // two of them may begin a trigraph
        return followsQuestionMark ? QStringLiteral("\\?") : QString(character);
    default:
        break;
    }
    if (character.unicode() >= ' ' || character == QLatin1Char('\t'))
        return character;
    return QStringLiteral("\\%1").arg(character.unicode(), kOctalDigits, 8, QLatin1Char('0'));
}

/// Names, numbers, members and elements of arrays, as most texts are, need no closer look. No sign
/// is among these that begins or ends a comment, a literal, a digraph or another pair of brackets.
bool isPlainCode(const QString &text)
{
    int open = 0;
    const bool isPlain = std::all_of(text.begin(), text.end(), [&open](QChar character) {
        const ushort code = character.unicode();
        open += (code == '[') - (code == ']');
        return open >= 0 &&
               (character.isLetterOrNumber() || code == '_' || code == '.' || code == '-' ||
                code == '+' || code == '&' || code == ' ' || code == '[' || code == ']');
    });
    return isPlain && open == 0;
}

QString closedCode(const QString &text, CodeText::Kind kind)
{
    if (isPlainCode(text))
        return text;
    QString spliced = text; // as a compiler does before all else
    spliced.remove(QLatin1String("\\\r\n")).remove(QLatin1String("\\\n"));
    return CodeText(oneLine(spliced), kind).closed();
}

} // namespace

QString CText::comment(const QString &text)
{
    QString safe = oneLine(text); // first: a blank separates what a line end would
    if (!safe.contains(QLatin1Char('/')))
        return safe; // as most are
    // Deliberate: no more changes to a comment's text, held by tst_ctext.
    safe.replace(QLatin1String("*/"), QLatin1String("* /"));
    return safe.replace(QLatin1String("/*"), QLatin1String("/ *"));
}

QString CText::line(const QString &text)
{
    return closedCode(text, CodeText::Kind::Line);
}

QString CText::expression(const QString &text)
{
    return closedCode(text, CodeText::Kind::Expression);
}

QString CText::freeLines(const QString &text)
{
    const QString end = text.trimmed();
    const bool isOpen =
        end.endsWith(QLatin1Char('\\')) || end.endsWith(QLatin1String("?\?/")); // its trigraph
    return text + QLatin1String(isOpen ? "\n\n" : "\n");
}

QString CText::name(const QString &text)
{
    QString name = text.trimmed();
    for (QChar &character : name) {
        if (!character.isLetterOrNumber() && character != QLatin1Char('_'))
            character = QLatin1Char('_');
    }
    return !name.isEmpty() && name.at(0).isDigit() ? QLatin1Char('_') + name : name;
}

QString CText::stringContent(const QString &text)
{
    QString content;
    content.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) != QLatin1Char('\\')) {
            content += literalCharacter(text.at(i), content.endsWith(QLatin1Char('?')));
            continue;
        }
        const int length = escapeLength(text, i);
        if (length == 0) {
            content += QLatin1String("\\\\");
            continue;
        }
        content += text.midRef(i, length);
        const bool isHex = text.at(i + 1) == QLatin1Char('x');
        i += length - 1;
        if (isHex && isHexDigit(text, i + 1))
            content += QLatin1String("\"\""); // a digit of the text must not join the escape
    }
    return content;
}

QString CText::realNumber(const QString &text)
{
    constexpr int kDigits = 8;
    bool isNumber = false;
    const float value = text.toFloat(&isNumber);
    return QString::number(isNumber && std::isfinite(value) ? double(value) : 0.0, 'e', kDigits) +
           QLatin1Char('f');
}

quint32 CText::literalBytes(const QString &content)
{
    int escaped = 0;
    QString plain;
    for (int i = 0; i < content.size(); ++i) {
        const int length = content.at(i) == QLatin1Char('\\') ? escapeLength(content, i) : 0;
        if (length > 0) {
            ++escaped;
            i += length - 1;
        } else if (content.at(i) != QLatin1Char('"')) { // two quotes split a literal
            plain += content.at(i);
        }
    }
    return static_cast<quint32>(escaped + plain.toUtf8().size());
}

void CText::writeHead(TextWriter &out, const char *title, const QString &projectName,
                      const QString &toolVersion)
{
    out.raw("/*\n");
    out.fill(title, {{"project", comment(projectName)},
                     {"tool", QCoreApplication::applicationName()},
                     {"version", toolVersion}});
    out.fill(" * $time$\n"
             " */\n",
             {{"time", generationTime()}});
}

QString CText::generationTime()
{
    return GenerationDate::text(GenerationDate::local());
}
