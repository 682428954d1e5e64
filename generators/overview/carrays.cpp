// The tables and variables that C sources define.
#include "generators/overview/carrays.h"

#include <QList>

#include <algorithm>
#include <array>
#include <cstring>

namespace
{

using CArrays::Definition;
using CArrays::Macros;
using CArrays::Row;

// Not those of the C library: a source has millions of characters, and the locale is nothing here.

constexpr bool isDigit(char ch)
{
    return ch >= '0' && ch <= '9';
}

/// Whether each character belongs to a word.
constexpr std::array<bool, 256> kWordChars = [] {
    std::array<bool, 256> result{};
    for (int ch = 0; ch < 256; ++ch)
        result[size_t(ch)] = (ch >= 'a' && ch <= 'z') || (ch >= 'A' && ch <= 'Z') ||
                             (ch >= '0' && ch <= '9') || ch == '_';
    return result;
}();

inline bool isWordChar(char ch)
{
    return kWordChars[static_cast<unsigned char>(ch)];
}

constexpr bool isBlank(char ch)
{
    return ch == ' ' || (ch >= '\t' && ch <= '\r');
}

/// The number at \a at, which moves behind it; -1 if there is none.
int readNumber(const char *&at, const char *end)
{
    const bool isHex = end - at > 2 && at[0] == '0' && at[1] == 'x';
    at += isHex ? 2 : 0;
    qint64 number = -1;
    for (; at < end && number < 0x1000000; ++at) {
        const int digit = isDigit(*at)                        ? *at - '0'
                          : isHex && *at >= 'a' && *at <= 'f' ? *at - 'a' + 10
                                                              : -1;
        if (digit < 0)
            break;
        number = (number < 0 ? 0 : number) * (isHex ? 16 : 10) + digit;
    }
    return int(number);
}

/// Up to the next comma; \a row is what stands behind.
std::string_view takeColumn(std::string_view *row)
{
    const size_t end = std::min(row->find(','), row->size());
    const std::string_view column = row->substr(0, end);
    row->remove_prefix(std::min(end + 1, row->size()));
    return column;
}

std::string_view trimmed(std::string_view column)
{
    while (!column.empty() && isBlank(column.front()))
        column.remove_prefix(1);
    while (!column.empty() && isBlank(column.back()))
        column.remove_suffix(1);
    return column;
}

/// A value, which may have its type in parentheses before it.
int numberIn(std::string_view column)
{
    column = trimmed(column.substr(column.rfind(')') + 1));
    const char *at = column.data();
    return readNumber(at, at + column.size());
}

/// What "1-0x2010:3" says of a row, or "1-65262:110" of a signal; without the number of the line if
/// there is only one.
void readComment(const char *at, const char *end, Row *row)
{
    while (at < end && *at == ' ')
        ++at;
    int line = -1;
    const char *start = at;
    int number = readNumber(at, end);
    if (at < end && *at == '-') {
        line = number;
        start = ++at;
        number = readNumber(at, end);
    }
    if (number < 0 || at == end || *at != ':')
        return;
    row->line = line;
    if (at - start > 2 && start[1] == 'x')
        row->index = number;
}

/// Reads a source from its start to its end. What stands in functions is looked through for
/// variables with static storage.
class Reader
{
public:
    Reader(const QByteArray &source, const Macros &known) : text(source), macros(known) {}

    std::vector<Definition> read()
    {
        while (place < size)
            readStatement();
        return std::move(definitions);
    }

private:
    // --- Characters ---

    char peek(int ahead = 0) const
    {
        return place + ahead < size ? characters[place + ahead] : '\0';
    }

    /// Passes blanks, comments, and lines for the preprocessor with what they leave out. The row
    /// learns what comments say of it.
    void skipSpace()
    {
        while (place < size) {
            const char ch = characters[place];
            if (isBlank(ch))
                ++place;
            else if (ch == '/' && peek(1) == '*')
                skipComment();
            else if (ch == '/' && peek(1) == '/')
                skipLine();
            else if (ch == '#' && isFirstInLine())
                readDirective();
            else
                return;
        }
    }

