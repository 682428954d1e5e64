// Comparison of subindices.
#include "generators/subindexrun.h"

#include "store/records.h"

bool areDescribedAlike(const SubIndexData &one, const SubIndexData &other)
{
    return one.dataType == other.dataType && one.accessType == other.accessType &&
           one.pdoMapping == other.pdoMapping && one.lowLimit == other.lowLimit &&
           one.upLimit == other.upLimit && one.size == other.size &&
           one.defaultInEds == other.defaultInEds && one.limitInEds == other.limitInEds &&
           one.refuseRead == other.refuseRead && one.refuseWrite == other.refuseWrite &&
           one.implementation == other.implementation && one.nvStorage == other.nvStorage &&
           one.defaultValue == other.defaultValue &&
           one.writeDefaultToEds == other.writeDefaultToEds &&
           one.varName.simplified() == other.varName.simplified();
}
