// The columns in which two records differ.
#include "store/comparison/changedfields.h"

#include <algorithm>

namespace
{

constexpr int kLongest = 160; // characters of a value that stands as it is
constexpr int kBefore = 30;   // of what both have in common before the difference

QString cut(const QString &text, int from)
{
    if (text.size() <= kLongest)
        return text;
    const QString dots = QStringLiteral("...");
    const bool isEnd = from + kLongest >= text.size();
    return (from > 0 ? dots : QString()) + text.mid(from, kLongest) + (isEnd ? QString() : dots);
}

} // namespace

ChangedField ChangedFields::field(const QString &name, const QString &before, const QString &after)
{
    // One of two texts may stand in quotes for what follows the difference.
    const auto startOf = [](const QString &text) {
        return text.begin() + (text.startsWith(QLatin1Char('"')) ? 1 : 0);
    };
    const auto difference =
        std::mismatch(startOf(before), before.end(), startOf(after), after.end());
    const auto from = [](const QString &text, QString::const_iterator place) {
        return std::max(0, int(place - text.begin()) - kBefore);
    };
    return {name, cut(before, from(before, difference.first)),
            cut(after, from(after, difference.second))};
}

bool ChangedFields::isTelling(const YamlColumn &column)
{
    return column.word && !isOneOf(column.word, {"name", "implementation", "pos"}) &&
           !QLatin1String(column.help).startsWith(QLatin1String("Kept for other tools"));
}

bool ChangedFields::isAlwaysTold(const YamlColumn &column)
{
    return column.word && isOneOf(column.word, {"type", "access"});
}
