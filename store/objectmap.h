// What a line has by object. A run asks for objects far more often than it changes them: an object
// is found at its place, without a search through a tree.
#pragma once

#include <QtGlobal>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

/// Values by object index, ascending. Iterators and pointers to values last until the next change.
template <class Value>
class ObjectMap
{
    struct Entry {
        quint16 index;
        Value value;
    };

public:
    using key_type = quint16;

    class const_iterator
    {
    public:
        quint16 key() const { return map->pages[page][place].index; }
        const Value &operator*() const { return map->pages[page][place].value; }
        const Value *operator->() const { return &**this; }
        const_iterator &operator++()
        {
            ++place;
            skipEnds();
            return *this;
        }
        bool operator==(const const_iterator &other) const
        {
            return page == other.page && place == other.place;
        }
        bool operator!=(const const_iterator &other) const { return !(*this == other); }

    private:
        friend ObjectMap;
        const_iterator(const ObjectMap *objectMap, size_t pageNumber, size_t placeInPage)
            : map(objectMap), page(pageNumber), place(placeInPage)
        {
            skipEnds();
        }
        void skipEnds()
        {
            for (; page < kPages && place == map->pages[page].size(); ++page)
                place = 0;
        }

        const ObjectMap *map;
        size_t page;
        size_t place;
    };

    const_iterator begin() const { return const_iterator(this, 0, 0); }
    const_iterator end() const { return const_iterator(this, kPages, 0); }
    const_iterator constBegin() const { return begin(); }
    const_iterator constEnd() const { return end(); }
    const_iterator lowerBound(quint16 index) const
    {
        return const_iterator(this, pageOf(index), placeOf(pages[pageOf(index)], index));
    }

    /// Null if there is no such object.
    const Value *find(quint16 index) const
    {
        const Page &page = pages[pageOf(index)];
        const size_t place = placeOf(page, index);
        return isAt(page, place, index) ? &page[place].value : nullptr;
    }
    Value *find(quint16 index) { return const_cast<Value *>(std::as_const(*this).find(index)); }
    bool contains(quint16 index) const { return find(index) != nullptr; }

    /// The value, made as a default one if there is none.
    Value &operator[](quint16 index)
    {
        Page &page = pages[pageOf(index)];
        const size_t place = placeOf(page, index);
        if (!isAt(page, place, index))
            page.insert(page.begin() + std::ptrdiff_t(place), Entry{index, Value()});
        return page[place].value;
    }

    void remove(quint16 index)
    {
        Page &page = pages[pageOf(index)];
        const size_t place = placeOf(page, index);
        if (isAt(page, place, index))
            page.erase(page.begin() + std::ptrdiff_t(place));
    }

    /// Calls change(value) for each.
    template <class Visitor>
    void changeEach(const Visitor &change)
    {
        for (Page &page : pages) {
            for (Entry &entry : page)
                change(entry.value);
        }
    }

private:
    /// Objects whose indices have the higher byte in common, ascending.
    using Page = std::vector<Entry>;
    static constexpr size_t kPages = 256;

    static size_t pageOf(quint16 index) { return index >> 8; }
    static bool isAt(const Page &page, size_t place, quint16 index)
    {
        return place < page.size() && page[place].index == index;
    }
    /// The place of the first entry from \a index on.
    static size_t placeOf(const Page &page, quint16 index)
    {
        const size_t usual = index & 0xFF; // that of an object in a page without gaps
        if (isAt(page, usual, index))
            return usual;
        if (page.empty() || page.back().index < index)
            return page.size(); // as when objects are read in their order
        const auto place =
            std::lower_bound(page.begin(), page.end(), index,
                             [](const Entry &entry, quint16 key) { return entry.index < key; });
        return size_t(place - page.begin());
    }

    std::array<Page, kPages> pages;
};
