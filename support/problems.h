// What a run finds wrong with its files, or cannot do with them: what is said on standard error.
#pragma once

#include <QString>

#include <functional>

/// Any code reports what a user should know besides the report on standard output; the application
/// decides what becomes of it. Thread-safe. Without a handler nothing is said, as in most tests.
namespace Problems
{

enum class Level {
    Error,   ///< something that was asked for was not done
    Warning, ///< it was done, perhaps not as the user meant it
    Note,    ///< what is good to know
};

struct Problem {
    Level level = Level::Warning;
    QString file;   ///< as the user named it, or its path; empty for none
    int line = 0;   ///< from 1; 0 for none
    QString text;   ///< one sentence without its full stop
    QString rule;   ///< words in lower case with hyphens; stays when the text changes
    int column = 0; ///< from 1; 0 for none
    int times = 1;  ///< it stands for so many of its rule

    /// "<file>:<line>: warning: <text> [<rule>]", as compilers write it, on one line.
    QString asLine() const;
};

using Handler = std::function<void(const Problem &)>;

/// Who gets the problems from now on; an empty handler for nobody. Gives the former one.
Handler setHandler(Handler handler);

void report(const Problem &problem);
void error(const char *rule, const QString &file, const QString &text, int line = 0);
void warning(const char *rule, const QString &file, const QString &text, int line = 0);
void note(const char *rule, const QString &file, const QString &text, int line = 0);

} // namespace Problems
