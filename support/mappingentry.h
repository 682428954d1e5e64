// An entry of a PDO or SRDO mapping.
#pragma once

#include <QtGlobal>

/// The place of the object and its size (CiA 301, 7.5.2.36).
struct MappingEntry {
    quint16 index;
    quint8 sub;
    quint8 bits;

    static constexpr MappingEntry of(quint32 value)
    {
        return {static_cast<quint16>(value >> 16), static_cast<quint8>(value >> 8),
                static_cast<quint8>(value)};
    }
};
