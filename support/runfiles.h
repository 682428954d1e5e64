// Which files a run has read and written, for builds that want to know what to run it for again.
#pragma once

#include <QString>
#include <QStringList>

/// Takes note of files while it lives; there is at most one at a time. Readers and writers call the
/// static functions, on any thread, when they have read or written a file; without an object
/// nothing becomes of it.
class RunFiles
{
public:
    RunFiles();
    ~RunFiles();
    RunFiles(const RunFiles &) = delete;
    RunFiles &operator=(const RunFiles &) = delete;

    static void noteRead(const QString &path);

    /// Also for a file that was left alone, since it holds already what was to be written.
    static void noteWritten(const QString &path);

    /// Each path once, in the order of the notes.
    QStringList readFiles() const;
    QStringList writtenFiles() const;

private:
    static void note(QStringList RunFiles::*list, const QString &path);

    QStringList read;
    QStringList written;
};
