// Objects of a line, in long and in short form.
#include "store/yaml/yamlobjects.h"

#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlobject.h"
#include "store/yaml/yamlshortforms.h"
#include "support/problems.h"

#include <algorithm>

namespace
{

/// Is not told as an error: it may be meant.
void warnOfDecimal(const YamlContext::Numbered &entry, const YamlContext &context)
{
    const QString text = entry.key.text();
    const auto isDigit = [](QChar ch) { return ch >= QLatin1Char('0') && ch <= QLatin1Char('9'); };
    if (text.size() != 4 || !std::all_of(text.cbegin(), text.cend(), isDigit))
        return;
    Problems::warning(
        "yaml-decimal-index", context.problems->fileName(),
        QStringLiteral("the index %1 is decimal, and means object 0x%2: write it so, or "
                       "0x%1 if that was meant")
            .arg(text,
                 QString::number(entry.number, 16).toUpper().rightJustified(4, QLatin1Char('0'))),
        entry.key.place().line);
}

void readLong(YamlNode map, YamlObjectSink &sink, const YamlDefaults &defaults,
              YamlContext &context)
{
    if (!context.isMap(map, QStringLiteral("the objects of a line are a map")))
        return;
    const auto numbered = context.numbered(map, 0, 0xFFFF, QStringLiteral("object index"));
    for (const YamlContext::Numbered &entry : numbered) {
        if (context.isOver())
            break;
        warnOfDecimal(entry, context);
        ObjectRecord object;
        YamlObject::read(entry.value, &object, defaults, context);
        sink.add(quint16(entry.number), entry.key, std::move(object));
    }
}

/// They come first, wherever they stand.
YamlDefaults readDefaults(const QVector<YamlNode::Entry> &entries, YamlContext &context)
{
    YamlDefaults defaults;
    for (const YamlNode::Entry &entry : entries) {
        if (entry.key.is(YamlKeys::kObjectDefaults))
            defaults.read(entry.value, context);
    }
    return defaults;
}

} // namespace

void YamlObjectSink::add(quint16 index, YamlNode key, ObjectRecord &&object)
{
    if (const int line = lines.value(index)) {
        context->problems->add(
            "yaml-doubled-number", key.place(),
            QStringLiteral("object 0x%1 stands here and in line %2; take one of them away")
                .arg(index, 4, 16, QLatin1Char('0'))
                .arg(line));
        return;
    }
    lines.insert(index, qMax(1, key.place().line));
    if (context->hasRoomFor(int(object.subs.size()), key))
        (*objects)[index] = std::move(object);
}

void YamlObjectSink::setDefault(quint16 index, quint8 sub, const QString &value)
{
    const auto object = objects->find(index);
    if (object == objects->end())
        return;
    const auto found = object->second.subs.find(sub);
    if (found != object->second.subs.end())
        found->second.defaultValue = value;
}

QVector<YamlNode::Entry> YamlObjects::read(const QVector<YamlNode::Entry> &entries,
                                           std::map<quint16, ObjectRecord> *objects,
                                           YamlContext &context)
{
    QVector<YamlNode::Entry> others;
    YamlObjectSink sink(objects, &context);
    const YamlDefaults defaults = readDefaults(entries, context);
    YamlShortForms forms(&sink, &defaults, &context);
    for (const YamlNode::Entry &entry : entries) {
        if (entry.key.is(YamlKeys::kObjects))
            readLong(entry.value, sink, defaults, context);
        else if (!entry.key.is(YamlKeys::kObjectDefaults) && !forms.read(entry))
            others.append(entry);
    }
    forms.finish();
    return others;
}

void YamlObjects::write(const std::map<quint16, ObjectRecord> &objects, YamlWriter &writer)
{
    const YamlDefaults defaults = YamlDefaults::of(objects);
    const YamlValue inCommon = defaults.write();
    if (!inCommon.isEmpty())
        writer.value(QString::fromLatin1(YamlKeys::kObjectDefaults), inCommon);
    const QSet<quint16> isShort = YamlShortForms::write(objects, defaults, writer);
    bool isOpen = false;
    for (const auto &[index, object] : objects) {
        if (isShort.contains(index))
            continue;
        if (!isOpen)
            writer.begin(QString::fromLatin1(YamlKeys::kObjects));
        isOpen = true;
        writer.value(QStringLiteral("0x") +
                         QString::number(index, 16).toUpper().rightJustified(4, QLatin1Char('0')),
                     YamlObject::write(object, defaults));
    }
    if (isOpen)
        writer.end();
}

QStringList YamlObjects::keys()
{
    QStringList result = YamlShortForms::keys();
    return result << QString::fromLatin1(YamlKeys::kObjects)
                  << QString::fromLatin1(YamlKeys::kObjectDefaults);
}
