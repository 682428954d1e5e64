// Collecting of errors in YAML files.
#include "formats/yamlproblems.h"

#include "support/problems.h"

#include <algorithm>

void YamlProblems::add(const char *rule, YamlPlace place, const QString &text)
{
    const auto isSame = [&](const Entry &entry) {
        return entry.place.line == place.line && entry.place.column == place.column &&
               entry.text == text;
    };
    if (!isFull() && std::none_of(entries.cbegin(), entries.cend(), isSame))
        entries.append({rule, place, text});
}

QVector<YamlProblems::Entry> YamlProblems::sorted() const
{
    QVector<Entry> result = entries;
    std::stable_sort(result.begin(), result.end(), [](const Entry &a, const Entry &b) {
        return a.place.line != b.place.line ? a.place.line < b.place.line
                                            : a.place.column < b.place.column;
    });
    return result;
}

QStringList YamlProblems::lines() const
{
    QStringList result;
    const QVector<Entry> all = sorted();
    for (const Entry &entry : all)
        result << QStringLiteral("%1:%2: ").arg(entry.place.line).arg(entry.place.column) +
                      entry.text;
    return result;
}

void YamlProblems::tell()
{
    using Problems::Level;
    const QVector<Entry> all = sorted();
    for (const Entry &entry : all)
        Problems::report({Level::Error, file, entry.place.line, entry.text,
                          QLatin1String(entry.rule), entry.place.column});
    if (isFull())
        Problems::report({Level::Note, file, 0,
                          QStringLiteral("only the first %1 errors are told").arg(kMost),
                          QStringLiteral("yaml-more-errors")});
    entries.clear();
}
