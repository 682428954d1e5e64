// The memory of the generated tables as the page of the overview takes it.
#pragma once

#include "formats/jsonwriter.h"
#include "generators/overview/footprint.h"

namespace Overview
{

/// Writes one value: an object.
void writeFootprint(JsonWriter &json, const Footprint &footprint);

} // namespace Overview
