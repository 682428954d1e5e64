// Frames of a line with their signals, and its diagnostic services, in the YAML form.
#include "store/yaml/yamlframes.h"

#include "store/fillers.h"
#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlrecord.h"
#include "support/cohelper.h"
#include "support/implementation.h"
#include "support/numbers.h"
#include "support/udssiddefinitions.h"

#include <algorithm>
#include <initializer_list>
#include <limits>
#include <map>
#include <utility>
#include <vector>

namespace
{

using Type = CAN::CANopenDataType;

constexpr qint64 kMostNumber = std::numeric_limits<quint32>::max();
constexpr qint64 kMostOfByte = std::numeric_limits<quint8>::max();

// --- What parameter groups and CAN identifiers differ in ---

template <class Frame>
struct Family;

template <>
struct Family<PgnData> {
    using Signal = SpnData;
    static constexpr const auto &kFrameTable = kPgnYaml;
    static constexpr const auto &kSignalTable = kSpnYaml;
    static constexpr auto kFrames = &LineRecord::groups;
    static constexpr auto kOthers = &LineRecord::otherSignals;
    static constexpr auto kNumber = &PgnData::number;
    static constexpr auto kFrameOfSignal = &SpnData::pgn;
    static constexpr const char *kFramesKey = YamlKeys::kGroups;
    static constexpr const char *kOthersKey = YamlKeys::kOtherSignals;
    static constexpr const char *kSignalsKey = YamlKeys::kSignals;
    static constexpr const char *kOtherFamilysKey = YamlKeys::kElements;
    static constexpr const char *kFrameKey = YamlKeys::kGroup;
    static constexpr const char *kNumberKey = "spn";
    static constexpr const char *kWhat = "a parameter group";
    static constexpr const char *kNumbered = "parameter group";
    static constexpr const char *kSignal = "a signal";
    static constexpr int kDigits = 4;

    static quint32 numberAfter(const SpnData *) { return 0; }
    static quint32 numberOfFiller(const SpnData &base)
    {
        return Fillers::kFirstNumber + quint16(base.pos);
    }
};

template <>
struct Family<CanIdData> {
    using Signal = DataElementData;
    static constexpr const auto &kFrameTable = kCanIdYaml;
    static constexpr const auto &kSignalTable = kDataElementYaml;
    static constexpr auto kFrames = &LineRecord::frames;
    static constexpr auto kOthers = &LineRecord::otherElements;
    static constexpr auto kNumber = &CanIdData::id;
    static constexpr auto kFrameOfSignal = &DataElementData::canid;
    static constexpr const char *kFramesKey = YamlKeys::kFrames;
    static constexpr const char *kOthersKey = YamlKeys::kOtherElements;
    static constexpr const char *kSignalsKey = YamlKeys::kElements;
    static constexpr const char *kOtherFamilysKey = YamlKeys::kSignals;
    static constexpr const char *kFrameKey = YamlKeys::kFrame;
    static constexpr const char *kNumberKey = "number";
    static constexpr const char *kWhat = "a CAN frame";
    static constexpr const char *kNumbered = "CAN frame";
    static constexpr const char *kSignal = "an element";
    static constexpr int kDigits = 1;

