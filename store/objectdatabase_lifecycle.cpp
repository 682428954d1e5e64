// Construction, new and opened projects, locks.
#include "store/objectdatabase_p.h"
#include "store/replacefile.h"
#include "support/logging.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlRecord>
#include <QThread>

#include <cstdlib>

namespace
{

constexpr int kNewProjectCachePages = 16384;
constexpr int kOpenedProjectCachePages = 64000;
constexpr int kMaxResultColumns = 10;

std::atomic<quint16> instanceCounter{0};

} // namespace

StorePrivate::StorePrivate(ObjectDataBase *ownerStore)
    : owner(ownerStore), connectionName(QStringLiteral("db%1").arg(++instanceCounter))
{
    // Kept as a handle: looked up by its name, a connection is refused to worker threads.
    db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
    if (!db.lastError().text().trimmed().isEmpty()) {
        qCWarning(lcStore) << "Db drivers: " << QSqlDatabase::drivers();
        qCWarning(lcStore) << "Db last error: " << db.lastError().text();
    }
}

StorePrivate::~StorePrivate()
{
    closeConnection();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(connectionName);
}

ObjectDataBase::ObjectDataBase(QObject *parent)
    : QObject(parent), d(std::make_unique<StorePrivate>(this))
{
    qRegisterMetaType<ObjectDataBase::ChangeSet>("ObjectDataBase::ChangeSet");
    srand(static_cast<unsigned>(reinterpret_cast<quintptr>(QThread::currentThreadId()) ^
                                static_cast<quintptr>(QCoreApplication::applicationPid())));
}

ObjectDataBase::~ObjectDataBase() = default;

bool ObjectDataBase::createNewDataBase()
{
    const bool opened = d->openConnection(d->temporaryFiles.create());
    d->sourceUnreadable = false;
    d->applyPragmas(kNewProjectCachePages);
    beginBatch();
    for (const Schema::TableRow &row : Schema::kTables) {
        if (!d->exec(Schema::createTable(row, false))) {
            qCWarning(lcStore) << "Create" << row.name;
            break; // a table missing in the middle makes no project; the caller sees it at the end
        }
    }
    d->stringsComplete = true;
    addNode(0, NODE_DATA_T());
    emit updateNotify(ChangeSet());
    setMiscSettingsValue(QStringLiteral("CreateToolVersion"),
                         QCoreApplication::applicationVersion());
    setMiscSettingsValue(QStringLiteral("CreateToolName"), QCoreApplication::applicationName());
    setMiscSettingsValue(QStringLiteral("DatabaseVersion"), QString::number(kDatabaseVersion));
    commitBatch();
    return opened;
}

bool ObjectDataBase::openDataBase(const QString &file, bool)
{
    d->lastError.clear();
    if (file.endsWith(QLatin1String("tsrt"))) {
        fromText(file);
        return true;
    }
    if (file.isEmpty())
        return false;
    const QString copy = d->temporaryFiles.create();
    if (!ReplaceFile::copyContents(file, copy))
        qCWarning(lcStore) << "cannot copy" << file << "to" << copy;
    d->projectFile = file;
    d->sourceUnreadable = false;
    if (!d->openConnection(copy) || d->hasActiveSchema() || getNodes().isEmpty())
        return false;
    d->applyPragmas(kOpenedProjectCachePages);
    if (!upgradeOpenedProject())
        return false;
    cacheStrings();
    d->exec(QStringLiteral("VACUUM"));
    if (d->damaged)
        return false;
    emit updateNotify(ChangeSet());
    return true;
}

QString ObjectDataBase::getLastErrorString() const
{
    return d->lastError;
}

QString ObjectDataBase::getProjectFileName() const
{
    return d->projectFile;
}

QString ObjectDataBase::createTempFile()
{
    return d->temporaryFiles.create();
}

void ObjectDataBase::saveTempMetadata(const QString &first, const QString &second)
{
    d->tempMetadata = {first, second};
}

QPair<QString, QString> ObjectDataBase::getTempMetadata() const
{
    return d->tempMetadata;
}

bool ObjectDataBase::executeSql(const QString &sql)
{
    d->sqlResultLines.clear();
    d->awaitUnblocked();
    QSqlQuery query(d->db);
    query.setForwardOnly(true);
    const bool done = query.exec(sql);
    // Free SQL may have written anywhere.
    d->forgetSettings();
    d->forgetStrings();
    clearAllCachedSubs();
    clearCachedSubNames();
    if (!done) {
        d->noteFailure(query);
        d->sqlResultLines << query.lastError().text();
        return false;
    }
    const int columns = qMin(query.record().count(), kMaxResultColumns);
    while (query.next()) {
        QString line;
        for (int i = 0; i < columns; ++i)
            line += query.value(i).toString() + QLatin1Char(' ');
        d->sqlResultLines << line;
    }
    return true;
}

QStringList ObjectDataBase::getSqlResultLines() const
{
    return d->sqlResultLines;
}

bool ObjectDataBase::blockUpdates() const
{
    return d->blockUpdates;
}

void ObjectDataBase::setBlockUpdates(bool block)
{
    const quintptr self = reinterpret_cast<quintptr>(QThread::currentThreadId());
    {
        const QMutexLocker locker(&d->blockMutex);
        if (!block)
            d->blockingThreads.removeOne(self);
        else if (!d->blockingThreads.contains(self))
            d->blockingThreads.append(self);
        d->blockUpdates = block;
    }
    emit blockStateChanged(block);
}

void ObjectDataBase::setLockWriteAccess(bool lock)
{
    d->lockWriteAccess = lock;
    setBlockUpdates(lock);
}

void ObjectDataBase::beginBatch()
{
    if (d->batchDepth++ == 0)
        d->db.transaction();
}

void ObjectDataBase::commitBatch()
{
    if (d->batchDepth > 0 && --d->batchDepth == 0 && !d->db.commit())
        qCWarning(lcStore) << "commit failed:" << d->db.lastError().text();
}
