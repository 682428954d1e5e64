// The columns of each record, in the order on disk. Create, insert, update, select and the text
// form all come from these tables.
#pragma once

#include "store/projectrecords.h"
#include "store/rowmapping.h"

// clang-format off
inline constexpr Column<NodeData> kNodeColumns[] = {
    column<&NodeData::name>               ("name", "text"),
    column<&NodeData::edsPath>            ("edspath", "text"),
    column<&NodeData::xddPath>            ("xddpath", "text"),
    column<&NodeData::dcfPath>            ("dcfpath", "text"),
    column<&NodeData::tpdoCount>          ("tpdocnt", "integer"),
    column<&NodeData::rpdoCount>          ("rpdocnt", "integer"),
    column<&NodeData::isMaster>           ("ismaster", "integer"),
    column<&NodeData::isSyncProducer>     ("issyncproducer", "integer"),
    column<&NodeData::isSyncConsumer>     ("issyncconsumer", "integer"),
    column<&NodeData::isHbConsumer>       ("ishbconsumer", "integer"),
    column<&NodeData::isEmergencyProducer>("isemergencyproducer", "integer"),
    column<&NodeData::isEmergencyConsumer>("isemergencyconsumer", "integer"),
    column<&NodeData::isMpdoSupported>    ("ismpdosupported", "integer"),
    column<&NodeData::isCanopenGateway>   ("iscanopengateway", "integer"),
    column<&NodeData::allPdosStatic>      ("allpdosstatic", "integer"),
    column<&NodeData::excludeGeneration>  ("excludegeneration", "integer"),
    column<&NodeData::generateDcf>        ("generatedcf", "integer"),
    column<&NodeData::prefix>             ("prefix", "text"),
    column<&NodeData::outputPath>         ("outputpath", "text"),
    column<&NodeData::iconPath>           ("iconpath", "text"),
    column<&NodeData::isBootupManager>    ("isbootupmanager", "integer"),
    column<&NodeData::isConfigManager>    ("isconfigmanager", "integer"),
    column<&NodeData::excludePdoLinking>  ("excludepdolinking", "integer"),
    column<&NodeData::multilineData>      ("multilinedata", "integer"),
    column<&NodeData::lssSlave>           ("lssslave", ""), // declared without a type on disk
};

/// Number of leading node columns that an update of a node writes; the others keep their first value.
inline constexpr int kNodeUpdatedColumns = 20;

inline constexpr Column<IndexData> kIndexColumns[] = {
    column<&IndexData::name>       ("name", "integer", Coding::StringId),
    column<&IndexData::dataType>   ("datatype", "integer not null"),
    column<&IndexData::objectCode> ("objecttype", "integer not null"),
    column<&IndexData::description>("description", "integer", Coding::StringId),
    column<&IndexData::category>   ("category", "integer"),
    column<&IndexData::deviceClass>("device_class", "integer", Coding::StringId),
    column<&IndexData::fwSupported>("fwsupported", "integer"),
    column<&IndexData::metadata>   ("metadata", "blob", Coding::Blob),
};

