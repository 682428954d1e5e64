// The two ways of frames of J1939.
#include "generators/frames/frameform.h"

#include "formats/dbcj1939.h"
#include "generators/addressclaim.h"
#include "generators/frames/signalvalue.h"
#include "support/cohelper.h"
#include "support/direction.h"

#include <limits>

namespace
{

using Type = CAN::CANopenDataType;
using AddressClaim::kNullAddress;
using Frames::Signal;

constexpr quint8 kGlobalAddress = 0xFF;
constexpr quint32 kFirstPdu2Format = 240;
constexpr int kLongestGroup = 1785;     ///< bytes (SAE J1939-21, 5.10.1)
constexpr qint64 kHighestSpn = 0x7FFFF; ///< 19 bits

// --- Classic ---

// Deliberate: the number of the NAME's function, so that the reserved bit replaces it in the
// project; held by tst_dbcgenerator.
constexpr quint32 kReservedSpn = 2841;
constexpr int kClassicDlc = 8;
constexpr int kDelimitedStringBits = 8;

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

// --- As on the bus ---

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

Signal busSignal(const SignalData &data, int bits, int room)
{
    const auto type = static_cast<Type>(data.dataType);
    if (bits > room && COHelper::getDataLengthBits(type) != 0)
        return {}; // part of a number has no meaning
    Signal signal = Frames::numberOf(type, qMin(bits, room), data.defaultValue);
    const DbcJ1939::VariableText *text = DbcJ1939::variableText(type);
    if (text && signal.bits != 0) {
        signal.sigType = text->sigType;
        signal.comment = text->remark(quint32(signal.bits));
    }
    return signal;
}

Frames::Form makeClassic()
{
    Frames::Form form;
    form.reservedSpn = kReservedSpn;
    form.mostGroupBits = std::numeric_limits<int>::max(); // beyond the frame, too
    form.highestSpn = std::numeric_limits<qint64>::max();
    form.identifier = classicIdentifier;
    form.bitsInGroup = classicBits;
    form.groupBytes = classicBytes;
    form.signal = classicSignal;
    return form;
}

Frames::Form makeBus()
{
    Frames::Form form;
    form.mostGroupBits = kLongestGroup * 8;
    form.highestSpn = kHighestSpn;
    form.identifier = busIdentifier;
    form.bitsInGroup = bitsOf;
    form.groupBytes = bytesOf;
    form.signal = busSignal;
    return form;
}

} // namespace

const Frames::Form &Frames::classicForm()
{
    static const Form form = makeClassic();
    return form;
}

const Frames::Form &Frames::busForm()
{
    static const Form form = makeBus();
    return form;
}
