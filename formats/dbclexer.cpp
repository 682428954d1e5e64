// Taking apart of DBC files.
//
// Files are made to be read by others, and may be anything. So nothing here looks for the end of
// something twice: who finds none keeps that in mind.
#include "formats/dbclexer.h"

#include "formats/dbckeys.h"

#include <limits>

namespace
{

constexpr QLatin1Char kQuote('"');
constexpr QLatin1Char kEscape('\\');
constexpr QLatin1Char kLineEnd('\n');

bool isBlank(QChar character)
{
    return character <= QLatin1Char(' ') || character.isSpace();
}

/// Files in the field have names with some other characters. None of them may follow a name, or be
/// an escape in a text.
bool isOfName(QChar character)
{
    const ushort code = character.unicode();
    if ((code >= 'a' && code <= 'z') || (code >= 'A' && code <= 'Z') ||
        (code >= '0' && code <= '9'))
        return true;
    switch (code) {
    case '_':
    case '-':
    case '.':
    case '$':
    case '#':
    case '&':
    case '%':
        return true;
    default:
        return code >= 0x80 && (character.isLetterOrNumber() || character.isSurrogate());
    }
}

bool isSign(QChar character)
{
    return character == QLatin1Char('-') || character == QLatin1Char('+');
}

bool isExponent(QChar character)
{
    return character == QLatin1Char('e') || character == QLatin1Char('E');
}

} // namespace

DbcLexer::DbcLexer(const QString &content)
    : text(content), lastCommentEnd(content.lastIndexOf(QLatin1String("*/"))),
      neverClosed(std::numeric_limits<int>::max())
{
    skipBlanks();
}

QStringRef DbcLexer::peekName() const
{
    const QChar first = peek();
    const bool isName = first.isLetterOrNumber() || first == QLatin1Char('_');
    const int end = isName ? endOfName(here.position) : here.position;
    return text.midRef(here.position, end - here.position);
}

QString DbcLexer::shown() const
{
    constexpr int kMost = 61; // what quotedWord() shows, and one to see that there is more
    int end = qMax(endOfName(here.position), qMin(here.position + 1, text.size()));
    return text.mid(here.position, qMin(end - here.position, kMost));
}

bool DbcLexer::accept(char symbol)
{
    if (peek() != QLatin1Char(symbol) || atEnd())
        return false;
    take(here.position + 1);
    return true;
}

QStringRef DbcLexer::takeName()
{
    const QStringRef name = peekName();
    if (!name.isEmpty())
        take(here.position + name.size());
    return name;
}

QStringRef DbcLexer::takeNumber()
{
    const auto isPart = [this](int at) {
        return at < text.size() && isOfName(text.at(at)) && !isSign(text.at(at));
    };
    const int begin = here.position;
    int end = begin;
    if (isSign(peek()))
        ++end;
    const int digits = end;
    while (isPart(end) || (end > digits && end + 1 < text.size() && isSign(text.at(end)) &&
                           isExponent(text.at(end - 1)) && text.at(end + 1).isDigit()))
        ++end;
    if (end == digits)
        return QStringRef();
    take(end);
    return text.midRef(begin, end - begin);
}

bool DbcLexer::takeText(QString *result)
{
    const int end = peek() == kQuote ? endOfText() : -1;
    if (end < 0)
        return false;
    const State begin = here;
    *result = textBetween(begin.position + 1, end);
    countLines(begin.position, end);
    longText = begin;
    hasLongText = here.line > begin.line;
    here.position = end + 1;
    here.startsLine = false;
    skipBlanks(); // forgets the text at a comment, which may be long as well
    return true;
}

bool DbcLexer::takeRestOfText(QString *result)
{
    if (here.startsLine || hasLongText)
        return false;
    for (int at = here.position; at < text.size() && text.at(at) != kLineEnd; ++at) {
        if (text.at(at) != kQuote)
            continue;
        int next = at + 1;
        while (next < text.size() && isBlank(text.at(next)) && text.at(next) != kLineEnd)
            ++next;
        if (next == text.size() || text.at(next) != QLatin1Char(';'))
            continue;
        const int begin = text.lastIndexOf(kQuote, here.position - 1);
        *result += kQuote + textBetween(begin + 1, at);
        take(at + 1);
        return true;
    }
    return false;
}

QStringRef DbcLexer::takeLine()
{
    const int begin = here.position;
    const int lineEnd = text.indexOf(kLineEnd, begin);
    take(lineEnd < 0 ? text.size() : lineEnd);
    return text.midRef(begin, lineEnd < 0 ? -1 : lineEnd - begin).trimmed();
}

