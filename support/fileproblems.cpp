// Collecting of warnings about a file.
#include "support/fileproblems.h"

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
    add({rule, Problems::Level::Warning, line, column, QString()}, words);
}

void FileProblems::addNote(const char *rule, int line, const std::function<QString()> &words)
{
    add({rule, Problems::Level::Note, line, 0, QString()}, words);
}

void FileProblems::add(const Entry &place, const std::function<QString()> &words)
{
    Count &count = counts[place.rule];
    count.level = place.level;
    if (++count.times > kMostOfRule)
        return;
    entries.append(place);
    entries.last().words = words();
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
        Problems::report({entry.level, file, entry.line, entry.words,
                          QString::fromLatin1(entry.rule), entry.column});
    for (auto count = counts.constBegin(); count != counts.constEnd(); ++count) {
        const int more = count->times - kMostOfRule;
        if (more > 0)
            Problems::report({count->level, file, 0,
                              QStringLiteral("there are %1 more lines like those before").arg(more),
                              QString::fromLatin1(count.key()), 0, more});
    }
    begin(file);
}
