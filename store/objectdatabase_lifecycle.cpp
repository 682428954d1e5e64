// Construction, new and opened projects, locks.
#include "store/objectdatabase_p.h"
#include "store/schematext.h"
#include "support/logging.h"
#include "support/problems.h"
#include "support/replacefile.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlRecord>
#include <QThread>

#include <cstdlib>

namespace
{

constexpr int kNewProjectCachePages = 16384;
constexpr int kOpenedProjectCachePages = 1000; // its tables are read from begin to end, mostly
constexpr int kMaxResultColumns = 10;

std::atomic<quint16> instanceCounter{0};

/// Where a search for leaks finds it.
std::atomic<StorePrivate *> abandonedStore{nullptr};

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

void ObjectDataBase::abandon()
{
    d->temporaryFiles.removeAll();
    abandonedStore = d.release();
}

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

bool ObjectDataBase::openDataBase(const QString &file, bool willBeSaved)
{
    d->lastError.clear();
    d->firstCommentLine = 0;
    const ProjectFile::Form form = ProjectFile::formOf(file);
    if (form == ProjectFile::Form::Yaml)
        return fromYaml(file);
    if (form == ProjectFile::Form::Text) {
        fromText(file);
        return true;
    }
    if (file.isEmpty())
        return false;
    d->projectFile = file;
    d->sourceUnreadable = true; // until it has been read
    if (!d->openCopy())
        return false;
    if (!holdsProject())
        return d->refuse("no-project", QStringLiteral("is a database that holds no project"));
    if (!upgradeOpenedProject())
        return d->refuseTool();
    cacheStrings();
    if (willBeSaved)
        d->exec(QStringLiteral("VACUUM"));
    if (d->damaged)
        return d->refuseWorkingCopy(d->failure);
    d->sourceUnreadable = false;
    emit updateNotify(ChangeSet());
    return true;
}

bool StorePrivate::refuse(const char *rule, const QString &text) const
{
    Problems::error(rule, projectFile, text);
    return false;
}

bool StorePrivate::refuseWorkingCopy(const QString &reason) const
{
    return refuse("no-working-copy",
                  QStringLiteral("cannot be held in a temporary copy: %1; XDG_DATA_HOME and TMPDIR "
                                 "tell where that is made")
                      .arg(reason));
}

bool StorePrivate::refuseTool() const
{
    return refuse("wrong-tool",
                  QStringLiteral("was saved by %1 and holds lines that this tool does not know; "
                                 "open it there")
                      .arg(owner->getMiscSettingsValue(QStringLiteral("SaveToolType"))));
}

bool StorePrivate::openCopy()
{
    ProjectFile::Refusal refusal = ProjectFile::whyNoDatabase(projectFile);
    if (refusal.rule)
        return refuse(refusal.rule, refusal.text);
    const ProjectFile::State before = ProjectFile::State::of(projectFile);
    const QString copy = temporaryFiles.create();
    if (copy.isEmpty())
        return refuseWorkingCopy(temporaryFiles.failure());
    QString reason;
    if (!ReplaceFile::copyContents(projectFile, copy, &reason))
        return refuseWorkingCopy(reason);
    sourceState = ProjectFile::State::of(projectFile);
    if (!(sourceState == before) || !ProjectFile::pendingChanges(projectFile).isEmpty())
        return refuse("pending-changes", QStringLiteral("was written by another program while it "
                                                        "was read; run again when that is done"));
    if (!openConnection(copy))
        return refuseWorkingCopy(failure);
    applyPragmas(kOpenedProjectCachePages);
    refusal = whyUnsound();
    return !refusal.rule || refuse(refusal.rule, refusal.text);
}

/// The order counts: to look for damage, SQLite runs what the schema holds.
ProjectFile::Refusal StorePrivate::whyUnsound()
{
    const QString damage = QStringLiteral("is damaged: %1; take the project from its .bak file or "
                                          "another copy");
    exec(QStringLiteral("PRAGMA trusted_schema = OFF"));
    {
        Statement schema(*this, QStringLiteral("select cast(sql as text),name from sqlite_master"));
        while (schema.next()) {
            const QString sql = schema.value(0).toString();
            const QString name = schema.value(1).toString();
            if (Schema::isAsToday(name, sql))
                tablesOfToday.insert(name);
            else if (!SchemaText::isPlain(sql))
                return {"foreign-schema",
                        QStringLiteral("holds views, triggers or expressions in its tables, which "
                                       "no project has, and is not read")};
        }
        if (!schema.ok())
            return {"damaged-project", damage.arg(failure)};
    }
    // Not the quick check: it takes two thirds of the time, and leaves an index that is damaged, in
    // which rows of the project would not be found.
    Statement check(*this, QStringLiteral("PRAGMA integrity_check(1)"));
    const QString result = check.next() ? check.value(0).toString().simplified() : failure;
    if (result == QLatin1String("ok"))
        return {};
    return {"damaged-project", damage.arg(result)};
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

int ObjectDataBase::firstCommentLine() const
{
    return d->firstCommentLine;
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
    d->forgetRows();
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
    d->failure = d->db.lastError().text();
    qCWarning(lcStore) << "commit failed:" << d->failure;
}
