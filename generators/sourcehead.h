// Macros of all C sources that a target may set before.
#pragma once

#include "generators/dialect.h"

class TextWriter;

namespace SourceHead
{

/// The word for constant data.
void writeConstMacro(TextWriter &out, const StackDialect &dialect);

/// The call between the steps of the start-up.
void writeWatchdogMacro(TextWriter &out, const StackDialect &dialect);

} // namespace SourceHead
