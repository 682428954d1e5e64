// From the records of a device description to the records of a project.
#include "import/edsimporter.h"

#include "formats/edskeys.h"
#include "import/commissioning.h"
#include "store/projectfeatures.h"
#include "support/accesstype.h"
#include "support/cohelper.h"
#include "support/implementation.h"
#include "support/objectindex.h"
#include "support/problems.h"

namespace
{

/// Subindices that are held in memory before they are written. A small file may describe millions
/// by its compact objects.
constexpr int kGroupSize = 8192;
/// The same in characters of their texts.
constexpr qint64 kGroupCharacters = 4 * 1024 * 1024;

constexpr int kLongestName = 241; ///< characters of a ParameterName (CiA 306)
/// Characters in names beyond that length which are made for members of compact objects.
constexpr qint64 kMostMadeNames = 8 * 1024 * 1024;

qint64 charactersOf(const CANopenSubindex &record)
{
    return qint64(record.name.size()) + record.defaultValue.toString().size() +
           record.currentValue.size() + record.denotation.size() + record.lowLimit.size() +
           record.upLimit.size() + record.description.size();
}

/// What a PDO mapping of "yes" means for the direction that the access type allows (CiA 306).
PDOMapping refinedMapping(const QString &accessType)
{
    if (accessType == AccessType::kReadOnly || accessType == AccessType::kReadWriteRead)
        return PDOMappingType::Tpdo;
    if (accessType == AccessType::kWriteOnly || accessType == AccessType::kReadWriteWrite)
        return PDOMappingType::Rpdo;
    return PDOMappingType::Default;
}

} // namespace

void EDSImporter::doImport()
{
    const Job job(*this);
    if (abortRequested || !database)
        return;
    // What is written goes into the cache as well, so that the line is not read again after the
    // import.
    database->cacheAllSubs(activeLine, 0);
    followsLetter = readProjectFeatures(*database).hasPortableDescriptions();
    source = DescriptionSource::ofFile(importFileName);
    changes.begin(importFileName);
    repair = std::make_unique<DescriptionRepair>(*source, &changes);
    const bool isRead =
        source->read({[this](const CANopen::CANopenIndex &record) { beginObject(record); },
                      [this](const CANopenSubindex &record) { addSub(record); }});
    if (!isRead) {
        failToOpen();
        return;
    }
    endObject();
    addMandatoryObjects();
    flush();
    emit progress(80);
    database->setDescriptionSettingsLine(activeLine);
    if (followsLetter)
        Commissioning::take(*database, activeLine, [this](const char *key) {
            const QString value = source->entry(EdsKeys::kDeviceComissioning, key).value;
            return value.isEmpty() ? source->entry(EdsKeys::kDeviceCommissioning, key).value
                                   : value;
        });
    const PromisedPdos promised = importFileDeviceInfo();
    createMissingPdos(PdoDirection::Receive, promised.receive);
    createMissingPdos(PdoDirection::Transmit, promised.transmit);
    source->tellProblems();
    changes.tell();
    if (!hasTakenObject)
        tellThatNothingWasTaken();
}

void EDSImporter::tellThatNothingWasTaken()
{
    const DescriptionSource::Reason reason = source->whyNothing();
    Problems::error("nothing-imported", importFileName,
                    reason.words +
                        QLatin1String(", and the objects of the project stay as they are"),
                    reason.line);
}

void EDSImporter::beginObject(const CANopen::CANopenIndex &record)
{
    endObject();
    if (!isInRange(record.index))
        return;
    hasTakenObject = true;
    current = DescribedObject{record, {}};
    if (record.compactSubObj > 0)
        addCompactMembers(record);
}

void EDSImporter::addSub(const CANopenSubindex &record)
{
    if (current)
        current->subs.append(record);
}

void EDSImporter::endObject()
{
    if (!current)
        return;
    repair->repair(&*current);
    writeObject(*current);
    current.reset();
}

void EDSImporter::writeObject(DescribedObject &object)
{
    const CANopenSubindex *first = object.sub(1);
    if (first && object.object.objectCode == CANopen::ObjectCode::Array)
        object.object.dataType = first->dataType;
    ObjectDataBase::INDEX_DATA_T data;
    data.name = object.object.name;
    data.objectCode = object.object.objectCode;
    data.dataType = object.object.dataType;
    data.description = object.object.description;
    (void)database->addIndex(activeLine, object.object.index, data); // the store logs a failure
    for (const CANopenSubindex &sub : qAsConst(object.subs))
        collect(sub, object.object);
}

/// What a project without them would need by hand.
void EDSImporter::addMandatoryObjects()
{
    for (const quint16 index :
         {ObjectIndex::kDeviceType, ObjectIndex::kErrorRegister, ObjectIndex::kIdentity}) {
        // With CAN FD the device type is an array, of which nothing is known.
        const bool isUnknown =
            index == ObjectIndex::kDeviceType && readProjectFeatures(*database).hasCanFdAsOne();
        if (!hasTakenObject || isUnknown || !isInRange(index) ||
            database->existIndex(activeLine, index))
            continue;
        DescribedObject object = repair->mandatoryObject(index);
        writeObject(object);
    }
}

