// The records of a project as plain values. ObjectDataBase aliases them under the names that the
// rest of the tool uses; columns.h says how each becomes a row.
#pragma once

#include "support/candatatype.h"
#include "support/implementation.h"
#include "support/pdomapping.h"

#include <QMap>
#include <QMetaType>
#include <QString>

#include <optional>

using Metadata = QMap<QString, QString>;

/// One CAN line of the device.
struct NodeData {
    QString name;
    QString iconPath;
    QString edsPath;
    QString dcfPath;
    QString xddPath;
    quint16 tpdoCount = 0;
    quint16 rpdoCount = 0;
    QString prefix = QStringLiteral("_"); ///< of variable names
    QString outputPath = QStringLiteral("C:/");
    bool isMaster = false;
    bool isSyncProducer = false;
    bool isSyncConsumer = false;
    bool isHbConsumer = false;
    bool isEmergencyProducer = false;
    bool isEmergencyConsumer = false;
    bool isMpdoSupported = false;
    bool isCanopenGateway = false;
    bool allPdosStatic = false;
    bool excludeGeneration = false;
    bool generateDcf = true;
    bool isBootupManager = false;
    bool isConfigManager = false;
    bool excludePdoLinking = false;
    quint32 multilineData = 0;
    bool lssSlave = false;

    bool operator==(const NodeData &other) const;
    bool operator!=(const NodeData &other) const { return !(*this == other); }
};

/// One object of an object dictionary (CiA 301, 7.4).
struct IndexData {
    QString name = QStringLiteral("unnamed object");
    quint16 dataType = CAN::typeNumber(CAN::CANopenDataType::Unsigned8);
    CANopen::ObjectCode objectCode = CANopen::ObjectCode::Var;
    QString description;
    qint32 category = 1;
    QString deviceClass;
    bool fwSupported = false;
    Metadata metadata; ///< free attributes, such as "eds_define"

    bool operator==(const IndexData &other) const;
    bool operator!=(const IndexData &other) const { return !(*this == other); }

    /// As that of a subindex: name, type and code.
    bool contentCompare(const IndexData &other) const;
};

/// Numbers of the column "writedefaulttoeds".
namespace WriteDefault
{

constexpr quint8 kNever = 0;
constexpr quint8 kWithDefaultInEds = 1; ///< if defaultInEds is set as well
constexpr quint8 kAlways = 2;

} // namespace WriteDefault

/// One subindex; an object that is a plain variable has just subindex 0.
struct SubIndexData {
    // The fields lie by their size, without gaps: a project has a hundred thousand of these.
    QString name = QStringLiteral("unnamed subindex"); ///< the parameter name
    QString denotation;                                ///< display name
    QString description;
    QString varName;                           ///< C name of an application variable
    QString accessType = QStringLiteral("ro"); ///< a word of AccessType
    QString allowedAccessTypes = QStringLiteral("const,ro,rw,wo,rww,rwr");
    QString defaultValue;
    QString currentValue; ///< value of the DCF
    QString lowLimit = QStringLiteral("0");
    QString upLimit = QStringLiteral("0");
    Metadata metadata;
    quint32 size = 0; ///< bytes of a string or domain
    qint32 category = 1;
    qint32 signalId = 0; ///< row of the table Signals
    quint16 dataType = CAN::typeNumber(CAN::CANopenDataType::Unsigned8);
    quint16 wizardSource = 0;
    PDOMapping pdoMapping;
    quint8 implementation = Implementation::kManagedVariable;
    quint8 writeDefaultToEds = WriteDefault::kWithDefaultInEds;
    bool defaultInEds = true;
    bool limitInEds = false;
    bool refuseRead = false;
    bool refuseWrite = false;
    bool dcfComponent = false;
    bool cyclicRead = false;
    bool changedByUser = false;
    bool sharedLines = false;
    bool managedByOlm = false;
    bool nvStorage = false;

    /// All fields but managedByOlm and signalId; varName without regard to white space.
    bool operator==(const SubIndexData &other) const;
    bool operator!=(const SubIndexData &other) const { return !(*this == other); }

    /// The narrower test between two projects: only what changes the generated device.
    bool contentCompare(const SubIndexData &other) const;
};

/// An element of a batch of subindices.
struct SubEntryData {
    quint8 line = 0;
    quint16 index = 0;
    quint8 subindex = 0;
    SubIndexData data;
};

/// The place of a subindex in an object dictionary.
struct SubAddressData {
    quint16 index = 0;
    quint8 subindex = 0;

    bool operator==(const SubAddressData &other) const
    {
        return index == other.index && subindex == other.subindex;
    }
};

/// A place where a line differs from a line of another project.
struct LineDifferenceData {
    enum class Kind { OnlyHere, OnlyThere, Content };
    Kind kind = Kind::Content;
    quint16 index = 0;
    std::optional<quint8> subindex; ///< none: the object itself

