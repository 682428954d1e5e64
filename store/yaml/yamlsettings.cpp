// Settings in the YAML form.
#include "store/yaml/yamlsettings.h"

#include "store/objectdatabase.h"
#include "store/settingdefaults.h"
#include "store/yaml/yamlcolumns.h"
#include "store/yaml/yamlkeys.h"
#include "support/editdistance.h"
#include "support/settingscatalogue.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>

namespace
{

constexpr QLatin1Char kComma(',');
constexpr QLatin1Char kUnderscore('_');
constexpr char kTypeKey[] = "line%1type";
constexpr char kFormKey[] = "description_form"; ///< which the file names where the store does not
constexpr char kClassic[] = "classic";

struct StoreRow {
    const char *key; ///< in the file
    const char *table;
    Settings ProjectRecord::*settings;
    std::optional<SettingStore> catalogue;
};

enum Store { kDescription, kGeneral, kJ1939, kEnergyBus, kMisc };

// clang-format off
constexpr StoreRow kRows[] = { // in the order of the file, which is that of Store
    {YamlKeys::kDescription, "DescriptionSettings", &ProjectRecord::description, SettingStore::Description},
    {YamlKeys::kSettings,    "GeneralSettings",     &ProjectRecord::general,     SettingStore::General},
    {YamlKeys::kJ1939,       "J1939Settings",       &ProjectRecord::j1939,       SettingStore::J1939},
    {YamlKeys::kEnergyBus,   "EnergyBusSettings",   &ProjectRecord::energyBus,   {}},
    {YamlKeys::kMisc,        "MiscSettings",        &ProjectRecord::misc,        SettingStore::Misc},
};

struct LineWord {
    const char *key;
    const char *word;
};

/// General settings that a line names by another word than the store. All others keep their key, by
/// which docs/settings.md tells of them.
constexpr LineWord kLineWords[] = {
    {"co_node_id",         "node-id"},
    {"co_node_id_fct",     "node-id-function"},
    {"nmtmaster",          "nmt-master"},
    {"overwrite_predef",   "overwrite-predefined"},
    {"receivebuffersize",  "receive-buffer"},
    {"transmitbuffersize", "transmit-buffer"},
};
// clang-format on

constexpr bool areNoColumns()
{
    for (const LineWord &row : kLineWords) {
        for (const YamlColumn &column : kNodeWords) {
            if (column.word && isSameText(row.word, column.word))
                return false;
        }
    }
    return true;
}
static_assert(areNoColumns(), "a key of a line has one meaning");

/// A setting that is a list with an element for each line.
struct ListKey {
    Store store;
    QString key;
    QString word; ///< in the map of a line, or the map "j1939" of it
};

QString wordFor(const QString &key)
{
    for (const LineWord &row : kLineWords) {
        if (key == QLatin1String(row.key))
            return QLatin1String(row.word);
    }
    return key;
}

/// In the order of the catalogue, which is that of the file.
const QVector<ListKey> &listKeys()
{
    static const QVector<ListKey> all = [] {
        QVector<ListKey> keys;
        for (const SettingTopic &topic : SettingsCatalogue::topics()) {
            const Store store = topic.store == SettingStore::J1939 ? kJ1939 : kGeneral;
            for (const Setting &row : topic) {
                const QString key = QLatin1String(row.key);
                if (row.span != Setting::Span::Project)
                    keys.append({store, key, store == kGeneral ? wordFor(key) : key});
            }
        }
        return keys;
    }();
    return all;
}

int findListKey(int store, const QString &text, QString ListKey::*part)
{
    const QVector<ListKey> &keys = listKeys();
    for (int i = 0; i < keys.size(); ++i) {
        if (keys.at(i).store == store && keys.at(i).*part == text)
            return i;
    }
    return -1;
}

QStringList wordsOf(Store store)
{
    QStringList words;
    for (const ListKey &row : listKeys()) {
        if (row.store == store)
            words << row.word;
    }
    return words;
}

QString typeKey(int line)
{
    return QString::fromLatin1(kTypeKey).arg(line);
}

QString descriptionKey(const QString &key, int line)
{
    return line > 0 ? key + kUnderscore + QString::number(line) : key;
}

/// The line of a key such as "line2type", or "VendorName_2", if it is spelled as the store does.
struct OfLine {
    int line = -1;
    QString key; ///< without the line
};

OfLine lineOfType(const QString &key)
{
    const int line = key.mid(4, key.size() - 8).toInt();
    return key == typeKey(line) ? OfLine{line, key} : OfLine();
}

OfLine lineOfDescription(const QString &key)
{
    static const QSet<QString> known = [] {
        QSet<QString> keys;
        for (const SettingDefault &row : kDescriptionDefaults)
            keys.insert(QLatin1String(row.key));
        for (const char *name : kCountsOfPdos)
            keys.insert(QLatin1String(name));
        return keys;
    }();
    const QString plain = key.left(key.lastIndexOf(kUnderscore));
    const int line = key.midRef(plain.size() + 1).toInt();
    const bool isOfLine = line > 0 && known.contains(plain) && key == descriptionKey(plain, line);
    return isOfLine ? OfLine{line, plain} : OfLine();
}

/// What a project has in that store once it was opened, unless it says something else.
Settings defaultsOf(Store store, const ProjectRecord &project)
{
    Settings result;
    if (store == kGeneral && !project.lines.empty()) {
        const QStringList keys = ObjectDataBase::getGeneralLineDependentSettings();
        for (const QString &key : keys)
            result.insert(key, QString());
    }
    for (const auto &line : project.lines) {
        if (store != kDescription)
            break;
        for (const SettingDefault &row : kDescriptionDefaults)
            result.insert(descriptionKey(QLatin1String(row.key), line.first),
                          QLatin1String(row.value));
    }
    if (store == kMisc) {
        // The file does not change with each version of the tool that saves it.
        result.insert(QStringLiteral("SaveToolType"), QCoreApplication::applicationName());
        result.insert(QStringLiteral("SaveToolVersion"), QCoreApplication::applicationVersion());
        result.insert(QStringLiteral("DatabaseVersion"),
                      QString::number(ObjectDataBase::kDatabaseVersion));
        result.insert(QLatin1String(kFormKey), QStringLiteral("portable"));
    }
    return result;
}

bool isOneOf(const QString &text, std::initializer_list<const char *> words)
{
    return std::any_of(words.begin(), words.end(), [&text](const char *word) {
        return text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
    });
}

/// A truth without quotes is what the setting has for on or off. Any other text stays as it is.
QString meantBy(int store, const QString &key, YamlNode value, const QString &text)
{
    const bool isOn = isOneOf(text, {"true", "yes", "on"});
    if (!value.isPlain() || (!isOn && !isOneOf(text, {"false", "no", "off"})))
        return text;
    const auto catalogue = kRows[store].catalogue;
    const Setting *row = catalogue ? SettingsCatalogue::find(*catalogue, key) : nullptr;
    if (!row)
        return text;
    using Form = Setting::Form;
    if (row->form == Form::Flag || row->form == Form::Switch)
        return isOn ? QStringLiteral("1") : QStringLiteral("0");
    if (row->form == Form::True || row->form == Form::Truth)
        return isOn ? QStringLiteral("true") : QStringLiteral("false");
    return text;
}

/// Where a setting belongs that stands in a map which does not have it; empty if it is none.
QString homeOf(const QString &key)
{
    if (findListKey(kGeneral, key, &ListKey::word) >= 0)
        return QStringLiteral("a line");
    for (const StoreRow &row : kRows) {
        if (row.catalogue && SettingsCatalogue::find(*row.catalogue, key))
            return YamlContext::quoted(QLatin1String(row.key));
    }
    return QString();
}

/// Tells of a setting that stands in \a where; false if the key is none.
bool tellHome(YamlNode key, const char *where, YamlContext &context)
{
    if (context.problems->isFull())
        return false;
    const QString text = key.text();
    if (const QString word = YamlSettings::wordOfLineKey(text); !word.isEmpty() && word != text) {
        context.problems->add("yaml-unknown-key", key.place(),
                              QStringLiteral("%1 is written as %2, in a line")
                                  .arg(YamlContext::quoted(text), YamlContext::quoted(word)));
        return true;
    }
    const QString home = homeOf(text);
    if (!home.isEmpty())
        context.misplacedKey(key, QLatin1String(where), home);
    return !home.isEmpty();
}

/// The text of a setting; none, and told, if there is something else.
std::optional<QString> textOf(int store, const QString &key, const YamlNode::Entry &entry,
                              YamlContext &context)
{
    const QString what = QStringLiteral("the setting ") + YamlContext::quoted(entry.key.text());
    const std::optional<QString> text = context.text(entry.value, what);
    return text ? meantBy(store, key, entry.value, *text) : text;
}

YamlNode::Entry entryOf(YamlNode map, const QString &key)
{
    const QVector<YamlNode::Entry> entries = map.entries();
    for (const YamlNode::Entry &entry : entries) {
        if (entry.key.text() == key)
            return entry;
    }
    return {};
}

/// The key of a line's map, or of one in it, that sets \a key of the store.
YamlNode keyInLine(YamlNode line, int store, const QString &key, const OfLine &ofLine)
{
    if (ofLine.line >= 0 && store == kGeneral)
        return entryOf(line, QLatin1String(YamlKeys::kProtocol)).key;
    const bool isList = findListKey(store, key, &ListKey::key) >= 0;
    if (store == kGeneral)
        return isList ? entryOf(line, wordFor(key)).key : YamlNode();
    if (store != kDescription && !isList)
        return {};
    const YamlNode map = entryOf(line, QLatin1String(kRows[store].key)).value;
    return entryOf(map, ofLine.line >= 0 ? ofLine.key : key).key;
}

const StoreRow *rowOf(const QString &table)
{
    for (const StoreRow &row : kRows) {
        if (table == QLatin1String(row.table))
            return &row;
    }
    return nullptr;
}

} // namespace

