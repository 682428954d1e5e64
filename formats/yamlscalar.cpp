// How a single value is spelled in YAML.
#include "formats/yamlscalar.h"

#include <QRegularExpression>
#include <QSet>

namespace
{

constexpr int kLongestBlockLine = 16000; // characters, in UTF-8 below the bound of a line

QRegularExpression wholeText(const char *pattern)
{
    return QRegularExpression(QStringLiteral("\\A(?:%1)\\z").arg(QLatin1String(pattern)));
}

/// Numbers that all readers take for the same number.
bool isCommonNumber(const QString &text)
{
    static const QRegularExpression number =
        wholeText("0x[0-9A-Fa-f]+|-?(?:0|[1-9][0-9]*)(?:\\.[0-9]+)?");
    return number.match(text).hasMatch();
}

/// Has it to be escaped? Of the characters of Unicode that end a line in YAML 1.1, and all that no
/// file may hold.
bool isUnprintable(QChar ch)
{
    const ushort code = ch.unicode();
    return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0x2028 || code == 0x2029 ||
           code == 0xFEFF || code >= 0xFFFE;
}

/// A half of a pair without the other half.
bool isLone(const QString &text, int at)
{
    const QChar ch = text.at(at);
    if (ch.isHighSurrogate())
        return at + 1 >= text.size() || !text.at(at + 1).isLowSurrogate();
    return ch.isLowSurrogate() && (at == 0 || !text.at(at - 1).isHighSurrogate());
}

/// Can every reader take the text as it stands, wherever it stands?
bool isBareSafe(const QString &text)
{
    static const QString kNotFirst = QStringLiteral("-?:,[]{}#&*!|>'\"%@`");
    static const QString kNowhere = QStringLiteral(",[]{}");
    if (text.isEmpty() || text.front().isSpace() || text.back().isSpace() ||
        text.endsWith(QLatin1Char(':')))
        return false;
    const bool isDash = text.front() == QLatin1Char('-') && text.size() > 1 &&
                        (text.at(1).isDigit() || text.at(1) == QLatin1Char('.'));
    if ((kNotFirst.contains(text.front()) && !isDash) || text.startsWith(QLatin1String("...")))
        return false;
    for (int i = 0; i < text.size(); ++i) {
        const QChar ch = text.at(i);
        const bool isEnd =
            i + 1 < text.size() && ch == QLatin1Char(':') && text.at(i + 1) == QLatin1Char(' ');
        const bool isComment =
            i > 0 && ch == QLatin1Char('#') && text.at(i - 1) == QLatin1Char(' ');
        if (isUnprintable(ch) || isLone(text, i) || kNowhere.contains(ch) || isEnd || isComment)
            return false;
    }
    return true;
}

/// Appends a character as it stands in double quotes.
void addQuoted(const QString &text, int at, QString *result)
{
    const QChar ch = text.at(at);
    switch (ch.unicode()) {
    case '"':
        *result += QLatin1String("\\\"");
        return;
    case '\\':
        *result += QLatin1String("\\\\");
        return;
    case '\n':
        *result += QLatin1String("\\n");
        return;
    case '\r':
        *result += QLatin1String("\\r");
        return;
    case '\t':
        *result += QLatin1String("\\t");
        return;
    default:
        break;
    }
    if (isLone(text, at))
        *result += QChar(QChar::ReplacementCharacter);
    else if (isUnprintable(ch))
        *result += QStringLiteral("\\u%1").arg(ch.unicode(), 4, 16, QLatin1Char('0'));
    else
        *result += ch;
}

QString quoted(const QString &text)
{
    QString result(QLatin1Char('"'));
    for (int i = 0; i < text.size(); ++i)
        addQuoted(text, i, &result);
    return result + QLatin1Char('"');
}

/// What a line of a block may hold. One that begins with a blank would have another meaning.
bool isBlockLine(const QString &line)
{
    for (int i = 0; i < line.size(); ++i) {
        if ((isUnprintable(line.at(i)) && line.at(i) != QLatin1Char('\t')) || isLone(line, i))
            return false;
    }
    return line.size() <= kLongestBlockLine && (line.isEmpty() || !line.trimmed().isEmpty());
}

} // namespace

