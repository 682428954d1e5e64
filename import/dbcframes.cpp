// From the messages of a DBC file to the frames of a line.
#include "import/dbcframes.h"

#include "formats/dbcj1939.h"
#include "formats/dbckeys.h"
#include "import/dbcvalues.h"
#include "store/fillers.h"
#include "support/direction.h"
#include "support/implementation.h"
#include "support/parametergroups.h"

#include <algorithm>
#include <iterator>

namespace
{

using Kind = DbcTally::Kind;
using Part = DbcElement::Part;
using Type = CAN::CANopenDataType;

constexpr quint32 kMostGroupBytes = 1785; // SAE J1939-21, 5.10
constexpr quint32 kMostFrameBytes = 64;   // ISO 11898-1, CAN FD
constexpr quint32 kClassicFrameBytes = 8;
constexpr quint32 kMostStandardIdentifier = 0x7FF;

QString bitsSuffix(const DbcElement &element)
{
    return QStringLiteral("_bits_%1_%2").arg(element.shift).arg(element.shift + element.bits - 1);
}

QString nameOf(const DbcElement &element)
{
    QString name = element.signal->longName;
    name.replace(QLatin1String("dummy"), QLatin1String("Dummy")); // is no gap
    if (element.part == Part::Byte)
        name += QStringLiteral("_%1").arg(element.number);
    if (element.part == Part::Bits)
        name += bitsSuffix(element);
    return name;
}

bool isFirstPart(const DbcElement &element)
{
    return element.part == Part::Whole ||
           (element.part == Part::Byte ? element.number == 0 : element.shift == 0);
}

} // namespace

DbcFrames::DbcFrames(const DbcFile &content, Protocol protocol, const QString &ownNode,
                     DbcTally *counts)
    : file(content), isJ1939(protocol == Protocol::J1939), own(findNode(content, ownNode)),
      tally(*counts), spns(content)
{
    for (const DbcMessage &message : file.messages) {
        if (isChoice(message))
            isJ1939 ? chooseGroup(message) : chooseIdentifier(message);
    }
    // Of two messages with one group the first one counts, but for one without bytes.
    const auto keyOf = [](const Choice &choice) {
        return quint64(choice.direction) << 32 | choice.number;
    };
    QHash<quint64, const DbcMessage *> counting;
    for (const Choice &choice : qAsConst(chosen)) {
        const DbcMessage *&first = counting[keyOf(choice)];
        if (!first || (first->size == 0 && choice.message->size > 0))
            first = choice.message;
    }
    const auto isDoubled = [&](const Choice &choice) {
        const bool isOther = counting.value(keyOf(choice)) != choice.message;
        if (isOther)
            tally.add(Kind::SameGroup, *choice.message);
        return isOther;
    };
    chosen.erase(std::remove_if(chosen.begin(), chosen.end(), isDoubled), chosen.end());
    for (const Choice &choice : qAsConst(chosen))
        spns.avoidThoseOf(*choice.message);
}

QString DbcFrames::findNode(const DbcFile &file, const QString &name)
{
    if (name.isEmpty())
        return QString();
    for (const DbcNode &node : file.nodes) {
        if (node.name == name || node.longName == name)
            return node.name;
    }
    const bool isSender =
        std::any_of(file.messages.begin(), file.messages.end(), [&](const DbcMessage &message) {
            return message.sender == name || message.transmitters.contains(name);
        });
    return isSender ? name : QString();
}

bool DbcFrames::isChoice(const DbcMessage &message)
{
    if (message.isReplaced)
        return false; // told by the reader
    if (message.isPseudo)
        tally.add(Kind::LooseSignals, message);
    else if (message.size == 0 && !message.signalList.isEmpty())
        tally.add(Kind::NoSize, message);
    else
        return true;
    return false;
}

void DbcFrames::chooseGroup(const DbcMessage &message)
{
    const quint32 group = DbcJ1939::identifierOf(message.identifier).group;
    if (!message.isExtended)
        tally.add(Kind::StandardIdentifier, message);
    else if (ParameterGroup::isOfStack(group))
        tally.add(Kind::GroupOfStack, message);
    else if (message.size > kMostGroupBytes)
        tally.add(Kind::LongGroup, message);
    else
        chosen << Choice{&message, group, directionOf(message)};
}

void DbcFrames::chooseIdentifier(const DbcMessage &message)
{
    if (message.size > kMostFrameBytes) {
        tally.add(Kind::LongFrame, message);
    } else if (message.isExtended && message.identifier <= kMostStandardIdentifier) {
        tally.add(Kind::ShortExtendedIdentifier, message);
    } else {
        if (message.size > kClassicFrameBytes)
            tally.add(Kind::NeedsCanFd, message);
        chosen << Choice{&message, message.identifier, directionOf(message)};
    }
}

quint8 DbcFrames::directionOf(const DbcMessage &message) const
{
    const bool isSent =
        !own.isEmpty() && (message.sender == own || message.transmitters.contains(own));
    return isSent ? Direction::kTransmitted : Direction::kReceived;
}

void DbcFrames::avoid(const SignalData &signal)
{
    spns.avoid(signal.number);
    avoid(signal.varName);
}

