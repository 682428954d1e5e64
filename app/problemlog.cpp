// Problems on standard error.
#include "app/problemlog.h"

#include "support/printable.h"

#include <QStringList>

#include <algorithm>
#include <cstdio>

namespace
{

constexpr int kMostOfRule = 20;
constexpr int kMostErrorsOfRule = 50; ///< what has to be mended is told in one run

} // namespace

ProblemLog::ProblemLog()
    : formerHandler(
          Problems::setHandler([this](const Problems::Problem &problem) { take(problem); }))
{
}

ProblemLog::~ProblemLog()
{
    (void)Problems::setHandler(formerHandler);
}

void ProblemLog::finish()
{
    QStringList rules = counts.keys();
    std::sort(rules.begin(), rules.end());
    for (const QString &rule : rules) {
        const Count count = counts.value(rule);
        if (count.all > count.printed)
            std::fprintf(stderr, "%s: %d more of this kind [%s]\n",
                         count.isNote ? "note" : "warning", count.all - count.printed,
                         qUtf8Printable(printableLine(rule)));
    }
    counts.clear();
}

void ProblemLog::take(const Problems::Problem &problem)
{
    all.append(problem);
    const bool isError = problem.level == Problems::Level::Error;
    Count &count = counts[problem.rule];
    if (count.all < (isError ? kMostErrorsOfRule : kMostOfRule)) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(problem.asLine()));
        count.printed += problem.times;
    }
    if (count.all == 0)
        count.isNote = problem.level == Problems::Level::Note;
    count.all += problem.times;
}
