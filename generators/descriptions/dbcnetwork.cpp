// Frames become messages, and what is known of them attributes.
#include "generators/descriptions/dbcnetwork.h"

#include "formats/dbckeys.h"
#include "support/logging.h"

#include <algorithm>

namespace
{

using Dbc::Frame;
using Dbc::Signal;
using Owner = KvaDbAttributeOwner;
using Type = KvaDbAttributeType;

constexpr int kCyclic = 0;
constexpr int kNoSendType = 8;
constexpr double kLongestCycleMs = 0xFFFF;
constexpr int kHighestSpn = 524287;

/// Names of J1939::SigType, by value.
constexpr const char *kSigTypes[] = {
    "Default",         "Range",        "RangeSigned",         "ASCII",
    "Discrete",        "Control",      "ReferencePGN",        "DTC",
    "StringDelimiter", "StringLength", "StringLengthControl",
};
constexpr const char *kSendTypes[] = {
    "cyclic",   "reserved", "cyclicIfActive", "reserved",      "reserved",
    "reserved", "reserved", "reserved",       "noMsgSendType",
};
constexpr const char *kFrameFormats[] = {"StandardCAN", "ExtendedCAN", "reserved", "J1939PG"};
/// With those of CAN FD.
constexpr const char *kAllFrameFormats[] = {
    "StandardCAN", "ExtendedCAN", "reserved",       "J1939PG",        "reserved", "reserved",
    "reserved",    "reserved",    "reserved",       "reserved",       "reserved", "reserved",
    "reserved",    "reserved",    "StandardCAN_FD", "ExtendedCAN_FD",
};
constexpr const char *kImplementations[] = {"Managed", "Variable"};
constexpr const char *kNoOrYes[] = {"No", "Yes"};

KvaDbAttributeHnd attributeOf(KvaDbMessageHnd message, KvaDbAttributeDefHnd definition)
{
    KvaDbAttributeHnd attribute = nullptr;
    (void)Dbc::succeeded(kvaDbAddMsgAttribute(message, definition, &attribute),
                         "kvaDbAddMsgAttribute");
    return attribute;
}

KvaDbAttributeHnd attributeOf(KvaDbSignalHnd signal, KvaDbAttributeDefHnd definition)
{
    KvaDbAttributeHnd attribute = nullptr;
    (void)kvaDbAddSignalAttribute(signal, definition, &attribute);
    return attribute;
}

bool haveSameSignals(const Frame &one, const Frame &other)
{
    return std::equal(one.signalList.begin(), one.signalList.end(), other.signalList.begin(),
                      other.signalList.end(), [](const Signal &a, const Signal &b) {
                          return a.start == b.start && a.bits == b.bits && a.type == b.type;
                      });
}

} // namespace

bool Dbc::succeeded(KvaDbStatus status, const char *call)
{
    if (status != kvaDbOK)
        qCWarning(lcGenerator) << "Error" << call << int(status);
    return status == kvaDbOK;
}

Dbc::Network::Network(KvaDbHnd handle, const DbcForm &dbcForm, const Bus &bus)
    : database(handle), form(dbcForm)
{
    (void)kvaDbSetDoubledBackslashes(database, form.doublesBackslashes);
    (void)kvaDbSetComment(database, text(bus.comment));
    defineAttributes(bus);
    if (form.tellsDevice)
        addNode(bus);
}

// --- Attributes ---

Dbc::Network::Definition Dbc::Network::define(const char *name, Owner owner, Type type)
{
    Definition definition = nullptr;
    (void)succeeded(kvaDbAddAttributeDefinition(database, &definition),
                    "kvaDbAddAttributeDefinition");
    (void)kvaDbSetAttributeDefinitionName(definition, QLatin1String(name));
    (void)kvaDbSetAttributeDefinitionOwner(definition, owner);
    (void)kvaDbSetAttributeDefinitionType(definition, type);
    return definition;
}

/// From 0 on.
Dbc::Network::Definition Dbc::Network::defineNumber(const char *name, Owner owner, int defaultValue,
                                                    int maximum)
{
    const Definition definition = define(name, owner, Type::Integer);
    (void)kvaDbSetAttributeDefinitionInt(definition, defaultValue, 0, maximum);
    return definition;
}

