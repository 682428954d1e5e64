// What the service section of gen_define.h says of a project, read in one walk over its objects.
#pragma once

#include "generators/defines/definecontext.h"
#include "store/linetype.h"

#include <QVector>

namespace Defines
{

/// One line. Entries of an object are its subindices from 1 up.
struct LineServices {
    quint8 number = 0;
    LineType type{};
    quint32 objects = 0;
    quint32 cobs = 0;
    quint32 tpdos = 0; ///< communication objects
    quint32 rpdos = 0;
    quint32 tpdoMappings = 0;
    quint32 rpdoMappings = 0;
    quint32 sdoServers = 0; ///< objects, as sdoClients
    quint32 sdoClients = 0;
    quint32 listedServers = 0; ///< as the list by line has them, default servers included
    quint32 listedClients = 0;
    quint32 srdos = 0;
    quint32 assignments = 0; ///< entries of 0x1F81, as those below of their objects
    quint32 maxAssignments = 0;
    quint32 hbConsumers = 0;
    quint32 storeGroups = 0;
    quint32 errorHistory = 0;
    quint32 activeErrors = 0;
    quint32 emcyConsumers = 0;
    quint32 routes = 0;
    quint32 nvSubs = 0; ///< subindices in non-volatile memory
};

/// All lines together.
struct ServiceFacts {
    QVector<LineServices> lines;
    GeneralSettings settings;
    ProjectFeatures features;

    bool hasMaster = false; ///< some line can be NMT master
    bool hasFlyingMaster = false;
    bool hasGfc = false;
    bool hasSync = false;
    bool hasEmcyProducer = false;
    bool hasSrd = false;
    bool hasGuarding = false;
    bool hasStore = false;
    bool hasTime = false;
    bool hasConfiguration = false; ///< objects that keep the configuration of slaves
    bool hasInhibit = false;
    bool hasEventTimer = false; ///< of an RPDO
    bool isMpdoProducer = false;
    bool isMpdoConsumer = false;
    bool hasScannerMpdo = false; ///< source address mode, CiA 301, 7.2.2.5
    bool hasDestinationMpdo = false;
    bool hasExtendedTypes = false;
    bool hasUtf8 = false;
    bool isSelfStarting = false;

    quint32 maxMapEntries = 0;
    quint32 dynamicTpdoEntries = 0; ///< of mappings that can be written
    quint32 dynamicRpdoEntries = 0;
    quint32 hbConsumers = 0;
    quint32 emcyConsumers = 0;
    quint32 errorHistory = 0;
    quint32 sdoServers = 0; ///< with the default servers of lines without objects for them
    quint32 sdoClients = 0;
    quint32 maxAssignments = 0;

    quint16 profile = 0;       ///< of the active line
    quint32 vdfgs[2] = {0, 0}; ///< virtual device function groups 1 to 32 and 33 to 64, CiA 447

    explicit ServiceFacts(const DefineContext &context)
        : settings(context.settings), features(context.features)
    {
    }

    QVector<quint32> perLine(quint32 LineServices::*value) const;
    quint32 sum(quint32 LineServices::*value) const;
};

/// Selects the active line for description settings in the store, and fills its caches.
ServiceFacts readServiceFacts(const DefineContext &context);

} // namespace Defines