    void skipComment()
    {
        const size_t end = std::string_view(characters, size_t(size)).find("*/", size_t(place) + 2);
        const int stop = end == std::string_view::npos ? size : int(end);
        if (row)
            readComment(characters + place + 2, characters + stop, row);
        place = end == std::string_view::npos ? size : stop + 2;
    }

    QByteArray skipLine()
    {
        const int end = text.indexOf('\n', place);
        const QByteArray line = text.mid(place, end < 0 ? -1 : end - place);
        place = end < 0 ? text.size() : end + 1;
        return line;
    }

    bool isFirstInLine() const
    {
        int before = place - 1;
        while (before >= 0 && (characters[before] == ' ' || characters[before] == '\t'))
            --before;
        return before < 0 || characters[before] == '\n';
    }

    // --- Preprocessor ---

    void readDirective()
    {
        const QByteArray line = skipLine();
        const QList<QByteArray> words = line.mid(1).simplified().split(' ');
        const QByteArray &what = words.first();
        if (what == "define")
            CArrays::readMacros(line, &macros);
        else if (what == "ifdef" || what == "ifndef")
            skipUnless(macros.contains(words.value(1)) == (what == "ifdef"));
        else if (what == "else" || what == "elif")
            (void)skipToEnd(false); // what stands before it was read
    }

    void skipUnless(bool isRead)
    {
        if (!isRead)
            (void)skipToEnd(true);
    }

    /// To behind the #endif that belongs to the condition, or with \a stopsAtElse its #else.
    bool skipToEnd(bool stopsAtElse)
    {
        int depth = 0;
        while (place < size) {
            const QByteArray line = skipLine().trimmed();
            if (!line.startsWith('#'))
                continue;
            const QByteArray what = line.mid(1).trimmed();
            if (what.startsWith("if"))
                ++depth;
            else if (what.startsWith("endif") && depth-- == 0)
                return true;
            else if (stopsAtElse && depth == 0 && what.startsWith("else"))
                return false;
        }
        return true;
    }

    // --- Statements ---

    /// The next word, mark or text; a text without its quotes is not needed.
    QByteArray token()
    {
        skipSpace();
        if (place >= size)
            return {};
        const int start = place;
        skipWord();
        return text.mid(start, place - start);
    }

    void skipWord()
    {
        const char ch = peek();
        if (ch == '"' || ch == '\'') {
            (void)skipQuoted();
            return;
        }
        ++place;
        if (!isWordChar(ch))
            return;
        while (place < size && isWordChar(characters[place]))
            ++place;
    }

    /// Gives the bytes between the quotes as the compiler counts them.
    qint64 skipQuoted()
    {
        const char quote = peek();
        qint64 bytes = 0;
        for (++place; place < size && peek() != quote; ++place, ++bytes) {
            if (peek() == '\\')
                skipEscape();
        }
        ++place;
        return bytes;
    }

    /// To its last character.
    void skipEscape()
    {
        ++place;
        const auto isHexDigit = [](char ch) {
            return isDigit(ch) || (ch >= 'a' && ch <= 'f') || (ch >= 'A' && ch <= 'F');
        };
        if (peek() == 'x') {
            while (isHexDigit(peek(1)))
                ++place;
            return;
        }
        for (int digits = 1; digits < 3 && isDigit(peek()) && isDigit(peek(1)); ++digits)
            ++place; // octal
    }

    void readStatement()
    {
        QList<QByteArray> words;
        for (QByteArray word = token(); !word.isEmpty() && word != ";"; word = token()) {
            if (word == "{" || word == "}") { // of a function, or in one
                blocks += word == "{" ? 1 : -1;
                return;
            }
            if (word == "=" && !words.contains("(")) {
                Definition definition = definitionOf(words);
                readInitializer(&definition);
                if (isDefinition(words))
                    add(definition);
                return;
            }
            words << word;
        }
        if (isDefinition(words)) {
            Definition definition = definitionOf(words);
            add(definition);
        }
    }

