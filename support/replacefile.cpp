// Replaces a user's file in one step.
#include "support/replacefile.h"

#include "support/logging.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
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

/// The place where the new file is made, beside the old one. It is held by a lock, since several
/// builds may save one project at the same time.
class FreshFile
{
public:
    explicit FreshFile(const QString &file) : name(file + QLatin1String(".tessarine-new")) {}
    ~FreshFile()
    {
        if (descriptor < 0)
            return;
        if (!moved)
            QFile::remove(name);
        ::close(descriptor);
    }
    FreshFile(const FreshFile &) = delete;
    FreshFile &operator=(const FreshFile &) = delete;

    /// Takes the place; with \a create, makes an empty file there. False if another run holds it.
    bool take(bool create)
    {
        const int flags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | (create ? O_CREAT : 0);
        descriptor = ::open(QFile::encodeName(name), flags, 0666);
        if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 && isAtItsPlace())
            return true;
        if (descriptor >= 0)
            ::close(descriptor);
        descriptor = -1;
        return false;
    }

    bool takeInTime()
    {
        for (int waited = 0; waited < kLongestWaitMs; waited += kWaitStepMs) {
            if (take(true))
                return true;
            if (errno != EWOULDBLOCK && errno != 0)
                return false; // no such folder, or not writable
            QThread::msleep(kWaitStepMs);
        }
        return false;
    }

    const QString &fileName() const { return name; }

    bool moveTo(const QByteArray &target)
    {
        moved = ::rename(QFile::encodeName(name), target) == 0;
        return moved;
    }

private:
    /// A run that held the lock before may have moved the file away since it was opened.
    bool isAtItsPlace() const
    {
        struct stat opened;
        struct stat named;
        const bool same = ::fstat(descriptor, &opened) == 0 &&
                          ::stat(QFile::encodeName(name), &named) == 0 &&
                          opened.st_ino == named.st_ino && opened.st_dev == named.st_dev;
        errno = 0;
        return same;
    }

    static constexpr int kLongestWaitMs = 10000;
    static constexpr int kWaitStepMs = 20;

    QString name;
    int descriptor = -1;
    bool moved = false;
};

/// A link stays a link; the file that it leads to is the one to replace.
QString linkedFile(const QString &name)
{
    const QFileInfo info(name);
    return info.isSymLink() ? info.canonicalFilePath() : name;
}

} // namespace

bool ReplaceFile::replace(const QString &name, Backup backup,
                          const std::function<bool(const QString &)> &write)
{
    const QString file = linkedFile(name);
    const QFileInfo old(file);
    FreshFile fresh(file);
    // A new file could take the place of one that is protected against writing.
    const bool isProtected = backup == Backup::None && old.exists() && !old.isWritable();
    if (file.isEmpty() || old.isDir() || isProtected || !fresh.takeInTime())
        return false;
    if (!write(fresh.fileName()) || !syncToDisk(fresh.fileName()))
        return false;
    if (old.exists())
        QFile::setPermissions(fresh.fileName(), old.permissions());
    const QByteArray target = QFile::encodeName(file);
    if (backup == Backup::Rename && old.exists())
        keepBackup(target, target + ".bak");
    if (fresh.moveTo(target))
        return true;
    qCWarning(lcStore) << "cannot rename" << fresh.fileName() << "to" << file;
    if (!QFileInfo::exists(file))
        ::rename(target + ".bak", target);
    return false;
}

bool ReplaceFile::write(const QString &name, const QByteArray &content)
{
    return replace(name, Backup::None, [&content](const QString &fresh) {
        QFile file(fresh);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() &&
               file.flush();
    });
}

void ReplaceFile::removeLeftover(const QString &name)
{
    FreshFile leftover(linkedFile(name));
    leftover.take(false); // and its end removes it
}

bool ReplaceFile::copyContents(const QString &source, const QString &target, QString *reason)
{
    QFile from(source);
    QFile to(target);
    const auto failed = [reason](const QFile &file) {
        if (reason)
            *reason = file.fileName() + QLatin1String(": ") + file.errorString();
        return false;
    };
    if (!from.open(QIODevice::ReadOnly))
        return failed(from);
    if (!to.open(QIODevice::WriteOnly))
        return failed(to);
    while (!from.atEnd()) {
        const QByteArray chunk = from.read(kCopyChunkBytes);
        if (chunk.isEmpty())
            return failed(from);
        if (to.write(chunk) != chunk.size())
            return failed(to);
    }
    return to.flush() || failed(to);
}
