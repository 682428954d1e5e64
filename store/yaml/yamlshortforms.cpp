// Reading and writing of short forms.
#include "store/yaml/yamlshortforms.h"

#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlobject.h"
#include "store/yaml/yamlsubindex.h"

namespace
{

using Entries = QVector<YamlNode::Entry>;
using Objects = std::map<quint16, ObjectRecord>;
using Shape = YamlStandardShape;

/// Words that may stand beside a default value without the object being written in full.
constexpr const char *kFreeWords[] = {"default", "variable", "implementation", "description",
                                      nullptr};
/// Members of arrays have names of their own as well.
constexpr const char *kFreeWordsOfMember[] = {"name",           "default",     "variable",
                                              "implementation", "description", nullptr};
constexpr const char *kScalarWords[] = {"default", nullptr};

QString mapWanted(const QString &what)
{
    return what + QStringLiteral(" is a map");
}

const YamlStandardRow *findRow(const YamlStandardForm &form, YamlNode key)
{
    for (const YamlStandardRow &row : form) {
        if (row.key && key.is(row.key))
            return &row;
    }
    return nullptr;
}

QStringList keysOf(const YamlStandardForm &form)
{
    QStringList keys;
    for (const YamlStandardRow &row : form) {
        if (row.key)
            keys << QString::fromLatin1(row.key);
    }
    if (form.shape != Shape::Variables)
        keys << QString::fromLatin1(YamlKeys::kAbout);
    return form.shape == Shape::Pdos ? keys + YamlMapping::keys() : keys;
}

// --- Reading ---

/// Anything else has to be said as the default value of a map.
bool isPlainValue(const QString &text, const SubIndexData &sub)
{
    return sub.dataType == YamlStandard::kText || YamlNumber::isValue(text);
}

/// A default value, or a map of words.
void readValue(YamlNode node, const QString &what, SubIndexData *sub, const YamlDefaults &defaults,
               YamlContext &context)
{
    SubIndexData base = *sub;
    if (node.isMap()) {
        const Entries others = YamlSubIndex::read(node.entries(), base, sub, defaults, context);
        for (const YamlNode::Entry &entry : others)
            context.unknownKey(entry.key, what, YamlSubIndex::keys());
    } else if (const auto text = context.text(node, what)) {
        if (!isPlainValue(*text, base))
            context.wrongValue(
                node, QStringLiteral("%1 is a number, or \"$NODEID+\" and a number, not %2")
                          .arg(what, YamlContext::quoted(*text)));
        sub->defaultValue = *text;
        *sub = YamlSubIndex::follow(*sub, *sub, defaults);
    }
}

void setCount(ObjectRecord *object, const YamlDefaults &defaults)
{
    const quint8 highest = object->subs.empty() ? 0 : object->subs.rbegin()->first;
    object->subs[0] = YamlObject::countMember(highest, defaults);
}

// --- Writing ---

/// A base with which the default value is written even if it is the usual one: it is what the form
/// is about.
SubIndexData withoutValue(SubIndexData base, const SubIndexData &sub)
{
    base.defaultValue = sub.defaultValue + QLatin1Char('?');
    return base;
}

/// None if a column that is not free differs from the base.
std::optional<YamlValue> valueOf(const SubIndexData &sub, const SubIndexData &base,
                                 const char *const *freeWords, const YamlDefaults &defaults)
{
    const SubIndexData followed = YamlSubIndex::follow(base, sub, defaults);
    if (YamlSubIndex::isEqualBut(kScalarWords, sub, followed) &&
        isPlainValue(sub.defaultValue, base))
        return YamlValue::written(sub.defaultValue);
    if (!YamlSubIndex::isEqualBut(freeWords, sub, followed))
        return std::nullopt;
    YamlValue map = YamlValue::map();
    YamlSubIndex::write(sub, withoutValue(base, sub), defaults, &map);
    return map;
}

/// Does it hold what the form says of it, but for its description?
bool isObject(const ObjectRecord &object, IndexData base)
{
    base.description = object.data.description;
    return object.exists && YamlRecord::isEqual(kIndexYaml, object.data, base);
}

std::optional<YamlValue> variableOf(const Objects &objects, const YamlStandardRow &row,
                                    const YamlDefaults &defaults)
{
    const auto found = objects.find(row.index);
    if (found == objects.end())
        return std::nullopt;
    ObjectRecord base = YamlStandard::variableOf(row);
    base.subs[0] = defaults.over(base.subs[0]);
    const ObjectRecord &object = found->second;
    if (!isObject(object, base.data) || !YamlObject::isVariable(object))
        return std::nullopt;
    const auto value = valueOf(object.subs.at(0), base.subs.at(0), kFreeWords, defaults);
    if (!value || object.data.description.isEmpty())
        return value;
    base.subs[0] = withoutValue(base.subs[0], object.subs.at(0));
    YamlValue map = YamlValue::map();
    YamlObject::writeVariable(object, base, defaults, &map);
    return map;
}

const YamlStandardRow *rowOf(const YamlStandardForm &form, quint8 sub)
{
    if (form.shape == Shape::Members)
        return sub <= form.highestNumber() ? form.rows : nullptr;
    for (const YamlStandardRow &row : form) {
        if (row.sub == sub)
            return &row;
    }
    return nullptr;
}

bool hasAllThatMustBe(const ObjectRecord &object, const YamlStandardForm &form)
{
    for (const YamlStandardRow &row : form) {
        if (!row.isOptional && object.subs.count(row.sub) == 0)
            return false;
    }
    return true;
}

bool hasCount(const ObjectRecord &object, const YamlDefaults &defaults)
{
    const auto first = object.subs.find(0);
    return first != object.subs.end() &&
           YamlRecord::isEqual(kSubIndexYaml, first->second,
                               YamlObject::countMember(object.subs.rbegin()->first, defaults));
}

/// A record, or an array whose members have numbers for keys.
std::optional<YamlValue> recordOf(const ObjectRecord &object, const YamlStandardForm &form,
                                  int number, const YamlDefaults &defaults)
{
    const bool isArray = form.shape == Shape::Members;
    if (!isObject(object, YamlStandard::objectOf(form, number)) || !hasCount(object, defaults) ||
        !hasAllThatMustBe(object, form))
        return std::nullopt;
    YamlValue map = YamlValue::map();
    if (!object.data.description.isEmpty())
        map.add(QString::fromLatin1(YamlKeys::kAbout), YamlValue::text(object.data.description));
    for (auto sub = std::next(object.subs.begin()); sub != object.subs.end(); ++sub) {
        const YamlStandardRow *row = rowOf(form, sub->first);
        if (!row)
            return std::nullopt;
        const SubIndexData base =
            defaults.over(YamlStandard::subIndexOf(*row, isArray ? sub->first : number));
        const auto value =
            valueOf(sub->second, base, isArray ? kFreeWordsOfMember : kFreeWords, defaults);
        if (!value)
            return std::nullopt;
        map.add(isArray ? QString::number(sub->first) : QString::fromLatin1(row->key), *value);
    }
    return map;
}

/// Writes forms, and notes the objects that are in them.
class Writing
{
public:
    Writing(const Objects &all, const YamlDefaults &ofLine, YamlWriter &target)
        : objects(all), defaults(ofLine), writer(target)
    {
    }

