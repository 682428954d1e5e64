// Connections between lines in the YAML form.
#include "store/yaml/yamlconnections.h"

#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlrecord.h"

namespace
{

/// One end of a connection.
struct End {
    quint8 line = 0;
    quint16 index = 0;
    quint8 sub = 0;
};

QStringList connectionKeys()
{
    return QStringList{YamlKeys::kFrom, YamlKeys::kTo} + YamlRecord::words(kConnectionYaml);
}

std::optional<qint64> numberUpTo(const QString &text, qint64 high)
{
    const std::optional<qint64> number = YamlNumber::parse(text);
    return number && *number >= 0 && *number <= high ? number : std::nullopt;
}

/// "<line>/<index>:<subindex>"; without the last it is subindex 0.
std::optional<End> endFromText(const QString &text)
{
    const int slash = text.indexOf(QLatin1Char('/'));
    const int colon = text.indexOf(QLatin1Char(':'));
    const auto line = numberUpTo(text.left(qMax(0, slash)), 0xFF);
    const auto index = numberUpTo(text.mid(slash + 1, colon < 0 ? -1 : colon - slash - 1), 0xFFFF);
    const auto sub = colon < 0 ? 0 : numberUpTo(text.mid(colon + 1), 0xFF);
    if (!line || !index || !sub)
        return std::nullopt;
    return End{quint8(*line), quint16(*index), quint8(*sub)};
}

YamlValue endToYaml(const End &end)
{
    return YamlValue::text(QStringLiteral("%1/0x%2:%3")
                               .arg(end.line)
                               .arg(QString::number(end.index, 16).toUpper(), 4, QLatin1Char('0'))
                               .arg(end.sub));
}

End readEnd(YamlNode connection, const char *key, YamlContext &context)
{
    const YamlNode node = connection.value(key);
    if (!node)
        context.wrongValue(connection, QStringLiteral("a connection has no key \"%1\"").arg(key));
    const std::optional<QString> text = context.text(node, QLatin1String(key));
    const std::optional<End> end = text ? endFromText(*text) : std::nullopt;
    if (text && !end)
        context.wrongValue(node, QStringLiteral("%1 is <line>/<index>:<subindex>, such as "
                                                "0/0x2010:1, not %2")
                                     .arg(QLatin1String(key), YamlContext::quoted(*text)));
    return end.value_or(End());
}

ConnectionData readConnection(YamlNode map, YamlContext &context)
{
    ConnectionData data;
    const QVector<YamlNode::Entry> others = YamlRecord::read(kConnectionYaml, map, &data, context);
    for (const YamlNode::Entry &other : others) {
        if (!other.key.is(YamlKeys::kFrom) && !other.key.is(YamlKeys::kTo))
            context.unknownKey(other.key, QStringLiteral("a connection"), connectionKeys());
    }
    const End from = readEnd(map, YamlKeys::kFrom, context);
    const End to = readEnd(map, YamlKeys::kTo, context);
    return {from.line, from.index, from.sub, to.line, to.index, to.sub, data.priority};
}

YamlValue connectionToYaml(const ConnectionData &connection)
{
    YamlValue map = YamlValue::map();
    map.add(YamlKeys::kFrom,
            endToYaml({connection.prodNode, connection.prodIndex, connection.prodSub}));
    map.add(YamlKeys::kTo, endToYaml({connection.conNode, connection.conIndex, connection.conSub}));
    YamlRecord::write(kConnectionYaml, connection, ConnectionData(), &map);
    return map;
}

} // namespace

void YamlConnections::read(YamlNode list, std::vector<ConnectionData> *connections,
                           YamlContext &context)
{
    if (!context.isList(list, QStringLiteral("connections are a list")))
        return;
    const QVector<YamlNode> items = list.items();
    for (const YamlNode item : items) {
        if (context.isMap(item, QStringLiteral("a connection is a map")))
            connections->push_back(readConnection(item, context));
    }
}

YamlValue YamlConnections::toYaml(const std::vector<ConnectionData> &connections)
{
    YamlValue list = YamlValue::list();
    for (const ConnectionData &connection : connections)
        list << connectionToYaml(connection);
    return list;
}
