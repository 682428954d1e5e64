// The one way in which statements of the store run.
#include "store/objectdatabase_p.h"
#include "support/logging.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QThread>

namespace
{

constexpr int kBlockPollMs = 5;

/// A project with many lines uses some statements for each; above this number they are made anew.
constexpr int kMaxPrepared = 2000;

// SQLite result codes after which a database is not to be trusted any more.
constexpr int kUnsound[] = {10 /* IOERR */, 11 /* CORRUPT */, 13 /* FULL */, 26 /* NOTADB */};

} // namespace

QString placeHolders(int count)
{
    QString result = QStringLiteral("?,").repeated(count);
    result.chop(1);
    return result;
}

bool StorePrivate::openConnection(const QString &file)
{
    closeConnection();
    SqliteConnection::beginUse();
    databaseFile = file;
    db.setDatabaseName(file);
    // An empty name would open a private database in memory that nothing could be saved from.
    if (!file.isEmpty() && db.open()) {
        sqlite.open(db);
        return true;
    }
    failure = db.lastError().text();
    qCWarning(lcStore) << "cannot open" << file << failure;
    return false;
}

void StorePrivate::closeConnection()
{
    prepared.clear();
    sqlite.close();
    inserters.clear();
    keyWrites.clear();
    if (!isBorrowed)
        db.close();
    isBorrowed = false;
    damaged = false;
    batchDepth = 0;
    savedObject.reset(); // its signals are those of this project
    producerTypes.clear();
    consumerTypes.clear();
    tablesOfToday.clear();
    forgetRows();
}

void StorePrivate::borrowConnection(const QSqlDatabase &connection)
{
    closeConnection();
    db = connection;
    isBorrowed = true;
}

void StorePrivate::forgetRows()
{
    forgetStrings();
    forgetSettings();
    forgetServicesAndSignals();
    cachedSubs.clear();
    cachedSubNames.clear();
    groups.clear();
    identifiers.clear();
}

void StorePrivate::applyPragmas(int cacheSize)
{
    // The file is a throw-away copy, so nothing is lost by doing without journal and syncing. No
    // other program makes it shorter, so it can be read where the system keeps it.
    for (const QString &pragma :
         {QStringLiteral("PRAGMA page_size = 4096"),
          QStringLiteral("PRAGMA cache_size = %1").arg(cacheSize),
          QStringLiteral("PRAGMA mmap_size = 268435456"),
          QStringLiteral("PRAGMA temp_store = MEMORY"), QStringLiteral("PRAGMA journal_mode = OFF"),
          QStringLiteral("PRAGMA locking_mode = EXCLUSIVE"),
          QStringLiteral("PRAGMA synchronous  = OFF")})
        exec(pragma);
}

bool StorePrivate::exec(const QString &sql, const Cells &values)
{
    return Statement(*this, sql, values).ok();
}

bool StorePrivate::runPrepared(QSqlQuery &query)
{
    awaitUnblocked();
    const bool done = query.exec();
    if (!done)
        noteFailure(query);
    return done;
}

void StorePrivate::awaitUnblocked()
{
    if (!blockUpdates)
        return;
    const quintptr self = reinterpret_cast<quintptr>(QThread::currentThreadId());
    while (blockUpdates) {
        {
            const QMutexLocker locker(&blockMutex);
            if (blockingThreads.contains(self))
                return;
        }
        QCoreApplication::processEvents();
        QThread::msleep(kBlockPollMs);
    }
}

void StorePrivate::noteFailure(const QSqlQuery &query)
{
    const QSqlError error = query.lastError();
    noteFailure(query.lastQuery(), error.databaseText(), error.nativeErrorCode().toInt());
}

void StorePrivate::noteFailure(const QString &sql, const QString &reason, int code)
{
    failure = reason;
    qCWarning(lcStore) << "statement failed:" << sql << reason;
    for (const int unsound : kUnsound)
        damaged = damaged || (code & 0xFF) == unsound;
}

void StorePrivate::addKeyIndex(const QString &table, const QString &keyColumns)
{
    constexpr int kFirstIndexed = 50; // an index costs as much as some writes without it
    if (++keyWrites[table] != kFirstIndexed)
        return;
    exec(QStringLiteral("create index if not exists KeyOf%1 on %1 (%2)").arg(table, keyColumns));
}

void StorePrivate::dropKeyIndexes()
{
    for (auto table = keyWrites.constBegin(); table != keyWrites.constEnd(); ++table)
        exec(QStringLiteral("drop index if exists KeyOf%1").arg(table.key()));
    keyWrites.clear();
}

QStringList StorePrivate::columnNames(const QString &table)
{
    constexpr int kNameColumn = 1;
    QStringList names;
    QString name = table; // of any kind, in a file that is written as text
    name.replace(QLatin1Char('"'), QLatin1String("\"\""));
    Statement statement(*this, QStringLiteral("PRAGMA table_info(\"%1\")").arg(name));
    while (statement.next())
        names << statement.value(kNameColumn).toString();
    return names;
}

QVector<QStringList> StorePrivate::allRows(const QString &sql)
{
    QVector<QStringList> rows;
    Statement statement(*this, sql);
    const int columns = statement.columnCount();
    while (statement.next()) {
        QStringList row;
        for (int i = 0; i < columns; ++i)
            row << statement.value(i).toString();
        rows << row;
    }
    return rows;
}

Statement::Statement(StorePrivate &privateStore, const QString &sql, const Cells &values)
    : store(privateStore), text(sql), query(privateStore.db)
{
    const auto cached = store.prepared.find(sql);
    if (cached != store.prepared.end()) {
        query = *cached;
        store.prepared.erase(cached); // lent: a nested run of the same text prepares its own
        prepared = true;
    } else {
        query.setForwardOnly(true);
        prepared = query.prepare(sql);
        if (!prepared)
            store.noteFailure(query);
    }
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values.at(i));
    succeeded = prepared && store.runPrepared(query);
}

bool Statement::next()
{
    if (!succeeded || query.next())
        return succeeded;
    succeeded = !query.lastError().isValid();
    if (!succeeded)
        store.noteFailure(query);
    return false;
}

Statement::~Statement()
{
    query.finish(); // a SELECT left half-read locks tables against DROP and VACUUM
    if (!prepared)
        return;
    if (store.prepared.size() >= kMaxPrepared)
        store.prepared.clear();
    store.prepared.insert(text, query);
}
