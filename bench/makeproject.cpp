// Makes one synthetic project. The same arguments always give the same project.
//
// Usage: bench_makeproject <parts> <types> <folder>
// The types are those of the lines, such as "1,2": 1 CANopen, 2 J1939, 4 raw CAN, 5 CANopen and
// J1939. Each line has that many parts: objects (and those that every device has), groups or
// identifiers; of both protocols half each. Writes project.tsrp to the folder; of one CANopen line
// also project.tsrt, project.yaml, device.eds and device.xdd, of one J1939 line device.dbc, and of
// each of these blank.tsrp (no object or group at all).
#include "bench/canopenparts.h"
#include "bench/frameparts.h"
#include "store/linetype.h"

#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>

#include <algorithm>
#include <cstdio>

namespace
{

void setSettings(ObjectDataBase &store, const QStringList &types)
{
    QStringList nodes;
    QStringList ones;
    for (int line = 0; line < types.size(); ++line) {
        store.setGeneralSettingsValue(QStringLiteral("line%1type").arg(line), types.at(line));
        nodes << QString::number(line + 1);
        ones << QStringLiteral("1");
    }
    const QString onePerLine = ones.join(QLatin1Char(','));
    QVector<QPair<QString, QString>> settings = {
        {QStringLiteral("co_node_id"), nodes.join(QLatin1Char(','))},
        {QStringLiteral("receivebuffersize"), onePerLine},
        {QStringLiteral("transmitbuffersize"), onePerLine},
        {QStringLiteral("co_timer_interval"), QStringLiteral("1000")},
        {QStringLiteral("limit_check"), QStringLiteral("1")},
    };
    if (types.count(QStringLiteral("1")) < types.size())
        settings += {{QStringLiteral("new_init_structure"), QStringLiteral("1")},
                     {QStringLiteral("init_static_variables"), QStringLiteral("1")}};
    for (const auto &setting : settings)
        store.setGeneralSettingsValue(setting.first, setting.second);
    for (const char *key :
         {"identitynumber", "manufacturercode", "ecuinstance", "functioninstance", "function",
          "vehiclesystem", "vehicleinstance", "industrygroup", "startaddress", "addresscapable"})
        store.setJ1939SettingsValue(QLatin1String(key), onePerLine);
    for (const char *key : {"bamsupport", "cmdtsupport", "cmdtpackets"})
        store.setJ1939SettingsValue(QLatin1String(key), QStringLiteral("1"));
}

void addLine(ObjectDataBase &store, quint8 line, LineType type, int parts)
{
    if (line > 0)
        store.addNode(line, ObjectDataBase::NODE_DATA_T());
    const int share = type == LineType::CANopenAndJ1939 ? parts / 2 : parts;
    if (carriesCANopen(type))
        Bench::addObjects(store, line, Bench::makeObjects(share));
    if (carriesJ1939(type))
        Bench::addGroups(store, line, share);
    if (type == LineType::RawCan)
        Bench::addIdentifiers(store, line, share);
}

bool writeProject(const QStringList &types, int parts, const QStringList &files)
{
    ObjectDataBase store;
    if (!store.createNewDataBase())
        return false;
    setSettings(store, types);
    store.beginBatch();
    for (int line = 0; line < types.size(); ++line)
        addLine(store, quint8(line), LineType(types.at(line).toInt()), parts);
    store.commitBatch();
    return std::all_of(files.cbegin(), files.cend(),
                       [&](const QString &file) { return store.saveDataBase(file); });
}

bool writeBlankProject(const QStringList &types, const QString &file)
{
    ObjectDataBase store;
    if (!store.createNewDataBase())
        return false;
    setSettings(store, types);
    return store.saveDataBase(file);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("CANopen Tessarine"));
    QCoreApplication::setApplicationVersion(QStringLiteral("3.11.2"));
    QLoggingCategory::setFilterRules(QStringLiteral("tessarine.*=false"));
    const QStringList arguments = application.arguments();
    const int parts = arguments.size() == 4 ? arguments.at(1).toInt() : -1;
    if (parts < 0 || parts > Bench::kMostObjects || !QDir(arguments.value(3)).exists()) {
        std::fprintf(stderr, "usage: bench_makeproject <parts, 0 to %d> <types> <folder>\n",
                     Bench::kMostObjects);
        return 2;
    }
    const QStringList types = arguments.at(2).split(QLatin1Char(','));
    const QDir folder(arguments.at(3));
    const bool isCANopen = types == QStringList(QStringLiteral("1"));
    const bool isJ1939 = types == QStringList(QStringLiteral("2"));
    QStringList forms = {folder.filePath(QStringLiteral("project.tsrp"))};
    if (isCANopen)
        forms << folder.filePath(QStringLiteral("project.tsrt"))
              << folder.filePath(QStringLiteral("project.yaml"));
    bool written = writeProject(types, parts, forms);
    if (isCANopen || isJ1939)
        written =
            written && writeBlankProject(types, folder.filePath(QStringLiteral("blank.tsrp")));
    if (isCANopen)
        written = written &&
                  Bench::writeEds(Bench::makeObjects(parts),
                                  folder.filePath(QStringLiteral("device.eds"))) &&
                  Bench::writeXdd(Bench::makeObjects(parts),
                                  folder.filePath(QStringLiteral("device.xdd")));
    if (isJ1939)
        written = written && Bench::writeDbc(parts, folder.filePath(QStringLiteral("device.dbc")));
    if (!written)
        std::fprintf(stderr, "bench_makeproject: cannot write to %s\n", argv[3]);
    return written ? 0 : 1;
}
