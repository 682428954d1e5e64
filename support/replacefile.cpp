// Replaces a user's file in one step.
#include "support/replacefile.h"

#include "support/filereasons.h"
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

/// Without this a power failure soon after the rename could leave an empty file in place of the
/// old.
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
bool keepBackup(const QByteArray &file, const QByteArray &backup)
{
    ::unlink(backup);
    return ::link(file, backup) == 0 || ::rename(file, backup) == 0;
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

    /// Empty if it got the place, else why not.
    QString takeInTime()
    {
        for (int waited = 0; waited < kLongestWaitMs; waited += kWaitStepMs) {
            if (take(true))
                return QString();
            if (errno != EWOULDBLOCK && errno != 0) // no such folder, or not writable
                return QStringLiteral("%1, where the new file is made first: %2")
                    .arg(name, FileReasons::ofSystem(errno));
            QThread::msleep(kWaitStepMs);
        }
        return QStringLiteral("another run has been writing it for more than %1 seconds")
            .arg(kLongestWaitMs / 1000);
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

/// Why \a old cannot be replaced; empty if it can be tried.
QString whyNotReplaceable(const QFileInfo &old, ReplaceFile::Backup backup)
{
    if (old.filePath().isEmpty())
        return QStringLiteral("it is no name of a file, or a link to one that is not there");
    if (old.isDir())
        return QStringLiteral("it is a folder");
    // A new file could take the place of one that is protected against writing.
    const bool isProtected =
        backup == ReplaceFile::Backup::None && old.exists() && !old.isWritable();
    return isProtected ? QStringLiteral("there is no permission to write it") : QString();
}

/// All bytes at once, where the kernel can copy between the two file systems; false, and the target
/// may hold a part of them, where it cannot.
bool copyInKernel(QFile &from, QFile &to)
{
    constexpr size_t kMostBytes = 1 << 30; // of a call
    ssize_t copied = 0;
    bool isAny = false; // files that the kernel makes up seem empty to it
    while ((copied =
                ::copy_file_range(from.handle(), nullptr, to.handle(), nullptr, kMostBytes, 0)) > 0)
        isAny = true;
    return isAny && copied == 0;
}

} // namespace

bool ReplaceFile::replace(const QString &name, Backup backup,
                          const std::function<bool(const QString &)> &write, QString *reason)
{
    const auto refuse = [reason](const QString &why) {
        if (reason && reason->isEmpty())
            *reason = why;
        return false;
    };
    const QString file = linkedFile(name);
    const QFileInfo old(file);
    FreshFile fresh(file);
    QString obstacle = whyNotReplaceable(old, backup);
    if (obstacle.isEmpty())
        obstacle = fresh.takeInTime();
    if (!obstacle.isEmpty())
        return refuse(obstacle);
    if (!write(fresh.fileName()) || (old.exists() && !syncToDisk(fresh.fileName())))
        return refuse(FileReasons::ofSystem(errno));
    if (old.exists())
        QFile::setPermissions(fresh.fileName(), old.permissions());
    const QByteArray target = QFile::encodeName(file);
    const QString backupName = file + QLatin1String(".bak");
    if (backup == Backup::Rename && old.exists() &&
        !keepBackup(target, QFile::encodeName(backupName))) {
        const QString why = FileReasons::ofSystem(errno);
        return refuse(QStringLiteral("%1, where the former state is kept: %2")
                          .arg(backupName, QFileInfo(backupName).isDir()
                                               ? QStringLiteral("it is a folder")
                                               : why));
    }
    if (fresh.moveTo(target))
        return true;
    const QString why = FileReasons::ofSystem(errno);
    qCWarning(lcStore) << "cannot rename" << fresh.fileName() << "to" << file;
    if (!QFileInfo::exists(file))
        ::rename(target + ".bak", target);
    return refuse(why);
}

bool ReplaceFile::write(const QString &name, const QByteArray &content, QString *reason)
{
    const auto write = [&content, reason](const QString &fresh) {
        QFile file(fresh);
        const bool isDone = file.open(QIODevice::WriteOnly) &&
                            file.write(content) == content.size() && file.flush();
        if (!isDone && reason)
            *reason = file.errorString();
        return isDone;
    };
    return replace(name, Backup::None, write, reason);
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
    if (copyInKernel(from, to))
        return true;
    from.seek(0);
    to.seek(0);
    while (!from.atEnd()) {
        const QByteArray chunk = from.read(kCopyChunkBytes);
        if (chunk.isEmpty())
            return failed(from);
        if (to.write(chunk) != chunk.size())
            return failed(to);
    }
    return to.flush() || failed(to);
}
