// The names that gen_indices.h gives to objects, for the file and for those who tell of them.
#pragma once

#include "generators/objdict/definenames.h"
#include "store/records.h"

#include <map>
#include <vector>

class ObjectDataBase;

/// The name of an object or subindex.
struct ObjectName {
    quint16 index = 0;
    quint8 sub = 0;         ///< 0: the object; subindices have names from 1 up
    bool hasDefine = false; ///< of its own: not that of another one with the same number
    QString text;           ///< without prefix; empty: it stands for another number
};

/// Those of a line.
struct ObjectNames {
    explicit ObjectNames(const QString &linePrefix) : prefix(linePrefix), taken(linePrefix) {}

    QString prefix;                  ///< "L<n>_" in the multi-line form, else empty
    std::vector<ObjectName> objects; ///< ascending
    DefineNames taken;               ///< by them
};

using ObjectNamesByLine = std::map<quint8, ObjectNames>;

ObjectNames readObjectNames(const ObjectDataBase &store, quint8 line, bool isMultiLine);
/// Those of all lines, as a run names them.
ObjectNamesByLine readObjectNames(const ObjectDataBase &store);

/// Does the object have names of its subindices?
bool namesSubIndices(const IndexData &data);

/// What stands before the names of a line.
QString prefixOfNames(quint8 line, bool isMultiLine);
