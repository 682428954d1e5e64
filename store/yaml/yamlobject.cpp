// Reading and writing of single objects.
#include "store/yaml/yamlobject.h"

#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlsubindex.h"
#include "support/accesstype.h"

#include <QRegularExpression>

#include <array>

namespace
{

using CANopen::ObjectCode;
using Entries = QVector<YamlNode::Entry>;

constexpr int kHighestOfArray = 254;
constexpr int kLongestName = 64; ///< characters that a member takes of the array's name

/// These stand before the words of a variable, all others behind them.
constexpr const char *kHeadWords[] = {"name", "code", "type"};

struct Structure {
    YamlNode array;
    YamlNode members;
    YamlNode object;
    Entries others;
};

Structure structureOf(YamlNode map)
{
    Structure result;
    const Entries entries = map.entries();
    for (const YamlNode::Entry &entry : entries) {
        if (entry.key.is(YamlKeys::kArray))
            result.array = entry.value;
        else if (entry.key.is(YamlKeys::kMembers))
            result.members = entry.value;
        else if (entry.key.is(YamlKeys::kObject))
            result.object = entry.value;
        else
            result.others.append(entry);
    }
    return result;
}

Entries readIndex(const Entries &entries, IndexData *data, YamlContext &context)
{
    Entries others;
    for (const YamlNode::Entry &entry : entries) {
        if (!YamlRecord::readColumn(kIndexYaml, entry.key, entry.value, data, context))
            others.append(entry);
    }
    return others;
}

bool isHead(const YamlColumn &column)
{
    for (const char *word : kHeadWords) {
        if (isSameText(column.word, word))
            return true;
    }
    return false;
}

void writeHead(const IndexData &data, const IndexData &base, int array, YamlValue *map)
{
    for (const char *word : kHeadWords) {
        for (int i = 0; i < kIndexYaml.count; ++i) {
            if (isSameText(kIndexWords[i].word, word))
                YamlRecord::writeColumn(kIndexYaml, i, data, base, map);
        }
        if (array > 0 && word == kHeadWords[0])
            map->add(QString::fromLatin1(YamlKeys::kArray), YamlValue::number(array));
    }
}

void writeTail(const IndexData &data, const IndexData &base, YamlValue *map)
{
    for (int i = 0; i < kIndexYaml.count; ++i) {
        if (!isHead(kIndexWords[i]))
            YamlRecord::writeColumn(kIndexYaml, i, data, base, map);
    }
}

void tellUnknown(const Entries &entries, const QString &where, const QStringList &known,
                 YamlContext &context)
{
    for (const YamlNode::Entry &entry : entries)
        context.unknownKey(entry.key, where, known);
}

/// What is left of a member's map.
void tellInMember(const Entries &entries, YamlContext &context)
{
    const QString where = QStringLiteral("a member");
    for (const YamlNode::Entry &entry : entries) {
        if (YamlRecord::find(kIndexYaml, entry.key) >= 0)
            context.misplacedKey(entry.key, where, QStringLiteral("the object"));
        else
            context.unknownKey(entry.key, where, YamlSubIndex::keys());
    }
}

/// What is left of the map of an object with members.
void tellBesideMembers(const Entries &entries, const QStringList &known, YamlContext &context)
{
    static const QStringList ofMember = YamlSubIndex::keys();
    const QString where = QStringLiteral("an object with members");
    for (const YamlNode::Entry &entry : entries) {
        if (ofMember.contains(entry.key.text()) && !known.contains(entry.key.text()))
            context.misplacedKey(entry.key, where, QStringLiteral("its members"));
        else
            context.unknownKey(entry.key, where, known);
    }
}

const QStringList &objectKeys()
{
    static const QStringList keys = YamlRecord::words(kIndexYaml)
                                    << YamlSubIndex::keys() << QString::fromLatin1(YamlKeys::kArray)
                                    << QString::fromLatin1(YamlKeys::kMembers)
                                    << QString::fromLatin1(YamlKeys::kObject);
    return keys;
}

// --- Arrays ---

QString memberName(const QString &name, int number)
{
    int length = qMin(name.size(), kLongestName);
    if (length < name.size() && name.at(length - 1).isHighSurrogate())
        --length;
    const QString end = QLatin1Char(' ') + QString::number(number);
    QString result;
    result.reserve(length + end.size()); // there may be very many of them
    return result.append(name.leftRef(length)).append(end);
}

/// "Alarm 3" for the third member, if the first one is "Alarm 1"; else by the name of the array.
QString memberName(const QString &name, const QString &firstName, int number)
{
    const QString end = QStringLiteral(" 1");
    const QString start = firstName.left(firstName.size() - end.size());
    return memberName(firstName.endsWith(end) && start.size() <= kLongestName ? start : name,
                      number);
}

/// "motor[3]" for the second member, if the first one is "motor[2]".
QString memberVariable(const QString &variable, int number)
{
    static const QRegularExpression element(QStringLiteral("\\A(.*\\[)([0-9]{1,8})(\\])\\z"),
                                            QRegularExpression::DotMatchesEverythingOption);
    if (!variable.endsWith(QLatin1Char(']')))
        return variable;
    const QRegularExpressionMatch match = element.match(variable);
    if (!match.hasMatch())
        return variable;
    return match.captured(1) + QString::number(match.captured(2).toInt() + number - 1) +
           match.captured(3);
}

/// What an array begins with, before its own words: its first member.
SubIndexData baseOfTemplate(const IndexData &data, const YamlDefaults &defaults)
{
    SubIndexData base;
    base.name = memberName(data.name, 1);
    base.dataType = data.dataType;
    return defaults.over(base);
}

/// \a first, what the array's map says, as a member from the second on; \a firstName is the name
/// that the first one has in the end.
SubIndexData memberOf(const IndexData &data, const SubIndexData &first, const QString &firstName,
                      int number)
{
    SubIndexData base = first;
    base.name = memberName(data.name, firstName, number);
    base.varName = memberVariable(first.varName, number);
    return base;
}

/// What the array's map says of its members: all of the first one but what is the object's.
SubIndexData templateOf(const ObjectRecord &object, const YamlDefaults &defaults)
{
    const SubIndexData base = baseOfTemplate(object.data, defaults);
    SubIndexData result = object.subs.at(1);
    result.name = base.name;
    result.dataType = base.dataType;
    result.description = base.description;
    result.category = base.category;
    result.metadata = base.metadata;
    return result;
}

/// Subindices from 0 on without a gap.
bool isArray(const ObjectRecord &object)
{
    if (!object.exists || object.data.objectCode != ObjectCode::Array || object.subs.size() < 2)
        return false;
    const int highest = object.subs.rbegin()->first;
    return highest <= kHighestOfArray && int(object.subs.size()) == highest + 1;
}

void readMember(const YamlContext::Numbered &member, SubIndexData *sub,
                const YamlDefaults &defaults, YamlContext &context)
{
    const SubIndexData base = *sub;
    if (context.isMap(member.value, QStringLiteral("a member is a map")))
        tellInMember(YamlSubIndex::read(member.value.entries(), base, sub, defaults, context),
                     context);
}

/// Subindex 1 is there, as the array's map has it.
void readMembersOfArray(YamlNode members, int highest, ObjectRecord *object,
                        const YamlDefaults &defaults, YamlContext &context)
{
    QVector<YamlContext::Numbered> numbered;
    if (members && context.isMap(members, QStringLiteral("the members of an array are a map")))
        numbered = context.numbered(members, 0, highest, QStringLiteral("member"));
    const SubIndexData first = object->subs.at(1);
    for (const YamlContext::Numbered &member : qAsConst(numbered)) {
        if (member.number == 1)
            readMember(member, &object->subs[1], defaults, context);
    }
    const QString firstName = object->subs.at(1).name;
    for (int number = 2; number <= highest; ++number)
        object->subs[quint8(number)] = memberOf(object->data, first, firstName, number);
    for (const YamlContext::Numbered &member : qAsConst(numbered)) {
        if (member.number != 1)
            readMember(member, &object->subs[quint8(member.number)], defaults, context);
    }
}

void readArray(const Structure &map, ObjectRecord *object, const YamlDefaults &defaults,
               YamlContext &context)
{
    object->data.objectCode = ObjectCode::Array;
    const Entries others = readIndex(map.others, &object->data, context);
    SubIndexData first;
    tellUnknown(YamlSubIndex::read(others, baseOfTemplate(object->data, defaults), &first, defaults,
                                   context),
                QStringLiteral("an array"), objectKeys(), context);
    const auto highest =
        context.number(map.array, 1, kHighestOfArray, QStringLiteral("the length of an array"));
    if (!highest)
        return;
    object->subs[0] = YamlObject::countMember(quint8(*highest), defaults);
    object->subs[1] = first;
    readMembersOfArray(map.members, int(*highest), object, defaults, context);
}

YamlValue writeMembersOfArray(const ObjectRecord &object, const SubIndexData &first,
                              const YamlDefaults &defaults)
{
    YamlValue members = YamlValue::map();
    const QString &firstName = object.subs.at(1).name;
    for (const auto &[number, sub] : object.subs) {
        const SubIndexData base =
            number == 0   ? YamlObject::countMember(object.subs.rbegin()->first, defaults)
            : number == 1 ? first
                          : memberOf(object.data, first, firstName, number);
        YamlValue member = YamlValue::map();
        YamlSubIndex::write(sub, base, defaults, &member);
        if (!member.isEmpty())
            members.add(QString::number(number), member);
    }
    return members;
}

YamlValue writeArray(const ObjectRecord &object, const YamlDefaults &defaults)
{
    const int highest = object.subs.rbegin()->first;
    const SubIndexData first = templateOf(object, defaults);
    IndexData base;
    base.objectCode = ObjectCode::Array;
    YamlValue map = YamlValue::map();
    writeHead(object.data, base, highest, &map);
    YamlSubIndex::write(first, baseOfTemplate(object.data, defaults), defaults, &map);
    writeTail(object.data, base, &map);
    const YamlValue members = writeMembersOfArray(object, first, defaults);
    if (!members.isEmpty())
        map.add(QString::fromLatin1(YamlKeys::kMembers), members);
    return map;
}

// --- Objects with members ---

bool hasCount(const ObjectRecord &object)
{
    return object.exists && (object.data.objectCode == ObjectCode::Record ||
                             object.data.objectCode == ObjectCode::Array);
}

/// Subindex 0 counts the others.
SubIndexData baseOfMember(const ObjectRecord &object, quint8 number, const YamlDefaults &defaults)
{
    if (number > 0 || !hasCount(object))
        return defaults.over(SubIndexData());
    return YamlObject::countMember(object.subs.empty() ? 0 : object.subs.rbegin()->first, defaults);
}

bool isNone(YamlNode node)
{
    return node.isScalar() && node.is(YamlKeys::kNone);
}

void readMembers(YamlNode members, ObjectRecord *object, const YamlDefaults &defaults,
                 YamlContext &context)
{
    if (!members || !context.isMap(members, QStringLiteral("the members of an object are a map")))
        return;
    const auto numbered = context.numbered(members, 0, 0xFF, QStringLiteral("member"));
    bool hasFirst = hasCount(*object);
    YamlContext::Numbered first;
    for (const YamlContext::Numbered &member : numbered) {
        SubIndexData *sub = member.number > 0 ? &object->subs[quint8(member.number)] : nullptr;
        if (sub) {
            *sub = defaults.over(SubIndexData());
            readMember(member, sub, defaults, context);
        } else if (hasCount(*object) && isNone(member.value)) {
            hasFirst = false;
        } else {
            first = member;
        }
    }
    // The base of the first one counts the others.
    const SubIndexData base = baseOfMember(*object, 0, defaults);
    if (first.value || hasFirst)
        object->subs[0] = base;
    if (first.value)
        readMember(first, &object->subs[0], defaults, context);
}

void readRecord(const Structure &map, ObjectRecord *object, const YamlDefaults &defaults,
                YamlContext &context)
{
    object->data.objectCode = ObjectCode::Record;
    static const QStringList known{QString::fromLatin1(YamlKeys::kMembers)};
    static const QStringList knownOfObject =
        known + YamlRecord::words(kIndexYaml) + QStringList(QString::fromLatin1(YamlKeys::kArray));
    Entries others = map.others;
    if (map.object) {
        object->exists = false;
        object->data = IndexData();
        if (!isNone(map.object))
            context.wrongValue(map.object, QStringLiteral("object is none, if there is none"));
    } else {
        others = readIndex(others, &object->data, context);
    }
    tellBesideMembers(others, map.object ? known : knownOfObject, context);
    readMembers(map.members, object, defaults, context);
}

YamlValue writeMembers(const ObjectRecord &object, const YamlDefaults &defaults)
{
    YamlValue members = YamlValue::map();
    if (hasCount(object) && object.subs.count(0) == 0)
        members.add(QStringLiteral("0"), YamlValue::text(QString::fromLatin1(YamlKeys::kNone)));
    for (const auto &[number, sub] : object.subs) {
        YamlValue member = YamlValue::map();
        YamlSubIndex::write(sub, baseOfMember(object, number, defaults), defaults, &member);
        if (number > 0 || !hasCount(object) || !member.isEmpty())
            members.add(QString::number(number), member);
    }
    return members;
}

YamlValue writeRecord(const ObjectRecord &object, const YamlDefaults &defaults)
{
    IndexData base;
    base.objectCode = ObjectCode::Record;
    YamlValue map = YamlValue::map();
    if (object.exists) {
        writeHead(object.data, base, 0, &map);
        writeTail(object.data, base, &map);
    } else {
        map.add(QString::fromLatin1(YamlKeys::kObject),
                YamlValue::text(QString::fromLatin1(YamlKeys::kNone)));
    }
    map.add(QString::fromLatin1(YamlKeys::kMembers), writeMembers(object, defaults));
    return map;
}

ObjectRecord newVariable(const YamlDefaults &defaults)
{
    ObjectRecord object;
    SubIndexData sub;
    sub.name = object.data.name;
    sub.dataType = object.data.dataType;
    object.subs[0] = defaults.over(sub);
    return object;
}

/// The only subindex has the name and the type that the map says, and the limits of that type.
SubIndexData baseOfVariable(const IndexData &data, const ObjectRecord &base,
                            const YamlDefaults &defaults)
{
    SubIndexData sub = base.subs.at(0);
    sub.name = data.name;
    if (sub.dataType != data.dataType)
        defaults.followType(&sub, data.dataType);
    sub.dataType = data.dataType;
    return sub;
}

} // namespace

