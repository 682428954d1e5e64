// Values of the project that the command line sets.
#include "app/runsettings.h"

#include "formats/edsvalues.h"
#include "store/objectdatabase.h"
#include "store/projectfeatures.h"
#include "support/cohelper.h"
#include "support/implementation.h"
#include "support/numbers.h"
#include "support/printable.h"
#include "support/problems.h"
#include "support/settingscatalogue.h"

#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace
{

constexpr int kLongestMeant = 80; // characters of a word that is compared with others

/// A kind of settings; its prefix is followed by a colon.
struct StoreRow {
    const char *prefix;
    SettingStore store;
    const char *kind;
    bool (ObjectDataBase::*set)(const QString &, const QString &);
};

constexpr StoreRow kStores[] = {
    {"", SettingStore::General, "general", &ObjectDataBase::setGeneralSettingsValue},
    {"J1939", SettingStore::J1939, "J1939", &ObjectDataBase::setJ1939SettingsValue},
    {"Misc", SettingStore::Misc, "misc", &ObjectDataBase::setMiscSettingsValue},
    {"Description", SettingStore::Description, "description",
     &ObjectDataBase::setDescriptionSettingsValue},
};

const StoreRow *findStore(const QString &prefix)
{
    for (const StoreRow &row : kStores) {
        if (prefix == QLatin1String(row.prefix))
            return &row;
    }
    return nullptr;
}

QString full(const StoreRow &row, const QString &key)
{
    const QString prefix = QLatin1String(row.prefix);
    return prefix.isEmpty() ? key : prefix + QLatin1Char(':') + key;
}

/// The end of a sentence about a name that begins with \a prefix, which is none: what it is with
/// the right one, if \a prefix is that of modifier files and text projects or in other letters.
QString meantByPrefix(const QString &prefix, const QString &key)
{
    for (const StoreRow &row : kStores) {
        const QString group = QLatin1String(SettingsCatalogue::nameOf(row.store));
        if (prefix.compare(QLatin1String(row.kind), Qt::CaseInsensitive) == 0 ||
            prefix.compare(group, Qt::CaseInsensitive) == 0)
            return QStringLiteral("; did you mean ") + quotedWord(full(row, key));
    }
    return QString();
}

/// What \a key is called where a setting of this name is known; empty if none is near.
QString meant(const StoreRow &own, const QString &key)
{
    for (const StoreRow &row : kStores) {
        if (SettingsCatalogue::find(row.store, key))
            return full(row, key); // of another kind
    }
    const QString near =
        key.size() > kLongestMeant ? QString() : SettingsCatalogue::nearest(own.store, key);
    return near.isEmpty() ? near : full(own, near);
}

/// What the reader of a setting wants where it has \a text, which it would take for 0 or for off;
/// null if it can read that.
const char *wantedInPlaceOf(const QString &text, Setting::Form form)
{
    bool isRead = true;
    switch (form) {
    case Setting::Form::Flag:
    case Setting::Form::Switch:
    case Setting::Form::Decimal:
        (void)text.trimmed().toLongLong(&isRead);
        return isRead ? nullptr : "a decimal number";
    case Setting::Form::ByPrefix:
        (void)Numbers::toLongLongByPrefix(text, &isRead);
        return isRead ? nullptr : "a number";
    case Setting::Form::True:
        isRead = text == QLatin1String("true") || text == QLatin1String("false") ||
                 text == QLatin1String("0");
        return isRead ? nullptr : "\"true\" or \"false\"";
    default:
        return nullptr;
    }
}

/// The end of a sentence about the first element of \a value that cannot be read; empty if all can.
QString whyNotRead(const Setting &setting, const QString &value)
{
    const bool isList = setting.span != Setting::Span::Project;
    const QStringList elements = isList ? value.split(QLatin1Char(',')) : QStringList(value);
    for (const QString &element : elements) {
        const char *wanted =
            element.trimmed().isEmpty() ? nullptr : wantedInPlaceOf(element, setting.form);
        if (wanted)
            return QStringLiteral("it takes %1, and %2 is none")
                .arg(QLatin1String(wanted), quotedWord(element));
    }
    return QString();
}

bool fits(const QString &text, int bits, bool isSigned)
{
    bool ok = false;
    if (isSigned) {
        const qint64 highest = std::numeric_limits<qint64>::max() >> (64 - bits);
        const qint64 number = Numbers::toLongLongByPrefix(text, &ok);
        return ok && number <= highest && number >= -highest - 1;
    }
    return Numbers::toULongLongByPrefix(text, &ok) <= ~quint64(0) >> (64 - bits) && ok;
}

/// The number that is added to the node-ID in \a text, which is in the form of the importer; empty
/// for the node-ID alone. Other texts as they are.
QString withoutNodeId(const QString &text)
{
    const QLatin1String nodeId("$NODEID");
    const QLatin1String sum("$NODEID+");
    if (text.startsWith(sum) && text.size() > sum.size())
        return text.mid(sum.size());
    return text == nodeId ? QString() : text;
}

/// Would generated C have this value? It has 0 for what is no number, and no bits above the type's.
bool isValueOf(CAN::CANopenDataType type, const QString &text)
{
    const int bits = int(COHelper::getDataLengthBits(type));
    if (bits == 0 || bits > 64 || text.isEmpty())
        return true;
    bool ok = false;
    if (type == CAN::CANopenDataType::Real32)
        return std::isfinite(text.toFloat(&ok)) && ok;
    if (type == CAN::CANopenDataType::Real64)
        return std::isfinite(text.toDouble(&ok)) && ok;
    const QString number = withoutNodeId(text);
    return number.isEmpty() || fits(number, bits, COHelper::isSignedInteger(type));
}

bool readPlace(const QString &text, ObjectPlace &place)
{
    static const QRegularExpression form(QStringLiteral(
        "^(?:([0-9]{1,3})/)?(0[xX][0-9a-fA-F]{1,4}):(0[xX][0-9a-fA-F]{1,2}|[0-9]{1,3})$"));
    const QRegularExpressionMatch match = form.match(text);
    const quint32 line = match.captured(1).toUInt(); // 0 if there is none
    const quint32 sub = Numbers::toUIntByPrefix(match.captured(3));
    place = {quint8(line), quint16(Numbers::toUIntByPrefix(match.captured(2))), quint8(sub)};
    return match.hasMatch() && line <= 0xFF && sub <= 0xFF;
}

} // namespace

