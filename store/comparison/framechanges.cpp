// The changes of frames and their signals.
#include "store/comparison/framechanges.h"

#include "store/comparison/changedfields.h"
#include "store/comparison/signalpairs.h"
#include "store/sidebyside.h"

#include <algorithm>

namespace
{

using Change = ProjectChange::Change;

QString directionWord(quint32 direction)
{
    for (const YamlWord &word : kDirectionWords) {
        if (word.number == direction)
            return QLatin1String(word.word);
    }
    return QStringLiteral("direction %1").arg(direction);
}

QString joined(const QString &what, const QString &name)
{
    return name.isEmpty() ? what : what + QLatin1Char(' ') + name;
}

/// What the two families differ in.
template <class Frame>
struct Family;

template <>
struct Family<PgnData> {
    using Signal = SpnData;
    static constexpr auto kKind = ChangeKind::Group;
    static constexpr auto kSignalKind = ChangeKind::Signal;
    static constexpr const char *kWord = "group";
    static constexpr const char *kSignalWord = "SPN";
    static constexpr auto kNumber = &PgnData::number;
    static constexpr auto kSignalFrame = &SpnData::pgn;
    static constexpr auto &kTable = kPgnYaml;
    static constexpr auto &kSignalTable = kSpnYaml;
    static constexpr auto kFrames = &LineRecord::groups;
    static constexpr auto kOthers = &LineRecord::otherSignals;
    static QStringList keysOf(const SpnData &spn)
    {
        return {QString::number(spn.number), spn.name};
    }
    /// The place that the signal has by its columns, of which the list gives it one.
    static qint64 placeOf(const SpnData &spn) { return spn.pos; }
};

template <>
struct Family<CanIdData> {
    using Signal = DataElementData;
    static constexpr auto kKind = ChangeKind::Frame;
    static constexpr auto kSignalKind = ChangeKind::Element;
    static constexpr const char *kWord = "frame";
    static constexpr const char *kSignalWord = "element";
    static constexpr auto kNumber = &CanIdData::id;
    static constexpr auto kSignalFrame = &DataElementData::canid;
    static constexpr auto &kTable = kCanIdYaml;
    static constexpr auto &kSignalTable = kDataElementYaml;
    static constexpr auto kFrames = &LineRecord::frames;
    static constexpr auto kOthers = &LineRecord::otherElements;
    /// Their numbers only order them, and go up with each one that is put before.
    static QStringList keysOf(const DataElementData &element)
    {
        const QString shape = QStringLiteral("%1 %2 ").arg(QString::number(element.dataType),
                                                           QString::number(element.bitSize));
        return {shape + element.name, element.name, QString::number(element.number)};
    }
    static qint64 placeOf(const DataElementData &element) { return element.number; }
};

/// A frame of one project; without a row if only its signals are there.
template <class Frame>
struct FramePart {
    const Frame *frame = nullptr;
    std::vector<const typename Family<Frame>::Signal *> signalsOf;
};

using FrameKey = std::pair<quint32, quint32>; ///< direction and number

template <class Frame>
using FrameParts = std::vector<std::pair<FrameKey, FramePart<Frame>>>;

/// Ascending by direction and number. Signals without a frame stand behind the frames.
template <class Frame>
FrameParts<Frame> partsOf(const LineRecord &line)
{
    using F = Family<Frame>;
    FrameParts<Frame> parts;
    for (const auto &record : line.*F::kFrames) {
        FramePart<Frame> part{&record.frame, {}};
        for (const auto &signal : record.signalsOf)
            part.signalsOf.push_back(&signal);
        parts.push_back({{record.frame.direction, record.frame.*F::kNumber}, part});
    }
    std::map<FrameKey, FramePart<Frame>> others;
    for (const auto &signal : line.*F::kOthers)
        others[{signal.direction, signal.*F::kSignalFrame}].signalsOf.push_back(&signal);
    parts.insert(parts.end(), others.begin(), others.end());
    std::stable_sort(parts.begin(), parts.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    return parts;
}

template <class Frame>
class FrameChanges
{
    using F = Family<Frame>;
    using Signal = typename F::Signal;
    using Part = FramePart<Frame>;

public:
    FrameChanges(int lineNumber, std::vector<ProjectChange> *result)
        : line(lineNumber), changes(result)
    {
    }

    void add(const LineRecord &older, const LineRecord &newer)
    {
        const Part none;
        SideBySide::walk(partsOf<Frame>(older), partsOf<Frame>(newer),
                         [&](const FrameKey &key, const Part *before, const Part *after) {
                             addFrame(key, before ? *before : none, after ? *after : none);
                         });
    }

private:
    void addFrame(const FrameKey &key, const Part &before, const Part &after)
    {
        number = key.second;
        head = QStringLiteral("%1 0x%2 (%3)")
                   .arg(QLatin1String(F::kWord), QString::number(key.second, 16).toUpper(),
                        directionWord(key.first));
        if (before.frame || after.frame) {
            // The count tells something only where it is not that of the signals.
            const bool isCounted = surplusOf(before) != surplusOf(after);
            const auto fields =
                ChangedFields::of(F::kTable, before.frame, after.frame, {isCounted ? "" : "count"});
            const QString name = after.frame ? after.frame->name : before.frame->name;
            addChange(F::kKind, before.frame, after.frame, joined(head, name), fields);
        }
        addSignals(before, after);
    }

    static qint64 surplusOf(const Part &part)
    {
        return part.frame ? qint64(part.frame->mappingCount) - qint64(part.signalsOf.size()) : 0;
    }

    void addSignals(const Part &before, const Part &after)
    {
        const QVector<SignalPairs::Pair> pairs = SignalPairs::match(keysOf(before), keysOf(after));
        std::vector<bool> isKept(before.signalsOf.size(), false);
        for (const SignalPairs::Pair &pair : pairs) {
            if (pair.older >= 0)
                isKept[size_t(pair.older)] = true;
        }
        for (size_t i = 0; i < isKept.size(); ++i) {
            if (!isKept[i])
                addSignal(before.signalsOf[i], nullptr, {});
        }
        for (int i = 0; i < pairs.size(); ++i) {
            const int older = pairs.at(i).older;
            const Signal *one = older >= 0 ? before.signalsOf[size_t(older)] : nullptr;
            const Signal *other = after.signalsOf[size_t(i)];
            addSignal(one, other,
                      one ? fieldsOf(*one, *other, pairs.at(i), i) : QVector<ChangedField>());
        }
    }

    static QVector<QStringList> keysOf(const Part &part)
    {
        QVector<QStringList> keys;
        for (const Signal *signal : part.signalsOf)
            keys << F::keysOf(*signal);
        return keys;
    }

    /// Places and numbers that a signal has only since others stand before it are no change.
    static QVector<ChangedField> fieldsOf(const Signal &before, const Signal &after,
                                          const SignalPairs::Pair &pair, int place)
    {
        const bool isShifted = F::placeOf(before) - pair.older == F::placeOf(after) - place;
        const bool isElement = F::kSignalKind == ChangeKind::Element;
        QVector<ChangedField> fields = ChangedFields::ofBoth(
            F::kSignalTable, before, after,
            {isShifted || isElement ? "pos" : "", isShifted && isElement ? "number" : ""});
        if (pair.isMoved)
            fields.prepend({QStringLiteral("place"), QString::number(pair.older + 1),
                            QString::number(place + 1)});
        return fields;
    }

    void addSignal(const Signal *before, const Signal *after, QVector<ChangedField> fields)
    {
        const Signal &signal = after ? *after : *before;
        const QString what =
            QStringLiteral("%1 %2 %3")
                .arg(head, QLatin1String(F::kSignalWord), QString::number(signal.number));
        if (!before || !after) // then the number stands before the name
            fields = ChangedFields::of(F::kSignalTable, before, after, {"spn", "number"});
        addChange(F::kSignalKind, before, after, joined(what, signal.name), fields);
    }

    void addChange(ChangeKind kind, const void *before, const void *after, const QString &what,
                   const QVector<ChangedField> &fields)
    {
        if (before && after && fields.isEmpty())
            return;
        const Change change = !before ? Change::Added : !after ? Change::Removed : Change::Changed;
        changes->push_back({kind, change, line, number, -1, what, fields});
    }

    int line;
    std::vector<ProjectChange> *changes;
    quint32 number = 0; ///< of the frame that is looked at
    QString head;       ///< likewise: what its changes begin with
};

} // namespace

void addFrameChanges(int line, const LineRecord &older, const LineRecord &newer,
                     std::vector<ProjectChange> *changes)
{
    FrameChanges<PgnData>(line, changes).add(older, newer);
    FrameChanges<CanIdData>(line, changes).add(older, newer);
}