// --- Reading ---

bool YamlSettings::readOfProject(const YamlNode::Entry &entry, YamlContext &context)
{
    for (int store = 0; store < kStores; ++store) {
        if (entry.key.is(kRows[store].key)) {
            readMap(store, entry.value, context);
            return true;
        }
    }
    return tellHome(entry.key, "a project", context);
}

bool YamlSettings::readOfLine(quint8 line, const YamlNode::Entry &entry, YamlContext &context)
{
    if (entry.key.is(YamlKeys::kProtocol))
        readProtocol(line, entry, context);
    else if (entry.key.is(YamlKeys::kDescription))
        readDescription(line, entry.value, context);
    else if (entry.key.is(YamlKeys::kJ1939))
        readJ1939(line, entry.value, context);
    else if (const int i = findListKey(kGeneral, entry.key.text(), &ListKey::word); i >= 0)
        readElement(i, line, entry, context);
    else
        return tellHome(entry.key, "a line", context);
    return true;
}

void YamlSettings::readMap(int store, YamlNode map, YamlContext &context)
{
    if (!context.isMap(map, QStringLiteral("what stands below \"%1\" is a map of settings")
                                .arg(QLatin1String(kRows[store].key))))
        return;
    const QVector<YamlNode::Entry> entries = map.entries();
    for (const YamlNode::Entry &entry : entries) {
        const QString key = entry.key.text();
        if (const auto text = textOf(store, key, entry, context))
            stores[store].insert(key, {*text, entry.key.place()});
    }
}

