// The whole project as plain records, read and written row by row: nothing is widened, repaired or
// made up on the way. A line is what has a row in Nodes: tables of others are not read, for neither
// opening nor any getter sees them.
#include "store/objectdatabase_frames_p.h"

#include <QSet>

#include <algorithm>
#include <tuple>

namespace
{

constexpr quint8 kFirstScratchLine = 254;

constexpr char kRowId[] = "rowid";

struct SettingsOfProject {
    SettingsStore store;
    const char *table;
    Settings ProjectRecord::*settings;
};

constexpr SettingsOfProject kSettings[] = {
    {SettingsStore::General, "GeneralSettings", &ProjectRecord::general},
    {SettingsStore::Description, "DescriptionSettings", &ProjectRecord::description},
    {SettingsStore::EnergyBus, "EnergyBusSettings", &ProjectRecord::energyBus},
    {SettingsStore::Misc, "MiscSettings", &ProjectRecord::misc},
    {SettingsStore::J1939, "J1939Settings", &ProjectRecord::j1939},
};

struct Lock {
    const char *table;
    QList<quint16> LockRecord::*indices;
};

constexpr Lock kLocks[] = {
    {"LockedPDOs", &LockRecord::pdos},
    {"LockedMappings", &LockRecord::mappings},
};

// --- reading ---

/// Calls \a take with the key and the record of each row, ascending by the key, which is a column
/// of numbers. False if the table cannot be read.
template <class Record, size_t N, class Take>
bool readRows(StorePrivate &store, const QString &table, const char *key,
              const Column<Record> (&columns)[N], const Take &take, const char *condition = "1")
{
    RowReader rows(
        store, QStringLiteral("select %1,%2 from %3 where %4 order by %1")
                   .arg(QLatin1String(key), columnList(columns), table, QLatin1String(condition)));
    while (rows.next()) {
        Record record;
        int i = 1;
        for (const Column<Record> &field : columns)
            store.readColumn(field, record, rows.value(i++));
        take(rows.value(0).toLongLong(), record);
    }
    return rows.ok();
}

bool readObjects(StorePrivate &store, quint8 line, std::map<quint16, ObjectRecord> *objects)
{
    const bool done = readRows(
        store, Schema::table("Objects", line), "objectindex", kIndexColumns,
        [objects](qint64 index, const IndexData &data) {
            objects->emplace_hint(objects->end(), quint16(index), ObjectRecord{true, data, {}});
        },
        Schema::kIndexInRange);
    const LineCache *cache = store.completeCache(line);
    const bool isCached = cache && cache->isWhole && cache->escaped.isEmpty();
    SubTable read;
    if (!isCached && !store.readSubs(line, 0, read))
        return false;
    const SubTable &subs = isCached ? cache->subs : read;
    for (auto members = subs.begin(); members != subs.end(); ++members) {
        ObjectRecord &object =
            objects->try_emplace(members.key(), ObjectRecord{false, {}, {}}).first->second;
        for (auto sub = members->constBegin(); sub != members->constEnd(); ++sub)
            object.subs.emplace_hint(object.subs.end(), sub.key(), *sub);
    }
    return done;
}

template <class Frame, class Signal>
bool readFrames(StorePrivate &store, quint8 line, std::vector<FrameRecord<Frame, Signal>> *frames,
                std::vector<Signal> *others)
{
    using Family = FrameFamily<Frame>;
    const bool done = readRows(store, Schema::table(Family::kFrameTable, line), kRowId,
                               Family::kFrameColumns, [frames](qint64, const Frame &frame) {
                                   frames->push_back({frame, {}});
                               });
    const auto keyOf = [](const FrameRecord<Frame, Signal> &record) {
        return std::make_tuple(quint32(record.frame.direction), record.frame.*Family::kNumber);
    };
    const auto isBefore = [keyOf](const auto &a, const auto &b) { return keyOf(a) < keyOf(b); };
    std::stable_sort(frames->begin(), frames->end(), isBefore);

    std::vector<Signal> all;
    const bool isRead =
        readRows(store, Schema::table(Family::kSignalTable, line), kRowId, Family::kSignalColumns,
                 [&all](qint64, const Signal &signal) { all.push_back(signal); });
    std::stable_sort(all.begin(), all.end(), [](const Signal &a, const Signal &b) {
        return a.*Family::kOrder < b.*Family::kOrder;
    });
    for (const Signal &signal : all) {
        const auto key = std::make_tuple(signal.direction, signal.*Family::kSignalFrame);
        const auto frame = std::lower_bound(
            frames->begin(), frames->end(), key,
            [keyOf](const auto &record, const auto &wanted) { return keyOf(record) < wanted; });
        const bool hasFrame = frame != frames->end() && keyOf(*frame) == key;
        (hasFrame ? frame->signalsOf : *others).push_back(signal);
    }
    return done && isRead;
}

bool readLine(StorePrivate &store, quint8 line, LineRecord *record)
{
    const auto &services = store.udsServices(line);
    for (auto service = services.cbegin(); service != services.cend(); ++service)
        record->services.emplace(service.key(), *service);
    return readObjects(store, line, &record->objects) &&
           readFrames(store, line, &record->groups, &record->otherSignals) &&
           readFrames(store, line, &record->frames, &record->otherElements);
}

bool readLines(StorePrivate &store, std::map<quint8, LineRecord> *lines)
{
    bool done = readRows(store, QStringLiteral("Nodes"), "nodeId", kNodeColumns,
                         [lines](qint64 line, const NodeData &node) {
                             if (line >= 0 && line < kFirstScratchLine)
                                 (*lines)[quint8(line)].node = node;
                         });
    for (auto &[line, record] : *lines)
        done = readLine(store, line, &record) && done;
    return done;
}

bool readLocks(StorePrivate &store, const Lock &lock, std::map<quint8, LockRecord> *locks)
{
    Statement rows(store,
                   QStringLiteral("select distinct node,pdoindex from %1 where node between "
                                  "0 and ? and pdoindex between 0 and 65535 "
                                  "order by node,pdoindex")
                       .arg(QLatin1String(lock.table)),
                   {kFirstScratchLine - 1});
    while (rows.next())
        (*locks)[quint8(rows.value(0).toUInt())].*lock.indices << quint16(rows.value(1).toUInt());
    return rows.ok();
}

bool readSettings(StorePrivate &store, ProjectRecord *project)
{
    bool done = true;
    for (const SettingsOfProject &row : kSettings) {
        const QHash<QString, QString> &stored = store.settings(row.store);
        for (auto setting = stored.cbegin(); setting != stored.cend(); ++setting)
            (project->*row.settings).insert(setting.key(), setting.value());
        done = done && store.settingsRead[size_t(row.store)];
    }
    return done;
}

bool readBetweenLines(StorePrivate &store, ProjectRecord *project)
{
    bool done = true;
    for (const Lock &lock : kLocks)
        done = readLocks(store, lock, &project->locks) && done;
    const auto isScratch = [](quint8 line) { return line >= kFirstScratchLine; };
    const auto takeConnection = [&](qint64, const ConnectionData &link) {
        if (!isScratch(link.prodNode) && !isScratch(link.conNode))
            project->connections.push_back(link);
    };
    const auto takeSignal = [&](qint64 id, const LineSignalData &signal) {
        if (!isScratch(signal.line))
            project->lineSignals.emplace(qint32(id), signal);
    };
    const auto takeGroup = [&](qint64, const LineGroupRecord &group) {
        project->lineGroups.push_back(group);
    };
    const auto takeNode = [&](qint64 id, const VirtualNodeRecord &node) {
        project->virtualNodes.emplace(id, node);
    };
    project->signalGroups = store.owner->getSignalGroups();
    return readRows(store, QStringLiteral("Connections"), kRowId, kConnectionColumns,
                    takeConnection) &&
           readRows(store, QStringLiteral("Signals"), "sigid", kLineSignalColumns, takeSignal) &&
           readRows(store, QStringLiteral("Groups"), kRowId, kLineGroupColumns, takeGroup) &&
           readRows(store, QStringLiteral("VirtualNodes"), "virtualnodeid", kVirtualNodeColumns,
                    takeNode) &&
           done;
}

// --- writing ---

/// Writes the rows of one table.
template <class Record>
class RowsOf
{
public:
    /// The columns of \a key come before those of the record.
    template <size_t N>
    RowsOf(StorePrivate &target, const QString &table, const QStringList &key,
           const Column<Record> (&fields)[N])
        : store(target), columns(fields), count(N),
          inserter(table, namesOf(key), key.size(), usualCells(key.size()),
                   RowInserter::Conflict::Replace)
    {
    }

