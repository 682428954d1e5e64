// What is wrong in the text form of a project, told with its lines.
#pragma once

#include "formats/initext.h"
#include "support/fileproblems.h"

#include <QString>
#include <QVector>

#include <functional>

/// Collects while a text project is read, and tells in the order of the text when that is done.
/// Lines are counted only for what is told; of a rule that a file breaks all over, that is the
/// first thousand.
class TextProjectProblems
{
public:
    enum class Effect {
        Saved, ///< the store has all that a save needs, or all that one ever wrote
        Lost,  ///< a save would destroy what stands there, and is refused
    };

    /// \a text must outlive this.
    TextProjectProblems(const QString &file, const QByteArray &text);

    /// \a place stands in the text. \a words, a sentence without full stop, is asked for only if it
    /// is told.
    void add(const char *rule, const char *place, Effect effect,
             const std::function<QString()> &words);
    /// Of what is told already, or only means that a save is refused.
    void addLost(const char *place);
    /// Adds the lines that could not be read as such.
    void addFaults(const IniText::Outline &outline);

    /// Number of the line that \a place stands in, for the words about another one.
    int lineOf(const char *place) const { return lines.at(place); }

    /// Once, after all is added.
    void tell();

    /// "line 3", or "lines 3, 7 and 12": what a refused save asks the user to mend; empty if
    /// nothing is lost.
    QString linesToMend() const;

private:
    FileProblems told;
    mutable IniText::LineNumbers lines;
    QVector<const char *> lost; ///< places of what a save would destroy, a thousand at most
};
