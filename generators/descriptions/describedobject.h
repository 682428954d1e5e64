// An object as descriptions of a device in all formats tell of it.
#pragma once

#include "generators/descriptions/edsform.h"
#include "generators/descriptions/edssections.h"

#include <QVector>

namespace EdsSections
{

/// A value of an object.
struct Member {
    quint8 subIndex = 0;
    EdsRole role = EdsRole::Value;
    SubIndexData data;
};

struct Object {
    quint16 index = 0;
    QString name;
    CANopen::ObjectCode code = CANopen::ObjectCode::Var;
    QString description; ///< none where the form does not repeat that of the only member
    /// Those that the variant has of an array or a record; the only one of a variable or a domain;
    /// none of another code, since definitions of types hold no values. What the store does not
    /// hold has the defaults.
    QVector<Member> members;

    bool isStructure() const
    {
        return code == CANopen::ObjectCode::Array || code == CANopen::ObjectCode::Record;
    }
    bool hasOwnValue() const { return !isStructure() && !members.isEmpty(); }
};

/// Variables in names are filled in.
Object readObject(const Context &context, quint16 index);

} // namespace EdsSections

Q_DECLARE_TYPEINFO(EdsSections::Member, Q_MOVABLE_TYPE);
