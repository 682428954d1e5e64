// The comparison with an older project as the page of the overview takes it.
#pragma once

#include "formats/jsonwriter.h"
#include "store/comparison/projectchange.h"

namespace Overview
{

/// Writes one value: an object.
void writeComparison(JsonWriter &json, const ProjectComparison &comparison);

} // namespace Overview
