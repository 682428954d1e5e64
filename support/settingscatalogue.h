// The settings of a project that the tool knows: one table of all keys, with how each is read and
// what it means. docs/settings.md is made of it. The store itself keeps any key, and readers do not
// ask here; tst_settingscatalogue holds the table to what they read.
#pragma once

#include <QString>
#include <QVector>

/// The key-value tables of a project. The one of EnergyBus is left out: its keys are free.
enum class SettingStore { General, J1939, Description, Misc };

/// A row of the catalogue. Texts are ASCII.
struct Setting {
    /// How the value is read. One that cannot be read so counts as 0, as off, or as not set.
    enum class Form {
        Flag,       ///< 1 is on, every other value is off
        Switch,     ///< every number above 0 is on
        True,       ///< the word "true" is on, in lower case
        Truth,      ///< all is on but an empty text, 0 and "false"
        Decimal,    ///< digits with or without a sign
        ByPrefix,   ///< hexadecimal after "0x", else decimal
        Expression, ///< goes into C as it is: a number, or an expression such as the name of a
                    ///< macro
        Name,       ///< an identifier of C
        Code,       ///< lines of C
        Text,       ///< one line of text
        TextLines,  ///< lines of text
        Files,      ///< names of files, parted by blanks
        Portable,   ///< the word "portable" is on; "classic" stands for off
    };

    /// Is there one value, or a list with an element for each line of the device? Element n is that
    /// of line n, whichever lines the device has.
    enum class Span {
        Project,     ///< one value
        EachLine,    ///< a list that must have an element for each line
        LastRepeats, ///< a list whose last element stands for all lines beyond
        OneOrEach,   ///< one value for all lines; with a comma as EachLine
    };

    struct Range {
        qint64 low = 0;
        qint64 high = -1;
        constexpr bool isKnown() const { return low <= high; }
        constexpr bool contains(qint64 number) const { return low <= number && number <= high; }
    };

    const char *key; ///< "%1" stands for a number
    Form form;
    Span span;
    Range range;         ///< of the number, of each one in a list
    const char *unit;    ///< of the number; empty if it has none
    const char *changes; ///< macros and files, parted by ", "; macros as the classic stack has them
    const char *meaning; ///< for an engineer; a full stop only between sentences
    Range numbers = {};  ///< what "%1" can be
    bool isRead = true;  ///< false: the tool only writes it

    constexpr bool isNumbered() const { return numbers.isKnown(); }
};

/// Settings that belong together, in the order of the document.
struct SettingTopic {
    SettingStore store;
    const char *title;
    const Setting *first;
    const Setting *last; ///< after the last row
    const Setting *begin() const { return first; }
    const Setting *end() const { return last; }
};

namespace SettingsCatalogue
{

/// All rows: a store's topics stand together.
const QVector<SettingTopic> &topics();

/// The store's name as projects and modifier files write it, such as "GeneralSettings".
const char *nameOf(SettingStore store);

/// The row of \a key as a project spells it: "line0type" has that of "line%1type", and a
/// description setting may end in the number of its line, as "VendorName_2" does. Null if the tool
/// does not know the key. May be called from any thread.
const Setting *find(SettingStore store, const QString &key);

/// The key that is most like \a key, which the store does not know, with the number that \a key
/// has; empty if none is near enough to be meant.
QString nearest(SettingStore store, const QString &key);

} // namespace SettingsCatalogue