inline constexpr Column<SubIndexData> kSubIndexColumns[] = {
    column<&SubIndexData::name>                       ("name", "integer", Coding::StringId),
    column<&SubIndexData::dataType>                   ("datatype", "integer not null"),
    column<&SubIndexData::accessType>                 ("accesstype", "text not null"),
    column<&SubIndexData::defaultValue>               ("defaultvalue", "text"),
    column<&SubIndexData::currentValue>               ("currentvalue", "text"),
    column<&SubIndexData::pdoMapping>                 ("pdomapping", "integer"),
    column<&SubIndexData::lowLimit>                   ("lowlimit", "text"),
    column<&SubIndexData::upLimit>                    ("uplimit", "text"),
    column<&SubIndexData::size>                       ("size", "integer"),
    column<&SubIndexData::defaultInEds>               ("defaultineds", "integer"),
    column<&SubIndexData::limitInEds>                 ("limitineds", "integer"),
    column<&SubIndexData::refuseRead>                 ("refuseread", "integer"),
    column<&SubIndexData::refuseWrite>                ("refusewrite", "integer"),
    column<&SubIndexData::allowedAccessTypes>         ("allowedaccesstypes", "text"),
    column<&SubIndexData::implementation>             ("implementation", "integer not null"),
    column<&SubIndexData::varName>                    ("varname", "text"),
    column<&SubIndexData::description>                ("description", "integer", Coding::StringId),
    column<&SubIndexData::category>                   ("category", "integer"),
    column<&SubIndexData::writeDefaultToEds>          ("writedefaulttoeds", "integer"),
    column<&SubIndexData::cyclicRead>                 ("cyclicread", "integer"),
    column<&SubIndexData::dcfComponent>               ("dcfcomponent", "integer"),
    column<&SubIndexData::changedByUser>              ("changedbyuser", "integer"),
    column<&SubIndexData::wizardSource>               ("wizardsource", "integer"),
    column<&SubIndexData::denotation>                 ("denotation", "integer", Coding::StringId),
    column<&SubIndexData::sharedLines>                ("sharedlines", "integer"),
    column<&SubIndexData::managedByOlm>               ("managedbyolm", "integer"),
    column<&SubIndexData::signalId>                   ("signalid", "integer"),
    column<&SubIndexData::nvStorage>                  ("nvstorage", "integer"),
    column<&SubIndexData::metadata>                   ("metadata", "blob", Coding::Blob),
};

inline constexpr Column<ConnectionData> kConnectionColumns[] = {
    column<&ConnectionData::prodNode> ("prodnode", "integer"),
    column<&ConnectionData::prodIndex>("prodindex", "integer"),
    column<&ConnectionData::prodSub>  ("prodsub", "integer"),
    column<&ConnectionData::conNode>  ("connode", "integer"),
    column<&ConnectionData::conIndex> ("conindex", "integer"),
    column<&ConnectionData::conSub>   ("consub", "integer"),
    column<&ConnectionData::priority> ("priority", "integer"),
};

inline constexpr Column<UdsServiceData> kUdsServiceColumns[] = {
    column<&UdsServiceData::active>    ("active", "integer"),
    column<&UdsServiceData::sessions>  ("sessions", "text"),
    column<&UdsServiceData::userLevels>("userlevels", "text"),
};

inline constexpr Column<LineSignalData> kLineSignalColumns[] = {
    column<&LineSignalData::line>           ("nodeid", "integer"),
    column<&LineSignalData::name>           ("name", "integer", Coding::StringId),
    column<&LineSignalData::dataType>       ("datatype", "integer not null"),
    column<&LineSignalData::accessType>     ("accesstype", "text not null"),
    column<&LineSignalData::defaultValue>   ("defaultvalue", "text"),
    column<&LineSignalData::group>          ("signalgroup", "integer"),
    column<&LineSignalData::ref>            ("ref", "integer"),
    column<&LineSignalData::transmitType>   ("transmittype", "integer"),
    column<&LineSignalData::transmitTrigger>("transmittrigger", "integer"),
    column<&LineSignalData::eventTimer>     ("eventtimer", "integer"),
    column<&LineSignalData::syncValue>      ("syncvalue", "integer"),
    column<&LineSignalData::syncStartValue> ("syncstartvalue", "integer"),
    column<&LineSignalData::routing>        ("routing", "integer"),
};

inline constexpr Column<PgnData> kPgnColumns[] = {
    column<&PgnData::number>                  ("number", "integer not null"),
    column<&PgnData::edpDpKey>                ("edp_dp_key", "integer"),
    column<&PgnData::priority>                ("priority", "integer"),
    column<&PgnData::cycleTimeMs, PgnData>    ("cycletime_ms", "integer"),
    column<&PgnData::inhibitTimeMs, PgnData>  ("inhibittime_ms", "integer"),
    column<&PgnData::mappingCount, PgnData>   ("mappingcount", "integer"),
    column<&PgnData::direction, PgnData>      ("direction", "integer"),
    column<&PgnData::name, PgnData>           ("name", "integer", Coding::StringId),
    column<&PgnData::description, PgnData>    ("desc", "integer", Coding::StringId),
    column<&PgnData::isSafe>                  ("issafe", "integer"),
    column<&PgnData::srvtMs>                  ("srvt_ms", "integer"),
    column<&PgnData::fdTrailerFormat>         ("FD_TrailerFormat", "integer"),
    column<&PgnData::fdAssuranceType>         ("FD_AssuranceType", "integer"),
    column<&PgnData::fdAssuranceDataSize>     ("FD_AssuranceDataSize", "integer"),
};