void YamlSettings::readProtocol(quint8 line, const YamlNode::Entry &entry, YamlContext &context)
{
    const std::optional<QString> text = context.text(entry.value, QStringLiteral("the protocol"));
    if (!text)
        return;
    QString number = YamlNumber::parse(*text) ? *text : QString();
    QStringList words;
    for (const YamlWord &row : kProtocolWords) {
        words << QLatin1String(row.word);
        if (*text == words.last())
            number = QString::number(row.number);
    }
    if (number.isEmpty()) {
        const QString meant = didYouMean(YamlContext::cut(*text), words);
        const QString all =
            QLatin1Char('"') + words.join(QStringLiteral("\", \"")) + QLatin1Char('"');
        return context.wrongValue(
            entry.value, QStringLiteral("there is no protocol %1").arg(YamlContext::quoted(*text)) +
                             (meant.isEmpty() ? QStringLiteral("; it is one of ") + all : meant));
    }
    lineValues.push_back({kGeneral, typeKey(line), entry.key.text(), {number, entry.key.place()}});
}

void YamlSettings::readDescription(quint8 line, YamlNode map, YamlContext &context)
{
    if (!context.isMap(map, QStringLiteral("the description of a line is a map of settings")))
        return;
    const QVector<YamlNode::Entry> entries = map.entries();
    for (const YamlNode::Entry &entry : entries) {
        const QString word = entry.key.text();
        const QString key = descriptionKey(word, line);
        if (const auto text = textOf(kDescription, key, entry, context))
            lineValues.push_back({kDescription, key, word, {*text, entry.key.place()}});
    }
}

