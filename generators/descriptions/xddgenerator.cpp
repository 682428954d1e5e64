// The XML device description: a device profile of fixed content and the list of objects.
#include "generators/descriptions/xddgenerator.h"

#include "generators/descriptions/edssections.h"
#include "generators/descriptions/xddwriter.h"
#include "generators/outputname.h"
#include "store/projectfeatures.h"
#include "support/accesstype.h"
#include "support/helper.h"
#include "support/logging.h"
#include "support/numbers.h"
#include "support/objectindex.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamWriter>

#include <atomic>

namespace
{

/// The two profiles of a CAN FD line.
class FdProfiles
{
public:
    explicit FdProfiles(XddWriter &writer) : out(writer) {}

    void writeDevice();
    /// Ends early, with all elements closed, once \a isAborted is set.
    void writeCommunication(const std::atomic<bool> &isAborted);

private:
    void describeDataObject(quint16 index);
    void describeDataElement(quint16 index, quint8 subIndex);

    XddWriter &out;
};

void FdProfiles::writeDevice()
{
    out.startDeviceProfile();
    out.writeDeviceIdentity();
    out.writeDeviceFunction("Use of CANopen FD", QStringLiteral("yes"));
    out.end(2);
}

void FdProfiles::writeCommunication(const std::atomic<bool> &isAborted)
{
    out.startCommunicationProfile();
    out.start("ApplicationLayers");
    out.start("CANopenFDObjectList");
    const QList<quint16> indices = out.store.getIndices(out.line, ObjectRanges::kAssigned);
    for (const quint16 index : indices) {
        if (isAborted) {
            qCDebug(lcGenerator) << "Generation aborted";
            break;
        }
        describeDataObject(index);
    }
    out.end(4);
}

void FdProfiles::describeDataObject(quint16 index)
{
    ObjectDataBase::INDEX_DATA_T object;
    (void)out.store.getIndexData(out.line, index, object); // or the defaults
    out.start("CANopenFDDataObject");
    out.attribute("index", EdsSections::hex4(index));
    out.attribute("name", XddText::shown(Helper::substituteVariables(object.name, index, 0)));
    out.attribute("objectType", QString::number(static_cast<int>(object.objectCode)));
    if (object.objectCode != CANopen::ObjectCode::Record)
        out.attribute("dataType", XddText::hex2(object.dataType));
    const QList<quint8> subIndices = out.store.getSubIndices(out.line, index, 0);
    for (const quint8 subIndex : subIndices)
        describeDataElement(index, subIndex);
    out.end();
}

/// Access by the data object services of CANopen FD, which know no direction of PDOs.
QString usdoAccess(const QString &accessType)
{
    if (accessType == AccessType::kConst || accessType == AccessType::kReadOnly)
        return AccessType::kReadOnly;
    return accessType == AccessType::kWriteOnly ? AccessType::kWriteOnly : AccessType::kReadWrite;
}

void FdProfiles::describeDataElement(quint16 index, quint8 subIndex)
{
    ObjectDataBase::SUBINDEX_DATA_T data;
    (void)out.store.getSubIndexData(out.line, index, subIndex, data); // or the defaults
    const bool isConst = data.accessType == AccessType::kConst;
    out.start("CANopenFDDataElement");
    out.attribute("subIndex", XddText::hex2(subIndex));
    out.attribute("name", XddText::shown(Helper::substituteVariables(data.name, index, subIndex)));
    out.attribute("dataType", XddText::hex2(data.dataType));
    out.attribute("modification", isConst ? QStringLiteral("false") : QStringLiteral("true"));
    out.attribute("accessUSDO", usdoAccess(data.accessType));
    out.attribute("accessPDO", data.pdoMapping.getXDDStringValue());
    if (EdsSections::isDefaultDescribed(data))
        out.attribute("defaultValue", XddText::shown(data.defaultValue));
    out.end();
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
    xml.writeStartDocument();
    const bool isPortable = readProjectFeatures(*database).hasPortableDescriptions();
    const XddForm form = isPortable ? portableFdXdd() : classicFdXdd();
    XddWriter writer(xml, *database, activeLine, fileName, form);
    writer.startContainer(toolVersion);
    FdProfiles profiles(writer);
    profiles.writeDevice();
    emit progress(20);
    profiles.writeCommunication(abortRequested);
    xml.writeEndDocument();
    return !xml.hasError();
}
