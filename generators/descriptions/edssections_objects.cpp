// The objects of an electronic data sheet.
#include "formats/edskeys.h"
#include "generators/descriptions/edssections.h"
#include "generators/descriptions/edsvariants.h"
#include "generators/textwriter.h"
#include "store/writedefault.h"
#include "support/fileproblems.h"
#include "support/helper.h"
#include "support/numbers.h"
#include "support/objectindex.h"
#include "support/printable.h"

#include <algorithm>

namespace
{

using EdsSections::Context;
using SubData = ObjectDataBase::SUBINDEX_DATA_T;

/// Objects that only a CAN FD device describes.
bool isCanFdObject(quint16 index)
{
    return index == 0x1030 || index == ObjectIndex::kActiveErrors;
}

/// A description; nothing if it is empty.
void writeDescription(TextWriter &out, const EdsForm &form, const QString &description)
{
    if (description.isEmpty())
        return;
    const QStringList lines = form.descriptionLines(description);
    for (const QString &line : lines)
        out.parts(";;", line, "\n");
}

/// An import takes the description of an object for that of its subindex 0 as well, so that one
/// comment is enough for both.
bool isRepeated(const EdsForm &form, const QString &one, const QString &other)
{
    return !form.repeatsDescriptions && form.descriptionLines(one) == form.descriptionLines(other);
}

void writeName(const Context &context, const QString &name, quint16 index, quint8 subIndex,
               const char *missing)
{
    const QString filled = Helper::substituteVariables(name, index, subIndex);
    context.out.parts(EdsKeys::kParameterName, "=", context.form.name(filled, missing), "\n");
}

void writeIfThere(TextWriter &out, const char *key, const std::optional<QString> &value)
{
    if (value)
        out.parts(key, "=", *value, "\n");
}

void writeValues(TextWriter &out, const SubData &data, const EdsSubTexts &texts)
{
    out.parts(EdsKeys::kDataType, "=", texts.dataType, "\n");
    out.parts(EdsKeys::kAccessType, "=", texts.accessType, "\n");
    if (texts.pdoMapping)
        out.parts(EdsKeys::kPdoMapping, "=", *texts.pdoMapping, "\n");
    writeIfThere(out, EdsKeys::kDefaultValue, texts.defaultValue);
    writeIfThere(out, EdsKeys::kLowLimit, texts.lowLimit);
    writeIfThere(out, EdsKeys::kHighLimit, texts.highLimit);
    writeIfThere(out, EdsKeys::kParameterValue, texts.parameterValue);
    if (data.refuseRead || data.refuseWrite) {
        const int flags = (data.refuseWrite ? 1 : 0) | (data.refuseRead ? 2 : 0);
        out.parts(EdsKeys::kObjFlags, "=", flags, "\n");
    }
}

/// The value of a configuration that its file cannot hold, or in no form that all understand.
void noteLost(const Context &context, quint16 index, quint8 subIndex, const SubData &data)
{
    context.problems->add("dcf-value", 0, [&] {
        return QStringLiteral("the current value %1 of 0x%2:%3 is left out, since no value of its "
                              "data type in a configuration file says it")
            .arg(quotedWord(data.currentValue), Numbers::toHex(index, 4).toUpper(),
                 QString::number(subIndex));
    });
}

void writeSubInfo(const Context &context, quint16 index, quint8 subIndex, const SubData &data,
                  EdsRole role)
{
    const bool isConfiguration = context.isConfiguration();
    const EdsSubTexts texts = context.form.texts(data, role, isConfiguration);
    writeValues(context.out, data, texts);
    const QString denotation = context.form.entry(EdsKeys::kDenotation, data.denotation);
    if (isConfiguration && !denotation.isEmpty())
        context.out.parts(EdsKeys::kDenotation, "=", denotation, "\n");
    if (isConfiguration && !data.currentValue.isEmpty() && !texts.parameterValue)
        noteLost(context, index, subIndex, data);
    writeDescription(context.out, context.form, data.description);
}

void writeObjectType(const Context &context, CANopen::ObjectCode code)
{
    context.out.parts(EdsKeys::kObjectType, "=", static_cast<int>(code), "\n");
}

/// \a object is the description of the object.
void writeSubIndex(const Context &context, quint16 index, quint8 subIndex, quint8 highest,
                   const QString &object)
{
    SubData data;
    (void)context.store.getSubIndexData(context.line, index, subIndex, data); // or the defaults
    if (subIndex == 0 && isRepeated(context.form, data.description, object))
        data.description.clear();
    context.out.parts("\n[", context.form.hex(index, 4), "sub", context.form.hex(subIndex, 1),
                      "]\n");
    writeName(context, data.name, index, subIndex, "unnamed subindex");
    writeObjectType(context, CANopen::ObjectCode::Var);
    // An object of which a variant leaves out the end still gives its own highest subindex.
    if (index > ObjectRanges::kCommunication.last && subIndex == 0)
        data.defaultValue = QString::number(highest);
    writeSubInfo(context, index, subIndex, data, subIndex == 0 ? EdsRole::Count : EdsRole::Value);
}

void writeMembers(const Context &context, quint16 index, const QString &description)
{
    const QList<quint8> subIndices =
        reduceSubList(context.store, context.line, index,
                      context.store.getSubIndices(context.line, index, 0), context.define);
    const quint8 highest = context.form.highestCount;
    const auto isCounted = [highest](quint8 subIndex) { return subIndex <= highest; };
    const auto counted = std::count_if(subIndices.begin(), subIndices.end(), isCounted);
    const auto last = std::find_if(subIndices.rbegin(), subIndices.rend(), isCounted);
    context.out.parts(EdsKeys::kSubNumber, "=", counted, "\n");
    writeDescription(context.out, context.form, description);
    for (const quint8 subIndex : subIndices)
        writeSubIndex(context, index, subIndex, last == subIndices.rend() ? quint8(0) : *last,
                      description);
}

/// \a object is the description of the object.
void writeValueOf(const Context &context, quint16 index, quint8 subIndex, EdsRole role,
                  const QString &object)
{
    SubData data;
    (void)context.store.getSubIndexData(context.line, index, subIndex, data); // or the defaults
    writeSubInfo(context, index, subIndex, data, role);
    if (!isRepeated(context.form, data.description, object))
        writeDescription(context.out, context.form, object);
}

/// The first element of the device types of a CAN FD device, as the one of a classical device.
void describeClassical1000(const Context &context)
{
    writeObjectType(context, CANopen::ObjectCode::Var);
    writeValueOf(context, ObjectIndex::kDeviceType, 1, EdsRole::Value, {});
}

void writeContent(const Context &context, quint16 index, const ObjectDataBase::INDEX_DATA_T &object)
{
    const bool hasMembers = context.store.getSubIndices(context.line, index, 1).size() > 0;
    const CANopen::ObjectCode code = context.form.objectCode(object.objectCode, hasMembers);
    writeObjectType(context, code);
    switch (code) {
    case CANopen::ObjectCode::Array:
    case CANopen::ObjectCode::Record:
        writeMembers(context, index, object.description);
        break;
    case CANopen::ObjectCode::Var:
    case CANopen::ObjectCode::Domain:
        writeValueOf(context, index, 0,
                     code == CANopen::ObjectCode::Domain ? EdsRole::Domain : EdsRole::Value,
                     object.description);
        break;
    default: // definitions of types hold no values
        break;
    }
}

} // namespace

