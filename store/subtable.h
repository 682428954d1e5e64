// The subindices of a line in memory. Generators walk them object by object, many times in a run,
// so those of an object lie side by side.
#pragma once

#include "store/objectmap.h"
#include "store/records.h"

#include <algorithm>
#include <vector>

/// The subindices of one object, ascending. Iterators are those of a map and last until the next
/// change.
class ObjectMembers
{
    struct Entry {
        quint8 sub;
        SubIndexData data;
    };

public:
    using key_type = quint8;

    class const_iterator
    {
    public:
        explicit const_iterator(const Entry *place) : entry(place) {}
        quint8 key() const { return entry->sub; }
        const SubIndexData &operator*() const { return entry->data; }
        const SubIndexData *operator->() const { return &entry->data; }
        const_iterator &operator++()
        {
            ++entry;
            return *this;
        }
        bool operator==(const const_iterator &other) const { return entry == other.entry; }
        bool operator!=(const const_iterator &other) const { return entry != other.entry; }

    private:
        const Entry *entry;
    };

    const_iterator constBegin() const { return const_iterator(entries.data()); }
    const_iterator constEnd() const { return const_iterator(entries.data() + entries.size()); }
    const_iterator lowerBound(quint8 sub) const
    {
        return const_iterator(entries.data() + placeOf(sub));
    }

    /// Null if there is no such subindex.
    const SubIndexData *find(quint8 sub) const
    {
        const size_t place = placeOf(sub);
        return isAt(place, sub) ? &entries[place].data : nullptr;
    }
    SubIndexData *find(quint8 sub)
    {
        return const_cast<SubIndexData *>(std::as_const(*this).find(sub));
    }

    /// The subindex, made with default values if there is none.
    SubIndexData &operator[](quint8 sub)
    {
        if (entries.capacity() == 0)
            entries.reserve(kUsualCount);
        const size_t place = placeOf(sub);
        if (!isAt(place, sub))
            entries.insert(entries.begin() + std::ptrdiff_t(place), Entry{sub, SubIndexData()});
        return entries[place].data;
    }

    void remove(quint8 sub)
    {
        const size_t place = placeOf(sub);
        if (isAt(place, sub))
            entries.erase(entries.begin() + std::ptrdiff_t(place));
    }

    bool isEmpty() const { return entries.empty(); }

    /// Gives back what was kept for further subindices.
    void shrink() { entries.shrink_to_fit(); }

    template <class Visitor>
    void changeEach(const Visitor &change)
    {
        for (Entry &entry : entries)
            change(entry.data);
    }

private:
    static constexpr size_t kUsualCount = 8; ///< more than most objects have

    size_t placeOf(quint8 sub) const
    {
        // Most objects have their subindices from 0 on without a gap.
        if (isAt(sub, sub))
            return sub;
        const auto place =
            std::lower_bound(entries.begin(), entries.end(), sub,
                             [](const Entry &entry, quint8 key) { return entry.sub < key; });
        return size_t(place - entries.begin());
    }
    bool isAt(size_t place, quint8 sub) const
    {
        return place < entries.size() && entries[place].sub == sub;
    }

    std::vector<Entry> entries;
};

/// The subindices of all objects of a line, ascending by object.
class SubTable
{
public:
    /// The subindices of an object; an empty list if it has none.
    const ObjectMembers &of(quint16 index) const
    {
        static const ObjectMembers none;
        const ObjectMembers *members = objects.find(index);
        return members ? *members : none;
    }

    /// Null if there is no such subindex.
    const SubIndexData *find(quint16 index, quint8 sub) const { return of(index).find(sub); }
    SubIndexData *find(quint16 index, quint8 sub)
    {
        ObjectMembers *members = objects.find(index);
        return members ? members->find(sub) : nullptr;
    }

    /// The subindex, made with default values if there is none.
    SubIndexData &record(quint16 index, quint8 sub)
    {
        // Rows are read in ascending order: the object before this one is complete.
        if (lastIndex < index) {
            if (ObjectMembers *last = objects.find(lastIndex))
                last->shrink();
        }
        lastIndex = index;
        return objects[index][sub];
    }

    void remove(quint16 index, quint8 sub)
    {
        ObjectMembers *members = objects.find(index);
        if (!members)
            return;
        members->remove(sub);
        if (members->isEmpty())
            objects.remove(index);
    }

    void removeObject(quint16 index) { objects.remove(index); }

    /// Calls change(data) for each subindex.
    template <class Visitor>
    void changeEach(const Visitor &change)
    {
        objects.changeEach([&change](ObjectMembers &members) { members.changeEach(change); });
    }

    /// Pairs of index and members, from \a low on.
    auto begin() const { return objects.begin(); }
    auto end() const { return objects.end(); }
    auto from(quint16 low) const { return objects.lowerBound(low); }

private:
    ObjectMap<ObjectMembers> objects;
    quint16 lastIndex = 0; ///< of the object that record() changed
};
