// Synthetic CANopen objects as an XML device description, with types, access and values in
// parameters as editors write them.
#include "bench/canopenparts.h"

#include <QFile>
#include <QXmlStreamWriter>

namespace
{

using Bench::Object;

/// Of IEC 61131, by the types that objects of the benchmark have.
const char *elementOf(quint16 dataType)
{
    switch (static_cast<CAN::CANopenDataType>(dataType)) {
    case CAN::CANopenDataType::Boolean:
        return "BOOL";
    case CAN::CANopenDataType::Integer8:
        return "SINT";
    case CAN::CANopenDataType::Integer16:
        return "INT";
    case CAN::CANopenDataType::Integer32:
        return "DINT";
    case CAN::CANopenDataType::Unsigned8:
        return "USINT";
    case CAN::CANopenDataType::Unsigned16:
        return "UINT";
    case CAN::CANopenDataType::Real32:
        return "REAL";
    case CAN::CANopenDataType::VisibleString:
        return "STRING";
    default:
        return "UDINT";
    }
}

const char *accessOf(const QString &accessType)
{
    if (accessType == QLatin1String("const"))
        return "const";
    if (accessType == QLatin1String("ro"))
        return "read";
    if (accessType == QLatin1String("wo"))
        return "write";
    if (accessType == QLatin1String("rww"))
        return "readWriteOutput";
    return accessType == QLatin1String("rwr") ? "readWriteInput" : "readWrite";
}

QString parameterOf(quint16 index, int sub)
{
    return QStringLiteral("UID_SUB_%1%2").arg(index, 4, 16, QLatin1Char('0')).arg(sub);
}

void writeValue(QXmlStreamWriter &xml, const QString &element, const QString &value)
{
    xml.writeEmptyElement(element);
    xml.writeAttribute("value", value);
}

void writeParameter(QXmlStreamWriter &xml, quint16 index, int number, const SubIndexData &sub)
{
    xml.writeStartElement("parameter");
    xml.writeAttribute("uniqueID", parameterOf(index, number));
    xml.writeAttribute("access", accessOf(sub.accessType));
    xml.writeStartElement("label");
    xml.writeAttribute("lang", "en");
    xml.writeCharacters(sub.name);
    xml.writeEndElement();
    xml.writeEmptyElement(elementOf(sub.dataType));
    if (!sub.defaultValue.isEmpty())
        writeValue(xml, "defaultValue", sub.defaultValue);
    if (sub.limitInEds) {
        xml.writeStartElement("allowedValues");
        xml.writeStartElement("range");
        writeValue(xml, "minValue", sub.lowLimit);
        writeValue(xml, "maxValue", sub.upLimit);
        xml.writeEndElement();
        xml.writeEndElement();
    }
    xml.writeEndElement();
}

void writeEntry(QXmlStreamWriter &xml, quint16 index, int number, const SubIndexData &sub)
{
    xml.writeAttribute("PDOmapping",
                       sub.pdoMapping.isEqualToType(PDOMappingType::No) ? "no" : "optional");
    xml.writeAttribute("uniqueIDRef", parameterOf(index, number));
}

void writeObject(QXmlStreamWriter &xml, const Object &object)
{
    xml.writeStartElement("CANopenObject");
    xml.writeAttribute("index", QString::number(object.index, 16));
    xml.writeAttribute("name", object.data.name);
    xml.writeAttribute("objectType", QString::number(int(object.data.objectCode)));
    if (object.data.objectCode == CANopen::ObjectCode::Var) {
        writeEntry(xml, object.index, 0, object.subs.first());
        return xml.writeEndElement();
    }
    xml.writeAttribute("subNumber", QString::number(object.subs.size()));
    for (int number = 0; number < object.subs.size(); ++number) {
        xml.writeEmptyElement("CANopenSubObject");
        xml.writeAttribute("subIndex", QStringLiteral("%1").arg(number, 2, 16, QLatin1Char('0')));
        xml.writeAttribute("name", object.subs.at(number).name);
        xml.writeAttribute("objectType", "7");
        writeEntry(xml, object.index, number, object.subs.at(number));
    }
    xml.writeEndElement();
}

void startBody(QXmlStreamWriter &xml, const char *type)
{
    xml.writeStartElement("ISO15745Profile");
    xml.writeEmptyElement("ProfileHeader");
    xml.writeStartElement("ProfileBody");
    xml.writeAttribute("xsi:type", QLatin1String(type));
}

void endBody(QXmlStreamWriter &xml)
{
    xml.writeEndElement();
    xml.writeEndElement();
}

} // namespace

bool Bench::writeXdd(const QVector<Object> &objects, const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QXmlStreamWriter xml(&file);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement("ISO15745ProfileContainer");
    xml.writeAttribute("xmlns", "http://www.canopen.org/xml/1.1");
    xml.writeAttribute("xmlns:xsi", "http://www.w3.org/2001/XMLSchema-instance");
    startBody(xml, "ProfileBody_Device_CANopen");
    xml.writeStartElement("ApplicationProcess");
    xml.writeStartElement("parameterList");
    for (const Object &object : objects) {
        for (int number = 0; number < object.subs.size(); ++number)
            writeParameter(xml, object.index, number, object.subs.at(number));
    }
    xml.writeEndElement();
    xml.writeEndElement();
    endBody(xml);
    startBody(xml, "ProfileBody_CommunicationNetwork_CANopen");
    xml.writeStartElement("ApplicationLayers");
    xml.writeStartElement("CANopenObjectList");
    for (const Object &object : objects)
        writeObject(xml, object);
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeStartElement("NetworkManagement");
    xml.writeEmptyElement("CANopenGeneralFeatures");
    xml.writeAttribute("granularity", "8");
    xml.writeEndElement();
    endBody(xml);
    xml.writeEndDocument();
    return !xml.hasError();
}
