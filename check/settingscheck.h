// Settings of a project that do not do what they seem to do.
#pragma once

#include "support/settingscatalogue.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class ObjectDataBase;

/// Tells on standard error of keys that nothing reads, of values that are read as another one than
/// they look, and of lists that do not fit the lines of the device. Made once for a run, before the
/// check, which has messages of its own for what a device cannot do without. Reads the cache of
/// settings; no statement runs.
class SettingsCheck
{
public:
    /// Where a setting comes from.
    struct Place {
        QString file;
        int line = 0; ///< from 1; 0 if the file has none
    };
    /// Asked only for what is told. \a store as SettingsCatalogue::nameOf() has it.
    using Locate = std::function<Place(const QString &store, const QString &key)>;

    /// \a store must outlive this.
    SettingsCheck(const ObjectDataBase &store, Locate locator);

    void run();

private:
    void checkSetting(SettingStore store, const QString &key, const QString &text);
    void tellUnknown(SettingStore store, const QString &key);
    void checkList(const Setting &row, SettingStore store, const QString &key,
                   const QStringList &elements) const;
    void tell(const char *rule, SettingStore store, const QString &key, const QString &text) const;

    const ObjectDataBase &project;
    Locate locate;
    QList<quint8> lines; ///< of the device, ascending
    int unknown = 0;     ///< settings
};
