// Brings a project of an older tool to what the generators of this one expect.
#pragma once

#include <QObject>
#include <QPointer>

class ObjectDataBase;

/// Corrections of a project that has just been opened; the driver picks those that its tool needs.
/// Each may run on any project, changes nothing on a second run, and gives true.
class ProjectConverter : public QObject
{
    Q_OBJECT

public:
    explicit ProjectConverter(QObject *parent = nullptr);

    void setDatabase(ObjectDataBase *store);

    /// Corrections that hold for every tool of the family; there are none so far.
    bool doGenericCorrection();

    /// Counts that do not fit the rows of a J1939 group, and groups with separate data page bits.
    bool do1939Correction();

    /// Settings of CANopen services that were kept under another key, or without a switch.
    bool doCANopenCorrection();

    /// Removes the group of address claiming, which the generators declare on their own.
    bool doMPCorrection();

    /// Corrections of EnergyBus projects. They belong to the family's EnergyBus tool and have no
    /// effect in this one.
    bool doEnergyBusCorrection();

private:
    void moveMasterList();
    void enableCountedService(const QString &enabledKey, const QString &countKey);

    QPointer<ObjectDataBase> database;
};
