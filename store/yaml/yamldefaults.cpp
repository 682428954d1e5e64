// Reading, writing and choosing what the subindices of a line have in common.
#include "store/yaml/yamldefaults.h"

#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlrecord.h"
#include "support/accesstype.h"
#include "support/cohelper.h"

namespace
{

constexpr char kAllowedAccess[] = "allowed-access";
constexpr char kImplementation[] = "implementation";

const YamlColumn &columnOf(const char *word)
{
    for (const YamlColumn &column : kSubIndexWords) {
        if (isSameText(column.word, word))
            return column;
    }
    return *kSubIndexWords;
}

bool isCount(quint8 number, const SubIndexData &sub, const ObjectRecord &object)
{
    const bool isConstant =
        sub.accessType == AccessType::kConst || sub.accessType == AccessType::kReadOnly;
    return number == 0 && isConstant && object.data.objectCode != CANopen::ObjectCode::Var;
}

} // namespace

YamlDefaults YamlDefaults::of(const std::map<quint16, ObjectRecord> &objects)
{
    YamlDefaults result;
    result.chooseLimits(objects);
    int subs = 0;
    int withoutAccess = 0;
    int counts = 0;
    int variableCounts = 0;
    for (const auto &[index, object] : objects) {
        for (const auto &[number, sub] : object.subs) {
            ++subs;
            withoutAccess += int(sub.allowedAccessTypes.isEmpty());
            if (!isCount(number, sub, object))
                continue;
            ++counts;
            variableCounts += int(sub.implementation == Implementation::kManagedVariable);
        }
    }
    if (withoutAccess * 2 > subs)
        result.allowedAccess = QString();
    if (variableCounts * 2 > counts)
        result.implementation = Implementation::kManagedVariable;
    return result;
}

void YamlDefaults::chooseLimits(const std::map<quint16, ObjectRecord> &objects)
{
    constexpr Limits kCandidates[] = {Limits::Zero, Limits::None, Limits::Type};
    int most = 0;
    Limits best = Limits::Zero;
    for (const Limits candidate : kCandidates) {
        limits = candidate;
        int fitting = 0;
        for (const auto &[index, object] : objects) {
            for (const auto &[number, sub] : object.subs) {
                SubIndexData base;
                setLimits(&base, sub.dataType);
                fitting += int(sub.lowLimit == base.lowLimit && sub.upLimit == base.upLimit);
            }
        }
        if (fitting > most)
            best = candidate;
        most = qMax(most, fitting);
    }
    limits = best;
}

void YamlDefaults::setLimits(SubIndexData *base, quint16 type) const
{
    switch (limits) {
    case Limits::Zero:
        break;
    case Limits::None:
        base->lowLimit.clear();
        base->upLimit.clear();
        break;
    case Limits::Type:
        COHelper::getDefaultLimits(static_cast<CAN::CANopenDataType>(type), base->lowLimit,
                                   base->upLimit);
        break;
    case Limits::Given:
        base->lowLimit = lowLimit;
        base->upLimit = upLimit;
        break;
    }
}

void YamlDefaults::followType(SubIndexData *base, quint16 type) const
{
    if (limits == Limits::Type)
        setLimits(base, type);
}

SubIndexData YamlDefaults::over(SubIndexData base) const
{
    setLimits(&base, base.dataType);
    base.allowedAccessTypes = allowedAccess.value_or(base.allowedAccessTypes);
    base.implementation = implementation.value_or(base.implementation);
    return base;
}

quint8 YamlDefaults::implementationOf(const SubIndexData &record) const
{
    if (!record.varName.isEmpty())
        return Implementation::kApplicationVariable;
    const bool isConstant = record.accessType == AccessType::kConst;
    return implementation.value_or(isConstant ? Implementation::kManagedConst
                                              : Implementation::kManagedVariable);
}

void YamlDefaults::readLimits(YamlNode value, YamlContext &context)
{
    const QVector<YamlNode> both = value.items();
    if (value.isScalar() && value.is(YamlKeys::kOfType)) {
        limits = Limits::Type;
    } else if (both.size() != 2) {
        context.wrongValue(value,
                           QStringLiteral("limits are \"type\" for the range of the type, or "
                                          "a list of the least and the greatest value"));
    } else {
        limits = Limits::Given;
        lowLimit = context.text(both.first(), QStringLiteral("the low limit")).value_or(QString());
        upLimit = context.text(both.last(), QStringLiteral("the high limit")).value_or(QString());
    }
}

void YamlDefaults::read(YamlNode map, YamlContext &context)
{
    if (!context.isMap(map, QStringLiteral("the defaults of objects are a map")))
        return;
    const QVector<YamlNode::Entry> entries = map.entries();
    for (const YamlNode::Entry &entry : entries) {
        if (entry.key.is(YamlKeys::kLimits)) {
            readLimits(entry.value, context);
        } else if (entry.key.is(kAllowedAccess)) {
            allowedAccess = context.text(entry.value, QLatin1String(kAllowedAccess));
        } else if (entry.key.is(kImplementation)) {
            const auto cell =
                YamlCells::fromYaml(columnOf(kImplementation), entry.value, {0, 0xFF}, context);
            implementation = quint8(cell.value_or(QVariant(0)).toUInt());
        } else {
            context.unknownKey(entry.key, QLatin1String(YamlKeys::kObjectDefaults), keys());
        }
    }
}

YamlValue YamlDefaults::write() const
{
    YamlValue map = YamlValue::map();
    const QString key = QLatin1String(YamlKeys::kLimits);
    if (limits == Limits::Type)
        map.add(key, YamlValue::text(QLatin1String(YamlKeys::kOfType)));
    else if (limits != Limits::Zero) // of them, only none is ever chosen
        map.add(key, YamlValue::list()
                         << YamlValue::written(lowLimit) << YamlValue::written(upLimit));
    if (allowedAccess)
        map.add(QLatin1String(kAllowedAccess), YamlValue::text(*allowedAccess));
    if (implementation)
        map.add(QLatin1String(kImplementation),
                YamlCells::toYaml(columnOf(kImplementation), QVariant(*implementation)));
    return map;
}

QStringList YamlDefaults::keys()
{
    return {QLatin1String(YamlKeys::kLimits), QLatin1String(kAllowedAccess),
            QLatin1String(kImplementation)};
}
