// What of a project its text form has no place for.
#pragma once

#include "store/projectrecords.h"

#include <QStringList>

namespace ProjectLosses
{

/// What of \a project a text project would not hold, each kind with its count, such as
/// "2 connections of PDOs". Services that a line has by itself are not lost.
QStringList ofTextForm(const ProjectRecord &project);

} // namespace ProjectLosses
