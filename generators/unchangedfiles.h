// Spares files that would be written anew with another date only, so that nothing is built again.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <ctime>

/// One for a run; the generators, which work one at a time, tell it which files they write.
class UnchangedFiles
{
public:
    /// Takes down what the file \a path holds, before it is opened for writing. Of a file that is
    /// written twice in a run, the state before the run counts.
    void remember(const QString &path);

    /// Puts the file back as it was remembered, with its time stamp, if what was written differs in
    /// the lines only that tell when. False if that fails.
    bool restore(const QString &path);

    /// True if the file need not be written at all: it differs from \a content in such lines only.
    bool keep(const QString &path, const QByteArray &content) const;

private:
    struct Former {
        QByteArray content;
        timespec modified;
    };

    QHash<QString, Former> formerFiles; ///< by path
};
