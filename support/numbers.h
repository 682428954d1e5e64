// Text to number, with the base in the name. A text that is no number gives 0, as everywhere in a
// project; whoever must tell the two apart passes \a ok.
#pragma once

#include <QString>

namespace Numbers
{

/// Decimal digits only; blanks around them are allowed.
quint32 toUIntDecimal(const QString &text, bool *ok = nullptr);
qint32 toIntDecimal(const QString &text, bool *ok = nullptr);

/// Hexadecimal after "0x" or "0X", else decimal. A leading zero does not mean octal: descriptions
/// write numbers such as 001.
quint32 toUIntByPrefix(const QString &text, bool *ok = nullptr);
quint64 toULongLongByPrefix(const QString &text, bool *ok = nullptr);
qint64 toLongLongByPrefix(const QString &text, bool *ok = nullptr);

/// At least \a digits digits, in lower case and without a prefix.
QString toHex(quint64 number, int digits);

} // namespace Numbers