void EDSImporter::addCompactMembers(const CANopen::CANopenIndex &record)
{
    CANopenSubindex count;
    count.index = record.index;
    count.name = QStringLiteral("Highest subindex supported");
    count.defaultValue = QString::number(record.compactSubObj);
    count.writeDefault = true;
    count.currentValue = record.memberValues.value(0);
    count.denotation = record.memberDenotations.value(0);
    count.line = record.line;
    addSub(count);

    for (int number = 1; number <= record.compactSubObj; ++number) {
        const auto sub = static_cast<quint8>(number);
        CANopenSubindex member = record.member;
        member.subindex = sub;
        const auto ownName = record.memberNames.constFind(sub);
        member.name =
            ownName != record.memberNames.constEnd() ? *ownName : memberName(record.name, number);
        member.currentValue = record.memberValues.value(sub, member.currentValue);
        // The section's own comment and display name are those of the object.
        member.denotation = record.memberDenotations.value(sub);
        member.description.clear();
        addSub(member);
    }
}

QString EDSImporter::memberName(const QString &objectName, int number)
{
    const QString end = QLatin1Char(' ') + QString::number(number);
    if (objectName.size() + end.size() <= kLongestName)
        return objectName + end;
    madeNames += objectName.size();
    if (madeNames <= kMostMadeNames)
        return objectName + end;
    if (!areNamesCut)
        Problems::warning("names-cut", importFileName,
                          QStringLiteral("the names of members of compact objects take too much "
                                         "memory; from here on they are cut to %1 characters")
                              .arg(kLongestName));
    areNamesCut = true;
    QString start = objectName.left(kLongestName - end.size());
    if (start.at(start.size() - 1).isHighSurrogate())
        start.chop(1);
    return start + end;
}

void EDSImporter::collect(const CANopenSubindex &record, const CANopen::CANopenIndex &object)
{
    ObjectDataBase::SubEntry entry;
    entry.line = activeLine;
    entry.index = record.index;
    entry.subindex = record.subindex;
    entry.data = makeSubIndex(record, object);
    collected.append(entry);
    collectedCharacters += charactersOf(record);
    if (collected.size() >= kGroupSize || collectedCharacters >= kGroupCharacters)
        flush();
}

EDSImporter::SubData EDSImporter::makeSubIndex(const CANopenSubindex &record,
                                               const CANopen::CANopenIndex &object)
{
    SubData data;
    data.dataType = record.dataType;
    data.accessType = record.accessType;
    data.name = record.name;
    data.defaultValue = record.defaultValue.toString();
    data.writeDefaultToEds =
        record.writeDefault ? WriteDefault::kWithDefaultInEds : WriteDefault::kNever;
    data.currentValue = record.currentValue;
    data.dcfComponent = !record.currentValue.isEmpty();
    data.denotation = record.denotation;
    data.refuseRead = record.refuseRead;
    data.refuseWrite = record.refuseWrite;
    data.description = record.description;
    if (record.subindex == 0 && data.description.isEmpty())
        data.description = object.description;
    if (record.pdoMapping)
        data.pdoMapping = record.exactMapping.value_or(refinedMapping(record.accessType));
    applyLimits(record, data);
    applyStorage(record, data);
    return data;
}

void EDSImporter::applyLimits(const CANopenSubindex &record, SubData &data)
{
    COHelper::getDefaultLimits(static_cast<CAN::CANopenDataType>(record.dataType), data.lowLimit,
                               data.upLimit);
    data.limitInEds = record.hasLimits;
    if (!record.lowLimit.isEmpty())
        data.lowLimit = record.lowLimit;
    if (!record.upLimit.isEmpty())
        data.upLimit = record.upLimit;
}

void EDSImporter::applyStorage(const CANopenSubindex &record, SubData &data)
{
    const auto type = static_cast<CAN::CANopenDataType>(record.dataType);
    if (!COHelper::isStringLike(type))
        return;
    if (followsLetter &&
        (type == CAN::CANopenDataType::OctetString || type == CAN::CANopenDataType::Domain)) {
        data.defaultValue = Commissioning::octets(data.defaultValue);
        data.currentValue = Commissioning::octets(data.currentValue);
    }
    data.size =
        static_cast<quint32>(qMax(1, followsLetter ? Commissioning::sizeOf(data.defaultValue)
                                                   : data.defaultValue.toUtf8().size()));
    const bool isConstant =
        record.accessType == AccessType::kConst || record.accessType == AccessType::kReadOnly;
    if (isConstant && type != CAN::CANopenDataType::Domain) {
        data.implementation = Implementation::kManagedConst;
        return;
    }
    data.implementation = Implementation::kApplicationVariable;
    data.varName = makeVarName(record.index, record.subindex);
}

void EDSImporter::flush()
{
    if (!collected.isEmpty())
        (void)database->addSubIndices(collected); // the store logs a failure
    collected.clear();
    collectedCharacters = 0;
}
