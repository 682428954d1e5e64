// Texts without characters beyond ASCII, which nearly all are.
#pragma once

#include <QtGlobal>

#include <numeric>

/// Looks at all bytes, which takes fewer steps than to stop at the first one that is none.
inline bool isAscii(const char *bytes, int size)
{
    const auto join = [](uint all, char byte) { return all | uchar(byte); };
    return std::accumulate(bytes, bytes + size, 0U, join) < 0x80;
}
