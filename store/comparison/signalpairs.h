// Which signals of two frames belong together.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

namespace SignalPairs
{

/// A signal of the newer frame.
struct Pair {
    int older = -1;       ///< its place in the older frame; -1: it is new
    bool isMoved = false; ///< to another place between those that both frames have
};

/// A pair for each signal of \a newer, in their order. A signal has several keys, from the one that
/// tells most to the one that tells least; an empty key tells nothing. Signals with the same first
/// key belong together, in their order, then those of the rest with the same second one, and so on.
/// So a signal between others is just a new one, and few are moved.
QVector<Pair> match(const QVector<QStringList> &older, const QVector<QStringList> &newer);

} // namespace SignalPairs
