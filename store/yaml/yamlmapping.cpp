// Reading and writing of PDO mappings.
//
// Either the mapping is fixed: constants, as many as there are entries. Or the network may change
// it: then there are more subindices than entries ("map-slots"), and the others hold 0.
#include "store/yaml/yamlmapping.h"

#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlrecord.h"
#include "support/accesstype.h"
#include "support/cohelper.h"

#include <QRegularExpression>

namespace
{

using Entries = QVector<YamlNode::Entry>;
using Objects = std::map<quint16, ObjectRecord>;

constexpr quint16 kHighestDummy = 0x1F; ///< data types that stand for gaps, CiA 301

QString hex4(quint16 index)
{
    return QStringLiteral("0x") +
           QString::number(index, 16).toUpper().rightJustified(4, QLatin1Char('0'));
}

IndexData baseOfObject(const YamlStandardForm &form, int number)
{
    IndexData data = YamlStandard::objectOf(form, number);
    data.name.replace(QLatin1String(" parameter"), QLatin1String(" mapping"));
    return data;
}

SubIndexData baseOfSub(int place, bool isFixed, const YamlDefaults &defaults)
{
    SubIndexData sub;
    sub.name = place == 0 ? QStringLiteral("Number of mapped objects")
                          : QStringLiteral("Mapped object %1").arg(place);
    sub.dataType = place == 0 ? YamlStandard::kU8 : YamlStandard::kU32;
    sub.accessType = isFixed ? AccessType::kConst : AccessType::kReadWrite;
    sub.implementation = isFixed ? Implementation::kManagedConst : Implementation::kManagedVariable;
    sub.defaultValue = QStringLiteral("0");
    return defaults.over(sub);
}

bool isEqualButDefault(SubIndexData sub, const SubIndexData &base)
{
    sub.defaultValue = base.defaultValue;
    return YamlRecord::isEqual(kSubIndexYaml, sub, base);
}

// --- Items ---

/// None if the text is no index: a whole entry, or anything else.
std::optional<YamlMapping::Item> itemOf(const QString &text, int place)
{
    static const QRegularExpression form(
        QStringLiteral("\\A(0x[0-9A-Fa-f]{1,4}|[0-9]{1,5})(?::([0-9]{1,3}))?\\z"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const qint64 index = YamlNumber::parse(match.captured(1)).value_or(0);
    const int sub = match.captured(2).toInt();
    if (index < 1 || index > 0xFFFF || sub > 0xFF)
        return std::nullopt;
    return YamlMapping::Item{quint8(place), quint16(index), quint8(sub)};
}

/// Is it the whole value of a mapping?
bool isEntry(const QString &text)
{
    return !itemOf(text, 0) && YamlNumber::parse(text);
}

/// Bits of what an item names; none if that is not there.
std::optional<quint8> bitsOf(const YamlMapping::Item &item, const Objects &objects)
{
    const auto bits = [](quint16 type) {
        return COHelper::getDataLengthBits(static_cast<CAN::CANopenDataType>(type));
    };
    if (item.index <= kHighestDummy)
        return item.sub == 0 ? std::optional<quint8>(bits(item.index)) : std::nullopt;
    const auto object = objects.find(item.index);
    if (object == objects.end())
        return std::nullopt;
    const auto sub = object->second.subs.find(item.sub);
    if (sub == object->second.subs.end())
        return std::nullopt;
    return bits(sub->second.dataType);
}

/// The shortest text from which reading makes that default value; none if there is no such.
std::optional<QString> itemText(const QString &value, const Objects &objects)
{
    if (const auto entry = value.size() == 10 ? YamlNumber::parse(value) : std::nullopt) {
        const YamlMapping::Item item{0, quint16(*entry >> 16), quint8(*entry >> 8)};
        if (item.index > 0 && bitsOf(item, objects) && YamlMapping::valueOf(item, objects) == value)
            return hex4(item.index) +
                   (item.sub > 0 ? QStringLiteral(":%1").arg(item.sub) : QString());
    }
    return isEntry(value) ? std::optional<QString>(value) : std::nullopt;
}

// --- Reading ---

void readItems(YamlNode list, YamlMapping::Mapping *mapping, bool isFixed,
               const YamlDefaults &defaults, YamlContext &context)
{
    const QString wanted = QStringLiteral("the mapping of a PDO is a list of objects");
    if (!context.isList(list, wanted))
        return;
    const QVector<YamlNode> items = list.items();
    std::map<quint8, SubIndexData> &subs = mapping->object.subs;
    const int places = isFixed ? PdoEntryCount::kHighest : int(subs.size()) - 1;
    if (items.size() > places)
        return context.wrongValue(list, QStringLiteral("the mapping has at most %1 entries, not %2")
                                            .arg(places)
                                            .arg(items.size()));
    subs[0].defaultValue = QString::number(items.size());
    for (int place = 1; place <= items.size(); ++place) {
        SubIndexData &sub = subs[quint8(place)];
        sub = baseOfSub(place, isFixed, defaults);
        const YamlNode node = items.at(place - 1);
        const auto text = context.text(node, QStringLiteral("an entry of a mapping"));
        sub.defaultValue = text.value_or(QString());
        if (const auto item = itemOf(sub.defaultValue, place))
            mapping->items.push_back(*item);
        else if (text && !isEntry(*text))
            context.wrongValue(node, QStringLiteral("an entry of a mapping is an object, such as "
                                                    "0x2010 or 0x2012:1, not %1")
                                         .arg(YamlContext::quoted(*text)));
    }
}

void readSlots(YamlNode node, ObjectRecord *object, const YamlDefaults &defaults,
               YamlContext &context)
{
    const auto places =
        context.number(node, 0, PdoEntryCount::kHighest, QStringLiteral("map-slots"));
    for (int place = 0; places && place <= int(*places); ++place)
        object->subs[quint8(place)] = baseOfSub(place, false, defaults);
}

// --- Writing ---

/// How many entries are in use; none if the subindices are not those of a short form.
std::optional<int> usedEntries(const ObjectRecord &object, bool isFixed,
                               const YamlDefaults &defaults)
{
    if (object.subs.empty() || object.subs.rbegin()->first > PdoEntryCount::kHighest ||
        object.subs.size() != size_t(object.subs.rbegin()->first) + 1)
        return std::nullopt;
    const int highest = object.subs.rbegin()->first;
    const QString count = object.subs.at(0).defaultValue;
    const int used = count.toInt();
    if (used < 0 || used > highest || count != QString::number(used) || (isFixed && used < highest))
        return std::nullopt;
    for (const auto &[place, sub] : object.subs) {
        const SubIndexData base = baseOfSub(place, isFixed, defaults);
        const bool isFree = place > used && sub.defaultValue != base.defaultValue;
        if (isFree || !isEqualButDefault(sub, base))
            return std::nullopt;
    }
    return used;
}

bool isObject(const ObjectRecord &object, const YamlStandardForm &form, int number)
{
    IndexData base = baseOfObject(form, number);
    base.description = object.data.description;
    return object.exists && YamlRecord::isEqual(kIndexYaml, object.data, base);
}

} // namespace

QString YamlMapping::valueOf(const Item &item, const Objects &objects)
{
    const quint32 bits = bitsOf(item, objects).value_or(0);
    return QStringLiteral("0x%1").arg(quint32(item.index) << 16 | quint32(item.sub) << 8 | bits, 8,
                                      16, QLatin1Char('0'));
}

Entries YamlMapping::read(const Entries &entries, const YamlStandardForm &form, int number,
                          Mapping *mapping, const YamlDefaults &defaults, YamlContext &context)
{
    Entries others;
    YamlNode list;
    YamlNode slotCount;
    ObjectRecord &object = mapping->object;
    object.data = baseOfObject(form, number);
    for (const YamlNode::Entry &entry : entries) {
        if (entry.key.is(YamlKeys::kMap))
            list = entry.value;
        else if (entry.key.is(YamlKeys::kMapSlots))
            slotCount = entry.value;
        else if (!entry.key.is(YamlKeys::kMapAbout))
            others.append(entry);
        else if (const auto text = context.text(entry.value, QLatin1String(YamlKeys::kMapAbout)))
            object.data.description = *text;
    }
    object.subs[0] = baseOfSub(0, !slotCount, defaults);
    if (slotCount)
        readSlots(slotCount, &object, defaults, context);
    if (list)
        readItems(list, mapping, !slotCount, defaults, context);
    return others;
}

bool YamlMapping::write(const ObjectRecord &object, const YamlStandardForm &form, int number,
                        const Objects &objects, const YamlDefaults &defaults, YamlValue *map)
{
    if (!isObject(object, form, number))
        return false;
    const auto fixed = usedEntries(object, true, defaults);
    const auto used = fixed ? fixed : usedEntries(object, false, defaults);
    if (!used)
        return false;
    YamlValue list = YamlValue::list();
    for (int place = 1; place <= *used; ++place) {
        const auto text = itemText(object.subs.at(quint8(place)).defaultValue, objects);
        if (!text)
            return false;
        list << YamlValue::written(*text);
    }
    map->add(QString::fromLatin1(YamlKeys::kMap), list);
    if (!fixed)
        map->add(QString::fromLatin1(YamlKeys::kMapSlots),
                 YamlValue::number(qint64(object.subs.size()) - 1));
    if (!object.data.description.isEmpty())
        map->add(QString::fromLatin1(YamlKeys::kMapAbout),
                 YamlValue::text(object.data.description));
    return true;
}

QStringList YamlMapping::keys()
{
    return {QString::fromLatin1(YamlKeys::kMap), QString::fromLatin1(YamlKeys::kMapSlots),
            QString::fromLatin1(YamlKeys::kMapAbout)};
}
