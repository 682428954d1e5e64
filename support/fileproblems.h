// What is wrong in a file that is read line by line.
#pragma once

#include "support/problems.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVector>

#include <functional>

/// Collects warnings and notes while a file is read, and tells them in the order of its lines when
/// that is done. Of a rule that a file breaks all over, that is the first thousand.
class FileProblems
{
public:
    /// Forgets what was collected; from now on of \a fileName.
    void begin(const QString &fileName);

    /// \a words, a sentence without full stop, is asked for only if it is told.
    void add(const char *rule, int line, const std::function<QString()> &words)
    {
        add(rule, line, 0, words);
    }

    /// The same with a column, from 1; 0 for none.
    void add(const char *rule, int line, int column, const std::function<QString()> &words);

    /// A note instead of a warning; all of a rule are of one level.
    void addNote(const char *rule, int line, const std::function<QString()> &words);

    /// Of what is beyond the first thousand, and was only counted.
    void addUntold(const char *rule, int count) { counts[rule].times += count; }

    /// Tells all that was collected, and forgets it.
    void tell();

private:
    struct Entry {
        const char *rule;
        Problems::Level level;
        int line;
        int column;
        QString words;
    };

    /// How often a rule was broken.
    struct Count {
        int times = 0;
        Problems::Level level = Problems::Level::Warning;
    };

    void add(const Entry &place, const std::function<QString()> &words);

    QString file;
    QVector<Entry> entries;
    QMap<QByteArray, Count> counts; ///< by rule
};
