// Spares files that would be written anew with another date only, so that nothing is built again.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <ctime>

/// One for a run; the generators, which work one at a time, ask it before they write.
class UnchangedFiles
{
public:
    /// True if the file \a path is to stay as it is, with its time stamp: it differs from
    /// \a content in the lines only that tell when it was generated. Where another generator has
    /// overwritten it in the same run, it is put back.
    bool keep(const QString &path, const QByteArray &content);

private:
    struct Former {
        QByteArray content;
        timespec modified;
    };

    QHash<QString, Former> replaced; ///< what the files held before this run, by path
};