bool YamlScalar::looksTyped(const QString &text)
{
    static const QSet<QString> words{
        QStringLiteral("y"),
        QStringLiteral("n"),
        QStringLiteral("yes"),
        QStringLiteral("no"),
        QStringLiteral("on"),
        QStringLiteral("off"),
        QStringLiteral("true"),
        QStringLiteral("false"),
        QStringLiteral("null"),
        QStringLiteral("~"),
        QStringLiteral(".inf"),
        QStringLiteral("+.inf"),
        QStringLiteral("-.inf"),
        QStringLiteral(".nan"),
        QStringLiteral("="),
        QStringLiteral("<<"),
        QString(),
    };
    if (text.size() <= 5 && words.contains(text.toLower()))
        return true;
    const QChar first = text.front();
    if (!first.isDigit() && !QStringLiteral("+-.").contains(first))
        return false;
    // Integers of all bases, sexagesimal numbers, floating point, and dates
    static const QRegularExpression typed = wholeText(
        "[-+]?0b[01_]+|[-+]?0o?[0-7_]+|[-+]?0x[0-9A-Fa-f_]+|[-+]?[0-9][0-9_]*(?::[0-5]?[0-9])*"
        "(?:\\.[0-9_]*)?|[-+]?(?:\\.[0-9]+|[0-9][0-9_]*(?:\\.[0-9_]*)?)(?:[eE][-+]?[0-9]+)?|"
        "[0-9]{4}-[0-9]{1,2}-[0-9]{1,2}(?:[Tt \\t].*)?");
    return typed.match(text).hasMatch();
}

QString YamlScalar::oneLine(const QString &text, Meaning meaning)
{
    const bool isNumber = meaning == Meaning::Written && isCommonNumber(text);
    return isNumber || (isBareSafe(text) && !looksTyped(text)) ? text : quoted(text);
}

QStringList YamlScalar::literalBlock(const QString &text)
{
    if (!text.contains(QLatin1Char('\n')) || text.endsWith(QLatin1String("\n\n")) ||
        text.front().isSpace())
        return {};
    const bool endsLine = text.endsWith(QLatin1Char('\n'));
    QStringList lines = text.split(QLatin1Char('\n'));
    if (endsLine)
        lines.removeLast();
    for (const QString &line : qAsConst(lines)) {
        if (!isBlockLine(line))
            return {};
    }
    lines.prepend(endsLine ? QString() : QStringLiteral("-"));
    return lines;
}

QStringList YamlScalar::foldedBlock(const QString &text, int width)
{
    if (text.isEmpty() || text.contains(QLatin1Char('\n')) || text.front().isSpace() ||
        text.back().isSpace())
        return {};
    QStringList lines{QStringLiteral("-")};
    const auto mayBreakAt = [&text](int at) {
        return text.at(at) == QLatin1Char(' ') && !text.at(at - 1).isSpace() &&
               !text.at(at + 1).isSpace();
    };
    int begin = 0;
    int lastBreak = 0;
    for (int at = 1; at < text.size(); ++at) {
        if (at - begin > width && lastBreak > begin) {
            lines << text.mid(begin, lastBreak - begin);
            begin = lastBreak + 1;
        }
        if (mayBreakAt(at))
            lastBreak = at;
    }
    lines << text.mid(begin);
    for (const QString &line : qAsConst(lines)) {
        if (!isBlockLine(line))
            return {};
    }
    return lines.size() > 2 ? lines : QStringList();
}

QStringList YamlScalar::quotedLines(const QString &text, int width)
{
    QStringList lines;
    QString line(QLatin1Char('"'));
    for (int i = 0; i < text.size(); ++i) {
        const bool isPairEnd = i > 0 && text.at(i).isLowSurrogate() && !isLone(text, i);
        if (line.size() >= width && !isPairEnd) {
            lines << line + QLatin1Char('\\');
            // Blanks at the begin of a line are passed over, so the first one is escaped.
            line = text.at(i) == QLatin1Char(' ') ? QStringLiteral("\\") : QString();
        }
        addQuoted(text, i, &line);
    }
    lines << line + QLatin1Char('"');
    return lines;
}
