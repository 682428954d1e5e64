// Synthetic CANopen objects. The same number of objects always gives the same objects.
#pragma once

#include "store/objectdatabase.h"

#include <QString>
#include <QVector>

namespace Bench
{

constexpr int kMostObjects = 0x9000; ///< up to index 0xAFFF, which an import still takes

struct Object {
    quint16 index = 0;
    IndexData data;
    QVector<SubIndexData> subs; ///< by subindex, without gaps
};

/// What CiA 301 asks of every device, \a count records and arrays of mixed types, and PDOs of some
/// of their members.
QVector<Object> makeObjects(int count);

void addObjects(ObjectDataBase &store, quint8 line, const QVector<Object> &objects);

// False if the file cannot be written.
bool writeEds(const QVector<Object> &objects, const QString &path);
bool writeXdd(const QVector<Object> &objects, const QString &path);

} // namespace Bench
