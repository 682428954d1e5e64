// Findings of the check with their place in the project's file.
#pragma once

#include "check/modelchecker.h"
#include "store/projectplaces.h"
#include "support/problems.h"

#include <QVector>

struct LocatedFinding {
    Finding finding;
    int fileLine = 0; ///< of the project's file, from 1; 0 if the form has none or it is not known

    /// What of the project the finding is about: "0x1018:2", "1/0x1018" on line 1, "PGN 65262",
    /// "PGN 65262 SPN 110", "line 1"; empty for the whole project.
    QString object() const;

    /// The message without the word for its kind where level() says the same.
    QString text() const;

    /// An error is what the exit code counts as one, however it is worded.
    Problems::Level level() const;

    /// The finding as a line of standard error, with the object before the text.
    Problems::Problem asProblem(const QString &file) const;
};

/// Asks \a places for each of them.
QVector<LocatedFinding> locate(const QVector<Finding> &findings, ProjectPlaces &places);
