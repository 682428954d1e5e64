// Connections between lines in the YAML form.
#pragma once

#include "formats/yamlwriter.h"
#include "store/projectrecords.h"
#include "store/yaml/yamlcontext.h"

namespace YamlConnections
{

/// Appends what \a list holds. The ends may be nothing that the project has.
void read(YamlNode list, std::vector<ConnectionData> *connections, YamlContext &context);

/// An empty list for none.
YamlValue toYaml(const std::vector<ConnectionData> &connections);

} // namespace YamlConnections