    bool operator==(const LineDifferenceData &other) const
    {
        return kind == other.kind && index == other.index && subindex == other.subindex;
    }
};

/// The metadata of one subindex.
struct IndexSubMetadata {
    quint16 index = 0;
    quint8 subindex = 0;
    Metadata metadata;
};

/// The value of a producer's subindex on one line goes to a consumer's on another.
struct ConnectionData {
    quint8 prodNode = 0; ///< a line, as conNode
    quint16 prodIndex = 0;
    quint8 prodSub = 0;
    quint8 conNode = 0;
    quint16 conIndex = 0;
    quint8 conSub = 0;
    quint8 priority = 0;
};

/// What the frames of J1939 and raw CAN lines have in common. A number may stand twice on a line,
/// once for each Direction.
struct FrameData {
    QString name;
    QString description;
    quint16 cycleTimeMs = 0;
    quint16 inhibitTimeMs = 0;
    quint16 mappingCount = 0; ///< number of its signals
    quint8 direction = 0;
};

/// A parameter group (SAE J1939-21, 5.2).
struct PgnData : FrameData {
    quint32 number = 0;
    quint8 edpDpKey = 0; ///< data page bits that stand apart from the number in older projects
    quint8 priority = 0;
    quint32 isSafe = 0; ///< member of a safety data group
    quint32 srvtMs = 0; ///< safety relevant validation time
    quint32 fdTrailerFormat = 0;
    quint32 fdAssuranceType = 0;
    quint32 fdAssuranceDataSize = 0;
};

/// A CAN identifier of a raw line.
struct CanIdData : FrameData {
    quint32 id = 0;
};

/// What the signals of J1939 and raw CAN lines have in common.
struct SignalData {
    qint16 pos = 0; ///< place in the frame
    QString name;
    QString description;
    QString defaultValue = QStringLiteral("0");
    quint32 dataType = 0; ///< a CAN::CANopenDataType
    quint32 direction = 0;
    quint32 number = 0;
    quint32 implementation = Implementation::kApplicationVariable;
    QString varName;
    quint16 bitSize = 0;
};

/// A signal of a parameter group, a suspect parameter (SAE J1939-71).
struct SpnData : SignalData {
    quint32 pgn = 0;
    quint16 slotDf = 0;
};

/// A signal of a raw CAN identifier.
struct DataElementData : SignalData {
    quint32 canid = 0;
};

/// Where a signal of a parameter group stands.
struct SpnIdentifierData {
    quint8 line = 0;
    quint32 pgn = 0;
    quint8 direction = 0;
    quint32 spn = 0;

    bool operator==(const SpnIdentifierData &other) const;
    bool operator<(const SpnIdentifierData &other) const; ///< by the fields in their order
};

/// A diagnostic service of a line (ISO 14229-1).
struct UdsServiceData {
    bool active = false;
    QString sessions;   ///< in which it may be asked for: a comma list of numbers
    QString userLevels; ///< that may ask for it: likewise
};

/// A value that one line gives and others take. Subindices are tied to it by their signalId.
struct LineSignalData {
    quint8 line = 0;
    QString name;
    quint16 dataType = CAN::typeNumber(CAN::CANopenDataType::Unsigned8);
    QString accessType = QStringLiteral("ro"); ///< "txmpdo": sent in a multiplexed PDO
    QString defaultValue;
    qint32 group = 0; ///< its signal group; 0 for none
    qint32 ref = 0;   ///< the signal that it takes its value from; 0 for none
    quint8 transmitType = 0;
    quint8 transmitTrigger = 0;
    quint16 eventTimer = 0; ///< ms
    quint8 syncValue = 0;
    quint8 syncStartValue = 0;
    qint32 routing = 0;
};

/// What changed in a project. Fields that a kind does not use are zero.
struct ChangeSetData {
    enum class Kind : qint32 {
        AddIndex = 1,
        AddSubIndex = 2,
        DelIndex = 3,
        DelSubIndex = 4,
        DelAllSignals = 5,
        AddNode = 6,
        DelNode = 7,
        Groups = 8,
        GeneralSettings = 9,
        DescriptionSettings = 10,
        EnergyBusSettings = 11,
        MiscSettings = 12,
        J1939Settings = 13,
        Project = 14, ///< all of it
        AddPgn = 15,
        DelPgn = 16,
        AddCanId = 17,
        DelCanId = 18,
        AddSpn = 19,
        DelSpn = 20, ///< also of a deleted data element
        AddDataElement = 21,
    };

    Kind kind = Kind::Project;
    quint16 index = 0;
    quint8 subindex = 0;
    quint8 line = 0;
    quint32 pgn = 0;
    quint32 spn = 0;
    quint32 canid = 0;
    quint32 element = 0;
    quint8 flag = 0; ///< always 0
};
Q_DECLARE_METATYPE(ChangeSetData)
