// Text to number conversions.
#include "support/numbers.h"

#include <limits>
#include <optional>

namespace
{

int digitOf(QChar ch)
{
    const ushort code = ch.unicode();
    if (code >= '0' && code <= '9')
        return code - '0';
    const int letter = (code | 0x20) - 'a';
    return letter >= 0 && letter < 6 ? letter + 10 : 16;
}

/// Nearly all texts are digits, or digits after "0x" if \a byPrefix. Those are read here; QString,
/// which also looks for signs, blanks and a locale, reads all others.
std::optional<quint64> plainNumber(const QString &text, bool byPrefix)
{
    constexpr int kMostDigits = 15; // as many fit in any base
    const bool isHex = byPrefix && text.size() > 2 && text.at(0) == QLatin1Char('0') &&
                       (text.at(1).unicode() | 0x20) == 'x';
    const int start = isHex ? 2 : 0;
    const int base = isHex ? 16 : 10;
    if (text.size() == start || text.size() > start + kMostDigits)
        return std::nullopt;
    quint64 number = 0;
    for (int i = start; i < text.size(); ++i) {
        const int digit = digitOf(text.at(i));
        if (digit >= base)
            return std::nullopt;
        number = number * quint64(base) + quint64(digit);
    }
    return number;
}

/// A plain number, if \a text is one and fits.
template <class Number>
std::optional<Number> plain(const QString &text, bool byPrefix, bool *ok)
{
    const std::optional<quint64> number = plainNumber(text, byPrefix);
    if (!number || *number > quint64(std::numeric_limits<Number>::max()))
        return std::nullopt;
    if (ok)
        *ok = true;
    return Number(*number);
}

int baseOf(const QString &text)
{
    const QString digits = text.trimmed();
    const int start = digits.startsWith(QLatin1Char('-')) || digits.startsWith(QLatin1Char('+'));
    return digits.midRef(start).startsWith(QLatin1String("0x"), Qt::CaseInsensitive) ? 16 : 10;
}

} // namespace

quint32 Numbers::toUIntDecimal(const QString &text, bool *ok)
{
    const auto number = plain<quint32>(text, false, ok);
    return number ? *number : text.toUInt(ok, 10);
}

qint32 Numbers::toIntDecimal(const QString &text, bool *ok)
{
    const auto number = plain<qint32>(text, false, ok);
    return number ? *number : text.toInt(ok, 10);
}

quint32 Numbers::toUIntByPrefix(const QString &text, bool *ok)
{
    const auto number = plain<quint32>(text, true, ok);
    return number ? *number : text.toUInt(ok, baseOf(text));
}

quint64 Numbers::toULongLongByPrefix(const QString &text, bool *ok)
{
    const auto number = plain<quint64>(text, true, ok);
    return number ? *number : text.toULongLong(ok, baseOf(text));
}

qint64 Numbers::toLongLongByPrefix(const QString &text, bool *ok)
{
    const auto number = plain<qint64>(text, true, ok);
    return number ? *number : text.toLongLong(ok, baseOf(text));
}

// QString::arg() would do, but it looks for a locale and a place each time, and generated files
// hold several numbers a line.
QString Numbers::toHex(quint64 number, int digits)
{
    constexpr int kMostDigits = 16;
    QChar text[kMostDigits];
    int start = kMostDigits;
    while (number != 0 || (start > kMostDigits - digits && start > 0)) {
        text[--start] = QLatin1Char("0123456789abcdef"[number & 0xF]);
        number >>= 4;
    }
    return QString(text + start, kMostDigits - start);
}
