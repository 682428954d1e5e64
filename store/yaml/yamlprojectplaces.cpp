// Places in the YAML form of a project.
#include "store/yaml/yamlprojectplaces.h"

#include "formats/yamlreader.h"
#include "store/yaml/yamlcolumns.h"
#include "store/yaml/yamlcontext.h"
#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlsettings.h"
#include "store/yaml/yamlstandard.h"

#include <optional>
#include <utility>

namespace
{

using Entry = YamlNode::Entry;

std::optional<qint64> numberOf(YamlNode node)
{
    return YamlNumber::parse(node.text());
}

/// A value that is not a map or list may be where an alias leads to.
int lineOfEntry(const Entry &entry)
{
    const bool isAtValue = entry.value.isScalar() && !entry.value.isMissing();
    return (isAtValue ? entry.value : entry.key).place().line;
}

/// An empty one if there is no such key. One that is a number may be spelled in any way.
Entry childOf(YamlNode map, const QString &key)
{
    const auto number = YamlNumber::parse(key);
    const QVector<Entry> entries = map.entries();
    for (const Entry &entry : entries) {
        if (entry.key.text() == key || (number && numberOf(entry.key) == number))
            return entry;
    }
    return {};
}

Entry childOf(YamlNode map, const char *key)
{
    return childOf(map, QString::fromLatin1(key));
}

/// The line of what \a map says of a column; 0 if it says nothing.
template <class Record>
int lineOfColumn(YamlNode map, const YamlTable<Record> &table, const QString &column)
{
    for (int i = 0; i < table.count && !column.isEmpty(); ++i) {
        if (column != QLatin1String(table.words[i].column) || !table.words[i].word)
            continue;
        if (const Entry entry = childOf(map, table.words[i].word); entry.key)
            return lineOfEntry(entry);
    }
    const bool isLimit = column == QLatin1String("lowlimit") || column == QLatin1String("uplimit");
    const Entry limits = isLimit ? childOf(map, YamlKeys::kLimits) : Entry();
    return limits.key ? lineOfEntry(limits) : 0;
}

int lineInMember(const Entry &member, const QString &column)
{
    const int found = lineOfColumn(member.value, kSubIndexYaml, column);
    return found ? found : lineOfEntry(member);
}

/// An object says all of its only subindex, and of an array what its members have in common.
bool holdsColumnsOf(YamlNode object, int subindex)
{
    return childOf(object, YamlKeys::kArray).key ? subindex > 0
                                                 : !childOf(object, YamlKeys::kMembers).key;
}

int lineInObject(const Entry &object, const ProjectPlace &place)
{
    const YamlNode members = childOf(object.value, YamlKeys::kMembers).value;
    const Entry member = childOf(members, QString::number(place.subindex));
    int found = 0;
    if (place.subindex >= 0 && member.key)
        found = lineInMember(member, place.column);
    else if (place.subindex >= 0 && holdsColumnsOf(object.value, place.subindex))
        found = lineOfColumn(object.value, kSubIndexYaml, place.column);
    else if (place.subindex < 0)
        found = lineOfColumn(object.value, kIndexYaml, place.column);
    return found ? found : object.key.place().line;
}

/// As far as the keys lead; 0 if not even the first one is there.
int lineOfKeys(YamlNode map, const QStringList &keys, const QString &column)
{
    int found = 0;
    YamlNode node = map;
    for (const QString &key : keys) {
        if (node.isList()) {
            node = node.items().value(key.toInt());
            return node ? node.place().line : found;
        }
        const Entry entry = childOf(node, key);
        if (!entry.key)
            return found;
        found = lineOfEntry(entry);
        node = entry.value;
    }
    const int ofColumn = lineOfColumn(node, kSubIndexYaml, column);
    return ofColumn ? ofColumn : found;
}

/// Where a frame's list has the signal; an empty node if it does not.
YamlNode signalOf(YamlNode list, int number)
{
    qint64 next = 1; // the number of an element that has no own
    const QVector<YamlNode> items = list.items();
    for (const YamlNode &item : items) {
        for (const char *word : {"spn", "number"}) {
            if (const auto given = numberOf(childOf(item, word).value))
                next = *given;
        }
        if (next == number)
            return item;
        ++next;
    }
    return {};
}

int lineOfSignal(YamlNode frame, const ProjectPlace &place)
{
    for (const char *key : {YamlKeys::kSignals, YamlKeys::kElements}) {
        const YamlNode signal = signalOf(childOf(frame, key).value, place.signal);
        if (!signal)
            continue;
        int found = lineOfColumn(signal, kSpnYaml, place.column);
        if (!found)
            found = lineOfColumn(signal, kDataElementYaml, place.column);
        return found ? found : signal.place().line;
    }
    return 0;
}

int lineInFrame(const Entry &entry, YamlNode frame, const ProjectPlace &place)
{
    if (place.signal >= 0)
        return lineOfSignal(frame, place);
    int found = lineOfColumn(frame, kPgnYaml, place.column);
    if (!found)
        found = lineOfColumn(frame, kCanIdYaml, place.column);
    return found ? found : entry.key.place().line;
}

} // namespace

