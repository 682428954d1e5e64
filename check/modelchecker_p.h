// What the sources of ModelChecker share.
#pragma once

#include <QString>

/// An object number as messages show it: four digits, lower case.
inline QString hex4(quint16 index)
{
    return QStringLiteral("%1").arg(index, 4, 16, QLatin1Char('0'));
}

/// A subindex as messages show it, where they do not show it in decimal.
inline QString hex2(quint8 subIndex)
{
    return QStringLiteral("%1").arg(subIndex, 2, 16, QLatin1Char('0'));
}
