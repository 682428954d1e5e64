// Frames and their signals: the one code path of J1939 groups with SPNs and raw CAN identifiers
// with data elements. Only the sources of the two families include this.
#pragma once

#include "store/objectdatabase_p.h"

#include <algorithm>
#include <tuple>

/// What the two families differ in.
template <class Frame>
struct FrameFamily;

template <>
struct FrameFamily<PgnData> {
    using Signal = SpnData;
    static constexpr const char *kFrameTable = "PGNs";
    static constexpr const char *kSignalTable = "SPNs";
    static constexpr const char *kFrameKey = "number";          ///< of the frame's table
    static constexpr const char *kSignalFrameKey = "pgnnumber"; ///< of the signal's table
    static constexpr const char *kSignalKey = "spnnumber";
    static constexpr const char *kSignalOrder = "pos"; ///< the order in the frame
    static constexpr auto kOrder = &SpnData::pos;
    static constexpr auto &kFrameColumns = kPgnColumns;
    static constexpr auto &kSignalColumns = kSpnColumns;
    static constexpr auto kNumber = &PgnData::number;
    static constexpr auto kSignalFrame = &SpnData::pgn;
    static constexpr auto kChangeFrame = &ChangeSetData::pgn;
    static constexpr auto kChangeSignal = &ChangeSetData::spn;
    static constexpr auto kAdd = ChangeSetData::Kind::AddPgn;
    static constexpr auto kDel = ChangeSetData::Kind::DelPgn;
    static constexpr auto kAddSignal = ChangeSetData::Kind::AddSpn;
    static constexpr auto kCache = &StorePrivate::groups;
    static bool isKept(const char *) { return false; }
};

template <>
struct FrameFamily<CanIdData> {
    using Signal = DataElementData;
    static constexpr const char *kFrameTable = "CANIDs";
    static constexpr const char *kSignalTable = "DataElements";
    static constexpr const char *kFrameKey = "id";
    static constexpr const char *kSignalFrameKey = "canid";
    static constexpr const char *kSignalKey = "number";
    static constexpr const char *kSignalOrder = "number";
    static constexpr auto kOrder = &DataElementData::number;
    static constexpr auto &kFrameColumns = kCanIdColumns;
    static constexpr auto &kSignalColumns = kDataElementColumns;
    static constexpr auto kNumber = &CanIdData::id;
    static constexpr auto kSignalFrame = &DataElementData::canid;
    static constexpr auto kChangeFrame = &ChangeSetData::canid;
    static constexpr auto kChangeSignal = &ChangeSetData::element;
    static constexpr auto kAdd = ChangeSetData::Kind::AddCanId;
    static constexpr auto kDel = ChangeSetData::Kind::DelCanId;
    static constexpr auto kAddSignal = ChangeSetData::Kind::AddDataElement;
    static constexpr auto kCache = &StorePrivate::identifiers;
    /// Deliberate: an update of a data element leaves its place and width as they are, held by
    /// tst_framerecords.
    static bool isKept(const char *column)
    {
        return QLatin1String(column) == QLatin1String("pos") ||
               QLatin1String(column) == QLatin1String("bitsize");
    }
};

/// The operations on one family. A line is read from its cache if the cache is there; its writers
/// keep it equal to the rows.
template <class Frame>
class Frames
{
public:
    using Family = FrameFamily<Frame>;
    using Signal = typename Family::Signal;
    using Cache = FrameCache<Frame, Signal>;

    explicit Frames(StorePrivate &store) : d(store) {}

