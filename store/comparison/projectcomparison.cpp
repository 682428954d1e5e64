// What differs between two projects.
#include "store/comparison/projectcomparison.h"

#include "store/comparison/changedfields.h"
#include "store/comparison/framechanges.h"
#include "store/comparison/objectchanges.h"
#include "store/comparison/settingchanges.h"
#include "store/sidebyside.h"
#include "store/yaml/yamlsettings.h"

#include <algorithm>
#include <tuple>

namespace
{

using Change = ProjectChange::Change;

/// Records with their keys, ascending.
template <class Key, class Record>
using Keyed = std::vector<std::pair<Key, Record>>;

template <class Records, class KeyOf>
auto keyed(const Records &records, const KeyOf &keyOf)
{
    using Record = std::decay_t<decltype(*records.begin())>;
    Keyed<decltype(keyOf(std::declval<Record>())), Record> result;
    for (const auto &record : records)
        result.emplace_back(keyOf(record), record);
    std::stable_sort(result.begin(), result.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    return result;
}

template <class Record>
std::vector<Record> valuesOf(const std::map<qint64, Record> &map)
{
    std::vector<Record> values;
    for (const auto &entry : map)
        values.push_back(entry.second);
    return values;
}

QString wordOf(const YamlWord *first, const YamlWord *end, qint64 number)
{
    const auto found =
        std::find_if(first, end, [number](const YamlWord &row) { return row.number == number; });
    return found == end ? QString() : QLatin1String(found->word);
}

QString hex(quint32 number, int digits)
{
    return QStringLiteral("0x") +
           QStringLiteral("%1").arg(number, digits, 16, QLatin1Char('0')).toUpper();
}

QString serviceName(quint8 service)
{
    const QString word = wordOf(std::begin(kServiceWords), std::end(kServiceWords), service);
    return QStringLiteral("UDS %1 %2").arg(hex(service, 2), word).trimmed();
}

QString endName(quint8 line, quint16 index, quint8 sub)
{
    return QStringLiteral("%1/%2:%3")
        .arg(QString::number(line), hex(index, 4), QString::number(sub));
}

QString named(const QString &what, const QString &name)
{
    return name.isEmpty() ? what : what + QLatin1Char(' ') + name;
}

class Comparison
{
public:
    Comparison(const ProjectRecord &before, const ProjectRecord &after)
        : older(before), newer(after)
    {
    }

    ProjectComparison run()
    {
        SideBySide::walk(older.lines, newer.lines,
                         [this](quint8 line, const LineRecord *before, const LineRecord *after) {
                             addLine(line, before, after);
                         });
        addSettingChanges(older, newer, &result.changes); // the protocol of a line behind the line
        addLocks();
        addSignals();
        addLinks();
        std::stable_sort(result.changes.begin(), result.changes.end(),
                         [](const ProjectChange &a, const ProjectChange &b) {
                             return std::make_tuple(a.line, rankOf(a.kind)) <
                                    std::make_tuple(b.line, rankOf(b.kind));
                         });
        return std::move(result);
    }

private:
    static ChangeKind rankOf(ChangeKind kind)
    {
        switch (kind) {
        case ChangeKind::Subindex:
            return ChangeKind::Object;
        case ChangeKind::Signal:
            return ChangeKind::Group;
        case ChangeKind::Element:
            return ChangeKind::Frame;
        default:
            return kind;
        }
    }

    /// A record that one of the projects may not have.
    template <class Record>
    void add(const ProjectChange &base, const YamlTable<Record> &table, const Record *before,
             const Record *after, std::initializer_list<const char *> except = {})
    {
        addFields(base, before, after, ChangedFields::of(table, before, after, except));
    }

    void addFields(ProjectChange change, const void *before, const void *after,
                   const QVector<ChangedField> &fields)
    {
        if (before && after && fields.isEmpty())
            return;
        change.change = !before ? Change::Added : !after ? Change::Removed : Change::Changed;
        change.fields = fields;
        result.changes.push_back(change);
    }

    static ProjectChange changeOf(ChangeKind kind, int line, const QString &what)
    {
        ProjectChange change;
        change.kind = kind;
        change.line = line;
        change.what = what;
        return change;
    }

    void addLine(quint8 line, const LineRecord *before, const LineRecord *after)
    {
        static const LineRecord kNone;
        const ProjectRecord &project = after ? newer : older;
        const QString type = project.general.value(QStringLiteral("line%1type").arg(line));
        const QString protocol =
            wordOf(std::begin(kProtocolWords), std::end(kProtocolWords), type.toLongLong());
        const QString name = QStringLiteral("Line %1").arg(line);
        result.titles[line] = protocol.isEmpty() ? name : name + QLatin1String(", ") + protocol;
        add(changeOf(ChangeKind::Line, line,
                     named(QStringLiteral("line"), (after ? after : before)->node.name)),
            kNodeYaml, before ? &before->node : nullptr, after ? &after->node : nullptr);
        const LineRecord &one = before ? *before : kNone;
        const LineRecord &other = after ? *after : kNone;
        addObjectChanges(line, one, other, &result.changes);
        addFrameChanges(line, one, other, &result.changes);
        SideBySide::walk(one.services, other.services,
                         [&](quint8 service, const UdsServiceData *a, const UdsServiceData *b) {
                             add(changeOf(ChangeKind::Service, line, serviceName(service)),
                                 kUdsServiceYaml, a, b);
                         });
    }

    void addLocks()
    {
        static const LockRecord kNone;
        SideBySide::walk(older.locks, newer.locks,
                         [this](quint8 line, const LockRecord *a, const LockRecord *b) {
                             const LockRecord &before = a ? *a : kNone;
                             const LockRecord &after = b ? *b : kNone;
                             addLocksOf(line, before.pdos, after.pdos);
                             addLocksOf(line, before.mappings, after.mappings);
                         });
    }

    void addLocksOf(quint8 line, const QList<quint16> &before, const QList<quint16> &after)
    {
        const auto self = [](quint16 index) { return index; };
        SideBySide::walk(keyed(before, self), keyed(after, self),
                         [&](quint16 index, const quint16 *a, const quint16 *b) {
                             ProjectChange change = changeOf(
                                 ChangeKind::Lock, line, QStringLiteral("fixed ") + hex(index, 4));
                             change.number = index;
                             addFields(change, a, b, {});
                         });
    }

    void addSignals()
    {
        SideBySide::walk(
            older.lineSignals, newer.lineSignals,
            [this](qint32 id, const LineSignalData *a, const LineSignalData *b) {
                const LineSignalData &signal = b ? *b : *a;
                const QString what = named(QStringLiteral("signal %1").arg(id), signal.name);
                add(changeOf(ChangeKind::LineSignal, signal.line, what), kLineSignalYaml, a, b);
            });
        const auto &before = older.signalGroups;
        const auto &after = newer.signalGroups;
        SideBySide::walk(
            before.constBegin(), before.constEnd(), after.constBegin(), after.constEnd(),
            [this](qint32 id, const QString *a, const QString *b) {
                if (a && b && *a == *b)
                    return;
                const auto shown = [](const QString *name) {
                    return name ? YamlWriter::oneLine(YamlValue::text(*name)) : QString();
                };
                addFields(changeOf(ChangeKind::SignalGroup, -1,
                                   QStringLiteral("signal group %1").arg(id)),
                          a, b, {ChangedFields::field(QStringLiteral("name"), shown(a), shown(b))});
            });
    }

    void addLinks()
    {
        const auto keyOfLink = [](const ConnectionData &link) {
            return std::make_tuple(link.prodNode, link.prodIndex, link.prodSub, link.conNode,
                                   link.conIndex, link.conSub);
        };
        walkKeyed(older.connections, newer.connections, keyOfLink, kConnectionYaml,
                  [](const ConnectionData &link) {
                      return changeOf(ChangeKind::Connection, -1,
                                      QStringLiteral("connection %1 -> %2")
                                          .arg(endName(link.prodNode, link.prodIndex, link.prodSub),
                                               endName(link.conNode, link.conIndex, link.conSub)));
                  });
        walkKeyed(
            valuesOf(older.virtualNodes), valuesOf(newer.virtualNodes),
            [](const VirtualNodeRecord &node) { return std::make_pair(node.line, node.node); },
            kVirtualNodeYaml,
            [](const VirtualNodeRecord &node) {
                return changeOf(
                    ChangeKind::VirtualNode, -1,
                    named(QStringLiteral("node %1 of line %2")
                              .arg(QString::number(node.node), QString::number(node.line)),
                          node.name));
            });
        walkKeyed(
            older.lineGroups, newer.lineGroups,
            [](const LineGroupRecord &group) { return group.name; }, kLineGroupYaml,
            [](const LineGroupRecord &group) {
                return changeOf(ChangeKind::LineGroup, -1,
                                named(QStringLiteral("group of lines"), group.name));
            });
    }

    /// The keys stand in what changed.
    template <class Record, class KeyOf, class ChangeOf>
    void walkKeyed(const std::vector<Record> &before, const std::vector<Record> &after,
                   const KeyOf &keyOf, const YamlTable<Record> &table, const ChangeOf &base)
    {
        SideBySide::walk(keyed(before, keyOf), keyed(after, keyOf),
                         [&](const auto &, const Record *a, const Record *b) {
                             add(base(b ? *b : *a), table, a, b, {"line", "node"});
                         });
    }

    const ProjectRecord &older;
    const ProjectRecord &newer;
    ProjectComparison result;
};

} // namespace

ProjectComparison compareProjects(const ProjectRecord &older, const ProjectRecord &newer)
{
    return Comparison(older, newer).run();
}
