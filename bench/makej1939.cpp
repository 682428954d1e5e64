// Makes a synthetic J1939 project with one line. The same number of groups always gives the same
// project.
//
// Usage: bench_makej1939 <groups> <folder>
// Writes project.tsrp to the folder; each group has eight signals.
#include "store/objectdatabase.h"
#include "support/cohelper.h"

#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>

#include <cstdio>

namespace
{

constexpr int kMostGroups = 4000;
constexpr int kSignals = 8;
constexpr quint32 kFirstGroup = 0x10000;  // the stack has no group in the second data page
constexpr quint32 kFirstSignal = 0x7F000; // SAE J1939-71: numbers for manufacturers
constexpr quint8 kTransmitted = 0x55;
constexpr quint8 kReceived = 0x77;

constexpr CAN::CANopenDataType kTypes[] = {
    CAN::CANopenDataType::Unsigned8, CAN::CANopenDataType::Unsigned16,
    CAN::CANopenDataType::Unsigned4, CAN::CANopenDataType::Unsigned32,
    CAN::CANopenDataType::Boolean,   CAN::CANopenDataType::Unsigned24,
    CAN::CANopenDataType::Unsigned2,
};
constexpr int kTypeCount = sizeof kTypes / sizeof kTypes[0];

void setSettings(ObjectDataBase &store)
{
    const QVector<QPair<QString, QString>> general = {
        {QStringLiteral("line0type"), QStringLiteral("2")},
        {QStringLiteral("receivebuffersize"), QStringLiteral("10")},
        {QStringLiteral("transmitbuffersize"), QStringLiteral("5")},
        {QStringLiteral("co_timer_interval"), QStringLiteral("1000")},
        {QStringLiteral("new_init_structure"), QStringLiteral("1")},
        {QStringLiteral("init_static_variables"), QStringLiteral("1")},
    };
    for (const auto &setting : general)
        store.setGeneralSettingsValue(setting.first, setting.second);
    for (const char *key :
         {"identitynumber", "manufacturercode", "ecuinstance", "functioninstance", "function",
          "vehiclesystem", "vehicleinstance", "industrygroup", "startaddress", "addresscapable",
          "bamsupport", "cmdtsupport", "cmdtpackets"})
        store.setJ1939SettingsValue(QLatin1String(key), QStringLiteral("1"));
}

void addSignal(ObjectDataBase &store, const ObjectDataBase::PGN &group, int part, int place)
{
    const int number = part * kSignals + place;
    ObjectDataBase::SPN spn;
    spn.pos = static_cast<qint16>(place);
    spn.name =
        QStringLiteral("Signal %1 of part %2").arg(QString::number(place), QString::number(part));
    if (number % 3 == 0)
        spn.description = QStringLiteral("Sampled each %1 ms.").arg(number % 50);
    spn.dataType = static_cast<quint32>(kTypes[number % kTypeCount]);
    spn.implementation = number % 2 == 0 ? 2 : 0;
    if (spn.implementation == 2)
        spn.varName = QStringLiteral("signal_%1").arg(number);
    store.addSPN(0, group.number, group.direction, kFirstSignal + quint32(number), spn);
}

void addGroup(ObjectDataBase &store, int number)
{
    ObjectDataBase::PGN group;
    group.number = kFirstGroup + quint32(number);
    group.direction = number % 2 == 0 ? kTransmitted : kReceived;
    group.name = QStringLiteral("Group of part %1").arg(number);
    group.description = QStringLiteral("What part %1 tells.").arg(number);
    group.priority = static_cast<quint8>(number % 8);
    group.cycleTimeMs = group.direction == kTransmitted ? 100 : 0;
    group.mappingCount = kSignals;
    store.addPGN(0, group.number, group);
    for (int place = 0; place < kSignals; ++place)
        addSignal(store, group, number, place);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("CANopen Tessarine"));
    QCoreApplication::setApplicationVersion(QStringLiteral("3.11.2"));
    QLoggingCategory::setFilterRules(QStringLiteral("tessarine.*=false"));
    const QStringList arguments = application.arguments();
    const int count = arguments.size() == 3 ? arguments.at(1).toInt() : 0;
    if (count < 1 || count > kMostGroups || !QDir(arguments.value(2)).exists()) {
        std::fprintf(stderr, "usage: bench_makej1939 <groups, 1 to %d> <folder>\n", kMostGroups);
        return 2;
    }
    ObjectDataBase store;
    if (!store.createNewDataBase())
        return 1;
    setSettings(store);
    store.beginBatch();
    for (int number = 0; number < count; ++number)
        addGroup(store, number);
    store.commitBatch();
    const QString file = QDir(arguments.at(2)).filePath(QStringLiteral("project.tsrp"));
    if (store.saveDataBase(file))
        return 0;
    std::fprintf(stderr, "bench_makej1939: cannot write to %s\n", argv[2]);
    return 1;
}
