// Connections, signals, groups and locks in the YAML form.
#include "store/yaml/yamlnetwork.h"

#include "store/yaml/yamlconnections.h"
#include "store/yaml/yamlkeys.h"
#include "store/yaml/yamlrecord.h"

#include <algorithm>
#include <limits>

namespace
{

constexpr qint64 kHighestLine = 0xFF; // of what the project need not have

QList<quint16> ascending(QList<quint16> indices)
{
    std::sort(indices.begin(), indices.end());
    indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
    return indices;
}

/// A record that has no keys but its columns.
template <class Record>
Record readPlain(const YamlTable<Record> &table, YamlNode map, const QString &where,
                 YamlContext &context)
{
    Record record;
    if (!context.isMap(map, where + QStringLiteral(" is a map")))
        return record;
    const QVector<YamlNode::Entry> others = YamlRecord::read(table, map, &record, context);
    for (const YamlNode::Entry &other : others)
        context.unknownKey(other.key, where, YamlRecord::words(table));
    return record;
}

template <class Record>
YamlValue plainToYaml(const YamlTable<Record> &table, const Record &record)
{
    YamlValue map = YamlValue::map();
    YamlRecord::write(table, record, Record(), &map);
    return map;
}

YamlValue locksToYaml(const LockRecord &locks)
{
    YamlValue map = YamlValue::map();
    for (const auto &[key, indices] : {std::make_pair(YamlKeys::kPdos, &locks.pdos),
                                       std::make_pair(YamlKeys::kMappings, &locks.mappings)}) {
        YamlValue list = YamlValue::list();
        for (const quint16 index : *indices)
            list << YamlValue::hex(index, 4);
        if (!list.isEmpty())
            map.add(key, list);
    }
    return map;
}

/// Nothing stands for what is empty.
void writeIfAny(const char *key, YamlValue value, YamlWriter &writer)
{
    if (!value.isEmpty())
        writer.value(key, value.spread());
}

} // namespace

bool YamlNetwork::readOfProject(const YamlNode::Entry &entry)
{
    if (entry.key.is(YamlKeys::kSignalGroups)) {
        readSignalGroups(entry.value);
    } else if (entry.key.is(YamlKeys::kVirtualNodes)) {
        readVirtualNodes(entry.value);
    } else if (entry.key.is(YamlKeys::kLineGroups)) {
        readLineGroups(entry.value);
    } else if (entry.key.is(YamlKeys::kSignals)) {
        readSignals(entry.value, std::nullopt);
    } else if (entry.key.is(YamlKeys::kConnections)) {
        YamlConnections::read(entry.value, &project->connections, context);
    } else if (!entry.key.is(YamlKeys::kLocks)) {
        return false;
    } else if (context.isMap(entry.value, QStringLiteral("locks are a map by lines"))) {
        const auto lines = context.numbered(entry.value, 0, kHighestLine, QStringLiteral("line"));
        for (const YamlContext::Numbered &line : lines)
            readLocks(quint8(line.number), line.value);
    }
    return true;
}

bool YamlNetwork::readOfLine(quint8 line, const YamlNode::Entry &entry)
{
    if (entry.key.is(YamlKeys::kSignals))
        readSignals(entry.value, line);
    else if (entry.key.is(YamlKeys::kLocks))
        readLocks(line, entry.value);
    else
        return false;
    return true;
}

void YamlNetwork::readSignals(YamlNode map, std::optional<quint8> line)
{
    if (!context.isMap(map, QStringLiteral("signals are a map by numbers")))
        return;
    const auto entries =
        context.numbered(map, std::numeric_limits<qint32>::min(),
                         std::numeric_limits<qint32>::max(), QStringLiteral("signal"));
    for (const YamlContext::Numbered &entry : entries)
        readSignal(entry, line);
}

void YamlNetwork::readSignal(const YamlContext::Numbered &entry, std::optional<quint8> line)
{
    if (!context.isMap(entry.value, QStringLiteral("a signal is a map")))
        return;
    LineSignalData data;
    data.line = line.value_or(0);
    QStringList known = YamlRecord::words(kLineSignalYaml);
    if (!line)
        known << YamlKeys::kLine;
    const QVector<YamlNode::Entry> others =
        YamlRecord::read(kLineSignalYaml, entry.value, &data, context);
    for (const YamlNode::Entry &other : others) {
        if (line || !other.key.is(YamlKeys::kLine))
            context.unknownKey(other.key, QStringLiteral("a signal"), known);
        else if (const auto number = context.number(other.value, 0, kHighestLine, YamlKeys::kLine))
            data.line = quint8(*number);
    }
    const auto id = qint32(entry.number);
    if (!project->lineSignals.emplace(id, data).second)
        context.doubledNumber(entry.key, QStringLiteral("signal"), linesOfSignals.value(id));
    else
        linesOfSignals.insert(id, entry.key.place().line);
}

void YamlNetwork::readSignalGroups(YamlNode map)
{
    if (!context.isMap(map, QStringLiteral("the groups of signals are a map by numbers")))
        return;
    const QString what = QStringLiteral("signal group");
    const auto entries = context.numbered(map, std::numeric_limits<qint32>::min(),
                                          std::numeric_limits<qint32>::max(), what);
    for (const YamlContext::Numbered &entry : entries) {
        if (const std::optional<QString> name = context.text(entry.value, what))
            project->signalGroups.insert(qint32(entry.number), *name);
    }
}

