// How far apart two words are, to find what somebody meant.
#pragma once

#include <QString>

/// The least number of characters to insert, remove, replace, or swap with their neighbour, that
/// turns \a one into \a other. Letters of either case are equal. Time and memory grow with the
/// product of the lengths: not for texts of unknown length.
int editDistance(const QString &one, const QString &other);