SubIndexData YamlObject::countMember(quint8 highest, const YamlDefaults &defaults)
{
    SubIndexData sub;
    sub.name = QStringLiteral("Highest subindex supported");
    sub.accessType = AccessType::kConst;
    sub.implementation = Implementation::kManagedConst;
    sub.defaultValue = QString::number(highest);
    return defaults.over(sub);
}

bool YamlObject::isVariable(const ObjectRecord &object)
{
    if (!object.exists || object.subs.size() != 1 || object.subs.begin()->first != 0)
        return false;
    const SubIndexData &sub = object.subs.begin()->second;
    const SubIndexData base;
    return sub.name == object.data.name && sub.dataType == object.data.dataType &&
           sub.description == base.description && sub.category == base.category &&
           sub.metadata == base.metadata;
}

void YamlObject::readVariable(const Entries &entries, const ObjectRecord &base,
                              const QString &where, ObjectRecord *object,
                              const YamlDefaults &defaults, YamlContext &context)
{
    *object = base;
    const Entries others = readIndex(entries, &object->data, context);
    const SubIndexData sub = baseOfVariable(object->data, base, defaults);
    tellUnknown(YamlSubIndex::read(others, sub, &object->subs[0], defaults, context), where,
                objectKeys(), context);
}

void YamlObject::writeVariable(const ObjectRecord &object, const ObjectRecord &base,
                               const YamlDefaults &defaults, YamlValue *map)
{
    writeHead(object.data, base.data, 0, map);
    const SubIndexData sub = baseOfVariable(object.data, base, defaults);
    YamlSubIndex::write(object.subs.at(0), sub, defaults, map);
    writeTail(object.data, base.data, map);
}

void YamlObject::read(YamlNode node, ObjectRecord *object, const YamlDefaults &defaults,
                      YamlContext &context)
{
    if (!context.isMap(node, QStringLiteral("an object is a map")))
        return;
    const Structure map = structureOf(node);
    if (map.array)
        readArray(map, object, defaults, context);
    else if (map.members || map.object)
        readRecord(map, object, defaults, context);
    else
        readVariable(map.others, newVariable(defaults), QStringLiteral("an object"), object,
                     defaults, context);
}

YamlValue YamlObject::write(const ObjectRecord &object, const YamlDefaults &defaults)
{
    if (isArray(object))
        return writeArray(object, defaults);
    if (!isVariable(object))
        return writeRecord(object, defaults);
    YamlValue map = YamlValue::map();
    writeVariable(object, newVariable(defaults), defaults, &map);
    return map;
}
