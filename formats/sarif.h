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

struct Result {
    int rule = 0; ///< position in Run::rules
    QString message;
    QString place;          ///< in words, such as "line 0/0x1018"; empty for the whole file
    QJsonObject properties; ///< the place in numbers
};

/// One run of a tool over one file.
struct Run {
    QString tool;
    QString version;
    QVector<Rule> rules; ///< all that the tool has, so that their numbers are the same in each run
    QString fileUri;
    QVector<Result> results;
    int exitCode = 0;
    QString exitText;
    bool isSuccessful = false; ///< the tool could do its work, whatever it found
};

/// The log of \a run as JSON text. The same run gives the same bytes.
QByteArray text(const Run &run);

} // namespace Sarif