void YamlSettings::readJ1939(quint8 line, YamlNode map, YamlContext &context)
{
    const QString where = QStringLiteral("the J1939 settings of a line");
    if (!context.isMap(map, where + QStringLiteral(" are a map")))
        return;
    const QVector<YamlNode::Entry> entries = map.entries();
    for (const YamlNode::Entry &entry : entries) {
        const int i = findListKey(kJ1939, entry.key.text(), &ListKey::word);
        if (i >= 0)
            readElement(i, line, entry, context);
        else if (!SettingsCatalogue::find(SettingStore::J1939, entry.key.text()))
            context.unknownKey(entry.key, where, j1939KeysOfLine());
        else
            context.misplacedKey(entry.key, where, QStringLiteral("\"j1939\" of the project"));
    }
}

void YamlSettings::readElement(int listKey, quint8 line, const YamlNode::Entry &entry,
                               YamlContext &context)
{
    const ListKey &row = listKeys().at(listKey);
    const std::optional<QString> text = textOf(row.store, row.key, entry, context);
    if (text && text->contains(kComma))
        context.wrongValue(entry.value,
                           QStringLiteral("%1 is the value of one line, and cannot hold a comma")
                               .arg(YamlContext::quoted(row.word)));
    else if (text)
        lists[listKey].insert(line, {*text, entry.key.place()});
}

void YamlSettings::finish(ProjectRecord *project, YamlContext &context)
{
    for (const LineValue &found : lineValues)
        put(found, context);
    putLists(*project, context);
    for (int store = 0; store < kStores; ++store) {
        Settings settings = defaultsOf(Store(store), *project);
        for (auto value = stores[store].cbegin(); value != stores[store].cend(); ++value)
            settings.insert(value.key(), value->text);
        if (store == kMisc && settings.value(kFormKey) == QLatin1String(kClassic))
            settings.remove(kFormKey);
        project->*kRows[store].settings = settings;
    }
}

void YamlSettings::put(const LineValue &found, YamlContext &context)
{
    const auto other = stores[found.store].constFind(found.key);
    if (other == stores[found.store].constEnd()) {
        stores[found.store].insert(found.key, found.value);
        return;
    }
    context.problems->add("yaml-doubled-key", found.value.place,
                          QStringLiteral("%1 is set here, and as %2 in line %3; remove one of them")
                              .arg(YamlContext::quoted(found.word), YamlContext::quoted(found.key))
                              .arg(other->place.line));
}

void YamlSettings::putLists(const ProjectRecord &project, YamlContext &context)
{
    for (auto list = lists.cbegin(); list != lists.cend(); ++list) {
        QStringList elements;
        for (const auto &line : project.lines) {
            while (elements.size() < line.first)
                elements << QStringLiteral(" ");
            elements << list->value(line.first).text;
        }
        const ListKey &row = listKeys().at(list.key());
        put({row.store, row.key, row.word, {elements.join(kComma), list->first().place}}, context);
    }
}

// --- Writing ---

YamlSettings::YamlSettings(const ProjectRecord &project)
{
    for (int store = 0; store < kStores; ++store) {
        Settings settings = project.*kRows[store].settings;
        if (store == kMisc && !settings.contains(kFormKey))
            settings.insert(kFormKey, kClassic);
        const Settings defaults = defaultsOf(Store(store), project);
        for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting) {
            const auto usual = defaults.constFind(setting.key());
            if (usual != defaults.constEnd() && *usual == *setting)
                continue;
            if (!giveToLines(project, store, setting.key(), *setting))
                stores[store].insert(setting.key(), {*setting, {}});
        }
    }
}

bool YamlSettings::giveToLines(const ProjectRecord &project, int store, const QString &key,
                               const QString &text)
{
    const auto hasLine = [&project](int line) {
        return line >= 0 && line <= 0xFF && project.lines.count(quint8(line)) > 0;
    };
    if (store == kGeneral) {
        if (const OfLine type = lineOfType(key); hasLine(type.line))
            return giveProtocol(quint8(type.line), text);
    } else if (store == kDescription) {
        const OfLine found = lineOfDescription(key);
        if (!hasLine(found.line))
            return false;
        lines[quint8(found.line)].description.add(found.key, YamlValue::written(text));
        return true;
    }
    const int listKey = findListKey(store, key, &ListKey::key);
    return listKey >= 0 && giveList(project, listKey, text);
}

