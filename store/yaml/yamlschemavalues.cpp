// Values of the YAML form as JSON Schema.
#include "store/yaml/yamlschemavalues.h"

#include "support/cohelper.h"

#include <QJsonArray>

using namespace YamlSchemaValues;

namespace
{

// Definitions.
constexpr char kText[] = "text";
constexpr char kTexts[] = "texts";
constexpr char kList[] = "list";
constexpr char kFlag[] = "flag";
constexpr char kType[] = "type";

constexpr char kAnyNumber[] = "[-+]?(?:0[xX][0-9A-Fa-f]+|[0-9]+)";

QString whole(const QStringList &expressions)
{
    return QStringLiteral("^(?:%1)$").arg(expressions.join(QLatin1Char('|')));
}

/// A regular expression for the word in any case of its letters.
QString anyCase(const QString &word)
{
    QString expression;
    for (const QChar c : word) {
        if (c.isLetter())
            expression += QLatin1Char('[') + c.toUpper() + c.toLower() + QLatin1Char(']');
        else
            expression += c;
    }
    return expression;
}

QStringList anyCase(const QStringList &words)
{
    QStringList expressions;
    for (const QString &word : words)
        expressions << anyCase(word);
    return expressions;
}

QStringList typeNames()
{
    QStringList shortNames;
    QStringList longNames;
    for (quint16 type = 1; type <= 0xFF; ++type) {
        const QString name = COHelper::index2DataTypeShortString(type);
        if (name.isEmpty())
            continue;
        if (!shortNames.contains(name))
            shortNames << name;
        longNames << COHelper::index2DataTypeString(type);
    }
    for (const QString &name : qAsConst(longNames)) {
        if (!shortNames.contains(name))
            shortNames << name;
    }
    return shortNames;
}

/// Of several types; a text has to match \a expressions.
QJsonObject typed(const QStringList &types, const QStringList &expressions = {})
{
    QJsonObject schema = {{"type", QJsonArray::fromStringList(types)}};
    if (!expressions.isEmpty())
        schema.insert("pattern", whole(expressions));
    return schema;
}

QJsonObject bounded(QJsonObject schema, YamlCells::Bounds bounds)
{
    schema.insert("minimum", bounds.low);
    schema.insert("maximum", bounds.high);
    return schema;
}

QJsonObject numberWithin(YamlCells::Bounds bounds)
{
    return bounded(typed({"integer", "string"}, {QLatin1String(kAnyNumber)}), bounds);
}

/// What editors offer, and what can stand there beside it.
QJsonObject choice(const QJsonArray &words, const QJsonObject &other, const QString &help)
{
    const QJsonObject listed = {{"enum", words}};
    return described({{"anyOf", QJsonArray{listed, other}}}, help);
}

QJsonArray listed(const YamlWords &words)
{
    QJsonArray list;
    for (const YamlWord &word : words)
        list << QLatin1String(word.word);
    if (list.contains("NULL"))
        list << QJsonValue(); // what editors make of it without quotes
    return list;
}

/// The value of a cell as an editor would type what the file has for it.
QJsonValue valueOf(const YamlColumn &column, const QVariant &cell)
{
    const QString text = cell.toString();
    const qint64 number = cell.toLongLong();
    switch (column.form) {
    case YamlForm::Number:
    case YamlForm::Hex:
        return number;
    case YamlForm::Flag:
        return cell.toBool();
    case YamlForm::Word:
        for (const YamlWord &word : column.words) {
            if (word.number == number)
                return QLatin1String(word.word);
        }
        return number;
    case YamlForm::Type:
        return COHelper::index2DataTypeShortString(quint16(number));
    case YamlForm::Written:
        return text == QString::number(text.toLongLong()) ? QJsonValue(text.toLongLong())
                                                          : QJsonValue(text);
    case YamlForm::Text:
    case YamlForm::WordText:
    case YamlForm::NumberList:
    case YamlForm::Map:
        break;
    }
    return text;
}

QJsonObject schemaOf(const YamlColumn &column, YamlCells::Bounds bounds, const QString &help)
{
    switch (column.form) {
    case YamlForm::Text:
    case YamlForm::Written:
        return text(help);
    case YamlForm::Number:
    case YamlForm::Hex:
        return number(bounds, help);
    case YamlForm::Flag:
        return reference(kFlag, help);
    case YamlForm::Word:
        return word(column.words, bounds, help);
    case YamlForm::Type:
        return reference(kType, help);
    case YamlForm::WordText:
        return wordText(column.words, help);
    case YamlForm::NumberList:
        return list(help);
    case YamlForm::Map:
        return texts(help);
    }
    return {};
}

} // namespace

