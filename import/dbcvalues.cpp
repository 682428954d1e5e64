// Values that attributes of a DBC file give to frames and signals.
#include "import/dbcvalues.h"

#include "formats/dbcj1939.h"
#include "formats/dbckeys.h"
#include "support/cohelper.h"
#include "support/numbers.h"

#include <QLocale>

#include <cmath>
#include <limits>
#include <optional>

namespace
{

using Type = CAN::CANopenDataType;

constexpr quint32 kMostNumberBits = 64;

quint64 mask(quint32 bits)
{
    return bits >= kMostNumberBits ? ~quint64(0) : (quint64(1) << bits) - 1;
}

/// The bits of a whole number; none if it is no such.
std::optional<quint64> bitsOf(const QString &text)
{
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    if (isNumber)
        return static_cast<quint64>(number);
    const quint64 large = text.toULongLong(&isNumber);
    if (isNumber)
        return large;
    const double real = text.toDouble(&isNumber);
    constexpr double kHalf = 9223372036854775808.0; // 2^63
    if (!isNumber || std::floor(real) != real || real < -kHalf || real >= 2 * kHalf)
        return std::nullopt;
    return real < 0 ? static_cast<quint64>(static_cast<qint64>(real)) : static_cast<quint64>(real);
}

bool isNegative(const QString &text)
{
    return text.startsWith(QLatin1Char('-'));
}

/// As many bits as the signal has; none if that number has more.
std::optional<quint64> rawValue(const DbcSignal &signal, const QString &text)
{
    const auto bits = bitsOf(text);
    if (!bits || *bits == 0)
        return bits;
    const quint64 all = mask(signal.bits);
    if (!isNegative(text))
        return *bits <= all ? bits : std::nullopt;
    const quint64 magnitude = ~*bits + 1;
    if (!signal.isSigned || magnitude > all / 2 + 1)
        return std::nullopt;
    return *bits & all;
}

/// Two's complement of so many bits.
qint64 signedNumber(quint64 value, quint32 bits)
{
    const quint32 unused = kMostNumberBits - bits;
    return static_cast<qint64>(value << unused) >> unused;
}

/// The bytes of a whole signal in the order of the frame, as texts of projects give bytes.
QString octets(const DbcSignal &signal, quint64 value)
{
    if (value == 0)
        return QString(QLatin1String(""));
    const quint32 count = (signal.bits + 7) / 8;
    QString text = QStringLiteral("|x");
    for (quint32 i = 0; i < count; ++i) {
        const quint32 place = signal.isBigEndian ? count - 1 - i : i;
        const quint64 byte = place < sizeof(value) ? value >> (8 * place) & 0xFF : 0;
        text += Numbers::toHex(byte, 2);
    }
    return text;
}

/// Else it is that of the signal.
bool isSizeOfTextTold(const DbcFile &file)
{
    return file.definition(DbcOwner::Signal, QLatin1String(DbcKeys::kTextBits));
}

/// Does its end lie in itself?
bool isDelimitedText(const DbcFile &file, const DbcMessage &message, const DbcSignal &signal)
{
    if (file.attribute(signal, DbcKeys::kSignalType) != QLatin1String("StringDelimiter"))
        return false;
    return isSizeOfTextTold(file)
               ? signal.bits == 8
               : file.attribute(message, DbcKeys::kVariableLength) == QLatin1String("Yes");
}

} // namespace

quint16 DbcValues::cycleTimeMs(const DbcFile &file, const DbcMessage &message, bool *isFit)
{
    constexpr double kMost = std::numeric_limits<quint16>::max();
    const QString text = file.attribute(message, DbcKeys::kCycleTime);
    if (text.isEmpty())
        return 0;
    bool isNumber = false;
    const double ms = std::round(text.toDouble(&isNumber));
    *isFit = isNumber && ms >= 0 && ms <= kMost;
    return *isFit ? static_cast<quint16>(ms) : isNumber && ms > kMost ? quint16(kMost) : quint16(0);
}

QString DbcValues::startValue(const DbcFile &file, const DbcElement &element, bool *isFit)
{
    const DbcSignal &signal = *element.signal;
    const QString text = file.attribute(signal, DbcKeys::kStartValue).trimmed();
    if (element.type == Type::Real32 || element.type == Type::Real64) {
        const double value = text.isEmpty() ? 0 : text.toDouble(isFit);
        return QString::number(std::isfinite(value) ? value : 0, 'g',
                               QLocale::FloatingPointShortest);
    }
    const auto value = text.isEmpty() ? std::optional<quint64>(0) : rawValue(signal, text);
    *isFit = value.has_value();
    const quint64 bits = value.value_or(0);
    if (element.type == Type::OctetString)
        return octets(signal, bits);
    const quint64 part =
        element.shift < kMostNumberBits ? bits >> element.shift & mask(element.bits) : 0;
    return COHelper::isSignedInteger(element.type)
               ? QString::number(signedNumber(part, element.bits))
               : QString::number(part);
}

Type DbcValues::typeOfText(const DbcFile &file, const DbcMessage &message, const DbcSignal &signal)
{
    if (const auto *text = DbcJ1939::variableText(signal))
        return text->type;
    return isDelimitedText(file, message, signal) ? Type::StringAsterisk : Type::Unknown;
}

quint16 DbcValues::bitsOfText(const DbcFile &file, const DbcSignal &signal)
{
    const quint32 bits = isSizeOfTextTold(file)
                             ? Numbers::toUIntDecimal(file.attribute(signal, DbcKeys::kTextBits))
                             : signal.bits;
    return static_cast<quint16>(qMin(bits, 0xFFFFU));
}