QList<quint16> EdsSections::describedObjects(const Context &context)
{
    const QList<quint16> variant = context.variants.objectsOf(context.define);
    if (context.canFd)
        return variant;
    QList<quint16> classical;
    for (const quint16 index : variant) {
        if (!isCanFdObject(index))
            classical << index;
    }
    return classical;
}

void EdsSections::generateIndexSection(const Context &context, quint16 index)
{
    ObjectDataBase::INDEX_DATA_T object;
    (void)context.store.getIndexData(context.line, index, object); // or the defaults
    context.out.parts("[", context.form.hex(index, 4), "]\n");
    writeName(context, object.name, index, 0, "unnamed object");
    if (!context.canFd && index == ObjectIndex::kDeviceType &&
        object.objectCode == CANopen::ObjectCode::Array)
        describeClassical1000(context);
    else
        writeContent(context, index, object);
    context.out.raw("\n");
}

void EdsSections::generateSubInfo(TextWriter &out, const SubData &data)
{
    const EdsForm &form = classicEds();
    writeValues(out, data, form.texts(data, EdsRole::Value, false));
    writeDescription(out, form, data.description);
}

bool EdsSections::isDefaultDescribed(const SubData &data)
{
    return isDefaultWrittenToEds(data) && !data.defaultValue.isEmpty();
}
