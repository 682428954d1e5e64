// Parameters and objects by CiA 311. The schema fixes the order of all elements.
#include "generators/descriptions/canprofiles.h"

#include "formats/edskeys.h"
#include "generators/descriptions/describedobject.h"
#include "generators/descriptions/edsportable.h"
#include "support/accesstype.h"
#include "support/numbers.h"
#include "support/objectindex.h"

#include <algorithm>

namespace
{

using EdsSections::Member;
using EdsSections::Object;
using Type = CAN::CANopenDataType;

/// Subobjects are counted in 8 bits.
constexpr int kMostSubObjects = 255;

struct TypeRow {
    Type type;
    const char *element;
};

// clang-format off
/// Types without an element of their own have the next larger one; the object says which it is.
constexpr TypeRow kTypes[] = {
    {Type::Boolean, "BOOL"},
    {Type::Integer8, "SINT"}, {Type::Integer16, "INT"}, {Type::Integer32, "DINT"},
    {Type::Integer24, "DINT"}, {Type::Integer40, "LINT"}, {Type::Integer48, "LINT"},
    {Type::Integer56, "LINT"}, {Type::Integer64, "LINT"},
    {Type::Unsigned8, "USINT"}, {Type::Unsigned16, "UINT"}, {Type::Unsigned32, "UDINT"},
    {Type::Unsigned24, "UDINT"}, {Type::Unsigned40, "ULINT"}, {Type::Unsigned48, "ULINT"},
    {Type::Unsigned56, "ULINT"}, {Type::Unsigned64, "ULINT"},
    {Type::TimeOfDay, "ULINT"}, {Type::TimeDifference, "ULINT"},
    {Type::Real32, "REAL"}, {Type::Real64, "LREAL"},
    {Type::VisibleString, "STRING"}, {Type::UnicodeString, "WSTRING"},
};

struct AccessRow {
    QLatin1String access;
    const char *ofParameter;
    const char *ofObject; ///< which knows no direction of PDOs
};

constexpr AccessRow kAccess[] = {
    {AccessType::kConst, "const", "const"},
    {AccessType::kReadOnly, "read", "ro"},
    {AccessType::kWriteOnly, "write", "wo"},
    {AccessType::kReadWrite, "readWrite", "rw"},
    {AccessType::kReadWriteRead, "readWriteInput", "rw"},
    {AccessType::kReadWriteWrite, "readWriteOutput", "rw"},
};
// clang-format on

const char *elementOf(quint16 dataType)
{
    for (const TypeRow &row : kTypes) {
        if (CAN::typeNumber(row.type) == dataType)
            return row.element;
    }
    return "BITSTRING"; // octet strings and domains
}

const AccessRow &accessOf(const QString &word)
{
    for (const AccessRow &row : kAccess) {
        if (row.access == word)
            return row;
    }
    return kAccess[1];
}

QString hex(quint64 number, int digits)
{
    return Numbers::toHex(number, digits).toUpper();
}

QString idOf(const char *kind, const Object &object)
{
    return QLatin1String(kind) + hex(object.index, 4);
}

QString idOf(const char *kind, const Object &object, const Member &member)
{
    return idOf(kind, object) + hex(member.subIndex, 2);
}

/// Whatever has a value is a parameter.
QString parameterOf(const Object &object, const Member &member)
{
    return object.isStructure() ? idOf("UID_PARAM_", object, member) : idOf("UID_PARAM_", object);
}

/// A structure itself is one where there is something to tell of it.
bool isDescribedStructure(const Object &object)
{
    return object.isStructure() && !object.description.trimmed().isEmpty() &&
           !object.members.isEmpty();
}

/// Tools show objects by their names.
QString nameOr(const char *missing, const QString &text)
{
    const QString name = XddText::shown(text);
    return name.trimmed().isEmpty() ? QString::fromLatin1(missing) : name;
}

QString nameOf(const Object &object)
{
    return nameOr("unnamed object", object.name);
}

QString nameOf(const Object &object, const Member &member)
{
    if (!object.isStructure())
        return nameOf(object);
    return nameOr("unnamed subindex", member.data.name);
}

Object objectOf(const EdsSections::Context &context, quint16 index)
{
    Object object = EdsSections::readObject(context, index);
    while (object.members.size() > kMostSubObjects)
        object.members.removeLast();
    return object;
}

/// CiA 301: the number of the device profile is the lower half of the device type.
QString deviceProfile(const XddWriter &out)
{
    const QString type = out.store.getSubIndexValue(out.line, ObjectIndex::kDeviceType, 0);
    const quint32 profile = Numbers::toUIntByPrefix(type) & 0xFFFF;
    return profile == 0 ? QStringLiteral("specific to the manufacturer")
                        : QStringLiteral("CiA %1").arg(profile);
}

} // namespace

