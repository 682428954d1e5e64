// The project store: all facts about a project, behind one class.
//
// The class is split by record family over several sources, objectdatabase_<family>.cpp; the
// connection and the caches are in objectdatabase_p.h. No other code of the tool speaks SQL.
#pragma once

#include "store/projectfile.h"
#include "store/projectrecords.h"
#include "support/direction.h"
#include "support/objectranges.h"
#include "support/settingscatalogue.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>
#include <memory>
#include <optional>

class QSqlQuery;
class StorePrivate;
struct SavedObject;

/// All data of one project, in a private temporary copy of the user's file; only the save
/// operations write to the user's file.
///
/// The driver owns one store for a run. Generators, importers and the checker use it on the thread
/// that runs their job, one at a time; see setBlockUpdates().
///
/// A line is one CAN line of the device, numbered from 0. Lines 254 and 255 are scratch lines that
/// no saved file holds. Getters give false, empty or 0 for what is not there and then leave their
/// result argument as it was.
class ObjectDataBase : public QObject
{
    Q_OBJECT

public:
    using NODE_DATA_T = NodeData;
    using INDEX_DATA_T = IndexData;
    using SUBINDEX_DATA_T = SubIndexData;
    using SubEntry = SubEntryData;
    using SubAddress = SubAddressData;
    using Connection = ConnectionData;
    using INDEX_SUB_METADATA_T = IndexSubMetadata;
    using PGN = PgnData;
    using SPN = SpnData;
    using CANID = CanIdData;
    using DataElement = DataElementData;
    using UDS_SERVICE_T = UdsServiceData;
    using SIGNAL_DATA_T = LineSignalData;
    using SPN_Identifier = SpnIdentifierData;
    using LineDifference = LineDifferenceData;
    using ChangeSet = ChangeSetData;

    /// As line of another store: the first one that it has.
    static constexpr quint8 kFirstLine = 255;

    /// Version of the schema that this tool writes.
    static constexpr int kDatabaseVersion = 104;

    explicit ObjectDataBase(QObject *parent = nullptr);
    ~ObjectDataBase() override;

    // --- Lifecycle (objectdatabase_lifecycle.cpp) ---

    /// Before the end of the process, which frees the memory of a large project at once: only the
    /// temporary files are removed. Nothing else may be asked of the store any more.
    void abandon();

    /// Starts a fresh project with line 0 in a new temporary file.
    bool createNewDataBase();

    /// Opens a project in the form that the name says: a name of no known form is taken for a
    /// database. False if the file is no project, or one of another tool of the family: then
    /// getLastErrorString() is set and wrongTool() raised. Text projects always give true. Of a
    /// database that will neither be saved nor exported, the free space in it is not taken out.
    bool openDataBase(const QString &file, bool willBeSaved = true);

    /// Saves in the form that the name says; an empty name is the project's own. False if the file
    /// could not be written, the old file then stands as it was. The former file stays as
    /// "<file>.bak" when a database is saved.
    bool saveDataBase(const QString &file);
    bool saveDatabaseAsSql(const QString &file);
    bool saveDatabaseAsText(const QString &file);
    bool toText(const QString &file);
    bool fromText(const QString &file);
    bool saveDatabaseAsYaml(const QString &file);
    /// Writes the file without making it the project's own.
    bool toYaml(const QString &file);
    /// False if anything in the file was not understood; all of it has then been told.
    bool fromYaml(const QString &file);
    /// Of the opened project, if its form has comments that saving loses; 0 if there is none.
    int firstCommentLine() const;

    /// All that the project holds as plain records.
    bool readRecords(ProjectRecord *project) const;
    /// Replaces all that the new project holds by these records: raw rows, no repair.
    bool putRecords(const ProjectRecord &project);
    /// Writes many groups with their signals at once. Each takes the place of those that the line
    /// has of its number and direction, and of all their signals; the others stay.
    bool putGroups(quint8 line, const std::vector<GroupRecord> &groups);
    bool putCanFrames(quint8 line, const std::vector<CanFrameRecord> &frames); ///< likewise

    /// Saves a copy whose EDS paths are relative to it.
    bool exportDatabase(const QString &file);

    /// Replaces another file by the project as it is now, as a save would write it, in the form
    /// that the name says. Neither the store nor the project's own file changes, and no backup is
    /// kept. With \a keepsUnchanged a file that holds these bytes already is left alone. False if
    /// the file could not be written, which then stands as it was, or if the project was read in
    /// part only; getLastErrorString() tells why.
    bool exportProject(const QString &file, bool keepsUnchanged = false);

