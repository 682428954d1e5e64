// Construction, new and opened projects, locks.
#include "store/objectdatabase_p.h"
#include "support/replacefile.h"
#include "support/logging.h"

#include <QCoreApplication>
#include <QFile>
#include <QSqlError>
#include <QSqlRecord>
#include <QThread>
#include <QtEndian>

#include <cstdlib>

namespace
{

constexpr int kNewProjectCachePages = 16384;
constexpr int kOpenedProjectCachePages = 64000;
constexpr int kMaxResultColumns = 10;

std::atomic<quint16> instanceCounter{0};

/// Does the head of the database file tell of more pages than the file has? SQLite would read what
/// is left as if it were all (its file format, section 1.3).
bool isCutShort(const QString &name)
{
    constexpr int kHeadBytes = 100;
    QFile file(name);
    const QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(kHeadBytes) : QByteArray();
    if (head.size() < kHeadBytes)
        return true;
    const auto number = [&head](int at) { return qFromBigEndian<quint32>(head.constData() + at); };
    const quint32 stored = qFromBigEndian<quint16>(head.constData() + 16);
    const qint64 pageBytes = stored == 1 ? 65536 : stored;
    const bool isCountValid = number(24) == number(92); // no older SQLite wrote last
    return isCountValid && pageBytes * number(28) > file.size();
}

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
    return opened && !d->damaged;
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
    ReplaceFile::removeLeftover(file);
    d->projectFile = file;
    d->sourceUnreadable = false;
    if (isCutShort(copy) || !d->openConnection(copy) || d->hasActiveSchema() || !holdsProject())
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

bool ObjectDataBase::holdsProject() const
{
    const QList<quint8> lines = getNodes();
    if (lines.isEmpty() || d->columnNames(QStringLiteral("Strings")).isEmpty())
        return false;
    const quint8 line = lines.first();
    return !d->columnNames(Schema::table("Objects", line)).isEmpty() ||
           !d->columnNames(Schema::table("PGNs", line)).isEmpty();
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
    d->forgetServicesAndSignals();
    d->forgetStrings();
    clearAllCachedSubs();
    clearAllCachedSpnData();
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
    if (d->batchDepth++ == 0 && !d->db.transaction())
        qCWarning(lcStore) << "no transaction:" << d->db.lastError().text();
}

void ObjectDataBase::commitBatch()
{
    if (d->batchDepth == 0 || --d->batchDepth > 0 || d->db.commit())
        return;
    // The disk is full, say: what was written since beginBatch() is not in the file.
    d->damaged = true;
    qCWarning(lcStore) << "commit failed:" << d->db.lastError().text();
}