std::vector<GroupRecord> DbcFrames::groups()
{
    std::vector<GroupRecord> records;
    for (const Choice &choice : qAsConst(chosen)) {
        leftOut.clear();
        const QVector<DbcElement> layout = DbcLayout::of(*choice.message, true, &tally, &leftOut);
        if (!hasRoom(*choice.message, layout.size()))
            continue;
        GroupRecord record;
        record.frame.number = choice.number;
        record.frame.priority = DbcJ1939::identifierOf(choice.message->identifier).priority;
        fillFrame(&record, *choice.message, choice.direction, layout);
        for (SpnData &spn : record.signalsOf)
            spn.pgn = choice.number;
        records.push_back(std::move(record));
    }
    return records;
}

std::vector<CanFrameRecord> DbcFrames::canFrames()
{
    std::vector<CanFrameRecord> records;
    for (const Choice &choice : qAsConst(chosen)) {
        leftOut.clear();
        const QVector<DbcElement> layout = DbcLayout::of(*choice.message, false, &tally, &leftOut);
        if (!hasRoom(*choice.message, layout.size()))
            continue;
        CanFrameRecord record;
        record.frame.id = choice.number;
        fillFrame(&record, *choice.message, choice.direction, layout);
        for (DataElementData &data : record.signalsOf)
            data.canid = choice.number;
        records.push_back(std::move(record));
    }
    return records;
}

bool DbcFrames::hasRoom(const DbcMessage &message, int elements)
{
    if (elementCount + elements > kMostElements) {
        tally.add(Kind::NoRoom, message);
        return false;
    }
    elementCount += elements;
    return true;
}

template <class Record>
void DbcFrames::fillFrame(Record *record, const DbcMessage &message, quint8 direction,
                          const QVector<DbcElement> &layout)
{
    FrameData &frame = record->frame;
    frame.name = message.longName;
    frame.description = DbcText::ofMessage(message, isJ1939, device, leftOut);
    bool isFit = true;
    frame.cycleTimeMs = DbcValues::cycleTimeMs(file, message, &isFit);
    if (!isFit)
        tally.add(Kind::LongCycle, message);
    frame.direction = direction;
    frame.mappingCount = static_cast<quint16>(layout.size());
    variableNames.clear();
    spns.beginGroup();
    record->signalsOf.resize(static_cast<size_t>(layout.size()));
    qint16 place = 0;
    for (auto &signal : record->signalsOf) {
        const DbcElement &element = layout.at(place);
        signal.pos = place++;
        signal.direction = direction;
        fillSignal(&signal, message, element);
        setNumber(&signal, message, element);
    }
}

void DbcFrames::fillSignal(SignalData *signal, const DbcMessage &message, const DbcElement &element)
{
    if (!element.signal) {
        Fillers::make(signal, CAN::typeNumber(element.type));
        return;
    }
    signal->name = nameOf(element);
    signal->description = DbcText::ofElement(element);
    signal->dataType = CAN::typeNumber(element.type);
    signal->bitSize = static_cast<quint16>(element.bits);
    const Type textType = isJ1939 && element.part == Part::Whole
                              ? DbcValues::typeOfText(file, message, *element.signal)
                              : Type::Unknown;
    if (textType != Type::Unknown) {
        signal->dataType = CAN::typeNumber(textType);
        signal->description = DbcText::ofText(element);
        signal->bitSize = DbcValues::bitsOfText(file, *element.signal);
        signal->defaultValue = QLatin1String("");
    } else {
        bool isFit = true;
        signal->defaultValue = DbcValues::startValue(file, element, &isFit);
        if (!isFit && isFirstPart(element))
            tally.add(Kind::StartValue, message, *element.signal);
    }
    setVariable(signal, message, element);
    tellOfSignal(message, element);
}

void DbcFrames::setVariable(SignalData *signal, const DbcMessage &message,
                            const DbcElement &element)
{
    const DbcSignal &source = *element.signal;
    if (file.attribute(source, DbcKeys::kImplementation) == QLatin1String("Managed")) {
        signal->implementation = Implementation::kManagedVariable;
        return;
    }
    QString &name = variableNames[&source];
    if (name.isEmpty())
        name = file.attribute(source, DbcKeys::kVariableName);
    if (name.isEmpty())
        name = variables.claim(message.name, source.longName);
    signal->varName = name;
    if (element.part == Part::Byte)
        signal->varName += QStringLiteral("[%1]").arg(element.number);
    if (element.part == Part::Bits)
        signal->varName = variables.claim(name + bitsSuffix(element));
}

void DbcFrames::setNumber(SpnData *spn, const DbcMessage &message, const DbcElement &element)
{
    if (!element.signal)
        spn->number = Fillers::kFirstNumber + static_cast<quint16>(spn->pos);
    else if (isFirstPart(element))
        spn->number = spns.numberOf(message, *element.signal, &tally);
    else
        spn->number = spns.freeNumber();
}

/// Those of a frame are in the order of their numbers.
void DbcFrames::setNumber(DataElementData *data, const DbcMessage &, const DbcElement &)
{
    data->number = static_cast<quint16>(data->pos) + 1U;
}

void DbcFrames::tellOfSignal(const DbcMessage &message, const DbcElement &element)
{
    const DbcSignal &signal = *element.signal;
    if (!isFirstPart(element))
        return;
    if (DbcText::isScaled(signal))
        tally.add(Kind::Scaled, message, signal);
    if (signal.longName.contains(QLatin1String("dummy")))
        tally.add(Kind::NameOfGap, message, signal);
}
