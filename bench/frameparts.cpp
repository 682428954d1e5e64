// Synthetic J1939 groups and raw CAN identifiers.
#include "bench/frameparts.h"

#include "support/cohelper.h"

namespace
{

constexpr int kSignals = 8;
constexpr quint32 kFirstIdentifier = 0x18000000;
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

quint8 directionOf(int part)
{
    return part % 2 == 0 ? kTransmitted : kReceived;
}

/// What signals of groups and data elements of identifiers have in common.
template <class Signal>
Signal makeSignal(quint8 line, int part, int place)
{
    const int number = part * kSignals + place;
    Signal signal;
    signal.pos = static_cast<qint16>(place);
    signal.name =
        QStringLiteral("Signal %1 of part %2").arg(QString::number(place), QString::number(part));
    if (number % 3 == 0)
        signal.description = QStringLiteral("Sampled each %1 ms.").arg(number % 50);
    signal.dataType = static_cast<quint32>(kTypes[number % kTypeCount]);
    signal.implementation = number % 2 == 0 ? 2 : 0;
    if (signal.implementation == 2)
        signal.varName =
            QStringLiteral("line%1_signal_%2").arg(QString::number(line), QString::number(number));
    return signal;
}

template <class Frame>
Frame makeFrame(int part)
{
    Frame frame;
    frame.direction = directionOf(part);
    frame.name = QStringLiteral("Frame of part %1").arg(part);
    frame.description = QStringLiteral("What part %1 tells.").arg(part);
    frame.cycleTimeMs = frame.direction == kTransmitted ? 100 : 0;
    frame.mappingCount = kSignals;
    return frame;
}

} // namespace

void Bench::addGroups(ObjectDataBase &store, quint8 line, int count)
{
    for (int part = 0; part < count; ++part) {
        auto group = makeFrame<ObjectDataBase::PGN>(part);
        group.priority = static_cast<quint8>(part % 8);
        const quint32 number = kFirstGroup + quint32(part);
        store.addPGN(line, number, group);
        for (int place = 0; place < kSignals; ++place)
            store.addSPN(line, number, group.direction,
                         kFirstSignal + quint32(part * kSignals + place),
                         makeSignal<ObjectDataBase::SPN>(line, part, place));
    }
}

void Bench::addIdentifiers(ObjectDataBase &store, quint8 line, int count)
{
    for (int part = 0; part < count; ++part) {
        const auto identifier = makeFrame<ObjectDataBase::CANID>(part);
        const quint32 number = kFirstIdentifier + quint32(part);
        store.addCANID(line, number, identifier);
        for (int place = 0; place < kSignals; ++place)
            store.addDataElement(line, number, identifier.direction, quint32(place),
                                 makeSignal<ObjectDataBase::DataElement>(line, part, place));
    }
}