    /// In a function only what is static takes memory for good. What has parentheses is a
    /// declaration of a function, or a call.
    bool isDefinition(const QList<QByteArray> &words) const
    {
        return words.size() > 1 && !words.contains("extern") && !words.contains("typedef") &&
               !words.contains("(") && (blocks == 0 || words.contains("static"));
    }

    Definition definitionOf(const QList<QByteArray> &words) const
    {
        Definition definition;
        bool hasConstPointer = false;
        QByteArray dimension;
        bool isInBrackets = false;
        for (const QByteArray &word : words) {
            if (word == "[" || word == "]") {
                isInBrackets = word == "[";
                if (!isInBrackets)
                    addDimension(dimension, &definition);
                dimension.clear();
            } else if (isInBrackets) {
                dimension += word;
            } else if (word == "*") {
                definition.isPointer = true;
            } else if (isConstWord(word)) {
                (definition.isPointer ? hasConstPointer : definition.isConst) = true;
            } else if (word == "static" || word.endsWith("STORAGE_CLASS")) {
                continue;
            } else if (definition.type.isEmpty()) {
                definition.type = word;
            } else {
                definition.name = word;
            }
        }
        if (definition.isPointer)
            definition.isConst = hasConstPointer;
        return definition;
    }

    /// Without one, or with one that is not known here, there are as many as there are rows.
    void addDimension(const QByteArray &dimension, Definition *definition) const
    {
        const qint64 number = CArrays::numberOf(dimension, macros);
        definition->count = number < 0 || definition->count < 0 ? -1 : definition->count * number;
    }

    static bool isConstWord(const QByteArray &word)
    {
        return word == "const" || word == "CO_CONST" || word == "CORE_CONST";
    }

    void add(Definition &definition)
    {
        if (definition.count < 0)
            definition.count = qint64(definition.rows.size());
        if (!definition.name.isEmpty())
            definitions.push_back(std::move(definition));
    }

    // --- Initializers ---

    /// Where in an initializer the reader is.
    struct Nesting {
        explicit Nesting(const QByteArray &type)
            : isAssigned(type.endsWith("OD_ASSIGN_T")), isDescribed(type.endsWith("OBJECT_DESC_T"))
        {
        }

        const bool isAssigned;  ///< each row begins with the index of its object
        const bool isDescribed; ///< the second and third column of each row are read
        int depth = 0;          ///< of braces and parentheses
        int braces = 0;
        bool isFresh = true; ///< the next word begins a row
        bool wasText = false;
    };

    /// To behind the ";" of the statement. Elements of the outermost braces are rows.
    void readInitializer(Definition *definition)
    {
        Nesting at(definition->type);
        if (definition->count > 0) // a row has a character and a comma
            definition->rows.reserve(
                size_t(std::min<qint64>(definition->count, (size - place) / 2)));
        for (skipSpace(); place < size; skipSpace()) {
            if (peek() == '"')
                readText(&at, definition);
            else if (!readPlainRow(&at, definition) && !readWord(&at, definition))
                break;
        }
        row = nullptr;
    }

    /// Texts that follow each other are one.
    void readText(Nesting *at, Definition *definition)
    {
        beginRow(at, definition);
        const qint64 bytes = skipQuoted();
        if (row)
            row->textBytes += bytes + (at->wasText ? 0 : 1);
        at->wasText = true;
    }