void YamlNetwork::readVirtualNodes(YamlNode map)
{
    if (!context.isMap(map, QStringLiteral("virtual nodes are a map by numbers")))
        return;
    const auto entries =
        context.numbered(map, std::numeric_limits<qint64>::min(),
                         std::numeric_limits<qint64>::max(), QStringLiteral("virtual node"));
    for (const YamlContext::Numbered &entry : entries)
        project->virtualNodes[entry.number] =
            readPlain(kVirtualNodeYaml, entry.value, QStringLiteral("a virtual node"), context);
}

void YamlNetwork::readLineGroups(YamlNode list)
{
    if (!context.isList(list, QStringLiteral("the groups of lines are a list")))
        return;
    const QVector<YamlNode> items = list.items();
    for (const YamlNode item : items)
        project->lineGroups.push_back(
            readPlain(kLineGroupYaml, item, QStringLiteral("a group of lines"), context));
}

void YamlNetwork::readLocks(quint8 line, YamlNode map)
{
    if (!context.isMap(map, QStringLiteral("the locks of a line are a map")))
        return;
    LockRecord locks;
    const QVector<YamlNode::Entry> entries = map.entries();
    for (const YamlNode::Entry &entry : entries) {
        if (entry.key.is(YamlKeys::kPdos))
            locks.pdos = readIndices(entry.value);
        else if (entry.key.is(YamlKeys::kMappings))
            locks.mappings = readIndices(entry.value);
        else
            context.unknownKey(entry.key, QStringLiteral("locks"),
                               {YamlKeys::kPdos, YamlKeys::kMappings});
    }
    if (locks.pdos.isEmpty() && locks.mappings.isEmpty())
        return;
    LockRecord &all = project->locks[line]; // which may stand in the line and beside the lines
    all.pdos = ascending(all.pdos + locks.pdos);
    all.mappings = ascending(all.mappings + locks.mappings);
}

QList<quint16> YamlNetwork::readIndices(YamlNode list)
{
    QList<quint16> result;
    if (!context.isList(list, QStringLiteral("what is locked is a list of indices")))
        return result;
    const QVector<YamlNode> items = list.items();
    for (const YamlNode item : items) {
        if (const auto index = context.number(item, 0, 0xFFFF, QStringLiteral("an index")))
            result << quint16(*index);
    }
    return result;
}

void YamlNetwork::writeBeforeLines(const ProjectRecord &project, YamlWriter &writer)
{
    YamlValue groups = YamlValue::map();
    for (auto group = project.signalGroups.begin(); group != project.signalGroups.end(); ++group)
        groups.add(QString::number(group.key()), YamlValue::text(group.value()));
    writeIfAny(YamlKeys::kSignalGroups, groups, writer);

    YamlValue nodes = YamlValue::map();
    for (const auto &[number, node] : project.virtualNodes)
        nodes.add(QString::number(number), plainToYaml(kVirtualNodeYaml, node));
    writeIfAny(YamlKeys::kVirtualNodes, nodes, writer);

    YamlValue lines = YamlValue::list();
    for (const LineGroupRecord &group : project.lineGroups)
        lines << plainToYaml(kLineGroupYaml, group);
    writeIfAny(YamlKeys::kLineGroups, lines, writer);
}

void YamlNetwork::writeOfLine(const ProjectRecord &project, quint8 line, YamlWriter &writer)
{
    YamlValue list = YamlValue::map();
    for (const auto &[number, signal] : project.lineSignals) {
        if (signal.line == line)
            list.add(QString::number(number), plainToYaml(kLineSignalYaml, signal));
    }
    writeIfAny(YamlKeys::kSignals, list, writer);

    const auto locks = project.locks.find(line);
    if (locks != project.locks.end() && !locksToYaml(locks->second).isEmpty())
        writer.value(YamlKeys::kLocks, locksToYaml(locks->second));
}

void YamlNetwork::writeAfterLines(const ProjectRecord &project, YamlWriter &writer)
{
    YamlValue lost = YamlValue::map();
    for (const auto &[number, signal] : project.lineSignals) {
        if (project.lines.count(signal.line))
            continue;
        YamlValue map = YamlValue::map();
        map.add(YamlKeys::kLine, YamlValue::number(signal.line));
        YamlRecord::write(kLineSignalYaml, signal, LineSignalData(), &map);
        lost.add(QString::number(number), map);
    }
    writeIfAny(YamlKeys::kSignals, lost, writer);

    writeIfAny(YamlKeys::kConnections, YamlConnections::toYaml(project.connections), writer);

    YamlValue locked = YamlValue::map();
    for (const auto &[line, locks] : project.locks) {
        const YamlValue map = locksToYaml(locks);
        if (!project.lines.count(line) && !map.isEmpty())
            locked.add(QString::number(line), map);
    }
    writeIfAny(YamlKeys::kLocks, locked, writer);
}

QStringList YamlNetwork::keysOfProject()
{
    return {YamlKeys::kSignalGroups, YamlKeys::kVirtualNodes, YamlKeys::kLineGroups,
            YamlKeys::kSignals,      YamlKeys::kConnections,  YamlKeys::kLocks};
}

QStringList YamlNetwork::keysOfLine()
{
    return {YamlKeys::kSignals, YamlKeys::kLocks};
}
