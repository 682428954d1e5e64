// Saving, exporting, and comparing with the file on disk.
#include "store/databasetextconverter.h"
#include "store/objectdatabase_p.h"
#include "support/logging.h"
#include "support/replacefile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace
{

constexpr quint16 kWizardSourceDelivered = 454;

bool isSameFile(const QString &file, const QString &other)
{
    return file == other || (QFileInfo::exists(file) && QFileInfo(file) == QFileInfo(other));
}

bool holdsSameBytes(const QString &file, const QString &other)
{
    QFile one(file);
    QFile two(other);
    return one.open(QIODevice::ReadOnly) && two.open(QIODevice::ReadOnly) &&
           one.size() == two.size() && one.readAll() == two.readAll();
}

} // namespace

bool ObjectDataBase::saveDataBase(const QString &file)
{
    const QString target = file.isEmpty() ? d->projectFile : file;
    d->lastError.clear();
    switch (ProjectFile::formOf(target)) {
    case ProjectFile::Form::Text:
        return saveDatabaseAsText(target);
    case ProjectFile::Form::Yaml:
        return saveDatabaseAsYaml(target);
    case ProjectFile::Form::Database:
    case ProjectFile::Form::Other:
        break;
    }
    return saveDatabaseAsSql(target);
}

bool ObjectDataBase::mayReplace(const QString &file) const
{
    const bool isLost = d->sourceUnreadable && isSameFile(file, d->projectFile);
    if (!d->damaged && d->batchDepth == 0 && !isLost)
        return true;
    const QString mend =
        d->unreadPart.isEmpty() ? QString() : QStringLiteral("; mend ") + d->unreadPart;
    d->lastError =
        isLost ? QStringLiteral("it holds what was not understood, which would be lost") + mend
               : QStringLiteral("the temporary copy of it failed (%1)").arg(d->failure);
    qCWarning(lcStore) << "not saved:" << file << d->lastError;
    return false;
}

void ObjectDataBase::noteSavingTool()
{
    setMiscSettingsValue(QStringLiteral("SaveToolType"), QCoreApplication::applicationName());
    setMiscSettingsValue(QStringLiteral("SaveToolVersion"), QCoreApplication::applicationVersion());
    setMiscSettingsValue(QStringLiteral("DatabaseVersion"), QString::number(kDatabaseVersion));
}

void ObjectDataBase::resetChangedByUserFlag(quint8 line)
{
    const QString table = Schema::table("SubObjects", line);
    d->exec(QStringLiteral("update %1 set changedbyuser=0 where changedbyuser = 1").arg(table));
    d->exec(QStringLiteral("update %1 set wizardsource=%2 where changedbyuser = 0")
                .arg(table, QString::number(kWizardSourceDelivered)));
    clearCachedSubs(line);
}

bool ObjectDataBase::saveDatabaseAsSql(const QString &file)
{
    const QString target = file.isEmpty() ? d->projectFile : file;
    beginBatch();
    delNode(254);
    delNode(255);
    cleanUpStrings();
    if (QFileInfo(target).completeSuffix().toLower() == QLatin1String("data"))
        resetChangedByUserFlag(0);
    noteSavingTool();
    d->dropKeyIndexes();
    commitBatch();
    if (target.isEmpty() || !mayReplace(target))
        return false;

    const QString source = d->databaseFile;
    const auto copy = [&](const QString &fresh) {
        if (!ReplaceFile::copyContents(source, fresh, &d->lastError))
            return false;
        d->lastError = ProjectFile::pendingChanges(target); // of an editor opened meanwhile
        return d->lastError.isEmpty();
    };
    const bool saved =
        ReplaceFile::replace(target, ReplaceFile::Backup::Rename, copy, &d->lastError);
    if (saved)
        d->noteSaved(target);
    else
        qCWarning(lcStore) << "ERROR copy " << source << "to " << target;
    return saved;
}

void StorePrivate::noteSaved(const QString &target)
{
    projectFile = target;
    sourceState = ProjectFile::State::of(target);
}

bool ObjectDataBase::saveDatabaseAsText(const QString &file)
{
    return saveReadable(file, &ObjectDataBase::toText);
}

bool ObjectDataBase::saveReadable(const QString &file,
                                  bool (ObjectDataBase::*write)(const QString &))
{
    delNode(254);
    delNode(255);
    noteSavingTool();
    if (!mayReplace(file))
        return false;
    if (!isSameFile(file, d->projectFile))
        d->sourceState = ProjectFile::State::of(file); // replacing it is what was asked for
    d->projectFile = file;
    const bool saved = (this->*write)(file);
    if (saved)
        d->noteSaved(file);
    return saved;
}