    bool write(RowValues cells, const Record &record)
    {
        for (size_t i = 0; i < count; ++i) {
            const RowValue cell = columns[i].value(record);
            cells.append(columns[i].coding == Coding::StringId ? idOf(cell.text()) : cell);
        }
        return inserter.write(store, cells);
    }

private:
    QStringList namesOf(QStringList names) const
    {
        for (size_t i = 0; i < count; ++i)
            names << QString::fromLatin1(columns[i].name);
        return names;
    }

    Cells usualCells(int keyColumns) const
    {
        Cells usual(keyColumns);
        for (size_t i = 0; i < count; ++i)
            usual << (columns[i].coding == Coding::StringId ? QVariant()
                                                            : columns[i].get(Record()));
        return usual;
    }

    /// Without the row of its own that a text with an apostrophe gets at each call.
    int idOf(const QString &text)
    {
        const QHash<QString, int> &ids = store.idsOfStrings();
        const auto known = ids.constFind(text);
        return known != ids.constEnd() ? *known : store.owner->getStringId(text);
    }

    StorePrivate &store;
    const Column<Record> *columns;
    size_t count;
    RowInserter inserter;
};

/// Nothing is left but the texts; the next save removes those that no row uses.
bool removeAll(StorePrivate &store)
{
    bool done = true;
    const QList<quint8> lines = store.owner->getNodes();
    for (const quint8 line : lines) {
        for (const char *family : Schema::kLineFamilies)
            done =
                store.exec(QStringLiteral("drop table if exists ") + Schema::table(family, line)) &&
                done;
        done = store.exec(QStringLiteral("drop table if exists ") +
                          Schema::table("UDSSettings", line)) &&
               done;
    }
    store.keyWrites.clear();
    for (const Schema::TableRow &row : Schema::kTables) {
        const QLatin1String table(row.name);
        if (table != QLatin1String("Strings"))
            done = store.exec(QStringLiteral("delete from %1").arg(table)) && done;
    }
    return done;
}

bool putObjects(StorePrivate &store, quint8 line, const std::map<quint16, ObjectRecord> &objects)
{
    const QString index = QStringLiteral("objectindex");
    RowsOf<IndexData> rows(store, Schema::table("Objects", line), {index}, kIndexColumns);
    RowsOf<SubIndexData> subRows(store, Schema::table("SubObjects", line),
                                 {index, QStringLiteral("subindex")}, kSubIndexColumns);
    bool done = true;
    for (const auto &[number, object] : objects) {
        if (object.exists)
            done = rows.write({number}, object.data) && done;
        for (const auto &[sub, data] : object.subs)
            done = subRows.write({number, sub}, data) && done;
    }
    return done;
}

template <class Frame, class Signal>
bool putFrames(StorePrivate &store, quint8 line,
               const std::vector<FrameRecord<Frame, Signal>> &frames,
               const std::vector<Signal> &others)
{
    using Family = FrameFamily<Frame>;
    RowsOf<Frame> rows(store, Schema::table(Family::kFrameTable, line), {}, Family::kFrameColumns);
    RowsOf<Signal> signalRows(store, Schema::table(Family::kSignalTable, line), {},
                              Family::kSignalColumns);
    bool done = true;
    for (const auto &record : frames) {
        done = rows.write({}, record.frame) && done;
        for (const Signal &signal : record.signalsOf)
            done = signalRows.write({}, signal) && done;
    }
    for (const Signal &signal : others)
        done = signalRows.write({}, signal) && done;
    return done;
}

template <class Frame, class Signal>
bool replaceFrames(StorePrivate &store, quint8 line,
                   const std::vector<FrameRecord<Frame, Signal>> &frames)
{
    using Family = FrameFamily<Frame>;
    if (store.lockWriteAccess)
        return false;
    std::vector<FrameRecord<Frame, Signal>> all;
    std::vector<Signal> others;
    store.owner->cacheStrings();
    bool done = readFrames(store, line, &all, &others);
    QSet<FrameKey> replaced;
    for (const auto &record : frames)
        replaced.insert({record.frame.*Family::kNumber, record.frame.direction});
    all.erase(
        std::remove_if(
            all.begin(), all.end(),
            [&](const auto &record) {
                return replaced.contains({record.frame.*Family::kNumber, record.frame.direction});
            }),
        all.end());
    others.erase(
        std::remove_if(
            others.begin(), others.end(),
            [&](const Signal &signal) {
                return replaced.contains({signal.*Family::kSignalFrame, quint8(signal.direction)});
            }),
        others.end());
    all.insert(all.end(), frames.begin(), frames.end());
    store.owner->beginBatch();
    // All rows anew: the tables have no keys by which to find those of a frame.
    for (const char *family : {Family::kFrameTable, Family::kSignalTable})
        done =
            done && store.exec(QStringLiteral("delete from %1").arg(Schema::table(family, line)));
    done = done && putFrames(store, line, all, others);
    store.owner->commitBatch();
    (store.*Family::kCache).remove(line);
    emit store.owner->updateNotify(ChangeSetData());
    return done;
}

bool putLine(StorePrivate &store, quint8 line, const LineRecord &record)
{
    bool done = true;
    for (const char *family : Schema::kLineFamilies)
        done = store.exec(Schema::createLineTable(family, line)) && done;
    done = store.exec(Schema::createLineTable("UDSSettings", line)) && done;
    RowsOf<UdsServiceData> services(store, Schema::table("UDSSettings", line),
                                    {QStringLiteral("sid")}, kUdsServiceColumns);
    for (const auto &[sid, service] : record.services)
        done = services.write({sid}, service) && done;
    return putObjects(store, line, record.objects) &&
           putFrames(store, line, record.groups, record.otherSignals) &&
           putFrames(store, line, record.frames, record.otherElements) && done;
}

bool putLines(StorePrivate &store, const std::map<quint8, LineRecord> &lines)
{
    RowsOf<NodeData> nodes(store, QStringLiteral("Nodes"), {QStringLiteral("nodeId")},
                           kNodeColumns);
    bool done = true;
    for (const auto &[line, record] : lines)
        done = nodes.write({line}, record.node) && putLine(store, line, record) && done;
    return done;
}

bool putSettings(StorePrivate &store, const ProjectRecord &project)
{
    bool done = true;
    for (const SettingsOfProject &row : kSettings) {
        RowInserter rows(QLatin1String(row.table),
                         {QStringLiteral("item"), QStringLiteral("value")}, 2, Cells(2),
                         RowInserter::Conflict::Replace);
        const Settings &settings = project.*row.settings;
        for (auto setting = settings.cbegin(); setting != settings.cend(); ++setting)
            done = rows.write(store, {setting.key(), setting.value()}) && done;
    }
    return done;
}

bool putLocks(StorePrivate &store, const std::map<quint8, LockRecord> &locks)
{
    bool done = true;
    for (const Lock &lock : kLocks) {
        RowInserter rows(QLatin1String(lock.table),
                         {QStringLiteral("node"), QStringLiteral("pdoindex")}, 2, Cells(2),
                         RowInserter::Conflict::Replace);
        for (const auto &[line, record] : locks) {
            for (const quint16 index : record.*lock.indices)
                done = rows.write(store, {line, index}) && done;
        }
    }
    return done;
}

bool putBetweenLines(StorePrivate &store, const ProjectRecord &project)
{
    bool done = putLocks(store, project.locks);
    RowsOf<ConnectionData> connections(store, QStringLiteral("Connections"), {},
                                       kConnectionColumns);
    for (const ConnectionData &link : project.connections)
        done = connections.write({}, link) && done;
    RowsOf<LineGroupRecord> groups(store, QStringLiteral("Groups"), {}, kLineGroupColumns);
    for (const LineGroupRecord &group : project.lineGroups)
        done = groups.write({}, group) && done;
    RowsOf<LineSignalData> signalRows(store, QStringLiteral("Signals"), {QStringLiteral("sigid")},
                                      kLineSignalColumns);
    for (const auto &[id, signal] : project.lineSignals)
        done = signalRows.write({id}, signal) && done;
    RowInserter signalGroups(QStringLiteral("SignalGroups"),
                             {QStringLiteral("sigid"), QStringLiteral("name")}, 1, Cells(2),
                             RowInserter::Conflict::Replace);
    for (auto group = project.signalGroups.cbegin(); group != project.signalGroups.cend(); ++group)
        done = signalGroups.write(store, {group.key(), group.value()}) && done;
    RowsOf<VirtualNodeRecord> nodes(store, QStringLiteral("VirtualNodes"),
                                    {QStringLiteral("virtualnodeid")}, kVirtualNodeColumns);
    for (const auto &[id, node] : project.virtualNodes)
        done = nodes.write({id}, node) && done;
    return done;
}

} // namespace

bool ObjectDataBase::readRecords(ProjectRecord *project) const
{
    *project = ProjectRecord();
    d->owner->cacheStrings();
    return readSettings(*d, project) && readLines(*d, &project->lines) &&
           readBetweenLines(*d, project) && !d->damaged;
}

bool ObjectDataBase::putRecords(const ProjectRecord &project)
{
    if (d->lockWriteAccess)
        return false;
    beginBatch();
    const bool done = removeAll(*d) && putSettings(*d, project) && putLines(*d, project.lines) &&
                      putBetweenLines(*d, project);
    commitBatch();
    // All was written past the caches but that of the texts.
    d->forgetSettings();
    d->forgetServicesAndSignals();
    clearAllCachedSubs();
    clearCachedSubNames();
    clearAllCachedSpnData();
    return done && !d->damaged;
}

bool ObjectDataBase::putGroups(quint8 line, const std::vector<GroupRecord> &groups)
{
    return replaceFrames(*d, line, groups);
}

bool ObjectDataBase::putCanFrames(quint8 line, const std::vector<CanFrameRecord> &frames)
{
    return replaceFrames(*d, line, frames);
}
