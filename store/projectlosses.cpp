// What of a project its text form has no place for.
#include "store/projectlosses.h"

#include "support/udssiddefinitions.h"

#include <algorithm>

namespace
{

/// How many of a kind there are.
struct LossRow {
    const char *one;
    const char *many;
    qint64 (*count)(const ProjectRecord &project);
};

template <class Count>
qint64 sumOfLines(const ProjectRecord &project, Count count)
{
    qint64 sum = 0;
    for (const auto &[number, line] : project.lines)
        sum += qint64(count(line));
    return sum;
}

template <class Frame, class Signal>
qint64 countSignals(const std::vector<FrameRecord<Frame, Signal>> &frames,
                    const std::vector<Signal> &others)
{
    auto sum = qint64(others.size());
    for (const auto &frame : frames)
        sum += qint64(frame.signalsOf.size());
    return sum;
}

template <class IsLost>
qint64 countSubs(const ProjectRecord &project, IsLost isLost)
{
    return sumOfLines(project, [isLost](const LineRecord &line) {
        qint64 sum = 0;
        for (const auto &[index, object] : line.objects)
            sum += std::count_if(object.subs.begin(), object.subs.end(),
                                 [isLost](const auto &sub) { return isLost(sub.second); });
        return sum;
    });
}

qint64 countLocks(const ProjectRecord &project)
{
    qint64 sum = 0;
    for (const auto &[line, locks] : project.locks)
        sum += locks.pdos.size() + locks.mappings.size();
    return sum;
}

using Services = std::map<quint8, UdsServiceData>;

bool isSameService(const UdsServiceData &one, const UdsServiceData &other)
{
    return one.active == other.active && one.sessions == other.sessions &&
           one.userLevels == other.userLevels;
}

/// Those that are there, not there or others, unlike in \a usual.
qint64 countServices(const Services &services, const Services &usual)
{
    qint64 count = 0;
    for (const auto &[sid, service] : services) {
        const auto found = usual.find(sid);
        count += found == usual.end() || !isSameService(found->second, service) ? 1 : 0;
    }
    for (const auto &[sid, service] : usual)
        count += services.count(sid) == 0 ? 1 : 0;
    return count;
}

void addService(Services &services, UDS::SID sid, const char *sessions)
{
    UdsServiceData &service = services[quint8(sid)];
    service.active = true;
    service.sessions = QString::fromLatin1(sessions);
}

/// A line that came without any has all of them since it was opened.
qint64 countServices(const ProjectRecord &project)
{
    Services all;
    Services ofNewLine;
    for (const UDS::ServiceInSessions &service : UDS::kAllServices)
        addService(all, service.sid, service.sessions);
    for (const UDS::SID sid : UDS::kOfNewLine)
        addService(ofNewLine, sid, UDS::kSessionsOfNewLine);
    return sumOfLines(project, [&](const LineRecord &line) {
        return countServices(line.services, all) == 0 ? 0 : countServices(line.services, ofNewLine);
    });
}

using Project = const ProjectRecord &;

// clang-format off
constexpr LossRow kLosses[] = {
    {"parameter group", "parameter groups", [](Project project) {
        return sumOfLines(project, [](const LineRecord &line) { return line.groups.size(); }); }},
    {"signal of parameter groups", "signals of parameter groups", [](Project project) {
        return sumOfLines(project, [](const LineRecord &line) {
            return countSignals(line.groups, line.otherSignals); }); }},
    {"CAN identifier", "CAN identifiers", [](Project project) {
        return sumOfLines(project, [](const LineRecord &line) { return line.frames.size(); }); }},
    {"signal of CAN identifiers", "signals of CAN identifiers", [](Project project) {
        return sumOfLines(project, [](const LineRecord &line) {
            return countSignals(line.frames, line.otherElements); }); }},
    {"diagnostic service other than that of a new line", "diagnostic services other than those of a new line",
        countServices},
    {"connection of PDOs", "connections of PDOs", [](Project project) {
        return qint64(project.connections.size()); }},
    {"lock of a PDO", "locks of PDOs", [](Project project) { return countLocks(project); }},
    {"signal of a line", "signals of lines", [](Project project) {
        return qint64(project.lineSignals.size()); }},
    {"group of such signals", "groups of such signals", [](Project project) {
        return qint64(project.signalGroups.size()); }},
    {"group of lines", "groups of lines", [](Project project) { return qint64(project.lineGroups.size()); }},
    {"virtual node", "virtual nodes", [](Project project) { return qint64(project.virtualNodes.size()); }},
    {"J1939 setting", "J1939 settings", [](Project project) { return qint64(project.j1939.size()); }},
    {"EnergyBus setting", "EnergyBus settings", [](Project project) {
        return qint64(project.energyBus.size()); }},
    {"name of a line", "names of lines", [](Project project) {
        return sumOfLines(project, [](const LineRecord &line) { return line.node.name.isEmpty() ? 0 : 1; }); }},
    {"empty prefix of a line", "empty prefixes of lines", [](Project project) {
        return sumOfLines(project, [](const LineRecord &line) { return line.node.prefix.isEmpty() ? 1 : 0; }); }},
    {"general setting with an apostrophe", "general settings with apostrophes", [](Project project) {
        return qint64(std::count_if(project.general.begin(), project.general.end(), [](const QString &value) {
            return value.contains(QLatin1Char('\'')); })); }},
    {"display name of a subindex", "display names of subindices", [](Project project) {
        return countSubs(project, [](const SubIndexData &sub) { return !sub.denotation.isEmpty(); }); }},
    {"tie of a subindex to a signal", "ties of subindices to signals", [](Project project) {
        return countSubs(project, [](const SubIndexData &sub) { return sub.signalId != 0; }); }},
    {"mark of an editor at a subindex", "marks of an editor at subindices", [](Project project) {
        return countSubs(project, [](const SubIndexData &sub) {
            return sub.cyclicRead || sub.dcfComponent || sub.changedByUser || sub.wizardSource != 0; }); }},
};
// clang-format on

} // namespace

QStringList ProjectLosses::ofTextForm(const ProjectRecord &project)
{
    QStringList losses;
    for (const LossRow &row : kLosses) {
        const qint64 count = row.count(project);
        if (count > 0)
            losses << QString::number(count) + QLatin1Char(' ') +
                          QLatin1String(count == 1 ? row.one : row.many);
    }
    return losses;
}