bool ObjectDataBase::toText(const QString &file)
{
    const auto convert = [&](const QString &fresh) {
        DatabaseTextConverter converter;
        converter.setObjectDatabase(this);
        converter.setTextOutputFile(fresh);
        if (converter.convertSqlToText() && !d->damaged)
            return true;
        d->lastError = d->damaged
                           ? QStringLiteral("the temporary copy of it failed (%1)").arg(d->failure)
                           : converter.outputError();
        return false;
    };
    return d->replaceReadable(file, convert);
}

bool StorePrivate::replaceReadable(const QString &file,
                                   const std::function<bool(const QString &)> &write)
{
    const auto writeAndCompare = [&](const QString &fresh) {
        return write(fresh) && (!isSameFile(file, projectFile) || isAsRead(fresh));
    };
    return ReplaceFile::replace(file, ReplaceFile::Backup::None, writeAndCompare, &lastError);
}

/// Such a project has no backup: what somebody has written since it was read would be gone.
bool StorePrivate::isAsRead(const QString &fresh)
{
    const ProjectFile::State now = ProjectFile::State::of(projectFile);
    if (!now.exists() || now == sourceState || holdsSameBytes(projectFile, fresh))
        return true;
    lastError = QStringLiteral("it was changed after this run had read it; run again");
    return false;
}

bool ObjectDataBase::fromText(const QString &file)
{
    ReplaceFile::removeLeftover(file);
    d->lastError.clear();
    d->projectFile = file;
    d->sourceState = ProjectFile::State::of(file);
    const bool created = createNewDataBase();
    d->sourceUnreadable = true; // until it has been read
    if (!created) {
        const QString reason = d->temporaryFiles.failure();
        return d->refuseWorkingCopy(reason.isEmpty() ? d->failure : reason);
    }
    DatabaseTextConverter converter;
    converter.setObjectDatabase(this);
    converter.setTextInputfile(file);
    const bool converted = converter.convertTextToSql();
    if (!converter.inputError().isEmpty())
        return d->refuse("not-read", QStringLiteral("cannot be read: ") + converter.inputError());
    if (d->damaged)
        return d->refuseWorkingCopy(d->failure);
    d->sourceUnreadable = !converted;
    d->unreadPart = converter.unreadPart();
    emit updateNotify(ChangeSet());
    return true;
}

bool ObjectDataBase::exportDatabase(const QString &file)
{
    if (!saveDatabaseAsSql(file))
        return false;
    const QString working = d->databaseFile;
    d->openConnection(file);
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines) {
        NODE_DATA_T node;
        getNodeData(line, node);
        if (node.edsPath.isEmpty() || node.edsPath.endsWith(QLatin1String("empty.eds")))
            continue;
        node.edsPath = QStringLiteral("./") + QFileInfo(node.edsPath).fileName();
        addNode(line, node);
        QCoreApplication::processEvents();
    }
    return d->openConnection(working);
}

bool ObjectDataBase::isDifferent() const
{
    if (d->projectFile.isEmpty() ||
        QFileInfo(d->projectFile).size() != QFileInfo(d->databaseFile).size())
        return true;
    ObjectDataBase saved;
    saved.openDataBase(d->projectFile, true);
    for (const char *sql : {"select string from Strings", "select * from Signals"}) {
        if (d->allRows(QLatin1String(sql)) != saved.d->allRows(QLatin1String(sql)))
            return true;
    }
    const QList<quint8> lines = getNodes();
    if (lines != saved.getNodes())
        return true;
    for (const quint8 line : lines) {
        NODE_DATA_T mine;
        NODE_DATA_T theirs;
        getNodeData(line, mine);
        saved.getNodeData(line, theirs);
        if (mine != theirs || isDictionaryDifferent(saved, line))
            return true;
    }
    return false;
}

bool ObjectDataBase::isDictionaryDifferent(const ObjectDataBase &other, quint8 line) const
{
    const QList<quint16> indices = getIndices(line, 0, 0xFFFF);
    if (indices != other.getIndices(line, 0, 0xFFFF))
        return true;
    for (const quint16 index : indices) {
        INDEX_DATA_T mine;
        INDEX_DATA_T theirs;
        getIndexData(line, index, mine);
        other.getIndexData(line, index, theirs);
        const QList<quint8> subs = getSubIndices(line, index, 0);
        bool differs = mine != theirs || subs != other.getSubIndices(line, index, 0);
        for (int i = 0; i < subs.size() && !differs; ++i) {
            SUBINDEX_DATA_T mySub;
            SUBINDEX_DATA_T theirSub;
            getSubIndexData(line, index, subs.at(i), mySub);
            other.getSubIndexData(line, index, subs.at(i), theirSub);
            differs = mySub != theirSub;
        }
        if (differs) {
            qCDebug(lcStore) << "differences at " << QString::number(index, 16);
            return true;
        }
    }
    return false;
}
