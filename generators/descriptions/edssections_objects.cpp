// The objects of an electronic data sheet.
#include "formats/edskeys.h"
#include "generators/descriptions/edssections.h"
#include "generators/descriptions/edsvariants.h"
#include "generators/textwriter.h"
#include "store/writedefault.h"
#include "support/helper.h"
#include "support/numbers.h"
#include "support/objectindex.h"
#include "support/plaintext.h"

namespace
{

using EdsSections::Context;
using SubData = ObjectDataBase::SUBINDEX_DATA_T;

/// Characters of a comment that stand in one line.
constexpr int kCommentWidth = 250;

/// Types from here on have no number of CiA 301 and are described as bytes.
constexpr quint16 kFirstOwnType = CAN::typeNumber(CAN::CANopenDataType::Unsigned2);

/// Objects that only a CAN FD device describes.
bool isCanFdObject(quint16 index)
{
    return index == 0x1030 || index == ObjectIndex::kActiveErrors;
}

/// How much of \a text goes into a full line: a character beyond 16 bits is not torn apart.
int fullLineOf(const QStringRef &text)
{
    return text[kCommentWidth - 1].isHighSurrogate() ? kCommentWidth - 1 : kCommentWidth;
}

void writeCommentLine(TextWriter &out, const QStringRef &text)
{
    out.raw(QLatin1String(";;") + text + QLatin1Char('\n'));
}

void writeLongComment(TextWriter &out, QStringRef rest)
{
    while (rest.size() > kCommentWidth) {
        const int length = fullLineOf(rest);
        writeCommentLine(out, rest.left(length));
        rest = rest.mid(length);
    }
    // Deliberate: a last piece that fills its line is dropped, held by tst_edsgenerator.
    if (rest.size() != kCommentWidth)
        writeCommentLine(out, rest);
}

/// A description; nothing if it is empty.
void writeDescription(TextWriter &out, const QString &description)
{
    if (description.isEmpty())
        return;
    const QStringList lines = textLines(description);
    for (const QString &line : lines) {
        if (line.size() <= kCommentWidth)
            writeCommentLine(out, QStringRef(&line));
        else
            writeLongComment(out, QStringRef(&line));
    }
}

void writeName(TextWriter &out, const QString &name, quint16 index, quint8 subIndex)
{
    const QString filled = Helper::substituteVariables(name, index, subIndex);
    out.parts(EdsKeys::kParameterName, "=", oneLine(filled), "\n");
}

quint16 describedType(const SubData &data)
{
    const auto own = data.metadata.constFind(QStringLiteral("eds_datatype"));
    if (own != data.metadata.constEnd())
        return static_cast<quint16>(Numbers::toUIntByPrefix(*own));
    return data.dataType < kFirstOwnType ? data.dataType : 5;
}

/// A project marks strings that it holds as hexadecimal bytes by "|x", which no data sheet knows.
QString describedDefault(const QString &value)
{
    return oneLine(value.startsWith(QLatin1String("|x")) ? value.mid(2) : value);
}

void writeObjectType(const Context &context, CANopen::ObjectCode code)
{
    context.out.parts(EdsKeys::kObjectType, "=", static_cast<int>(code), "\n");
}

void writeSubIndex(const Context &context, quint16 index, quint8 subIndex, quint8 highest)
{
    SubData data;
    (void)context.store.getSubIndexData(context.line, index, subIndex, data); // or the defaults
    context.out.parts("\n[", EdsSections::hex4(index), "sub", Numbers::toHex(subIndex, 1), "]\n");
    writeName(context.out, data.name, index, subIndex);
    writeObjectType(context, CANopen::ObjectCode::Var);
    // An object of which a variant leaves out the end still gives its own highest subindex.
    if (index > ObjectRanges::kCommunication.last && subIndex == 0)
        data.defaultValue = QString::number(highest);
    EdsSections::generateSubInfo(context.out, data);
}

void writeMembers(const Context &context, quint16 index, const QString &description)
{
    const QList<quint8> subIndices =
        reduceSubList(context.store, context.line, index,
                      context.store.getSubIndices(context.line, index, 0), context.define);
    context.out.parts(EdsKeys::kSubNumber, "=", subIndices.size(), "\n");
    writeDescription(context.out, description);
    for (const quint8 subIndex : subIndices)
        writeSubIndex(context, index, subIndex, subIndices.last());
}

void writeValueOf(const Context &context, quint16 index, quint8 subIndex)
{
    SubData data;
    (void)context.store.getSubIndexData(context.line, index, subIndex, data); // or the defaults
    EdsSections::generateSubInfo(context.out, data);
}

/// The first element of the device types of a CAN FD device, as the one of a classical device.
void describeClassical1000(const Context &context)
{
    writeObjectType(context, CANopen::ObjectCode::Var);
    writeValueOf(context, ObjectIndex::kDeviceType, 1);
}

void writeContent(const Context &context, quint16 index, const ObjectDataBase::INDEX_DATA_T &object)
{
    writeObjectType(context, object.objectCode);
    switch (object.objectCode) {
    case CANopen::ObjectCode::Array:
    case CANopen::ObjectCode::Record:
        writeMembers(context, index, object.description);
        break;
    case CANopen::ObjectCode::Var:
    case CANopen::ObjectCode::Domain:
        writeValueOf(context, index, 0);
        writeDescription(context.out, object.description);
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
    context.out.parts("[", hex4(index), "]\n");
    writeName(context.out, object.name, index, 0);
    if (!context.canFd && index == ObjectIndex::kDeviceType &&
        object.objectCode == CANopen::ObjectCode::Array)
        describeClassical1000(context);
    else
        writeContent(context, index, object);
    context.out.raw("\n");
}

void EdsSections::generateSubInfo(TextWriter &out, const SubData &data)
{
    out.parts(EdsKeys::kDataType, "=", describedType(data), "\n");
    out.parts(EdsKeys::kAccessType, "=", oneLine(data.accessType), "\n");
    out.parts(EdsKeys::kPdoMapping, "=", data.pdoMapping.toBinary(), "\n");
    if (isDefaultDescribed(data))
        out.parts(EdsKeys::kDefaultValue, "=", describedDefault(data.defaultValue), "\n");
    if (data.limitInEds) {
        out.parts(EdsKeys::kLowLimit, "=", oneLine(data.lowLimit), "\n");
        out.parts(EdsKeys::kHighLimit, "=", oneLine(data.upLimit), "\n");
    }
    if (data.refuseRead || data.refuseWrite) {
        const int flags = (data.refuseWrite ? 1 : 0) | (data.refuseRead ? 2 : 0);
        out.parts(EdsKeys::kObjFlags, "=", flags, "\n");
    }
    writeDescription(out, data.description);
}

bool EdsSections::isDefaultDescribed(const SubData &data)
{
    return isDefaultWrittenToEds(data) && !data.defaultValue.isEmpty();
}
