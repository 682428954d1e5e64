// Objects of the communication profile become frames.
#include "generators/frames/canopenframes.h"

#include "generators/frames/signalvalue.h"
#include "generators/generalsettings.h"
#include "support/cobid.h"
#include "support/cohelper.h"
#include "support/framebits.h"
#include "support/mappingentry.h"
#include "support/numbers.h"
#include "support/objectindex.h"
#include "support/objectranges.h"

#include <iterator>

namespace
{

using namespace Frames;
using Type = CAN::CANopenDataType;

constexpr quint8 kHighestNodeId = 127;
constexpr int kClassicalBytes = 8;
constexpr int kFdBytes = 64;

constexpr quint16 kSyncPeriod = 0x1006;  ///< in microseconds
constexpr quint16 kSyncCounter = 0x1019; ///< its highest value; 0 for no counter
constexpr quint16 kHighestDummy = 0x1F;  ///< data types stand for bits without a meaning
constexpr quint32 kFirstEventDriven = 254;
constexpr double kInhibitStepsOfMs = 10; ///< inhibit times are kept in steps of 100 us

/// A part of a frame whose content the standard fixes.
struct Field {
    const char *name; ///< empty: a gap
    int bits;
    const char *comment = "";
    ValueTexts values = {};
};

// clang-format off
constexpr ValueText kNmtCommands[] = {
    {1, "Start"}, {2, "Stop"}, {128, "Enter pre-operational"}, {129, "Reset node"}, {130, "Reset communication"},
};
constexpr ValueText kStates[] = {
    {0, "Boot-up"}, {4, "Stopped"}, {5, "Operational"}, {127, "Pre-operational"},
};
constexpr ValueText kRequests[] = {
    {0x21, "Write in segments"}, {0x23, "Write 4 bytes"}, {0x27, "Write 3 bytes"}, {0x2B, "Write 2 bytes"},
    {0x2F, "Write 1 byte"}, {0x40, "Read"}, {0x80, "Abort"},
};
constexpr ValueText kResponses[] = {
    {0x41, "Read in segments"}, {0x43, "Read 4 bytes"}, {0x47, "Read 3 bytes"}, {0x4B, "Read 2 bytes"},
    {0x4F, "Read 1 byte"}, {0x60, "Written"}, {0x80, "Abort"},
};

constexpr Field kNmtFields[] = {
    {"Command", 8, "", kNmtCommands}, {"Node_ID", 8, "0: all nodes"},
};
constexpr Field kCounterFields[] = {{"Counter", 8}};
constexpr Field kTimeFields[] = {
    {"Milliseconds", 28, "Since midnight"}, {"", 4}, {"Days", 16, "Since 1984-01-01"},
};
constexpr Field kEmergencyFields[] = {
    {"Error_code", 16, "0: no error any more"}, {"Error_register", 8, "Object 0x1001"}, {"Manufacturer_specific", 40},
};
constexpr Field kRequestFields[] = {
    {"Command", 8, "", kRequests}, {"Index", 16}, {"Subindex", 8}, {"Data", 32, "The reason if the command is to abort"},
};
constexpr Field kResponseFields[] = {
    {"Command", 8, "", kResponses}, {"Index", 16}, {"Subindex", 8}, {"Data", 32, "The reason if the command is to abort"},
};
constexpr Field kHeartbeatFields[] = {
    {"State", 7, "", kStates}, {"Toggle", 1, "Of answers to node guarding"},
};
constexpr Field kMultiplexedFields[] = {
    {"Address", 8, "Bit 7: a destination; below it the node-ID, 0 for all"}, {"Index", 16}, {"Subindex", 8}, {"Data", 32},
};
// clang-format on

quint32 identifierOf(quint32 cobId)
{
    return cobId &
           (cobId & CobIdBit::kExtendedFrame ? CobIdBit::kExtendedId : CobIdBit::kStandardId);
}

/// Only NMT has the identifier 0.
bool isOnBus(quint32 cobId)
{
    return identifierOf(cobId) != 0;
}

/// An identifier with the bits beside it.
struct CobId {
    quint32 value = 0;
    bool addsNodeId = false; ///< it would be another one with another node-ID
};

/// Of SDO, PDO and EMCY.
bool isOff(CobId cobId)
{
    return cobId.value & CobIdBit::kNotValid || !isOnBus(cobId.value);
}

class Collector
{
public:
    Collector(const Source &from, quint8 ownNodeId) : source(from), nodeId(ownNodeId) {}

    Collected collect();

private:
    std::optional<CobId> cobId(quint16 index, quint8 sub) const;
    std::optional<quint32> number(quint16 index, quint8 sub) const;
    quint32 valueOf(quint16 index, quint8 sub) const { return number(index, sub).value_or(0); }
    bool has(quint16 index) const { return source.store.existIndex(source.line, index); }
    CobId ofDevice(quint32 base) const { return {base + nodeId, true}; }
    QString withoutNodeId(const QString &text, bool *addsNodeId) const;