    static quint32 numberAfter(const DataElementData *before)
    {
        return before ? before->number + 1 : 1;
    }
    static quint32 numberOfFiller(const DataElementData &base) { return base.number; }
};

template <class Frame>
using SignalOf = typename Family<Frame>::Signal;
template <class Frame>
using RecordOf = FrameRecord<Frame, SignalOf<Frame>>;

QString latin1(const char *text)
{
    return QString::fromLatin1(text);
}

// --- What a signal is if nothing is said of it ---

/// In that frame, after the signal \a before, if there is one.
template <class Frame>
SignalOf<Frame> baseSignal(const Frame &frame, const SignalOf<Frame> *before)
{
    SignalOf<Frame> base;
    base.*Family<Frame>::kFrameOfSignal = frame.*Family<Frame>::kNumber;
    base.direction = frame.direction;
    base.pos = before ? qint16(before->pos + 1) : qint16(0);
    base.number = Family<Frame>::numberAfter(before);
    return base;
}

template <class Frame>
SignalOf<Frame> baseSignal(const RecordOf<Frame> &record)
{
    const auto &all = record.signalsOf;
    return baseSignal<Frame>(record.frame, all.empty() ? nullptr : &all.back());
}

/// The application has a variable for it, or the generated source keeps it.
quint32 usualImplementation(const SignalData &signal)
{
    return signal.varName.isEmpty() ? Implementation::kManagedVariable
                                    : Implementation::kApplicationVariable;
}

// --- Bits without a signal ---

template <class Frame>
SignalOf<Frame> makeFiller(const SignalOf<Frame> &base, quint32 type)
{
    SignalOf<Frame> filler = base;
    Fillers::make(&filler, type);
    filler.number = Family<Frame>::numberOfFiller(base);
    return filler;
}

/// Is it what "skip" makes in place of \a base?
template <class Frame>
bool isFiller(const SignalOf<Frame> &signal, const SignalOf<Frame> &base)
{
    return Fillers::canHaveType(signal.dataType) &&
           YamlRecord::isEqual(Family<Frame>::kSignalTable, signal,
                               makeFiller<Frame>(base, signal.dataType));
}

// --- Reading ---

template <class Frame>
class FrameReader
{
public:
    using Words = Family<Frame>;
    using Signal = SignalOf<Frame>;
    using Record = RecordOf<Frame>;

    FrameReader(LineRecord *target, YamlContext &problems) : line(target), context(problems) {}

    /// "groups", or "frames": a map by direction of maps by number.
    void readFrames(YamlNode directions)
    {
        if (!context.isMap(
                directions,
                latin1("the %1 of a line are a map by direction").arg(latin1(Words::kFramesKey))))
            return;
        const auto ways = context.numbered(directions, 0, kMostOfByte, latin1(YamlKeys::kDirection),
                                           kDirectionWords);
        for (const YamlContext::Numbered &way : ways)
            readDirection(quint8(way.number), way.value);
        auto &frames = line->*Words::kFrames;
        std::stable_sort(frames.begin(), frames.end(), [](const Record &a, const Record &b) {
            return key(a.frame) < key(b.frame);
        });
    }

    /// "other-signals", or "other-elements": a list, each with its frame and direction.
    void readOthers(YamlNode list)
    {
        if (!context.isList(list, latin1("%1 is a list").arg(latin1(Words::kOthersKey))))
            return;
        const QVector<YamlNode> items = list.items();
        for (const YamlNode item : items) {
            if (context.isOver())
                break;
            readSignal(item, baseSignal<Frame>(Frame(), nullptr), &(line->*Words::kOthers));
        }
    }

    static std::pair<quint8, quint32> key(const Frame &frame)
    {
        return {frame.direction, frame.*Words::kNumber};
    }

private:
    QString isAMap(const char *what) const { return latin1(what) + latin1(" is a map"); }

    void readDirection(quint8 direction, YamlNode frames)
    {
        if (!context.isMap(
                frames,
                latin1("the %1 of a direction are a map by number").arg(latin1(Words::kFramesKey))))
            return;
        const auto entries = context.numbered(frames, 0, kMostNumber, latin1(Words::kNumbered));
        for (const YamlContext::Numbered &entry : entries) {
            if (context.isOver())
                break;
            Frame frame;
            frame.direction = direction;
            frame.*Words::kNumber = quint32(entry.number);
            const QVector<YamlNode> items = entry.value.items();
            if (items.isEmpty())
                readFrame(entry.value, frame);
            for (const YamlNode item : items) {
                if (!context.isOver())
                    readFrame(item, frame);
            }
        }
    }

    void readFrame(YamlNode map, const Frame &base)
    {
        if (!context.isMap(map, isAMap(Words::kWhat)) || !context.hasRoomFor(1, map))
            return;
        Record record;
        record.frame = base;
        const auto others = YamlRecord::read(Words::kFrameTable, map, &record.frame, context);
        for (const YamlNode::Entry &entry : others) {
            if (entry.key.is(Words::kSignalsKey))
                readSignals(entry.value, &record);
            else
                tellUnknown(entry.key);
        }
        if (!map.value("count"))
            record.frame.mappingCount = quint16(record.signalsOf.size());
        (line->*Words::kFrames).push_back(std::move(record));
    }

