// What the command line asks to import.
#pragma once

#include <QString>
#include <QVector>

#include <optional>

class RunOptions;

/// The highest line of a project; those above are the store's own.
inline constexpr int kHighestImportLine = 253;

/// One import, as the user asks for it.
struct ImportRequest {
    QString file;                     ///< as the user named it, without the numbers of lines
    std::optional<quint8> line;       ///< that it goes into; line 0 if none is named
    std::optional<quint8> lineOfFile; ///< of a project that is imported
    QString ownNode;                  ///< see BaseDataImporter::setOwnNode()
    QString given;                    ///< the words of the command line
    QString fault;                    ///< why it cannot be followed; empty if it can be tried

    quint8 targetLine() const { return line.value_or(0); }

    /// "<file>", "<line>:<file>", and of a project also "<file>#<line>"; a file that is there with
    /// all of that as its name is meant by it.
    static ImportRequest ofWord(const QString &word);
};

/// All of them, in the order of the command line. Tells of names of nodes that no import takes.
QVector<ImportRequest> readImports(const RunOptions &options);
