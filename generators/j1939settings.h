// J1939 settings as generators read them, the twin of GeneralSettings.
#pragma once

#include "generators/ctext.h"
#include "store/objectdatabase.h"
#include "support/linelist.h"
#include "support/numbers.h"

/// A view on the J1939 settings of a store; cheap to make and to copy. A setting that is missing or
/// no number reads as empty and 0.
class J1939Settings
{
public:
    explicit J1939Settings(const ObjectDataBase &database) : store(&database) {}

    /// As a value for the rest of a line of C, see CText::line().
    QString text(const QString &key) const
    {
        return CText::line(store->getJ1939SettingsValue(key));
    }
    qint32 decimal(const char *key) const
    {
        return Numbers::toIntDecimal(text(QLatin1String(key)));
    }

    /// What the setting says of \a line: of the address and the parts of the NAME, a text without
    /// comma is that of all lines.
    QString ofLine(const char *key, quint8 line,
                   LineList::Beyond beyond = LineList::Beyond::Nothing) const
    {
        return LineList::shared(text(QLatin1String(key)), line, beyond);
    }

    /// Hexadecimal after "0x", else decimal.
    quint32 byPrefix(const char *key) const
    {
        return Numbers::toUIntByPrefix(text(QLatin1String(key)));
    }

    /// Is the setting, read as a decimal number, above zero?
    bool isOn(const char *key) const { return decimal(key) > 0; }

private:
    const ObjectDataBase *store;
};
