// The findings of a run in a form that build servers and editors read: SARIF 2.1.0 (OASIS).
#pragma once

#include "app/locatedfinding.h"
#include "support/problems.h"

#include <QByteArray>
#include <QString>
#include <QVector>

/// A run, as its report tells it.
struct RunReport {
    QString projectFile; ///< as the user gave it
    QVector<LocatedFinding> findings;
    QVector<Problems::Problem> problems;
    int exitCode = 0;
    QString outcome;         ///< the exit code in words
    bool isComplete = false; ///< the tool could do its work, whatever it found
};

/// The report as JSON text. The same run in the same folder gives the same bytes. Its only errors
/// are those that the check counts, so that it has one exactly if the check ends the run.
QByteArray sarifText(const RunReport &report);

/// Replaces \a path in one step. Empty, or why it cannot be written.
QString writeSarifReport(const RunReport &report, const QString &path);
