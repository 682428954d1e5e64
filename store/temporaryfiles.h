// The temporary copies that stores work on: made, held and removed here.
#pragma once

#include <QString>

#include <map>

/// The temporary database files of one store. Each is held by a lock for as long as this object
/// lives, so that another run can tell a copy in use from one that a killed run left behind.
class TemporaryFiles
{
public:
    TemporaryFiles() = default;
    ~TemporaryFiles(); ///< removes all of them
    TemporaryFiles(const TemporaryFiles &) = delete;
    TemporaryFiles &operator=(const TemporaryFiles &) = delete;

    /// Makes an empty file with a name that no other file has; an empty text if that is impossible.
    /// The first call of a process also removes what killed runs have left.
    QString create();
    void removeAll();
    /// Why create() last gave no name.
    QString failure() const { return reason; }

private:
    QString reason;
    std::map<QString, int> descriptors; ///< the locked file by its name
};
