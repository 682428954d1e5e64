// The statements of DBC files: which there are, and what they are made of.
#include "formats/dbcparser.h"

#include "formats/dbckeys.h"
#include "support/printable.h"

#include <cmath>
#include <limits>

// clang-format off
const DbcParser::Statement DbcParser::kStatements[] = { // the most frequent ones first
    {"SG_", &DbcParser::readSignal},
    {"BA_", &DbcParser::readAttribute},
    {"CM_", &DbcParser::readComment},
    {"VAL_", &DbcParser::readValues},
    {"BO_", &DbcParser::readMessage},
    {"BO_TX_BU_", &DbcParser::readTransmitters},
    {"SIG_VALTYPE_", &DbcParser::readValueType},
    {"SG_MUL_VAL_", &DbcParser::readSwitch},
    {"VAL_TABLE_", &DbcParser::readValueTable},
    {"EV_", &DbcParser::readVariable},
    {"BU_", &DbcParser::readNodes},
    {"BA_DEF_", &DbcParser::readDefinition},
    {"BA_DEF_DEF_", &DbcParser::readDefault},
    {"VERSION", &DbcParser::readVersion},
    {"NS_", &DbcParser::readNewSymbols},
    {"BS_", &DbcParser::readBitTiming},
    // They begin no statement.
    {"BU_SG_REL_", &DbcParser::readStray},
    {"BU_EV_REL_", &DbcParser::readStray},
    {"BU_BO_REL_", &DbcParser::readStray},
};
// clang-format on

DbcParser::DbcParser(const QString &content, DbcFile *result, FileProblems *collector)
    : lexer(content), file(*result), problems(*collector)
{
}

void DbcParser::read()
{
    while (!lexer.atEnd()) {
        if (!lexer.accept(';')) // a statement may be empty
            readStatement();
    }
}

void DbcParser::readStatement()
{
    const QStringRef keyword = lexer.peekName();
    begin = lexer.place();
    missing.clear();
    if (!DbcLexer::isKeyword(keyword)) {
        missing = QStringLiteral("a statement begins with a known keyword");
        passOver(QStringRef());
        return;
    }
    Reader reader = &DbcParser::readUnused;
    for (const Statement &statement : kStatements) {
        if (keyword == QLatin1String(statement.keyword))
            reader = statement.read;
    }
    (void)lexer.takeName();
    if ((this->*reader)())
        ++understood;
    else
        passOver(keyword);
}

/// Tells of what is not understood, and goes on behind it.
void DbcParser::passOver(const QStringRef &keyword)
{
    const DbcPlace text = lexer.longTextPlace();
    const DbcPlace place = text.line > 0 ? text : lexer.place();
    const QString next =
        lexer.atEnd() ? QStringLiteral("the end of the file") : quotedWord(lexer.shown());
    if (keyword == QLatin1String(DbcKeys::kMessage))
        isInMessage = false;
    lexer.takeUpToKeyword();
    note("dbc-syntax", place, [&] {
        if (keyword.isEmpty())
            return QStringLiteral("%1 begins no statement, and all up to line %2 is passed over")
                .arg(next)
                .arg(lexer.place().line);
        const QString words = QStringLiteral("%1 is missing before %2, and the statement %3 of "
                                             "line %4 is passed over")
                                  .arg(missing, next, keyword.toString())
                                  .arg(begin.line);
        return text.line == 0 ? words
                              : words + QLatin1String(": does the text that begins here lack its "
                                                      "last quotation mark");
    });
}

bool DbcParser::readVersion()
{
    return expectText(&file.version);
}

/// Each line names keywords, and no line of another statement does.
bool DbcParser::readNewSymbols()
{
    (void)lexer.accept(':');
    while (isOnlyNames())
        (void)lexer.takeLine();
    return true;
}

