// The structure of the YAML form as JSON Schema. Keys with columns come from their tables, what
// stands here are the keys around them.
#include "store/yaml/yamlschema.h"

#include "store/yaml/yamldefaults.h"
#include "store/yaml/yamlframes.h"
#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlrecord.h"
#include "store/yaml/yamlschemavalues.h"
#include "store/yaml/yamlsettings.h"
#include "store/yaml/yamlstandard.h"
#include "support/settingscatalogue.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <limits>

namespace
{

using namespace YamlSchemaValues;
using Bounds = YamlCells::Bounds;

// Definitions.
constexpr char kLine[] = "line";
constexpr char kObject[] = "object";
constexpr char kVariable[] = "variable";
constexpr char kMember[] = "member";
constexpr char kGroup[] = "group";
constexpr char kSignal[] = "signal";
constexpr char kFrame[] = "frame";
constexpr char kElement[] = "element";
constexpr char kLock[] = "lock";
constexpr char kDescriptions[] = "descriptions";

constexpr quint32 kMostNumber = 0xFFFFFFFF;
constexpr Bounds kAnyNumber = {0, kMostNumber};
constexpr quint32 kHighestLine = 253;

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

// --- Maps and lists ---

/// The keys of a map that takes no others.
class Keys
{
public:
    Keys &add(const QString &key, const QJsonObject &schema)
    {
        properties.insert(key, schema);
        return *this;
    }

    /// All columns that have a word. What stands if a key is left out is that of a new record.
    template <class Record>
    Keys &add(const YamlTable<Record> &table)
    {
        for (int i = 0; i < table.count; ++i) {
            const YamlColumn &column = table.words[i];
            if (column.word)
                add(column.word, ofColumn(column, YamlRecord::boundsOf(table, i),
                                          table.columns[i].get(Record())));
        }
        return *this;
    }

    /// What stands if these are left out depends on others.
    Keys &withoutDefaults(const QStringList &keys)
    {
        for (const QString &key : keys) {
            QJsonObject schema = properties.value(key).toObject();
            schema.remove("default");
            if (properties.contains(key))
                properties.insert(key, schema);
        }
        return *this;
    }

    Keys &require(const QString &key)
    {
        required << key;
        return *this;
    }

    QJsonObject map(const QString &help = QString()) const
    {
        QJsonObject schema = {
            {"type", "object"}, {"properties", properties}, {"additionalProperties", false}};
        if (!required.isEmpty())
            schema.insert("required", required);
        return described(schema, help);
    }

