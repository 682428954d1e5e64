// Frames of the bus, as the page shows them.
#include "generators/overview/framefacts.h"

#include "generators/addressclaim.h"
#include "generators/frames/canopenframes.h"
#include "generators/generalsettings.h"
#include "generators/overview/links.h"
#include "store/objectdatabase.h"
#include "store/projectfeatures.h"
#include "support/cobid.h"
#include "support/cohelper.h"
#include "support/numbers.h"
#include "support/objectindex.h"

#include <QSet>

#include <algorithm>

namespace
{

using namespace Overview;

/// Of a device whose node-ID is not known, identifiers are counted from this one.
constexpr quint8 kNoNodeId = 0;
constexpr int kFdBytes = 64;
constexpr quint8 kFirstPdu2Format = 240;

/// The word for a kind of frames, and for those who use their identifiers.
struct KindRow {
    Frames::FrameKind kind;
    const char *word;
    const char *function;
};

// clang-format off
constexpr KindRow kKinds[] = {
    {Frames::FrameKind::Nmt,        "NMT",       "NMT"},
    {Frames::FrameKind::Sync,       "SYNC",      "SYNC"},
    {Frames::FrameKind::Emergency,  "EMCY",      "EMCY"},
    {Frames::FrameKind::Time,       "TIME",      "TIME"},
    {Frames::FrameKind::Rpdo,       "RPDO",      "PDO"},
    {Frames::FrameKind::Tpdo,       "TPDO",      "PDO"},
    {Frames::FrameKind::Sdo,        "SDO",       "SDO"},
    {Frames::FrameKind::Heartbeat,  "heartbeat", "heartbeat"},
    {Frames::FrameKind::Group,      "group",     "group"},
    {Frames::FrameKind::Identifier, "frame",     "frame"},
};
// clang-format on

const KindRow &rowOf(Frames::FrameKind kind)
{
    return kKinds[int(kind)];
}

/// Types of transmission (CiA 301, 7.5.2.36 and 7.5.2.38).
QString transmissionText(quint32 type, bool isSent)
{
    constexpr quint32 kLastSync = 240;
    constexpr quint32 kRemoteSync = 252;
    constexpr quint32 kRemote = 253;
    constexpr quint32 kEventOfMaker = 254;
    constexpr quint32 kEventOfProfile = 255;
    if (type <= kLastSync && !isSent)
        return QStringLiteral("taken over with SYNC");
    if (type == 0)
        return QStringLiteral("with SYNC, after an event");
    if (type == 1)
        return QStringLiteral("with each SYNC");
    if (type <= kLastSync)
        return QStringLiteral("with every %1 SYNCs").arg(type);
    if (type == kRemoteSync)
        return QStringLiteral("on request, read with SYNC");
    if (type == kRemote)
        return QStringLiteral("on request");
    if (type == kEventOfMaker)
        return QStringLiteral("event, of the maker");
    return type == kEventOfProfile ? QStringLiteral("event, of the profile")
                                   : QStringLiteral("reserved");
}

std::optional<double> unlessZero(double number)
{
    return number == 0 ? std::nullopt : std::optional(number);
}

/// Does the project say what the frame holds, and not the standard?
bool isOfProject(Frames::FrameKind kind)
{
    return kind == Frames::FrameKind::Rpdo || kind == Frames::FrameKind::Tpdo ||
           kind == Frames::FrameKind::Group || kind == Frames::FrameKind::Identifier;
}

int signalsOf(const Frames::Frame &frame)
{
    return int(std::count_if(frame.signalList.begin(), frame.signalList.end(),
                             [](const Frames::Signal &signal) { return !signal.isFiller; }));
}

Frames::Source sourceOf(const ObjectDataBase &store, const Line &line)
{
    Frames::Source source{store, Frames::busForm(), line.number};
    source.address = quint8(line.address.value_or(AddressClaim::kNullAddress));
    source.isCanFd = line.isCanFd;
    source.keepsAll = true;
    return source;
}

class Reader
{
public:
    Reader(const ObjectDataBase &database, Line &to)
        : store(database), line(to), source(sourceOf(database, to))
    {
    }

