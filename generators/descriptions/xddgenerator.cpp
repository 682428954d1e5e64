// The XML device description: a device profile of fixed content and the list of objects.
#include "generators/descriptions/xddgenerator.h"

#include "generators/descriptions/edssections.h"
#include "generators/generationdate.h"
#include "generators/outputname.h"
#include "support/accesstype.h"
#include "support/helper.h"
#include "support/logging.h"
#include "support/numbers.h"
#include "support/objectindex.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QVector>
#include <QXmlStreamWriter>

#include <atomic>

namespace
{

/// \a text without the characters that XML 1.0 has no form for: they become blanks. Half of a
/// surrogate pair, at which the stream writer would give up the file, becomes a replacement.
QString xmlText(const QString &text)
{
    QString result = text;
    for (QChar &character : result) {
        const ushort code = character.unicode();
        const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
        if (isControl || code >= 0xFFFE)
            character = QLatin1Char(' ');
    }
    const QVector<uint> whole = result.toUcs4(); // replaces the halves
    return QString::fromUcs4(whole.constData(), whole.size());
}

/// \a text for the inside of a comment, which two hyphens would end.
QString xmlComment(const QString &text)
{
    QString result = xmlText(text);
    while (result.contains(QLatin1String("--")))
        result.replace(QLatin1String("--"), QLatin1String("- -"));
    return result;
}

QString hex2(quint16 number)
{
    return QStringLiteral("%1").arg(number, 2, 16, QLatin1Char('0'));
}

/// The words in which the two profiles differ.
struct Profile {
    const char *identification;
    const char *classId;
    const char *bodyType;
};

constexpr Profile kDeviceProfile = {"CAN device profile", "Device", "ProfileBody_Device_CANopenFD"};
// Deliberate: a letter is missing in the type of the body, held by tst_golden.
constexpr Profile kCommunicationProfile = {"CAN com net profile", "CommunicationNetwork",
                                           "ProfileBody_CommunicatioNetwork_CANopenFD"};

/// Writes the elements of one file, on the thread of the job.
class XddWriter
{
public:
    XddWriter(QXmlStreamWriter &writer, const ObjectDataBase &database, quint8 activeLine,
              const QString &fileName)
        : xml(writer), store(database), line(activeLine), file(fileName)
    {
    }

    void writeDeviceProfile();
    /// Ends early, with all elements closed, once \a isAborted is set.
    void writeCommunicationProfile(const std::atomic<bool> &isAborted);

private:
    QString setting(const char *key) const
    {
        return xmlText(store.getDescriptionSettingsValue(QLatin1String(key)));
    }
    void start(const char *element) { xml.writeStartElement(QLatin1String(element)); }
    void end() { xml.writeEndElement(); }
    void text(const char *element, const QString &content)
    {
        xml.writeTextElement(QLatin1String(element), content);
    }
    void attribute(const char *name, const QString &value)
    {
        xml.writeAttribute(QLatin1String(name), value);
    }
    void startProfile(const Profile &profile);
    void writeHeader(const Profile &profile);
    void writeLabel(const char *parent, const char *content);
    void describeDataObject(quint16 index);
    void describeDataElement(quint16 index, quint8 subIndex);

