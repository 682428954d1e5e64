// The INI dialect of QSettings.
#include "formats/initext.h"

#include "support/ascii.h"
#include "support/helper.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace
{

using IniText::isBlank;
using IniText::LineFault;
using IniText::Span;

constexpr int kFlushBytes = 1 << 20;
constexpr int kLongestLine = 1 << 20; // bytes
constexpr int kLinesOfBlock = 32;
const QLatin1String kByteArrayStart("@ByteArray(");
const QLatin1String kStringStart("@String("); // of texts that hold a zero character
constexpr char kEscapes[] = "abfnrtv\"?'\\";
constexpr char kMeanings[] = "\a\b\f\n\r\t\v\"?'\\";
static_assert(sizeof kEscapes == sizeof kMeanings, "each escape has a meaning");

int hexDigit(char ch)
{
    if (ch >= '0' && ch <= '9')
        return ch - '0';
    if (ch >= 'a' && ch <= 'f')
        return ch - 'a' + 10;
    if (ch >= 'A' && ch <= 'F')
        return ch - 'A' + 10;
    return -1;
}

/// One logical line.
struct Line {
    Span text;
    const char *equals = nullptr; ///< the first "=" outside quotes, null if it has none
    bool hasNoEscape = false;     ///< a backslash of its value means nothing
    bool swallowsLines = false;   ///< it goes on over lines that look like lines of their own
};

bool isLineEnd(char ch)
{
    return ch == '\n' || ch == '\r';
}

/// Whether a character ends or structures a line, by its code; few do. Zero stands after the last
/// one of the text.
constexpr std::array<bool, 256> makeSpecial()
{
    std::array<bool, 256> special{};
    for (const char ch : {'"', '\\', '=', ';', '\n', '\r', '\0'})
        special[uchar(ch)] = true;
    return special;
}
constexpr std::array<bool, 256> kSpecial = makeSpecial();

/// Is the character after a backslash one with which it means something? A line end carries on.
bool isEscape(const char *at, const char *end)
{
    return at == end || isLineEnd(*at) || *at == 'x' || (*at >= '0' && *at <= '7') ||
           strchr(kEscapes, *at); // which finds the zero character too
}

/// Is the line from \a at on one that people write as a line of its own: "[", or a key of one word
/// and "="? Prose and C in a quoted value have blanks there.
bool looksLikeLine(const char *at, const char *end)
{
    if (at < end && *at == '[')
        return true;
    const char *word = at;
    while (at < end && !isBlank(*at) && *at != '=' && *at != '"')
        ++at;
    return at < end && at > word && *at == '=';
}

/// After a backslash: past the escaped character \a at, and past both characters of a line end.
const char *skipEscaped(const char *at, const char *end)
{
    if (at == end)
        return at;
    const char first = *at++;
    const bool pair =
        at < end && ((first == '\n' && *at == '\r') || (first == '\r' && *at == '\n'));
    return pair ? at + 1 : at;
}

/// Takes the next line from \a rest. Quotes and a backslash at its end carry a line on; a semicolon
/// outside quotes ends it, and "#" at its begin makes all of it a comment.
Line nextLine(Span *rest)
{
    while (rest->begin < rest->end && isBlank(*rest->begin))
        ++rest->begin;
    Line line{{rest->begin, rest->begin}};
    bool inQuotes = false;
    const char *at = rest->begin;
    const auto toLineEnd = [rest](const char *from) {
        while (from < rest->end && !isLineEnd(*from))
            ++from;
        return from;
    };
    if (at < rest->end && *at == '#') {
        rest->begin = toLineEnd(at);
        return line;
    }
    for (; at < rest->end; ++at) {
        while (!kSpecial[uchar(*at)])
            ++at;
        const char ch = *at;
        if (ch == '\0') {
            if (at == rest->end)
                break;
        } else if (ch == '"') {
            inQuotes = !inQuotes;
        } else if (ch == '\\') {
            line.hasNoEscape |= line.equals && !isEscape(at + 1, rest->end);
            at = skipEscaped(at + 1, rest->end) - 1;
        } else if (inQuotes) {
            line.swallowsLines |= isLineEnd(ch) && looksLikeLine(at + 1, rest->end);
        } else if (ch == '=' && !line.equals) {
            line.equals = at;
        } else if (isLineEnd(ch) || ch == ';') {
            break;
        }
    }
    line.text.end = at;
    rest->begin = at < rest->end && *at == ';' ? toLineEnd(at) : at;
    return line;
}

/// What git, among others, leaves in a text whose two states it could not join.
bool isConflictMarker(Span line)
{
    constexpr int kLength = 7;
    const char sign = *line.begin;
    if ((sign != '<' && sign != '=' && sign != '>' && sign != '|') || line.size() < kLength ||
        !std::all_of(line.begin, line.begin + kLength, [=](char ch) { return ch == sign; }))
        return false;
    return line.size() == kLength || (sign != '=' && line.begin[kLength] == ' ');
}

void note(IniText::Outline *outline, LineFault fault, Span line, bool isLost)
{
    if (outline && outline->faultCounts[fault]++ < IniText::Outline::kMostFaults)
        outline->faults.append({fault, line, isLost});
}

/// Does the ";" that ends the line cut off what its writer may have meant as a part of the value? A
/// comment has a blank before it, as a rule, or follows a quotation mark or a number.
bool isCut(const Line &line, const char *end)
{
    const char *semicolon = line.text.end;
    if (semicolon == end || *semicolon != ';')
        return false;
    const Span value = Span{line.equals + 1, semicolon}.trimmed();
    if (value.size() == 0 || value.end != semicolon || value.end[-1] == '"')
        return false;
    const bool goesOn = semicolon + 1 < end && !isBlank(semicolon[1]);
    return goesOn || *value.begin < '0' || *value.begin > '9';
}

/// What is odd about a key and its value, which are read all the same.
void noteOddities(IniText::Outline *outline, const Line &line, Span text, const char *end)
{
    if (isConflictMarker(text))
        note(outline, LineFault::ConflictMarker, text, false);
    else if (text.begin == line.equals)
        note(outline, LineFault::EmptyKey, text, false);
    if (line.swallowsLines)
        return note(outline, LineFault::SwallowedLines, text, false); // the others follow from it
    if (line.hasNoEscape)
        note(outline, LineFault::NoEscape, text, false);
    if (isCut(line, end))
        note(outline, LineFault::CutValue, text, false);
}

/// The next line end's last character, or \a end.
const char *lastOfLine(const char *at, const char *end)
{
    while (at < end && *at != '\n' && *at != '\r')
        ++at;
    const bool isPair = end - at > 1 && at[0] == '\r' && at[1] == '\n';
    return isPair ? at + 1 : at;
}

QString unescapedKey(Span span)
{
    if (std::find(span.begin, span.end, '%') == span.end)
        return QString::fromLatin1(span.begin, span.size())
            .replace(QLatin1Char('\\'), QLatin1Char('/'));
    QString key;
    key.reserve(span.size());
    for (const char *at = span.begin; at < span.end; ++at) {
        if (*at == '\\') {
            key += QLatin1Char('/');
            continue;
        }
        if (*at != '%' || at + 1 == span.end) {
            key += QLatin1Char(*at);
            continue;
        }
        const bool wide = at[1] == 'U';
        const char *digits = at + (wide ? 2 : 1);
        const int count = wide ? 4 : 2;
        bool ok = false;
        const int code = span.end - digits >= count ? QByteArray(digits, count).toInt(&ok, 16) : 0;
        if (ok) {
            key += QChar(static_cast<ushort>(code));
            at = digits + count - 1;
        } else {
            key += QLatin1Char('%');
        }
    }
    return key;
}

bool holdsMoreThanComment(Span span)
{
    const Span text = span.trimmed();
    return text.size() > 0 && *text.begin != '#';
}

/// The section of a line that begins with "["; \a head ends before its "]".
QVector<IniText::Entry> *addSection(Span head, IniText::Sections *sections,
                                    IniText::Outline *outline)
{
    const QString name = unescapedKey(Span{head.begin + 1, head.end}.trimmed());
    if (outline && !outline->heads.contains(name))
        outline->heads.insert(name, head.begin);
    return &(*sections)[name];
}

/// Reads one escape; \a at stands after the backslash and is moved past it.
void appendEscaped(QString *text, const char *&at, const char *end)
{
    if (at == end)
        return;
    if (const char *letter = *at ? strchr(kEscapes, *at) : nullptr) {
        *text += QLatin1Char(kMeanings[letter - kEscapes]);
        ++at;
        return;
    }
    const bool hex = *at == 'x';
    if (!hex && (*at < '0' || *at > '7')) {
        at = skipEscaped(at, end); // a line end, or an escape without meaning
        return;
    }
    at += hex;
    if (hex && (at == end || hexDigit(*at) < 0))
        return; // no number, and so no character
    uint code = 0;
    for (; at < end; ++at) {
        const int digit = hexDigit(*at);
        if (digit < 0 || (!hex && digit > 7))
            break;
        code = code * (hex ? 16 : 8) + uint(digit);
    }
    *text += QChar(static_cast<ushort>(code));
}

/// A file that went through an editor without UTF-8 keeps its umlauts.
QString decoded(const char *bytes, int size)
{
    if (isAscii(bytes, size))
        return QString::fromLatin1(bytes, size);
    const QString text = QString::fromUtf8(bytes, size);
    return text.contains(QChar::ReplacementCharacter)
               ? Helper::decodeText(QByteArray::fromRawData(bytes, size))
               : text;
}

QStringList unescapedTexts(Span span)
{
    QStringList texts;
    QString text;
    bool inQuotes = false;
    int kept = 0; // blanks after this length belong to the layout of the line, not to the text
    const auto finishText = [&]() {
        while (text.size() > kept &&
               (text.endsWith(QLatin1Char(' ')) || text.endsWith(QLatin1Char('\t'))))
            text.chop(1);
        texts << text;
        text.clear();
        kept = 0;
    };
    const char *at = span.begin;
    const auto skipBlanks = [&]() {
        while (at < span.end && (*at == ' ' || *at == '\t'))
            ++at;
    };
    while (at < span.end) {
        const char ch = *at;
        if (ch == '\\') {
            appendEscaped(&text, ++at, span.end);
            kept = text.size();
        } else if (ch == '"') {
            inQuotes = !inQuotes;
            ++at;
            if (!inQuotes) {
                kept = text.size();
                skipBlanks();
            }
        } else if (ch == ',' && !inQuotes) {
            finishText();
            ++at;
            skipBlanks();
        } else {
            const char *run = at;
            while (at < span.end && *at != '\\' && *at != '"' && (*at != ',' || inQuotes))
                ++at;
            text += decoded(run, int(at - run));
        }
    }
    finishText();
    return texts;
}

/// A single text as a value: "@" marks those that are none, or begin with one.
QVariant markedValue(const QString &text)
{
    if (!text.startsWith(QLatin1Char('@')))
        return text;
    if (text.startsWith(QLatin1String("@@")))
        return text.mid(1);
    const auto inner = [&text](QLatin1String start) {
        return text.mid(start.size(), text.size() - start.size() - 1);
    };
    if (text.endsWith(QLatin1Char(')')) && text.startsWith(kByteArrayStart))
        return inner(kByteArrayStart).toLatin1();
    if (text.endsWith(QLatin1Char(')')) && text.startsWith(kStringStart))
        return inner(kStringStart);
    return text;
}

QVariant valueOf(Span span)
{
    const Span text = span.trimmed();
    const bool isPlain = text.size() > 0 && std::none_of(text.begin, text.end, [](char ch) {
                             return ch == '"' || ch == '\\' || ch == ',';
                         });
    if (isPlain)
        return markedValue(decoded(text.begin, text.size()));
    const QStringList texts = unescapedTexts(text);
    return texts.size() > 1 ? QVariant(texts) : markedValue(texts.first());
}

QByteArray hex(uint code)
{
    return QByteArray::number(code, 16);
}

/// A character that stands in a key as it is.
bool isPlainInKey(ushort code)
{
    return (code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z') ||
           (code >= '0' && code <= '9') || code == '_' || code == '-' || code == '.';
}

QByteArray escapedKey(const QString &key)
{
    QByteArray result;
    result.reserve(key.size());
    for (const QChar ch : key) {
        const ushort code = ch.unicode();
        if (code == '/')
            result += '\\';
        else if (isPlainInKey(code))
            result += char(code);
        else
            result += (code <= 0xFF ? "%" + hex(code).rightJustified(2, '0').toUpper()
                                    : "%U" + hex(code).rightJustified(4, '0').toUpper());
    }
    return result;
}

/// The escape of a control character or quote, or an empty text for all others.
QByteArray escapeOf(ushort code)
{
    switch (code) {
    case '\0':
        return "\\0";
    case '\a':
        return "\\a";
    case '\b':
        return "\\b";
    case '\f':
        return "\\f";
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    case '\v':
        return "\\v";
    case '"':
        return "\\\"";
    case '\\':
        return "\\\\";
    default:
        return code <= 0x1F ? "\\x" + hex(code) : QByteArray();
    }
}

/// \a text as a value. Characters above ASCII stand as UTF-8, or are escaped in the form of byte
/// arrays, whose characters are bytes.
QByteArray escapedText(const QString &text, bool asBytes)
{
    QByteArray result;
    result.reserve(text.size() + 2);
    bool needsQuotes = false;
    bool afterNumber = false; // a hexadecimal digit here would be read as part of the escape
    int copied = 0;
    const auto copyUpTo = [&](int position) {
        if (position > copied)
            result += text.midRef(copied, position - copied).toUtf8();
        copied = position + 1;
    };
    for (int i = 0; i < text.size(); ++i) {
        const ushort code = text.at(i).unicode();
        if (isPlainInKey(code) && !afterNumber)
            continue;
        needsQuotes = needsQuotes || code == ';' || code == ',' || code == '=';
        QByteArray escape = escapeOf(code);
        const bool isDigit = code < 0x80 && hexDigit(char(code)) >= 0;
        if ((asBytes && code >= 0x7F) || (afterNumber && isDigit))
            escape = "\\x" + hex(code);
        afterNumber = escape.startsWith("\\x") || escape == "\\0";
        if (!escape.isEmpty()) {
            copyUpTo(i);
            result += escape;
        }
    }
    copyUpTo(text.size());
    if (needsQuotes || result.startsWith(' ') || result.endsWith(' '))
        return '"' + result + '"';
    return result;
}

} // namespace

QString IniText::Entry::key() const
{
    return unescapedKey(keyText());
}

QVariant IniText::Entry::value() const
{
    return valueOf(valueText());
}

bool IniText::read(const QByteArray &data, Sections *sections, Outline *outline)
{
    bool sound = true;
    Span rest{data.constBegin(), data.constEnd()};
    if (data.startsWith("\xEF\xBB\xBF"))
        rest.begin += 3;
    QVector<Entry> *current = nullptr;
    const auto lose = [&](LineFault fault, Span line) {
        note(outline, fault, line, true);
        sound = false;
    };
    while (rest.begin < rest.end) {
        const Line line = nextLine(&rest);
        const Span text = line.text.trimmed();
        if (text.size() == 0)
            continue;
        const bool isKey = line.equals && current;
        if (text.size() > kLongestLine) {
            lose(LineFault::TooLong, text);
            if (*text.begin == '[')
                current = nullptr; // what follows is not of the section before
        } else if (*text.begin == '[') {
            const char *close = std::find(text.begin, text.end, ']');
            if (close == text.end)
                lose(LineFault::OpenSection, text);
            else if (holdsMoreThanComment({close + 1, text.end}))
                note(outline, LineFault::AfterSection, text, false);
            current = addSection({text.begin, close}, sections, outline);
        } else if (isKey) {
            current->append(Entry({text.begin, line.text.end}, line.equals));
            noteOddities(outline, line, text, rest.end);
        } else if (isConflictMarker(text)) {
            lose(LineFault::ConflictMarker, text);
        } else {
            lose(line.equals ? LineFault::BeforeSections : LineFault::NoKey, text);
        }
    }
    return sound;
}

int IniText::LineNumbers::at(const char *place)
{
    findLines();
    const auto block = std::upper_bound(starts.constBegin(), starts.constEnd(), place) - 1;
    int number = int(block - starts.constBegin()) * kLinesOfBlock + 1;
    const char *line = *block;
    for (const char *end = lastOfLine(line, place); end < place; end = lastOfLine(line, place)) {
        line = end + 1;
        ++number;
    }
    return number;
}

void IniText::LineNumbers::findLines()
{
    if (!starts.isEmpty())
        return;
    int number = 0;
    for (const char *line = data.constBegin(); line < data.constEnd() || starts.isEmpty();
         line = lastOfLine(line, data.constEnd()) + 1) {
        if (number++ % kLinesOfBlock == 0)
            starts.append(line);
    }
}

void IniText::Writer::section(const QString &name)
{
    if (!empty)
        buffer += '\n';
    empty = false;
    buffer += '[' + escapedKey(name) + "]\n";
}

void IniText::Writer::value(const QString &key, const QString &text)
{
    buffer += escapedKey(key) + '=';
    if (text.contains(QChar::Null))
        buffer += escapedText(kStringStart + text + QLatin1Char(')'), false);
    else if (text.startsWith(QLatin1Char('@')))
        buffer += escapedText(QLatin1Char('@') + text, false);
    else
        buffer += escapedText(text, false);
    buffer += '\n';
    flushIfLarge();
}

void IniText::Writer::value(const QString &key, const QByteArray &bytes)
{
    const QString text =
        kByteArrayStart + QString::fromLatin1(bytes.constData(), bytes.size()) + QLatin1Char(')');
    buffer += escapedKey(key) + '=' + escapedText(text, true) + '\n';
    flushIfLarge();
}

void IniText::Writer::flushIfLarge()
{
    if (buffer.size() >= kFlushBytes)
        finish();
}

bool IniText::Writer::finish()
{
    failed = failed || device->write(buffer) != buffer.size();
    buffer.clear();
    return !failed;
}
