// The comparison with an older project as a text for a review.
#pragma once

#include "store/comparison/projectchange.h"

#include <QString>

/// A change begins a line, with "+" for what was added, "-" for what was removed and "~" for what
/// was changed. Its fields stand there too, but those with an old and a new value below it if the
/// line would become long.
QString comparisonText(const ProjectComparison &comparison);
