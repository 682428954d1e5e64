// Walking through what a YAML file holds.
#include "formats/yamldocument.h"

#include <QSet>

#include <cstring>

YamlNode::YamlNode(const YamlDocument *owner, quint32 number) : document(owner), cell(number)
{
    // What an anchor names is never an alias itself.
    const YamlDocument::Cell &named = owner->cells[number];
    if (named.type == YamlDocument::Type::Alias)
        cell = named.begin;
}

YamlNode::Kind YamlNode::kind() const
{
    if (!document || document->cells[cell].isDropped)
        return Kind::None;
    switch (document->cells[cell].type) {
    case YamlDocument::Type::List:
        return Kind::List;
    case YamlDocument::Type::Map:
        return Kind::Map;
    default:
        return Kind::Scalar;
    }
}

YamlPlace YamlNode::place() const
{
    if (!document)
        return {};
    const YamlDocument::Cell &own = document->cells[cell];
    return {int(own.line), int(own.column)};
}

QString YamlNode::text() const
{
    if (!isScalar())
        return {};
    const YamlDocument::Cell &own = document->cells[cell];
    return QString::fromUtf8(document->begin(own), int(own.size)); // it may hold zero characters
}

bool YamlNode::is(const char *word) const
{
    if (!isScalar())
        return false;
    const YamlDocument::Cell &own = document->cells[cell];
    return own.size == std::strlen(word) && std::memcmp(document->begin(own), word, own.size) == 0;
}

bool YamlNode::isPlain() const
{
    return isScalar() && document->cells[cell].type == YamlDocument::Type::Plain;
}

bool YamlNode::isMissing() const
{
    return isPlain() && document->cells[cell].size == 0;
}

QVector<YamlNode> YamlNode::items() const
{
    QVector<YamlNode> result;
    if (!isList())
        return result;
    const auto &cells = document->cells;
    for (quint32 item = cell + 1; item < cells[cell].next; item = cells[item].next)
        result.append(YamlNode(document, item));
    return result;
}

QVector<YamlNode::Entry> YamlNode::entries() const
{
    QVector<Entry> result;
    if (!isMap())
        return result;
    const auto &cells = document->cells;
    YamlNode merged;
    for (quint32 key = cell + 1; key < cells[cell].next;) {
        const quint32 value = cells[key].next;
        if (!cells[key].isDropped && document->isMerge(cells[key]))
            merged = YamlNode(document, value);
        else if (!cells[key].isDropped)
            result.append({YamlNode(document, key), YamlNode(document, value)});
        key = cells[value].next;
    }
    if (merged)
        addMerged(merged, &result);
    return result;
}

void YamlNode::addMerged(YamlNode merged, QVector<Entry> *result) const
{
    QSet<QString> known;
    for (const Entry &entry : qAsConst(*result))
        known.insert(entry.key.text());
    const QVector<YamlNode> maps = merged.isMap() ? QVector<YamlNode>{merged} : merged.items();
    for (const YamlNode &map : maps) {
        const QVector<Entry> entries = map.entries();
        for (const Entry &entry : entries) {
            const QString key = entry.key.text();
            if (!known.contains(key))
                result->append(entry);
            known.insert(key);
        }
    }
}

YamlNode YamlNode::value(const char *key) const
{
    const QVector<Entry> all = entries();
    for (const Entry &entry : all) {
        if (entry.key.is(key))
            return entry.value;
    }
    return {};
}

const char *YamlDocument::begin(const Cell &cell) const
{
    const quint32 inFile = quint32(source.size());
    return cell.begin < inFile ? source.constData() + cell.begin
                               : unescaped.constData() + (cell.begin - inFile);
}

QByteArray YamlDocument::bytes(const Cell &cell) const
{
    return QByteArray::fromRawData(begin(cell), int(cell.size));
}
