// Applies a file of setting assignments to a project.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class ObjectDataBase;

/// Reads a text file with one assignment a line, "GeneralSettings:<key>:<value>" or
/// "J1939Settings:<key>:<value>". The three fields count as they stand, blanks included; lines that
/// start with "#", and all that are no assignment, are passed over, as are lines above
/// 1 MiB, which is reported. Used once, on the driver's thread.
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

private:
    void applyLine(const QString &line);

    QPointer<ObjectDataBase> database;
    QString modifierFile;
    QString lastError;
};
