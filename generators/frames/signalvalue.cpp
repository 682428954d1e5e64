// Numbers of so many bits.
#include "generators/frames/signalvalue.h"

#include "support/cohelper.h"
#include "support/numbers.h"

#include <QLocale>

#include <cmath>
#include <limits>

namespace
{

using Type = CAN::CANopenDataType;
using Frames::Signal;

constexpr int kWidestNumber = 64;

/// A whole number of up to 64 bits with or without a sign.
struct Whole {
    bool isNegative = false;
    quint64 magnitude = 0;

    bool operator<(const Whole &other) const
    {
        if (isNegative != other.isNegative)
            return isNegative;
        return isNegative ? other.magnitude < magnitude : magnitude < other.magnitude;
    }
    QString text() const
    {
        return (isNegative ? QStringLiteral("-") : QString()) + QString::number(magnitude);
    }
};

Whole lowestOf(const Signal &signal)
{
    const bool isSigned = signal.type == KvaDbSignalType::Signed;
    return isSigned ? Whole{true, quint64(1) << (signal.bits - 1)} : Whole{};
}

Whole highestOf(const Signal &signal)
{
    const int bits = signal.type == KvaDbSignalType::Signed ? signal.bits - 1 : signal.bits;
    return {false, bits >= kWidestNumber ? ~quint64(0) : (quint64(1) << bits) - 1};
}

bool isReal(const Signal &signal)
{
    return signal.type == KvaDbSignalType::Float || signal.type == KvaDbSignalType::Double;
}

bool isWhole(const Signal &signal)
{
    return !isReal(signal) && signal.bits >= 1 && signal.bits <= kWidestNumber;
}

/// False if \a text is no number that the signal can hold. Digits in hexadecimal may be the two's
/// complement.
bool readWhole(const Signal &signal, const QString &text, Whole &whole)
{
    bool isNumber = false;
    const quint64 positive = Numbers::toULongLongByPrefix(text, &isNumber);
    if (isNumber) {
        whole = {false, positive};
        const Whole highest = highestOf(signal);
        const bool isHex = text.trimmed().startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
        if (!(highest < whole))
            return true;
        if (signal.type != KvaDbSignalType::Signed || !isHex || positive >> (signal.bits - 1) != 1)
            return false;
        // As many ones above its bits make it a negative number.
        whole = {true, ~(positive | ~highest.magnitude) + 1};
        return true;
    }
    const qint64 negative = Numbers::toLongLongByPrefix(text, &isNumber);
    if (!isNumber || negative > 0)
        return false;
    whole = {negative < 0, ~static_cast<quint64>(negative) + 1};
    return !(whole < lowestOf(signal));
}

/// False if \a text is no number that the signal can hold.
bool readReal(const Signal &signal, const QString &text, double &number)
{
    bool isNumber = false;
    number = text.trimmed().toDouble(&isNumber);
    const double highest = signal.type == KvaDbSignalType::Float
                               ? double(std::numeric_limits<float>::max())
                               : std::numeric_limits<double>::max();
    return isNumber && std::fabs(number) <= highest;
}

QString realText(double number)
{
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

} // namespace

Frames::Signal Frames::numberOf(Type type, int bits, const QString &startValue)
{
    Signal signal;
    signal.bits = bits;
    if (type == Type::Real32 && bits == 32)
        signal.type = KvaDbSignalType::Float;
    else if (type == Type::Real64 && bits == 64)
        signal.type = KvaDbSignalType::Double;
    else if (COHelper::isSignedInteger(type))
        signal.type = KvaDbSignalType::Signed;
    const bool isNumber = isWhole(signal);
    signal.low = isNumber ? lowestOf(signal).text() : QStringLiteral("0");
    signal.high = isNumber ? highestOf(signal).text() : QStringLiteral("0"); // both: no limits
    double real = 0;
    Whole whole;
    if (isReal(signal) && readReal(signal, startValue, real) && real != 0)
        signal.startValue = realText(real);
    else if (isNumber && COHelper::getDataLengthBits(type) != 0 &&
             readWhole(signal, startValue, whole) && whole.magnitude != 0)
        signal.startValue = whole.text();
    return signal;
}

void Frames::setLimits(Signal &signal, const QString &low, const QString &high)
{
    if (isReal(signal)) {
        double lowest = 0;
        double highest = 0;
        if (readReal(signal, low, lowest) && readReal(signal, high, highest) && lowest < highest) {
            signal.low = realText(lowest);
            signal.high = realText(highest);
        }
        return;
    }
    Whole lowest;
    Whole highest;
    const auto read = [&signal](const QString &text, const QString &ofBits, Whole &limit) {
        return readWhole(signal, text.isEmpty() ? ofBits : text, limit);
    };
    if (!isWhole(signal) || !read(low, signal.low, lowest) || !read(high, signal.high, highest) ||
        !(lowest < highest))
        return;
    signal.low = lowest.text();
    signal.high = highest.text();
}