    /// Most rows are such: in braces, with nothing in them but values. False: the next one is not.
    bool readPlainRow(Nesting *at, Definition *definition)
    {
        if (at->depth != 1 || !at->isFresh || peek() != '{')
            return false;
        const int start = place + 1;
        const int end = start + plainAt(start, "{}\"'/#");
        if (end >= size || characters[end] != '}')
            return false;
        beginRow(at, definition);
        definition->depth = std::max(definition->depth, at->braces + 1);
        readColumns(*at, std::string_view(characters + start, size_t(end - start)));
        place = end + 1;
        if (peek() == ',') { // the next row follows
            ++place;
            at->isFresh = true;
            at->wasText = false;
        }
        return true;
    }

    void readColumns(const Nesting &at, std::string_view columns)
    {
        if (at.isAssigned)
            row->index = numberIn(takeColumn(&columns));
        if (!at.isDescribed)
            return;
        (void)takeColumn(&columns); // number of the subindex
        row->tag = trimmed(takeColumn(&columns));
        row->position = numberIn(takeColumn(&columns));
    }

    /// False at the end of the statement.
    bool readWord(Nesting *at, Definition *definition)
    {
        at->wasText = false;
        const char ch = peek();
        skipWord();
        if (ch == ';' && at->depth == 0)
            return false;
        if (ch == ',' && at->depth == 1)
            at->isFresh = true;
        else if (ch != '}')
            beginRow(at, definition);
        const int step = ch == '{' || ch == '(' ? 1 : ch == '}' || ch == ')' ? -1 : 0;
        at->depth += step;
        at->braces += ch == '{' || ch == '}' ? step : 0;
        definition->depth = std::max(definition->depth, at->braces);
        skipPlain(*at);
        return true;
    }

    void beginRow(Nesting *at, Definition *definition)
    {
        if (!at->isFresh || at->depth < 1)
            return;
        definition->rows.push_back({});
        row = &definition->rows.back();
        at->isFresh = false;
    }

    /// Passes what tells nothing more of a row. Parentheses within braces are closed there.
    void skipPlain(const Nesting &at)
    {
        if (at.depth < 1 || at.isFresh)
            return;
        const bool isInBraces = at.depth == at.braces;
        place += plainAt(place, !isInBraces    ? "{}()\"'/#"
                                : at.depth > 1 ? "{}\"'/#"
                                               : "{}()\"'/#,");
    }

    /// How many characters stand at \a start that are none of \a marks.
    int plainAt(int start, const char *marks) const
    {
        return int(std::strcspn(characters + start, marks)); // a text of Qt has a 0 at its end
    }

    const QByteArray &text;
    const char *characters = text.constData();
    const int size = text.size();
    Macros macros;
    std::vector<Definition> definitions;
    int place = 0;
    Row *row = nullptr; ///< that a comment is about
    int blocks = 0;     ///< that are open
};

} // namespace

void CArrays::readMacros(const QByteArray &text, Macros *macros)
{
    const QList<QByteArray> lines = text.split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray trimmed = line.trimmed();
        if (!trimmed.startsWith('#'))
            continue;
        const QByteArray directive = trimmed.mid(1).simplified();
        const QList<QByteArray> words = directive.split(' ');
        if (words.first() == "define" && words.size() > 1 && !words.at(1).contains('('))
            macros->insert(words.at(1), words.mid(2).join(' '));
    }
}

std::vector<CArrays::Definition> CArrays::definitionsIn(const QByteArray &text,
                                                        const Macros &macros)
{
    return Reader(text, macros).read();
}

qint64 CArrays::numberOf(const QByteArray &text, const Macros &macros)
{
    QByteArray left = text.trimmed();
    for (int depth = 0; macros.contains(left) && depth < 10; ++depth)
        left = macros.value(left).split('/').first().trimmed();
    while (left.startsWith('(') && left.endsWith(')'))
        left = left.mid(1, left.size() - 2).trimmed();
    while (left.endsWith('u') || left.endsWith('U') || left.endsWith('l') || left.endsWith('L'))
        left.chop(1);
    bool isNumber = false;
    const qint64 number = left.toLongLong(&isNumber, left.startsWith("0x") ? 16 : 10);
    return isNumber && number >= 0 ? number : -1;
}
