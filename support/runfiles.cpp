// Which files a run has read and written.
#include "support/runfiles.h"

#include <QMutex>

namespace
{

QMutex mutex;
RunFiles *current = nullptr;

} // namespace

RunFiles::RunFiles()
{
    const QMutexLocker lock(&mutex);
    current = this;
}

RunFiles::~RunFiles()
{
    const QMutexLocker lock(&mutex);
    current = nullptr;
}

void RunFiles::noteRead(const QString &path)
{
    note(&RunFiles::read, path);
}

void RunFiles::noteWritten(const QString &path)
{
    note(&RunFiles::written, path);
}

void RunFiles::note(QStringList RunFiles::*list, const QString &path)
{
    const QMutexLocker lock(&mutex);
    if (current && !(current->*list).contains(path))
        (current->*list) << path;
}

QStringList RunFiles::readFiles() const
{
    const QMutexLocker lock(&mutex);
    return read;
}

QStringList RunFiles::writtenFiles() const
{
    const QMutexLocker lock(&mutex);
    return written;
}
