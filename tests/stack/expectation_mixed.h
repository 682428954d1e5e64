// What the test program of a device with several protocols, or raw CAN, must print, read from the
// project alone.
#pragma once

#include "tests/stack/expectation_j1939.h"

/// Reads a project for what each line's start must call, whatever the others speak. Knows nothing
/// of how the tool writes it.
class MixedExpectation
{
public:
    explicit MixedExpectation(ObjectDataBase &database);

    /// Calls of a start with the rows below each as one text, ascending by line. \a variant is 0
    /// for a start that turns CAN FD off, 1 for one as master.
    QStringList start(int variant);
    /// Rows of the start structures that must be there, in any order.
    QStringList counts(int variant) const;
    /// Rows of the dictionaries that the lines are given.
    QStringList dictionary() const;
    QStringList virtualObjects() const;

    /// Makes texts as those of start() of the rows that the program prints.
    static QStringList blocks(const QStringList &rows);

    bool hasCANopen() const { return !linesOf({1, 5}).isEmpty(); }
    bool hasJ1939() const { return !linesOf({2, 5}).isEmpty(); }
    bool hasRaw() const { return !linesOf({4}).isEmpty(); }
    bool isRawOnly() const { return hasRaw() && !hasCANopen() && !hasJ1939(); }
    bool takesOptions() const; ///< to become master
    /// Is there a line that starts with its own protocol only?
    bool canRefuse() const;
    const Expectation &common() const { return shared; }
    /// Expressions of all application variables.
    QStringList appVariables() const;
    /// Protocols by number of the line, as C values.
    QString protocols() const;

private:
    QList<quint8> linesOf(const QList<int> &types) const;
    bool hasCiA510() const;
    QStringList lineRows(quint8 line, int variant);
    QStringList canopenRows(quint8 line, int variant) const;
    QStringList rawRows(quint8 line);
    QStringList identifiers(quint8 line, quint8 direction);
    QVector<quint32> countIdentifiers(quint8 direction) const;

    ObjectDataBase &store;
    J1939Expectation groups;
    const Expectation &shared;
    QList<quint8> lines;
};