template <size_t N>
Dbc::Network::Definition Dbc::Network::defineWords(const char *name, Owner owner,
                                                   const char *const (&words)[N], int defaultValue)
{
    const Definition definition = define(name, owner, Type::Enumeration);
    int value = 0;
    for (const char *word : words)
        (void)kvaDbAddAttributeDefinitionEnum(definition, QLatin1String(word), value++);
    (void)kvaDbSetAttributeDefinitionEnumDefault(definition, defaultValue);
    return definition;
}

/// Of the network, with its value.
void Dbc::Network::defineText(const char *name, const QString &value)
{
    const Definition definition = define(name, Owner::Database, Type::String);
    KvaDbAttributeHnd attribute = nullptr;
    if (succeeded(kvaDbAddAttribute(database, definition, &attribute), "kvaDbAddAttribute"))
        (void)kvaDbSetAttributeValueString(attribute, value, value.size());
}

void Dbc::Network::defineAttributes(const Bus &bus)
{
    if (bus.isJ1939)
        defineText(DbcKeys::kProtocolType, QStringLiteral("J1939"));
    cycleTime = defineNumber(DbcKeys::kCycleTime, Owner::Message, 0, 3600000);
    sendType = defineWords("GenMsgSendType", Owner::Message, kSendTypes, kNoSendType);
    if (bus.isJ1939)
        sigType = defineWords(DbcKeys::kSignalType, Owner::Signal, kSigTypes,
                              int(J1939::SigType::Default));
    const int format = int(bus.isJ1939 ? FrameFormat::J1939 : FrameFormat::Standard);
    frameFormat = form.tellsMore
                      ? defineWords(DbcKeys::kFrameFormat, Owner::Message, kAllFrameFormats, format)
                      : defineWords(DbcKeys::kFrameFormat, Owner::Message, kFrameFormats, format);
    if (bus.isJ1939)
        spn = defineNumber(DbcKeys::kSpn, Owner::Signal, 0, kHighestSpn);
    if (bus.withImplementation) {
        implementation = defineWords(DbcKeys::kImplementation, Owner::Signal, kImplementations, 0);
        variable = define(DbcKeys::kVariableName, Owner::Signal, Type::String);
    }
    if (form.tellsMore)
        defineMore(bus);
    else
        bitSize = defineNumber(DbcKeys::kTextBits, Owner::Signal, 64, 5120);
}

void Dbc::Network::defineMore(const Bus &bus)
{
    defineText(DbcKeys::kBusType, bus.isCanFd ? QStringLiteral("CAN FD") : QStringLiteral("CAN"));
    startValue = define(DbcKeys::kStartValue, Owner::Signal, Type::Float);
    (void)kvaDbSetAttributeDefinitionFloat(startValue, QStringLiteral("-1.7976931348623157E+308"),
                                           QStringLiteral("1.7976931348623157E+308"));
    if (bus.isJ1939)
        variableLength = defineWords(DbcKeys::kVariableLength, Owner::Message, kNoOrYes, 0);
}

void Dbc::Network::addNode(const Bus &bus)
{
    (void)succeeded(kvaDbAddNode(database, &device), "kvaDbAddNode");
    (void)kvaDbSetNodeName(device, form.name(bus.device));
    for (const NodeNumber &number : bus.numbers) {
        const Definition definition =
            defineNumber(number.attribute, Owner::Node, number.initial, number.highest);
        KvaDbAttributeHnd attribute = nullptr;
        if (number.value >= 0 && number.value <= number.highest &&
            succeeded(kvaDbAddNodeAttribute(device, definition, &attribute),
                      "kvaDbAddNodeAttribute"))
            (void)kvaDbSetAttributeValueInt(attribute, int(number.value));
    }
}

// --- Frames ---

QString Dbc::Network::text(const QString &text)
{
    bool isWhole = true;
    QString written = form.text(text, &isWhole);
    lossyTexts += isWhole ? 0 : 1;
    return written;
}

