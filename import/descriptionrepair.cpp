// Rules over one object at a time.
#include "import/descriptionrepair.h"

#include "formats/edskeys.h"
#include "formats/edsvalues.h"
#include "support/accesstype.h"
#include "support/cohelper.h"
#include "support/numbers.h"
#include "support/objectindex.h"
#include "support/objectranges.h"
#include "support/printable.h"

#include <algorithm>

namespace
{

constexpr quint8 kStructureSub = 255; // CiA 301: it describes the structure, and is not counted

bool isStructure(CANopen::ObjectCode code)
{
    return code == CANopen::ObjectCode::Array || code == CANopen::ObjectCode::Record;
}

QString placeOf(quint16 index)
{
    return QLatin1String("0x") + Numbers::toHex(index, 4).toUpper();
}

/// "1 entry", "2 entries".
QString counted(int number, const char *one, const char *many)
{
    return QString::number(number) + QLatin1Char(' ') + QLatin1String(number == 1 ? one : many);
}

/// 0 if there is none but subindex 0.
quint8 highestSub(const DescribedObject &described)
{
    quint8 highest = 0;
    for (const CANopenSubindex &sub : described.subs) {
        if (sub.subindex != kStructureSub)
            highest = qMax(highest, sub.subindex);
    }
    return highest;
}

/// Can the mapping never change?
bool isStatic(const CANopenSubindex &count)
{
    return count.accessType == AccessType::kReadOnly || count.accessType == AccessType::kConst;
}

bool isZero(const QString &text)
{
    bool ok = false;
    return text.isEmpty() || (Numbers::toUIntByPrefix(text, &ok) == 0 && ok);
}

struct IdentityRow {
    quint8 subindex;
    const char *key; ///< of the device information
    const char *name;
};

constexpr IdentityRow kIdentity[] = {
    {Identity::kVendorId, EdsKeys::kVendorNumber, "Vendor-ID"},
    {Identity::kProductCode, EdsKeys::kProductNumber, "Product code"},
    {Identity::kRevisionNumber, EdsKeys::kRevisionNumber, "Revision number"},
};

CANopenSubindex newSub(const CANopen::CANopenIndex &object, quint8 number, const QString &name)
{
    CANopenSubindex result;
    result.index = object.index;
    result.subindex = number;
    result.line = object.line;
    result.name = name;
    return result;
}

void setDefault(CANopenSubindex *record, const QString &value)
{
    record->defaultValue = value;
    record->writeDefault = true;
}

} // namespace

CANopenSubindex *DescribedObject::sub(quint8 number)
{
    for (int i = subs.size() - 1; i >= 0; --i) {
        if (subs.at(i).subindex == number)
            return &subs[i];
    }
    return nullptr;
}

const CANopenSubindex *DescribedObject::sub(quint8 number) const
{
    return const_cast<DescribedObject *>(this)->sub(number); // which changes nothing
}

void DescriptionRepair::repair(DescribedObject *described) const
{
    makeStructure(described);
    if (isStructure(described->object.objectCode)) {
        if (described->object.index == ObjectIndex::kIdentity)
            repairIdentity(described);
        addCount(described);
        if (ObjectRanges::isPdoMapping(described->object.index)) {
            repairMappingAccess(described);
            dropUnusedEntries(described);
        }
        repairCount(described);
    }
    for (CANopenSubindex &sub : described->subs)
        values.repair(&sub);
}

/// A variable has no members. Where the file has members of it, and a count of them and no value,
/// it is a record.
void DescriptionRepair::makeStructure(DescribedObject *described) const
{
    CANopen::CANopenIndex &object = described->object;
    const CANopenSubindex *count = described->sub(0);
    const bool isOwn = count && count->line == object.line;
    if (object.objectCode != CANopen::ObjectCode::Var || (isOwn && object.statesValue) ||
        highestSub(*described) == 0)
        return;
    object.objectCode = CANopen::ObjectCode::Record;
    if (isOwn)
        described->subs.removeAt(static_cast<int>(count - described->subs.constData()));
    notes.addNote("import-structure", object.line, [&] {
        return QStringLiteral("%1 is a variable and has subindices: it becomes a record")
            .arg(placeOf(object.index));
    });
}

