// The values of the user.
#include "support/usersettings.h"

#include "support/runfiles.h"

#include <QStringList>

QVariant UserSettings::value(const char *group, const char *key) const
{
    RunFiles::noteRead(settings.fileName());
    const QString name = QLatin1String(key);
    QVariant value = settings.value(QLatin1String(group) + QLatin1Char('/') + name);
    // Qt writes the group as "[%General]", and takes "[General]" for no group at all.
    if (!value.isValid() && qstrcmp(group, "General") == 0)
        value = settings.value(name);
    return value.type() == QVariant::StringList
               ? QVariant(value.toStringList().join(QLatin1Char(',')))
               : value;
}
