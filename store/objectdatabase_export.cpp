// Writing the project to a file that is not its own, in the form of that file's name.
#include "store/databasetextconverter.h"
#include "store/objectdatabase_p.h"
#include "support/filereasons.h"
#include "support/logging.h"
#include "support/printable.h"
#include "support/replacefile.h"

#include <QFile>
#include <QFileInfo>

namespace
{

constexpr int kCopyCachePages = 64000;

bool holdsSameBytes(const QString &file, const QString &other)
{
    QFile one(file);
    QFile two(other);
    return one.open(QIODevice::ReadOnly) && two.open(QIODevice::ReadOnly) &&
           one.size() == two.size() && one.readAll() == two.readAll();
}

QString copyFailed(const QString &failure)
{
    return QStringLiteral("the temporary copy of the project failed (%1)").arg(failure);
}

} // namespace

bool ObjectDataBase::exportProject(const QString &file, bool keepsUnchanged)
{
    d->lastError = d->whyNotExported(file);
    if (!d->lastError.isEmpty())
        return false;
    // What a form puts right before it is written is put right in this copy.
    ObjectDataBase copy;
    if (copy.d->takeCopyOf(*d) && copy.writeExport(file, keepsUnchanged))
        return true;
    d->lastError = copy.d->lastError;
    qCWarning(lcStore) << "not exported:" << file << d->lastError;
    return false;
}

QString StorePrivate::whyNotExported(const QString &file) const
{
    if (damaged || batchDepth > 0)
        return copyFailed(failure);
    if (!sourceUnreadable)
        return FileReasons::whyNotWritable(file);
    const QString mend = unreadPart.isEmpty() ? QString() : QStringLiteral("; mend ") + unreadPart;
    return QStringLiteral("it would lack what was not understood in %1%2")
        .arg(quotedWord(QFileInfo(projectFile).fileName()), mend);
}

bool StorePrivate::takeCopyOf(const StorePrivate &other)
{
    const QString file = temporaryFiles.create();
    if (file.isEmpty())
        lastError = copyFailed(temporaryFiles.failure());
    if (file.isEmpty() || !ReplaceFile::copyContents(other.databaseFile, file, &lastError))
        return false;
    if (!openConnection(file)) {
        lastError = copyFailed(failure);
        return false;
    }
    applyPragmas(kCopyCachePages);
    keyWrites = other.keyWrites; // the copy has those indexes, too
    return true;
}

bool ObjectDataBase::writeExport(const QString &file, bool keepsUnchanged)
{
    beginBatch();
    delNode(254);
    delNode(255);
    cleanUpStrings();
    noteSavingTool();
    d->dropKeyIndexes();
    commitBatch();
    const ProjectFile::Form form = ProjectFile::formOf(file);
    bool isUnchanged = false;
    const auto write = [&](const QString &fresh) {
        if (!writeForm(form, fresh))
            return false;
        if (form == ProjectFile::Form::Database) // of an editor that has the old one open
            d->lastError = ProjectFile::pendingChanges(file);
        isUnchanged = d->lastError.isEmpty() && keepsUnchanged && holdsSameBytes(file, fresh);
        return d->lastError.isEmpty() && !isUnchanged;
    };
    return ReplaceFile::replace(file, ReplaceFile::Backup::None, write, &d->lastError) ||
           isUnchanged;
}

bool ObjectDataBase::writeForm(ProjectFile::Form form, const QString &file)
{
    bool isWritten = false;
    if (form == ProjectFile::Form::Text) {
        DatabaseTextConverter converter;
        converter.setObjectDatabase(this);
        converter.setTextOutputFile(file);
        isWritten = converter.convertSqlToText();
        d->lastError = converter.outputError();
    } else if (form == ProjectFile::Form::Yaml) {
        isWritten = d->writeYaml(file);
    } else {
        // So that the file holds nothing any more of what was removed from the project.
        isWritten = d->exec(QStringLiteral("VACUUM")) &&
                    ReplaceFile::copyContents(d->databaseFile, file, &d->lastError);
    }
    if (d->damaged)
        d->lastError = copyFailed(d->failure);
    return isWritten && !d->damaged;
}