    void write(const YamlStandardForm &form)
    {
        switch (form.shape) {
        case Shape::Value:
        case Shape::Presence:
            return writeValue(form);
        case Shape::Variables:
            return writeVariables(form);
        case Shape::Record:
        case Shape::Members:
            return writeRecord(form);
        case Shape::Records:
        case Shape::Pdos:
            return writeRecords(form);
        }
    }

    QSet<quint16> isWritten;

private:
    void writeValue(const YamlStandardForm &form)
    {
        if (const auto value = variableOf(objects, *form.rows, defaults)) {
            const bool isPresence = form.shape == Shape::Presence && isUsual(*form.rows);
            writer.value(QString::fromLatin1(form.word),
                         isPresence ? YamlValue::flag(true) : *value);
            isWritten.insert(form.rows->index);
        }
    }

    /// With the default value that the object has anyway, and nothing said beside it?
    bool isUsual(const YamlStandardRow &row) const
    {
        const ObjectRecord &object = objects.at(row.index);
        const SubIndexData usual = defaults.over(YamlStandard::subIndexOf(row, 1));
        return object.data.description.isEmpty() &&
               YamlRecord::isEqual(kSubIndexYaml, object.subs.at(0), usual);
    }

    void writeVariables(const YamlStandardForm &form)
    {
        YamlValue map = YamlValue::map();
        for (const YamlStandardRow &row : form) {
            if (const auto value = variableOf(objects, row, defaults)) {
                map.add(QString::fromLatin1(row.key), *value);
                isWritten.insert(row.index);
            }
        }
        if (!map.isEmpty())
            writer.value(QString::fromLatin1(form.word), map);
    }

