// What a run depends on, for the builds that it is a step of.
#pragma once

#include "support/runfiles.h"

#include <QString>
#include <QVector>

/// A folder that files lie in, and its name in rules.
struct NamedFolder {
    QString path; ///< absolute
    QString name; ///< as the user gave it
};

/// Replaces \a path by the rule of make for the files of the run. Those in \a folders are named as
/// a build that calls the tool names them, so below the first folder that fits. A file that was
/// written is no input, even if it was read before, for builds refuse what depends on itself; if
/// none was written, \a path is the target. Empty, or why it cannot be written.
QString writeDependencyFile(const QString &path, const RunFiles &files,
                            const QVector<NamedFolder> &folders);