    /// To be filled before the next one is added.
    Frame *add(FrameKind kind, const char *name, CobId cobId);
    template <size_t N>
    static void fill(Frame *frame, const Field (&fields)[N]);

    void addNmt();
    void addSync();
    void addTime();
    void addEmergency();
    void addSdos();
    void addSdo(bool isServer, quint16 index, CobId request, CobId response);
    void addHeartbeat();
    void addPdos(const ObjectRange &parameters, bool isSent);
    void addPdo(quint16 index, quint16 number, bool isSent);
    void addMapping(Frame &frame, quint16 index);
    bool isLeftOut(CobId cobId) const { return isOff(cobId) && !source.keepsAll; }
    Signal mapped(quint16 index, quint8 sub, int bits) const;
    Signal described(quint16 index, quint8 sub, int bits) const;

    const Source &source;
    quint8 nodeId;
    Collected result;
};

// --- Values ---

/// \a text without "$NODEID" and what adds it.
QString Collector::withoutNodeId(const QString &text, bool *addsNodeId) const
{
    QString rest = text;
    rest.remove(QStringLiteral("$NODEID"), Qt::CaseInsensitive);
    *addsNodeId = rest.size() != text.size();
    if (*addsNodeId)
        rest.remove(QLatin1Char('+')).remove(QLatin1Char(' '));
    return rest.isEmpty() && *addsNodeId ? QStringLiteral("0") : rest;
}

/// The value that the project gives to a subindex, if it gives one.
std::optional<CobId> Collector::cobId(quint16 index, quint8 sub) const
{
    bool addsNodeId = false;
    const QString text =
        withoutNodeId(source.store.getSubIndexValue(source.line, index, sub), &addsNodeId);
    bool isNumber = false;
    const quint32 value = Numbers::toUIntByPrefix(text, &isNumber);
    if (!isNumber)
        return std::nullopt;
    return CobId{value + (addsNodeId ? nodeId : 0), addsNodeId};
}

std::optional<quint32> Collector::number(quint16 index, quint8 sub) const
{
    const auto found = cobId(index, sub);
    return found ? std::optional(found->value) : std::nullopt;
}

// --- Frames ---

Frame *Collector::add(FrameKind kind, const char *name, CobId cobId)
{
    const bool isExtended = cobId.value & CobIdBit::kExtendedFrame;
    Frame frame;
    frame.kind = kind;
    frame.name = QLatin1String(name);
    frame.identifier = identifierOf(cobId.value);
    frame.addsNodeId = cobId.addsNodeId;
    frame.isExtended = isExtended;
    frame.format = isExtended ? FrameFormat::Extended : FrameFormat::Standard;
    result.frames << frame;
    return &result.frames.last();
}

template <size_t N>
void Collector::fill(Frame *frame, const Field (&fields)[N])
{
    int position = 0;
    for (const Field &field : fields) {
        Signal signal = numberOf(Type::Unknown, field.bits, QString());
        signal.name = QLatin1String(field.name);
        signal.comment = QLatin1String(field.comment);
        signal.start = position;
        signal.values = field.values;
        position += field.bits;
        if (!signal.name.isEmpty())
            frame->signalList << signal;
    }
    frame->bytes = position / 8;
}

void Collector::addNmt()
{
    Frame *frame = add(FrameKind::Nmt, "NMT", {ConnectionSet::kNmt, false});
    frame->isSent = GeneralSettings(source.store).decimalOfLine("nmtmaster", source.line) != 0;
    frame->isReceived = !frame->isSent;
    fill(frame, kNmtFields);
}

void Collector::addSync()
{
    if (!has(ObjectIndex::kSyncCobId))
        return;
    const CobId sync =
        cobId(ObjectIndex::kSyncCobId, 0).value_or(CobId{ConnectionSet::kSync, false});
    if (!isOnBus(sync.value))
        return;
    Frame *frame = add(FrameKind::Sync, "SYNC", sync);
    frame->index = ObjectIndex::kSyncCobId;
    frame->isSent = sync.value & CobIdBit::kProducer;
    frame->isReceived = !frame->isSent;
    frame->cycleMs = valueOf(kSyncPeriod, 0) / 1000.0;
    if (valueOf(kSyncCounter, 0) != 0)
        fill(frame, kCounterFields);
}

void Collector::addTime()
{
    if (!has(ObjectIndex::kTimeCobId))
        return;
    const CobId time = cobId(ObjectIndex::kTimeCobId, 0)
                           .value_or(CobId{ConnectionSet::kTime | CobIdBit::kConsumer, false});
    if (!isOnBus(time.value))
        return;
    Frame *frame = add(FrameKind::Time, "TIME", time);
    frame->index = ObjectIndex::kTimeCobId;
    frame->isSent = time.value & CobIdBit::kProducer;
    frame->isReceived = time.value & CobIdBit::kConsumer;
    fill(frame, kTimeFields);
}

void Collector::addEmergency()
{
    if (!has(ObjectIndex::kEmergencyCobId))
        return;
    const CobId emergency =
        cobId(ObjectIndex::kEmergencyCobId, 0).value_or(ofDevice(ConnectionSet::kEmergency));
    if (isLeftOut(emergency))
        return;
    Frame *frame = add(FrameKind::Emergency, "EMCY", emergency);
    frame->index = ObjectIndex::kEmergencyCobId;
    frame->isEnabled = !isOff(emergency);
    frame->isSent = true;
    frame->inhibitMs = valueOf(ObjectIndex::kEmergencyInhibitTime, 0) / kInhibitStepsOfMs;
    fill(frame, kEmergencyFields);
}

void Collector::addHeartbeat()
{
    Frame *frame = add(FrameKind::Heartbeat, "Heartbeat", ofDevice(ConnectionSet::kHeartbeat));
    if (has(ObjectIndex::kHeartbeatProducer))
        frame->index = ObjectIndex::kHeartbeatProducer;
    frame->isSent = true;
    frame->cycleMs = valueOf(ObjectIndex::kHeartbeatProducer, 0);
    fill(frame, kHeartbeatFields);
}

/// Requests go to the server.
void Collector::addSdo(bool isServer, quint16 index, CobId request, CobId response)
{
    if (isLeftOut(request) || isLeftOut(response))
        return;
    const bool isEnabled = !isOff(request) && !isOff(response);
    const int number =
        (isServer ? ObjectRanges::kSdoServers : ObjectRanges::kSdoClients).numberOf(index);
    const QString name = QLatin1String(isServer ? "SDO_server" : "SDO_client") +
                         (number == 1 && isServer ? QString() : QString::number(number));
    const auto addPart = [&](CobId part, const char *tail, bool isSent) {
        Frame *frame = add(FrameKind::Sdo, "", part);
        frame->index = has(index) ? index : 0;
        frame->isEnabled = isEnabled;
        frame->name = name + QLatin1String(tail);
        frame->isSent = isSent;
        frame->isReceived = !isSent;
        return frame;
    };
    fill(addPart(request, "_request", !isServer), kRequestFields);
    fill(addPart(response, "_response", isServer), kResponseFields);
}

void Collector::addSdos()
{
    // A device without the object has the server of the predefined connection set all the same.
    constexpr quint16 kDefaultServer = ObjectRanges::kSdoServers.first;
    constexpr CobId kNone = {CobIdBit::kNotValid, false};
    addSdo(true, kDefaultServer,
           cobId(kDefaultServer, 1).value_or(ofDevice(ConnectionSet::kSdoRequest)),
           cobId(kDefaultServer, 2).value_or(ofDevice(ConnectionSet::kSdoResponse)));
    const QList<quint16> servers =
        source.store.getIndices(source.line, ObjectRanges::kFurtherSdoServers);
    for (const quint16 index : servers)
        addSdo(true, index, cobId(index, 1).value_or(kNone), cobId(index, 2).value_or(kNone));
    const QList<quint16> clients = source.store.getIndices(source.line, ObjectRanges::kSdoClients);
    for (const quint16 index : clients)
        addSdo(false, index, cobId(index, 1).value_or(kNone), cobId(index, 2).value_or(kNone));
}

// --- PDOs ---

void Collector::addPdos(const ObjectRange &parameters, bool isSent)
{
    const QList<quint16> indices = source.store.getIndices(source.line, parameters);
    for (const quint16 index : indices)
        addPdo(index, parameters.numberOf(index), isSent);
}

void Collector::addPdo(quint16 index, quint16 pdo, bool isSent)
{
    const CobId predefined = pdo > ConnectionSet::kPdos
                                 ? CobId{CobIdBit::kNotValid, false}
                                 : ofDevice((isSent ? ConnectionSet::kTpdo : ConnectionSet::kRpdo) +
                                            (pdo - 1) * ConnectionSet::kBetweenPdos);
    const CobId given = cobId(index, PdoParameter::kCobId).value_or(predefined);
    if (isLeftOut(given))
        return;
    Frame *frame = add(isSent ? FrameKind::Tpdo : FrameKind::Rpdo, "", given);
    frame->index = index;
    frame->isEnabled = !isOff(given);
    frame->name = QLatin1String(isSent ? "TPDO" : "RPDO") + QString::number(pdo);
    frame->comment = source.store.getIndexName(source.line, index);
    frame->isSent = isSent;
    frame->isReceived = !isSent;
    frame->transmissionType = number(index, PdoParameter::kTransmissionType);
    frame->eventTimerMs = valueOf(index, PdoParameter::kEventTimer);
    if (isSent)
        frame->inhibitMs = valueOf(index, PdoParameter::kInhibitTime) / kInhibitStepsOfMs;
    if (isSent && frame->transmissionType.value_or(0) >= kFirstEventDriven)
        frame->cycleMs = frame->eventTimerMs;
    addMapping(*frame, index + ObjectRanges::kFromPdoParameterToMapping);
}

void Collector::addMapping(Frame &frame, quint16 index)
{
    const quint32 count = valueOf(index, 0);
    if (count == PdoEntryCount::kSourceMpdo || count == PdoEntryCount::kDestinationMpdo) {
        fill(&frame, kMultiplexedFields);
        return;
    }
    const int room = (source.isCanFd ? kFdBytes : kClassicalBytes) * 8;
    int position = 0;
    for (quint32 entry = 1; entry <= qMin(count, quint32(PdoEntryCount::kHighest)); ++entry) {
        const auto mapping = MappingEntry::of(valueOf(index, quint8(entry)));
        const int bits = mapping.bits;
        const bool isSignal = bits != 0 && mapping.index > kHighestDummy;
        const bool isWithin = position + bits <= room;
        if ((isSignal && isWithin) || (bits != 0 && source.keepsAll)) {
            Signal signal = mapped(mapping.index, mapping.sub, bits);
            signal.start = position;
            frame.signalList << signal;
        }
        if (isSignal && !isWithin)
            ++result.unfitSignals;
        position = source.keepsAll ? position + bits : qMin(position + bits, room);
    }
    frame.bytes = FrameBits::frameLength((qMin(position, room) + 7) / 8);
    if (frame.bytes > kClassicalBytes)
        frame.format = frame.isExtended ? FrameFormat::ExtendedFd : FrameFormat::StandardFd;
}

Signal Collector::described(quint16 index, quint8 sub, int bits) const
{
    const QString place = QStringLiteral("0x%1:%2").arg(Numbers::toHex(index, 4)).arg(sub);
    IndexData object;
    SubIndexData data;
    if (!source.store.getIndexData(source.line, index, object) ||
        !source.store.getSubIndexData(source.line, index, sub, data)) {
        Signal unknown = numberOf(Type::Unknown, bits, QString());
        unknown.name = QStringLiteral("Object_") + place.mid(2);
        return unknown;
    }
    bool addsNodeId = false;
    const QString start = withoutNodeId(data.defaultValue, &addsNodeId);
    Signal signal = numberOf(static_cast<Type>(data.dataType), bits,
                             addsNodeId ? QString::number(valueOf(index, sub)) : start);
    signal.name = Frames::nameOf(object, data);
    signal.dataType = data.dataType;
    signal.comment = QStringLiteral("Object ") + place;
    for (const QString &words : {object.description, data.description}) {
        if (!words.isEmpty())
            signal.comment += QLatin1Char('\n') + words;
    }
    if (data.limitInEds)
        setLimits(signal, data.lowLimit, data.upLimit);
    return signal;
}

Collected Collector::collect()
{
    addNmt();
    addSync();
    addTime();
    addEmergency();
    addPdos(ObjectRanges::kTpdoParameters, true);
    addPdos(ObjectRanges::kRpdoParameters, false);
    // What CAN FD has in place of SDOs (CiA 1301) has other contents.
    if (!source.isCanFd)
        addSdos();
    addHeartbeat();
    return result;
}

} // namespace

QString Frames::nameOf(const IndexData &object, const SubIndexData &data)
{
    if (object.objectCode == CANopen::ObjectCode::Var || data.name.startsWith(object.name))
        return object.objectCode == CANopen::ObjectCode::Var ? object.name : data.name;
    return object.name + QLatin1Char(' ') + data.name;
}

Signal Collector::mapped(quint16 index, quint8 sub, int bits) const
{
    Signal signal;
    if (index > kHighestDummy) {
        signal = described(index, sub, bits);
    } else {
        signal = numberOf(static_cast<Type>(index), bits, QString());
        signal.isFiller = true;
        signal.dataType = index;
    }
    signal.index = index;
    signal.sub = sub;
    return signal;
}

std::optional<quint8> Frames::nodeIdOf(const ObjectDataBase &store, quint8 line)
{
    bool isNumber = false;
    const quint32 number =
        Numbers::toUIntByPrefix(GeneralSettings(store).ofLine("co_node_id", line), &isNumber);
    if (!isNumber || number == 0 || number > kHighestNodeId)
        return std::nullopt;
    return quint8(number);
}

Frames::Collected Frames::canopenFramesOf(const Source &source, quint8 nodeId)
{
    return Collector(source, nodeId).collect();
}
