// Applies a file of setting assignments to a project.
#pragma once

#include "support/fileproblems.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

class ObjectDataBase;

/// Reads a text file with one assignment a line, "GeneralSettings:<key>:<value>" or
/// "J1939Settings:<key>:<value>". The three fields count as they stand, blanks included; lines that
/// start with "#" are comments; all others that set nothing, such as those above 1 MiB, are passed
/// over and reported. Whether anything reads a key is asked later, of the whole project. Used once,
/// on the driver's thread.
class DatabaseModifier : public QObject
{
    Q_OBJECT

public:
    explicit DatabaseModifier(ObjectDataBase *store);

    /// False if \a path is no file that can be read.
    bool setModifierFile(const QString &path);

    /// Clears the store's write lock, then sets what the file says. False if the file could not be
    /// opened; a line that sets nothing is no failure.
    bool applyModifierFile();

    QString getLastError() const { return lastError; }

    /// The number of the last line that set it, by "<group>:<key>".
    const QHash<QString, int> &linesOfSettings() const { return assigned; }

private:
    void applyLine(const QString &line, int number);
    void assign(const QStringList &fields, int number);
    void passOver(const char *rule, int number, const QString &reason);

    QPointer<ObjectDataBase> database;
    QString modifierFile;
    QString lastError;
    QHash<QString, int> assigned;
    FileProblems problems;
};
