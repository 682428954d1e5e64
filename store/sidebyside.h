// A walk over two ascending ranges side by side: how two lines, and two projects, are compared.
#pragma once

#include <type_traits>
#include <utility>

namespace SideBySide
{

template <class Iterator, class = void>
struct HasKey : std::false_type {
};
template <class Iterator>
struct HasKey<Iterator, std::void_t<decltype(std::declval<Iterator>().key())>> : std::true_type {
};

/// Of an iterator of Qt, or of one that leads to a pair.
template <class Iterator>
auto keyAt(const Iterator &place)
{
    if constexpr (HasKey<Iterator>::value)
        return place.key();
    else
        return place->first;
}

template <class Iterator>
const auto *valueAt(const Iterator &place)
{
    if constexpr (HasKey<Iterator>::value)
        return &*place;
    else
        return &place->second;
}

/// Calls \a visit for each key, ascending, with the values of both, of which one is null if only
/// the other has the key. Of a key that stands several times the first ones go together, then the
/// second.
template <class Iterator, class Visit>
void walk(Iterator one, Iterator endOfOne, Iterator other, Iterator endOfOther, const Visit &visit)
{
    using Value = decltype(valueAt(one));
    while (one != endOfOne || other != endOfOther) {
        const bool hasOne = one != endOfOne;
        const bool hasOther = other != endOfOther;
        if (!hasOther || (hasOne && keyAt(one) < keyAt(other))) {
            visit(keyAt(one), valueAt(one), Value(nullptr));
            ++one;
        } else if (!hasOne || keyAt(other) < keyAt(one)) {
            visit(keyAt(other), Value(nullptr), valueAt(other));
            ++other;
        } else {
            visit(keyAt(one), valueAt(one), valueAt(other));
            ++one;
            ++other;
        }
    }
}

template <class Map, class Visit>
void walk(const Map &one, const Map &other, const Visit &visit)
{
    walk(one.begin(), one.end(), other.begin(), other.end(), visit);
}

} // namespace SideBySide
