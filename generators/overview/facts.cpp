// Texts of rows.
#include "generators/overview/facts.h"

namespace
{

/// Cheaper than a hash, and enough to tell most of the texts of a project apart.
uint sampleOf(const QString &text)
{
    const int size = text.size();
    const auto at = [&text](int place) { return uint(text.at(place).unicode()); };
    return ((at(0) * 31 + at(size / 4)) * 31 + at(size / 2)) * 31 + at(size - 1) + uint(size);
}

} // namespace

int Overview::Texts::numberOf(const QString &text)
{
    if (text.isEmpty())
        return 0;
    int &number = recent[sampleOf(text) % recent.size()];
    const QString &known = list.at(number);
    if (!known.isSharedWith(text) && (known.size() != text.size() || known != text))
        number = add(text);
    return number;
}

int Overview::Texts::add(const QString &text)
{
    if (text.isEmpty())
        return 0;
    list.append(text);
    return list.size() - 1;
}