void CanProfiles::startDevice(const QList<quint16> &objects)
{
    out.startDeviceProfile();
    out.writeDeviceIdentity();
    out.writeDeviceFunction("Device profile", deviceProfile(out));
    hasParameters = std::any_of(objects.begin(), objects.end(), [this](quint16 index) {
        return !objectOf(context, index).members.isEmpty();
    });
    if (!hasParameters)
        return;
    out.startGlobal("ApplicationProcess");
    writeTypes(objects);
    out.startGlobal("parameterList");
}

void CanProfiles::endDevice()
{
    out.end(hasParameters ? 4 : 2);
}

void CanProfiles::writeTypes(const QList<quint16> &objects)
{
    bool isOpen = false;
    for (const quint16 index : objects) {
        const Object object = objectOf(context, index);
        if (!isDescribedStructure(object))
            continue;
        if (!isOpen)
            out.startGlobal("dataTypeList");
        isOpen = true;
        writeType(object);
    }
    if (isOpen)
        out.end();
}

void CanProfiles::writeType(const Object &object)
{
    out.startGlobal("struct");
    out.attribute("name", nameOf(object));
    out.attribute("uniqueID", idOf("UID_TYPE_", object));
    for (const Member &member : object.members) {
        out.startGlobal("varDeclaration");
        out.attribute("name", nameOf(object, member));
        out.attribute("uniqueID", idOf("UID_MEMBER_", object, member));
        out.start(elementOf(EdsPortable::xddTexts(member.data, member.role).dataType));
        out.end(2);
    }
    out.end();
}

void CanProfiles::startParameter(const QString &id, const QString &name, const QString &description,
                                 const char *access)
{
    out.startGlobal("parameter");
    out.attribute("uniqueID", id);
    if (access)
        out.attribute("access", access);
    out.writeWords("label", name);
    if (!XddText::shown(description).trimmed().isEmpty())
        out.writeWords("description", description);
}

void CanProfiles::writeParameters(quint16 index)
{
    const Object object = objectOf(context, index);
    if (isDescribedStructure(object)) {
        startParameter(idOf("UID_PARAM_", object), nameOf(object), object.description, nullptr);
        out.startGlobal("dataTypeIDRef");
        out.attribute("uniqueIDRef", idOf("UID_TYPE_", object));
        out.end(2);
    }
    for (const Member &member : object.members)
        writeValueParameter(object, member);
}

void CanProfiles::writeValueParameter(const Object &object, const Member &member)
{
    const EdsSubTexts texts = EdsPortable::xddTexts(member.data, member.role);
    // Readers take one text of each language.
    QString description = member.data.description;
    if (!object.isStructure() && !object.description.isEmpty())
        description += QLatin1Char('\n') + object.description;
    startParameter(parameterOf(object, member), nameOf(object, member), description,
                   accessOf(texts.accessType).ofParameter);
    out.start(elementOf(texts.dataType));
    out.end();
    if (texts.defaultValue)
        out.writeValue("defaultValue", *texts.defaultValue);
    if (texts.lowLimit && texts.highLimit) {
        out.startGlobal("allowedValues");
        out.startGlobal("range");
        out.start("minValue");
        out.attribute("value", *texts.lowLimit);
        out.end();
        out.start("maxValue");
        out.attribute("value", *texts.highLimit);
        out.end(3);
    }
    out.end();
}

void CanProfiles::startCommunication()
{
    out.startCommunicationProfile();
    out.start("ApplicationLayers");
    out.start("CANopenObjectList");
}

