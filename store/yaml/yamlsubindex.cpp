// Reading and writing of subindices.
#include "store/yaml/yamlsubindex.h"

#include "store/yaml/yamlkeys.h"
#include "support/cohelper.h"

#include <array>

namespace
{

constexpr int kCount = int(std::size(kSubIndexWords));

constexpr int placeOf(const char *word)
{
    for (int i = 0; i < kCount; ++i) {
        if (isSameText(kSubIndexWords[i].word, word))
            return i;
    }
    return -1;
}

constexpr int kSize = placeOf("size");
constexpr int kImplementation = placeOf("implementation");
constexpr int kLowLimit = placeOf("low-limit");
constexpr int kUpLimit = placeOf("up-limit");
constexpr int kLimitInEds = placeOf("limits-in-eds");

/// What people look for stands first, then the rest in the order of the table.
constexpr int kFirst[] = {
    placeOf("name"), placeOf("type"), placeOf("access"), placeOf("variable"), placeOf("default"),
    kLowLimit,       kUpLimit,        placeOf("pdo"),    placeOf("current"),
};

constexpr bool isFirst(int place)
{
    for (const int first : kFirst) {
        if (first == place)
            return true;
    }
    return false;
}

constexpr std::array<int, kCount> makeOrder()
{
    std::array<int, kCount> order{};
    int count = 0;
    for (const int place : kFirst)
        order[count++] = place;
    for (int place = 0; place < kCount; ++place) {
        if (!isFirst(place))
            order[count++] = place;
    }
    return order;
}

constexpr auto kOrder = makeOrder();

bool isSame(int place, const SubIndexData &one, const SubIndexData &other)
{
    return YamlRecord::isEqual(kSubIndexColumns[place], one, other);
}

void writeLimits(const SubIndexData &record, const SubIndexData &base, YamlValue *map)
{
    if (record.lowLimit == base.lowLimit && record.upLimit == base.upLimit)
        return;
    map->add(QString::fromLatin1(YamlKeys::kLimits), YamlValue::list()
                                                         << YamlValue::written(record.lowLimit)
                                                         << YamlValue::written(record.upLimit));
}

void readLimits(YamlNode value, SubIndexData *record, YamlContext &context)
{
    const QString wanted = QStringLiteral("limits are a list of the least and the greatest value");
    if (!context.isList(value, wanted))
        return;
    const QVector<YamlNode> limits = value.items();
    if (limits.size() != 2)
        return context.wrongValue(value, wanted);
    if (const auto low = context.text(limits.first(), QStringLiteral("the low limit")))
        record->lowLimit = *low;
    if (const auto up = context.text(limits.last(), QStringLiteral("the high limit")))
        record->upLimit = *up;
}

/// Of the columns that follow() sets.
bool follows(YamlNode key)
{
    for (const int place : {kSize, kImplementation, kLowLimit, kUpLimit, kLimitInEds}) {
        if (key.is(kSubIndexWords[place].word))
            return true;
    }
    return key.is(YamlKeys::kLimits);
}

} // namespace

SubIndexData YamlSubIndex::follow(SubIndexData base, const SubIndexData &record,
                                  const YamlDefaults &defaults)
{
    if (const quint8 usual = defaults.implementationOf(record);
        usual != defaults.implementationOf(base))
        base.implementation = usual;
    if (COHelper::isStringLike(static_cast<CAN::CANopenDataType>(record.dataType)))
        base.size = quint32(qMax(1, record.defaultValue.toUtf8().size()));
    else if (record.dataType != base.dataType)
        base.size = 0;
    if (record.dataType != base.dataType)
        defaults.followType(&base, record.dataType);
    if (record.lowLimit != base.lowLimit || record.upLimit != base.upLimit)
        base.limitInEds = true;
    return base;
}

QVector<YamlNode::Entry> YamlSubIndex::read(const QVector<YamlNode::Entry> &entries,
                                            const SubIndexData &base, SubIndexData *record,
                                            const YamlDefaults &defaults, YamlContext &context)
{
    QVector<YamlNode::Entry> others;
    *record = base;
    for (const YamlNode::Entry &entry : entries) {
        if (!follows(entry.key) &&
            !YamlRecord::readColumn(kSubIndexYaml, entry.key, entry.value, record, context))
            others.append(entry);
    }
    const SubIndexData followed = follow(base, *record, defaults);
    record->implementation = followed.implementation;
    record->size = followed.size;
    record->lowLimit = followed.lowLimit;
    record->upLimit = followed.upLimit;
    for (const YamlNode::Entry &entry : entries) {
        if (entry.key.is(YamlKeys::kLimits))
            readLimits(entry.value, record, context);
        else if (follows(entry.key))
            YamlRecord::readColumn(kSubIndexYaml, entry.key, entry.value, record, context);
    }
    record->limitInEds = follow(base, *record, defaults).limitInEds;
    for (const YamlNode::Entry &entry : entries) {
        if (entry.key.is(kSubIndexWords[kLimitInEds].word))
            YamlRecord::readColumn(kSubIndexYaml, entry.key, entry.value, record, context);
    }
    return others;
}

void YamlSubIndex::write(const SubIndexData &record, const SubIndexData &base,
                         const YamlDefaults &defaults, YamlValue *map)
{
    const SubIndexData followed = follow(base, record, defaults);
    for (const int place : kOrder) {
        if (place == kLowLimit)
            writeLimits(record, followed, map);
        else if (place != kUpLimit)
            YamlRecord::writeColumn(kSubIndexYaml, place, record, followed, map);
    }
}

const QStringList &YamlSubIndex::keys()
{
    static const QStringList keys = YamlRecord::words(kSubIndexYaml)
                                    << QString::fromLatin1(YamlKeys::kLimits);
    return keys;
}

bool YamlSubIndex::isEqualBut(const char *const *words, const SubIndexData &one,
                              const SubIndexData &other)
{
    const auto isFree = [words](const char *word) {
        for (const char *const *free = words; *free; ++free) {
            if (qstrcmp(*free, word) == 0)
                return true;
        }
        return false;
    };
    for (int place = 0; place < kCount; ++place) {
        if (!isSame(place, one, other) && !isFree(kSubIndexWords[place].word))
            return false;
    }
    return true;
}
