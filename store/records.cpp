// Comparison of records, and the byte form of their metadata.
#include "store/records.h"

#include "store/columns.h"

#include <QDataStream>

#include <tuple>

namespace
{

// The format that projects have been written with since their metadata exist; it is not the format
// of the Qt release that this tool is built with.
constexpr int kMetadataStreamVersion = 17;

template <class Record, size_t N>
bool allColumnsEqual(const Column<Record> (&columns)[N], const Record &a, const Record &b)
{
    for (const Column<Record> &field : columns) {
        if (field.get(a) != field.get(b))
            return false;
    }
    return true;
}

} // namespace

QByteArray packMetadata(const Metadata &metadata)
{
    QByteArray bytes;
    if (metadata.isEmpty())
        return bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(kMetadataStreamVersion);
    stream << metadata;
    return bytes;
}

Metadata unpackMetadata(const QByteArray &bytes)
{
    Metadata metadata;
    if (bytes.size() < 4) // the entry count; a plain 0 in the cell is shorter
        return metadata;
    QDataStream stream(bytes);
    stream.setVersion(kMetadataStreamVersion);
    stream >> metadata;
    return stream.status() == QDataStream::Ok ? metadata : Metadata();
}

bool NodeData::operator==(const NodeData &other) const
{
    return allColumnsEqual(kNodeColumns, *this, other);
}

bool IndexData::operator==(const IndexData &other) const
{
    return allColumnsEqual(kIndexColumns, *this, other);
}

bool IndexData::contentCompare(const IndexData &other) const
{
    return name == other.name && dataType == other.dataType && objectCode == other.objectCode;
}

bool SpnIdentifierData::operator==(const SpnIdentifierData &other) const
{
    return std::tie(line, pgn, direction, spn) ==
           std::tie(other.line, other.pgn, other.direction, other.spn);
}

bool SpnIdentifierData::operator<(const SpnIdentifierData &other) const
{
    return std::tie(line, pgn, direction, spn) <
           std::tie(other.line, other.pgn, other.direction, other.spn);
}

bool SubIndexData::operator==(const SubIndexData &other) const
{
    return contentCompare(other) && currentValue == other.currentValue &&
           dcfComponent == other.dcfComponent && cyclicRead == other.cyclicRead &&
           allowedAccessTypes == other.allowedAccessTypes && description == other.description &&
           category == other.category && changedByUser == other.changedByUser &&
           wizardSource == other.wizardSource && sharedLines == other.sharedLines &&
           denotation == other.denotation && metadata == other.metadata;
}

bool SubIndexData::contentCompare(const SubIndexData &other) const
{
    return name == other.name && dataType == other.dataType && accessType == other.accessType &&
           pdoMapping == other.pdoMapping && lowLimit == other.lowLimit &&
           upLimit == other.upLimit && size == other.size && defaultInEds == other.defaultInEds &&
           limitInEds == other.limitInEds && refuseRead == other.refuseRead &&
           refuseWrite == other.refuseWrite && implementation == other.implementation &&
           varName.simplified() == other.varName.simplified() && nvStorage == other.nvStorage &&
           defaultValue == other.defaultValue && writeDefaultToEds == other.writeDefaultToEds;
}
