// Whether a device description holds the default value of a subindex.
#pragma once

#include "store/records.h"

/// Numbers of the column "writedefaulttoeds".
namespace WriteDefault
{

constexpr quint8 kNever = 0;
constexpr quint8 kWithDefaultInEds = 1; ///< if defaultInEds is set as well
constexpr quint8 kAlways = 2;

} // namespace WriteDefault

/// What the columns of the subindex say, whatever the value is.
inline bool isDefaultWrittenToEds(const SubIndexData &data)
{
    return data.writeDefaultToEds == WriteDefault::kAlways ||
           (data.writeDefaultToEds == WriteDefault::kWithDefaultInEds && data.defaultInEds);
}
