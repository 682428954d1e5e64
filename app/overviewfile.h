// The page that shows the project of a run.
#pragma once

#include "app/locatedfinding.h"
#include "generators/objdict/objectnames.h"
#include "generators/overview/facts.h"
#include "support/problems.h"

#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

class ObjectDataBase;

/// Takes the facts of the project when it is checked, and what the run has made of it at its end.
/// One for a run.
class OverviewFile
{
public:
    /// Reads the project, as the files of the user name it.
    void readProject(ObjectDataBase &store, const ObjectNamesByLine &names, const QString &file);

    /// False: the run ended before the check, and there is nothing to show.
    bool hasProject() const { return facts != nullptr; }

    void addFindings(const QVector<LocatedFinding> &findings);
    void addProblems(const QVector<Problems::Problem> &problems);
    /// With their sizes; those in \a folder by their names there.
    void addFiles(const QStringList &paths, const QString &folder);

    /// The memory that the tables in these sources take; others than sources count as nothing.
    void addFootprint(const QStringList &paths);
    void addComparison(const ProjectComparison &comparison) { facts->comparison = comparison; }

    /// Replaces \a path in one step, unless it holds something else than a page. With \a
    /// keepsUnchanged a file that holds these bytes already is left alone. Empty, or why it cannot
    /// be written.
    QString write(const QString &path, bool keepsUnchanged) const;

    /// Leaves its memory to the end of the process, which gives it back at once.
    void abandon();

private:
    std::unique_ptr<Overview::Facts> facts;
};
