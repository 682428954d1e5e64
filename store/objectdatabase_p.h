// Connection, statements and caches of the store. Only the sources of ObjectDataBase and the text
// converter include this.
#pragma once

#include "store/columns.h"
#include "store/objectdatabase.h"
#include "store/projectfile.h"
#include "store/rowinserter.h"
#include "store/rowreader.h"
#include "store/schema.h"
#include "store/subtable.h"
#include "store/temporaryfiles.h"

#include <QHash>
#include <QMutex>
#include <QSet>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>

#include <array>
#include <atomic>
#include <optional>

/// Values that are bound to a statement, in the order of its place holders.
using Cells = QVector<QVariant>;

/// The five settings stores, in the order of the table in objectdatabase_settings.cpp.
enum class SettingsStore { General, Description, EnergyBus, Misc, J1939 };

/// The rows that RowInserters write.
enum class RowKind { Object, SubIndex, TextObject, TextSubIndex };

/// What is known of a line without asking the database. Complete: all rows of the line are in here,
/// and every writer keeps it so. Otherwise it holds the subindices of one object only.
struct LineCache {
    bool complete = false;
    /// All subindices that there are could be read.
    bool isWhole = false;
    QSet<quint32> escaped; ///< keys of records that differ from their row; see cacheWrittenSub()
    SubTable subs;
    ObjectMap<IndexData> objects;
};

/// A frame of a line: a number may stand once for each direction.
struct FrameKey {
    quint32 number = 0;
    quint8 direction = 0;

    bool operator==(const FrameKey &other) const
    {
        return number == other.number && direction == other.direction;
    }
};

inline uint qHash(const FrameKey &key, uint seed = 0)
{
    return qHash(quint64(key.direction) << 32 | key.number, seed);
}

/// All frames and signals of a line.
template <class Frame, class Signal>
struct FrameCache {
    QVector<FrameKey> order; ///< ascending by number
    QHash<FrameKey, Frame> frames;
    QHash<FrameKey, QVector<Signal>> signalsOf;
};

/// An object with all that belongs to it; the texts are those of the rows.
struct SavedObject {
    quint8 line = 0;
    IndexData object;
    QMap<quint8, SubIndexData> members;
};

class StorePrivate
{
public:
    explicit StorePrivate(ObjectDataBase *owner);
    ~StorePrivate();

    static quint32 subKey(quint16 index, quint8 sub) { return (quint32(index) << 8) | sub; }
    static quint32 placeKey(quint8 line, quint16 index, quint8 sub)
    {
        return (quint32(index) << 16) | (quint32(line) << 8) | sub;
    }

    // --- connection and statements (objectdatabase_statements.cpp) ---

    bool openConnection(const QString &file);
    void closeConnection();
    /// Runs one statement without result. \a context stands first in the log.
    bool exec(const QString &sql, const Cells &values = {});
    /// Works on a connection that another one owns and closes; no file is opened or closed.
    void borrowConnection(const QSqlDatabase &connection);
    /// What statements from outside may have written is read again when it is needed.
    void forgetRows();
    void applyPragmas(int cacheSize);
    /// Runs a prepared statement whose values are bound; all statements of the store end up here.
    bool runPrepared(QSqlQuery &query);
    /// Copies the user's database, the project file, and opens the copy if it is sound.
    bool openCopy();
    /// Why a sound schema and sound pages are not what the opened file has.
    ProjectFile::Refusal whyUnsound();
    /// Tells the user why the project file is not opened; always false.
    bool refuse(const char *rule, const QString &text) const;
    bool refuseWorkingCopy(const QString &reason) const;
    bool refuseTool() const;
    void noteSaved(const QString &target);
    /// Lets \a write make the file anew, but not over a project that is not as it was read.
    bool replaceReadable(const QString &file, const std::function<bool(const QString &)> &write);
    /// Works on a copy of what another store holds now. If that fails, lastError says why.
    bool takeCopyOf(const StorePrivate &other);
    QString whyNotExported(const QString &file) const; ///< empty if it can be tried
    /// Is the text project on disk the one that was read? Or else the same as its new text, which
    /// is in the file \a fresh, as when another run saved it?
    bool isAsRead(const QString &fresh);
    bool readYaml(ProjectRecord *project);
    bool writeYaml(const QString &file);
    /// Makes a thread that does not hold the block wait for it.
    void awaitUnblocked();
    void noteFailure(const QSqlQuery &query);
    void noteFailure(const QString &sql, const QString &reason, int code);
    QStringList columnNames(const QString &table); ///< empty if there is no such table
    /// All cells of a query as text, a list a row.
    QVector<QStringList> allRows(const QString &sql);