    /// Does the store differ from the file it was read from?
    bool isDifferent() const;

    QString getLastErrorString() const;
    QString getProjectFileName() const;

    /// Runs free SQL; getSqlResultLines() then holds a line a row, or the error text.
    bool executeSql(const QString &sql);
    QStringList getSqlResultLines() const;

    /// While set, statements from threads other than the one that called wait until it is cleared.
    bool blockUpdates() const;
    void setBlockUpdates(bool block);

    /// While set, mutators give false and change nothing; also sets setBlockUpdates().
    void setLockWriteAccess(bool lock);

    /// Name of a new empty file in the folder for temporary copies.
    QString createTempFile();

    void saveTempMetadata(const QString &first, const QString &second);
    QPair<QString, QString> getTempMetadata() const;

    /// Between the two calls all writes are one transaction; calls nest.
    void beginBatch();
    void commitBatch();

    // --- Nodes (objectdatabase_nodes.cpp) ---

    bool existNode(quint8 line) const;
    QList<quint8> getNodes() const; ///< ascending
    bool getNodeName(quint8 line, QString &name) const;
    bool getNodeData(quint8 line, NODE_DATA_T &data) const;
    /// Adds a line with its tables, or updates it. An update leaves isBootupManager,
    /// isConfigManager, excludePdoLinking, multilineData and lssSlave as stored.
    bool addNode(quint8 line, const NODE_DATA_T &data);
    bool delNode(quint8 line);
    /// Sets one column by its name; an empty value changes nothing.
    bool setNodeSqlValue(const QString &column, const QString &value, const QString &line);
    /// First line whose object 0x1F80 has bit 0 set in its current value; else 0 (CiA 302-2).
    quint8 getNetworkMaster();

    // --- Objects (objectdatabase_objects.cpp) ---

    bool existIndex(quint8 line, quint16 index) const;
    bool getIndexData(quint8 line, quint16 index, INDEX_DATA_T &data) const;
    QString getIndexName(quint8 line, quint16 index) const;
    bool addIndex(quint8 line, quint16 index, const INDEX_DATA_T &data);
    bool delIndex(quint8 line, quint16 index, bool keepConnections);
    bool setIndexName(quint8 line, quint16 index, const QString &name);
    /// Ascending, from \a low up to and including \a high.
    QList<quint16> getIndices(quint8 line, quint16 low, quint16 high) const;
    QList<quint16> getIndices(quint8 line, ObjectRange range) const
    {
        return getIndices(line, range.first, range.last);
    }
    QList<quint16> getIndicesByProperty(quint8 line, const QString &column,
                                        const QString &value) const;
    quint16 getNextFreeIndex(quint8 line, quint16 start) const;

    // --- Subindices (objectdatabase_subindices.cpp) ---

    bool existSubIndex(quint8 line, quint16 index, quint8 sub) const;
    bool getSubIndexData(quint8 line, quint16 index, quint8 sub, SUBINDEX_DATA_T &data) const;
    bool addSubIndex(quint8 line, quint16 index, quint8 sub, const SUBINDEX_DATA_T &data);
    /// The importers' path: one transaction, and no signal.
    bool addSubIndices(const QList<SubEntry> &entries);
    bool delSubIndex(quint8 line, quint16 index, quint8 sub, bool keepConnections);
    bool setSubIndexValue(quint8 line, quint16 index, quint8 sub, const QString &value);
    bool setSubIndexCurrentValue(quint8 line, quint16 index, quint8 sub, const QString &value);
    QString getSubIndexValue(quint8 line, quint16 index, quint8 sub) const;
    QString getSubIndexCurrentValue(quint8 line, quint16 index, quint8 sub) const;
    PDOMapping getSubIndexPdoMapping(quint8 line, quint16 index, quint8 sub) const;
    quint16 getSubIndexDatatype(quint8 line, quint16 index, quint8 sub) const;
    quint32 getSubIndexBitSize(quint8 line, quint16 index, quint8 sub) const;
    bool setSubIndexParameterName(quint8 line, quint16 index, quint8 sub, const QString &name);
    bool setSubIndexName(quint8 line, quint16 index, quint8 sub, const QString &denotation);
    QString getSubIndexName(quint8 line, quint16 index, quint8 sub, bool withDenotation) const;
    QStringList getIndexSubIndexName(quint8 line, quint16 index, quint8 sub) const;
    bool existSubIndexName(quint8 line, const QString &text) const;
    /// Ascending, from \a minSub up.
    QList<quint8> getSubIndices(quint8 line, quint16 index, quint8 minSub) const;
    /// Calls \a visit for these subindices, in this order. The record lives for the call only, and
    /// the store may not be written meanwhile. The fast way through a cached line: nothing is
    /// copied.
    using SubVisitor = std::function<void(quint8 sub, const SUBINDEX_DATA_T &data)>;
    void visitSubIndices(quint8 line, quint16 index, quint8 minSub, const SubVisitor &visit) const;
    /// The same for all subindices of all objects of a line, ascending.
    using LineVisitor = std::function<void(quint16 index, quint8 sub, const SUBINDEX_DATA_T &data)>;
    void visitLine(quint8 line, const LineVisitor &visit) const;
    QList<quint8> getSubIndicesMappable(quint8 line, quint16 index, quint8 minSub) const;
    /// The first free number that follows an existing subindex; 0xFFFFFFFF if there is none.
    quint32 getNextFreeSubIndex(quint8 line, quint16 index, quint8 start) const;
    QList<SubAddress> getMappableSubs(quint8 line, quint16 minIndex) const;
    QList<SubAddress> getMappableSubs(quint8 line, quint16 dataType, bool tpdo) const;
    QList<SubAddress> getSubsByProperty(quint8 line, const QString &column,
                                        const QString &value) const;

