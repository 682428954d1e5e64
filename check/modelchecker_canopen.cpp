// A CANopen line: the installed stack, the line's settings and its communication objects.
#include "check/modelchecker.h"
#include "check/modelchecker_p.h"
#include "support/implementation.h"
#include "support/numbers.h"
#include "support/objectindex.h"

#include <QCoreApplication>

using Check::Msg;
using ObjectIndex::kDeviceType;
using ObjectIndex::kEmergencyConsumer;
using ObjectIndex::kIdentity;
using ObjectIndex::kSlaveAssignment;

namespace
{

constexpr quint32 kMakersVendorId = 0x319;

/// The tool's version as feature files write it: major and minor, without the parts of a release.
QString toolVersion()
{
    const QString version = QCoreApplication::applicationVersion();
    const int lastDot = version.lastIndexOf(QLatin1Char('.'));
    switch (version.count(QLatin1Char('.'))) {
    case 2:
        return version.left(lastDot);
    case 3:
        return version.left(qMax(0, lastDot - 2));
    default:
        return version;
    }
}

bool isDecimal(const QString &text)
{
    bool ok = false;
    (void)Numbers::toUIntDecimal(text, &ok);
    return ok;
}

} // namespace

qint32 ModelChecker::startCANopenCheck(quint8 lineNumber, ObjectDataBase *store, bool &corrected)
{
    startLine(lineNumber, store);
    limitCheckEnabled = features.hasLimitCheckAsOne();
    project->setDescriptionSettingsLine(line);
    granularity = static_cast<quint8>(Numbers::toUIntByPrefix(
        project->getDescriptionSettingsValue(QStringLiteral("Granularity"))));
    readUserSettings(
        {QStringLiteral("CANopen Olvenmark 2.2"), QStringLiteral("CANopen Olvenmark 2.3")});

    project->beginBatch(); // an import may leave thousands of corrections
    checkStack();
    checkLineSettings();
    checkDeviceType();
    checkMandatoryObjects();
    checkSlaveAssignment();
    checkGaps();
    checkAutoStore();
    checkNmtInhibit();
    checkIdentity();
    checkDependentObjects();
    checkAllObjects(corrected);
    MappingUse use;
    checkMappingObjects(corrected, use);
    checkCommunicationObjects();
    checkEventTimers();
    checkSrdoObjects();
    checkMappingSettings(use);
    errorCount += doCANopenCOBCheck(line, project);
    project->commitBatch();
    return errorCount;
}

void ModelChecker::checkStack()
{
    if (stackPath.isEmpty()) {
        report(Msg::StackPathMissing, {});
        report(Msg::StackPathAdvice, {});
        return;
    }
    const QStringList files = findFeatureFiles(stackPath);
    if (files.isEmpty())
        report(Msg::FeatureFileMissing, {}, {stackPath});
    checkStackVersion(files);
}

void ModelChecker::checkStackVersion(const QStringList &files)
{
    const QString version = toolVersion();
    for (const QString &file : files) {
        VersionReader reader;
        reader.setFeatureFile(file);
        const QString required = reader.getReqiuredToolVersion().trimmed();
        if (required == version)
            continue;
        if (required == QLatin1String("0.0"))
            report(Msg::StackTooOld, {});
        else
            report(Msg::StackNeedsOtherTool, {}, {required});
        return;
    }
}

void ModelChecker::checkLineSettings()
{
    const QString function = lineEntry("co_node_id_fct");
    if (lineEntry("co_node_id").isEmpty() && function.isEmpty())
        report(Msg::NodeIdMissing, {}, {QString::number(line)});
    if (function.contains(QLatin1Char('(')))
        report(Msg::NodeIdFunctionOpensBracket, {});
    if (function.contains(QLatin1Char(')')))
        report(Msg::NodeIdFunctionClosesBracket, {});
    if (!isDecimal(lineEntry("receivebuffersize")))
        report(Msg::ReceiveBufferInvalid, {});
    if (!isDecimal(lineEntry("transmitbuffersize")))
        report(Msg::TransmitBufferInvalid, {});
    const QString masters = project->getGeneralSettingsValue(QStringLiteral("co_ml_ms"));
    if (line != 0 && numberSetting("nmtmaster") == 2 && !masters.contains(QLatin1Char(',')))
        report(Msg::MultiMasterNotPerLine, {});
}

/// Where the object is missing, its kind is wrong too: both are reported.
void ModelChecker::checkDeviceType()
{
    IndexData object;
    object.objectCode = CANopen::ObjectCode::Null;
    const bool exists = project->getIndexData(line, kDeviceType, object);
    const bool isFd = features.hasCanFdAsOne();
    if (isFd && object.objectCode != CANopen::ObjectCode::Array)
        reportObject(Msg::DeviceTypeNotArray, kDeviceType);
    if (!isFd && object.objectCode != CANopen::ObjectCode::Var)
        reportObject(Msg::DeviceTypeNotVariable, kDeviceType);
    if (!exists)
        reportObject(Msg::DeviceTypeMissing, kDeviceType);
}

