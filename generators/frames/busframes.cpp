// Frames from records.
#include "generators/frames/busframes.h"

#include "generators/addressclaim.h"
#include "generators/frames/signalvalue.h"
#include "store/fillers.h"
#include "support/cohelper.h"
#include "support/direction.h"
#include "support/framebits.h"
#include "support/implementation.h"
#include "support/parametergroups.h"

namespace
{

using namespace Frames;
using Type = CAN::CANopenDataType;

constexpr int kClassicalBytes = 8;
constexpr int kFdBytes = 64;
constexpr quint32 kHighestStandard = 0x7FF;
constexpr quint32 kHighestExtended = 0x1FFFFFFF;

/// Puts signals one after the other.
class Packer
{
public:
    Packer(const Source &from, Frame &to, int roomBits) : source(from), frame(to), room(roomBits) {}

    /// False if the signal is left out, for want of room.
    bool add(const SignalData &data, int bits)
    {
        if (Fillers::isFiller(data)) {
            if (source.keepsAll)
                addWhole(data, bits, true);
            position += bits;
            return true;
        }
        Signal signal = source.form.signal(data, bits, qMax(0, room - position));
        // Deliberate: no signal without bits, such as a text that ends with NUL; readers refuse the
        // whole file for it. Held by tst_dbcgenerator.
        if (signal.bits == 0) {
            if (source.keepsAll)
                addWhole(data, bits, false);
            position += bits;
            return bits == 0;
        }
        describe(signal, data);
        signal.start = position;
        position += signal.bits;
        frame.hasVariableLength |= signal.sigType != J1939::SigType::Default;
        frame.signalList << std::move(signal);
        return true;
    }

    int bits() const { return qMin(position, room); }

private:
    /// Whether there is room or not.
    void addWhole(const SignalData &data, int bits, bool isFiller)
    {
        Signal signal = numberOf(static_cast<Type>(data.dataType), bits, QString());
        describe(signal, data);
        signal.start = position;
        signal.isFiller = isFiller;
        frame.signalList << std::move(signal);
    }

    void describe(Signal &signal, const SignalData &data) const
    {
        signal.name = data.name;
        signal.dataType = quint16(data.dataType);
        signal.comment = data.description.isEmpty() || signal.comment.isEmpty()
                             ? data.description + signal.comment
                             : data.description + QLatin1Char('\n') + signal.comment;
        if (data.number <= source.form.highestSpn)
            signal.spn = data.number;
        if (!source.withImplementation)
            return;
        signal.implementation = data.implementation != Implementation::kManagedVariable;
        signal.variable = data.varName;
    }

    const Source &source;
    Frame &frame;
    int room;
    int position = 0;
};

Frame frameOf(const FrameData &data, quint8 direction)
{
    Frame frame;
    frame.name = data.name;
    frame.comment = data.description;
    frame.cycleMs = data.cycleTimeMs;
    frame.inhibitMs = data.inhibitTimeMs;
    frame.isReceived = direction == Direction::kReceived;
    frame.isSent = !frame.isReceived;
    return frame;
}

void addGroup(const Source &source, const PgnData &group, const QVector<SpnData> &records,
              Collected &result)
{
    Frame frame = frameOf(group, group.direction);
    frame.identifier = source.form.identifier(group, source.address);
    frame.kind = FrameKind::Group;
    frame.pgn = group.number;
    frame.priority = group.priority;
    frame.isExtended = true;
    frame.format = FrameFormat::J1939;
    frame.signalList.reserve(records.size());
    Packer packer(source, frame, source.form.mostGroupBits);
    for (const SpnData &spn : records)
        result.unfitSignals += packer.add(spn, source.form.bitsInGroup(spn)) ? 0 : 1;
    frame.bytes = source.form.groupBytes(packer.bits());
    result.frames << std::move(frame);
}

FrameFormat formatOf(bool isExtended, int bytes)
{
    if (bytes > kClassicalBytes)
        return isExtended ? FrameFormat::ExtendedFd : FrameFormat::StandardFd;
    return isExtended ? FrameFormat::Extended : FrameFormat::Standard;
}

void addIdentifier(const Source &source, quint8 direction, quint32 id, Collected &result)
{
    if (id > kHighestExtended) {
        ++result.unfitIdentifiers;
        return;
    }
    ObjectDataBase::CANID data;
    (void)source.store.getCANIDData(source.line, id, direction, data); // or the defaults
    Frame frame = frameOf(data, direction);
    frame.identifier = id;
    frame.isExtended = id > kHighestStandard;
    const int mostBytes = source.isCanFd ? kFdBytes : kClassicalBytes;
    Packer packer(source, frame, mostBytes * 8);
    const auto records = source.store.getDataElementRecords(source.line, id, direction);
    frame.signalList.reserve(records.size());
    for (const ObjectDataBase::DataElement &element : records) {
        // As in the tables of the device, where texts have no bits.
        const int bits = COHelper::getDataLengthBits(static_cast<Type>(element.dataType));
        result.unfitSignals += packer.add(element, bits) ? 0 : 1;
    }
    frame.bytes = FrameBits::frameLength((packer.bits() + 7) / 8);
    frame.format = formatOf(frame.isExtended, frame.bytes);
    result.frames << std::move(frame);
}

} // namespace

Frames::Collected Frames::groupsOf(const Source &source)
{
    Collected result;
    for (const quint8 direction : {Direction::kReceived, Direction::kTransmitted}) {
        const QList<quint32> groups = source.store.getPGNs(source.line, direction, false);
        for (const quint32 pgn : groups) {
            PgnData group;
            (void)source.store.getPGNData(source.line, pgn, direction, group); // or the defaults
            group.number = pgn;
            group.direction = direction;
            addGroup(source, group, source.store.getSPNRecords(source.line, pgn, direction),
                     result);
        }
    }
    if (source.keepsAll && !source.store.existsPGN(source.line, ParameterGroup::kAddressClaimed,
                                                   Direction::kTransmitted))
        addGroup(source, AddressClaim::group(),
                 AddressClaim::signalsOf(source.store, source.line, source.form.reservedSpn),
                 result);
    return result;
}

Frames::Collected Frames::identifiersOf(const Source &source)
{
    Collected result;
    for (const quint8 direction : {Direction::kReceived, Direction::kTransmitted}) {
        const QList<quint32> identifiers = source.store.getCANIDs(source.line, direction);
        for (const quint32 id : identifiers)
            addIdentifier(source, direction, id, result);
    }
    return result;
}
