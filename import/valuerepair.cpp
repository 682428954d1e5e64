// Limits and default values against the range of their type.
#include "import/valuerepair.h"

#include "support/cohelper.h"
#include "support/numbers.h"
#include "support/printable.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>

namespace
{

using Type = CAN::CANopenDataType;

Type typeOf(const CANopenSubindex &record)
{
    return static_cast<Type>(record.dataType);
}

bool isReal(const CANopenSubindex &record)
{
    return typeOf(record) == Type::Real32 || typeOf(record) == Type::Real64;
}

bool hasHexPrefix(const QString &text)
{
    return text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
}

bool isSame(const QString &text, float value)
{
    bool ok = false;
    return text.toFloat(&ok) == value && ok;
}

bool isSame(const QString &text, double value)
{
    bool ok = false;
    return text.toDouble(&ok) == value && ok;
}

/// The shortest text that gives the same number again, with a decimal point or an exponent.
template <typename Real>
QString textOfReal(Real value)
{
    constexpr int kMostDigits = std::numeric_limits<double>::max_digits10;
    constexpr double kMostWithoutExponent = 1e9;
    const bool isShort =
        value == std::trunc(value) && std::abs(double(value)) <= kMostWithoutExponent;
    if (isShort)
        return QString::number(double(value), 'f', 1);
    QString text;
    for (int digits = 1; digits <= kMostDigits; ++digits) {
        text = QString::number(double(value), 'g', digits);
        if (isSame(text, value))
            break;
    }
    return text;
}

/// The number of that many bits; nothing if it is none, or not of so many bits.
template <typename Real, typename Bits>
std::optional<Real> realOfBits(quint64 pattern)
{
    const auto bits = static_cast<Bits>(pattern);
    Real value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (pattern > std::numeric_limits<Bits>::max() || std::isnan(value))
        return std::nullopt;
    return value;
}

/// What a bit pattern stands for, "inf" if it is infinite; nothing if it is no number.
std::optional<QString> numberOfBits(const QString &text, Type type)
{
    bool ok = false;
    const quint64 pattern = Numbers::toULongLongByPrefix(text, &ok);
    if (!ok)
        return std::nullopt;
    if (type == Type::Real32) {
        const auto value = realOfBits<float, quint32>(pattern);
        return value ? std::optional<QString>(textOfReal(*value)) : std::nullopt;
    }
    const auto value = realOfBits<double, quint64>(pattern);
    return value ? std::optional<QString>(textOfReal(*value)) : std::nullopt;
}

/// A whole number of any size up to 64 bits and a sign.
struct Whole {
    bool isNegative = false;
    bool isHuge = false; ///< beyond 64 bits
    quint64 magnitude = 0;

    bool operator<(const Whole &other) const
    {
        if (isNegative != other.isNegative)
            return isNegative;
        const Whole &small = isNegative ? other : *this;
        const Whole &large = isNegative ? *this : other;
        return small.isHuge != large.isHuge ? large.isHuge : small.magnitude < large.magnitude;
    }
};

/// Decimal, or hexadecimal after "0x", of any length.
bool isDigits(const QString &text)
{
    const bool isHex = hasHexPrefix(text);
    const int start = isHex ? 2 : 0;
    return text.size() > start &&
           std::all_of(text.cbegin() + start, text.cend(), [isHex](QChar character) {
               const ushort code = character.toLower().unicode();
               return (code >= '0' && code <= '9') || (isHex && code >= 'a' && code <= 'f');
           });
}

/// Nothing if \a text is no number. One that is too large is huge.
std::optional<Whole> wholeOf(const QString &text)
{
    Whole result;
    bool ok = false;
    if (!text.isEmpty() && text.at(0).isDigit()) {
        result.magnitude = Numbers::toULongLongByPrefix(text, &ok);
        if (ok)
            return result; // as nearly always
    }
    QString digits = text.trimmed();
    result.isNegative = digits.startsWith(QLatin1Char('-'));
    if (result.isNegative || digits.startsWith(QLatin1Char('+')))
        digits.remove(0, 1);
    if (digits.startsWith(QLatin1Char('-')) || digits.startsWith(QLatin1Char('+')))
        return std::nullopt;
    result.magnitude = Numbers::toULongLongByPrefix(digits, &ok);
    if (!ok) {
        ok = isDigits(digits);
        result.isHuge = true;
    }
    result.isNegative = result.isNegative && (result.isHuge || result.magnitude > 0);
    return ok ? std::optional<Whole>(result) : std::nullopt;
}

/// A number of a REAL type; infinite if it is too large.
std::optional<double> realOf(const QString &text)
{
    bool ok = false;
    const double value = text.toDouble(&ok);
    return ok || std::isinf(value) ? std::optional<double>(value) : std::nullopt;
}

/// Is \a one below \a other? False if one of them is no number of the type.
bool isBelow(const QString &one, const QString &other, bool asReal)
{
    if (asReal) {
        const auto a = realOf(one);
        const auto b = realOf(other);
        return a && b && *a < *b;
    }
    const auto a = wholeOf(one);
    const auto b = wholeOf(other);
    return a && b && *a < *b;
}

/// The range of a type as text; empty if it has none.
QString endOfType(Type type, bool isUpper)
{
    if (type == Type::Real32 || type == Type::Real64) {
        // Shorter texts of the largest float are above it.
        const QString most = type == Type::Real32 ? QStringLiteral("3.4028234663852886e+38")
                                                  : QStringLiteral("1.7976931348623157e+308");
        return isUpper ? most : QLatin1Char('-') + most;
    }
    const bool isTime = type == Type::TimeOfDay || type == Type::TimeDifference; // of 48 bits
    QString low;
    QString high;
    COHelper::getDefaultLimits(isTime ? Type::Unsigned48 : type, low, high);
    return isUpper ? high : low;
}

/// Types whose negative numbers the check does not take, though they have them.
bool isNegativeRefused(Type type)
{
    return type == Type::Integer24 || type == Type::Integer40 || type == Type::Integer48 ||
           type == Type::Integer56;
}

bool isWholeText(const QString &text)
{
    return !hasHexPrefix(text) && wholeOf(text).has_value();
}

} // namespace