    // --- upgrade of older projects (objectdatabase_upgrade.cpp) ---

    /// Runs the statement that makes \a table if the opened project lacks it.
    bool createMissing(const QString &table, const QString &sql);
    void addMissingColumns(const QString &table, const QString &columns);
    /// Makes a line's table anew with the constraints of today, and takes its rows over.
    bool rebuildTable(const char *family, int line, bool stopAtFailure);

    /// Number of the new row, or -1.
    int insertString(const QString &text);
    /// The numbers of all texts. A run that writes no text does not need them.
    QHash<QString, int> &idsOfStrings();
    /// Takes the numbers that the columns of a table refer to out of \a ids; false if it cannot be
    /// read.
    bool dropUsedStrings(const QString &columns, const QString &table, QSet<int> *ids);
    /// The maps of texts are read again when they are needed.
    void forgetStrings();

    // --- caches ---

    const LineCache *completeCache(quint8 line) const;
    /// The text that a cell of a StringId column names, the cell itself of any other.
    template <class Record>
    void readColumn(const Column<Record> &field, Record &record, const QVariant &cell);
    template <class Record>
    void readColumn(const Column<Record> &field, Record &record, const RowCell &cell);
    /// The value to bind for a column of \a record.
    template <class Record>
    QVariant cellOf(const Column<Record> &field, const Record &record);
    /// The cached record, or null if the line or the subindex is not cached.
    const SubIndexData *cachedSub(quint8 line, quint16 index, quint8 sub) const;
    SubIndexData *cachedSub(quint8 line, quint16 index, quint8 sub);
    /// Reads the subindices of a line, or of one object if \a index is not 0, into \a subs. False
    /// if they cannot be read.
    bool readSubs(quint8 line, quint16 index, SubTable &subs);
    void refreshCachedName(quint8 line, quint16 index, quint8 sub, const SubIndexData &data);

    // --- rows ---

    void cacheWrittenSub(quint8 line, quint16 index, quint8 sub, const SubIndexData &data);
    /// \a text with its apostrophes doubled. Equal texts in a row share their memory, as those of
    /// the members of an array do.
    QString escapedText(const QString &text);
    bool writePlainSub(quint8 line, quint16 index, quint8 sub, const SubIndexData &data);
    /// Does the cached copy of the record hold its apostrophes doubled?
    bool isEscaped(quint8 line, quint16 index, quint8 sub) const;
    /// \a data as it is to be stored: what was read from an escaped copy is taken back to plain
    /// text.
    SubIndexData withoutEscapes(quint8 line, quint16 index, quint8 sub, SubIndexData data) const;
    /// The subindex as its row is, whatever the cached copy holds.
    std::optional<SubIndexData> storedSub(quint8 line, quint16 index, quint8 sub) const;
    void forgetCachedNames(quint8 line);
    /// Type of each subindex of a line, by subKey().
    QHash<quint32, quint16> dataTypes(quint8 line);
    /// The placeKey() of each subindex that a signal makes the source of a multiplexed PDO.
    QSet<quint32> mpdoProducers();
    /// The inserter of a line's objects or subindices, for records or for rows of the text form.
    RowInserter &inserter(RowKind kind, quint8 line);
    bool writeSub(quint8 line, quint16 index, quint8 sub, const SubIndexData &data);

    // --- services, signals and groups (objectdatabase_uds.cpp, objectdatabase_signals.cpp) ---

    const QMap<quint8, UdsServiceData> &udsServices(quint8 line);
    const QMap<qint32, LineSignalData> &lineSignals();
    bool deleteSignals(const QString &condition, const Cells &values);
    bool writeGroup(const QString &sql, const Cells &values);
    bool writeGroupNodes(const QString &name, const QList<quint8> &lines);
    void removeFromGroups(quint8 line);
    /// Services and signals are read again when they are needed.
    void forgetServicesAndSignals();

    /// Gives the table an index over its key columns, so that a writer finds its row at once, when
    /// a connection writes to it often. The project's file gets none: dropKeyIndexes() takes them
    /// away before a save.
    void addKeyIndex(const QString &table, const QString &keyColumns);
    void dropKeyIndexes();

    // --- settings (objectdatabase_settings.cpp) ---

    QHash<QString, QString> &settings(SettingsStore store);
    bool writeSetting(SettingsStore store, const QString &key, const QString &value);
    bool removeSetting(SettingsStore store, const QString &key);
    QString descriptionKey(const QString &key) const;
    void forgetSettings();