    /// With more keys, which match \a pattern.
    QJsonObject map(const QString &help, const QString &pattern, const QJsonObject &value) const
    {
        QJsonObject schema = map(help);
        schema.insert("patternProperties", QJsonObject{{pattern, value}});
        return schema;
    }

private:
    QJsonObject properties;
    QJsonArray required;
};

/// A map whose keys match \a pattern.
QJsonObject mapOf(const QString &pattern, const QJsonObject &value, const QString &help = QString())
{
    return described({{"type", "object"},
                      {"patternProperties", QJsonObject{{pattern, value}}},
                      {"additionalProperties", false}},
                     help);
}

QJsonObject listOf(const QJsonObject &item, const QString &help)
{
    return described({{"type", "array"}, {"items", item}}, help);
}

QJsonObject either(const QJsonObject &one, const QJsonObject &other,
                   const QString &help = QString())
{
    return described({{"anyOf", QJsonArray{one, other}}}, help);
}

QJsonObject only(const char *word)
{
    return {{"enum", QJsonArray{latin1(word)}}};
}

// --- Settings ---

/// "0 to 255 ms", "1 is on" or nothing: what can stand there.
QString valuesOf(const Setting &setting)
{
    const QString unit = *setting.unit ? QLatin1Char(' ') + latin1(setting.unit) : QString();
    if (setting.form == Setting::Form::Flag || setting.form == Setting::Form::Switch)
        return QStringLiteral("1 is on");
    if (setting.form == Setting::Form::True)
        return QStringLiteral("true is on");
    if (setting.range.isKnown())
        return QStringLiteral("%1 to %2").arg(setting.range.low).arg(setting.range.high) + unit;
    return unit.trimmed();
}

QString helpOf(const Setting &setting)
{
    const QString values = valuesOf(setting);
    return latin1(setting.meaning) + (values.isEmpty() ? QString() : " (" + values + ")");
}

/// The element of one line.
QJsonObject elementOf(const Setting &setting)
{
    return text(helpOf(setting));
}

template <class Use>
void forEachSetting(SettingStore store, Use use)
{
    for (const SettingTopic &topic : SettingsCatalogue::topics()) {
        if (topic.store != store)
            continue;
        for (const Setting &setting : topic)
            use(setting);
    }
}

/// A setting of the whole project. One with elements for the lines may stand with the lines as
/// well.
QJsonObject wholeOf(const Setting &setting)
{
    const bool isList = setting.span != Setting::Span::Project;
    return text(helpOf(setting) +
                (isList ? ". A list with an element for each line, parted by commas" : ""));
}

/// The keys that the tool knows, and any other one.
QJsonObject settingsOf(SettingStore store, const QString &help)
{
    QJsonObject known;
    QJsonObject numbered;
    forEachSetting(store, [&](const Setting &setting) {
        const QString key = latin1(setting.key);
        if (setting.isNumbered())
            numbered.insert("^" + QString(key).replace("%1", "[0-9]+") + "$", wholeOf(setting));
        else
            known.insert(key, wholeOf(setting));
    });
    QJsonObject schema = {{"type", "object"},
                          {"properties", known},
                          {"patternProperties", numbered},
                          {"additionalProperties", text()}};
    return described(schema, help);
}

// --- Objects ---

QJsonObject limits()
{
    return described(
        {{"type", "array"}, {"items", text()}, {"minItems", 2}, {"maxItems", 2}},
        "Least and greatest value; `\"\"` where there is none. Of signed types decimal");
}

Keys memberKeys()
{
    return Keys()
        .add(kSubIndexYaml)
        .add(YamlKeys::kLimits, limits())
        .withoutDefaults(
            {"implementation", "size", "low-limit", "up-limit", "limits-in-eds", "allowed-access"});
}

/// What the subindices of a line have if they do not say it; see YamlDefaults.
QJsonObject objectDefaults()
{
    Keys keys;
    for (int i = 0; i < kSubIndexYaml.count; ++i) {
        const YamlColumn &column = kSubIndexWords[i];
        if (YamlDefaults::keys().contains(latin1(column.word)))
            keys.add(column.word, ofColumn(column, YamlRecord::boundsOf(kSubIndexColumns[i]),
                                           kSubIndexColumns[i].get(SubIndexData())));
    }
    return keys
        .add(YamlKeys::kLimits,
             either(limits(), only(YamlKeys::kOfType),
                    "Least and greatest value, or `type` for the range of the data type"))
        .map("What subindices have that say nothing else");
}

/// The keys of the object and of its subindex.
Keys variableKeys()
{
    return memberKeys().add(kIndexYaml).withoutDefaults({"code"});
}

QJsonObject object()
{
    return variableKeys()
        .add(YamlKeys::kArray,
             number({1, 254}, "Number of elements; the keys beside it say what each one is"))
        .add(YamlKeys::kMembers,
             mapOf(numberKey(0xFF), either(only(YamlKeys::kNone), reference(kMember)),
                   "Subindices by number; beside `array` what single ones differ in"))
        .add(YamlKeys::kObject,
             described(only(YamlKeys::kNone), "There are subindices of this index, but no object"))
        .map();
}

/// The default value of a variable or subindex, or a map with more about it.
QJsonObject standardValue(const YamlStandardRow &row, const char *definition)
{
    const bool isText = row.type == YamlStandard::kText;
    QJsonObject schema =
        either(isText ? text() : valueOrNode(), reference(definition), latin1(row.help));
    if (!row.isOptional)
        schema.insert("default", latin1(row.value));
    return schema;
}

Keys standardKeys(const YamlStandardForm &form)
{
    const bool isRecord = form.shape != YamlStandardShape::Variables;
    Keys keys;
    for (const YamlStandardRow &row : form)
        keys.add(row.key, standardValue(row, isRecord ? kMember : kVariable));
    if (isRecord)
        keys.add(YamlKeys::kAbout, text("What the object is for"));
    return keys;
}

QJsonObject pdo(const YamlStandardForm &form)
{
    QJsonObject items =
        listOf(mappingEntry(), "What the PDO holds, in its order: `0x2010`, `0x2012:1`, or with "
                               "the bits `0x20120110`");
    items.insert("maxItems", PdoEntryCount::kHighest);
    return standardKeys(form)
        .add(YamlKeys::kMap, items)
        .add(YamlKeys::kMapSlots, number({0, PdoEntryCount::kHighest},
                                         "The mapping can be changed, and has so many entries"))
        .add(YamlKeys::kMapAbout, text("What the mapping is for"))
        .map();
}

QJsonObject standard(const YamlStandardForm &form)
{
    const QString help = latin1(form.help);
    const QString numbers = numberKey(quint32(form.highestNumber()));
    switch (form.shape) {
    case YamlStandardShape::Value:
        return standardValue(*form.begin(), kVariable);
    case YamlStandardShape::Presence:
        return either({{"enum", QJsonArray{true}}}, standardValue(*form.begin(), kVariable), help);
    case YamlStandardShape::Variables:
    case YamlStandardShape::Record:
        return standardKeys(form).map(help);
    case YamlStandardShape::Records:
        return mapOf(numbers, standardKeys(form).map(), help);
    case YamlStandardShape::Pdos:
        return mapOf(numbers, pdo(form), help);
    case YamlStandardShape::Members:
        break;
    }
    return Keys()
        .add(YamlKeys::kAbout, text("What the object is for"))
        .map(help, numbers, standardValue(*form.begin(), kMember));
}

// --- Frames ---

/// Frames by direction and number. A number that stands twice in a direction has a list.
QJsonObject frames(const char *definition, const QString &help)
{
    const QJsonObject frame = reference(definition);
    const QJsonObject several = listOf(frame, "Several of one number");
    const QJsonObject byNumber = mapOf(numberKey(kMostNumber), either(frame, several), {});
    return mapOf(wordKey(kDirectionWords, 0xFF), byNumber, help);
}

/// What the list of a frame has: signals, and bits without one.
QJsonObject signalsOf(const char *definition)
{
    const QJsonObject skip =
        Keys()
            .add(YamlKeys::kSkip, number({1, YamlFrames::kMostBitsToSkip}, "Bits without a signal"))
            .require(YamlKeys::kSkip)
            .map();
    return listOf(either(reference(definition), skip, {}), "What the frame holds, in its order");
}

template <class Signal>
QJsonObject signalOf(const YamlTable<Signal> &table, const char *frameKey)
{
    const QString help =
        QStringLiteral("%1 of its ") + latin1(frameKey) + ", which the line does not have";
    return Keys()
        .add(table)
        .add(frameKey, number(kAnyNumber, help.arg("Number")))
        .add(YamlKeys::kDirection, word(kDirectionWords, kAnyNumber, help.arg("Direction")))
        .withoutDefaults({"implementation", "number", "pos"})
        .map();
}

template <class Frame>
QJsonObject frameOf(const YamlTable<Frame> &table, const char *signalsKey, const char *definition)
{
    return Keys()
        .add(table)
        .add(signalsKey, signalsOf(definition))
        .withoutDefaults({"count"})
        .map();
}

QJsonObject services()
{
    return either(mapOf(wordKey(kServiceWords, 0xFF), Keys().add(kUdsServiceYaml).map()),
                  only(YamlKeys::kAll),
                  "Diagnostic services of the line (ISO 14229-1); those of a new line if left out");
}

// --- Signals between lines, connections and the like ---

QJsonObject strayLineSignal()
{
    return Keys().add(kLineSignalYaml).add(YamlKeys::kLine, number({0, 0xFF}, "Its line")).map();
}

QJsonObject lock()
{
    const QJsonObject index = number({0, 0xFFFF}, {});
    return Keys()
        .add(YamlKeys::kPdos, listOf(index, "Indices of PDO parameters that stay as they are"))
        .add(YamlKeys::kMappings, listOf(index, "Indices of PDO mappings that stay as they are"))
        .map();
}

QJsonObject connection()
{
    const auto end = [](const QString &help) {
        return described({{"type", "string"}, {"pattern", connectionEnd()}}, help);
    };
    return Keys()
        .add(YamlKeys::kFrom, end("Whose value goes, by line, index and subindex: `0/0x2010:1`"))
        .add(YamlKeys::kTo, end("Where it goes, the same way"))
        .require(YamlKeys::kFrom)
        .require(YamlKeys::kTo)
        .add(kConnectionYaml)
        .map();
}

// --- Lines and the project ---

/// The settings that have an element for each line stand with the line.
void addSettingsOfLine(Keys *keys)
{
    forEachSetting(SettingStore::General, [keys](const Setting &setting) {
        const QString word = YamlSettings::wordOfLineKey(latin1(setting.key));
        if (!word.isEmpty())
            keys->add(word, elementOf(setting));
    });
}

QJsonObject j1939OfLine()
{
    const QStringList names = YamlSettings::j1939KeysOfLine();
    Keys keys;
    forEachSetting(SettingStore::J1939, [&](const Setting &setting) {
        if (names.contains(latin1(setting.key)))
            keys.add(setting.key, elementOf(setting));
    });
    return keys.map("NAME, address and the like of a J1939 line");
}

QJsonObject line()
{
    Keys keys;
    keys.add(YamlKeys::kProtocol,
             word(kProtocolWords,
                  {std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max()},
                  "What the line carries"));
    keys.add(kNodeYaml);
    addSettingsOfLine(&keys);
    for (const YamlStandardForm &form : YamlStandard::kForms)
        keys.add(form.word, standard(form));
    return keys.add(YamlKeys::kJ1939, j1939OfLine())
        .add(YamlKeys::kDescription,
             reference(kDescriptions, "What device descriptions say of a line above 0"))
        .add(YamlKeys::kObjectDefaults, objectDefaults())
        .add(YamlKeys::kObjects, mapOf(numberKey(0xFFFF), reference(kObject), "Objects by index"))
        .add(YamlKeys::kGroups, frames(kGroup, "Parameter groups by direction and number"))
        .add(YamlKeys::kFrames, frames(kFrame, "CAN frames by direction and identifier"))
        .add(YamlKeys::kOtherSignals,
             listOf(reference(kSignal), "Signals of groups that are not there"))
        .add(YamlKeys::kOtherElements,
             listOf(reference(kElement), "Elements of frames that are not there"))
        .add(YamlKeys::kUds, services())
        .add(YamlKeys::kSignals, mapOf(anyNumberKey(), Keys().add(kLineSignalYaml).map(),
                                       "Signals that the line gives to others, by number"))
        .add(YamlKeys::kLocks, reference(kLock, "What tools leave as it is"))
        .map("A CAN line of the device");
}

QJsonObject project()
{
    return Keys()
        .add(YamlKeys::kVersion, number({YamlKeys::kVersionNumber, YamlKeys::kVersionNumber},
                                        "The version of this form"))
        .require(YamlKeys::kVersion)
        .require(YamlKeys::kLines)
        .add(YamlKeys::kDescription,
             reference(kDescriptions, "What device descriptions say of line 0"))
        .add(YamlKeys::kSettings, settingsOf(SettingStore::General, "Settings of all lines"))
        .add(YamlKeys::kJ1939, settingsOf(SettingStore::J1939, "Settings of all J1939 lines"))
        .add(YamlKeys::kEnergyBus, texts("Settings of EnergyBus"))
        .add(YamlKeys::kMisc,
             settingsOf(SettingStore::Misc, "Settings of the run, and what tools note"))
        .add(YamlKeys::kSignalGroups,
             mapOf(anyNumberKey(), text(), "Names of groups of signals by number"))
        .add(YamlKeys::kVirtualNodes, mapOf(anyNumberKey(), Keys().add(kVirtualNodeYaml).map(),
                                            "Nodes of other devices by number"))
        .add(YamlKeys::kLineGroups,
             listOf(Keys().add(kLineGroupYaml).map(), "Lines that belong together"))
        .add(YamlKeys::kLines, mapOf(numberKey(kHighestLine), reference(kLine),
                                     "The CAN lines of the device by number, from 0"))
        .add(YamlKeys::kSignals, mapOf(anyNumberKey(), strayLineSignal(),
                                       "Signals of lines that are not there, by number"))
        .add(YamlKeys::kConnections, listOf(connection(), "Values that go from line to line"))
        .add(YamlKeys::kLocks,
             mapOf(numberKey(0xFF), reference(kLock), "Locks of lines that are not there, by line"))
        .map();
}

} // namespace

QByteArray YamlSchema::text()
{
    QJsonObject shared = definitions();
    const auto define = [&shared](const char *name, const QJsonObject &schema) {
        shared.insert(latin1(name), schema);
    };
    define(kLine, line());
    define(kObject, object());
    define(kVariable, variableKeys().map());
    define(kMember, memberKeys().map());
    define(kGroup, frameOf(kPgnYaml, YamlKeys::kSignals, kSignal));
    define(kSignal, signalOf(kSpnYaml, YamlKeys::kGroup));
    define(kFrame, frameOf(kCanIdYaml, YamlKeys::kElements, kElement));
    define(kElement, signalOf(kDataElementYaml, YamlKeys::kFrame));
    define(kLock, lock());
    define(kDescriptions, settingsOf(SettingStore::Description, {}));
    QJsonObject schema = project();
    schema.insert("$schema", "https://json-schema.org/draft/2020-12/schema");
    schema.insert("$id", "urn:tessarine:project:1");
    schema.insert("title", "Tessarine project");
    schema.insert(
        "description",
        "A device with its CAN lines, of which the tool generates sources and descriptions");
    schema.insert("$defs", shared);
    return QJsonDocument(schema).toJson();
}