bool YamlSettings::giveProtocol(quint8 line, const QString &text)
{
    if (!YamlNumber::parse(text))
        return false;
    YamlValue value = YamlValue::written(text);
    for (const YamlWord &row : kProtocolWords) {
        if (text == QString::number(row.number))
            value = YamlValue::text(QLatin1String(row.word));
    }
    lines[line].protocol = value;
    return true;
}

bool YamlSettings::giveList(const ProjectRecord &project, int listKey, const QString &text)
{
    const QStringList elements = text.split(kComma);
    if (project.lines.empty() || elements.size() != project.lines.rbegin()->first + 1)
        return false;
    bool hasValue = false;
    for (int i = 0; i < elements.size(); ++i) {
        const bool isLine = project.lines.count(quint8(i)) > 0;
        if (!isLine && elements.at(i) != QLatin1String(" "))
            return false;
        hasValue = hasValue || (isLine && !elements.at(i).isEmpty());
    }
    const ListKey &row = listKeys().at(listKey);
    for (const auto &line : project.lines) {
        const QString &element = elements.at(line.first);
        if (element.isEmpty())
            continue;
        if (row.store == kJ1939)
            lines[line.first].j1939.add(row.word, YamlValue::written(element));
        else
            lines[line.first].values.append({row.word, YamlValue::written(element)});
    }
    return hasValue;
}

void YamlSettings::writeOfProject(YamlWriter &writer) const
{
    for (int store = 0; store < kStores; ++store) {
        YamlValue map = YamlValue::map();
        for (auto value = stores[store].cbegin(); value != stores[store].cend(); ++value)
            map.add(value.key(), YamlValue::written(value->text));
        if (!map.isEmpty())
            writer.value(QLatin1String(kRows[store].key), map.spread());
    }
}

void YamlSettings::writeProtocol(quint8 line, YamlWriter &writer) const
{
    const auto found = lines.find(line);
    if (found != lines.end() && found->second.protocol)
        writer.value(QLatin1String(YamlKeys::kProtocol), *found->second.protocol);
}

void YamlSettings::writeOfLine(quint8 line, YamlWriter &writer) const
{
    const auto found = lines.find(line);
    if (found == lines.end())
        return;
    for (const auto &value : found->second.values)
        writer.value(value.first, value.second);
    if (!found->second.j1939.isEmpty())
        writer.value(QLatin1String(YamlKeys::kJ1939), found->second.j1939);
    if (!found->second.description.isEmpty())
        writer.value(QLatin1String(YamlKeys::kDescription), found->second.description);
}

// --- Keys ---

QStringList YamlSettings::keysOfProject()
{
    QStringList keys;
    for (const StoreRow &row : kRows)
        keys << QLatin1String(row.key);
    return keys;
}

QStringList YamlSettings::keysOfLine()
{
    return QStringList{YamlKeys::kProtocol} + wordsOf(kGeneral) +
           QStringList{YamlKeys::kJ1939, YamlKeys::kDescription};
}

QStringList YamlSettings::j1939KeysOfLine()
{
    return wordsOf(kJ1939);
}

QString YamlSettings::wordOfLineKey(const QString &key)
{
    return findListKey(kGeneral, key, &ListKey::key) >= 0 ? wordFor(key) : QString();
}

YamlPlace YamlSettings::placeOf(YamlNode root, const QString &table, const QString &key, int line)
{
    const StoreRow *row = rowOf(table);
    if (!row)
        return {};
    const int store = int(row - kRows);
    const OfLine ofLine = store == kGeneral       ? lineOfType(key)
                          : store == kDescription ? lineOfDescription(key)
                                                  : OfLine();
    const int lowest = store == kDescription ? 0 : -1; // without a number it is that of line 0
    const int wanted = qMax(ofLine.line, qMax(line, lowest));
    const QVector<YamlNode::Entry> all =
        entryOf(root, QLatin1String(YamlKeys::kLines)).value.entries();
    for (const YamlNode::Entry &entry : all) {
        if (wanted >= 0 && YamlNumber::parse(entry.key.text()) != wanted)
            continue;
        if (const YamlNode found = keyInLine(entry.value, store, key, ofLine))
            return found.place();
    }
    const YamlNode map = entryOf(root, QLatin1String(row->key)).value;
    const bool isOther = store == kDescription && line > 0 && ofLine.line < 0;
    return entryOf(map, isOther ? descriptionKey(key, line) : key).key.place();
}
