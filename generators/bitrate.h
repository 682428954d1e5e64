// The bit rate of a line.
#pragma once

#include <QtGlobal>

#include <optional>

class ObjectDataBase;

namespace BitRate
{

/// In kbit/s: what the line of setDescriptionSettingsLine() starts with as the project says it,
/// else the highest rate that it supports; none if it says neither.
std::optional<quint32> ofLine(const ObjectDataBase &store);

} // namespace BitRate
