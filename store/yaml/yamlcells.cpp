// Spelling of cells in the YAML form.
#include "store/yaml/yamlcells.h"

#include "support/cohelper.h"

#include <QRegularExpression>

namespace
{

/// The short ones first.
QStringList typeNames()
{
    QStringList shorts;
    QStringList longs;
    for (quint16 type = 0; type <= 0xFF; ++type) {
        const QString name = COHelper::index2DataTypeString(type);
        if (name.isEmpty())
            continue;
        shorts << COHelper::index2DataTypeShortString(type);
        longs << name;
    }
    return shorts + longs;
}

QString named(const YamlColumn &column)
{
    return QString::fromLatin1(column.word ? column.word : column.column);
}

YamlValue wordToYaml(const YamlWords &words, qint64 number)
{
    for (const YamlWord &word : words) {
        if (word.number == number)
            return YamlValue::text(QString::fromLatin1(word.word));
    }
    return YamlValue::number(number);
}

/// "1,3" as [1, 3], if reading that gives the same text.
YamlValue listToYaml(const QString &text)
{
    static const QRegularExpression numbers(QStringLiteral("\\A[0-9]+(,[0-9]+)*\\z"));
    if (!numbers.match(text).hasMatch())
        return YamlValue::written(text);
    YamlValue list = YamlValue::list();
    const QStringList parts = text.split(QLatin1Char(','));
    for (const QString &part : parts)
        list << YamlValue::written(part);
    return list;
}

std::optional<QVariant> listFromYaml(const YamlColumn &column, YamlNode value, YamlContext &context)
{
    if (!value.isList()) {
        const std::optional<QString> text = context.text(value, named(column));
        return text ? std::optional<QVariant>(*text) : std::nullopt;
    }
    QStringList parts;
    bool isRead = true;
    const QVector<YamlNode> items = value.items();
    for (const YamlNode item : items) {
        const std::optional<QString> text = context.text(item, QStringLiteral("a number"));
        isRead = isRead && text;
        parts << text.value_or(QString());
    }
    return isRead ? std::optional<QVariant>(parts.join(QLatin1Char(','))) : std::nullopt;
}

std::optional<qint64> flagFromYaml(const YamlColumn &column, YamlNode value, YamlContext &context)
{
    const std::optional<QString> text = context.text(value, named(column));
    if (!text)
        return std::nullopt;
    for (const char *word : {"true", "yes", "on", "1"}) {
        if (text->compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
            return 1;
    }
    for (const char *word : {"false", "no", "off", "0"}) {
        if (text->compare(QLatin1String(word), Qt::CaseInsensitive) == 0)
            return 0;
    }
    context.wrongValue(value, QStringLiteral("%1 is true or false, not %2")
                                  .arg(named(column), YamlContext::quoted(*text)));
    return std::nullopt;
}

std::optional<qint64> typeFromYaml(const YamlColumn &column, YamlNode value,
                                   YamlCells::Bounds bounds, YamlContext &context)
{
    const std::optional<QString> text = context.text(value, named(column));
    if (!text)
        return std::nullopt;
    if (YamlNumber::parse(*text))
        return context.number(value, bounds.low, bounds.high, named(column));
    if (const quint16 type = COHelper::mapDataTypeString(*text))
        return type;
    static const QStringList names = typeNames();
    context.noSuchWord(value, named(column), *text, names);
    return std::nullopt;
}

} // namespace

YamlValue YamlCells::typeToYaml(quint32 type)
{
    if (type > 0xFF)
        return YamlValue::number(type);
    // An underscore shows that the type has no short name. Two types may share one.
    for (const QString &name : {COHelper::index2DataTypeShortString(quint16(type)),
                                COHelper::index2DataTypeString(quint16(type))}) {
        const bool isLong = name == COHelper::index2DataTypeString(quint16(type));
        if (!name.isEmpty() && (isLong || !name.contains(QLatin1Char('_'))) &&
            COHelper::mapDataTypeString(name) == type)
            return YamlValue::text(name);
    }
    return YamlValue::number(type);
}

YamlValue YamlCells::toYaml(const Metadata &texts)
{
    YamlValue map = YamlValue::map();
    for (auto text = texts.cbegin(); text != texts.cend(); ++text)
        map.add(text.key(), YamlValue::written(text.value()));
    return map;
}

Metadata YamlCells::fromYaml(YamlNode map, const QString &what, YamlContext &context)
{
    Metadata result;
    if (!context.isMap(map, what + QStringLiteral(" is a map of texts")))
        return result;
    const QVector<YamlNode::Entry> entries = map.entries();
    for (const YamlNode::Entry &entry : entries) {
        if (const auto text = context.text(entry.value, what + QStringLiteral(" of a key")))
            result.insert(entry.key.text(), *text);
    }
    return result;
}

YamlValue YamlCells::toYaml(const YamlColumn &column, const QVariant &cell)
{
    switch (column.form) {
    case YamlForm::Text:
    case YamlForm::WordText:
        return YamlValue::text(cell.toString());
    case YamlForm::Written:
        return YamlValue::written(cell.toString());
    case YamlForm::Number:
        return YamlValue::number(cell.toLongLong());
    case YamlForm::Hex:
        return YamlValue::hex(cell.toUInt());
    case YamlForm::Flag:
        return YamlValue::flag(cell.toBool());
    case YamlForm::Word:
        return wordToYaml(column.words, cell.toLongLong());
    case YamlForm::Type:
        return typeToYaml(cell.toUInt());
    case YamlForm::NumberList:
        return listToYaml(cell.toString());
    case YamlForm::Map:
        return toYaml(unpackMetadata(cell.toByteArray()));
    }
    return YamlValue::text(QString());
}

std::optional<QVariant> YamlCells::fromYaml(const YamlColumn &column, YamlNode value, Bounds bounds,
                                            YamlContext &context)
{
    const auto numberCell = [](std::optional<qint64> number) {
        return number ? std::optional<QVariant>(qlonglong(*number)) : std::nullopt;
    };
    switch (column.form) {
    case YamlForm::Text:
    case YamlForm::WordText:
    case YamlForm::Written: {
        const std::optional<QString> text = context.text(value, named(column));
        return text ? std::optional<QVariant>(*text) : std::nullopt;
    }
    case YamlForm::Number:
    case YamlForm::Hex:
        return numberCell(context.number(value, bounds.low, bounds.high, named(column)));
    case YamlForm::Flag:
        return numberCell(flagFromYaml(column, value, context));
    case YamlForm::Word:
        return numberCell(
            context.word(value, column.words, bounds.low, bounds.high, named(column)));
    case YamlForm::Type:
        return numberCell(typeFromYaml(column, value, bounds, context));
    case YamlForm::NumberList:
        return listFromYaml(column, value, context);
    case YamlForm::Map:
        if (value.kind() == YamlNode::Kind::None)
            return std::nullopt;
        return packMetadata(fromYaml(value, named(column), context));
    }
    return std::nullopt;
}
