// Network variables: objects 0xA000 to 0xAFFF, which CiA 302-4 divides by type and direction.
#include "store/objectdatabase_p.h"
#include "support/accesstype.h"
#include "support/cohelper.h"
#include "support/logging.h"

#include <algorithm>

namespace
{

using Type = CAN::CANopenDataType;

constexpr ObjectRange kObjects = ObjectRanges::kNetworkVariables;
constexpr quint32 kVariablesPerObject = 254;
constexpr quint32 kObjectsPerRange = 0x80;
constexpr quint8 kLastDeviceLine = 127;

struct Range {
    quint16 base;
    Type dataType;
    bool output;
};

constexpr Range kRanges[] = {
    // ascending
    {0xA000, Type::Integer8, false},  {0xA040, Type::Unsigned8, false},
    {0xA0C0, Type::Integer16, false}, {0xA100, Type::Unsigned16, false},
    {0xA1C0, Type::Integer32, false}, {0xA200, Type::Unsigned32, false},
    {0xA480, Type::Integer8, true},   {0xA4C0, Type::Unsigned8, true},
    {0xA540, Type::Integer16, true},  {0xA580, Type::Unsigned16, true},
    {0xA640, Type::Integer32, true},  {0xA680, Type::Unsigned32, true},
};

/// Positions and sizes are bytes; a string of a project may be as long as 32 bits can say.
struct Variable {
    SubAddressData address;
    quint64 position;
    quint64 size;
};

quint32 widthBytes(Type type)
{
    return COHelper::getDataLengthBits(type) / 8;
}

quint64 raisedToMultiple(quint64 position, quint64 unit)
{
    return unit == 0 ? position : (position + unit - 1) / unit * unit;
}

/// In the order of their positions.
QVector<Variable> readImage(StorePrivate &store, quint8 line)
{
    QVector<Variable> image;
    Statement statement(store,
                        QStringLiteral("select objectindex,subindex,datatype,size from %1 where "
                                       "objectindex between ? and ? and subindex between 1 and 255 "
                                       "and objectindex in (select objectindex from %2) "
                                       "order by objectindex,subindex")
                            .arg(Schema::table("SubObjects", line), Schema::table("Objects", line)),
                        {kObjects.first, kObjects.last});
    while (statement.next()) {
        const SubAddressData address{static_cast<quint16>(statement.value(0).toUInt()),
                                     static_cast<quint8>(statement.value(1).toUInt())};
        const auto type = static_cast<Type>(statement.value(2).toUInt());
        image << Variable{
            address, ObjectDataBase::startPosInProcessImage(address.index, address.subindex),
            COHelper::isStringLike(type) ? statement.value(3).toUInt() : widthBytes(type)};
    }
    std::stable_sort(image.begin(), image.end(),
                     [](const Variable &a, const Variable &b) { return a.position < b.position; });
    return image;
}

quint64 freePosition(const QVector<Variable> &image, quint32 width)
{
    Variable previous{{}, 0, 0};
    for (const Variable &variable : image) {
        if (variable.position - previous.position >
            previous.size + width + previous.position % width) {
            qCDebug(lcStore) << "gap found:" << variable.position;
            return raisedToMultiple(previous.position + previous.size, width);
        }
        previous = variable;
    }
    if (image.isEmpty())
        return 0;
    const quint64 behind =
        raisedToMultiple(raisedToMultiple(previous.position, previous.size) + 1, previous.size);
    return raisedToMultiple(behind, width);
}

} // namespace

quint32 ObjectDataBase::startPosInProcessImage(quint16 index, quint8 sub)
{
    const auto above = std::find_if(std::begin(kRanges), std::end(kRanges),
                                    [index](const Range &range) { return range.base > index; });
    if (above == std::begin(kRanges))
        return 0;
    const Range &range = *std::prev(above);
    const quint32 number = sub + quint32(index - range.base) * kVariablesPerObject - 1;
    return number * widthBytes(range.dataType);
}