    // --- Metadata (objectdatabase_metadata.cpp) ---

    bool saveIndexMetaData(quint8 line, quint16 index, const Metadata &metadata);
    bool saveSubIndexMetaData(quint8 line, quint16 index, quint8 sub, const Metadata &metadata);
    bool getAllIndexMetaData(quint8 line, QList<Metadata> &result) const;
    bool getAllSubIndicesWithMetaData(quint8 line, QList<INDEX_SUB_METADATA_T> &result) const;

    // --- Strings (objectdatabase_strings.cpp) ---

    int getStringId(const QString &text); ///< -1 on failure
    QString getString(int id) const;
    void cacheStrings();
    void cleanUpStrings();
    /// Doubles each apostrophe.
    void prepareQuotationMark(QString &text) const;

    // --- Caches (objectdatabase_cache.cpp) ---

    /// Reads the subindices of a line, or of one of its objects, into memory, and the line's
    /// objects with them. From then on the getters of the line run no statement.
    void cacheAllSubs(quint8 line, quint16 index);
    void clearCachedSubs(quint8 line);
    void clearAllCachedSubs();

    // --- Settings (objectdatabase_settings.cpp) ---

    bool existGeneralSettingsValue(const QString &key) const;
    QString getGeneralSettingsValue(const QString &key) const;
    bool setGeneralSettingsValue(const QString &key, const QString &value);
    bool existJ1939SettingsValue(const QString &key) const;
    QString getJ1939SettingsValue(const QString &key) const;
    bool setJ1939SettingsValue(const QString &key, const QString &value);
    bool existMiscSettingsValue(const QString &key) const;
    QString getMiscSettingsValue(const QString &key) const;
    bool setMiscSettingsValue(const QString &key, const QString &value);
    bool existEnergyBusSettingsValue(const QString &key) const;
    QString getEnergyBusSettingsValue(const QString &key) const;
    bool setEnergyBusSettingsValue(const QString &key, const QString &value);
    bool removeEnergyBusSettingsValue(const QString &key);

    /// Description keys belong to the line of setDescriptionSettingsLine(); callers give them
    /// plain.
    bool existDescriptionSettingsValue(const QString &key) const;
    QString getDescriptionSettingsValue(const QString &key) const;
    bool setDescriptionSettingsValue(const QString &key, const QString &value);
    bool addDescriptionSettingsValue(const QString &key, const QString &value);
    void setDescriptionSettingsLine(quint8 line);
    void addDefaultDescriptionSettings(quint8 line);

    /// Element \a line of a comma list; the last element stands for all lines beyond.
    QString getGeneralSettingsValueLine(const QString &key, quint8 line) const;
    bool setGeneralSettingsValueLine(const QString &key, const QString &value, quint8 line);
    /// Element \a line of a comma list; beyond its end the whole list.
    QString getJ1939SettingsValueLine(const QString &key, quint8 line) const;
    bool setJ1939SettingsValueLine(const QString &key, const QString &value, quint8 line);
    bool fixGeneralSettingsValueLine(const QString &key, quint8 lastLine);
    void fixGeneralsettingsLineCount();
    static QStringList getGeneralLineDependentSettings();
    void removeNodeInGeneralSettings(quint8 line);
    void removeNodeInDescriptionSettings(quint8 line);
    /// All settings of a store as it holds them, the lines' suffixes of description keys included.
    QMap<QString, QString> getStoredSettings(SettingStore store) const;
    QStringList getGeneralSettingsKeys() const;
    QStringList getDescriptionSettingsKeys() const; ///< with the lines' suffixes
    QStringList getJ1939SettingsKeys() const;
    QStringList getEnergyBusKeys() const;

