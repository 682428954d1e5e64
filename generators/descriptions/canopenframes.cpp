// Objects of the communication profile become frames.
#include "generators/descriptions/canopenframes.h"

#include "generators/generalsettings.h"
#include "support/cohelper.h"
#include "support/numbers.h"
#include "support/objectindex.h"
#include "support/objectranges.h"

#include <iterator>

namespace
{

using namespace Dbc;
using Type = CAN::CANopenDataType;

constexpr quint8 kHighestNodeId = 127;
constexpr quint32 kHighestStandard = 0x7FF;
constexpr quint32 kHighestExtended = 0x1FFFFFFF;
constexpr int kClassicalBytes = 8;
constexpr int kFdBytes = 64;

// Bits of a COB-ID beside the identifier (CiA 301, 7.5.2.5 and others).
constexpr quint32 kNotValid = quint32(1) << 31; ///< of SDO, PDO and EMCY
constexpr quint32 kConsumer = quint32(1) << 31; ///< of TIME
constexpr quint32 kProducer = quint32(1) << 30; ///< of SYNC and TIME
constexpr quint32 kExtendedFrame = quint32(1) << 29;

// Identifiers of the predefined connection set (CiA 301, 7.3.5), without node-ID.
constexpr quint32 kNmt = 0x000;
constexpr quint32 kSync = 0x080;
constexpr quint32 kEmergency = 0x080;
constexpr quint32 kTime = 0x100;
constexpr quint32 kTpdo = 0x180;
constexpr quint32 kRpdo = 0x200;
constexpr quint32 kSdoResponse = 0x580;
constexpr quint32 kSdoRequest = 0x600;
constexpr quint32 kHeartbeat = 0x700;
constexpr quint32 kBetweenPdos = 0x100;
constexpr quint16 kPredefinedPdos = 4;

constexpr quint16 kSyncPeriod = 0x1006;  ///< in microseconds
constexpr quint16 kSyncCounter = 0x1019; ///< its highest value; 0 for no counter
constexpr quint16 kHighestDummy = 0x1F;  ///< data types stand for bits without a meaning
constexpr quint32 kFirstEventDriven = 254;

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
    return cobId & (cobId & kExtendedFrame ? kHighestExtended : kHighestStandard);
}

/// Only NMT has the identifier 0.
bool isOnBus(quint32 cobId)
{
    return identifierOf(cobId) != 0;
}

quint16 milliseconds(quint32 value)
{
    return quint16(qMin(value, 0xFFFFU));
}

class Collector
{
public:
    Collector(const Source &from, quint8 ownNodeId) : source(from), nodeId(ownNodeId) {}

    Frames collect();

private:
    std::optional<quint32> number(quint16 index, quint8 sub) const;
    quint32 valueOf(quint16 index, quint8 sub) const { return number(index, sub).value_or(0); }
    bool has(quint16 index) const { return source.store.existIndex(source.line, index); }
    QString withoutNodeId(const QString &text, bool *addsNodeId) const;

    /// To be filled before the next one is added.
    Frame *add(const char *name, quint32 cobId);
    template <size_t N>
    static void fill(Frame *frame, const Field (&fields)[N]);

    void addNmt();
    void addSync();
    void addTime();
    void addEmergency();
    void addSdos();
    void addSdo(bool isServer, quint16 number, quint32 request, quint32 response);
    void addHeartbeat();
    void addPdos(const ObjectRange &parameters, bool isSent);
    void addPdo(quint16 index, quint16 number, bool isSent);
    void addMapping(Frame &frame, quint16 index);
    Signal mapped(quint16 index, quint8 sub, int bits) const;

