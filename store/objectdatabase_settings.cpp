// The five stores of options, one code path over a row of differences. Each table is read once and
// kept in memory; every write goes to both.
#include "store/linetype.h"
#include "store/objectdatabase_p.h"
#include "store/settingdefaults.h"
#include "support/linelist.h"
#include "support/logging.h"
#include "support/settingscatalogue.h"

#include <algorithm>

namespace
{

struct SettingsRow {
    const char *table;
    bool honoursLock;       ///< refuses writes while write access is locked
    bool refusesApostrophe; ///< cannot hold a value with an apostrophe
    ChangeSetData::Kind kind;
};

// clang-format off
constexpr SettingsRow kStores[] = { // in the order of SettingsStore
    {"GeneralSettings",     false, true,  ChangeSetData::Kind::GeneralSettings},
    {"DescriptionSettings", false, false, ChangeSetData::Kind::DescriptionSettings},
    {"EnergyBusSettings",   false, true,  ChangeSetData::Kind::EnergyBusSettings},
    {"MiscSettings",        true,  false, ChangeSetData::Kind::MiscSettings},
    {"J1939Settings",       true,  false, ChangeSetData::Kind::J1939Settings},
};

/// The stores of the catalogue, in the order of SettingStore.
constexpr SettingsStore kCatalogued[] = {SettingsStore::General, SettingsStore::J1939,
                                         SettingsStore::Description, SettingsStore::Misc};
// clang-format on

/// J1939 settings that are lists with an element for each line.
constexpr const char *kJ1939LineKeys[] = {
    "ecuinstance",  "function",        "functioninstance", "identitynumber",   "industrygroup",
    "startaddress", "vehicleinstance", "vehiclesystem",    "manufacturercode",
};

const SettingsRow &rowOf(SettingsStore store)
{
    return kStores[static_cast<size_t>(store)];
}

QString lineSuffix(quint8 line)
{
    return QStringLiteral("_%1").arg(line);
}

/// The key of a description setting as it is stored.
QString keyOfLine(const QString &key, quint8 line)
{
    return line > 0 ? key + lineSuffix(line) : key;
}

QStringList descriptionKeys()
{
    QStringList keys;
    for (const SettingDefault &row : kDescriptionDefaults)
        keys << QString::fromLatin1(row.key);
    for (const char *key : kCountsOfPdos)
        keys << QString::fromLatin1(key);
    return keys;
}

/// \a list with element \a line set; gaps are one blank each.
QString withElement(const QString &list, const QString &value, quint8 line)
{
    QStringList elements = list.split(QLatin1Char(','));
    while (elements.size() <= line)
        elements << QStringLiteral(" ");
    elements[line] = value;
    return elements.join(QLatin1Char(','));
}

/// Is the J1939 setting one of those that a line gets from another one at once?
bool isLineKey(const char *key)
{
    return std::any_of(std::begin(kJ1939LineKeys), std::end(kJ1939LineKeys),
                       [key](const char *known) { return qstrcmp(key, known) == 0; });
}

/// What the setting says for a line; empty if it says nothing.
QString elementOf(const QString &text, Setting::Span span, quint8 line)
{
    if (span == Setting::Span::OneOrEach)
        return LineList::shared(text, line).trimmed();
    const auto beyond =
        span == Setting::Span::LastRepeats ? LineList::Beyond::Last : LineList::Beyond::Nothing;
    return LineList::element(text, line, beyond).trimmed();
}

/// A value of all lines becomes a list in which the J1939 lines but \a line keep it.
void keepForOtherLines(ObjectDataBase &store, const QString &key, quint8 line)
{
    const QString common = store.getJ1939SettingsValue(key);
    if (common.isEmpty() || LineList::isList(common))
        return;
    const QList<quint8> lines = store.getNodes();
    for (const quint8 other : lines) {
        if (other != line && carriesJ1939(readLineType(store, other)))
            (void)store.setJ1939SettingsValueLine(key, common, other); // refused as the next one
    }
}

QStringList sortedKeys(const QHash<QString, QString> &settings)
{
    QStringList keys = settings.keys();
    keys.sort();
    return keys;
}

} // namespace