int YamlProjectPlaces::lineOf(const ProjectPlace &place)
{
    if (!isRead)
        read();
    Line *line = lineAt(place.line);
    int found = place.setting.isEmpty() ? 0 : lineOfSetting(place);
    if (!found && line && place.index >= 0)
        found = lineOfObject(*line, place);
    if (!found && line && place.group >= 0)
        found = lineOfFrame(*line, place);
    if (!found && !place.setting.isEmpty())
        found = lineOfStore(place);
    if (!found && line)
        found = line->entry.key.place().line;
    if (!found && place.line >= 0)
        found = childOf(document.root(), YamlKeys::kLines).key.place().line;
    return found;
}

void YamlProjectPlaces::read()
{
    isRead = true;
    YamlProblems problems(fileName); // nobody is told, for the project was opened from this file
    if (!YamlReader::readFile(fileName, &document, &problems))
        document = YamlDocument();
    const QVector<Entry> entries = childOf(document.root(), YamlKeys::kLines).value.entries();
    for (const Entry &entry : entries) {
        if (const auto number = numberOf(entry.key))
            lines[*number].entry = entry;
    }
}

YamlProjectPlaces::Line *YamlProjectPlaces::lineAt(int number)
{
    const auto found = lines.find(number);
    if (found == lines.end())
        return nullptr;
    if (!found->isIndexed)
        index(*found);
    return &*found;
}

void YamlProjectPlaces::index(Line &line)
{
    line.isIndexed = true;
    const QVector<Entry> objects = childOf(line.entry.value, YamlKeys::kObjects).value.entries();
    for (const Entry &object : objects) {
        if (const auto number = numberOf(object.key))
            line.objects.insert(*number, object);
    }
    for (const char *key : {YamlKeys::kGroups, YamlKeys::kFrames}) {
        const QVector<Entry> directions = childOf(line.entry.value, key).value.entries();
        for (const Entry &direction : directions) {
            const QVector<Entry> frames = direction.value.entries();
            for (const Entry &frame : frames) {
                if (const auto number = numberOf(frame.key))
                    line.frames.insert(*number, frame);
            }
        }
    }
}

int YamlProjectPlaces::lineOfSetting(const ProjectPlace &place) const
{
    return YamlSettings::placeOf(document.root(), place.store, place.setting, place.line).line;
}

int YamlProjectPlaces::lineOfStore(const ProjectPlace &place) const
{
    static constexpr std::pair<const char *, const char *> kStores[] = {
        {"DescriptionSettings", YamlKeys::kDescription},
        {"GeneralSettings", YamlKeys::kSettings},
        {"J1939Settings", YamlKeys::kJ1939},
        {"MiscSettings", YamlKeys::kMisc}};
    if (place.line >= 0 && !YamlSettings::wordOfLineKey(place.setting).isEmpty())
        return 0; // it belongs into the line
    for (const auto &[store, key] : kStores) {
        if (place.store == QLatin1String(store))
            return childOf(document.root(), key).key.place().line;
    }
    return 0;
}

int YamlProjectPlaces::lineOfObject(const Line &line, const ProjectPlace &place)
{
    const auto object = line.objects.constFind(place.index);
    if (object != line.objects.constEnd())
        return lineInObject(*object, place);
    const auto sub =
        place.subindex >= 0 ? std::optional<quint8>(quint8(place.subindex)) : std::nullopt;
    const int found =
        lineOfKeys(line.entry.value, YamlStandard::keysOf(quint16(place.index), sub), place.column);
    return found ? found : childOf(line.entry.value, YamlKeys::kObjects).key.place().line;
}

int YamlProjectPlaces::lineOfFrame(const Line &line, const ProjectPlace &place)
{
    // Of several of this number, the one that has the signal.
    int nearest = 0;
    const QList<Entry> frames = line.frames.values(place.group);
    for (const Entry &entry : frames) {
        const QVector<YamlNode> several =
            entry.value.isList() ? entry.value.items() : QVector<YamlNode>{entry.value};
        for (const YamlNode &frame : several) {
            if (const int found = lineInFrame(entry, frame, place))
                return found;
        }
        nearest = entry.key.place().line;
    }
    return nearest;
}