    void writeRecord(const YamlStandardForm &form)
    {
        const auto object = objects.find(form.objects.first);
        if (object == objects.end())
            return;
        if (const auto map = recordOf(object->second, form, 1, defaults)) {
            writer.value(QString::fromLatin1(form.word), *map);
            isWritten.insert(object->first);
        }
    }

    void writeRecords(const YamlStandardForm &form)
    {
        bool isOpen = false;
        const auto end = objects.upper_bound(form.objects.last);
        for (auto object = objects.lower_bound(form.objects.first); object != end; ++object) {
            const int number = form.objects.numberOf(object->first);
            auto map = recordOf(object->second, form, number, defaults);
            if (!map || (form.shape == Shape::Pdos && !addMapping(form, number, &*map)))
                continue;
            if (!isOpen)
                writer.begin(QString::fromLatin1(form.word));
            isOpen = true;
            writer.value(QString::number(number), *map);
            isWritten.insert(object->first);
        }
        if (isOpen)
            writer.end();
    }

    /// Both objects of a PDO are short, or none.
    bool addMapping(const YamlStandardForm &form, int number, YamlValue *map)
    {
        const quint16 index =
            form.objects.at(quint16(number)) + ObjectRanges::kFromPdoParameterToMapping;
        const auto object = objects.find(index);
        if (object == objects.end() ||
            !YamlMapping::write(object->second, form, number, objects, defaults, map))
            return false;
        isWritten.insert(index);
        return true;
    }

    const Objects &objects;
    const YamlDefaults &defaults;
    YamlWriter &writer;
};

} // namespace

bool YamlShortForms::read(const YamlNode::Entry &entry)
{
    for (const YamlStandardForm &form : YamlStandard::kForms) {
        if (!entry.key.is(form.word))
            continue;
        const QString word = QString::fromLatin1(form.word);
        if (form.shape == Shape::Presence && entry.value.isPlain() && entry.value.is("true"))
            addUsual(*form.rows, entry.key);
        else if (form.shape == Shape::Value || form.shape == Shape::Presence)
            readVariable(*form.rows, entry);
        else if (!context.isMap(entry.value, mapWanted(word)))
            return true;
        else if (form.shape == Shape::Variables)
            readVariables(form, entry);
        else if (form.shape == Shape::Record)
            readRecord(form, 1, entry);
        else if (form.shape == Shape::Members)
            readMembers(form, entry);
        else
            readRecords(form, entry);
        return true;
    }
    return false;
}

void YamlShortForms::addUsual(const YamlStandardRow &row, YamlNode key)
{
    ObjectRecord object = YamlStandard::variableOf(row);
    object.subs[0] = defaults.over(object.subs[0]);
    sink->add(row.index, key, std::move(object));
}

void YamlShortForms::readVariable(const YamlStandardRow &row, const YamlNode::Entry &entry)
{
    ObjectRecord object = YamlStandard::variableOf(row);
    object.subs[0] = defaults.over(object.subs[0]);
    if (entry.value.isMap()) {
        const ObjectRecord base = object;
        YamlObject::readVariable(entry.value.entries(), base, entry.key.text(), &object, defaults,
                                 context);
    } else {
        readValue(entry.value, entry.key.text(), &object.subs[0], defaults, context);
    }
    sink->add(row.index, entry.key, std::move(object));
}