    // --- UDS services (objectdatabase_uds.cpp) ---

    bool isUDSServiceActive(quint8 line, quint8 sid) const;
    bool setUDSServiceActive(quint8 line, quint8 sid, bool active);
    QString getUDSServiceSessions(quint8 line, quint8 sid) const;
    bool setUDSServiceSessions(quint8 line, quint8 sid, const QString &sessions);
    /// A comma list of numbers, as the sessions are.
    QString getUDSServiceUserLevels(quint8 line, quint8 sid) const;
    bool setUDSServiceUserLevels(quint8 line, quint8 sid, const QString &levels);
    int getUDSServiceActiveCnt(quint8 line) const; ///< of the services 16 to 254
    /// All services that the line has a record of, active or not; ascending.
    QList<quint8> getUDSServices(quint8 line) const;
    bool getUDSServiceData(quint8 line, quint8 sid, UDS_SERVICE_T &data) const;
    bool delUDSService(quint8 line, quint8 sid);

    // --- Signals and their groups (objectdatabase_signals.cpp) ---

    QList<qint32> getSignals(quint8 line) const; ///< ascending
    bool getSignalData(qint32 id, SIGNAL_DATA_T &data) const;
    /// Writes the signal \a id, or a new one for 0. Gives its number, or -1 on failure.
    qint32 addSignal(const SIGNAL_DATA_T &data, qint32 id = 0);
    /// Subindices and other signals lose their ties to it.
    bool delSignal(qint32 id);
    bool delAllSignals(quint8 line);

    QMap<qint32, QString> getSignalGroups() const; ///< names by number
    /// Gives the number of the group of this name, which is added if it is not there; -1 on
    /// failure.
    qint32 addSignalGroup(const QString &name);
    bool delSignalGroup(qint32 id); ///< its signals stay, in no group
    /// Makes \a groups all groups of the project; signals of others are then in none.
    bool updateSignalGroups(const QMap<qint32, QString> &groups);

    // --- Groups of lines (objectdatabase_signals.cpp) ---

    QStringList getGroups() const; ///< names, in the order in which they were added
    QList<quint8> getGroupNodes(const QString &name) const; ///< in the order of the list
    bool addGroup(const QString &name);                     ///< false if it is there, or empty
    bool delGroup(const QString &name);
    /// False if there is no such group, or one of the new name.
    bool renameGroup(const QString &name, const QString &newName);
    bool addNodeToGroup(const QString &name, quint8 line);
    bool delNodeFromGroup(const QString &name, quint8 line);

    // --- Connections (objectdatabase_connections.cpp) ---

    /// Does not look for one that is there already.
    bool addConnection(quint8 prodNode, quint16 prodIndex, quint8 prodSub, quint8 conNode,
                       quint16 conIndex, quint8 conSub, quint8 priority);
    bool removeConnnection(quint8 prodNode, quint16 prodIndex, quint8 prodSub, quint8 conNode,
                           quint16 conIndex, quint8 conSub);
    bool removeConnnection(quint8 line);
    bool removeConnnection(quint8 line, quint16 index);
    bool removeConnnection(quint8 line, quint16 index, quint8 sub);
    bool removeProducerConnections(quint8 line, quint16 index, quint8 sub);
    bool removeConsumerConnection(quint8 line, quint16 index, quint8 sub);
    /// Those from one line to the other; all of the project if both are 0.
    void clearConnections(quint8 prodNode, quint8 conNode);
    /// Puts the connection anew, with the priority that it has now.
    bool updateConnectionPriority(const Connection &connection);
    bool isConnected(quint8 prodNode, quint16 prodIndex, quint8 prodSub, quint8 conNode,
                     quint16 conIndex, quint8 conSub) const;
    bool isConsumerConnected(quint8 line, quint16 index, quint8 sub) const;
    bool isProducerConnected(quint8 line, quint16 index, quint8 sub) const;
    /// Line of the first producer that feeds this consumer; also 0 if there is none.
    quint8 getProducerNode(quint8 line, quint16 index, quint8 sub) const;
    /// The first producer that feeds this consumer.
    std::optional<SubAddress> getProducer(quint8 line, quint16 index, quint8 sub) const;
    /// The first consumer that this producer feeds.
    std::optional<SubAddress> getConsumer(quint8 line, quint16 index, quint8 sub) const;
    int getConnectionCount() const;
    /// In the order of their producers' lines. Without multiplexed PDOs those are left out whose
    /// producer belongs to a signal that is sent in one.
    QList<Connection> getPDOConnections(bool withMpdo) const;
    /// Always empty; filter the list of all connections for those between two lines.
    QList<Connection> getPDOConnections(quint8 prodNode, quint8 conNode, bool withMpdo) const;
    /// All connections of a line become those of another.
    bool moveConnections(quint8 from, quint8 to);
    /// All connections of an object, on whichever line, become those of another.
    bool updateConnections(quint16 oldIndex, quint16 newIndex);
    void dumpConnections() const; ///< to the debug log
    /// Takes a snapshot of the types of two lines for isConnectionPossible() with a data type.
    void initPossibleConnectionQuery(quint8 prodNode, quint8 conNode);
    /// Are these on different lines and of one type? Two that do not exist are of one type, 0.
    /// Answers from the snapshot. \a dataType becomes that of the producer; it stays as it is for
    /// one line or an index of 0, which no connection may have.
    bool isConnectionPossible(quint8 prodNode, quint16 prodIndex, quint8 prodSub, quint8 conNode,
                              quint16 conIndex, quint8 conSub, quint16 &dataType) const;
    /// Answers from the project itself. The place 0xFFFF, 255 goes with any other.
    bool isConnectionPossible(quint8 prodNode, quint16 prodIndex, quint8 prodSub, quint8 conNode,
                              quint16 conIndex, quint8 conSub) const;

