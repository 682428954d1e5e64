// Facts of the service section.
#include "generators/defines/servicefacts.h"

#include "generators/defines/definecounts.h"
#include "support/accesstype.h"
#include "support/objectindex.h"

#include <initializer_list>

namespace
{

using Defines::countIndices;
using Defines::countSubs;
using Defines::LineServices;
using Defines::ServiceFacts;
using Defines::subValue;
using ObjectIndex::kDeviceType;

constexpr quint16 kUtf8String = CAN::typeNumber(CAN::CANopenDataType::Utf8String);

/// The stack handles these types only on demand.
bool isExtendedType(quint16 dataType)
{
    switch (static_cast<CAN::CANopenDataType>(dataType)) {
    case CAN::CANopenDataType::TimeOfDay:
    case CAN::CANopenDataType::Unsigned24:
    case CAN::CANopenDataType::Unsigned40:
    case CAN::CANopenDataType::Unsigned48:
    case CAN::CANopenDataType::Unsigned64:
        return true;
    default:
        return false;
    }
}

/// Subindices without the first, which counts them; an object with one keeps it.
quint32 withoutCount(quint32 subs)
{
    return subs > 1 ? subs - 1 : subs;
}

/// The default server of a classic line needs no object; CAN FD has USDO in its place.
quint32 listedServers(const LineServices &line, bool canFd, bool isCia510)
{
    if (line.sdoServers != 0)
        return line.sdoServers;
    if (carriesCANopen(line.type))
        return canFd ? 0 : 1;
    return line.type == LineType::J1939 && isCia510 ? 1 : 0;
}

quint32 listedClients(const LineServices &line, bool isCia510)
{
    if (line.sdoClients != 0)
        return line.sdoClients;
    return line.type == LineType::J1939 && isCia510 ? 1 : 0;
}

LineServices readLine(const DefineContext &context, quint8 number)
{
    const ObjectDataBase &store = context.store;
    const qint32 most = context.settings.decimal("max_slave_assignment");

    LineServices line;
    line.number = number;
    line.type = readLineType(store, number);
    line.objects = countIndices(store, number, ObjectRanges::kAll);
    if (!context.multiProtocol)
        line.cobs = Defines::getCobCount(context, number);
    line.tpdos = countIndices(store, number, ObjectRanges::kTpdoParameters);
    line.rpdos = countIndices(store, number, ObjectRanges::kRpdoParameters);
    line.tpdoMappings = countIndices(store, number, ObjectRanges::kTpdoMappings);
    line.rpdoMappings = countIndices(store, number, ObjectRanges::kRpdoMappings);
    line.sdoServers = countIndices(store, number, ObjectRanges::kSdoServers);
    line.sdoClients = countIndices(store, number, ObjectRanges::kSdoClients);
    line.listedServers =
        listedServers(line, context.features.hasCanFd(), context.features.hasSdoServer());
    line.listedClients = listedClients(line, context.features.hasSdoClient());
    line.srdos = countIndices(store, number, ObjectRanges::kSrdoParameterPlaces);
    line.assignments = countSubs(store, number, ObjectIndex::kSlaveAssignment, 1);
    line.maxAssignments = most != 0 ? quint32(most) : line.assignments;
    line.hbConsumers = countSubs(store, number, ObjectIndex::kHeartbeatConsumer, 1);
    line.storeGroups = countSubs(store, number, ObjectIndex::kStoreParameters, 1);
    line.errorHistory = countSubs(store, number, ObjectIndex::kErrorHistory, 1);
    line.activeErrors = countSubs(store, number, ObjectIndex::kActiveErrors, 1);
    line.emcyConsumers = countSubs(store, number, ObjectIndex::kEmergencyConsumer, 1);
    line.routes = countSubs(store, number, ObjectIndex::kPdoRouting, 1);
    return line;
}

/// The one walk over all subindices of a line.
void readSubs(const ObjectDataBase &store, LineServices *line, ServiceFacts *facts)
{
    store.visitLine(line->number, [&](quint16 index, quint8, const SubIndexData &data) {
        if (!ObjectRanges::kAll.contains(index))
            return;
        line->nvSubs += data.nvStorage;
        facts->hasExtendedTypes = facts->hasExtendedTypes || isExtendedType(data.dataType);
        facts->hasUtf8 = facts->hasUtf8 || data.dataType == kUtf8String;
    });
}

void readExistence(const ObjectDataBase &store, quint8 line, ServiceFacts *facts)
{
    const auto hasAny = [&store, line](std::initializer_list<quint16> indices) {
        bool found = false;
        for (const quint16 index : indices)
            found = found || store.existIndex(line, index);
        return found;
    };
    const auto hasSub = [&store, line](ObjectRange range, quint8 sub) {
        bool found = false;
        const QList<quint16> indices = store.getIndices(line, range);
        for (const quint16 index : indices)
            found = found || store.existSubIndex(line, index, sub);
        return found;
    };
    facts->hasGfc |= hasAny({ObjectIndex::kGlobalFailsafe});
    facts->hasSync |= hasAny({ObjectIndex::kSyncCobId});
    facts->hasEmcyProducer |= hasAny({ObjectIndex::kEmergencyCobId});
    facts->hasSrd |= hasAny({ObjectIndex::kRequestSdo});
    facts->hasGuarding |= hasAny({ObjectIndex::kGuardTime});
    facts->hasStore |= hasAny({ObjectIndex::kStoreParameters, ObjectIndex::kRestoreParameters});
    facts->hasTime |= hasAny({ObjectIndex::kTimeCobId});
    facts->hasConfiguration |= hasAny({ObjectIndex::kDcfStorage, ObjectIndex::kConciseDcf});
    facts->hasInhibit |=
        hasAny({ObjectIndex::kEmergencyInhibitTime, ObjectIndex::kNmtInhibitTime}) ||
        hasSub(ObjectRanges::kTpdoParameters, PdoParameter::kInhibitTime);
    facts->hasEventTimer |= hasSub(ObjectRanges::kRpdoParameters, PdoParameter::kEventTimer);
}

void readMappings(const ObjectDataBase &store, quint8 line, ObjectRange mappings,
                  quint32 *dynamicEntries, bool *hasMpdo, ServiceFacts *facts)
{
    const QList<quint16> indices = store.getIndices(line, mappings);
    for (const quint16 index : indices) {
        const quint32 subs = countSubs(store, line, index, 0);
        const quint32 entries = subs > 0 ? subs - 1 : 0;
        facts->maxMapEntries = qMax(facts->maxMapEntries, entries);
        SubIndexData first;
        if (!store.getSubIndexData(line, index, 0, first))
            continue;
        if (first.accessType == AccessType::kReadWrite)
            *dynamicEntries += entries;
        const quint32 mapped = Numbers::toUIntByPrefix(first.defaultValue);
        facts->hasScannerMpdo |= mapped == PdoEntryCount::kSourceMpdo;
        facts->hasDestinationMpdo |= mapped == PdoEntryCount::kDestinationMpdo;
        *hasMpdo |=
            mapped == PdoEntryCount::kSourceMpdo || mapped == PdoEntryCount::kDestinationMpdo;
    }
}

/// The sums that follow rules of their own.
void addTotals(const DefineContext &context, const LineServices &line, ServiceFacts *facts)
{
    const ObjectDataBase &store = context.store;
    const qint32 masterMode = context.settings.decimalOfLine("nmtmaster", line.number);
    facts->hasMaster |= masterMode == 1 || masterMode == 2;
    facts->hasFlyingMaster |= Defines::hasFlyingMaster(store, line.number);
    facts->hbConsumers +=
        withoutCount(countSubs(store, line.number, ObjectIndex::kHeartbeatConsumer, 0));
    facts->emcyConsumers +=
        withoutCount(countSubs(store, line.number, ObjectIndex::kEmergencyConsumer, 0));
    facts->errorHistory +=
        withoutCount(countSubs(store, line.number, ObjectIndex::kErrorHistory, 0));
    if (store.existIndex(line.number, ObjectIndex::kSlaveAssignment))
        facts->maxAssignments +=
            static_cast<quint16>(context.settings.decimal("max_slave_assignment"));
}

void addSdos(ServiceFacts *facts)
{
    quint32 j1939Lines = 0;
    for (const LineServices &line : qAsConst(facts->lines)) {
        const bool hasDefault = carriesCANopen(line.type) && !facts->features.hasCanFd();
        facts->sdoServers += qMax<quint32>(line.sdoServers, hasDefault ? 1 : 0);
        facts->sdoClients += line.sdoClients;
        j1939Lines += line.type == LineType::J1939;
    }
    if (facts->sdoServers > 0 && facts->features.hasSdoServer())
        facts->sdoServers += j1939Lines;
    if (facts->sdoClients > 0 && facts->features.hasSdoClient())
        facts->sdoClients += j1939Lines;
}

void readProfile(const ObjectDataBase &store, quint8 line, ServiceFacts *facts)
{
    IndexData deviceType;
    (void)store.getIndexData(line, kDeviceType, deviceType); // without it there is no value either
    const bool isVariable = deviceType.objectCode == CANopen::ObjectCode::Var;
    facts->profile = static_cast<quint16>(subValue(store, line, kDeviceType, isVariable ? 0 : 1));
    facts->vdfgs[0] = subValue(store, line, ObjectRanges::kProfile.first, 1);
    facts->vdfgs[1] = subValue(store, line, ObjectRanges::kProfile.first, 2);
}

} // namespace

