// Leaves files alone that would be rewritten with only another date, so that nothing is built
// again.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <ctime>

class QFile;

/// One for a run; the generators, which work one at a time, tell it which files they write.
class UnchangedFiles
{
public:
    /// Opens \a file for writing, in memory: a file that is kept is never touched, so that a run
    /// that is killed does not cost it. Of a file that is written twice in a run, the state before
    /// the run counts. False if the file on disk could not be written.
    bool open(QFile &file);

    /// The name that \a file had before open().
    QString targetOf(const QFile &file) const;

    /// Writes what \a file holds to disk, unless only lines that say when differ from what stood
    /// there before the run. False if that fails.
    bool commit(QFile &file);

    /// True if the file need not be written at all: it differs from \a content in such lines only.
    bool keep(const QString &path, const QByteArray &content) const;

    /// Why the last call of open() or commit() gave false.
    QString errorString() const { return error; }

private:
    struct Former {
        QByteArray content;
        timespec modified;
        bool isOverwritten = false; ///< in this run
    };

    QHash<QString, Former> formerFiles;    ///< by path
    QHash<const QFile *, QString> targets; ///< paths of the files that were opened
    QString error;
};
