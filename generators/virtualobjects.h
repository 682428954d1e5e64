// Virtual objects: subindices whose values the application answers by itself. Their counts in the
// definitions header and their tables are taken from here, so that they fit each other.
#pragma once

#include "store/objectdatabase.h"

#include <QList>
#include <QVector>

namespace VirtualObjects
{

/// A virtual subindex that has a place in the values of its type.
struct Value {
    quint8 line = 0;
    quint16 index = 0;
    quint8 sub = 0;
    quint16 dataType = 0;
};

/// An object with virtual subindices that are described.
struct Object {
    quint8 line = 0;
    quint16 index = 0;
    QList<quint8> subs;     ///< virtual and described, ascending, at least one
    bool endsInRun = false; ///< the last of subs stands for all that follow it
};

/// The last subindex with a description of its own; those after it are like it. Independent of
/// the compact form of other tables.
quint8 sameStartSub(const ObjectDataBase &store, quint8 line, quint16 index);

/// Values in 0x1000 to 0xBFFF of these lines, in their order, then ascending.
QVector<Value> readValues(const ObjectDataBase &store, const QList<quint8> &lines);

/// Existing lines 0..31 with at least two objects; only these have described virtual objects.
QList<quint8> describedLines(const ObjectDataBase &store);

/// Objects of these lines in 0x1000 to 0xFFFF, in their order, then ascending.
QVector<Object> readObjects(const ObjectDataBase &store, const QList<quint8> &lines);

} // namespace VirtualObjects
