// The objects of an electronic data sheet.
#include "formats/edskeys.h"
#include "generators/descriptions/describedobject.h"
#include "generators/descriptions/edssections.h"
#include "generators/descriptions/edsvariants.h"
#include "generators/textwriter.h"
#include "store/writedefault.h"
#include "support/fileproblems.h"
#include "support/numbers.h"
#include "support/objectindex.h"
#include "support/printable.h"

#include <algorithm>

namespace
{

using EdsSections::Context;
using EdsSections::Member;
using EdsSections::Object;
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

void writeName(const Context &context, const QString &name, const char *missing)
{
    context.out.parts(EdsKeys::kParameterName, "=", context.form.name(name, missing), "\n");
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

void writeSubInfo(const Context &context, quint16 index, const Member &member)
{
    const SubData &data = member.data;
    const bool isConfiguration = context.isConfiguration();
    const EdsSubTexts texts = context.form.texts(data, member.role, isConfiguration);
    writeValues(context.out, data, texts);
    const QString denotation = context.form.entry(EdsKeys::kDenotation, data.denotation);
    if (isConfiguration && !denotation.isEmpty())
        context.out.parts(EdsKeys::kDenotation, "=", denotation, "\n");
    if (isConfiguration && !data.currentValue.isEmpty() && !texts.parameterValue)
        noteLost(context, index, member.subIndex, data);
    writeDescription(context.out, context.form, data.description);
}

void writeObjectType(const Context &context, CANopen::ObjectCode code)
{
    context.out.parts(EdsKeys::kObjectType, "=", static_cast<int>(code), "\n");
}

/// \a section is the name of the object's section.
void writeMember(const Context &context, quint16 index, const QString &section,
                 const Member &member)
{
    context.out.parts("\n[", section, "sub", context.form.hex(member.subIndex, 1), "]\n");
    writeName(context, member.data.name, "unnamed subindex");
    writeObjectType(context, CANopen::ObjectCode::Var);
    writeSubInfo(context, index, member);
}

void writeContent(const Context &context, const QString &section, const Object &object)
{
    if (object.isStructure()) {
        const quint8 highest = context.form.highestCount;
        const auto counted =
            std::count_if(object.members.begin(), object.members.end(),
                          [highest](const Member &one) { return one.subIndex <= highest; });
        context.out.parts(EdsKeys::kSubNumber, "=", counted, "\n");
        writeDescription(context.out, context.form, object.description);
    }
    for (const Member &member : object.members) {
        if (object.isStructure())
            writeMember(context, object.index, section, member);
        else
            writeSubInfo(context, object.index, member);
    }
    if (object.hasOwnValue())
        writeDescription(context.out, context.form, object.description);
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
    const Object object = readObject(context, index);
    const QString section = context.form.hex(index, 4);
    context.out.parts("[", section, "]\n");
    writeName(context, object.name, "unnamed object");
    writeObjectType(context, object.code);
    writeContent(context, section, object);
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
