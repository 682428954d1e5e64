// How a report names files: relative, so that they are found in another checkout of a project.
#pragma once

#include "formats/sarif.h"

#include <QString>

/// Files below the folder in which the run was started are named from there, since that is where a
/// build server has its checkout, and all others from their own folder.
class ArtifactUris
{
public:
    /// \a folder of the run, the current one as a rule.
    explicit ArtifactUris(const QString &folder);

    /// \a path may be relative to the folder.
    Sarif::File of(const QString &path);

    /// Of the files asked for so far, that of the run first.
    const QVector<Sarif::Base> &bases() const { return known; }

private:
    const Sarif::Base &baseOf(const QString &folder);

    QVector<Sarif::Base> known;
    QVector<QString> folders; ///< of the bases, with "/" at the end
};
