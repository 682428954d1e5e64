// Texts of rows.
#include "generators/overview/facts.h"

#include <cstddef>

int Overview::Texts::numberOf(const QString &text)
{
    if (text.isEmpty())
        return 0;
    const auto place = quintptr(text.constData()) / alignof(std::max_align_t);
    Recent &last = recent[place % recent.size()];
    if (last.text.constData() != text.constData() || last.text.size() != text.size())
        last = {text, lookUp(text)};
    return last.number;
}

int Overview::Texts::lookUp(const QString &text)
{
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