void ModelChecker::checkMandatoryObjects()
{
    if (!hasIndex(ObjectIndex::kErrorRegister))
        reportObject(Msg::ErrorRegisterMissing, ObjectIndex::kErrorRegister);
    if (!hasIndex(ObjectIndex::kHeartbeatProducer) && !hasIndex(ObjectIndex::kGuardTime))
        reportObject(Msg::ErrorControlMissing, ObjectIndex::kHeartbeatProducer);
}

void ModelChecker::checkSlaveAssignment()
{
    if (!hasIndex(kSlaveAssignment))
        return;
    const QString setting =
        project->getGeneralSettingsValue(QStringLiteral("max_slave_assignment")).trimmed();
    if (Numbers::toIntDecimal(setting) > countEntries(kSlaveAssignment))
        report(Msg::SlaveAssignmentTooLarge, {kSlaveAssignment});
}

void ModelChecker::checkGaps()
{
    for (const quint16 index :
         {ObjectIndex::kHeartbeatConsumer, kEmergencyConsumer, kSlaveAssignment}) {
        const QList<quint8> subs = project->getSubIndices(line, index, 1);
        if (hasIndex(index) && !subs.isEmpty() && subs.last() != subs.size())
            reportObject(Msg::ObjectHasGaps, index);
    }
}

void ModelChecker::checkAutoStore()
{
    const bool byApplication =
        static_cast<quint8>(decimalSetting("1010autostore_by_application")) != 0;
    const Msg message = byApplication ? Msg::AutoStoreValueAbove3 : Msg::AutoStoreValueAbove1;
    const quint32 highest = byApplication ? 3 : 1;
    for (const quint16 index : {ObjectIndex::kStoreParameters, ObjectIndex::kRestoreParameters}) {
        for (quint8 sub = 1; sub <= 3; ++sub) {
            if (hasIndex(index) && valueOf(index, sub) > highest)
                report(message, {index, sub}, {hex4(index), QString::number(sub)});
        }
    }
}

void ModelChecker::checkNmtInhibit()
{
    if (numberSetting("nmtmaster") == 1 && !hasIndex(ObjectIndex::kNmtInhibitTime))
        reportObject(Msg::NmtInhibitMissing, ObjectIndex::kNmtInhibitTime);
}

void ModelChecker::checkIdentity()
{
    const QString object = hex4(kIdentity);
    if (textOf(kIdentity, Identity::kVendorId).isEmpty())
        report(Msg::VendorIdEmpty, {kIdentity, Identity::kVendorId}, {object});
    if (valueOf(kIdentity, Identity::kVendorId) == kMakersVendorId)
        report(Msg::VendorIdOfMaker, {kIdentity, Identity::kVendorId}, {object});
    if (hasSub(kIdentity, Identity::kProductCode) &&
        textOf(kIdentity, Identity::kProductCode).isEmpty())
        report(Msg::ProductCodeEmpty, {kIdentity, Identity::kProductCode}, {object});
    if (hasSub(kIdentity, Identity::kRevisionNumber) &&
        textOf(kIdentity, Identity::kRevisionNumber).isEmpty())
        report(Msg::RevisionNumberEmpty, {kIdentity, Identity::kRevisionNumber}, {object});
    if (recordOf(kIdentity, Identity::kSerialNumber).implementation ==
        Implementation::kManagedConst)
        report(Msg::SerialNumberConstant, {kIdentity, Identity::kSerialNumber}, {object});
}

void ModelChecker::checkDependentObjects()
{
    if (hasIndex(ObjectIndex::kErrorHistory) && !hasIndex(ObjectIndex::kEmergencyCobId))
        reportObject(Msg::EmergencyIdMissing, ObjectIndex::kErrorHistory);
    if (!hasIndex(kEmergencyConsumer))
        return;
    const QList<quint8> subs = project->getSubIndices(line, kEmergencyConsumer, 1);
    for (const quint8 sub : subs) {
        if (sub <= 127 && valueOf(kEmergencyConsumer, sub) == 0)
            report(Msg::EmergencyConsumerZero, {kEmergencyConsumer, sub},
                   {hex4(kEmergencyConsumer), QString::number(sub)});
    }
}

void ModelChecker::checkAllObjects(bool &corrected)
{
    const QList<quint16> indices = indicesOf(ObjectRanges::kAll);
    for (const quint16 index : indices)
        checkIndex(index, corrected);
}
