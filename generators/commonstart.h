// Start-up code of what all protocols share.
#pragma once

#include "generators/dialect.h"

class ObjectDataBase;
class TextWriter;

/// Definition of `commonInitVars`, to stand in front of the first statement of a function.
void writeCommonInitVars(TextWriter &out, const Dialect &dialect, const ObjectDataBase &store);
