// Look-up in the catalogue of settings.
#include "support/settingscatalogue.h"

#include "support/editdistance.h"

#include <QHash>
#include <QRegularExpression>

#include <array>

namespace
{

constexpr std::array<const char *, 4> kNames = { // in the order of SettingStore
    "GeneralSettings", "J1939Settings", "DescriptionSettings", "MiscSettings"};

/// In characters; what is longer is no key, and is not looked at piece by piece.
constexpr int kLongestKey = 200;

using Index = QHash<QString, const Setting *>;

QVector<const Setting *> rowsOf(SettingStore store)
{
    QVector<const Setting *> rows;
    for (const SettingTopic &topic : SettingsCatalogue::topics()) {
        if (topic.store != store)
            continue;
        for (const Setting &setting : topic)
            rows << &setting;
    }
    return rows;
}

/// The rows of a store by their keys, made when the first one is looked for.
const Index &indexOf(SettingStore store)
{
    static const std::array<Index, kNames.size()> indices = [] {
        std::array<Index, kNames.size()> made;
        for (size_t number = 0; number < made.size(); ++number) {
            for (const Setting *setting : rowsOf(SettingStore(number)))
                made[number].insert(QLatin1String(setting->key), setting);
        }
        return made;
    }();
    return indices[size_t(store)];
}

/// The part of a description key that names a line above 0, such as "_2"; empty in other stores.
QString lineSuffix(SettingStore store, const QString &key)
{
    static const QRegularExpression suffix(QStringLiteral("_[1-9][0-9]{0,2}$"));
    if (store != SettingStore::Description)
        return QString();
    const QString text = suffix.match(key).captured();
    return text.midRef(1).toUInt() <= 0xFF ? text : QString();
}

/// The row of a key of which one number stands for "%1".
const Setting *findNumbered(const Index &index, const QString &key)
{
    static const QRegularExpression digits(QStringLiteral("[0-9]+"));
    for (auto match = digits.globalMatch(key); match.hasNext();) {
        const QRegularExpressionMatch found = match.next();
        const QString number = found.captured();
        QString pattern = key;
        pattern.replace(found.capturedStart(), found.capturedLength(), QStringLiteral("%1"));
        const Setting *setting = index.value(pattern);
        // Readers make their keys of a number, which has no leading zeros.
        if (setting && setting->numbers.contains(number.toLongLong()) &&
            number == QString::number(number.toLongLong()))
            return setting;
    }
    return nullptr;
}

/// The key of \a setting with the number that \a key has, or else the lowest one.
QString keyLike(const Setting &setting, const QString &key)
{
    static const QRegularExpression digits(QStringLiteral("[0-9]+"));
    const QString pattern = QLatin1String(setting.key);
    if (!setting.isNumbered())
        return pattern;
    const qint64 number = digits.match(key).captured().toLongLong();
    return pattern.arg(setting.numbers.contains(number) ? number : setting.numbers.low);
}

/// As nearest(), of a key without the number of a line.
QString nearestTo(SettingStore store, const QString &key)
{
    int least = qBound(1, key.size() / 4, 4) + 1; // what is as far away has another meaning
    QString best;
    for (const Setting *setting : rowsOf(store)) {
        const QString candidate = keyLike(*setting, key);
        if (!setting->isRead || qAbs(candidate.size() - key.size()) >= least)
            continue;
        const int distance = editDistance(candidate, key);
        if (distance < least) {
            least = distance;
            best = candidate;
        }
    }
    return best;
}

} // namespace

const char *SettingsCatalogue::nameOf(SettingStore store)
{
    return kNames[size_t(store)];
}

const Setting *SettingsCatalogue::find(SettingStore store, const QString &key)
{
    if (key.size() > kLongestKey)
        return nullptr;
    const Index &index = indexOf(store);
    for (const QString &name : {key, key.chopped(lineSuffix(store, key).size())}) {
        const Setting *setting = index.value(name);
        if (setting && !setting->isNumbered())
            return setting;
    }
    return findNumbered(index, key);
}

QString SettingsCatalogue::nearest(SettingStore store, const QString &key)
{
    if (key.size() > kLongestKey)
        return QString();
    const QString suffix = lineSuffix(store, key);
    const QString plain =
        suffix.isEmpty() ? QString() : nearestTo(store, key.chopped(suffix.size()));
    return plain.isEmpty() ? nearestTo(store, key) : plain + suffix;
}