QHash<QString, QString> &StorePrivate::settings(SettingsStore store)
{
    const size_t number = static_cast<size_t>(store);
    QHash<QString, QString> &cache = settingsCache[number];
    if (!settingsRead[number]) {
        cache.clear();
        RowReader statement(
            *this,
            QStringLiteral("select item,value from %1").arg(QLatin1String(rowOf(store).table)));
        while (statement.next())
            cache.insert(statement.value(0).toString(), statement.value(1).toString());
        settingsRead[number] = statement.ok();
    }
    return cache;
}

void StorePrivate::forgetSettings()
{
    settingsRead.fill(false);
}

bool StorePrivate::writeSetting(SettingsStore store, const QString &key, const QString &value)
{
    const SettingsRow &row = rowOf(store);
    if (row.honoursLock && lockWriteAccess)
        return false;
    QHash<QString, QString> &cache = settings(store);
    const auto present = cache.constFind(key);
    if (present != cache.constEnd() && *present == value)
        return true;
    if (row.refusesApostrophe && value.contains(QLatin1Char('\''))) {
        qCWarning(lcStore) << row.table << "cannot hold an apostrophe:" << key << value;
        return false;
    }
    const QString text = value.isNull() ? QStringLiteral("") : value;
    const QLatin1String table(row.table);
    const bool done =
        present != cache.constEnd()
            ? exec(QStringLiteral("update %1 set value = ? where item = ?").arg(table), {text, key})
            : exec(QStringLiteral("insert into %1 values(?,?)").arg(table), {key, text});
    if (done)
        cache.insert(key, text);
    ChangeSetData change;
    change.kind = row.kind;
    emit owner->updateNotify(change);
    return done;
}

bool StorePrivate::removeSetting(SettingsStore store, const QString &key)
{
    const bool done =
        exec(QStringLiteral("DELETE FROM %1 WHERE item = ?").arg(QLatin1String(rowOf(store).table)),
             {key});
    if (done)
        settings(store).remove(key);
    return done;
}

QString StorePrivate::descriptionKey(const QString &key) const
{
    return keyOfLine(key, descriptionLine);
}

bool ObjectDataBase::existGeneralSettingsValue(const QString &key) const
{
    return d->settings(SettingsStore::General).contains(key);
}

QString ObjectDataBase::getGeneralSettingsValue(const QString &key) const
{
    return d->settings(SettingsStore::General).value(key);
}

bool ObjectDataBase::setGeneralSettingsValue(const QString &key, const QString &value)
{
    return d->writeSetting(SettingsStore::General, key, value);
}

bool ObjectDataBase::existJ1939SettingsValue(const QString &key) const
{
    return d->settings(SettingsStore::J1939).contains(key);
}

QString ObjectDataBase::getJ1939SettingsValue(const QString &key) const
{
    return d->settings(SettingsStore::J1939).value(key);
}

bool ObjectDataBase::setJ1939SettingsValue(const QString &key, const QString &value)
{
    return d->writeSetting(SettingsStore::J1939, key, value);
}

bool ObjectDataBase::existMiscSettingsValue(const QString &key) const
{
    return d->settings(SettingsStore::Misc).contains(key);
}

QString ObjectDataBase::getMiscSettingsValue(const QString &key) const
{
    return d->settings(SettingsStore::Misc).value(key);
}

bool ObjectDataBase::setMiscSettingsValue(const QString &key, const QString &value)
{
    return d->writeSetting(SettingsStore::Misc, key, value);
}

bool ObjectDataBase::existEnergyBusSettingsValue(const QString &key) const
{
    return d->settings(SettingsStore::EnergyBus).contains(key);
}

QString ObjectDataBase::getEnergyBusSettingsValue(const QString &key) const
{
    return d->settings(SettingsStore::EnergyBus).value(key);
}

bool ObjectDataBase::setEnergyBusSettingsValue(const QString &key, const QString &value)
{
    return d->writeSetting(SettingsStore::EnergyBus, key, value);
}

bool ObjectDataBase::removeEnergyBusSettingsValue(const QString &key)
{
    return d->removeSetting(SettingsStore::EnergyBus, key);
}

bool ObjectDataBase::existDescriptionSettingsValue(const QString &key) const
{
    // Deliberate: only this one takes a key that has the line's suffix already; held by
    // tst_settings.
    const bool suffixed = d->descriptionLine > 0 && key.endsWith(lineSuffix(d->descriptionLine));
    return d->settings(SettingsStore::Description)
        .contains(suffixed ? key : d->descriptionKey(key));
}

