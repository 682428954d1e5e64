// From the bits of signals to elements that follow one another.
#include "import/dbclayout.h"

#include "formats/dbcj1939.h"
#include "store/fillers.h"
#include "support/cohelper.h"

#include <QBitArray>

#include <algorithm>

namespace
{

using Type = CAN::CANopenDataType;
using Kind = DbcTally::Kind;
using Part = DbcElement::Part;
using ValueType = DbcSignal::ValueType;

constexpr quint32 kByteBits = 8;
constexpr quint32 kMostNumberBits = 64;

constexpr Type kUnsignedTypes[] = {
    Type::Boolean,    Type::Unsigned2,  Type::Unsigned3,  Type::Unsigned4,  Type::Unsigned5,
    Type::Unsigned6,  Type::Unsigned7,  Type::Unsigned8,  Type::Unsigned9,  Type::Unsigned10,
    Type::Unsigned11, Type::Unsigned12, Type::Unsigned13, Type::Unsigned14, Type::Unsigned15,
    Type::Unsigned16, Type::Unsigned18, Type::Unsigned19, Type::Unsigned21, Type::Unsigned24,
    Type::Unsigned29, Type::Unsigned32, Type::Unsigned40, Type::Unsigned48, Type::Unsigned56,
    Type::Unsigned64,
};
constexpr Type kSignedTypes[] = {
    Type::Integer8,  Type::Integer16, Type::Integer24, Type::Integer32,
    Type::Integer40, Type::Integer48, Type::Integer56, Type::Integer64,
};

/// Type::Unknown if there is none.
template <size_t N>
Type typeOf(quint32 bits, const Type (&types)[N])
{
    for (const Type type : types) {
        if (COHelper::getDataLengthBits(type) == bits)
            return type;
    }
    return Type::Unknown;
}

Type numberType(quint32 bits, bool isSigned)
{
    const Type type = isSigned ? typeOf(bits, kSignedTypes) : Type::Unknown;
    return type == Type::Unknown ? typeOf(bits, kUnsignedTypes) : type;
}

Type typeOf(const DbcSignal &signal)
{
    if (signal.valueType == ValueType::Float && signal.bits == 32)
        return Type::Real32;
    if (signal.valueType == ValueType::Double && signal.bits == 64)
        return Type::Real64;
    return numberType(signal.bits, signal.isSigned);
}

DbcElement elementOf(const DbcSignal &signal, quint32 start, quint32 bits, Type type)
{
    DbcElement element;
    element.signal = &signal;
    element.start = start;
    element.bits = bits;
    element.type = type;
    return element;
}

/// Lays out one message.
class Layout
{
public:
    Layout(const DbcMessage &source, bool group, DbcTally *counts,
           QVector<const DbcSignal *> *absent)
        : message(source), isGroup(group), tally(*counts), leftOut(*absent),
          taken(int(source.size * kByteBits))
    {
    }

    QVector<DbcElement> make()
    {
        for (const DbcSignal &signal : message.signalList) {
            if (signal.isReplaced)
                continue; // told by the reader
            if (signal.bits == 0)
                tally.add(Kind::NoBits, message, signal);
            else if (signal.bytesNeeded() > message.size)
                tally.add(Kind::BeyondFrame, message, signal);
            else
                place(signal);
        }
        std::sort(elements.begin(), elements.end(),
                  [](const DbcElement &a, const DbcElement &b) { return a.start < b.start; });
        return withGaps();
    }

private:
    void place(const DbcSignal &signal)
    {
        if (signal.multiplexing.isSwitched) {
            tally.add(Kind::Multiplexed, message, signal);
            leftOut << &signal;
            return;
        }
        const QVector<DbcElement> parts = partsOf(signal);
        if (std::any_of(parts.begin(), parts.end(),
                        [this](const DbcElement &part) { return isTaken(part); })) {
            tally.add(Kind::Overlapping, message, signal);
            leftOut << &signal;
            return;
        }
        for (const DbcElement &part : parts)
            taken.fill(true, int(part.start), int(part.start + part.bits));
        elements += parts;
        count(signal, parts.first());
    }

