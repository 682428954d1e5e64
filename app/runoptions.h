// The options of the command line: one table of them, and what the user made of them.
#pragma once

#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

/// An option that the tool knows.
struct OptionRow {
    const char *name;
    const char *value; ///< what the word after it is, such as "file"; null: it takes none
    bool isInHelp;     ///< -help lists some options only, which scripts may count on
    const char *meaning;
};

/// All options, in the order of their names.
const QVector<OptionRow> &optionRows();

/// Reads an argument list, the program's path first. Options may stand anywhere. The first one of a
/// name counts, and the word after it is its value, whatever that looks like.
class RunOptions
{
public:
    explicit RunOptions(const QStringList &argumentList) : arguments(argumentList) {}

    bool isEmpty() const { return arguments.size() <= 1; }

    bool has(const char *option) const;

    /// The word after the first \a option; null if there is none.
    QString value(const char *option) const;

    /// The same; false if there is none, then \a text stays.
    bool value(const char *option, QString &text) const;

    /// The words after each \a option, in their order.
    QStringList values(const char *option) const;

    /// The words after each of several options, with their option, in the order of the arguments.
    QVector<QPair<QString, QString>> valuesInOrder(const QStringList &names) const;

    /// Tells of words that have no effect, or perhaps another one than was meant.
    void reportSlips() const;

private:
    /// The positions at which \a option counts as an option that takes a value.
    QVector<int> positionsOf(const OptionRow &option) const;
    QSet<int> reportValues() const;
    void reportValue(const OptionRow &option, int position) const;
    void reportRepeated(const OptionRow &option, int position) const;
    /// \a meant is the option that was perhaps meant; null if there is none.
    void reportUnknown(const QString &word, const OptionRow *meant) const;

    QStringList arguments;
};
