// Why a file cannot be read or written.
#include "support/filereasons.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <sys/stat.h>

namespace
{

/// Why nothing is found at \a path; 0 if something is.
int lookupError(const QString &path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path), &status) == 0 ? 0 : errno;
}

bool isAbsent(int error)
{
    return error == ENOENT || error == ENOTDIR;
}

QString whyNoFile(const QFileInfo &info)
{
    if (info.isDir())
        return QStringLiteral("it is a folder");
    return info.isFile() ? QString() : QStringLiteral("it is a device or a pipe");
}

} // namespace

QString FileReasons::ofSystem(int errorNumber)
{
    return errorNumber == 0 ? QStringLiteral("unknown error") : qt_error_string(errorNumber);
}

QString FileReasons::whyNotReadable(const QString &path)
{
    const QFileInfo info(path);
    const int error = lookupError(path);
    if (isAbsent(error))
        return info.isSymLink() ? QStringLiteral("it is a link to a file that is not there")
                                : QStringLiteral("there is no such file");
    if (error != 0)
        return ofSystem(error);
    const QString reason = whyNoFile(info);
    if (!reason.isEmpty())
        return reason;
    if (!info.isReadable())
        return QStringLiteral("there is no permission to read it");
    QFile file(path);
    char byte = 0;
    const bool isRead =
        file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) && file.read(&byte, 1) >= 0;
    return isRead ? QString() : file.errorString();
}

QString FileReasons::whyNotWritable(const QString &path)
{
    const QFileInfo info(path);
    const int error = lookupError(path);
    if (isAbsent(error))
        return QString();
    if (error != 0)
        return ofSystem(error);
    const QString reason = whyNoFile(info);
    if (!reason.isEmpty())
        return reason;
    return info.isWritable() ? QString() : QStringLiteral("there is no permission to write it");
}