    // --- Locks: PDOs and mappings that the user fixed (objectdatabase_locks.cpp) ---

    bool isPdoLocked(quint8 line, quint16 pdoIndex) const;
    bool isMappingLocked(quint8 line, quint16 pdoIndex) const;
    void setLockedPdo(quint8 line, quint16 pdoIndex, bool lock);
    void setLockedMapping(quint8 line, quint16 pdoIndex, bool lock);
    QList<quint16> getLockedPDOs(quint8 line) const; ///< ascending, as getLockedMappings()
    QList<quint16> getLockedMappings(quint8 line) const;
    bool clearLockedPDOs(); ///< of all lines
    bool clearLockedPDOs(quint8 line);
    bool clearLockedMappings();
    bool clearLockedMappings(quint8 line);

    // --- PDOs and their mappings (objectdatabase_pdos.cpp) ---

    /// Can the mapping of this communication object not be written at run time? A mapping whose
    /// first two subindices are not there is static.
    bool isMappingStatic(quint8 line, quint16 commIndex) const;
    /// Objects below 0x2000 count as not mapped.
    bool isObjectMapped(quint8 line, quint16 index, quint8 sub) const;
    /// The mapping entries that name this subindex, ascending.
    QList<SubAddress> getMappingObjectsForObject(quint8 line, quint16 index, quint8 sub) const;
    /// Deletes PDOs without entries, without COB-ID or with its bit 27 set, and makes the mappings
    /// of the others constant and as long as their count of entries.
    bool removeUnusedPDOsAndMakeOtherPDOsstatic(quint8 line);

    // --- Process image of network variables, CiA 302-4 (objectdatabase_processimage.cpp) ---

    /// Byte position of a variable among those of its type and direction; \a sub is 1 to 254. 0
    /// below the process image.
    static quint32 startPosInProcessImage(quint16 index, quint8 sub);
    /// The first free place for a variable of \a dataType. Variables of all types and directions
    /// keep their distance. None for a type that has no range, and if its range is full.
    std::optional<SubAddress> findFreeNVVariable(quint8 line, quint16 dataType, bool output) const;
    /// Adds a variable, and its object, at the first free place.
    std::optional<SubAddress> addNVObj(quint8 line, quint16 dataType, bool output,
                                       const QString &name);
    /// A text line for each variable, by position and with its bytes; "ERROR" after one that
    /// overlaps the one before it.
    QString getProcessImage(quint8 line) const;
    /// Deletes the variables of all lines that no connection names.
    bool removeUnusedNV();
    /// Deletes the process image of a line; for line 0 that of each line from 1 to 127. The flag is
    /// not looked at.
    bool deleteAllNV(quint8 line, bool unused);

    // --- J1939 groups and their signals (objectdatabase_j1939.cpp) ---

