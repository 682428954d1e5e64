// The values of the user, as opposed to those of the project.
#pragma once

#include <QCoreApplication>
#include <QSettings>
#include <QString>
#include <QVariant>

/// Reads the user's settings of one tool of the family, by default of this one.
class UserSettings
{
public:
    explicit UserSettings(const QString &application = QCoreApplication::applicationName())
        : settings(QStringLiteral("Korvel"), application)
    {
        settings.setIniCodec("UTF-8"); // of names that were written by hand
    }

    /// Invalid if there is none. A file that was written by hand is read as it is meant: keys below
    /// "[General]" belong to the group General, and a text with commas needs no quotes.
    QVariant value(const char *group, const char *key) const;

private:
    QSettings settings;
};
