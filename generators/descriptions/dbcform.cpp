// The two forms of DBC files.
#include "generators/descriptions/dbcform.h"

#include "formats/dbcj1939.h"
#include "formats/dbcstrings.h"
#include "generators/descriptions/dbcgenerator.h"
#include "support/cohelper.h"
#include "support/direction.h"
#include "support/numbers.h"

#include <QLocale>

#include <cmath>
#include <limits>

namespace
{

using Type = CAN::CANopenDataType;
using Dbc::Signal;

constexpr quint8 kNullAddress = 0xFE;
constexpr quint8 kGlobalAddress = 0xFF;
constexpr quint32 kFirstPdu2Format = 240;
constexpr int kWidestNumber = 64;
constexpr int kLongestGroup = 1785;     ///< bytes (SAE J1939-21, 5.10.1)
constexpr qint64 kHighestSpn = 0x7FFFF; ///< 19 bits

// --- Classic ---

// Deliberate: the number of the NAME's function, so that the reserved bit replaces it in the
// project; held by tst_dbcgenerator.
constexpr quint32 kReservedSpn = 2841;
constexpr int kClassicDlc = 8;
constexpr int kDelimitedStringBits = 8;

QString textAsItIs(const QString &text, bool * /*isWhole*/)
{
    return text;
}

quint32 classicIdentifier(const PgnData &group, quint8 address)
{
    const quint32 prefix = (group.priority * 0x40000U + group.number) * 0x100U;
    // A received group: sent by anybody to this line.
    return group.direction == Direction::kReceived ? prefix + kNullAddress + address * 0x100U
                                                   : prefix + address;
}

// Deliberate: of the types without a size only these two have that of the project; held by
// tst_dbcgenerator.
int classicBits(const SignalData &data)
{
    const auto type = static_cast<Type>(data.dataType);
    if (type == Type::StringAsterisk || type == Type::OctetString)
        return data.bitSize;
    return COHelper::getDataLengthBits(type);
}

int classicBytes(int /*bits*/)
{
    return kClassicDlc;
}

/// All numbers are unsigned, and a text is the byte that ends it.
Signal classicSignal(const SignalData &data, int bits, int /*room*/)
{
    Signal signal;
    signal.bits = bits;
    if (static_cast<Type>(data.dataType) != Type::StringAsterisk)
        return signal;
    signal.toldBits = bits;
    signal.bits = kDelimitedStringBits;
    signal.sigType = J1939::SigType::StringDelimiter;
    return signal;
}

// --- Portable ---

/// As on the bus (SAE J1939-21, 5.2): who is not known has the null address, and without an own one
/// the device receives what is sent to all.
quint32 busIdentifier(const PgnData &group, quint8 address)
{
    const bool isReceived = group.direction == Direction::kReceived;
    quint32 pgn = group.number & 0x3FFFF;
    if (((pgn >> 8) & 0xFF) < kFirstPdu2Format) {
        const bool isForUs = isReceived && address != kNullAddress;
        pgn = (pgn & 0x3FF00) | (isForUs ? address : kGlobalAddress);
    }
    return (group.priority & 7U) << 26 | pgn << 8 | (isReceived ? kNullAddress : address);
}

int bitsOf(const SignalData &data)
{
    const int bits = COHelper::getDataLengthBits(static_cast<Type>(data.dataType));
    return bits == 0 ? data.bitSize : bits;
}

int bytesOf(int bits)
{
    return (bits + 7) / 8;
}

Signal portableSignal(const SignalData &data, int bits, int room)
{
    const auto type = static_cast<Type>(data.dataType);
    if (bits > room && COHelper::getDataLengthBits(type) != 0)
        return {}; // part of a number has no meaning
    Signal signal = Dbc::numberOf(type, qMin(bits, room), data.defaultValue);
    const DbcJ1939::VariableText *text = DbcJ1939::variableText(type);
    if (text && signal.bits != 0) {
        signal.sigType = text->sigType;
        signal.comment = text->remark(quint32(signal.bits));
    }
    return signal;
}

DbcForm makeClassic()
{
    DbcForm form;
    form.reservedSpn = kReservedSpn;
    form.mostGroupBits = std::numeric_limits<int>::max(); // beyond the frame, too
    form.highestSpn = std::numeric_limits<qint64>::max();
    form.name = Dbc::symbolName;
    form.text = textAsItIs;
    form.identifier = classicIdentifier;
    form.bitsInGroup = classicBits;
    form.groupBytes = classicBytes;
    form.signal = classicSignal;
    return form;
}

DbcForm makePortable()
{
    DbcForm form;
    form.preferPortable = true;
    form.tellsDevice = true;
    form.tellsMore = true;
    form.doublesBackslashes = false;
    form.hasEachIdentifierOnce = true;
    form.mostGroupBits = kLongestGroup * 8;
    form.highestSpn = kHighestSpn;
    form.name = DbcStrings::name;
    form.text = DbcStrings::portable;
    form.identifier = busIdentifier;
    form.bitsInGroup = bitsOf;
    form.groupBytes = bytesOf;
    form.signal = portableSignal;
    return form;
}

// --- Numbers ---

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

const DbcForm &classicDbc()
{
    static const DbcForm form = makeClassic();
    return form;
}

const DbcForm &portableDbc()
{
    static const DbcForm form = makePortable();
    return form;
}

Dbc::Signal Dbc::numberOf(Type type, int bits, const QString &startValue)
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

void Dbc::setLimits(Signal &signal, const QString &low, const QString &high)
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