    /// A group that goes both ways is listed twice if asked for with Direction::kBoth. Without the
    /// members of safety data groups if \a noSafe.
    QList<quint32> getPGNs(quint8 line, quint8 direction, bool noSafe) const;
    bool existsPGN(quint8 line, quint32 pgn, quint8 direction) const;
    bool getPGNData(quint8 line, quint32 pgn, quint8 direction, PGN &data) const;
    QString getPGNName(quint8 line, quint32 pgn, quint8 direction) const;
    quint16 getPGNMappingCount(quint8 line, quint32 pgn, quint8 direction) const;
    /// The direction is that of the record.
    bool addPGN(quint8 line, quint32 pgn, const PGN &data);
    bool delPGN(quint8 line, quint32 pgn, quint8 direction); ///< with its signals

    /// In the order of the frame.
    QList<quint32> getSPNs(quint8 line, quint32 pgn, quint8 direction) const;
    bool existsSPN(quint8 line, quint32 pgn, quint8 direction, quint32 spn) const;
    bool getSPNData(quint8 line, quint32 pgn, quint8 direction, quint32 spn, SPN &data) const;
    /// All signals of a group, in the order of the frame.
    QVector<SPN> getSPNRecords(quint8 line, quint32 pgn, quint8 direction) const;
    QString getSPNName(quint8 line, quint32 pgn, quint8 direction, quint32 spn) const;
    quint16 getSPNDataType(quint8 line, quint32 pgn, quint8 direction, quint32 spn) const;
    QList<quint16> getSPNDataTypes(quint8 line, quint32 pgn, quint8 direction) const;
    bool addSPN(quint8 line, quint32 pgn, quint8 direction, quint32 spn, const SPN &data);
    bool delSPN(quint8 line, quint32 pgn, quint8 direction, quint32 spn);

    /// Signals of a group or identifier that the line does not have in their direction, so that no
    /// file holds them; of a line that cacheAllSpnDataForLine() has read, else none. Ascending.
    QVector<SPN> getSPNsWithoutGroup(quint8 line) const;
    QVector<DataElement> getDataElementsWithoutId(quint8 line) const;

    /// Reads the groups, identifiers and signals of a line into memory. From then on their getters
    /// run no statement, until the line is written.
    void cacheAllSpnDataForLine(quint8 line);
    void clearAllCachedSpnData();

    /// Moves groups whose data page bits stand apart to the number that holds them.
    void fixEDP_DP_PGNs();
    void fixFaultyPGNSPNCount();
    void updatePGNdirectionAttributes(quint8 line);
    /// Is a group, number aside, as one of another store?
    bool pgnEqual(ObjectDataBase *other, quint8 line, quint8 otherLine, quint32 pgn,
                  quint32 otherPgn, quint8 direction) const;

    // --- Raw CAN identifiers and their data elements (objectdatabase_rawcan.cpp) ---

    QList<quint32> getCANIDs(quint8 line, quint8 direction) const;
    bool existsCANID(quint8 line, quint32 id, quint8 direction) const;
    bool getCANIDData(quint8 line, quint32 id, quint8 direction, CANID &data) const;
    QString getCANIDName(quint8 line, quint32 id, quint8 direction) const;
    bool addCANID(quint8 line, quint32 id, const CANID &data);
    bool delCANID(quint8 line, quint32 id, quint8 direction);
    QList<quint32> getDataElements(quint8 line, quint32 id, quint8 direction) const;
    bool getDataElementData(quint8 line, quint32 id, quint8 direction, quint32 number,
                            DataElement &data) const;
    /// All elements of an identifier, by number.
    QVector<DataElement> getDataElementRecords(quint8 line, quint32 id, quint8 direction) const;
    QString getDataElementName(quint8 line, quint32 id, quint8 direction, quint32 number) const;
    /// An update leaves the element's place and width as they are.
    bool addDataElement(quint8 line, quint32 id, quint8 direction, quint32 number,
                        const DataElement &data);
    bool delDataElement(quint8 line, quint32 id, quint8 direction, quint32 number);
    bool CANIDEqual(ObjectDataBase *other, quint8 line, quint8 otherLine, quint32 id,
                    quint32 otherId, quint8 direction) const;

    // --- Lines of two stores (objectdatabase_copy.cpp) ---