    bool isTaken(const DbcElement &part) const
    {
        for (quint32 bit = part.start; bit < part.start + part.bits; ++bit) {
            if (taken.testBit(int(bit)))
                return true;
        }
        return false;
    }

    QVector<DbcElement> partsOf(const DbcSignal &signal) const
    {
        if (!signal.isBigEndian)
            return littleEndianParts(signal, signal.startBit);
        const quint32 inByte = signal.startBit % kByteBits + 1;
        if (signal.bits <= inByte)
            return littleEndianParts(signal, signal.startBit + 1 - signal.bits);
        if (isGroup && inByte == kByteBits && signal.bits % kByteBits == 0)
            return {
                elementOf(signal, signal.startBit + 1 - kByteBits, signal.bits, Type::OctetString)};
        return bytesOf(signal);
    }

    QVector<DbcElement> littleEndianParts(const DbcSignal &signal, quint32 start) const
    {
        const Type type = typeOf(signal);
        if (type != Type::Unknown || isGroup)
            return {elementOf(signal, start, signal.bits,
                              type == Type::Unknown ? Type::OctetString : type)};
        QVector<DbcElement> parts;
        for (quint32 done = 0; done < signal.bits;) {
            const quint32 bits = bitsOfPart(signal.bits - done);
            DbcElement part = elementOf(signal, start + done, bits, numberType(bits, false));
            part.part = Part::Bits;
            part.shift = done;
            parts << part;
            done += bits;
        }
        return parts;
    }

    /// Whole bytes, as long as there are some.
    static quint32 bitsOfPart(quint32 left)
    {
        if (left >= kMostNumberBits)
            return kMostNumberBits;
        return numberType(left, false) != Type::Unknown ? left : left / kByteBits * kByteBits;
    }

    static QVector<DbcElement> bytesOf(const DbcSignal &signal)
    {
        QVector<DbcElement> parts;
        quint32 highest = signal.startBit;
        for (quint32 left = signal.bits; left > 0;) {
            const quint32 bits = std::min(highest % kByteBits + 1, left);
            left -= bits;
            DbcElement part = elementOf(signal, highest + 1 - bits, bits, numberType(bits, false));
            part.part = Part::Byte;
            part.number = parts.size();
            part.shift = left;
            parts << part;
            highest = (highest / kByteBits + 2) * kByteBits - 1;
        }
        return parts;
    }

    /// What of the signal is not as it stands in the file.
    void count(const DbcSignal &signal, const DbcElement &first)
    {
        const bool isOctets = first.type == Type::OctetString;
        if (isOctets && DbcJ1939::variableText(signal))
            return; // is no octet string
        if (signal.isBigEndian && (isOctets || first.part == Part::Byte))
            tally.add(Kind::BigEndian, message, signal);
        else if (first.part == Part::Bits)
            tally.add(Kind::InParts, message, signal);
        else if (isOctets)
            tally.add(Kind::OctetString, message, signal);
        else if (signal.isSigned && signal.valueType == ValueType::Integer &&
                 typeOf(signal.bits, kSignedTypes) == Type::Unknown)
            tally.add(Kind::SignedAsUnsigned, message, signal);
    }

    QVector<DbcElement> withGaps() const
    {
        QVector<DbcElement> all;
        quint32 end = 0;
        for (const DbcElement &element : elements) {
            addGap(&all, end, element.start);
            all << element;
            end = element.start + element.bits;
        }
        addGap(&all, end, message.size * kByteBits);
        return all;
    }

    static void addGap(QVector<DbcElement> *all, quint32 begin, quint32 end)
    {
        while (begin < end) {
            DbcElement gap;
            gap.start = begin;
            gap.type = Fillers::typeFor(end - begin);
            gap.bits = COHelper::getDataLengthBits(gap.type);
            begin += gap.bits;
            *all << gap;
        }
    }

    const DbcMessage &message;
    bool isGroup;
    DbcTally &tally;
    QVector<const DbcSignal *> &leftOut;
    QBitArray taken;
    QVector<DbcElement> elements;
};

} // namespace

QVector<DbcElement> DbcLayout::of(const DbcMessage &message, bool isGroup, DbcTally *tally,
                                  QVector<const DbcSignal *> *leftOut)
{
    return Layout(message, isGroup, tally, leftOut).make();
}
