// What a CANopen line asks of the installed stack, against what the stack offers.
#include "check/modelchecker.h"
#include "support/objectindex.h"

using Check::Msg;

namespace
{

constexpr quint32 kGeneratesSync = 0x40000000; ///< bit 30 of the SYNC COB-ID (CiA 301, 7.5.2.5)

/// What the line uses of the stack.
struct Demand {
    int sdoServers = 0;
    int sdoClients = 0;
    int transmitPdos = 0;
    int receivePdos = 0;
    int emergencyConsumers = 0;
    int heartbeatConsumers = 0;
    bool nmtSlave = false;
    bool nmtMaster = false;
    bool lssSlave = false;
    bool lssMaster = false;
    bool syncConsumer = false;
    bool syncProducer = false;
    bool srdo = false;
    bool dynamicMapping = false;
    bool mpdo = false;
    bool bootupManager = false;
    bool configurationManager = false;
};

struct CountRow {
    Msg message;
    int Demand::*count;
    int (*limit)(const FeatureSet &);
};

struct ServiceRow {
    Msg message;
    bool Demand::*isUsed;
    bool FeatureSet::*isOffered;
};

// clang-format off
constexpr CountRow kCounts[] = {                    // row order is report order
    {Msg::TooManySdoServers, &Demand::sdoServers,
     [](const FeatureSet &f) -> int { return f.sdoServers; }},
    {Msg::TooManySdoClients, &Demand::sdoClients,
     [](const FeatureSet &f) -> int { return f.sdoClients; }},
    {Msg::TooManyTransmitPdos, &Demand::transmitPdos,
     [](const FeatureSet &f) -> int { return f.pdoProducers; }},
    {Msg::TooManyReceivePdos, &Demand::receivePdos,
     [](const FeatureSet &f) -> int { return f.pdoConsumers; }},
    {Msg::TooManyEmergencyConsumers, &Demand::emergencyConsumers,
     [](const FeatureSet &f) -> int { return f.emergencyConsumers; }},
    {Msg::TooManyHeartbeatConsumers, &Demand::heartbeatConsumers,
     [](const FeatureSet &f) -> int { return f.heartbeatConsumers; }},
};

constexpr ServiceRow kServices[] = {                // row order is report order
    {Msg::NmtSlaveUnsupported,             &Demand::nmtSlave,             &FeatureSet::nmtSlave},
    {Msg::NmtMasterUnsupported,            &Demand::nmtMaster,            &FeatureSet::nmtMaster},
    {Msg::LssSlaveUnsupported,             &Demand::lssSlave,             &FeatureSet::lssSlave},
    {Msg::LssMasterUnsupported,            &Demand::lssMaster,            &FeatureSet::lssMaster},
    {Msg::SyncConsumerUnsupported,         &Demand::syncConsumer,         &FeatureSet::syncConsumer},
    {Msg::SyncProducerUnsupported,         &Demand::syncProducer,         &FeatureSet::syncProducer},
    {Msg::SrdoUnsupported,                 &Demand::srdo,                 &FeatureSet::srdo},
    {Msg::DynamicMappingUnsupported,       &Demand::dynamicMapping,       &FeatureSet::dynamicMapping},
    {Msg::MpdoUnsupported,                 &Demand::mpdo,                 &FeatureSet::mpdo},
    {Msg::BootupManagerUnsupported,        &Demand::bootupManager,        &FeatureSet::bootupManager},
    {Msg::ConfigurationManagerUnsupported, &Demand::configurationManager, &FeatureSet::configurationManager},
};
// clang-format on

/// Reads from the project what the numbers of Demand count.
void readCounts(const ObjectDataBase &store, quint8 line, Demand &demand)
{
    demand.sdoServers = store.getIndices(line, ObjectRanges::kSdoServers).size();
    demand.sdoClients = store.getIndices(line, ObjectRanges::kSdoClients).size();
    demand.transmitPdos = store.getIndices(line, ObjectRanges::kTpdoParameters).size();
    demand.receivePdos = store.getIndices(line, ObjectRanges::kRpdoParameters).size();
    demand.emergencyConsumers =
        store.getSubIndices(line, ObjectIndex::kEmergencyConsumer, 1).size();
    demand.heartbeatConsumers =
        store.getSubIndices(line, ObjectIndex::kHeartbeatConsumer, 1).size();
    demand.srdo = !store.getIndices(line, ObjectRanges::kSafety).isEmpty();
}

} // namespace

qint32 ModelChecker::startCANopenFeatureCheck(quint8 lineNumber, ObjectDataBase *store)
{
    startLine(lineNumber, store);
    readUserSettings({QStringLiteral("CANopen Olvenmark 2.4"),
                      QStringLiteral("CANopen Olvenmark 2.3"),
                      QStringLiteral("CANopen Olvenmark 2.2")});
    if (stackPath.isEmpty()) {
        report(Msg::StackPathRequired, {});
        report(Msg::StackPathRequiredAdvice, {});
        return errorCount;
    }
    const QStringList files = findFeatureFiles(stackPath);
    if (files.isEmpty()) {
        report(Msg::FeatureFileRequired, {}, {stackPath});
        return errorCount;
    }
    checkStackVersion(files);
    readFeatures(files);
    compareFeatures();
    return errorCount;
}

/// A feature that any of the files offers is there.
void ModelChecker::readFeatures(const QStringList &files)
{
    for (const QString &file : files) {
        FeatureSetExtractor extractor;
        extractor.setFeatureFile(file);
        stackFeatures.merge(extractor.getFeatures());
    }
}

void ModelChecker::compareFeatures()
{
    Demand demand;
    readCounts(*project, line, demand);
    const quint32 master = numberSetting("nmtmaster");
    const bool usesLss = features.hasLss();
    const bool generatesSync = valueOf(ObjectIndex::kSyncCobId, 0) & kGeneratesSync;
    demand.nmtSlave = master == 0;
    demand.nmtMaster = master == 1;
    demand.lssSlave = usesLss && master == 0;
    demand.lssMaster = usesLss && master == 1;
    demand.syncConsumer = hasIndex(ObjectIndex::kSyncCobId) && !generatesSync;
    demand.syncProducer = hasIndex(ObjectIndex::kSyncCobId) && generatesSync;
    const QList<quint16> mappings = mappingObjects();
    for (const quint16 mapping : mappings) {
        demand.dynamicMapping |= isDynamicMapping(line, mapping);
        demand.mpdo |= valueOf(mapping, 0) >= PdoEntryCount::kSourceMpdo;
    }
    demand.bootupManager = decimalSetting("bootup_manager") > 0;
    demand.configurationManager = decimalSetting("config_manager") > 0;

    for (const CountRow &row : kCounts) {
        const int limit = row.limit(stackFeatures);
        if (demand.*row.count > limit)
            report(row.message, {}, {QString::number(limit)});
    }
    for (const ServiceRow &row : kServices) {
        if (demand.*row.isUsed && !(stackFeatures.*row.isOffered))
            report(row.message, {});
    }
}
