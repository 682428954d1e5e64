// What of a DBC file a project cannot hold: told once for each kind, with the number and the first
// place.
#pragma once

#include "formats/dbcfile.h"

#include <QString>

#include <array>
#include <utility>

/// Counts what is taken otherwise than it stands in the file, or not at all. Lives for one import.
class DbcTally
{
public:
    enum class Kind {
        // Messages
        LooseSignals,
        NoSize,
        LongGroup,
        LongFrame,
        StandardIdentifier,
        ShortExtendedIdentifier,
        GroupOfStack,
        SameGroup,
        NoRoom,
        NeedsCanFd,
        LongCycle,
        // Signals
        NoBits,
        BeyondFrame,
        Multiplexed,
        Overlapping,
        BigEndian,
        SignedAsUnsigned,
        OctetString,
        InParts,
        Scaled,
        StartValue,
        NameOfGap,
        NoSpn,
        UnfitSpn,
        // Nodes
        NameValue,
        Count,
    };

    void add(Kind kind, const DbcMessage &message) { add(kind, message.place, message, nullptr); }
    void add(Kind kind, const DbcMessage &message, const DbcSignal &signal)
    {
        add(kind, signal.place, message, &signal);
    }
    /// Of a part of a node's NAME.
    void add(Kind kind, const DbcNode &node, const QString &attribute);

    /// In the order of the first places.
    void tell(const QString &fileName) const;

private:
    struct Entry {
        int count = 0;
        DbcPlace first;
        QString name; ///< of what stands there
    };

    void add(Kind kind, const DbcPlace &place, const DbcMessage &message, const DbcSignal *signal);
    Entry &entryOf(Kind kind) { return entries[static_cast<size_t>(kind)]; }

    std::array<Entry, static_cast<size_t>(Kind::Count)> entries;
};
