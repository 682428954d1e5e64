// The changes of settings.
#include "store/comparison/settingchanges.h"

#include "formats/yamlscalar.h"
#include "store/comparison/changedfields.h"
#include "store/settingdefaults.h"
#include "store/sidebyside.h"
#include "store/yaml/yamlsettings.h"
#include "support/settingscatalogue.h"

#include <QSet>

#include <algorithm>
#include <iterator>
#include <optional>

namespace
{

using Change = ProjectChange::Change;

struct StoreRow {
    Settings ProjectRecord::*settings;
    std::optional<SettingStore> catalogue;
    const char *prefix; ///< before the key, as "-set" takes it
};

// clang-format off
constexpr StoreRow kStores[] = {
    {&ProjectRecord::general,     SettingStore::General,     ""},
    {&ProjectRecord::description, SettingStore::Description, "Description:"},
    {&ProjectRecord::j1939,       SettingStore::J1939,       "J1939:"},
    {&ProjectRecord::energyBus,   {},                        "EnergyBus:"},
    {&ProjectRecord::misc,        SettingStore::Misc,        "Misc:"},
};
// clang-format on

/// What a save notes of the file.
bool isOfFile(const StoreRow &row, const QString &key)
{
    static const QSet<QString> keys = {
        QStringLiteral("CreateToolName"), QStringLiteral("CreateToolVersion"),
        QStringLiteral("SaveToolType"), QStringLiteral("SaveToolVersion"),
        QStringLiteral("DatabaseVersion")};
    return row.catalogue == SettingStore::Misc && keys.contains(key);
}

/// The elements of a list with one for each line of the project; none if it is another text. No
/// text at all is a list without any value.
std::optional<QStringList> elementsOf(const QString &text, const ProjectRecord &project)
{
    const int count = project.lines.empty() ? 0 : project.lines.rbegin()->first + 1;
    const QStringList elements = text.split(QLatin1Char(','));
    if (text.isEmpty() || elements.size() == count)
        return elements;
    return std::nullopt;
}

bool isDefault(const QString &descriptionKey, const QString &value)
{
    return std::any_of(std::begin(kDescriptionDefaults), std::end(kDescriptionDefaults),
                       [&](const SettingDefault &row) {
                           return descriptionKey == QLatin1String(row.key) &&
                                  value == QLatin1String(row.value);
                       });
}

QString protocolWord(const QString &number)
{
    for (const YamlWord &row : kProtocolWords) {
        if (number == QString::number(row.number))
            return QLatin1String(row.word);
    }
    return number;
}

/// What it counts as: a project without the form of its descriptions has the classic one.
QString meantBy(const StoreRow &row, const QString &key, const QString *value)
{
    const bool isForm =
        row.catalogue == SettingStore::Misc && key == QLatin1String("description_form");
    if (isForm && (!value || value->isEmpty()))
        return QStringLiteral("classic");
    return value ? *value : QString();
}

class SettingChanges
{
public:
    SettingChanges(const ProjectRecord &before, const ProjectRecord &after,
                   std::vector<ProjectChange> *result)
        : older(before), newer(after), changes(result)
    {
    }

    void add(const StoreRow &row)
    {
        const Settings &before = older.*row.settings;
        const Settings &after = newer.*row.settings;
        SideBySide::walk(
            before.constBegin(), before.constEnd(), after.constBegin(), after.constEnd(),
            [&](const QString &key, const QString *one, const QString *other) {
                if (!isOfFile(row, key))
                    addSetting(row, key, meantBy(row, key, one), meantBy(row, key, other));
            });
    }

private:
    void addSetting(const StoreRow &row, const QString &key, const QString &before,
                    const QString &after)
    {
        const Setting *setting =
            row.catalogue ? SettingsCatalogue::find(*row.catalogue, key) : nullptr;
        const QString name = QLatin1String(row.prefix) + key;
        const bool isList = setting && setting->span != Setting::Span::Project;
        if (row.catalogue == SettingStore::General && lineOfType(key) >= 0)
            return addValue(lineOfType(key), QStringLiteral("protocol"), protocolWord(before),
                            protocolWord(after), ChangeKind::Line);
        if (setting && row.catalogue == SettingStore::Description)
            return addOfLine(row, key, before, after);
        if (!isList || !addElements(name, before, after))
            addValue(-1, name, before, after);
    }

    /// Such as "line2type", of a line of one of the projects; else -1.
    int lineOfType(const QString &key) const
    {
        const int line = key.mid(4, key.size() - 8).toInt();
        return key == QStringLiteral("line%1type").arg(line) && hasLine(line) ? line : -1;
    }

    /// A description such as "VendorName_2"; without a number it is of line 0.
    void addOfLine(const StoreRow &row, const QString &key, const QString &before,
                   const QString &after)
    {
        const int end = key.lastIndexOf(QLatin1Char('_'));
        const int number = key.midRef(end + 1).toInt();
        const bool hasNumber = end > 0 && number > 0 && hasLine(number) &&
                               SettingsCatalogue::find(*row.catalogue, key.left(end));
        const QString plain = hasNumber ? key.left(end) : key;
        // A line comes and goes with what each one has.
        if ((before.isEmpty() || after.isEmpty()) && isDefault(plain, before + after))
            return;
        addValue(hasNumber    ? number
                 : hasLine(0) ? 0
                              : -1,
                 QLatin1String(row.prefix) + plain, before, after);
    }

    bool hasLine(int line) const
    {
        return line >= 0 && line <= 0xFF &&
               (older.lines.count(quint8(line)) > 0 || newer.lines.count(quint8(line)) > 0);
    }

    /// False if one of the texts is no list.
    bool addElements(const QString &name, const QString &before, const QString &after)
    {
        const auto one = elementsOf(before, older);
        const auto other = elementsOf(after, newer);
        if (!one || !other)
            return false;
        const auto elementOf = [](const QStringList &list, const ProjectRecord &project, int line) {
            return project.lines.count(quint8(line)) > 0 ? list.value(line) : QString();
        };
        for (int line = 0; line < std::max(one->size(), other->size()); ++line)
            addValue(line, name, elementOf(*one, older, line), elementOf(*other, newer, line));
        return true;
    }

    void addValue(int line, const QString &name, const QString &before, const QString &after,
                  ChangeKind kind = ChangeKind::Setting)
    {
        if (before == after)
            return;
        const auto shown = [](const QString &text) {
            return text.isEmpty() ? QString()
                                  : YamlScalar::oneLine(text, YamlScalar::Meaning::Written);
        };
        const Change change = before.isEmpty()  ? Change::Added
                              : after.isEmpty() ? Change::Removed
                                                : Change::Changed;
        changes->push_back({kind,
                            change,
                            line,
                            -1,
                            -1,
                            name,
                            {ChangedFields::field(QString(), shown(before), shown(after))}});
    }

    const ProjectRecord &older;
    const ProjectRecord &newer;
    std::vector<ProjectChange> *changes;
};

} // namespace

void addSettingChanges(const ProjectRecord &older, const ProjectRecord &newer,
                       std::vector<ProjectChange> *changes)
{
    SettingChanges settings(older, newer, changes);
    for (const StoreRow &row : kStores)
        settings.add(row);
}
