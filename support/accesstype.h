// The words for the access to an object from the bus.
#pragma once

#include <QLatin1String>

/// The words of CiA 306, of which CiA 301, 7.4.5 has the first four.
/// COHelper::normalizeAccessType() makes one of them of any text.
namespace AccessType
{

constexpr QLatin1String kConst("const");
constexpr QLatin1String kReadOnly("ro");
constexpr QLatin1String kReadWrite("rw");
constexpr QLatin1String kWriteOnly("wo");
constexpr QLatin1String kReadWriteWrite("rww"); ///< "rw" that is mapped to receive PDOs
constexpr QLatin1String kReadWriteRead("rwr");  ///< "rw" that is mapped to transmit PDOs

constexpr QLatin1String kAll[] = {kConst,     kReadOnly,       kReadWrite,
                                  kWriteOnly, kReadWriteWrite, kReadWriteRead};

} // namespace AccessType