    void cacheLine(quint8 line) const
    {
        if (cacheOf(line))
            return;
        if (!d.stringsComplete)
            d.owner->cacheStrings();
        Cache cache;
        if (!readFrames(line, QString(), cache)) {
            cache = Cache();
            readFrames(line, QStringLiteral("order by %1").arg(QLatin1String(Family::kFrameKey)),
                       cache);
        }
        read(Family::kSignalColumns, Family::kSignalTable, line, QStringLiteral("order by rowid"),
             {}, [&cache](Signal &signal, const RowReader &) {
                 cache.signalsOf[{signal.*Family::kSignalFrame, quint8(signal.direction)}]
                     << std::move(signal);
             });
        for (QVector<Signal> &list : cache.signalsOf) {
            if (!std::is_sorted(list.cbegin(), list.cend(), isBefore))
                std::stable_sort(list.begin(), list.end(), isBefore);
        }
        (d.*Family::kCache).insert(line, cache);
    }

    /// Of one direction, or of all with 0. \a condition and \a accept are one test, for the two
    /// ways of reading.
    QList<quint32> numbers(quint8 line, quint8 direction, const QString &condition = QString(),
                           bool (*accept)(const Frame &) = nullptr) const
    {
        QList<quint32> result;
        if (const Cache *cache = cacheOf(line)) {
            for (const FrameKey &key : cache->order) {
                if ((direction == 0 || key.direction == direction) &&
                    (!accept || accept(cache->frames[key])))
                    result << key.number;
            }
            return result;
        }
        QStringList conditions;
        if (direction != 0)
            conditions << QStringLiteral("direction = ?");
        if (!condition.isEmpty())
            conditions << condition;
        const QLatin1String number(Family::kFrameKey);
        Statement statement(
            d,
            QStringLiteral("select %1 from %2 %3 order by %1 asc")
                .arg(number, Schema::table(Family::kFrameTable, line),
                     conditions.isEmpty()
                         ? QString()
                         : QStringLiteral("where ") + conditions.join(QStringLiteral(" and "))),
            direction ? Cells{direction} : Cells());
        while (statement.next())
            result << statement.value(0).toUInt();
        return result;
    }

    bool get(quint8 line, FrameKey key, Frame &frame) const
    {
        if (const Cache *cache = cacheOf(line)) {
            const auto found = cache->frames.constFind(key);
            if (found != cache->frames.constEnd())
                frame = *found;
            return found != cache->frames.constEnd();
        }
        const QVector<Frame> found = readFrame(line, key);
        if (!found.isEmpty())
            frame = found.first();
        return !found.isEmpty();
    }

    /// In the order of the frame.
    QVector<Signal> signalsOf(quint8 line, FrameKey key) const
    {
        if (const Cache *cache = cacheOf(line))
            return cache->signalsOf.value(key);
        return readSignals(line, key);
    }

    /// Of frames that the line does not have, by their numbers; none if it is not in memory.
    QVector<Signal> signalsWithoutFrame(quint8 line) const
    {
        QVector<Signal> result;
        const Cache *cache = cacheOf(line);
        if (!cache)
            return result;
        for (auto list = cache->signalsOf.cbegin(); list != cache->signalsOf.cend(); ++list) {
            if (!cache->frames.contains(list.key()))
                result += *list;
        }
        std::sort(result.begin(), result.end(), [](const Signal &a, const Signal &b) {
            return std::make_tuple(a.*Family::kSignalFrame, a.direction, a.number) <
                   std::make_tuple(b.*Family::kSignalFrame, b.direction, b.number);
        });
        return result;
    }

    /// Null if the line is not in memory, or the frame has none.
    const QVector<Signal> *cachedSignals(quint8 line, FrameKey key) const
    {
        const Cache *cache = cacheOf(line);
        if (!cache)
            return nullptr;
        const auto found = cache->signalsOf.constFind(key);
        return found != cache->signalsOf.constEnd() && !found->isEmpty() ? &*found : nullptr;
    }

    QList<quint32> signalNumbers(quint8 line, FrameKey key) const
    {
        QList<quint32> result;
        const QVector<Signal> all = signalsOf(line, key);
        for (const Signal &signal : all)
            result << signal.number;
        return result;
    }