QJsonObject YamlSchemaValues::ofColumn(const YamlColumn &column, YamlCells::Bounds bounds,
                                       const QVariant &base)
{
    QJsonObject schema = schemaOf(column, bounds, QString::fromLatin1(column.help));
    const QJsonValue value = valueOf(column, base);
    const bool saysNothing = value.isString() && value.toString().isEmpty();
    if (column.form != YamlForm::Map && !saysNothing)
        schema.insert("default", value);
    return schema;
}

QJsonObject YamlSchemaValues::text(const QString &help)
{
    return reference(kText, help);
}

QJsonObject YamlSchemaValues::wordText(const YamlWords &words, const QString &help)
{
    return choice(listed(words), text(), help);
}

QJsonObject YamlSchemaValues::list(const QString &help)
{
    return reference(kList, help);
}

QJsonObject YamlSchemaValues::texts(const QString &help)
{
    return reference(kTexts, help);
}

QJsonObject YamlSchemaValues::number(YamlCells::Bounds bounds, const QString &help)
{
    return described(numberWithin(bounds), help);
}

QJsonObject YamlSchemaValues::word(const YamlWords &words, YamlCells::Bounds bounds,
                                   const QString &help)
{
    return choice(listed(words), numberWithin(bounds), help);
}

QString YamlSchemaValues::numberKey(quint32 high)
{
    return wordKey({}, high);
}

QString YamlSchemaValues::anyNumberKey()
{
    return whole({kAnyNumber});
}

QJsonObject YamlSchemaValues::valueOrNode()
{
    return typed({"integer", "string"},
                 {QStringLiteral("(?:\\$%1 *[+] *)?%2").arg(anyCase("NODEID"), kAnyNumber)});
}

QJsonObject YamlSchemaValues::mappingEntry()
{
    return typed({"integer", "string"},
                 {kAnyNumber, QStringLiteral("(?:0x[0-9A-Fa-f]{1,4}|[0-9]{1,5}):[0-9]{1,3}")});
}

QString YamlSchemaValues::connectionEnd()
{
    return whole({QStringLiteral("%1/%1(?::%1)?").arg(QLatin1String(kAnyNumber))});
}

QString YamlSchemaValues::wordKey(const YamlWords &words, quint32 high)
{
    QStringList expressions;
    for (const YamlWord &word : words)
        expressions << QLatin1String(word.word);
    expressions
        << QStringLiteral("[+]?0[xX]0*[0-9A-Fa-f]{1,%1}").arg(QString::number(high, 16).size());
    expressions << QStringLiteral("[+]?0*[0-9]{1,%1}").arg(QString::number(high).size());
    return whole(expressions);
}

QJsonObject YamlSchemaValues::definitions()
{
    const QString object = "object";
    const QJsonObject one = typed({"string", "number", "boolean", "null"});
    const QJsonObject map = {{"type", object}, {"additionalProperties", reference(kText)}};
    const QJsonObject items = {{"type", "array"}, {"items", reference(kText)}};
    const QJsonObject flag =
        bounded(typed({"boolean", "integer", "string"},
                      anyCase(QStringList{"true", "false", "yes", "no", "on", "off"}) << "[01]"),
                {0, 1});
    const QStringList types = anyCase(typeNames() << "U8S"); // which writers do not know
    const QJsonObject type =
        bounded(typed({"integer", "string"},
                      {QLatin1String(" *(?:") + types.join(QLatin1Char('|')) + QLatin1String(") *"),
                       QLatin1String(kAnyNumber)}),
                {0, 0xFFFFFFFF});
    return {
        {QLatin1String(kText), one},
        {QLatin1String(kTexts), map},
        {QLatin1String(kList), QJsonObject{{"anyOf", QJsonArray{items, reference(kText)}}}},
        {QLatin1String(kFlag), flag},
        {QLatin1String(kType), choice(QJsonArray::fromStringList(typeNames()), type, QString())}};
}

QJsonObject YamlSchemaValues::reference(const char *definition, const QString &help)
{
    return described({{"$ref", "#/$defs/" + QString::fromLatin1(definition)}}, help);
}

QJsonObject YamlSchemaValues::described(QJsonObject schema, const QString &help)
{
    if (!help.isEmpty())
        schema.insert("description", help);
    return schema;
}
