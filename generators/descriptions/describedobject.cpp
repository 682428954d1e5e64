// Objects of descriptions.
#include "generators/descriptions/describedobject.h"

#include "generators/descriptions/edsvariants.h"
#include "support/helper.h"
#include "support/objectindex.h"

#include <algorithm>

namespace
{

using EdsSections::Context;
using EdsSections::Member;
using EdsSections::Object;

Member memberOf(quint16 index, quint8 subIndex, EdsRole role, const SubIndexData &data)
{
    Member member = {subIndex, role, data};
    member.data.name = Helper::substituteVariables(data.name, index, subIndex);
    return member;
}

Member readMember(const Context &context, quint16 index, quint8 subIndex, EdsRole role)
{
    SubIndexData data;
    (void)context.store.getSubIndexData(context.line, index, subIndex, data); // or the defaults
    return memberOf(index, subIndex, role, data);
}

/// An object of which a variant leaves out the end still gives its own highest subindex.
void setCount(const Context &context, Object &object)
{
    if (object.members.isEmpty() || object.members.first().subIndex != 0 ||
        object.index <= ObjectRanges::kCommunication.last)
        return;
    quint8 highest = 0;
    for (const Member &member : qAsConst(object.members)) {
        if (member.subIndex <= context.form.highestCount)
            highest = member.subIndex;
    }
    object.members.first().data.defaultValue = QString::number(highest);
}

void readMembers(const Context &context, Object &object)
{
    const auto addMember = [&](quint8 subIndex, const SubIndexData &data) {
        const EdsRole role = subIndex == 0 ? EdsRole::Count : EdsRole::Value;
        if (isOfVariant(data.metadata, context.define))
            object.members << memberOf(object.index, subIndex, role, data);
    };
    context.store.visitSubIndices(context.line, object.index, 0, addMember);
    setCount(context, object);
}

/// An import takes the description of an object for that of its subindex 0 as well, so that one is
/// enough for both.
void removeRepetition(const EdsForm &form, Object &object)
{
    if (form.repeatsDescriptions || object.members.isEmpty())
        return;
    Member &first = object.members.first();
    if (first.subIndex != 0 ||
        form.descriptionLines(first.data.description) != form.descriptionLines(object.description))
        return;
    (object.isStructure() ? first.data.description : object.description).clear();
}

/// The first element of the device types of a CAN FD device, as the one of a classical device.
void makeClassicalDeviceType(const Context &context, Object &object)
{
    object.code = CANopen::ObjectCode::Var;
    object.description.clear();
    object.members = {readMember(context, object.index, 1, EdsRole::Value)};
    object.members.first().subIndex = 0;
}

} // namespace

Object EdsSections::readObject(const Context &context, quint16 index)
{
    ObjectDataBase::INDEX_DATA_T data;
    (void)context.store.getIndexData(context.line, index, data); // or the defaults
    Object object;
    object.index = index;
    object.name = Helper::substituteVariables(data.name, index, 0);
    object.description = data.description;
    bool hasMembers = false;
    context.store.visitSubIndices(
        context.line, index, 1, [&hasMembers](quint8, const SubIndexData &) { hasMembers = true; });
    object.code = context.form.objectCode(data.objectCode, hasMembers);
    if (!context.canFd && index == ObjectIndex::kDeviceType &&
        data.objectCode == CANopen::ObjectCode::Array)
        makeClassicalDeviceType(context, object);
    else if (object.isStructure())
        readMembers(context, object);
    else if (object.code == CANopen::ObjectCode::Domain)
        object.members << readMember(context, index, 0, EdsRole::Domain);
    else if (object.code == CANopen::ObjectCode::Var)
        object.members << readMember(context, index, 0, EdsRole::Value);
    removeRepetition(context.form, object);
    return object;
}
