// Parameter groups, CAN identifiers with their signals, and diagnostic services of a line in the
// YAML form.
#pragma once

#include "formats/yamlwriter.h"
#include "store/projectrecords.h"
#include "store/yaml/yamlcontext.h"

namespace YamlFrames
{

/// Takes what \a entries, keys of a line's map, say of groups, frames and diagnostic services. The
/// others are what it gives. A line that says nothing of services has those of a new line.
QVector<YamlNode::Entry> read(const QVector<YamlNode::Entry> &entries, LineRecord *line,
                              YamlContext &context);

void write(const LineRecord &line, YamlWriter &writer);

/// The keys of a line that read() takes.
QStringList keys();

} // namespace YamlFrames