QString ObjectDataBase::getDescriptionSettingsValue(const QString &key) const
{
    return d->settings(SettingsStore::Description).value(d->descriptionKey(key));
}

bool ObjectDataBase::setDescriptionSettingsValue(const QString &key, const QString &value)
{
    const QString stored = d->descriptionKey(key);
    const auto &present = d->settings(SettingsStore::Description);
    if (present.contains(stored) && present.value(stored) != value)
        qCDebug(lcStore) << stored << "exists" << present.value(stored);
    return d->writeSetting(SettingsStore::Description, stored, value);
}

bool ObjectDataBase::addDescriptionSettingsValue(const QString &key, const QString &value)
{
    const QString stored = d->descriptionKey(key);
    if (d->settings(SettingsStore::Description).contains(stored))
        return true;
    const QSignalBlocker quiet(this); // a default is no change of the project
    return d->writeSetting(SettingsStore::Description, stored, value);
}

void ObjectDataBase::setDescriptionSettingsLine(quint8 line)
{
    d->descriptionLine = line;
}

void ObjectDataBase::addDefaultDescriptionSettings(quint8 line)
{
    setDescriptionSettingsLine(line);
    for (const SettingDefault &row : kDescriptionDefaults)
        addDescriptionSettingsValue(QString::fromLatin1(row.key), QString::fromLatin1(row.value));
}

QString ObjectDataBase::getGeneralSettingsValueLine(const QString &key, quint8 line) const
{
    return LineList::element(getGeneralSettingsValue(key), line, LineList::Beyond::Last);
}

bool ObjectDataBase::setGeneralSettingsValueLine(const QString &key, const QString &value,
                                                 quint8 line)
{
    return setGeneralSettingsValue(key, withElement(getGeneralSettingsValue(key), value, line));
}

QString ObjectDataBase::getJ1939SettingsValueLine(const QString &key, quint8 line) const
{
    return LineList::element(getJ1939SettingsValue(key), line, LineList::Beyond::Whole);
}

bool ObjectDataBase::setJ1939SettingsValueLine(const QString &key, const QString &value,
                                               quint8 line)
{
    return setJ1939SettingsValue(key, withElement(getJ1939SettingsValue(key), value, line));
}

bool ObjectDataBase::fixGeneralSettingsValueLine(const QString &key, quint8 lastLine)
{
    const QStringList elements = getGeneralSettingsValue(key).split(QLatin1Char(','));
    return setGeneralSettingsValue(key, elements.mid(0, lastLine + 1).join(QLatin1Char(',')));
}

void ObjectDataBase::fixGeneralsettingsLineCount()
{
    const QList<quint8> lines = getNodes();
    if (lines.isEmpty())
        return;
    const QStringList keys = getGeneralLineDependentSettings();
    for (const QString &key : keys)
        fixGeneralSettingsValueLine(key, lines.last());
}

bool ObjectDataBase::copyLineSettings(ObjectDataBase &other, quint8 line, quint8 otherLine)
{
    bool done = true;
    const QStringList described = descriptionKeys();
    const QHash<QString, QString> descriptions = other.d->settings(SettingsStore::Description);
    for (const QString &key : described) {
        const auto found = descriptions.constFind(keyOfLine(key, otherLine));
        if (found != descriptions.constEnd())
            done =
                d->writeSetting(SettingsStore::Description, keyOfLine(key, line), *found) && done;
    }
    const QStringList general = getGeneralLineDependentSettings();
    for (const QString &key : general) {
        const QString value = other.getGeneralSettingsValueLine(key, otherLine);
        if (value != getGeneralSettingsValueLine(key, line))
            done = setGeneralSettingsValueLine(key, value, line) && done;
    }
    for (const char *name : kJ1939LineKeys) {
        const QString key = QLatin1String(name);
        const QString value = LineList::shared(other.getJ1939SettingsValue(key), otherLine);
        if (value.isEmpty() || value == getJ1939SettingsValueLine(key, line))
            continue;
        keepForOtherLines(*this, key, line);
        done = setJ1939SettingsValueLine(key, value, line) && done;
    }
    // What the line carries is the project's choice, where it has made one.
    const QString typeKey = QStringLiteral("line%1type");
    const QString type = other.getGeneralSettingsValue(typeKey.arg(otherLine));
    if (!type.isEmpty() && getGeneralSettingsValue(typeKey.arg(line)).isEmpty())
        done = setGeneralSettingsValue(typeKey.arg(line), type) && done;
    return done;
}

