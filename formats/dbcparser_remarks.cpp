// The statements of DBC files that say something of what others make: comments, attributes, values.
#include "formats/dbckeys.h"
#include "formats/dbcparser.h"
#include "support/printable.h"

#include <cmath>

namespace
{

/// A whole number in any form; see DbcValue.
qint64 toValue(const QStringRef &digits, bool *ok)
{
    const qint64 number = digits.toLongLong(ok, 10);
    if (*ok)
        return number;
    const quint64 large = DbcLexer::toUnsigned(digits, ok);
    if (*ok)
        return static_cast<qint64>(large);
    constexpr double kLimit = 9.2e18;
    const double real = digits.toDouble(ok);
    *ok = *ok && std::abs(real) < kLimit && std::floor(real) == real;
    return *ok ? static_cast<qint64>(real) : 0;
}

} // namespace

bool DbcParser::readValueTable()
{
    DbcValueTable table;
    table.place = begin;
    if (!expectName(&table.name) || !readValueList(&table.values))
        return false;
    file.valueTables.append(table);
    return true;
}

bool DbcParser::readValues()
{
    DbcRemarks::Values list;
    const bool isOfSignal = lexer.peek().isDigit();
    list.subject = subjectHere(isOfSignal ? DbcOwner::Signal : DbcOwner::Variable);
    if (!(isOfSignal ? readSignalSubject(&list.subject) : expectName(&list.subject.name)) ||
        !readValueList(&list.values))
        return false;
    found.values.append(list);
    return true;
}

bool DbcParser::readComment()
{
    DbcRemarks::Comment comment;
    if (!readSubject(&comment.subject) || !expectText(&comment.text))
        return false;
    if (lexer.peek() != QLatin1Char(';') && lexer.takeRestOfText(&comment.text))
        note("dbc-text", begin, [] {
            return QStringLiteral("the comment has quotation marks in it, which are taken as part "
                                  "of it: write them as \\\"");
        });
    if (!expectEnd())
        return false;
    found.comments.append(comment);
    return true;
}

bool DbcParser::readDefinition()
{
    struct Word {
        const char *keyword;
        DbcOwner owner;
    };
    constexpr Word kOwners[] = {{DbcKeys::kNodes, DbcOwner::Node},
                                {DbcKeys::kMessage, DbcOwner::Message},
                                {DbcKeys::kSignal, DbcOwner::Signal},
                                {DbcKeys::kVariable, DbcOwner::Variable}};
    DbcAttributeDefinition definition;
    definition.place = begin;
    const QStringRef word = lexer.peekName();
    for (const Word &row : kOwners) {
        if (word == QLatin1String(row.keyword))
            definition.owner = row.owner;
    }
    if (definition.owner != DbcOwner::Network)
        (void)lexer.takeName();
    if (!expectText(&definition.name) || !readType(&definition) || !expectEnd())
        return false;
    define(definition);
    return true;
}

bool DbcParser::readType(DbcAttributeDefinition *definition)
{
    using Type = DbcAttributeDefinition::Type;
    struct Word {
        const char *word;
        Type type;
    };
    constexpr Word kTypes[] = {{"INT", Type::Integer},
                               {"HEX", Type::Hexadecimal},
                               {"FLOAT", Type::Float},
                               {"STRING", Type::Text},
                               {"ENUM", Type::Words}};
    const QStringRef name = lexer.peekName();
    const Word *type = nullptr;
    for (const Word &row : kTypes) {
        if (name.compare(QLatin1String(row.word), Qt::CaseInsensitive) == 0)
            type = &row;
    }
    if (!type)
        return miss("INT, HEX, FLOAT, STRING or ENUM");
    (void)lexer.takeName();
    definition->type = type->type;
    if (type->type == Type::Words) {
        while (lexer.peek() == QLatin1Char('"') || lexer.accept(',')) {
            QString word;
            if (lexer.peek() == QLatin1Char('"') && !expectText(&word))
                return false;
            definition->words.append(word);
            (void)lexer.accept(',');
        }
        return true;
    }
    const bool isText = type->type == Type::Text;
    const bool hasRange = !isText && !lexer.atKeyword() && lexer.peek() != QLatin1Char(';');
    return !hasRange || (expectReal(&definition->minimum) && expectReal(&definition->maximum));
}

