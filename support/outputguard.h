// Which files the outputs of a run must not take the place of.
#pragma once

#include "support/problems.h"

#include <QString>
#include <QVector>

/// Knows the files that a run reads, whatever their names: two names are one file if they lead to
/// it by links, symbolic or hard. Made before the run and only asked afterwards; a copy is
/// independent.
class OutputGuard
{
public:
    /// \a role completes "it is ...": "the project", "the file to import". What is not there yet is
    /// protected by its place. An empty path is none.
    void protect(const QString &path, const QString &role);

    /// The folder of the outputs, which their links must not leave; none is set at first. \a name
    /// completes "leads out of ...".
    void setFolder(const QString &path,
                   const QString &name = QStringLiteral("the folder of the project"))
    {
        folder = path;
        folderName = name;
    }

    /// The role of the file \a path; empty if it is none of those that are protected.
    QString roleOf(const QString &path) const;

    /// May an output be written to \a path?
    bool isFree(const QString &path) const { return objection(path).text.isEmpty(); }

    /// The same; reports why not.
    bool admits(const QString &path) const;

    /// Removes an output of a former run, if there is one and it may be; else reports why not.
    void remove(const QString &path) const;

private:
    /// Without a text if there is none.
    Problems::Problem objection(const QString &path) const;

    struct Input {
        QString path; ///< absolute, since the current folder may change
        QString role;
    };

    QVector<Input> inputs;
    QString folder;
    QString folderName;
};