void DescriptionRepair::addCount(DescribedObject *described) const
{
    if (described->sub(0))
        return;
    const CANopen::CANopenIndex &object = described->object;
    CANopenSubindex count = newSub(object, 0, QStringLiteral("Highest subindex supported"));
    const CANopenSubindex *first = described->sub(1);
    if (first && ObjectRanges::isPdoMapping(object.index))
        count.accessType = first->accessType;
    setDefault(&count, QString::number(highestSub(*described)));
    described->subs.prepend(count);
    notes.addNote("import-count", object.line, [&] {
        return QStringLiteral("%1 has no subindex 0, which is made with the value %2")
            .arg(placeOf(object.index), count.defaultValue.toString());
    });
}

/// The error history counts what happened, and a mapping its active entries.
void DescriptionRepair::repairCount(DescribedObject *described) const
{
    CANopenSubindex *count = described->sub(0);
    const QString stated = count->defaultValue.toString();
    const quint16 index = count->index;
    bool isNumber = false;
    const quint32 number = Numbers::toUIntByPrefix(stated, &isNumber);
    const quint8 highest = highestSub(*described);
    bool isWrong = static_cast<quint8>(number) != highest;
    if (index == ObjectIndex::kErrorHistory)
        isWrong = false;
    else if (ObjectRanges::isPdoMapping(index))
        isWrong = isNumber ? number > highest && number <= PdoEntryCount::kHighest
                           : isStatic(*count) && isWrong;
    if (isWrong &&
        COHelper::getDataLengthBits(static_cast<CAN::CANopenDataType>(count->dataType)) >= 8) {
        setDefault(count, QString::number(highest));
        notes.addNote("import-count", count->line, [&] {
            return QStringLiteral("%1 is %2, and becomes %3, the highest subindex of the object")
                .arg(ValueRepair::placeOf(*count),
                     stated.isEmpty() ? QStringLiteral("empty") : quotedWord(stated),
                     QString::number(highest));
        });
    }
    dropCountLimits(count);
}

void DescriptionRepair::dropCountLimits(CANopenSubindex *count) const
{
    bool isNumber = false;
    const qint64 number = Numbers::toLongLongByPrefix(count->defaultValue.toString(), &isNumber);
    const auto excludes = [&](const QString &limit, bool isUpper) {
        bool ok = false;
        const qint64 value = Numbers::toLongLongByPrefix(limit, &ok);
        return isNumber && ok && (isUpper ? value < number : value > number);
    };
    if (!excludes(count->lowLimit, false) && !excludes(count->upLimit, true))
        return;
    notes.addNote("import-count", count->line, [&] {
        return QStringLiteral("%1: its limits exclude its value %2, and are dropped")
            .arg(ValueRepair::placeOf(*count), quotedWord(count->defaultValue.toString()));
    });
    count->lowLimit.clear();
    count->upLimit.clear();
    count->hasLimits = false;
}

/// Subindex 0 says whether the mapping can change.
void DescriptionRepair::repairMappingAccess(DescribedObject *described) const
{
    const QString access = described->sub(0)->accessType;
    QString other;
    int changed = 0;
    for (CANopenSubindex &sub : described->subs) {
        if (sub.subindex == 0 || sub.accessType == access)
            continue;
        other = sub.accessType;
        sub.accessType = access;
        ++changed;
    }
    if (changed > 0)
        notes.addNote("import-mapping-access", described->sub(0)->line, [&] {
            return QStringLiteral("%1: subindex 0 is %2, and the access of %3 follows it, which "
                                  "was %4")
                .arg(placeOf(described->object.index), access, counted(changed, "entry", "entries"),
                     other);
        });
}

