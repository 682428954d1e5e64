// PDOs of a line and what their mappings name (CiA 301, 7.5.2.35 to 7.5.2.38).
#include "store/objectdatabase_p.h"
#include "support/accesstype.h"
#include "support/numbers.h"

namespace
{

constexpr quint32 kUnusedPdo = 1u << 27; // bit of the COB-ID

quint16 mappingOf(quint16 commIndex)
{
    return static_cast<quint16>(commIndex + ObjectRanges::kFromPdoParameterToMapping);
}

quint8 entryCount(const ObjectDataBase &store, quint8 line, quint16 commIndex)
{
    return static_cast<quint8>(
        Numbers::toUIntByPrefix(store.getSubIndexValue(line, mappingOf(commIndex), 0)));
}

bool isUsed(const ObjectDataBase &store, quint8 line, quint16 commIndex)
{
    // Of an identifier that depends on the node-id the constant part says as much.
    const QString text = store.getSubIndexValue(line, commIndex, 1)
                             .remove(QLatin1String("$NODEID+"), Qt::CaseInsensitive);
    const quint32 cobId = Numbers::toUIntByPrefix(text);
    return entryCount(store, line, commIndex) != 0 && cobId != 0 && !(cobId & kUnusedPdo);
}

void makeMappingStatic(ObjectDataBase &store, quint8 line, quint16 commIndex)
{
    const quint16 mapping = mappingOf(commIndex);
    const quint8 count = entryCount(store, line, commIndex);
    const QList<quint8> subs = store.getSubIndices(line, mapping, 0);
    for (const quint8 sub : subs) {
        if (sub > count) {
            store.delSubIndex(line, mapping, sub, false);
            continue;
        }
        SubIndexData data;
        if (!store.getSubIndexData(line, mapping, sub, data))
            continue;
        data.accessType = AccessType::kConst;
        store.addSubIndex(line, mapping, sub, data);
    }
}

} // namespace

bool ObjectDataBase::isMappingStatic(quint8 line, quint16 commIndex) const
{
    for (const quint8 sub : {0, 1}) {
        SUBINDEX_DATA_T data;
        if (!getSubIndexData(line, mappingOf(commIndex), sub, data) ||
            data.accessType != AccessType::kReadWrite)
            return true;
    }
    return false;
}

bool ObjectDataBase::isObjectMapped(quint8 line, quint16 index, quint8 sub) const
{
    return index > ObjectRanges::kCommunication.last &&
           !getMappingObjectsForObject(line, index, sub).isEmpty();
}

QList<SubAddressData> ObjectDataBase::getMappingObjectsForObject(quint8 line, quint16 index,
                                                                 quint8 sub) const
{
    QList<SubAddress> entries;
    Statement statement(
        *d, QStringLiteral("select objectindex,subindex,defaultvalue from %1 where "
                           "(objectindex between 0x1600 and 0x17FF or "
                           "objectindex between 0x1A00 and 0x1BFF) and subindex between 1 and 255 "
                           "and objectindex in (select objectindex from %2) "
                           "order by objectindex,subindex")
                .arg(Schema::table("SubObjects", line), Schema::table("Objects", line)));
    while (statement.next()) {
        // An entry is the index, the subindex and the length in bits.
        const quint32 entry = Numbers::toUIntByPrefix(statement.value(2).toString());
        if (entry >> 8 == StorePrivate::subKey(index, sub))
            entries << SubAddress{static_cast<quint16>(statement.value(0).toUInt()),
                                  static_cast<quint8>(statement.value(1).toUInt())};
    }
    return entries;
}

bool ObjectDataBase::removeUnusedPDOsAndMakeOtherPDOsstatic(quint8 line)
{
    if (d->lockWriteAccess)
        return false;
    const QList<quint16> pdos = getIndices(line, ObjectRanges::kRpdoParameters) +
                                getIndices(line, ObjectRanges::kTpdoParameters);
    beginBatch();
    for (const quint16 commIndex : pdos) {
        if (isUsed(*this, line, commIndex)) {
            makeMappingStatic(*this, line, commIndex);
        } else {
            delIndex(line, commIndex, false);
            delIndex(line, mappingOf(commIndex), false);
        }
    }
    commitBatch();
    return true;
}