QString ValueRepair::placeOf(const CANopenSubindex &record)
{
    return QLatin1String("0x") + Numbers::toHex(record.index, 4).toUpper() + QLatin1Char(':') +
           Numbers::toHex(record.subindex, 2).toUpper();
}

void ValueRepair::repair(CANopenSubindex *record) const
{
    if (isReal(*record))
        readRealBits(record);
    cutLimit(*record, &record->lowLimit, false);
    cutLimit(*record, &record->upLimit, true);
    dropCrossedLimits(record);
    dropWideLimits(record);
    addOtherLimit(record);
    record->hasLimits = !record->lowLimit.isEmpty() || !record->upLimit.isEmpty();
    if (isReal(*record))
        showRealNumbers(record);
    tellOfDefault(*record);
}

void ValueRepair::readRealBits(CANopenSubindex *record) const
{
    QString defaultValue = record->defaultValue.toString();
    for (QString *text :
         {&defaultValue, &record->currentValue, &record->lowLimit, &record->upLimit}) {
        if (!hasHexPrefix(*text))
            continue;
        const auto number = numberOfBits(*text, typeOf(*record));
        if (!number)
            continue;
        notes.addNote("import-real", record->line, [&] {
            return QStringLiteral("%1: %2 is read as the bits of the REAL number %3")
                .arg(placeOf(*record), quotedWord(*text), *number);
        });
        *text = *number;
    }
    record->defaultValue = defaultValue;
}

void ValueRepair::showRealNumbers(CANopenSubindex *record) const
{
    // Limits and a default value that are not all whole are compared by their whole parts, or not
    // at all; and numbers below those of 32 bits are taken for wrong ones.
    const QString low = record->lowLimit;
    const QString high = record->upLimit;
    const bool isMixed =
        (!low.isEmpty() && !isWholeText(low)) || (!high.isEmpty() && !isWholeText(high));
    const bool isWide = typeOf(*record) == Type::Real64;
    QString defaultValue = record->defaultValue.toString();
    const auto show = [&](QString *text, bool always) {
        const auto number = wholeOf(*text);
        if (hasHexPrefix(*text) || !number)
            return;
        constexpr quint64 kLowest = 2147483648;
        const quint64 most = number->isNegative ? (isWide ? 0 : kLowest)
                                                : quint64(std::numeric_limits<qint64>::max());
        if (!always && !number->isHuge && number->magnitude <= most)
            return;
        *text = text->trimmed() + QLatin1String(".0");
        notes.addNote("import-real", record->line, [&] {
            return QStringLiteral("%1: the REAL number is written as %2")
                .arg(placeOf(*record), *text);
        });
    };
    show(&defaultValue, isMixed);
    show(&record->lowLimit, false);
    show(&record->upLimit, false);
    record->defaultValue = defaultValue;
}

void ValueRepair::cutLimit(const CANopenSubindex &record, QString *limit, bool isUpper) const
{
    if (limit->isEmpty())
        return;
    const QString end = endOfType(typeOf(record), isUpper);
    const QString otherEnd = endOfType(typeOf(record), !isUpper);
    if (end.isEmpty())
        return;
    const bool isBeyond =
        isUpper ? isBelow(end, *limit, isReal(record)) : isBelow(*limit, end, isReal(record));
    const bool isOnOtherSide = isUpper ? isBelow(*limit, otherEnd, isReal(record))
                                       : isBelow(otherEnd, *limit, isReal(record));
    if (!isBeyond && !isOnOtherSide)
        return;
    notes.addNote("import-limits", record.line, [&] {
        return QStringLiteral("%1: the %2 limit %3 is outside of the data type, and becomes %4")
            .arg(placeOf(record), isUpper ? QLatin1String("upper") : QLatin1String("lower"),
                 quotedWord(*limit), end);
    });
    *limit = end;
}

