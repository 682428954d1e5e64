// Where in a project's file stands what somebody has to mend.
#pragma once

#include <QString>

#include <memory>

/// What is looked for; -1 or empty for what it is not about. A setting stands alone or with the
/// line of the device that it is asked for.
struct ProjectPlace {
    int line = -1; ///< of the device
    int index = -1;
    int subindex = -1;
    int group = -1;  ///< parameter group number
    int signal = -1; ///< suspect parameter number
    QString column;  ///< of the subindex, the object, the signal or the group
    QString store;   ///< table of a settings store, such as "GeneralSettings"
    QString setting; ///< key in it
};

/// A form of projects has its own. Nothing is read before the first question.
class ProjectPlaces
{
public:
    virtual ~ProjectPlaces() = default;

    /// Number of the line of the file, from 1, that holds the place: the column or setting itself,
    /// or else the nearest that holds it or would have to: the first line of the subindex, of its
    /// object, of the objects of the line. 0 if there is none.
    virtual int lineOf(const ProjectPlace &place) = 0;

    /// For the file as it is now; it may be replaced afterwards. A database has no lines.
    static std::unique_ptr<ProjectPlaces> ofFile(const QString &file);
};
