// What the test program of a J1939 device must print, read from the project alone.
#pragma once

#include "tests/stack/expectation.h"

/// Reads a project for what its tables of groups and its start must mean. Knows SAE J1939 and the
/// order of a start, and nothing of how the tool writes either.
class J1939Expectation
{
public:
    explicit J1939Expectation(ObjectDataBase &database);

    /// Rows of a start: calls, groups and mappings. \a variant is 0 for a start that turns CAN FD
    /// off.
    QStringList start();
    /// Those of one line's groups, counted on from the line before; the first one is to restart().
    QStringList line(quint8 number);
    void restart() { managedCount = 0; }
    /// A signal of raw CAN.
    QString itemRow(const DataElementData &item);
    /// Rows of the start structures that must be there, in any order.
    QStringList counts(int variant) const;

    /// Expressions of application variables; the value tells whether it is the address already.
    QMap<QString, bool> appVariables() const;
    const Expectation &common() const { return shared; }

private:
    int j1939(const char *setting) const;
    bool isMapped(quint8 line, const PgnData &group) const;
    QVector<PgnData> groups(quint8 line, quint8 direction) const;
    QString groupRow(const char *kind, const PgnData &group) const;
    QString mappingRow(const SpnData &spn, const QString &value);
    QString signalText(const SignalData &signal, const QString &value);
    QString startValue(const SignalData &signal, bool isGroup) const;
    QString startAddress(quint8 line) const;
    QStringList claim(quint8 line);
    QStringList table(quint8 line, const char *kind, quint8 direction);
    quint32 destinationBuffers(quint8 line) const;
    QString countRow(const char *name,
                     quint32 (*count)(const J1939Expectation &, quint8 line)) const;

    ObjectDataBase &store;
    Expectation shared;
    QList<quint8> lines;
    QList<quint8> speakers; ///< lines of J1939
    int managedCount = 0;
};
