// General settings as generators read them: as text, as a decimal number, or by prefix.
#pragma once

#include "generators/ctext.h"
#include "store/objectdatabase.h"
#include "support/numbers.h"

/// A view on the general settings of a store; cheap to make and to copy. A setting that is missing
/// or no number reads as empty and 0.
class GeneralSettings
{
public:
    explicit GeneralSettings(const ObjectDataBase &database) : store(&database) {}

    /// As a value for the rest of a line of C, see CText::line().
    QString text(const char *key) const { return CText::line(freeText(key)); }
    /// As it stands in the project: lines of C, a name for a comment, or a list of files.
    QString freeText(const char *key) const
    {
        return store->getGeneralSettingsValue(QLatin1String(key));
    }
    QString trimmed(const char *key) const { return text(key).trimmed(); }

    /// Names of functions and headers: blanks count as nothing.
    bool isSet(const char *key) const { return !trimmed(key).isEmpty(); }

    qint32 decimal(const char *key) const { return Numbers::toIntDecimal(text(key)); }

    /// Hexadecimal after "0x", else decimal.
    quint32 byPrefix(const char *key) const { return Numbers::toUIntByPrefix(text(key)); }

    /// The element of \a line in a comma list; the last element stands for all lines beyond.
    QString ofLine(const char *key, quint8 line) const
    {
        return CText::line(store->getGeneralSettingsValueLine(QLatin1String(key), line));
    }
    qint32 decimalOfLine(const char *key, quint8 line) const
    {
        return Numbers::toIntDecimal(ofLine(key, line));
    }

private:
    const ObjectDataBase *store;
};