bool DbcParser::isOnlyNames()
{
    const DbcLexer::State lineBegin = lexer.state();
    const QStringRef first = lexer.peekName();
    bool isOnly = !first.isEmpty() && first != QLatin1String(DbcKeys::kBitTiming) &&
                  first != QLatin1String(DbcKeys::kNodes);
    bool isSameLine = isOnly;
    while (isSameLine && isOnly) {
        (void)lexer.takeName();
        isSameLine = !lexer.atEnd() && !lexer.startsLine();
        isOnly = !isSameLine || DbcLexer::isKeyword(lexer.peekName());
    }
    lexer.goTo(lineBegin);
    return isOnly;
}

bool DbcParser::readBitTiming()
{
    (void)lexer.accept(':');
    if (!lexer.startsLine())
        file.bitTiming = lexer.takeLine().toString();
    return true;
}

/// A keyword that says nothing which is wanted, such as those of the relations of nodes and
/// signals.
bool DbcParser::readUnused()
{
    (void)lexer.takeUpTo(';'); // or up to a keyword
    return true;
}

bool DbcParser::readStray()
{
    return miss("the statement that this keyword is part of");
}

bool DbcParser::expect(char symbol)
{
    if (lexer.accept(symbol))
        return true;
    missing = QStringLiteral("\"%1\"").arg(QLatin1Char(symbol));
    return false;
}

bool DbcParser::expectName(QString *name)
{
    const QStringRef word = lexer.atKeyword() ? QStringRef() : lexer.takeName();
    *name = word.toString();
    return !word.isEmpty() || miss("a name");
}

bool DbcParser::expectText(QString *text)
{
    if (lexer.takeText(text))
        return true;
    return miss(lexer.peek() == QLatin1Char('"') ? "the quotation mark that ends a text"
                                                 : "a text in quotes");
}

bool DbcParser::expectNumber(quint64 *number)
{
    const DbcLexer::State former = lexer.state();
    bool ok = false;
    *number = DbcLexer::toUnsigned(lexer.takeNumber(), &ok);
    if (!ok)
        lexer.goTo(former);
    return ok || miss("a whole number");
}

bool DbcParser::expectNumber(quint32 *number)
{
    const DbcLexer::State former = lexer.state();
    quint64 large = 0;
    if (!expectNumber(&large))
        return false;
    *number = static_cast<quint32>(large);
    if (large <= std::numeric_limits<quint32>::max())
        return true;
    lexer.goTo(former);
    return miss("a number of 32 bits");
}

/// What is no number counts as 0, and is told.
bool DbcParser::expectReal(double *number)
{
    const DbcPlace place = lexer.place();
    const QStringRef digits = lexer.takeNumber();
    bool ok = false;
    *number = digits.toDouble(&ok);
    if (digits.isEmpty())
        return miss("a number");
    if (ok && std::isfinite(*number))
        return true;
    *number = 0;
    note("dbc-value", place, [&] {
        return quotedWord(digits.toString()) + QLatin1String(" is no number, and counts as 0");
    });
    return true;
}

/// The ";" of a statement, or the end of its line for those that have none.
bool DbcParser::expectEnd()
{
    if (lexer.accept(';') || lexer.atEnd() || lexer.atKeyword())
        return true;
    return miss("\";\"");
}

/// For statements that end with their line.
void DbcParser::endLine()
{
    if (lexer.atEnd() || lexer.startsLine() || lexer.atKeyword() || lexer.accept(';'))
        return;
    const DbcPlace place = lexer.place();
    const QString rest = lexer.takeLine().toString();
    note("dbc-syntax", place, [&] {
        return quotedWord(rest) + QLatin1String(" at the end of the line is passed over");
    });
}

bool DbcParser::miss(const char *what)
{
    missing = QLatin1String(what);
    return false;
}

QString DbcParser::shared(const QStringRef &name)
{
    const QString text = name.toString();
    if (names.size() < kMostNodes)
        return *names.insert(text);
    const auto known = names.constFind(text);
    return known == names.constEnd() ? text : *known;
}

void DbcParser::note(const char *rule, const DbcPlace &place, const std::function<QString()> &words)
{
    problems.add(rule, place.line, place.column, words);
}
