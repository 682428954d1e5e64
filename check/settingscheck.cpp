// Settings of a project that do not do what they seem to do.
#include "check/settingscheck.h"

#include "store/objectdatabase.h"
#include "support/linelist.h"
#include "support/numbers.h"
#include "support/printable.h"
#include "support/problems.h"

#include <QMap>
#include <QRegularExpression>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <utility>

namespace
{

using Form = Setting::Form;
using Span = Setting::Span;

constexpr SettingStore kStores[] = {SettingStore::General, SettingStore::J1939,
                                    SettingStore::Description, SettingStore::Misc};

/// A file that is no project of any tool can have any number of keys.
constexpr int kMostUnknown = 100;

/// Counters that other tools of the family keep in projects.
constexpr const char *kKeptByOthers[] = {"routing_counts", "sdm_loop_counter", "srdo_loop_counter"};

constexpr const char *kDescriptionForms[] = {"portable", "classic"};

/// What the check and the report of the run tell of.
constexpr const char *kToldElsewhere[] = {"receivebuffersize", "transmitbuffersize", "cmdtpackets",
                                          "sdo_blocktransfer_block_size", "line%1type"};

template <size_t N>
bool isListed(const char *const (&keys)[N], const QString &key)
{
    return std::any_of(std::begin(keys), std::end(keys),
                       [&key](const char *listed) { return key == QLatin1String(listed); });
}

bool isOneOf(const QString &word, std::initializer_list<const char *> words)
{
    return std::any_of(words.begin(), words.end(), [&word](const char *candidate) {
        return word.compare(QLatin1String(candidate), Qt::CaseInsensitive) == 0;
    });
}

/// A word with which its writer has surely meant that something is off.
bool meansOff(const QString &word)
{
    return isOneOf(word, {"0", "false", "no", "off", "none", "disabled"});
}

QString nameOf(SettingStore store)
{
    return QLatin1String(SettingsCatalogue::nameOf(store));
}

/// Is the text one that C cannot take as a number or an expression, such as "10 ms"?
bool isNoExpression(const QString &text)
{
    static const QRegularExpression number(
        QStringLiteral("^(0[xX][0-9a-fA-F]+|[0-9]+)[uUlL]*$|^[0-9.]+([eE][0-9]+)?[fFlL]?$"));
    static const QRegularExpression twoWords(
        QStringLiteral("\\b[0-9][A-Za-z0-9_.]*\\s+[A-Za-z0-9_#]"));
    static const QRegularExpression word(QStringLiteral("[A-Za-z0-9_.]+"));
    for (auto match = word.globalMatch(text); match.hasNext();) {
        const QString token = match.next().captured();
        if (token.at(0).isDigit() && !number.match(token).hasMatch())
            return true;
    }
    return twoWords.match(text).hasMatch();
}

/// Why a value is another one than it looks.
struct Fault {
    const char *rule = nullptr; ///< null: it is none
    QString text;               ///< what follows "the value x of y"
};

Fault rangeFault(const Setting &row, qint64 number)
{
    // 0 stands for what is not set in many settings, also where it is no sound value.
    if (!row.range.isKnown() || number == 0 || row.range.contains(number))
        return {};
    return {"setting-range",
            QStringLiteral("is not in the range from %1 to %2, and generated files "
                           "have it cut to its type, as 0, or as it is: write a "
                           "number of this range")
                .arg(QString::number(row.range.low), QString::number(row.range.high))};
}

Fault switchFault(const Setting &row, const QString &value)
{
    bool isNumber = false;
    const qint64 number = Numbers::toLongLongByPrefix(value, &isNumber);
    const auto fault = [](const char *text) { return Fault{"setting-value", QLatin1String(text)}; };
    if (row.form == Form::Flag && isNumber && number != 0 && number != 1)
        return fault("may count as off: write 1 for on, or 0 for off");
    if ((row.form == Form::Flag || row.form == Form::Switch) && !isNumber && !meansOff(value))
        return fault("counts as off: write 1 for on, or 0 for off");
    if (row.form == Form::True && value != QLatin1String("true") && !meansOff(value))
        return fault("counts as off: write true, in lower case, for on");
    if (row.form == Form::Portable && !isListed(kDescriptionForms, value))
        return fault("counts as classic: write portable or classic");
    if (row.form == Form::Truth && !isOneOf(value, {"0", "false"}) && meansOff(value))
        return fault("counts as on: write 0 for off");
    return {};
}

Fault numberFault(const Setting &row, const QString &value)
{
    const bool isDecimal = row.form == Form::Decimal;
    bool isNumber = false;
    const qint64 number =
        isDecimal ? value.toLongLong(&isNumber, 10) : Numbers::toLongLongByPrefix(value, &isNumber);
    if (isNumber)
        return rangeFault(row, number);
    if (row.span == Span::Project && LineList::isList(value))
        return {"setting-value",
                QStringLiteral("is read as 0: this setting is one number for all lines")};
    const QString advice =
        isDecimal ? QStringLiteral("is no decimal number, and is read as 0: write digits only")
                  : QStringLiteral("is no number, and is read as 0: write digits only, or 0x "
                                   "and hexadecimal digits");
    return {"setting-value", row.unit[0] == '\0'
                                 ? advice
                                 : advice + QLatin1String(", in ") + QLatin1String(row.unit)};
}

Fault expressionFault(const Setting &row, const QString &value)
{
    bool isNumber = false;
    const qint64 number = Numbers::toLongLongByPrefix(value, &isNumber);
    if (isNumber)
        return rangeFault(row, number);
    if (!isNoExpression(value))
        return {};
    return {"setting-value", QStringLiteral("is neither a number nor an expression of C, and "
                                            "stands in generated files as it is: write a number, "
                                            "or the name of a macro")};
}

/// Of a value or an element of a list.
Fault faultOf(const Setting &row, const QString &value)
{
    if (value.isEmpty())
        return {};
    switch (row.form) {
    case Form::Flag:
    case Form::Switch:
    case Form::True:
    case Form::Truth:
    case Form::Portable:
        return switchFault(row, value);
    case Form::Decimal:
    case Form::ByPrefix:
        return numberFault(row, value);
    case Form::Expression:
        return expressionFault(row, value);
    case Form::Name:
    case Form::Code:
    case Form::Text:
    case Form::TextLines:
    case Form::Files:
        break;
    }
    return {};
}

} // namespace

