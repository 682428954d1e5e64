// The object dictionary of a line as rows.
#pragma once

#include "generators/overview/facts.h"

class ObjectDataBase;
class ObjectNames;

namespace Overview
{

/// Fills the rows and their counts. \a names is that of all lines, which come in their order.
void readObjects(const ObjectDataBase &store, Line &line, ObjectNames &names, Texts &texts);

} // namespace Overview