void ValueRepair::dropCrossedLimits(CANopenSubindex *record) const
{
    if (!isBelow(record->upLimit, record->lowLimit, isReal(*record)))
        return;
    notes.addNote("import-limits", record->line, [&] {
        return QStringLiteral("%1: the lower limit %2 is above the upper limit %3, and both are "
                              "dropped")
            .arg(placeOf(*record), quotedWord(record->lowLimit), quotedWord(record->upLimit));
    });
    record->lowLimit.clear();
    record->upLimit.clear();
}

/// The check takes no negative number of some signed types, and none beyond 64 bits with a sign.
/// Limits that say no more than the type are not needed then.
void ValueRepair::dropWideLimits(CANopenSubindex *record) const
{
    if (isNegativeRefused(typeOf(*record)))
        dropOpenLow(record);
    if (typeOf(*record) == Type::Unsigned64)
        closeUpperEnd(record);
}

void ValueRepair::dropOpenLow(CANopenSubindex *record) const
{
    const auto end = wholeOf(endOfType(typeOf(*record), false));
    const auto low = wholeOf(record->lowLimit);
    const bool isOpen =
        record->lowLimit.isEmpty() ? !record->upLimit.isEmpty() : low && end && !(*end < *low);
    if (isOpen)
        dropLimits(record, "cannot both be checked");
}

void ValueRepair::closeUpperEnd(CANopenSubindex *record) const
{
    constexpr quint64 kMost = std::numeric_limits<qint64>::max();
    const auto high = wholeOf(record->upLimit);
    const auto low = wholeOf(record->lowLimit);
    const bool isFromZero = record->lowLimit.isEmpty() || (low && low->magnitude == 0);
    const bool isOpen =
        record->upLimit.isEmpty() ? !record->lowLimit.isEmpty() : high && high->magnitude > kMost;
    if (isOpen && isFromZero)
        dropLimits(record, "are beyond what can be checked");
    if (!isOpen || isFromZero || !low || low->isHuge || low->magnitude > kMost)
        return;
    record->upLimit = QString::number(kMost);
    notes.addNote("import-limits", record->line, [&] {
        return QStringLiteral("%1: the upper limit becomes %2, the highest one that can be checked")
            .arg(placeOf(*record), record->upLimit);
    });
}

void ValueRepair::dropLimits(CANopenSubindex *record, const char *why) const
{
    const auto words = [](const QString &limit) {
        return limit.isEmpty() ? QStringLiteral("none") : quotedWord(limit);
    };
    notes.addNote("import-limits", record->line, [&] {
        return QStringLiteral("%1: the limits (lower %2, upper %3) %4, and are dropped")
            .arg(placeOf(*record), words(record->lowLimit), words(record->upLimit),
                 QLatin1String(why));
    });
    record->lowLimit.clear();
    record->upLimit.clear();
}

/// A project has both limits. Where the tool knows no range of a type it would take none for 0.
void ValueRepair::addOtherLimit(CANopenSubindex *record) const
{
    if (record->lowLimit.isEmpty() == record->upLimit.isEmpty())
        return;
    QString low;
    QString high;
    COHelper::getDefaultLimits(typeOf(*record), low, high);
    if (!high.isEmpty())
        return;
    const bool isUpper = record->upLimit.isEmpty();
    QString &limit = isUpper ? record->upLimit : record->lowLimit;
    limit = endOfType(typeOf(*record), isUpper);
    if (!limit.isEmpty())
        notes.addNote("import-limits", record->line, [&] {
            return QStringLiteral("%1: the %2 limit becomes %3, since only the other one is given")
                .arg(placeOf(*record), isUpper ? QLatin1String("upper") : QLatin1String("lower"),
                     limit);
        });
}

void ValueRepair::tellOfDefault(const CANopenSubindex &record) const
{
    const QString value = record.defaultValue.toString();
    const QString low =
        record.lowLimit.isEmpty() ? endOfType(typeOf(record), false) : record.lowLimit;
    const QString high =
        record.upLimit.isEmpty() ? endOfType(typeOf(record), true) : record.upLimit;
    if (!isBelow(value, low, isReal(record)) && !isBelow(high, value, isReal(record)))
        return;
    notes.addNote("import-default", record.line, [&] {
        return QStringLiteral("%1: the default value %2 is outside of %3 to %4, and stays: mend "
                              "the value or the limits")
            .arg(placeOf(record), quotedWord(value), low, high);
    });
}
