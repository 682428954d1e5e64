// What is known of a project's file from outside: the disk, not the tables in it.
#pragma once

#include <QString>

#include <ctime>
#include <sys/types.h>

namespace ProjectFile
{

/// Why a file is not opened. The rule and the text are those of support/problems.h.
struct Refusal {
    const char *rule = nullptr; ///< null if there is none
    QString text;
};

/// The forms of a project, which the ends of names tell apart.
enum class Form {
    Database, ///< ".tsrp"
    Text,     ///< "tsrt"; there need not be a dot before it
    Yaml,     ///< ".yaml" or ".yml", in any case
    Other,    ///< no known name; opened and saved as a database
};

Form formOf(const QString &file);

/// Looks at what stands beside \a file and at its first bytes, before a copy of it is made: is it a
/// database that is there as a whole?
Refusal whyNoDatabase(const QString &file);

/// Is a file that is named as YAML a project in another form? Nothing is said of one that cannot be
/// read.
Refusal whyNoYaml(const QString &file);

/// SQLite keeps changes that are not in a database yet in a file beside it: of an editor that has
/// it open, or was killed. The next program to open the database with SQLite applies them, to a
/// file that has been put in its place as well. A change that an editor has only begun is none yet,
/// but would end in the former file. What is to be done about it, or an empty text if there are
/// none.
QString pendingChanges(const QString &file);

/// Tells a file from one that has been written in its place since, or into it.
class State
{
public:
    State() = default; ///< of no file
    static State of(const QString &file);

    bool exists() const { return inode != 0; }
    bool operator==(const State &other) const;

private:
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = 0;
    timespec changed{};
};

} // namespace ProjectFile
