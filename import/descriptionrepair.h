// Descriptions that are usable at once.
#pragma once

#include "formats/edsrecords.h"
#include "import/descriptionsource.h"
#include "import/valuerepair.h"

#include <QVector>

/// An object with all its subindices.
struct DescribedObject {
    CANopen::CANopenIndex object;
    QVector<CANopenSubindex> subs; ///< of two with one number the last one counts

    /// Null if there is none of that number.
    CANopenSubindex *sub(quint8 number);
    const CANopenSubindex *sub(quint8 number) const;
};

/// Changes what a file leaves open or states in two ways that exclude each other, and what the
/// check would not let pass for it. Each change is a note with the line of the object. What a
/// device has beyond that, such as its error control, is never made up.
class DescriptionRepair
{
public:
    /// Both must outlive this; \a collector takes the notes.
    DescriptionRepair(const DescriptionSource &description, FileProblems *collector)
        : source(description), notes(*collector), values(collector)
    {
    }

    void repair(DescribedObject *described) const;

    /// An object that each device has, as CiA 301 allows it: 0x1000, 0x1001 or 0x1018.
    DescribedObject mandatoryObject(quint16 index) const;

private:
    void makeStructure(DescribedObject *described) const;
    void addCount(DescribedObject *described) const;
    void repairCount(DescribedObject *described) const;
    void dropCountLimits(CANopenSubindex *count) const;
    void repairMappingAccess(DescribedObject *described) const;
    void dropUnusedEntries(DescribedObject *described) const;
    void repairIdentity(DescribedObject *described) const;
    void setIdentity(CANopenSubindex *record) const;

    const DescriptionSource &source;
    FileProblems &notes;
    ValueRepair values;
};
