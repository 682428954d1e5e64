// What is wrong in a YAML file, with line and column.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// A place in a file; both from 1, columns in characters. 0 is no place.
struct YamlPlace {
    int line = 0;
    int column = 0;
};

/// Collects errors while a file is read and what it holds is looked at, and tells them in the order
/// of the file. What is found beyond the first kMost is not taken.
class YamlProblems
{
public:
    static constexpr int kMost = 50;

    explicit YamlProblems(const QString &fileName) : file(fileName) {}

    /// \a text is a sentence without full stop. The same text for the same place, as from a map
    /// that aliases bring in several times, is taken once.
    void add(const char *rule, YamlPlace place, const QString &text);

    bool isEmpty() const { return entries.isEmpty(); }
    int count() const { return entries.size(); }
    /// Nothing more is taken: who reads may stop.
    bool isFull() const { return entries.size() >= kMost; }

    /// "<line>:<column>: <text>", in the order of the file.
    QStringList lines() const;

    /// Tells all that was collected, and forgets it.
    void tell();

    const QString &fileName() const { return file; }

private:
    struct Entry {
        const char *rule;
        YamlPlace place;
        QString text;
    };

    QVector<Entry> sorted() const;

    QString file;
    QVector<Entry> entries;
};
