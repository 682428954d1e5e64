// The problems of a run: on standard error at once, and kept for the report for machines.
#pragma once

#include "support/problems.h"

#include <QHash>
#include <QVector>

/// One for a run, made before the project is opened; takes what is reported while it lives. At most
/// 20 problems of a rule are printed, or 50 if they are errors; finish() prints how many more there
/// were.
class ProblemLog
{
public:
    ProblemLog();
    ~ProblemLog();
    ProblemLog(const ProblemLog &) = delete;
    ProblemLog &operator=(const ProblemLog &) = delete;

    void finish();

    /// All of them, in the order in which they were reported; read by the thread that owns the log.
    const QVector<Problems::Problem> &problems() const { return all; }

private:
    /// Of one rule.
    struct Count {
        int all = 0;
        int printed = 0;
        bool isNote = false; ///< the first of them was
    };

    void take(const Problems::Problem &problem);

    QVector<Problems::Problem> all;
    QHash<QString, Count> counts;
    Problems::Handler formerHandler;
};