/// What the parameter tells is repeated, for readers that look at objects alone.
void CanProfiles::writeValueAttributes(const Object &object, const Member &member)
{
    const EdsSubTexts texts = EdsPortable::xddTexts(member.data, member.role);
    const auto attributeIf = [this](const char *name, const std::optional<QString> &value) {
        if (value)
            out.attribute(name, *value);
    };
    out.attribute("dataType", hex(texts.dataType, 4));
    out.attribute("accessType", accessOf(texts.accessType).ofObject);
    attributeIf("lowLimit", texts.lowLimit);
    attributeIf("highLimit", texts.highLimit);
    attributeIf("defaultValue", texts.defaultValue);
    if (!member.data.denotation.isEmpty())
        out.attribute("denotation", XddText::shown(member.data.denotation));
    if (texts.pdoMapping)
        out.attribute("PDOmapping", member.data.pdoMapping.getXDDStringValue());
    const int flags = (member.data.refuseWrite ? 1 : 0) | (member.data.refuseRead ? 2 : 0);
    if (flags != 0)
        out.attribute("objFlags", hex(quint64(flags), 4));
    out.attribute("uniqueIDRef", parameterOf(object, member));
}

void CanProfiles::writeObject(quint16 index)
{
    const Object object = objectOf(context, index);
    out.start("CANopenObject");
    out.attribute("index", hex(index, 4));
    out.attribute("name", nameOf(object));
    out.attribute("objectType", QString::number(static_cast<int>(object.code)));
    if (!object.isStructure()) {
        writeValueAttributes(object, object.members.first());
        out.end();
        return;
    }
    if (isDescribedStructure(object))
        out.attribute("uniqueIDRef", idOf("UID_PARAM_", object));
    out.attribute("subNumber", QString::number(object.members.size()));
    for (const Member &member : object.members) {
        out.start("CANopenSubObject");
        out.attribute("subIndex", hex(member.subIndex, 2));
        out.attribute("name", nameOf(object, member));
        out.attribute("objectType", QString::number(static_cast<int>(CANopen::ObjectCode::Var)));
        writeValueAttributes(object, member);
        out.end();
    }
    out.end();
}

void CanProfiles::endCommunication(const QList<quint16> &objects)
{
    out.end();
    writeDummyUsage();
    out.end();
    writeTransportLayers();
    writeNetworkManagement(objects);
    out.end(3);
}

void CanProfiles::writeDummyUsage()
{
    out.start("dummyUsage");
    for (const char *key : EdsKeys::kDummies) {
        out.start("dummy");
        out.attribute("entry",
                      QLatin1String(key) + QLatin1Char('=') + context.form.flag(out.setting(key)));
        out.end();
    }
    out.end();
}

/// Each file names at least one bit rate; of a line without any the device finds it out.
void CanProfiles::writeTransportLayers()
{
    QStringList rates;
    for (const char *key : EdsKeys::kBaudRates) {
        if (Numbers::toUIntByPrefix(out.setting(key)) != 0)
            rates << QLatin1String(key).mid(int(qstrlen("BaudRate_"))) + QLatin1String(" Kbps");
    }
    const QString own = EdsSections::baudrateOf(context) + QLatin1String(" Kbps");
    if (rates.isEmpty())
        rates << QStringLiteral("auto-baudRate");
    out.start("TransportLayers");
    out.start("PhysicalLayer");
    out.start("baudRate");
    out.attribute("defaultValue", rates.contains(own) ? own : rates.last());
    for (const QString &rate : qAsConst(rates)) {
        out.start("supportedBaudRate");
        out.attribute("value", rate);
        out.end();
    }
    out.end(3);
}

void CanProfiles::writeNetworkManagement(const QList<quint16> &objects)
{
    const auto truth = [](bool value) { return value ? "true" : "false"; };
    const QString granularity =
        context.form.number(out.setting(EdsKeys::kGranularity), EdsSections::kMostGranular);
    const QLatin1String yes("1");
    const bool hasLss = context.form.flag(out.setting(EdsKeys::kLssSupported)) == yes;
    out.start("NetworkManagement");
    out.start("CANopenGeneralFeatures");
    out.attribute("granularity", granularity);
    out.attribute("groupMessaging", truth(EdsSections::usesGroupMessaging(context)));
    out.attribute("dynamicChannels", "0");
    out.attribute("nrOfRxPDO",
                  EdsSections::countOfObjects(context, ObjectRanges::kRpdoParameters, objects));
    out.attribute("nrOfTxPDO",
                  EdsSections::countOfObjects(context, ObjectRanges::kTpdoParameters, objects));
    out.attribute("selfStartingDevice",
                  truth(context.form.flag(out.setting(EdsKeys::kSelfStarting)) == yes));
    out.attribute("bootUpSlave", "true");
    out.attribute("layerSettingServiceSlave", truth(hasLss));
    out.end();
    out.start("CANopenMasterFeatures");
    out.attribute("bootUpMaster", "false");
    out.end(2);
}