bool RunSettings::apply(const QString &assignment)
{
    given = assignment;
    const int end = assignment.indexOf(QLatin1Char('='));
    if (end <= 0)
        return refuse("setting-form", QStringLiteral("it is not of the form <key>=<value>"));
    const QString name = assignment.left(end);
    const QString value = assignment.mid(end + 1);
    database.setLockWriteAccess(false);
    return name.at(0).isDigit() ? applyObject(name, value) : applySetting(name, value);
}

bool RunSettings::applySetting(const QString &name, const QString &value)
{
    const int colon = name.indexOf(QLatin1Char(':'));
    const QString key = name.mid(colon + 1);
    const StoreRow *row = findStore(name.left(qMax(colon, 0)));
    if (!row || colon == 0)
        return refuse(
            "setting-form",
            QStringLiteral("before the colon stands none of J1939, Misc and Description") +
                meantByPrefix(name.left(colon), key));
    const Setting *setting = SettingsCatalogue::find(row->store, key);
    if (!setting) {
        const QString near = meant(*row, key);
        return refuse("unknown-setting",
                      QStringLiteral("there is no %1 setting %2%3")
                          .arg(QLatin1String(row->kind), quotedWord(key),
                               near.isEmpty()
                                   ? QStringLiteral("; docs/settings.md has all")
                                   : QStringLiteral("; did you mean ") + quotedWord(near)));
    }
    const QString unread = whyNotRead(*setting, value);
    if (!unread.isEmpty())
        return refuse("setting-form", unread);
    database.setDescriptionSettingsLine(0); // keys of other lines have their suffix already
    if (!(database.*row->set)(key, value))
        return refuse("setting-not-kept", QStringLiteral("the project could not take it"));
    settings << QLatin1String(SettingsCatalogue::nameOf(row->store)) + QLatin1Char(':') + key;
    return true;
}

bool RunSettings::applyObject(const QString &text, const QString &value)
{
    ObjectPlace place;
    if (!readPlace(text, place))
        return refuse("setting-form",
                      QStringLiteral("%1 is no place of an object; it is written as 0x1018:4, or "
                                     "1/0x1018:4 for line 1")
                          .arg(quotedWord(text)));
    ObjectDataBase::SUBINDEX_DATA_T data;
    if (!database.getSubIndexData(place.line, place.index, place.sub, data))
        return refuse("unknown-object", whyNoObject(place));
    const auto type = static_cast<CAN::CANopenDataType>(data.dataType);
    data.defaultValue = EdsValues::normalize(value, data.dataType);
    if (!isValueOf(type, data.defaultValue))
        return refuse(
            "setting-form",
            QStringLiteral("the type of the object has no value %1").arg(quotedWord(value)));
    if (COHelper::isStringLike(type)) {
        const auto bytes = quint32(data.defaultValue.toUtf8().size());
        // One that the tool defines grows with its value.
        if (bytes > data.size && data.implementation == Implementation::kApplicationVariable &&
            !readProjectFeatures(database).hasGeneratedVariables())
            return refuse("setting-too-long",
                          QStringLiteral("the variable of the application has a size of %1 bytes, "
                                         "and the value has %2; with generate_variables=1 set "
                                         "before it, the tool defines the variable, and makes "
                                         "room")
                              .arg(QString::number(data.size), QString::number(bytes)));
        data.size = qMax(data.size, bytes);
    }
    return database.addSubIndex(place.line, place.index, place.sub, data) ||
           refuse("setting-not-kept", QStringLiteral("the project could not take it"));
}

QString RunSettings::whyNoObject(const ObjectPlace &place) const
{
    const QString line = QString::number(place.line);
    const QString index = QStringLiteral("0x") + Numbers::toHex(place.index, 4);
    if (!database.existNode(place.line))
        return QStringLiteral("the project has no line %1").arg(line);
    if (!database.existIndex(place.line, place.index))
        return QStringLiteral("line %1 of the project has no object %2").arg(line, index);
    return QStringLiteral("the object %1 of line %2 has no subindex %3")
        .arg(index, line, QString::number(place.sub));
}

bool RunSettings::refuse(const char *rule, const QString &reason) const
{
    Problems::error(rule, {},
                    QStringLiteral("%1 could not be set: %2").arg(quotedWord(given), reason));
    return false;
}