    const Source &source;
    quint8 nodeId;
    Frames result;
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
std::optional<quint32> Collector::number(quint16 index, quint8 sub) const
{
    bool addsNodeId = false;
    const QString text =
        withoutNodeId(source.store.getSubIndexValue(source.line, index, sub), &addsNodeId);
    bool isNumber = false;
    const quint32 value = Numbers::toUIntByPrefix(text, &isNumber);
    if (!isNumber)
        return std::nullopt;
    return value + (addsNodeId ? nodeId : 0);
}

// --- Frames ---

Frame *Collector::add(const char *name, quint32 cobId)
{
    const bool isExtended = cobId & kExtendedFrame;
    Frame frame;
    frame.name = QLatin1String(name);
    frame.identifier = identifierOf(cobId);
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
    Frame *frame = add("NMT", kNmt);
    frame->isSent = GeneralSettings(source.store).decimalOfLine("nmtmaster", source.line) != 0;
    frame->isReceived = !frame->isSent;
    fill(frame, kNmtFields);
}

void Collector::addSync()
{
    if (!has(ObjectIndex::kSyncCobId))
        return;
    const quint32 cobId = number(ObjectIndex::kSyncCobId, 0).value_or(kSync);
    if (!isOnBus(cobId))
        return;
    Frame *frame = add("SYNC", cobId);
    frame->isSent = cobId & kProducer;
    frame->isReceived = !frame->isSent;
    frame->cycleTimeMs = milliseconds(valueOf(kSyncPeriod, 0) / 1000);
    if (valueOf(kSyncCounter, 0) != 0)
        fill(frame, kCounterFields);
}

void Collector::addTime()
{
    if (!has(ObjectIndex::kTimeCobId))
        return;
    const quint32 cobId = number(ObjectIndex::kTimeCobId, 0).value_or(kTime | kConsumer);
    if (!isOnBus(cobId))
        return;
    Frame *frame = add("TIME", cobId);
    frame->isSent = cobId & kProducer;
    frame->isReceived = cobId & kConsumer;
    fill(frame, kTimeFields);
}

void Collector::addEmergency()
{
    if (!has(ObjectIndex::kEmergencyCobId))
        return;
    const quint32 cobId = number(ObjectIndex::kEmergencyCobId, 0).value_or(kEmergency + nodeId);
    if (cobId & kNotValid || !isOnBus(cobId))
        return;
    Frame *frame = add("EMCY", cobId);
    frame->isSent = true;
    fill(frame, kEmergencyFields);
}

void Collector::addHeartbeat()
{
    Frame *frame = add("Heartbeat", kHeartbeat + nodeId);
    frame->isSent = true;
    frame->cycleTimeMs = milliseconds(valueOf(ObjectIndex::kHeartbeatProducer, 0));
    fill(frame, kHeartbeatFields);
}

/// Requests go to the server.
void Collector::addSdo(bool isServer, quint16 number, quint32 request, quint32 response)
{
    if ((request | response) & kNotValid || !isOnBus(request) || !isOnBus(response))
        return;
    const QString name = QLatin1String(isServer ? "SDO_server" : "SDO_client") +
                         (number == 1 && isServer ? QString() : QString::number(number));
    const auto addPart = [&](quint32 cobId, const char *tail, bool isSent) {
        Frame *frame = add("", cobId);
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
    addSdo(true, 1, number(kDefaultServer, 1).value_or(kSdoRequest + nodeId),
           number(kDefaultServer, 2).value_or(kSdoResponse + nodeId));
    const QList<quint16> servers =
        source.store.getIndices(source.line, ObjectRanges::kFurtherSdoServers);
    for (const quint16 index : servers)
        addSdo(true, ObjectRanges::kSdoServers.numberOf(index),
               number(index, 1).value_or(kNotValid), number(index, 2).value_or(kNotValid));
    const QList<quint16> clients = source.store.getIndices(source.line, ObjectRanges::kSdoClients);
    for (const quint16 index : clients)
        addSdo(false, ObjectRanges::kSdoClients.numberOf(index),
               number(index, 1).value_or(kNotValid), number(index, 2).value_or(kNotValid));
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
    const quint32 predefined = pdo > kPredefinedPdos
                                   ? kNotValid
                                   : (isSent ? kTpdo : kRpdo) + (pdo - 1) * kBetweenPdos + nodeId;
    const quint32 cobId = number(index, PdoParameter::kCobId).value_or(predefined);
    if (cobId & kNotValid || !isOnBus(cobId))
        return;
    Frame *frame = add("", cobId);
    frame->name = QLatin1String(isSent ? "TPDO" : "RPDO") + QString::number(pdo);
    frame->comment = source.store.getIndexName(source.line, index);
    frame->isSent = isSent;
    frame->isReceived = !isSent;
    if (isSent && valueOf(index, PdoParameter::kTransmissionType) >= kFirstEventDriven)
        frame->cycleTimeMs = milliseconds(valueOf(index, PdoParameter::kEventTimer));
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
        const quint32 mapping = valueOf(index, quint8(entry));
        const int bits = mapping & 0xFF;
        const auto mappedIndex = quint16(mapping >> 16);
        const bool isSignal = bits != 0 && mappedIndex > kHighestDummy;
        if (isSignal && position + bits <= room) {
            Signal signal = mapped(mappedIndex, quint8(mapping >> 8), bits);
            signal.start = position;
            frame.signalList << signal;
        } else if (isSignal) {
            ++result.unfitSignals;
        }
        position = qMin(position + bits, room);
    }
    frame.bytes = frameLength((position + 7) / 8);
    if (frame.bytes > kClassicalBytes)
        frame.format = frame.isExtended ? FrameFormat::ExtendedFd : FrameFormat::StandardFd;
}

/// What tells an object apart: the name of a member alone often says too little.
QString nameOf(const IndexData &object, const SubIndexData &data)
{
    if (object.objectCode == CANopen::ObjectCode::Var || data.name.startsWith(object.name))
        return object.objectCode == CANopen::ObjectCode::Var ? object.name : data.name;
    return object.name + QLatin1Char(' ') + data.name;
}

Signal Collector::mapped(quint16 index, quint8 sub, int bits) const
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
    signal.name = nameOf(object, data);
    signal.comment = QStringLiteral("Object ") + place;
    for (const QString &words : {object.description, data.description}) {
        if (!words.isEmpty())
            signal.comment += QLatin1Char('\n') + words;
    }
    if (data.limitInEds)
        setLimits(signal, data.lowLimit, data.upLimit);
    return signal;
}

Frames Collector::collect()
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

std::optional<quint8> Dbc::nodeIdOf(const ObjectDataBase &store, quint8 line)
{
    bool isNumber = false;
    const quint32 number =
        Numbers::toUIntByPrefix(GeneralSettings(store).ofLine("co_node_id", line), &isNumber);
    if (!isNumber || number == 0 || number > kHighestNodeId)
        return std::nullopt;
    return quint8(number);
}

Frames Dbc::canopenFramesOf(const Source &source, quint8 nodeId)
{
    return Collector(source, nodeId).collect();
}