    ObjectDataBase *owner;
    QSqlDatabase db;
    bool isBorrowed = false; ///< the connection is not ours to close
    QString connectionName;
    QString databaseFile; ///< the temporary file that the connection works on
    QString lastError;
    QString projectFile;
    ProjectFile::State sourceState; ///< of the project file, when it was read or saved last
    TemporaryFiles temporaryFiles;
    QStringList sqlResultLines;
    QPair<QString, QString> lastEscape; ///< of escapedText()
    QPair<QString, QString> tempMetadata;
    std::optional<SavedObject> savedObject;
    quint8 descriptionLine = 0;
    /// A statement failed because the file is no sound database or the disk is full: what the store
    /// holds is not the project any more, and must not replace the user's file.
    bool damaged = false;
    /// The project file could not be read as one; saving it would destroy what the user has in it.
    bool sourceUnreadable = false;
    int firstCommentLine = 0;    ///< of the project file; 0 if there is none
    QString unreadPart;          ///< of it, where it is known: what the user has to mend
    QString failure;             ///< the driver's text of the last statement that failed
    QSet<QString> tablesOfToday; ///< of a project that is being opened; see Schema::isAsToday()

    std::atomic<bool> lockWriteAccess{false};
    std::atomic<bool> blockUpdates{false};
    mutable QMutex blockMutex;
    QList<quintptr> blockingThreads;
    int batchDepth = 0;

    QHash<QString, QSqlQuery> prepared; ///< by their text; lent to a Statement while it lives
    SqliteConnection sqlite;            ///< of db, for RowReaders
    QHash<int, RowInserter> inserters;  ///< by kind and line
    QHash<QString, int> keyWrites;      ///< by table; see addKeyIndex()
    QHash<QString, int> stringIds;      ///< the first of equal rows; see idsOfStrings()
    QHash<int, QString> strings;
    bool stringsComplete = false; ///< the map holds all rows of the table
    bool stringIdsComplete = false;
    QHash<quint8, LineCache> cachedSubs;
    QHash<quint32, QString> cachedSubNames; ///< by placeKey()
    QHash<quint8, FrameCache<PgnData, SpnData>> groups;
    QHash<quint8, FrameCache<CanIdData, DataElementData>> identifiers;
    QHash<quint8, QMap<quint8, UdsServiceData>> services; ///< of the lines that were asked for
    std::optional<QMap<qint32, LineSignalData>> allSignals;
    QHash<quint32, quint16> producerTypes; ///< of initPossibleConnectionQuery(), by subKey()
    QHash<quint32, quint16> consumerTypes;
    std::array<QHash<QString, QString>, 5> settingsCache;
    std::array<bool, 5> settingsRead{};
};

/// One run of a prepared statement, forward only. Its text is prepared once a connection. A failure
/// is logged with the statement and the driver's text, and ok() says so.
class Statement
{
public:
    Statement(StorePrivate &store, const QString &sql, const Cells &values = {});
    ~Statement();
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    bool ok() const { return succeeded; } ///< so far: a row further down may fail
    bool next();
    QVariant value(int column) const { return query.value(column); }
    int columnCount() const { return query.record().count(); }
    int insertedRow() const { return query.lastInsertId().toInt(); }
    int affectedRows() const { return query.numRowsAffected(); }

private:
    StorePrivate &store;
    QString text;
    QSqlQuery query;
    bool prepared = false;
    bool succeeded = false;
};

template <class Record>
void StorePrivate::readColumn(const Column<Record> &field, Record &record, const QVariant &cell)
{
    if (field.coding == Coding::StringId)
        field.setText(record, owner->getString(cell.toInt()));
    else
        field.set(record, cell);
}

template <class Record>
void StorePrivate::readColumn(const Column<Record> &field, Record &record, const RowCell &cell)
{
    if (field.coding == Coding::StringId)
        field.setText(record, owner->getString(cell.toInt()));
    else
        field.read(record, cell);
}

template <class Record>
QVariant StorePrivate::cellOf(const Column<Record> &field, const Record &record)
{
    const QVariant cell = field.get(record);
    return field.coding == Coding::StringId ? QVariant(owner->getStringId(cell.toString())) : cell;
}

/// "name,datatype,..." of a record's columns.
template <class Record, size_t N>
const QString &columnList(const Column<Record> (&columns)[N])
{
    // Made once: a record has one table of columns.
    static const QString list = [&columns]() {
        QStringList names;
        for (const Column<Record> &field : columns)
            names << QString::fromLatin1(field.name);
        return names.join(QLatin1Char(','));
    }();
    return list;
}

/// "?,?,?": place holders for that many values.
QString placeHolders(int count);