    void tellUnknown(YamlNode key)
    {
        if (key.is(Words::kOtherFamilysKey))
            context.problems->add(
                "yaml-unknown-key", key.place(),
                latin1("%1 has \"%2\", not \"%3\"")
                    .arg(latin1(Words::kWhat), latin1(Words::kSignalsKey), key.text()));
        else
            context.unknownKey(key, latin1(Words::kWhat),
                               YamlRecord::words(Words::kFrameTable) << latin1(Words::kSignalsKey));
    }

    void readSignals(YamlNode list, Record *record)
    {
        if (!context.isList(list, latin1("the %1 of %2 are a list, in the order of the frame")
                                      .arg(latin1(Words::kSignalsKey), latin1(Words::kWhat))))
            return;
        const QVector<YamlNode> items = list.items();
        for (const YamlNode item : items) {
            if (context.isOver())
                break; // an alias may stand for a thousand faults
            if (item.isMap() && item.value(YamlKeys::kSkip))
                readFillers(item, record);
            else
                readSignal(item, baseSignal<Frame>(*record), &record->signalsOf);
        }
    }

    void readFillers(YamlNode item, Record *record)
    {
        int bits = 0;
        const QVector<YamlNode::Entry> entries = item.entries();
        for (const YamlNode::Entry &entry : entries) {
            if (!entry.key.is(YamlKeys::kSkip))
                context.unknownKey(entry.key, latin1("an item that skips bits"),
                                   {latin1(YamlKeys::kSkip)});
            else if (const auto number = context.number(entry.value, 1, YamlFrames::kMostBitsToSkip,
                                                        latin1(YamlKeys::kSkip)))
                bits = int(*number);
        }
        while (bits > 0 && context.hasRoomFor(1, item)) {
            const Type type = Fillers::typeFor(quint32(bits));
            record->signalsOf.push_back(
                makeFiller<Frame>(baseSignal<Frame>(*record), CAN::typeNumber(type)));
            bits -= COHelper::getDataLengthBits(type);
        }
    }

    void readSignal(YamlNode map, const Signal &base, std::vector<Signal> *signalsOf)
    {
        if (!context.isMap(map, isAMap(Words::kSignal)) || !context.hasRoomFor(1, map))
            return;
        Signal signal = base;
        const auto others = YamlRecord::read(Words::kSignalTable, map, &signal, context);
        for (const YamlNode::Entry &entry : others) {
            if (!readFrameOf(entry, &signal))
                context.unknownKey(entry.key, latin1(Words::kSignal),
                                   YamlRecord::words(Words::kSignalTable)
                                       << latin1(Words::kFrameKey) << latin1(YamlKeys::kDirection));
        }
        if (!map.value("implementation"))
            signal.implementation = usualImplementation(signal);
        signalsOf->push_back(std::move(signal));
    }

    /// The frame that a signal is of, where the place in the file does not say it.
    bool readFrameOf(const YamlNode::Entry &entry, Signal *signal)
    {
        if (entry.key.is(Words::kFrameKey)) {
            if (const auto number =
                    context.number(entry.value, 0, kMostNumber, latin1(Words::kFrameKey)))
                signal->*Words::kFrameOfSignal = quint32(*number);
            return true;
        }
        if (!entry.key.is(YamlKeys::kDirection))
            return false;
        if (const auto direction = context.word(entry.value, kDirectionWords, 0, kMostNumber,
                                                latin1(YamlKeys::kDirection)))
            signal->direction = quint32(*direction);
        return true;
    }