std::optional<SubAddressData> ObjectDataBase::findFreeNVVariable(quint8 line, quint16 dataType,
                                                                 bool output) const
{
    const auto range =
        std::find_if(std::begin(kRanges), std::end(kRanges), [&](const Range &candidate) {
            return candidate.dataType == static_cast<Type>(dataType) && candidate.output == output;
        });
    if (range == std::end(kRanges))
        return std::nullopt;
    const quint32 width = widthBytes(range->dataType);
    const quint64 position = freePosition(readImage(*d, line), width);
    qCDebug(lcStore) << "free start pos =" << position;

    const quint64 number = position / width;
    if (number >= kVariablesPerObject * kObjectsPerRange)
        return std::nullopt;
    const SubAddress place{static_cast<quint16>(range->base + number / kVariablesPerObject),
                           static_cast<quint8>(number % kVariablesPerObject + 1)};
    // Some ranges are shorter: after their end the positions of the next one begin.
    if (startPosInProcessImage(place.index, place.subindex) != position)
        return std::nullopt;
    return place;
}

std::optional<SubAddressData> ObjectDataBase::addNVObj(quint8 line, quint16 dataType, bool output,
                                                       const QString &name)
{
    if (d->lockWriteAccess)
        return std::nullopt;
    const std::optional<SubAddress> place = findFreeNVVariable(line, dataType, output);
    if (!place)
        return std::nullopt;
    INDEX_DATA_T object;
    object.dataType = dataType;
    object.objectCode = CANopen::ObjectCode::Array;
    object.name = QStringLiteral("PLC_ARRAY_%1_%2")
                      .arg(COHelper::index2DataTypeString(dataType),
                           output ? QStringLiteral("OUTPUT") : QStringLiteral("INPUT"));
    SUBINDEX_DATA_T highest;
    highest.name = QStringLiteral("Heighest Subindex");
    SUBINDEX_DATA_T variable;
    variable.name = name;
    variable.dataType = dataType;
    variable.pdoMapping = output ? PDOMappingType::Tpdo : PDOMappingType::Rpdo;
    variable.accessType = output ? AccessType::kReadOnly : AccessType::kReadWriteWrite;
    beginBatch();
    addIndex(line, place->index, object);
    addSubIndex(line, place->index, 0, highest);
    addSubIndex(line, place->index, place->subindex, variable);
    commitBatch();
    return place;
}

QString ObjectDataBase::getProcessImage(quint8 line) const
{
    QString text;
    quint64 end = 0; // of the variable before
    const QVector<Variable> image = readImage(*d, line);
    for (const Variable &variable : image) {
        text +=
            QStringLiteral("Pos: %1: Index: 0x%2 sub: %3 size = %4")
                .arg(QString::number(variable.position),
                     QStringLiteral("%1").arg(variable.address.index, 4, 16, QLatin1Char('0')),
                     QString::number(variable.address.subindex), QString::number(variable.size));
        text += variable.position < end ? QStringLiteral(" ERROR\n") : QStringLiteral("\n");
        end = variable.position + variable.size;
    }
    return text;
}

bool ObjectDataBase::removeUnusedNV()
{
    if (d->lockWriteAccess)
        return false;
    QSet<quint32> connected;
    {
        Statement statement(*d, QStringLiteral("select prodnode,prodindex,prodsub from Connections "
                                               "union select connode,conindex,consub "
                                               "from Connections"));
        while (statement.next())
            connected << StorePrivate::placeKey(static_cast<quint8>(statement.value(0).toUInt()),
                                                static_cast<quint16>(statement.value(1).toUInt()),
                                                static_cast<quint8>(statement.value(2).toUInt()));
    }
    beginBatch();
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines) {
        const QVector<Variable> image = readImage(*d, line);
        for (const Variable &variable : image) {
            const SubAddress &address = variable.address;
            if (!connected.contains(StorePrivate::placeKey(line, address.index, address.subindex)))
                delSubIndex(line, address.index, address.subindex, true); // it has none
        }
    }
    commitBatch();
    return true;
}

bool ObjectDataBase::deleteAllNV(quint8 line, bool unused)
{
    if (d->lockWriteAccess)
        return false;
    beginBatch();
    if (line > 0) {
        const QList<quint16> objects = getIndices(line, kObjects);
        for (const quint16 index : objects)
            delIndex(line, index, false);
    } else {
        const QList<quint8> lines = getNodes();
        for (const quint8 other : lines) {
            if (other > 0 && other <= kLastDeviceLine)
                deleteAllNV(other, unused);
        }
        cleanUpStrings();
    }
    commitBatch();
    return true;
}
