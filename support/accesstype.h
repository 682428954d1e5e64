// The words for the access to an object from the bus.
#pragma once

#include <QLatin1String>

/// The words of CiA 306, of which CiA 301, 7.4.5 has the first four.
/// COHelper::normalizeAccessType() makes one of them of any text.
namespace AccessType
{

/// The word of a literal, with the length that not every compiler counts at compile time.
template <int Size>
constexpr QLatin1String wordOf(const char (&literal)[Size])
{
    return QLatin1String(literal, Size - 1);
}

constexpr QLatin1String kConst = wordOf("const");
constexpr QLatin1String kReadOnly = wordOf("ro");
constexpr QLatin1String kReadWrite = wordOf("rw");
constexpr QLatin1String kWriteOnly = wordOf("wo");
constexpr QLatin1String kReadWriteWrite = wordOf("rww"); ///< "rw" that is mapped to receive PDOs
constexpr QLatin1String kReadWriteRead = wordOf("rwr");  ///< "rw" that is mapped to transmit PDOs

constexpr QLatin1String kAll[] = {kConst,     kReadOnly,       kReadWrite,
                                  kWriteOnly, kReadWriteWrite, kReadWriteRead};

} // namespace AccessType