    LineRecord *line;
    YamlContext &context;
};

/// True if the entry is of that family.
template <class Frame>
bool readFamily(const YamlNode::Entry &entry, LineRecord *line, YamlContext &context)
{
    const bool isFrames = entry.key.is(Family<Frame>::kFramesKey);
    if (!isFrames && !entry.key.is(Family<Frame>::kOthersKey))
        return false;
    FrameReader<Frame> reader(line, context);
    if (isFrames)
        reader.readFrames(entry.value);
    else
        reader.readOthers(entry.value);
    return true;
}

// --- Writing ---

/// The word of a number, or the number.
QString wordOf(const YamlWords &words, qint64 number)
{
    for (const YamlWord &word : words) {
        if (word.number == number)
            return latin1(word.word);
    }
    return QString::number(number);
}

QString hexKey(quint32 number, int digits)
{
    return latin1("0x") + Numbers::toHex(number, digits).toUpper();
}

/// As YamlRecord::write(), with the columns of \a first before the others.
template <class Record>
void writeColumns(const YamlTable<Record> &table, std::initializer_list<const char *> first,
                  const Record &record, const Record &base, YamlValue *map)
{
    std::vector<bool> isWritten(size_t(table.count), false);
    for (const char *word : first) {
        for (int i = 0; i < table.count; ++i) {
            if (!table.words[i].word || !isSameText(table.words[i].word, word))
                continue;
            YamlRecord::writeColumn(table, i, record, base, map);
            isWritten[size_t(i)] = true;
        }
    }
    for (int i = 0; i < table.count; ++i) {
        if (!isWritten[size_t(i)])
            YamlRecord::writeColumn(table, i, record, base, map);
    }
}

template <class Frame>
YamlValue signalToYaml(const SignalOf<Frame> &signal, SignalOf<Frame> base)
{
    using Words = Family<Frame>;
    YamlValue map = YamlValue::map();
    const quint32 frame = signal.*Words::kFrameOfSignal;
    if (frame != base.*Words::kFrameOfSignal)
        map.add(latin1(Words::kFrameKey), YamlValue::hex(frame, Words::kDigits));
    if (signal.direction != base.direction)
        map.add(latin1(YamlKeys::kDirection),
                YamlValue::written(wordOf(kDirectionWords, signal.direction)));
    base.implementation = usualImplementation(signal);
    writeColumns(Words::kSignalTable, {Words::kNumberKey, "name", "type", "bits", "variable"},
                 signal, base, &map);
    return map;
}

template <class Frame>
YamlValue signalsToYaml(const RecordOf<Frame> &record)
{
    YamlValue list = YamlValue::list();
    const SignalOf<Frame> *before = nullptr;
    for (const SignalOf<Frame> &signal : record.signalsOf) {
        const SignalOf<Frame> base = baseSignal<Frame>(record.frame, before);
        if (isFiller<Frame>(signal, base)) {
            const int bits = COHelper::getDataLengthBits(Type(signal.dataType));
            list << YamlValue::map().add(latin1(YamlKeys::kSkip), YamlValue::number(bits));
        } else {
            list << signalToYaml<Frame>(signal, base);
        }
        before = &signal;
    }
    return list.spread();
}

template <class Frame>
YamlValue frameToYaml(const RecordOf<Frame> &record)
{
    Frame base;
    base.direction = record.frame.direction;
    base.*Family<Frame>::kNumber = record.frame.*Family<Frame>::kNumber;
    base.mappingCount = quint16(record.signalsOf.size());
    YamlValue map = YamlValue::map();
    writeColumns(Family<Frame>::kFrameTable, {"name", "description", "cycle", "inhibit"},
                 record.frame, base, &map);
    if (!record.signalsOf.empty()) {
        map.add(latin1(Family<Frame>::kSignalsKey), signalsToYaml<Frame>(record));
        map.spread();
    }
    return map;
}

template <class Frame>
void writeFrames(const LineRecord &line, YamlWriter &writer)
{
    using Records = std::vector<const RecordOf<Frame> *>;
    std::map<quint8, std::map<quint32, Records>> directions;
    for (const auto &record : line.*Family<Frame>::kFrames) {
        const auto [direction, number] = FrameReader<Frame>::key(record.frame);
        directions[direction][number].push_back(&record);
    }
    if (directions.empty())
        return;
    writer.begin(latin1(Family<Frame>::kFramesKey));
    for (const auto &[direction, frames] : directions) {
        writer.begin(wordOf(kDirectionWords, direction));
        for (const auto &[number, records] : frames) {
            YamlValue value = frameToYaml<Frame>(*records.front());
            if (records.size() > 1) {
                value = YamlValue::list();
                for (const RecordOf<Frame> *record : records)
                    value << frameToYaml<Frame>(*record);
                value.spread();
            }
            writer.value(hexKey(number, Family<Frame>::kDigits), value);
        }
        writer.end();
    }
    writer.end();
}

template <class Frame>
void writeOthers(const LineRecord &line, YamlWriter &writer)
{
    YamlValue list = YamlValue::list();
    for (const SignalOf<Frame> &signal : line.*Family<Frame>::kOthers)
        list << signalToYaml<Frame>(signal, baseSignal<Frame>(Frame(), nullptr));
    if (!list.isEmpty())
        writer.value(latin1(Family<Frame>::kOthersKey), list.spread());
}

// --- Diagnostic services ---

using Services = std::map<quint8, UdsServiceData>;

Services servicesOfNewLine()
{
    UdsServiceData service;
    service.active = true;
    service.sessions = latin1(UDS::kSessionsOfNewLine);
    Services services;
    for (const UDS::SID sid : UDS::kOfNewLine)
        services[quint8(sid)] = service;
    return services;
}

Services allServices()
{
    Services services;
    for (const UDS::ServiceInSessions &row : UDS::kAllServices)
        services[quint8(row.sid)] = UdsServiceData{true, latin1(row.sessions), QString()};
    return services;
}

/// One that a line names has it.
UdsServiceData baseService()
{
    UdsServiceData service;
    service.active = true;
    return service;
}

Services readServices(YamlNode map, YamlContext &context)
{
    if (map.isScalar() && map.is(YamlKeys::kAll))
        return allServices();
    Services services;
    if (!context.isMap(map, latin1("the diagnostic services of a line are a map, or all")))
        return services;
    const auto entries =
        context.numbered(map, 0, kMostOfByte, latin1("diagnostic service"), kServiceWords);
    for (const YamlContext::Numbered &entry : entries) {
        if (!context.isMap(entry.value, latin1("a diagnostic service is a map")))
            continue;
        UdsServiceData service = baseService();
        const auto others = YamlRecord::read(kUdsServiceYaml, entry.value, &service, context);
        for (const YamlNode::Entry &other : others)
            context.unknownKey(other.key, latin1("a diagnostic service"),
                               YamlRecord::words(kUdsServiceYaml));
        services[quint8(entry.number)] = service;
    }
    return services;
}

bool areEqual(const Services &services, const Services &usual)
{
    return std::equal(services.begin(), services.end(), usual.begin(), usual.end(),
                      [](const auto &one, const auto &other) {
                          return one.first == other.first &&
                                 YamlRecord::isEqual(kUdsServiceYaml, one.second, other.second);
                      });
}

void writeServices(const Services &services, YamlWriter &writer)
{
    if (areEqual(services, servicesOfNewLine()))
        return;
    if (areEqual(services, allServices()))
        return writer.value(latin1(YamlKeys::kUds), YamlValue::text(latin1(YamlKeys::kAll)));
    YamlValue map = YamlValue::map();
    for (const auto &[sid, service] : services) {
        YamlValue value = YamlValue::map();
        YamlRecord::write(kUdsServiceYaml, service, baseService(), &value);
        map.add(wordOf(kServiceWords, sid), value);
    }
    writer.value(latin1(YamlKeys::kUds), map.spread());
}

} // namespace

QVector<YamlNode::Entry> YamlFrames::read(const QVector<YamlNode::Entry> &entries, LineRecord *line,
                                          YamlContext &context)
{
    line->services = servicesOfNewLine();
    QVector<YamlNode::Entry> others;
    for (const YamlNode::Entry &entry : entries) {
        if (entry.key.is(YamlKeys::kUds))
            line->services = readServices(entry.value, context);
        else if (!readFamily<PgnData>(entry, line, context) &&
                 !readFamily<CanIdData>(entry, line, context))
            others.append(entry);
    }
    return others;
}

void YamlFrames::write(const LineRecord &line, YamlWriter &writer)
{
    writeFrames<PgnData>(line, writer);
    writeOthers<PgnData>(line, writer);
    writeFrames<CanIdData>(line, writer);
    writeOthers<CanIdData>(line, writer);
    writeServices(line.services, writer);
}

QStringList YamlFrames::keys()
{
    return {latin1(YamlKeys::kGroups), latin1(YamlKeys::kOtherSignals), latin1(YamlKeys::kFrames),
            latin1(YamlKeys::kOtherElements), latin1(YamlKeys::kUds)};
}