SettingsCheck::SettingsCheck(const ObjectDataBase &store, Locate locator)
    : project(store), locate(std::move(locator)), lines(store.getNodes())
{
}

void SettingsCheck::run()
{
    for (const SettingStore store : kStores) {
        const QMap<QString, QString> settings = project.getStoredSettings(store);
        for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting)
            checkSetting(store, setting.key(), setting.value());
    }
    if (unknown > kMostUnknown)
        Problems::warning("unknown-setting", QString(),
                          QStringLiteral("nothing reads %1 more settings of the project")
                              .arg(unknown - kMostUnknown));
}

void SettingsCheck::checkSetting(SettingStore store, const QString &key, const QString &text)
{
    const Setting *row = SettingsCatalogue::find(store, key);
    if (!row)
        return tellUnknown(store, key);
    const QString words = text.trimmed();
    if (!row->isRead || words.isEmpty() || isListed(kToldElsewhere, QLatin1String(row->key)))
        return;
    const bool isList = row->span != Span::Project && LineList::isList(words);
    const QStringList values = isList ? words.split(QLatin1Char(',')) : QStringList(words);
    for (const QString &value : values) {
        const Fault fault = faultOf(*row, value.trimmed());
        if (fault.rule)
            return tell(fault.rule, store, key,
                        QStringLiteral("the value %1 of %2 %3")
                            .arg(quotedWord(value.trimmed()), quotedWord(key), fault.text));
    }
    if (isList)
        checkList(*row, store, key, values);
}

void SettingsCheck::tellUnknown(SettingStore store, const QString &key)
{
    if (key.isEmpty() || isListed(kKeptByOthers, key))
        return; // of a line of a text project that has no key, its reading tells
    if (unknown >= kMostUnknown) {
        ++unknown;
        return;
    }
    QString advice;
    for (const SettingStore other : kStores) {
        if (SettingsCatalogue::find(other, key))
            advice = QStringLiteral("%1 has one of this name").arg(nameOf(other));
    }
    const QString meant = SettingsCatalogue::nearest(store, key);
    if (!meant.isEmpty())
        advice = QStringLiteral("did you mean %1").arg(quotedWord(meant));
    // Tools with windows keep their state in the Misc settings.
    if (advice.isEmpty() && store == SettingStore::Misc)
        return;
    ++unknown;
    tell("unknown-setting", store, key,
         QStringLiteral("nothing reads %1 of %2, and it has no effect: %3")
             .arg(quotedWord(key), nameOf(store),
                  advice.isEmpty() ? QStringLiteral("remove it") : advice));
}

/// What an element means is decided by its place, which is that of the line's number.
void SettingsCheck::checkList(const Setting &row, SettingStore store, const QString &key,
                              const QStringList &elements) const
{
    if (lines.isEmpty() || row.span == Span::LastRepeats)
        return;
    for (int number = lines.last() + 1; number < elements.size(); ++number) {
        const QString value = elements.at(number).trimmed();
        if (value.isEmpty() || value == elements.at(lines.last()).trimmed())
            continue;
        return tell("setting-list", store, key,
                    QStringLiteral("the value %1 of %2 is for line %3, which the device does not "
                                   "have: the first element of the list is that of line 0, the "
                                   "next one that of line 1, and so on")
                        .arg(quotedWord(value), quotedWord(key), QString::number(number)));
    }
    // The check tells of the others.
    if (key != QLatin1String("additional_cob_count") || lines.last() < elements.size())
        return;
    tell("short-list", store, key,
         QStringLiteral("the list of %1 has no element for line %2, which has 0: list one for each "
                        "line number up to %2, or give one value without comma for all lines")
             .arg(quotedWord(key), QString::number(lines.last())));
}

void SettingsCheck::tell(const char *rule, SettingStore store, const QString &key,
                         const QString &text) const
{
    const Place place = locate(nameOf(store), key);
    Problems::warning(rule, place.file, text, place.line);
}
