// Replaces a user's file in one step.
#include "store/replacefile.h"

#include "support/logging.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace
{

constexpr qint64 kCopyChunkBytes = 1 << 20;

/// Without this a power failure soon after the rename could leave an empty file under the new name.
bool syncToDisk(const QString &file)
{
    const int descriptor = ::open(QFile::encodeName(file), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool done = ::fsync(descriptor) == 0;
    ::close(descriptor);
    return done;
}

/// Keeps \a file as \a backup. A second name for the same file leaves no moment without \a file;
/// where the file system has no such links, the file is renamed and is complete as backup
/// meanwhile.
void keepBackup(const QByteArray &file, const QByteArray &backup)
{
    ::unlink(backup);
    if (::link(file, backup) != 0)
        ::rename(file, backup);
}

} // namespace

bool ReplaceFile::replace(const QString &name, Backup backup,
                          const std::function<bool(const QString &)> &write)
{
    // A link stays a link; the file that it leads to is the one to replace.
    const QString file = QFileInfo(name).isSymLink() ? QFileInfo(name).canonicalFilePath() : name;
    // One fixed name, so that what a killed run left is overwritten by the next save.
    const QString fresh = file + QLatin1String(".new");
    QFile::remove(fresh);
    const QFileInfo old(file);
    if (file.isEmpty() || old.isDir() || !write(fresh) || !syncToDisk(fresh)) {
        QFile::remove(fresh);
        return false;
    }
    if (old.exists())
        QFile::setPermissions(fresh, old.permissions());
    const QByteArray target = QFile::encodeName(file);
    if (backup == Backup::Rename && old.exists())
        keepBackup(target, target + ".bak");
    if (::rename(QFile::encodeName(fresh), target) == 0)
        return true;
    qCWarning(lcStore) << "cannot rename" << fresh << "to" << file;
    if (!QFileInfo::exists(file))
        ::rename(target + ".bak", target);
    QFile::remove(fresh);
    return false;
}

bool ReplaceFile::copyContents(const QString &source, const QString &target)
{
    QFile from(source);
    QFile to(target);
    if (!from.open(QIODevice::ReadOnly) || !to.open(QIODevice::WriteOnly))
        return false;
    while (!from.atEnd()) {
        const QByteArray chunk = from.read(kCopyChunkBytes);
        if (chunk.isEmpty() || to.write(chunk) != chunk.size())
            return false;
    }
    return to.flush();
}