/// Those with an element for each line that copyLineSettings() does not know.
bool ObjectDataBase::copyFurtherSettings(ObjectDataBase &other, quint8 line, quint8 otherLine)
{
    bool done = true;
    const auto copy = [&](SettingsStore store, const Setting &setting) {
        const QString key = QLatin1String(setting.key);
        const QString there = other.d->settings(store).value(key);
        const QString here = d->settings(store).value(key);
        const QString value = elementOf(there, setting.span, otherLine);
        if (value.isEmpty() || value == elementOf(here, setting.span, line))
            return;
        QString list = here;
        const QList<quint8> lines = getNodes();
        for (const quint8 keeping : lines) {
            if (keeping != line)
                list = withElement(list, elementOf(here, setting.span, keeping), keeping);
        }
        done = d->writeSetting(store, key, withElement(list, value, line)) && done;
    };
    const QStringList known = getGeneralLineDependentSettings();
    for (const SettingTopic &topic : SettingsCatalogue::topics()) {
        for (const Setting &setting : topic) {
            if (setting.span == Setting::Span::Project ||
                known.contains(QLatin1String(setting.key)))
                continue;
            if (topic.store == SettingStore::General)
                copy(SettingsStore::General, setting);
            else if (topic.store == SettingStore::J1939 && !isLineKey(setting.key))
                copy(SettingsStore::J1939, setting);
        }
    }
    return done;
}

QStringList ObjectDataBase::getGeneralLineDependentSettings()
{
    return {QStringLiteral("nmtmaster"),
            QStringLiteral("co_node_id"),
            QStringLiteral("co_node_id_fct"),
            QStringLiteral("overwrite_predef"),
            QStringLiteral("receivebuffersize"),
            QStringLiteral("transmitbuffersize"),
            QStringLiteral("isotp_client_con"),
            QStringLiteral("isotp_server_con"),
            QStringLiteral("uds_physical_request_id"),
            QStringLiteral("uds_physical_response_id"),
            QStringLiteral("uds_functional_request_id")};
}

void ObjectDataBase::removeNodeInGeneralSettings(quint8 line)
{
    const QSignalBlocker quiet(this); // whoever removes a line announces it
    const QString typeKey = QStringLiteral("line%1type").arg(line);
    const QStringList keys = getGeneralSettingsKeys();
    for (const QString &key : keys) {
        if (key.contains(typeKey)) {
            d->removeSetting(SettingsStore::General, key);
            continue;
        }
        // Deliberate: every value with commas loses the element, a list by line or not; held by
        // tst_settings.
        QStringList elements = getGeneralSettingsValue(key).split(QLatin1Char(','));
        if (line >= elements.size())
            continue;
        elements.removeAt(line);
        setGeneralSettingsValue(key, elements.join(QLatin1Char(',')));
    }
}

void ObjectDataBase::removeNodeInDescriptionSettings(quint8 line)
{
    const QString suffix = lineSuffix(line);
    const QStringList keys = getDescriptionSettingsKeys();
    for (const QString &key : keys) {
        if (key.endsWith(suffix))
            d->removeSetting(SettingsStore::Description, key);
    }
}

QMap<QString, QString> ObjectDataBase::getStoredSettings(SettingStore store) const
{
    QMap<QString, QString> sorted;
    const QHash<QString, QString> &stored = d->settings(kCatalogued[static_cast<size_t>(store)]);
    for (auto setting = stored.cbegin(); setting != stored.cend(); ++setting)
        sorted.insert(setting.key(), setting.value());
    return sorted;
}

QStringList ObjectDataBase::getGeneralSettingsKeys() const
{
    return sortedKeys(d->settings(SettingsStore::General));
}

QStringList ObjectDataBase::getDescriptionSettingsKeys() const
{
    return sortedKeys(d->settings(SettingsStore::Description));
}

QStringList ObjectDataBase::getJ1939SettingsKeys() const
{
    return sortedKeys(d->settings(SettingsStore::J1939));
}

QStringList ObjectDataBase::getEnergyBusKeys() const
{
    return sortedKeys(d->settings(SettingsStore::EnergyBus));
}