void YamlShortForms::readVariables(const YamlStandardForm &form, const YamlNode::Entry &entry)
{
    const Entries entries = entry.value.entries();
    for (const YamlNode::Entry &variable : entries) {
        if (const YamlStandardRow *row = findRow(form, variable.key))
            readVariable(*row, variable);
        else
            context.unknownKey(variable.key, QString::fromLatin1(form.word), keysOf(form));
    }
}

Entries YamlShortForms::readMapping(const YamlStandardForm &form, int number,
                                    const YamlNode::Entry &entry)
{
    YamlMapping::Mapping mapping;
    Entries others =
        YamlMapping::read(entry.value.entries(), form, number, &mapping, defaults, context);
    const quint16 index =
        form.objects.at(quint16(number)) + ObjectRanges::kFromPdoParameterToMapping;
    for (const YamlMapping::Item &item : mapping.items)
        items.emplace_back(index, item);
    sink->add(index, entry.key, std::move(mapping.object));
    return others;
}

void YamlShortForms::readRecord(const YamlStandardForm &form, int number,
                                const YamlNode::Entry &entry)
{
    if (!context.isMap(entry.value, mapWanted(QString::fromLatin1(form.word))))
        return;
    ObjectRecord object;
    object.data = YamlStandard::objectOf(form, number);
    for (const YamlStandardRow &row : form) {
        if (!row.isOptional)
            object.subs[row.sub] = defaults.over(YamlStandard::subIndexOf(row, number));
    }
    const Entries entries =
        form.shape == Shape::Pdos ? readMapping(form, number, entry) : entry.value.entries();
    for (const YamlNode::Entry &value : entries) {
        if (const YamlStandardRow *row = findRow(form, value.key)) {
            object.subs[row->sub] = defaults.over(YamlStandard::subIndexOf(*row, number));
            readValue(value.value, value.key.text(), &object.subs[row->sub], defaults, context);
        } else if (!value.key.is(YamlKeys::kAbout)) {
            context.unknownKey(value.key, QString::fromLatin1(form.word), keysOf(form));
        } else if (const auto text = context.text(value.value, value.key.text())) {
            object.data.description = *text;
        }
    }
    setCount(&object, defaults);
    sink->add(form.objects.at(quint16(number)), entry.key, std::move(object));
}

void YamlShortForms::readRecords(const YamlStandardForm &form, const YamlNode::Entry &entry)
{
    const auto records =
        context.numbered(entry.value, 1, form.highestNumber(), QString::fromLatin1(form.word));
    for (const YamlContext::Numbered &record : records) {
        if (context.isOver())
            break;
        readRecord(form, int(record.number), {record.key, record.value});
    }
}

void YamlShortForms::readMembers(const YamlStandardForm &form, const YamlNode::Entry &entry)
{
    ObjectRecord object;
    object.data = YamlStandard::objectOf(form, 1);
    Entries numbers;
    const Entries entries = entry.value.entries();
    for (const YamlNode::Entry &member : entries) {
        if (!member.key.is(YamlKeys::kAbout))
            numbers.append(member);
        else if (const auto text = context.text(member.value, member.key.text()))
            object.data.description = *text;
    }
    const QString word = QString::fromLatin1(form.word);
    const auto members = context.numbered(numbers, 1, form.highestNumber(), word);
    for (const YamlContext::Numbered &member : members) {
        SubIndexData &sub = object.subs[quint8(member.number)];
        sub = defaults.over(YamlStandard::subIndexOf(*form.rows, int(member.number)));
        readValue(member.value, word, &sub, defaults, context);
    }
    setCount(&object, defaults);
    sink->add(form.objects.first, entry.key, std::move(object));
}

void YamlShortForms::finish()
{
    for (const auto &[index, item] : items)
        sink->setDefault(index, item.place, YamlMapping::valueOf(item, sink->all()));
}

QSet<quint16> YamlShortForms::write(const Objects &objects, const YamlDefaults &defaults,
                                    YamlWriter &writer)
{
    Writing writing(objects, defaults, writer);
    for (const YamlStandardForm &form : YamlStandard::kForms)
        writing.write(form);
    return writing.isWritten;
}

QStringList YamlShortForms::keys()
{
    QStringList result;
    for (const YamlStandardForm &form : YamlStandard::kForms)
        result << QString::fromLatin1(form.word);
    return result;
}
