// The object dictionary of a line as rows.
#pragma once

#include "generators/overview/facts.h"

class ObjectDataBase;
struct ObjectNames;

namespace Overview
{

/// Fills the rows and their counts.
void readObjects(const ObjectDataBase &store, Line &line, const ObjectNames &names, Texts &texts);

} // namespace Overview
