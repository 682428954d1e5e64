// Collecting of warnings about a file.
#include "support/fileproblems.h"

#include "support/problems.h"

#include <algorithm>

namespace
{

constexpr int kMostOfRule = 1000;

} // namespace

void FileProblems::begin(const QString &fileName)
{
    file = fileName;
    entries.clear();
    counts.clear();
}

void FileProblems::add(const char *rule, int line, int column,
                       const std::function<QString()> &words)
{
    if (++counts[rule] <= kMostOfRule)
        entries.append({rule, line, column, words()});
}

void FileProblems::tell()
{
    std::stable_sort(entries.begin(), entries.end(), [](const Entry &a, const Entry &b) {
        return a.line != b.line ? a.line < b.line : a.column < b.column;
    });
    // A reader may come to an entry more than once.
    const auto isSame = [](const Entry &a, const Entry &b) {
        return a.line == b.line && a.column == b.column && a.words == b.words;
    };
    entries.erase(std::unique(entries.begin(), entries.end(), isSame), entries.end());
    for (const Entry &entry : qAsConst(entries))
        Problems::report({Problems::Level::Warning, file, entry.line, entry.words,
                          QString::fromLatin1(entry.rule), entry.column});
    for (auto count = counts.constBegin(); count != counts.constEnd(); ++count) {
        const int more = *count - kMostOfRule;
        if (more > 0)
            Problems::report({Problems::Level::Warning, file, 0,
                              QStringLiteral("there are %1 more lines like those before").arg(more),
                              QString::fromLatin1(count.key()), 0, more});
    }
    begin(file);
}
