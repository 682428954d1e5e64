// Whether a device description holds the default value of a subindex.
#pragma once

#include "store/records.h"

/// What the columns of the subindex say, whatever the value is.
inline bool isDefaultWrittenToEds(const SubIndexData &data)
{
    return data.writeDefaultToEds == WriteDefault::kAlways ||
           (data.writeDefaultToEds == WriteDefault::kWithDefaultInEds && data.defaultInEds);
}