inline constexpr Column<SpnData> kSpnColumns[] = {
    column<&SpnData::pgn>                     ("pgnnumber", "integer not null"),
    column<&SpnData::number, SpnData>         ("spnnumber", "integer not null"),
    column<&SpnData::dataType, SpnData>       ("datatype", "integer"),
    column<&SpnData::implementation, SpnData> ("implementation", "integer"),
    column<&SpnData::varName, SpnData>        ("varname", "text"),
    column<&SpnData::defaultValue, SpnData>   ("defaultvalue", "text"),
    column<&SpnData::name, SpnData>           ("name", "integer", Coding::StringId),
    column<&SpnData::description, SpnData>    ("desc", "integer", Coding::StringId),
    column<&SpnData::pos, SpnData>            ("pos", "integer"),
    column<&SpnData::bitSize, SpnData>        ("bitsize", "integer"),
    column<&SpnData::direction, SpnData>      ("direction", "integer"),
    column<&SpnData::slotDf>                  ("slot_df", "integer"),
};

inline constexpr Column<CanIdData> kCanIdColumns[] = {
    column<&CanIdData::id>                      ("id", "integer not null"),
    column<&CanIdData::cycleTimeMs, CanIdData>  ("cycletime_ms", "integer"),
    column<&CanIdData::inhibitTimeMs, CanIdData>("inhibittime_ms", "integer"),
    column<&CanIdData::mappingCount, CanIdData> ("mappingcount", "integer"),
    column<&CanIdData::direction, CanIdData>    ("direction", "integer"),
    column<&CanIdData::name, CanIdData>         ("name", "integer", Coding::StringId),
    column<&CanIdData::description, CanIdData>  ("desc", "integer", Coding::StringId),
};

inline constexpr Column<DataElementData> kDataElementColumns[] = {
    column<&DataElementData::canid>                           ("canid", "integer not null"),
    column<&DataElementData::number, DataElementData>         ("number", "integer not null"),
    column<&DataElementData::dataType, DataElementData>       ("datatype", "integer"),
    column<&DataElementData::implementation, DataElementData> ("implementation", "integer"),
    column<&DataElementData::varName, DataElementData>        ("varname", "text"),
    column<&DataElementData::defaultValue, DataElementData>   ("defaultvalue", "text"),
    column<&DataElementData::name, DataElementData>           ("name", "integer", Coding::StringId),
    column<&DataElementData::description, DataElementData>    ("desc", "integer", Coding::StringId),
    column<&DataElementData::pos, DataElementData>            ("pos", "integer"),
    column<&DataElementData::bitSize, DataElementData>        ("bitsize", "integer"),
    column<&DataElementData::direction, DataElementData>      ("direction", "integer"),
};

inline constexpr Column<VirtualNodeRecord> kVirtualNodeColumns[] = {
    column<&VirtualNodeRecord::line>("line", "integer"),
    column<&VirtualNodeRecord::node>("dbnodeid", "integer"),
    column<&VirtualNodeRecord::name>("name", "text"),
};

inline constexpr Column<LineGroupRecord> kLineGroupColumns[] = {
    column<&LineGroupRecord::name> ("name", "text"),
    column<&LineGroupRecord::lines>("nodeidlist", "text"),
};
// clang-format on

/// The column of that name, or null. Names come from project files and are data, never SQL.
template <class Record, size_t N>
const Column<Record> *findColumn(const Column<Record> (&columns)[N], const QString &name)
{
    for (const Column<Record> &candidate : columns) {
        if (name == QLatin1String(candidate.name))
            return &candidate;
    }
    return nullptr;
}