    bool getSignal(quint8 line, FrameKey key, quint32 number, Signal &signal) const
    {
        const QVector<Signal> all = signalsOf(line, key);
        for (const Signal &candidate : all) {
            if (candidate.number == number) {
                signal = candidate;
                return true;
            }
        }
        return false;
    }

    bool add(quint8 line, quint32 number, Frame frame)
    {
        if (d.lockWriteAccess)
            return false;
        frame.*Family::kNumber = number;
        const FrameKey key{number, frame.direction};
        bool done = true;
        if (Cache *cache = cacheOf(line); !cache) {
            done = writeFrame(line, key, frame, false);
        } else if (const auto known = cache->frames.constFind(key); known == cache->frames.cend()) {
            done = insert(Family::kFrameColumns, Family::kFrameTable, line, frame);
            if (done)
                addNew(*cache, key, frame);
        } else if (!sameCells(Family::kFrameColumns, *known, frame)) {
            done = writeFrame(line, key, frame, true);
            updateFrame(line, key);
        }
        notify(Family::kAdd, line, number, 0);
        return done;
    }

    bool addSignal(quint8 line, FrameKey key, quint32 number, Signal signal)
    {
        if (d.lockWriteAccess)
            return false;
        signal.*Family::kSignalFrame = key.number;
        signal.direction = key.direction;
        signal.number = number;
        bool done = true;
        Cache *cache = cacheOf(line);
        const QVector<Signal> present = cache ? cache->signalsOf.value(key) : QVector<Signal>();
        const auto known =
            std::find_if(present.begin(), present.end(),
                         [number](const Signal &other) { return other.number == number; });
        if (cache && known == present.end()) {
            done = insert(Family::kSignalColumns, Family::kSignalTable, line, signal);
            if (done)
                addInOrder(cache->signalsOf[key], signal);
        } else if (!cache || !sameCells(Family::kSignalColumns, *known, signal)) {
            done = write(Family::kSignalColumns, Family::kSignalTable, line, signal,
                         {{Family::kSignalFrameKey, Family::kSignalKey, "direction"},
                          {key.number, number, key.direction},
                          cache != nullptr});
            updateSignals(line, key);
        }
        notify(Family::kAddSignal, line, key.number, number);
        return done;
    }

    bool del(quint8 line, FrameKey key)
    {
        if (d.lockWriteAccess)
            return false;
        if (const Cache *cache = cacheOf(line);
            cache && !cache->frames.contains(key) && cache->signalsOf.value(key).isEmpty()) {
            notify(Family::kDel, line, key.number, 0);
            return true;
        }
        d.exec(QStringLiteral("delete from %1 where %2 = ? and direction = ?")
                   .arg(Schema::table(Family::kSignalTable, line),
                        QLatin1String(Family::kSignalFrameKey)),
               {key.number, key.direction});
        const bool done = d.exec(
            QStringLiteral("delete from %1 where %2 = ? and direction = ?")
                .arg(Schema::table(Family::kFrameTable, line), QLatin1String(Family::kFrameKey)),
            {key.number, key.direction});
        updateFrame(line, key);
        updateSignals(line, key);
        notify(Family::kDel, line, key.number, 0);
        return done;
    }

    bool delSignal(quint8 line, FrameKey key, quint32 number)
    {
        if (d.lockWriteAccess)
            return false;
        const bool done = d.exec(
            QStringLiteral("delete from %1 where %2 = ? and %3 = ? and direction = ?")
                .arg(Schema::table(Family::kSignalTable, line),
                     QLatin1String(Family::kSignalFrameKey), QLatin1String(Family::kSignalKey)),
            {key.number, number, key.direction});
        updateSignals(line, key);
        notify(ChangeSetData::Kind::DelSpn, line, key.number, number);
        return done;
    }

