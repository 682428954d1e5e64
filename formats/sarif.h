// Writer of SARIF 2.1.0 (OASIS), the form in which build servers and editors read findings.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QVector>

namespace Sarif
{

enum class Level { Error, Warning, Note };

struct Rule {
    QString id; ///< stays when the texts of its results change
    QString description;
    Level level = Level::Warning;
};

/// A folder that files are named from.
struct Base {
    QString id;
    QString uri; ///< absolute, with "/" at its end
};

struct File {
    QString uri;    ///< relative to the base
    QString baseId; ///< of a Base of the run
    bool operator==(const File &other) const { return uri == other.uri && baseId == other.baseId; }
};

struct Location {
    File file;
    int line = 1;   ///< from 1
    int column = 0; ///< from 1; 0: none
    QString place;  ///< in words, such as "0x1018:2"; empty for the whole file
};

struct Result {
    int rule = 0; ///< position in Run::rules
    Level level = Level::Warning;
    QString message;
    Location location;
    QJsonObject properties; ///< the place in numbers
};

/// What kept the run from its work.
struct Notification {
    int rule = 0; ///< position in Run::failures
    QString message;
    Location location;
};

/// One run of a tool.
struct Run {
    QString tool;
    QString version;
    QVector<Rule> rules;    ///< of results; those that the tool always has stand first
    QVector<Rule> failures; ///< of notifications
    QVector<Base> bases;
    QVector<File> files; ///< all that the run was about
    QVector<Result> results;
    QVector<Notification> notifications;
    int exitCode = 0;
    QString exitText;
    bool isSuccessful = false; ///< the tool could do its work, whatever it found
};

/// The log of \a run as JSON text. The same run gives the same bytes.
QByteArray text(const Run &run);

} // namespace Sarif