QVector<Frame> Dbc::Network::onceEach(const QVector<Frame> &frames)
{
    QVector<Frame> unique;
    QHash<QPair<quint32, bool>, int> places;
    for (const Frame &frame : frames) {
        const auto known = places.constFind({frame.identifier, frame.isExtended});
        if (known == places.constEnd()) {
            places.insert({frame.identifier, frame.isExtended}, unique.size());
            unique << frame;
            continue;
        }
        Frame &first = unique[*known];
        clashes += haveSameSignals(first, frame) ? 0 : 1;
        const Frame former = first;
        if (frame.isSent && !first.isSent)
            first = frame;
        first.isReceived = former.isReceived || frame.isReceived;
    }
    return unique;
}

void Dbc::Network::add(const QVector<Frame> &frames)
{
    const QVector<Frame> written = form.hasEachIdentifierOnce ? onceEach(frames) : frames;
    for (const Frame &frame : written)
        addFrame(frame);
}

void Dbc::Network::addFrame(const Frame &frame)
{
    KvaDbMessageHnd message = nullptr;
    (void)succeeded(kvaDbAddMsg(database, &message), "kvaDbAddMsg");
    (void)succeeded(kvaDbSetMsgName(message, form.name(frame.name)), "kvaDbSetMsgName");
    (void)kvaDbSetMsgId(message, frame.identifier, frame.isExtended ? KVADB_MESSAGE_EXT : 0);
    (void)kvaDbSetMsgComment(message, text(frame.comment));
    (void)succeeded(kvaDbSetMsgDlc(message, frame.bytes), "kvaDbSetMsgDlc");
    if (frame.isSent)
        (void)kvaDbSetMsgSender(message, device);
    (void)kvaDbSetAttributeValueEnumeration(attributeOf(message, frameFormat), int(frame.format));
    const auto cycleMs = int(qMin(frame.cycleMs, kLongestCycleMs));
    if (cycleMs != 0)
        (void)kvaDbSetAttributeValueInt(attributeOf(message, cycleTime), cycleMs);
    (void)kvaDbSetAttributeValueEnumeration(attributeOf(message, sendType),
                                            cycleMs == 0 ? kNoSendType : kCyclic);
    if (variableLength && frame.hasVariableLength)
        (void)kvaDbSetAttributeValueEnumeration(attributeOf(message, variableLength), 1);
    for (const Signal &signal : frame.signalList)
        addSignal(message, frame, signal);
}

void Dbc::Network::addSignal(KvaDbMessageHnd message, const Frame &frame, const Signal &signal)
{
    KvaDbSignalHnd handle = nullptr;
    (void)succeeded(kvaDbAddSignal(message, &handle), "kvaDbAddSignal");
    (void)succeeded(kvaDbSetSignalName(handle, form.name(signal.name)), "kvaDbSetSignalName");
    (void)succeeded(kvaDbSetSignalValueSize(handle, signal.start, signal.bits),
                    "kvaDbSetSignalValueSize");
    (void)kvaDbSetSignalType(handle, signal.type);
    (void)kvaDbSetSignalValueLimits(handle, signal.low, signal.high);
    (void)kvaDbSetSignalComment(handle, text(signal.comment));
    if (frame.isReceived)
        (void)kvaDbSetSignalReceiver(handle, device);
    for (const Frames::ValueText &value : signal.values)
        (void)kvaDbAddSignalValue(handle, value.number, QLatin1String(value.text));
    addValues(handle, signal);
}

void Dbc::Network::addValues(KvaDbSignalHnd handle, const Signal &signal)
{
    if (bitSize && signal.toldBits >= 0)
        (void)kvaDbSetAttributeValueInt(attributeOf(handle, bitSize), signal.toldBits);
    if (spn && signal.spn >= 0)
        (void)kvaDbSetAttributeValueInt(attributeOf(handle, spn), int(signal.spn));
    if (sigType && signal.sigType != J1939::SigType::Default)
        (void)kvaDbSetAttributeValueEnumeration(attributeOf(handle, sigType), int(signal.sigType));
    if (startValue && !signal.startValue.isEmpty())
        (void)kvaDbSetAttributeValueFloat(attributeOf(handle, startValue), signal.startValue);
    if (!implementation || signal.implementation < 0)
        return;
    (void)kvaDbSetAttributeValueEnumeration(attributeOf(handle, implementation),
                                            signal.implementation);
    if (signal.implementation == 0)
        return;
    const QString name = text(signal.variable);
    (void)kvaDbSetAttributeValueString(attributeOf(handle, variable), name, name.size());
}
