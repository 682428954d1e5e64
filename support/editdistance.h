// How far apart two words are, to find what somebody meant.
#pragma once

#include <QString>
#include <QStringList>

/// The least number of characters to insert, remove, replace, or swap with their neighbour, that
/// turns \a one into \a other. Letters of either case are equal. Time and memory grow with the
/// product of the lengths: not for texts of unknown length.
int editDistance(const QString &one, const QString &other);

/// The one of \a candidates that \a word may be a slip of: one letter in four is wrong at most.
/// Empty if none is near; never \a word itself.
QString nearestWord(const QString &word, const QStringList &candidates);

/// What a problem says of that word after its sentence: "; did you mean "x"", or nothing.
QString didYouMean(const QString &word, const QStringList &candidates);
