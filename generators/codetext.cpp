// Reads C as far as its literals, comments and brackets go (ISO C99, 5.1.1.2 and 6.4).
#include "generators/codetext.h"

#include <algorithm>

namespace
{

constexpr QLatin1Char kBackslash('\\');

/// Other spellings of brackets and "#", which no ordinary text holds outside of literals.
constexpr const char *kDigraphs[] = {"<%", "%>", "<:", ":>", "%:"};

QChar closerOf(QChar bracket)
{
    return QLatin1Char(bracket == QLatin1Char('(') ? ')' : bracket == QLatin1Char('[') ? ']' : '}');
}

} // namespace

QString CodeText::closed()
{
    result.reserve(text.size());
    while (place < text.size())
        copyToken();
    // Also with blanks after it a backslash takes the next line of the file in.
    QStringRef end = QStringRef(&result).trimmed();
    while (end.endsWith(kBackslash)) {
        result.truncate(end.position() + end.size() - 1);
        end = QStringRef(&result).trimmed();
    }
    for (int i = closers.size(); i > 0; --i)
        result += closers.at(i - 1);
    return result;
}

void CodeText::copyToken()
{
    const QChar character = text.at(place);
    const bool isExpression = kind == Kind::Expression;
    const bool isDigraph =
        isExpression && std::any_of(std::begin(kDigraphs), std::end(kDigraphs),
                                    [this](const char *word) { return startsWith(word); });
    if (character == QLatin1Char('"') || character == QLatin1Char('\'')) {
        copyLiteral();
    } else if (startsWith("/*")) {
        copyBlockComment();
    } else if (startsWith("//")) {
        copyLineComment();
    } else if (startsTrigraph() || isDigraph) {
        copyPlain(1);
        result += QLatin1Char(' ');
    } else if (isExpression && QStringLiteral("()[]{};,#").contains(character)) {
        copyBracket(character);
    } else {
        copyPlain(1);
    }
}

void CodeText::copyLiteral()
{
    const QChar quote = text.at(place);
    copyPlain(1);
    while (place < text.size() && text.at(place) != quote) {
        if (startsTrigraph()) {
            copyPlain(1);
            result += kBackslash; // "\?" is a question mark as well
            copyPlain(1);
        } else if (text.at(place) != kBackslash) {
            copyPlain(1);
        } else if (place + 1 < text.size()) {
            copyPlain(2);
        } else {
            ++place; // it would take the quote that is added
        }
    }
    result += quote;
    ++place;
}

void CodeText::copyBlockComment()
{
    const int end = text.indexOf(QLatin1String("*/"), place + 2);
    if (end >= 0) {
        copyPlain(end + 2 - place);
    } else {
        copyPlain(text.size() - place);
        result += QLatin1String(" */");
    }
}

void CodeText::copyLineComment()
{
    // After an expression it would hide what follows on the line.
    if (kind == Kind::Line)
        result += text.mid(place).replace(QLatin1String("?\?/"), QLatin1String("? ?/"));
    place = text.size();
}

/// What would lead out of the expression becomes a blank: closing brackets that nothing opened,
/// commas and ends of statements that stand in none.
void CodeText::copyBracket(QChar character)
{
    ++place;
    const bool isOpening = QStringLiteral("([{").contains(character);
    const bool isClosing = QStringLiteral(")]}").contains(character);
    bool stays = isOpening;
    if (isOpening) {
        closers += closerOf(character);
    } else if (isClosing) {
        stays = closers.endsWith(character);
        if (stays)
            closers.chop(1);
    } else if (character == QLatin1Char(',')) {
        stays = !closers.isEmpty();
    } else if (character == QLatin1Char(';')) {
        stays =
            closers.contains(QLatin1Char(')')); // statements in an expression, as GNU C has them
    }
    result += stays ? character : QLatin1Char(' ');
}

void CodeText::copyPlain(int length)
{
    result += text.midRef(place, length);
    place += length;
}

bool CodeText::startsWith(const char *token) const
{
    // Asked of each character for each token, and nearly always no.
    return text.at(place) == QLatin1Char(*token) &&
           text.midRef(place).startsWith(QLatin1String(token));
}

bool CodeText::startsTrigraph() const
{
    return startsWith("?\?") && place + 2 < text.size() &&
           QStringLiteral("=/'()!<>-").contains(text.at(place + 2));
}