    /// Do the frames agree in all but their numbers, and their signals in all?
    static bool isEqual(const Frames &one, quint8 oneLine, FrameKey oneKey, const Frames &other,
                        quint8 otherLine, FrameKey otherKey)
    {
        Frame a;
        Frame b;
        if (!one.get(oneLine, oneKey, a) || !other.get(otherLine, otherKey, b))
            return false;
        b.*Family::kNumber = a.*Family::kNumber;
        if (!sameCells(Family::kFrameColumns, a, b))
            return false;
        const QVector<Signal> left = one.signalsOf(oneLine, oneKey);
        QVector<Signal> right = other.signalsOf(otherLine, otherKey);
        if (left.size() != right.size())
            return false;
        for (int i = 0; i < left.size(); ++i) {
            right[i].*Family::kSignalFrame = left[i].*Family::kSignalFrame;
            if (!sameCells(Family::kSignalColumns, left[i], right[i]))
                return false;
        }
        return true;
    }

private:
    /// A frame that is new in the line comes after those of its number, as its row does.
    static void addNew(Cache &cache, FrameKey key, const Frame &frame)
    {
        cache.order.insert(
            std::upper_bound(cache.order.begin(), cache.order.end(), key,
                             [](FrameKey a, FrameKey b) { return a.number < b.number; }),
            key);
        cache.frames.insert(key, frame);
    }

    /// Makes a cached line hold the frame as its row does.
    void updateFrame(quint8 line, FrameKey key)
    {
        const auto cache = (d.*Family::kCache).find(line);
        if (cache == (d.*Family::kCache).end())
            return;
        const QVector<Frame> found = readFrame(line, key);
        if (found.isEmpty()) {
            cache->frames.remove(key);
            cache->order.removeAll(key);
            return;
        }
        if (cache->frames.contains(key))
            cache->frames.insert(key, found.first());
        else
            addNew(*cache, key, found.first());
    }

    void updateSignals(quint8 line, FrameKey key)
    {
        const auto cache = (d.*Family::kCache).find(line);
        if (cache != (d.*Family::kCache).end())
            cache->signalsOf.insert(key, readSignals(line, key));
    }

    const Cache *cacheOf(quint8 line) const
    {
        const auto found = (d.*Family::kCache).constFind(line);
        return found != (d.*Family::kCache).constEnd() ? &*found : nullptr;
    }

    Cache *cacheOf(quint8 line)
    {
        const auto found = (d.*Family::kCache).find(line);
        return found != (d.*Family::kCache).end() ? &*found : nullptr;
    }

    static bool isBefore(const Signal &a, const Signal &b)
    {
        return a.*Family::kOrder < b.*Family::kOrder;
    }

    /// As its row comes after those of the same place in the frame.
    static void addInOrder(QVector<Signal> &list, const Signal &signal)
    {
        list.insert(std::upper_bound(list.begin(), list.end(), signal, isBefore), signal);
    }

    QVector<Frame> readFrame(quint8 line, FrameKey key) const
    {
        return select(
            Family::kFrameColumns, Family::kFrameTable, line,
            QStringLiteral("where %1 = ? and direction = ?").arg(QLatin1String(Family::kFrameKey)),
            {key.number, key.direction});
    }

    QVector<Signal> readSignals(quint8 line, FrameKey key) const
    {
        return select(
            Family::kSignalColumns, Family::kSignalTable, line,
            QStringLiteral("where %1 = ? and direction = ? order by %2, rowid")
                .arg(QLatin1String(Family::kSignalFrameKey), QLatin1String(Family::kSignalOrder)),
            {key.number, key.direction});
    }

    template <class Record, size_t N>
    QVector<Record> select(const Column<Record> (&columns)[N], const char *table, quint8 line,
                           const QString &condition, const Cells &values) const
    {
        QVector<Record> records;
        read(columns, table, line, condition, values,
             [&records](Record &record, const RowReader &) { records << std::move(record); });
        return records;
    }