    /// Brings the objects \a low to \a high of a line of another store, with all that belongs to
    /// them, and the settings of that line. An object that both lines have is replaced as a whole;
    /// those that only this one has stay, and so do connections. A line that does not exist is
    /// added. The line's signals come with their groups; one of a name that this line has replaces
    /// it, and subindices keep their ties. The settings that other lines share, the node's record
    /// and the locks of PDOs stay out. One transaction, and one
    /// notification of the kind Project. False if write access is locked, if the other project
    /// could not be read or has no such line, or if something could not be written.
    bool copyLineFromDatabase(ObjectDataBase &other, quint8 line, quint8 otherLine, quint32 low,
                              quint32 high);
    /// Likewise the parameter groups with numbers \a low to \a high, with their signals;
    /// \a direction as for getPGNs().
    bool copyPGNsFromDatabase(ObjectDataBase &other, quint8 line, quint8 otherLine, quint32 low,
                              quint32 high, quint8 direction);
    /// What these two leave out of a line, but its connections with other lines: CAN identifiers
    /// with their data elements, settings with an element for each line, the node's record, locks
    /// of PDOs, virtual nodes, and connections within the line. What both lines have is replaced;
    /// this one then has the UDS services of the other one only.
    bool copyRestOfLineFromDatabase(ObjectDataBase &other, quint8 line, quint8 otherLine);
    /// Ascending; of an object only one line has, just the object. Compares contentCompare() of
    /// objects and subindices. "Here" is this store.
    QList<LineDifference> compareLine(quint8 line, ObjectDataBase &other, quint8 otherLine,
                                      quint16 low, quint16 high);

    // --- For tools of the family: what editors and monitors do with a project, and no run of this
    //     tool does (objectdatabase_tools.cpp) ---

    /// Runs a statement on \a query as the store runs its own: once no other thread holds the
    /// block. The store then reads anew what the statement may have written.
    bool queryExec(QSqlQuery *query, const QString &sql) const;
    /// These two make a line's table, if it is not there, on the connection of \a query.
    bool createSubObjectsTable(int line, QSqlQuery query);
    bool createUDSSettingsTable(int line, QSqlQuery query);
    /// These two make the table of one of this store's lines anew with its rows and the constraint
    /// that no row stands twice; of rows that do the first one stays. \a query may hold the table:
    /// it is finished.
    bool addUniqueColumnsToSubDatabase(int line, QSqlQuery query);
    bool addUniqueColumnsToUDSSettings(int line, QSqlQuery query);

    /// Reads the display names of a line, or of one of its objects, for getSubIndexName().
    /// Generators read names with the records of cacheAllSubs(). (objectdatabase_cache.cpp)
    void cacheAllSubNames(quint8 line, quint16 index);
    void clearCachedSubNames();

    /// Writes one column of an object or subindex as the text form holds it, and makes the row if
    /// it does not exist. \a table is "Objects<line>" or "SubObjects<line>", the numbers decimal or
    /// with "0x". An invalid value changes nothing and gives false, and so does a table or column
    /// that a project does not have.
    bool setObjectIndexSqlValue(const QString &table, const QString &index, const QString &column,
                                const QVariant &value);
    bool setSubindexSqlValue(const QString &table, const QString &index, const QString &sub,
                             const QString &column, const QVariant &value);

    /// Makes an object a copy of another one, with its subindices and metadata; what stood there
    /// goes. Connections stay with their places. A signal belongs to its line, so a copy on another
    /// line has none, and no copy is managed by the object list. The target's line is cached
    /// afterwards. False if there is no such object or line.
    bool copyIndex(quint8 line, quint16 index, quint8 targetLine, quint16 targetIndex);
    /// Likewise a subindex; the target's object has to be there.
    bool copySubIndex(quint8 line, quint16 index, quint8 sub, quint8 targetLine,
                      quint16 targetIndex, quint8 targetSub);
    /// Keeps a copy of an object for pasteSavedIndex(), until the next one or until another project
    /// is opened. The object itself may change or go meanwhile.
    bool saveIndex(quint8 line, quint16 index);
    /// Writes the object that saveIndex() kept, as copyIndex() does.
    bool pasteSavedIndex(quint8 line, quint16 index);

    /// Reads of a line that cacheAllSpnDataForLine() or cacheAllSpnDataTypes() has read. False if
    /// it is not, or there is nothing: then ask the database.
    bool getSPNsFromCache(quint8 line, quint32 pgn, quint8 direction, QList<quint32> &spns) const;
    bool getSPNDataFromCache(quint8 line, quint32 pgn, quint8 direction, quint32 spn,
                             SPN &data) const;
    bool getSPNDataFromCache(const SPN_Identifier &place, SPN &data) const;
    bool getSPNDataTypesFromCache(quint8 line, quint32 pgn, quint8 direction,
                                  QList<quint16> &types) const;
    void cacheAllSpnDataTypes(quint8 line);
    /// The types of these signals of a group, whichever way it goes, in the order of \a spns; 0 for
    /// one that the group does not have.
    bool getSPNDataTypes(quint8 line, quint32 pgn, const QList<quint32> &spns,
                         QList<quint16> &types) const;

signals:
    void updateNotify(ObjectDataBase::ChangeSet modification);
    void wrongTool();
    void blockStateChanged(bool blockupdates);

private:
    friend class DatabaseTextConverter;

