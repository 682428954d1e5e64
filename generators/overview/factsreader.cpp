// From the store to the facts.
#include "generators/overview/factsreader.h"

#include "generators/addressclaim.h"
#include "generators/bitrate.h"
#include "generators/frames/canopenframes.h"
#include "generators/overview/connectionfacts.h"
#include "generators/overview/framefacts.h"
#include "generators/overview/objectfacts.h"
#include "store/linetype.h"
#include "store/objectdatabase.h"
#include "store/projectfeatures.h"

#include <QCoreApplication>

namespace
{

using namespace Overview;

QString descriptionOf(ObjectDataBase &store, const char *key)
{
    return store.getDescriptionSettingsValue(QLatin1String(key));
}

Project readProject(ObjectDataBase &store)
{
    Project project;
    store.setDescriptionSettingsLine(0);
    project.vendor = descriptionOf(store, "VendorName");
    project.product = descriptionOf(store, "ProductName");
    project.version = descriptionOf(store, "FileVersion");
    project.tool = QCoreApplication::applicationName() + QLatin1Char(' ') +
                   QCoreApplication::applicationVersion();
    return project;
}

QString wordOf(LineType type)
{
    switch (type) {
    case LineType::CANopen:
        return QStringLiteral("CANopen");
    case LineType::J1939:
        return QStringLiteral("J1939");
    case LineType::RawCan:
        return QStringLiteral("raw CAN");
    case LineType::CANopenAndJ1939:
        return QStringLiteral("CANopen and J1939");
    }
    return QStringLiteral("unknown protocol");
}

template <class Number>
std::optional<int> numberOf(const std::optional<Number> &number)
{
    return number ? std::optional<int>(int(*number)) : std::nullopt;
}

/// Address and NAME of a J1939 device.
void readName(const ObjectDataBase &store, Line &line)
{
    const quint8 address = AddressClaim::addressOf(store, line.number);
    if (address != AddressClaim::kNullAddress)
        line.address = address;
    line.name = QStringLiteral("0x%1").arg(AddressClaim::nameOf(store, line.number), 16, 16,
                                           QLatin1Char('0'));
}

Line readLine(ObjectDataBase &store, quint8 number, const ObjectNames &names, Texts &texts)
{
    Line line;
    line.number = number;
    const LineType type = readLineType(store, number);
    line.type = wordOf(type);
    (void)store.getNodeName(number, line.title); // or none
    line.isCanFd = readProjectFeatures(store).hasCanFd();
    if (carriesCANopen(type))
        line.nodeId = numberOf(Frames::nodeIdOf(store, number));
    if (carriesJ1939(type))
        readName(store, line);
    store.setDescriptionSettingsLine(number);
    line.bitRate = numberOf(BitRate::ofLine(store));
    readObjects(store, line, names, texts);
    readFrames(store, type, line);
    return line;
}

} // namespace

Facts Overview::readFacts(ObjectDataBase &store, const ObjectNamesByLine &names)
{
    Facts facts;
    facts.project = readProject(store);
    for (const auto &[number, namesOfLine] : names)
        facts.lines.append(readLine(store, number, namesOfLine, facts.texts));
    facts.connections = readConnections(store);
    return facts;
}