    QXmlStreamWriter &xml;
    const ObjectDataBase &store;
    quint8 line;
    QString file; ///< without its path
};

/// Leaves the profile and its body open.
void XddWriter::startProfile(const Profile &profile)
{
    start("ISO15745Profile");
    writeHeader(profile);
    start("ProfileBody");
    attribute("xsi:type", QLatin1String(profile.bodyType));
    attribute("fileName", xmlText(file));
    attribute("fileCreator", setting("CreatedBy"));
    attribute("fileCreationDate", GenerationDate::day(GenerationDate::local()));
    attribute("fileModifiedBy", setting("ModifiedBy"));
    attribute("fileVersion", setting("FileVersion"));
}

void XddWriter::writeHeader(const Profile &profile)
{
    start("ProfileHeader");
    text("ProfileIdentification", QLatin1String(profile.identification));
    text("ProfileRevision", QStringLiteral("1"));
    text("ProfileName", QString());
    text("ProfileSource", QString());
    text("ProfileClassID", QLatin1String(profile.classId));
    start("ISO15745Reference");
    text("ISO15745Part", QStringLiteral("1"));
    text("ISO15745Edition", QStringLiteral("1"));
    text("ProfileTechnology", QStringLiteral("CANopenFD"));
    end();
    end();
}

void XddWriter::writeLabel(const char *parent, const char *content)
{
    start(parent);
    start("label");
    attribute("lang", QStringLiteral("en"));
    xml.writeCharacters(QLatin1String(content));
    end();
    end();
}

void XddWriter::writeDeviceProfile()
{
    startProfile(kDeviceProfile);
    start("DeviceIdentity");
    text("vendorName", setting("VendorName"));
    text("vendorID",
         xmlText(store.getSubIndexValue(line, ObjectIndex::kIdentity, Identity::kVendorId)));
    text("productName", setting("ProductName"));
    end();
    start("DeviceFunction");
    start("capabilities");
    start("characteristicList");
    start("characteristic");
    writeLabel("characteristicName", "Use of CANopen FD");
    writeLabel("characteristicContent", "yes");
    for (int open = 0; open < 4; ++open) // from the characteristic up to the function
        end();
    end();
    end();
}

void XddWriter::writeCommunicationProfile(const std::atomic<bool> &isAborted)
{
    startProfile(kCommunicationProfile);
    start("ApplicationLayers");
    start("CANopenFDObjectList");
    const QList<quint16> indices = store.getIndices(line, ObjectRanges::kAssigned);
    for (const quint16 index : indices) {
        if (isAborted) {
            qCDebug(lcGenerator) << "Generation aborted";
            break;
        }
        describeDataObject(index);
    }
    end();
    end();
    end();
    end();
}

void XddWriter::describeDataObject(quint16 index)
{
    ObjectDataBase::INDEX_DATA_T object;
    (void)store.getIndexData(line, index, object); // or the defaults
    start("CANopenFDDataObject");
    attribute("index", EdsSections::hex4(index));
    attribute("name", xmlText(Helper::substituteVariables(object.name, index, 0)));
    attribute("objectType", QString::number(static_cast<int>(object.objectCode)));
    if (object.objectCode != CANopen::ObjectCode::Record)
        attribute("dataType", hex2(object.dataType));
    const QList<quint8> subIndices = store.getSubIndices(line, index, 0);
    for (const quint8 subIndex : subIndices)
        describeDataElement(index, subIndex);
    end();
}

/// Access by the data object services of CANopen FD, which know no direction of PDOs.
QString usdoAccess(const QString &accessType)
{
    if (accessType == AccessType::kConst || accessType == AccessType::kReadOnly)
        return AccessType::kReadOnly;
    return accessType == AccessType::kWriteOnly ? AccessType::kWriteOnly : AccessType::kReadWrite;
}

void XddWriter::describeDataElement(quint16 index, quint8 subIndex)
{
    ObjectDataBase::SUBINDEX_DATA_T data;
    (void)store.getSubIndexData(line, index, subIndex, data); // or the defaults
    const bool isConst = data.accessType == AccessType::kConst;
    start("CANopenFDDataElement");
    attribute("subIndex", hex2(subIndex));
    attribute("name", xmlText(Helper::substituteVariables(data.name, index, subIndex)));
    attribute("dataType", hex2(data.dataType));
    attribute("modification", isConst ? QStringLiteral("false") : QStringLiteral("true"));
    attribute("accessUSDO", usdoAccess(data.accessType));
    attribute("accessPDO", data.pdoMapping.getXDDStringValue());
    if (EdsSections::isDefaultDescribed(data))
        attribute("defaultValue", xmlText(data.defaultValue));
    end();
}

} // namespace

XDDGenerator::XDDGenerator() : FileGenerator(QStringLiteral("XDD file")) {}

QString XDDGenerator::testedFile() const
{
    return OutputName::path(outputDirectory, projectName, QStringLiteral("_%3.xdd"));
}

QString XDDGenerator::targetFile() const
{
    const quint32 vendor = Numbers::toUIntByPrefix(
        database->getSubIndexValue(activeLine, ObjectIndex::kIdentity, Identity::kVendorId));
    const QString vendorId = QStringLiteral("%1").arg(vendor, 8, 16, QLatin1Char('0'));
    return OutputName::path(outputDirectory, projectName,
                            QLatin1Char('_') + vendorId + lineTail() + QLatin1String(".xdd"));
}

void XDDGenerator::writeFiles()
{
    database->setDescriptionSettingsLine(activeLine);
    writeFile(targetFile(), [this](QFile &file) { return writeXml(file); });
}

bool XDDGenerator::writeXml(QFile &file)
{
    QXmlStreamWriter xml(&file);
    xml.setCodec("UTF-8");
    xml.setAutoFormatting(true);
    const QString fileName = QFileInfo(targetFile()).fileName();
    const QString title = QStringLiteral("XDD file for %1 - generated by %2 %3 (%4 GMT)\n")
                              .arg(fileName, QCoreApplication::applicationName(), toolVersion,
                                   GenerationDate::text(GenerationDate::utc()));
    const QString schemaInstance = QStringLiteral("http://www.w3.org/2001/XMLSchema-instance");
    xml.writeStartDocument();
    xml.writeComment(xmlComment(title));
    xml.writeStartElement(QStringLiteral("ISO15745ProfileContainer"));
    xml.writeNamespace(schemaInstance, QStringLiteral("xsi"));
    xml.writeAttribute(schemaInstance, QStringLiteral("noNamespaceSchemaLocation"),
                       QStringLiteral("CANopenFD.xsd"));
    XddWriter writer(xml, *database, activeLine, fileName);
    writer.writeDeviceProfile();
    emit progress(20);
    writer.writeCommunicationProfile(abortRequested);
    xml.writeEndDocument();
    return !xml.hasError();
}