    void readCanopen();
    void readGroups() { addAll(Frames::groupsOf(source).frames); }
    void readIdentifiers() { addAll(Frames::identifiersOf(source).frames); }
    void addDiagnostics();

private:
    void addAll(QVector<Frames::Frame> frames);
    void add(const Frames::Frame &from);
    void name(const Frames::Frame &from, Frame &frame);
    void identify(const Frames::Frame &from, Frame &frame) const;
    void time(const Frames::Frame &from, Frame &frame) const;
    void address(const Frames::Frame &from, Frame &frame) const;
    void addCells(const Frames::Frame &from, Frame &frame) const;
    Cell cellOf(const Frames::Frame &from, const Frames::Signal &signal) const;
    QString noteOf(const Frames::Frame &from, const Frames::Signal &signal) const;
    std::optional<FrameBits::Count> bitsOf(const Frame &frame) const;
    QString onlyOne(const QString &key, Way way);
    void use(const Frame &frame, const char *function);
    void useOf(const char *function, Way way, quint32 id, std::optional<int> node);
    void addHeartbeatsOfOthers();
    void addEmergenciesOfOthers();
    void addLayerSetting();

    const ObjectDataBase &store;
    Line &line;
    Frames::Source source;
    QSet<QString> keys;
};

// --- One frame ---

/// A group or identifier may stand twice on a line, once for each way.
QString Reader::onlyOne(const QString &key, Way way)
{
    QString only = key;
    if (keys.contains(only))
        only += way == Way::Transmit ? QLatin1String("/transmit") : QLatin1String("/receive");
    keys.insert(only);
    return only;
}

void Reader::name(const Frames::Frame &from, Frame &frame)
{
    frame.kind = QLatin1String(rowOf(from.kind).word);
    frame.name = from.name;
    frame.description = from.comment;
    if (from.kind == Frames::FrameKind::Group) {
        frame.link = linkToGroup(line.number, from.pgn);
    } else if (from.kind == Frames::FrameKind::Identifier) {
        frame.link = linkToIdentifier(line.number, from.identifier);
    } else {
        frame.key = from.name.toLower().replace(QLatin1Char('_'), QLatin1Char('-'));
        frame.name.replace(QLatin1Char('_'), QLatin1Char(' '));
        frame.link = from.index == 0 ? QString() : linkTo(line.number, from.index);
    }
    if (frame.key.isEmpty())
        frame.key =
            onlyOne(frame.link.mid(frame.link.indexOf(QLatin1Char('/')) + 1), frame.direction);
}

/// What depends on a node-ID that is not known has no identifier.
void Reader::identify(const Frames::Frame &from, Frame &frame) const
{
    frame.isExtended = from.isExtended;
    frame.isEnabled = from.isEnabled && (from.isSent || from.isReceived); // TIME may be neither
    if (from.addsNodeId) {
        // The sum with the node-ID may have gone beyond the bits of an identifier.
        const quint32 bits = from.isExtended ? CobIdBit::kExtendedId : CobIdBit::kStandardId;
        frame.base = (from.identifier - quint32(line.nodeId.value_or(kNoNodeId))) & bits;
        frame.idText =
            QStringLiteral("0x%1 + node-ID").arg(Numbers::toHex(*frame.base, 3).toUpper());
    }
    const bool isKnown = !from.addsNodeId || line.nodeId;
    const bool isNone = !from.isEnabled && from.identifier == 0;
    if (isKnown && !isNone)
        frame.id = from.identifier;
}

void Reader::time(const Frames::Frame &from, Frame &frame) const
{
    const bool isTpdo = from.kind == Frames::FrameKind::Tpdo;
    frame.cycleMs = unlessZero(from.cycleMs);
    frame.inhibitMs = unlessZero(from.inhibitMs);
    if (from.transmissionType) {
        frame.transmission = int(*from.transmissionType);
        frame.transmissionText = transmissionText(*from.transmissionType, isTpdo);
    }
    (isTpdo ? frame.eventMs : frame.deadlineMs) = unlessZero(from.eventTimerMs);
}

void Reader::address(const Frames::Frame &from, Frame &frame) const
{
    if (from.kind != Frames::FrameKind::Group)
        return;
    frame.pgn = from.pgn;
    frame.priority = from.priority;
    const quint32 format = (from.identifier >> 16) & 0xFF;
    if (format < kFirstPdu2Format)
        frame.destination = int((from.identifier >> 8) & 0xFF);
}

/// Of groups on CAN FD those are known that one frame holds.
std::optional<FrameBits::Count> Reader::bitsOf(const Frame &frame) const
{
    constexpr int kGlobalAddress = 0xFF;
    if (frame.pgn && !frame.isFd)
        return FrameBits::group(frame.bytes,
                                frame.destination.value_or(kGlobalAddress) == kGlobalAddress);
    if (frame.bytes > kFdBytes)
        return std::nullopt;
    return frame.isFd ? FrameBits::canFd(frame.bytes, frame.isExtended)
                      : FrameBits::classical(frame.bytes, frame.isExtended);
}

void Reader::add(const Frames::Frame &from)
{
    constexpr int kClassicalBytes = 8;
    Frame frame;
    if (from.isSent)
        frame.direction = from.isReceived ? Way::Both : Way::Transmit;
    name(from, frame);
    identify(from, frame);
    time(from, frame);
    address(from, frame);
    frame.bytes = from.bytes;
    frame.isFd = line.isCanFd && from.bytes > kClassicalBytes;
    addCells(from, frame);
    frame.bits = bitsOf(frame);
    use(frame, rowOf(from.kind).function);
    if (isOfProject(from.kind))
        line.signalCount += signalsOf(from);
    line.frames.append(frame);
}

void Reader::use(const Frame &frame, const char *function)
{
    if (!frame.isEnabled || (!frame.id && !frame.base))
        return;
    Identifier identifier;
    identifier.id = frame.id;
    identifier.base = frame.base;
    identifier.isExtended = frame.isExtended;
    identifier.function = QLatin1String(function);
    identifier.direction = frame.direction;
    identifier.frame = frame.key;
    line.identifiers.append(identifier);
}

/// An identifier that stands for itself.
void Reader::useOf(const char *function, Way way, quint32 id, std::optional<int> node)
{
    Identifier identifier;
    identifier.id = id;
    identifier.function = QLatin1String(function);
    identifier.direction = way;
    identifier.node = node;
    line.identifiers.append(identifier);
}

void Reader::addHeartbeatsOfOthers()
{
    store.visitSubIndices(line.number, ObjectIndex::kHeartbeatConsumer, 1,
                          [&](quint8 /*sub*/, const SubIndexData &data) {
                              const quint32 value = Numbers::toUIntByPrefix(data.defaultValue);
                              const auto node = int((value >> 16) & 0xFF);
                              if (node != 0 && (value & 0xFFFF) != 0)
                                  useOf("heartbeat", Way::Receive,
                                        ConnectionSet::kHeartbeat + quint32(node), node);
                          });
}

void Reader::addEmergenciesOfOthers()
{
    store.visitSubIndices(
        line.number, ObjectIndex::kEmergencyConsumer, 1, [&](quint8 sub, const SubIndexData &data) {
            const quint32 cobId = Numbers::toUIntByPrefix(data.defaultValue);
            if (!(cobId & CobIdBit::kNotValid) && (cobId & CobIdBit::kStandardId) != 0)
                useOf("EMCY", Way::Receive, cobId & CobIdBit::kStandardId, int(sub));
        });
}

void Reader::addLayerSetting()
{
    if (!readProjectFeatures(store).hasLss())
        return;
    useOf("LSS", Way::Transmit, ConnectionSet::kLssResponse, std::nullopt);
    useOf("LSS", Way::Receive, ConnectionSet::kLssRequest, std::nullopt);
}

/// The identifiers of the diagnostics server (UDS) of the line, which the stack sends and receives
/// by itself.
void Reader::addDiagnostics()
{
    constexpr quint32 kHighestStandard = 0x7FF;
    constexpr std::pair<const char *, Way> kUses[] = {
        {"uds_physical_request_id", Way::Receive},
        {"uds_physical_response_id", Way::Transmit},
        {"uds_functional_request_id", Way::Receive},
    };
    const GeneralSettings settings(store);
    const auto number = [&](const char *key) {
        return Numbers::toUIntByPrefix(settings.ofLine(key, line.number));
    };
    if (!readProjectFeatures(store).hasUdsServer() || number("uds_server_active") == 0)
        return;
    for (const auto &[key, way] : kUses) {
        const quint32 id = number(key);
        if (id == 0)
            continue;
        useOf("UDS", way, id, std::nullopt);
        line.identifiers.last().isExtended = id > kHighestStandard;
    }
}

// --- Cells ---

QString Reader::noteOf(const Frames::Frame &from, const Frames::Signal &signal) const
{
    if (signal.isFiller)
        return {};
    if (signal.bits == 0)
        return QStringLiteral("without bits");
    if (signal.start + signal.bits > from.bytes * 8)
        return QStringLiteral("not within the frame");
    if (signal.index == 0)
        return {};
    if (!store.existSubIndex(line.number, signal.index, signal.sub))
        return QStringLiteral("there is no such object");
    const int own = COHelper::getDataLengthBits(static_cast<CAN::CANopenDataType>(signal.dataType));
    return own == 0 || own == signal.bits ? QString()
                                          : QStringLiteral("the object has %1 bits").arg(own);
}

Cell Reader::cellOf(const Frames::Frame &from, const Frames::Signal &signal) const
{
    Cell cell;
    cell.start = signal.start;
    cell.bits = signal.bits;
    cell.name = signal.name;
    if (!isOfProject(from.kind))
        cell.name.replace(QLatin1Char('_'), QLatin1Char(' ')); // as DBC files write them
    if (signal.isFiller && cell.name.isEmpty())
        cell.name = QStringLiteral("dummy"); // a mapped one, which is not free
    cell.isGap = signal.isFiller;
    cell.note = noteOf(from, signal);
    if (signal.dataType != 0)
        cell.type = COHelper::index2DataTypeShortString(signal.dataType);
    if (signal.index != 0 && !signal.isFiller)
        cell.link = linkTo(line.number, signal.index, signal.sub);
    return cell;
}

/// In their order, with a gap for each run of bits that nothing takes.
void Reader::addCells(const Frames::Frame &from, Frame &frame) const
{
    for (const Frames::Signal &signal : from.signalList)
        frame.cells.append(cellOf(from, signal));
    const auto isBefore = [](const Cell &one, const Cell &other) {
        return one.start < other.start;
    };
    std::stable_sort(frame.cells.begin(), frame.cells.end(), isBefore);
    QVector<Cell> whole;
    int end = 0;
    const auto addGap = [&](int until) {
        Cell gap;
        gap.start = end;
        gap.bits = until - end;
        gap.isGap = true;
        if (gap.bits > 0)
            whole.append(gap);
    };
    for (const Cell &cell : qAsConst(frame.cells)) {
        addGap(cell.start);
        whole.append(cell);
        end = qMax(end, cell.start + cell.bits);
    }
    addGap(from.bytes * 8);
    frame.cells = whole;
}

// --- All frames ---

void Reader::addAll(QVector<Frames::Frame> frames)
{
    const auto isBefore = [](const Frames::Frame &one, const Frames::Frame &other) {
        if (one.kind != other.kind)
            return one.kind < other.kind;
        if (one.kind == Frames::FrameKind::Group)
            return one.pgn < other.pgn;
        return one.kind == Frames::FrameKind::Identifier && one.identifier < other.identifier;
    };
    std::stable_sort(frames.begin(), frames.end(), isBefore);
    for (const Frames::Frame &frame : qAsConst(frames))
        add(frame);
}

void Reader::readCanopen()
{
    const auto nodeId = quint8(line.nodeId.value_or(kNoNodeId));
    addAll(Frames::canopenFramesOf(source, nodeId).frames);
    addHeartbeatsOfOthers();
    addEmergenciesOfOthers();
    addLayerSetting();
}

} // namespace

void Overview::readFrames(const ObjectDataBase &store, LineType type, Line &line)
{
    Reader reader(store, line);
    if (carriesCANopen(type))
        reader.readCanopen();
    if (carriesJ1939(type))
        reader.readGroups();
    if (type == LineType::RawCan)
        reader.readIdentifiers();
    reader.addDiagnostics();
}