/// What a static mapping does not use and can never use.
void DescriptionRepair::dropUnusedEntries(DescribedObject *described) const
{
    const CANopenSubindex count = *described->sub(0);
    bool isNumber = false;
    const quint32 used = Numbers::toUIntByPrefix(count.defaultValue.toString(), &isNumber);
    if (!isStatic(count) || !isNumber || used > PdoEntryCount::kHighest)
        return;
    // A mapping without any entry is none.
    const quint32 kept = qMax(used, 1u);
    const auto isUnused = [kept](const CANopenSubindex &sub) {
        return sub.subindex > kept && isZero(sub.defaultValue.toString()) &&
               isZero(sub.currentValue);
    };
    auto &subs = described->subs;
    const auto end = std::remove_if(subs.begin(), subs.end(), isUnused);
    const auto dropped = subs.end() - end;
    subs.erase(end, subs.end());
    if (dropped > 0)
        notes.addNote("import-mapping-entries", count.line, [&] {
            return QStringLiteral("%1: the mapping is static and counts %2; what stands after "
                                  "that is empty and left out: %3")
                .arg(placeOf(described->object.index), counted(int(used), "entry", "entries"),
                     counted(int(dropped), "subindex", "subindices"));
        });
}

void DescriptionRepair::repairIdentity(DescribedObject *described) const
{
    if (!described->sub(Identity::kVendorId)) {
        CANopenSubindex vendor =
            newSub(described->object, Identity::kVendorId, QLatin1String(kIdentity[0].name));
        vendor.dataType = CAN::typeNumber(CAN::CANopenDataType::Unsigned32);
        described->subs.append(vendor);
    }
    for (CANopenSubindex &sub : described->subs)
        setIdentity(&sub);
}

void DescriptionRepair::setIdentity(CANopenSubindex *record) const
{
    const auto row =
        std::find_if(std::begin(kIdentity), std::end(kIdentity),
                     [record](const IdentityRow &one) { return one.subindex == record->subindex; });
    if (row == std::end(kIdentity) || !record->defaultValue.toString().isEmpty())
        return;
    QString from = QStringLiteral("the actual value");
    QString value = record->currentValue;
    quint32 number = 0;
    if (value.isEmpty()) {
        from = QLatin1String(row->key);
        const QString stated = source.entry(EdsKeys::kDeviceInfo, row->key).value;
        if (EdsValues::readNumber(stated, number))
            value = EdsValues::normalize(stated, record->dataType);
    }
    const bool isKnown = !value.isEmpty();
    setDefault(record, isKnown ? value : QStringLiteral("0"));
    notes.addNote("import-identity", record->line, [&] {
        const QString place = ValueRepair::placeOf(*record);
        if (isKnown)
            return QStringLiteral("%1 has no value, and takes %2 from %3").arg(place, value, from);
        return QStringLiteral("%1 has no value, and the file no %2, so that it becomes 0%3")
            .arg(place, from,
                 record->subindex == Identity::kVendorId
                     ? QLatin1String(", which is no valid vendor: set yours")
                     : QLatin1String());
    });
}

DescribedObject DescriptionRepair::mandatoryObject(quint16 index) const
{
    DescribedObject result;
    CANopen::CANopenIndex &object = result.object;
    object.index = index;
    if (index == ObjectIndex::kIdentity) {
        object.objectCode = CANopen::ObjectCode::Record;
        object.name = QStringLiteral("Identity object");
        CANopenSubindex count = newSub(object, 0, QStringLiteral("Highest subindex supported"));
        setDefault(&count, QStringLiteral("1"));
        result.subs.append(count);
        repairIdentity(&result);
    } else {
        const bool isType = index == ObjectIndex::kDeviceType;
        object.name = isType ? QStringLiteral("Device type") : QStringLiteral("Error register");
        if (isType)
            object.dataType = CAN::typeNumber(CAN::CANopenDataType::Unsigned32);
        CANopenSubindex value = newSub(object, 0, object.name);
        value.dataType = object.dataType;
        setDefault(&value, QStringLiteral("0"));
        result.subs.append(value);
    }
    notes.addNote("import-mandatory", 0, [index] {
        return QStringLiteral("the file has no object %1, which each device has, and it is made")
            .arg(placeOf(index));
    });
    return result;
}