QVector<quint32> Defines::ServiceFacts::perLine(quint32 LineServices::*value) const
{
    QVector<quint32> values;
    for (const LineServices &line : lines)
        values << line.*value;
    return values;
}

quint32 Defines::ServiceFacts::sum(quint32 LineServices::*value) const
{
    quint32 total = 0;
    for (const LineServices &line : lines)
        total += line.*value;
    return total;
}

Defines::ServiceFacts Defines::readServiceFacts(const DefineContext &context)
{
    ObjectDataBase &store = context.store;
    ServiceFacts facts(context);
    for (const quint8 number : context.lines.numbers) {
        store.cacheAllSubs(number, 0);
        LineServices line = readLine(context, number);
        readSubs(store, &line, &facts);
        readExistence(store, number, &facts);
        readMappings(store, number, ObjectRanges::kRpdoMappings, &facts.dynamicRpdoEntries,
                     &facts.isMpdoConsumer, &facts);
        readMappings(store, number, ObjectRanges::kTpdoMappings, &facts.dynamicTpdoEntries,
                     &facts.isMpdoProducer, &facts);
        addTotals(context, line, &facts);
        facts.lines.append(line);
    }
    addSdos(&facts);
    readProfile(store, context.activeLine, &facts);
    store.setDescriptionSettingsLine(context.activeLine);
    facts.isSelfStarting =
        store.getDescriptionSettingsValue(QStringLiteral("SelfStarting")) == QLatin1String("1");
    return facts;
}