    /// Has the opened database a line, and the tables that each of them has?
    bool holdsProject() const;

    // Steps of openDataBase (objectdatabase_upgrade.cpp)
    bool upgradeOpenedProject();
    bool createMissingTables();
    void runLadder();
    void createMissingLineZeroTables();
    bool checkTool();
    void repairOpenedProject();
    void repairLines();
    void completeProject();
    void repairLineType(quint8 line);
    void repairUdsServices(quint8 line);
    void morphRelativeEdsToAbsolute();

    // Part of fixEDP_DP_PGNs (objectdatabase_j1939.cpp)
    void foldDataPage(quint8 line, quint32 number, quint8 direction);

    // Part of addNode: what a line has beside its objects (objectdatabase_nodes.cpp)
    void addLineSettings(quint8 line);

    // Steps of copying from another store (objectdatabase_copy.cpp, objectdatabase_settings.cpp)
    std::optional<quint8> sourceLine(quint8 line) const;
    bool mayCopy(const ObjectDataBase &other, quint8 line, std::optional<quint8> otherLine) const;
    /// Calls \a copy with the other store's line, within the frame that all copying has.
    template <class Copy>
    bool runCopy(const ObjectDataBase &other, quint8 line, quint8 otherLine, const Copy &copy);
    /// \a ids becomes the number here of each signal of the other line.
    bool copySignals(ObjectDataBase &other, quint8 line, quint8 otherLine,
                     QHash<qint32, qint32> *ids);
    bool copyObjects(ObjectDataBase &other, quint8 line, quint8 otherLine, quint32 low,
                     quint32 high, const QHash<qint32, qint32> &signalIds);
    bool copyLineSettings(ObjectDataBase &other, quint8 line, quint8 otherLine);
    bool copyFurtherSettings(ObjectDataBase &other, quint8 line, quint8 otherLine);
    bool copyNode(ObjectDataBase &other, quint8 line, quint8 otherLine);
    bool copyLinks(ObjectDataBase &other, quint8 line, quint8 otherLine);
    struct GroupTable;
    bool copyFrames(ObjectDataBase &other, const GroupTable (&tables)[2], quint8 line,
                    quint8 otherLine, const QString &condition, const QVector<QVariant> &values);
    bool copyLineRows(ObjectDataBase &other, const char *family, quint8 line, quint8 otherLine,
                      const QString &condition, const QVector<QVariant> &values);

    // Steps of copying within the store (objectdatabase_tools.cpp)
    std::optional<SavedObject> readObject(quint8 line, quint16 index) const;
    SUBINDEX_DATA_T forPlace(SUBINDEX_DATA_T data, quint8 line, quint8 targetLine) const;
    bool putObject(quint8 line, quint16 index, const SavedObject &object);
    bool rebuildLineTable(const char *family, int line, QSqlQuery &query, bool stopAtFailure);

    // Steps of saving and comparing (objectdatabase_save.cpp)
    bool mayReplace(const QString &file) const;
    /// Saves in a form that people read, of which there is no backup.
    bool saveReadable(const QString &file, bool (ObjectDataBase::*write)(const QString &));
    void noteSavingTool();
    void resetChangedByUserFlag(quint8 line);
    bool isDictionaryDifferent(const ObjectDataBase &other, quint8 line) const;

    // Steps of exportProject, in a store that is thrown away (objectdatabase_export.cpp)
    bool writeExport(const QString &file, bool keepsUnchanged);
    bool writeForm(ProjectFile::Form form, const QString &file);

    // Reading and writing single columns of a subindex (objectdatabase_subindices.cpp)
    template <auto Member>
    auto subField(quint8 line, quint16 index, quint8 sub, const char *column) const;
    template <auto Member>
    bool setSubField(quint8 line, quint16 index, quint8 sub, const char *column,
                     const QString &value);
    void notifySub(ChangeSet::Kind kind, quint8 line, quint16 index, quint8 sub);
    QList<quint8> selectSubs(quint8 line, quint16 index, quint8 minSub, bool onlyMappable) const;
    QList<SubAddress> addressesOf(const QString &sql, const QVector<QVariant> &values) const;

    bool setUdsColumn(quint8 line, quint8 sid, const char *column, const QVariant &value);

    std::unique_ptr<StorePrivate> d;
};
