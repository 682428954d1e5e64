// Parameter groups, CAN identifiers with their signals, and diagnostic services of a line in the
// YAML form.
//
// Frames stand by direction and number; several of one number in one direction are a list. Their
// signals are a list, since their order is that of the frame. What a signal is if nothing is said:
// - one that names a variable is the application's, one without is kept by the generated source;
// - its place is the one after the signal before it, from 0;
// - the number of a raw line's element, which orders the frame, is one more than that of the one
//   before it, from 1.
// {skip: 24} stands for bits without a signal: a filler of a type of that width, or several if none
// has it. Writers of the signals know fillers by "dummy" in their name.
#pragma once

#include "formats/yamlwriter.h"
#include "store/projectrecords.h"
#include "store/yaml/yamlcontext.h"

namespace YamlFrames
{

inline constexpr int kMostBitsToSkip = 1785 * 8; ///< as many as a group of several frames has

/// Takes what \a entries, keys of a line's map, say of groups, frames and diagnostic services. The
/// others are what it gives. A line that says nothing of services has those of a new line. Frames
/// come in the order of their directions and numbers.
QVector<YamlNode::Entry> read(const QVector<YamlNode::Entry> &entries, LineRecord *line,
                              YamlContext &context);

/// Writes them into the open map of a line.
void write(const LineRecord &line, YamlWriter &writer);

/// The keys of a line that read() takes.
QStringList keys();

} // namespace YamlFrames