    /// \a take gets each record, which it may move, and the reader on its row.
    template <class Record, size_t N, class Take>
    void read(const Column<Record> (&columns)[N], const char *table, quint8 line,
              const QString &condition, const Cells &values, const Take &take) const
    {
        RowReader rows(d,
                       QStringLiteral("select %1 from %2 %3")
                           .arg(columnList(columns), Schema::table(table, line), condition),
                       values);
        while (rows.next()) {
            Record record;
            int i = 0;
            for (const Column<Record> &field : columns)
                d.readColumn(field, record, rows.value(i++));
            take(record, rows);
        }
    }

    /// False if the rows are not in the order of their numbers. Most are as they stand, and to let
    /// them be sorted costs as much as to read them.
    bool readFrames(quint8 line, const QString &order, Cache &cache) const
    {
        bool isAscending = true;
        qlonglong last = 0;
        read(Family::kFrameColumns, Family::kFrameTable, line, order, {},
             [&](const Frame &frame, const RowReader &rows) {
                 const RowCell number = rows.value(0); // the first column
                 isAscending = isAscending && number.isInteger() && number.toLongLong() >= last;
                 last = number.toLongLong();
                 const FrameKey key{frame.*Family::kNumber, frame.direction};
                 cache.order << key;
                 if (!cache.frames.contains(key))
                     cache.frames.insert(key, frame);
             });
        return isAscending;
    }

    /// By which a row is found.
    struct RowKey {
        QStringList columns;
        Cells values;
        bool isThere; ///< the row, so that it need not be looked for
    };

    bool writeFrame(quint8 line, FrameKey key, const Frame &frame, bool isThere)
    {
        return write(Family::kFrameColumns, Family::kFrameTable, line, frame,
                     {{Family::kFrameKey, "direction"}, {key.number, key.direction}, isThere});
    }

    /// Updates the row, or inserts one.
    template <class Record, size_t N>
    bool write(const Column<Record> (&columns)[N], const char *table, quint8 line,
               const Record &record, const RowKey &key)
    {
        const QString name = Schema::table(table, line);
        d.addKeyIndex(name, key.columns.join(QLatin1Char(',')));
        const QString where =
            key.columns.join(QStringLiteral(" = ? and ")) + QStringLiteral(" = ?");
        if (!key.isThere &&
            !Statement(d, QStringLiteral("select 1 from %1 where %2").arg(name, where), key.values)
                 .next())
            return insert(columns, table, line, record);
        Cells cells;
        QStringList assignments;
        for (const Column<Record> &field : columns) {
            if (Family::isKept(field.name))
                continue;
            assignments << QLatin1String(field.name) + QStringLiteral(" = ?");
            cells << d.cellOf(field, record);
        }
        return d.exec(QStringLiteral("update %1 set %2 where %3")
                          .arg(name, assignments.join(QLatin1Char(',')), where),
                      cells + key.values);
    }

    template <class Record, size_t N>
    bool insert(const Column<Record> (&columns)[N], const char *table, quint8 line,
                const Record &record)
    {
        Cells cells;
        for (const Column<Record> &field : columns)
            cells << d.cellOf(field, record);
        return d.exec(QStringLiteral("insert into %1 (%2) values(%3)")
                          .arg(Schema::table(table, line), columnList(columns), placeHolders(N)),
                      cells);
    }

    template <class Record, size_t N>
    static bool sameCells(const Column<Record> (&columns)[N], const Record &a, const Record &b)
    {
        for (const Column<Record> &field : columns) {
            if (field.get(a) != field.get(b))
                return false;
        }
        return true;
    }

    void notify(ChangeSetData::Kind kind, quint8 line, quint32 frame, quint32 signal)
    {
        ChangeSetData change;
        change.kind = kind;
        change.line = line;
        change.*Family::kChangeFrame = frame;
        change.*Family::kChangeSignal = signal;
        emit d.owner->updateNotify(change);
    }

    StorePrivate &d;
};
