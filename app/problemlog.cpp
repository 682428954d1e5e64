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
    QStringList rules = countOfRule.keys();
    std::sort(rules.begin(), rules.end());
    for (const QString &rule : rules) {
        const int more = countOfRule.value(rule) - printedOfRule.value(rule);
        if (more > 0)
            std::fprintf(stderr, "warning: %d more of this kind [%s]\n", more,
                         qUtf8Printable(printableLine(rule)));
    }
    countOfRule.clear();
    printedOfRule.clear();
}

void ProblemLog::take(const Problems::Problem &problem)
{
    all.append(problem);
    const bool isError = problem.level == Problems::Level::Error;
    int &count = countOfRule[problem.rule];
    if (count < (isError ? kMostErrorsOfRule : kMostOfRule)) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(problem.asLine()));
        printedOfRule[problem.rule] += problem.times;
    }
    count += problem.times;
}