void DbcParser::define(const DbcAttributeDefinition &definition)
{
    const QPair<DbcOwner, QString> key(definition.owner, definition.name);
    const auto former = file.definitionNumbers.constFind(key);
    if (former == file.definitionNumbers.constEnd()) {
        file.definitionNumbers.insert(key, file.definitions.size());
        file.definitions.append(definition);
        return;
    }
    note("dbc-twice", begin, [&] {
        return QStringLiteral("the attribute %1 takes the place of the one of line %2")
            .arg(quotedWord(definition.name))
            .arg(file.definitions[*former].place.line);
    });
    file.definitions[*former] = definition;
}

bool DbcParser::readDefault()
{
    DbcRemarks::Default entry;
    entry.place = begin;
    if (!expectText(&entry.name) || !readAttributeText(&entry.text) || !expectEnd())
        return false;
    found.defaults.append(entry);
    return true;
}

bool DbcParser::readAttribute()
{
    DbcRemarks::Attribute entry;
    if (!expectText(&entry.name) || !readSubject(&entry.subject) ||
        !readAttributeText(&entry.text) || !expectEnd())
        return false;
    entry.name = shared(QStringRef(&entry.name));
    found.attributes.append(entry);
    return true;
}

/// What stands before the text of a comment or the value of an attribute.
bool DbcParser::readSubject(DbcSubject *subject)
{
    const QStringRef word = lexer.peekName();
    *subject = subjectHere(DbcOwner::Network);
    if (!DbcLexer::isKeyword(word) || lexer.startsLine())
        return true;
    if (word == QLatin1String(DbcKeys::kNodes))
        subject->owner = DbcOwner::Node;
    else if (word == QLatin1String(DbcKeys::kMessage))
        subject->owner = DbcOwner::Message;
    else if (word == QLatin1String(DbcKeys::kSignal))
        subject->owner = DbcOwner::Signal;
    else if (word == QLatin1String(DbcKeys::kVariable))
        subject->owner = DbcOwner::Variable;
    else
        return miss("BU_, BO_, SG_ or EV_");
    (void)lexer.takeName();
    if (subject->owner == DbcOwner::Signal)
        return readSignalSubject(subject);
    return subject->owner == DbcOwner::Message ? expectNumber(&subject->message)
                                               : expectName(&subject->name);
}

bool DbcParser::readSignalSubject(DbcSubject *subject)
{
    return expectNumber(&subject->message) && expectName(&subject->name);
}

bool DbcParser::readValueList(QVector<DbcValue> *values)
{
    while (!lexer.atEnd() && lexer.peek() != QLatin1Char(';') && !lexer.atKeyword()) {
        DbcValue value;
        const DbcPlace place = lexer.place();
        const QStringRef digits = lexer.takeNumber();
        bool ok = false;
        value.number = toValue(digits, &ok);
        if (digits.isEmpty())
            return miss("a number or \";\"");
        if (!expectText(&value.text))
            return false;
        if (ok)
            values->append(value);
        else
            note("dbc-value", place, [&] {
                return quotedWord(digits.toString()) +
                       QLatin1String(" is no whole number, and its text is passed over");
            });
    }
    return expectEnd();
}

bool DbcParser::readAttributeText(QString *text)
{
    if (lexer.peek() == QLatin1Char('"'))
        return expectText(text);
    const QStringRef number = lexer.atKeyword() ? QStringRef() : lexer.takeNumber();
    *text = number.toString();
    return !number.isEmpty() || miss("a value");
}
