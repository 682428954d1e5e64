// Reader of DBC files, tolerant of what files in the field hold: any order, any blanks, UTF-8 or
// Windows-1252, and statements that nobody knows.
#pragma once

#include "formats/dbcfile.h"
#include "support/fileproblems.h"

#include <QByteArray>
#include <QString>

/// Holds what one file tells. What is odd in it is kept until tellProblems(), with line and column;
/// nothing is left out because it is odd, but what is not understood. Used by one thread at a time.
class DbcReader
{
public:
    /// Some five times what the largest networks need. Records take some ten times the memory of
    /// their text.
    static constexpr qint64 kMostBytes = 64 * 1024 * 1024;

    /// False if the file cannot be read, is larger than kMostBytes, or holds no statement of a DBC
    /// file; whyNotRead() tells then which.
    bool read(const QString &fileName);

    /// The same from bytes; \a origin stands for the file name in problems.
    bool parse(const QByteArray &bytes, const QString &origin);

    const DbcFile &file() const { return content; }

    /// Words that follow a colon; empty if the file was read.
    const QString &whyNotRead() const { return reason; }

    /// Keeps something odd for tellProblems(); see FileProblems.
    void note(const char *rule, const DbcPlace &place, const std::function<QString()> &words) const;

    /// Warns of all that was noted, and forgets it.
    void tellProblems() const;

private:
    DbcFile content;
    QString reason;
    mutable FileProblems problems; ///< what is noted changes nothing of the records
};
