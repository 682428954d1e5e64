// Names of C variables for the signals of a DBC file.
#pragma once

#include <QHash>
#include <QSet>
#include <QString>

/// Gives each signal a variable of its own, whose name says the message too: signals such as a
/// counter are in many messages, and a name should stay when another message comes to the file.
class DbcVariables
{
public:
    /// Makes names that stand in \a expression, which a project has for a variable, be avoided.
    void avoid(const QString &expression);

    /// A name that nobody has so far: small letters, digits and "_".
    QString claim(const QString &message, const QString &signal);

    /// The name, or the name with a number.
    QString claim(const QString &name);

private:
    QSet<QString> taken;
    QHash<QString, int> counts; ///< the last number given by name
};
