// Text to number conversions.
#include "support/numbers.h"

namespace
{

int baseOf(const QString &text)
{
    const QString digits = text.trimmed();
    const int start = digits.startsWith(QLatin1Char('-')) || digits.startsWith(QLatin1Char('+'));
    return digits.midRef(start).startsWith(QLatin1String("0x"), Qt::CaseInsensitive) ? 16 : 10;
}

} // namespace

quint32 Numbers::toUIntDecimal(const QString &text, bool *ok)
{
    return text.toUInt(ok, 10);
}

qint32 Numbers::toIntDecimal(const QString &text, bool *ok)
{
    return text.toInt(ok, 10);
}

quint32 Numbers::toUIntByPrefix(const QString &text, bool *ok)
{
    return text.toUInt(ok, baseOf(text));
}

quint64 Numbers::toULongLongByPrefix(const QString &text, bool *ok)
{
    return text.toULongLong(ok, baseOf(text));
}

qint64 Numbers::toLongLongByPrefix(const QString &text, bool *ok)
{
    return text.toLongLong(ok, baseOf(text));
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