bool DbcLexer::takeUpTo(char symbol)
{
    QString passedOver;
    while (!atEnd() && !(here.startsLine && atKeyword())) {
        if (accept(symbol))
            return true;
        if (takeName().isEmpty() && !takeText(&passedOver))
            take(here.position + 1);
    }
    return false;
}

void DbcLexer::takeUpToKeyword()
{
    if (hasLongText)
        goTo(longText);
    bool isThere = !hasLongText && here.startsLine && atKeyword();
    hasLongText = false;
    while (!atEnd() && !isThere) {
        const int lineEnd = text.indexOf(kLineEnd, here.position);
        take(lineEnd < 0 ? text.size() : lineEnd);
        isThere = atKeyword();
    }
}

quint64 DbcLexer::toUnsigned(const QStringRef &digits, bool *ok)
{
    if (digits.startsWith(QLatin1Char('-')) || digits.startsWith(QLatin1Char('+')))
        *ok = false;
    else if (digits.startsWith(QLatin1String("0x"), Qt::CaseInsensitive))
        return digits.mid(2).toULongLong(ok, 16);
    else
        return digits.toULongLong(ok, 10);
    return 0;
}

bool DbcLexer::isKeyword(const QStringRef &name)
{
    const auto isAmong = [&name](const auto &words) {
        for (const char *word : words) {
            if (name == QLatin1String(word))
                return true;
        }
        return false;
    };
    constexpr const char *kNameLike[] = {DbcKeys::kVersion, "FILTER"};
    constexpr const char *kHeads[] = {DbcKeys::kSignal,    DbcKeys::kMessage, DbcKeys::kNewSymbols,
                                      DbcKeys::kBitTiming, DbcKeys::kNodes,   DbcKeys::kVariable};
    if (!name.endsWith(QLatin1Char('_')))
        return isAmong(kNameLike);
    return isAmong(kHeads) || isAmong(DbcKeys::kSymbols);
}

bool DbcLexer::atKeyword() const
{
    const QStringRef name = peekName();
    return isKeyword(name) && (here.startsLine || name.endsWith(QLatin1Char('_')));
}

void DbcLexer::skipBlanks()
{
    do {
        while (!atEnd() && isBlank(text.at(here.position))) {
            ++here.position;
            if (text.at(here.position - 1) == kLineEnd)
                beginLine(here.position);
        }
    } while (skipComment());
}

bool DbcLexer::skipComment()
{
    if (peek() != QLatin1Char('/') || here.position + 1 >= text.size())
        return false;
    const QChar kind = text.at(here.position + 1);
    const int begin = here.position + 2;
    int end = -1;
    if (kind == QLatin1Char('/')) {
        end = text.indexOf(kLineEnd, begin);
        end = end < 0 ? text.size() : end;
    } else if (kind == QLatin1Char('*') && begin <= lastCommentEnd) {
        end = text.indexOf(QLatin1String("*/"), begin) + 2;
    }
    if (end < 0)
        return false;
    countLines(begin, end);
    here.position = end;
    hasLongText = false;
    return true;
}

/// The line begins at that position.
void DbcLexer::beginLine(int position)
{
    ++here.line;
    here.lineStart = position;
    here.startsLine = true;
}

void DbcLexer::countLines(int begin, int end)
{
    for (int at = begin; at < end; ++at) {
        if (text.at(at) == kLineEnd)
            beginLine(at + 1);
    }
}

/// Goes on to the thing after \a end.
void DbcLexer::take(int end)
{
    here.position = end;
    here.startsLine = false;
    hasLongText = false;
    skipBlanks();
}

int DbcLexer::endOfName(int begin) const
{
    int end = begin;
    while (end < text.size() && isOfName(text.at(end)))
        ++end;
    return end;
}

/// The quotation mark that closes the text which begins here; -1 if there is none.
int DbcLexer::endOfText()
{
    for (int at = here.position + 1; at < text.size() && here.position < neverClosed; ++at) {
        if (text.at(at) == kQuote)
            return at;
        const bool isEscape = text.at(at) == kEscape && at + 1 < text.size() &&
                              (text.at(at + 1) == kQuote || text.at(at + 1) == kEscape);
        at += isEscape ? 1 : 0;
    }
    neverClosed = qMin(neverClosed, here.position);
    return -1;
}

/// With escapes resolved; a backslash before any other character stands for itself.
QString DbcLexer::textBetween(int begin, int end) const
{
    QString result = text.mid(begin, end - begin);
    if (!result.contains(kEscape))
        return result;
    int size = 0;
    for (int at = 0; at < result.size(); ++at) {
        const bool isEscape = result.at(at) == kEscape && at + 1 < result.size() &&
                              (result.at(at + 1) == kQuote || result.at(at + 1) == kEscape);
        result[size++] = result.at(isEscape ? ++at : at);
    }
    result.truncate(size);
    return result;
}
