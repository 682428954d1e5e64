// The files of projects on disk.
#include "store/projectfile.h"

#include "support/filereasons.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QtEndian>

#include <fcntl.h>
#include <sys/stat.h>

namespace
{

// SQLite's file format, section 1.3.
constexpr int kHeadBytes = 100;
constexpr int kTextHeadBytes = 4096; ///< with the first group of a text project
const QByteArray kMagic("SQLite format 3\0", 16);

/// The size that the head of a database names, in bytes; 0 if an older SQLite wrote last, which
/// leaves the count of pages as it was.
qint64 bytesByHead(const QByteArray &head)
{
    const auto number = [&head](int at) { return qFromBigEndian<quint32>(head.constData() + at); };
    const quint32 stored = qFromBigEndian<quint16>(head.constData() + 16);
    const qint64 pageBytes = stored == 1 ? 65536 : stored;
    return number(24) == number(92) ? pageBytes * number(28) : 0;
}

/// SQLite locks this byte of a file for as long as a change is under way, also while its journal
/// says nothing yet.
bool isBeingChanged(const QString &name)
{
    constexpr off_t kReservedByte = 0x40000001;
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = kReservedByte;
    lock.l_len = 1;
    QFile file(name);
    return file.open(QIODevice::ReadOnly) && ::fcntl(file.handle(), F_GETLK, &lock) == 0 &&
           lock.l_type != F_UNLCK;
}

/// A journal without its first byte is one of a change that was finished.
bool holdsChanges(const QString &companion)
{
    const QFileInfo info(companion);
    if (!info.isFile() || info.size() == 0)
        return false;
    QFile file(companion);
    char first = 1; // what cannot be read may hold anything
    return !companion.endsWith(QLatin1String("-journal")) || !file.open(QIODevice::ReadOnly) ||
           !file.getChar(&first) || first != 0;
}

} // namespace

QString ProjectFile::pendingChanges(const QString &file)
{
    const QFileInfo info(file);
    const QString name = info.isSymLink() ? info.canonicalFilePath() : file;
    for (const char *suffix : {"-wal", "-journal"}) {
        const QString companion = name + QLatin1String(suffix);
        if (holdsChanges(companion))
            return QStringLiteral("%1 beside it holds changes that are not in it yet; close it in "
                                  "the editor that has it open, or if that was killed, open and "
                                  "close it there once")
                .arg(QFileInfo(companion).fileName());
    }
    if (isBeingChanged(name))
        return QStringLiteral("an editor has begun a change of it; save or close it there");
    return QString();
}

ProjectFile::Form ProjectFile::formOf(const QString &file)
{
    if (file.endsWith(QLatin1String("tsrt")))
        return Form::Text;
    for (const char *end : {".yaml", ".yml"}) {
        if (file.endsWith(QLatin1String(end), Qt::CaseInsensitive))
            return Form::Yaml;
    }
    return file.endsWith(QLatin1String(".tsrp")) ? Form::Database : Form::Other;
}

ProjectFile::Refusal ProjectFile::whyNoDatabase(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly))
        return {"not-read", QStringLiteral("cannot be read: %1").arg(file.errorString())};
    const QByteArray head = file.read(kHeadBytes);
    if (head.isEmpty())
        return {"no-project", QStringLiteral("is empty, and so no project")};
    if (!head.startsWith(kMagic.left(head.size())))
        return {"no-project",
                QStringLiteral("is no project: it is no SQLite database, and the "
                               "name of a text project ends in tsrt, of one in YAML in .yaml")};
    if (head.size() < kHeadBytes || bytesByHead(head) > file.size())
        return {"damaged-project",
                QStringLiteral("is cut short: only the first %1 bytes of it are there; take the "
                               "project from its .bak file or another copy")
                    .arg(file.size())};
    const QString changes = pendingChanges(name);
    if (!changes.isEmpty())
        return {"pending-changes", QStringLiteral("is not read: ") + changes};
    return {};
}

ProjectFile::Refusal ProjectFile::whyNoYaml(const QString &name)
{
    static const QRegularExpression group(QStringLiteral(
        "\\A(?:[ \\t]*(?:[;#][^\\r\\n]*)?[\\r\\n])*+\\[[A-Za-z0-9]+\\][ \\t]*[\\r\\n]"));
    QFile file(name);
    if (!FileReasons::whyNotReadable(name).isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray head = file.read(kTextHeadBytes);
    if (head.startsWith(kMagic))
        return {"no-project", QStringLiteral("is a database: give it a name that ends in .tsrp")};
    if (group.match(QString::fromUtf8(head)).hasMatch())
        return {"no-project",
                QStringLiteral("is a text project: give it a name that ends in .tsrt")};
    return {};
}

ProjectFile::State ProjectFile::State::of(const QString &file)
{
    State result;
    struct stat status;
    if (::stat(QFile::encodeName(file), &status) != 0)
        return result;
    result.device = status.st_dev;
    result.inode = status.st_ino;
    result.size = status.st_size;
    result.changed = status.st_mtim;
    return result;
}

bool ProjectFile::State::operator==(const State &other) const
{
    return device == other.device && inode == other.inode && size == other.size &&
           changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
}
