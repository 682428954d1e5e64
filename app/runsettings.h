// Values of the project that the command line sets for a run.
#pragma once

#include <QString>
#include <QStringList>

class ObjectDataBase;

/// Where a subindex of an object is.
struct ObjectPlace {
    quint8 line = 0;
    quint16 index = 0;
    quint8 sub = 0;
};

/// Sets what one -set asks for, and says what is wrong with one that cannot be followed. Used on
/// the driver's thread, before the check.
class RunSettings
{
public:
    explicit RunSettings(ObjectDataBase &store) : database(store) {}

    /// \a assignment is "<key>=<value>" for a general setting; "J1939:<key>=", "Misc:<key>=" or
    /// "Description:<key>=" for the others; "<index>:<subindex>=" for the default value of an
    /// object of line 0, and "<line>/<index>:<subindex>=" for one of another line. False, and
    /// reported, if it is none of these, or the tool or the project does not know what to set.
    bool apply(const QString &assignment);

    /// All that were set so far, as "<group>:<key>".
    const QStringList &settingsApplied() const { return settings; }

private:
    bool applySetting(const QString &name, const QString &value);
    bool applyObject(const QString &text, const QString &value);
    QString whyNoObject(const ObjectPlace &place) const;
    bool refuse(const char *rule, const QString &reason) const;

    ObjectDataBase &database;
    QString given; ///< what is being applied
    QStringList settings;
};
