// Texts of rows.
#include "generators/overview/facts.h"

int Overview::Texts::numberOf(const QString &text)
{
    if (text.isEmpty())
        return 0;
    const auto known = numbers.constFind(text);
    if (known != numbers.constEnd())
        return *known;
    const int number = add(text);
    numbers.insert(text, number);
    return number;
}

int Overview::Texts::add(const QString &text)
{
    if (text.isEmpty())
        return 0;
    list.append(text);
    return list.size() - 1;
}
