// The changes of a line's frames: parameter groups of J1939 and CAN identifiers of raw CAN.
#pragma once

#include "store/comparison/projectchange.h"
#include "store/projectrecords.h"

/// Appends them, each frame before its signals. Frames belong together by number and direction,
/// signals by suspect parameter number or else name, elements by what they are.
void addFrameChanges(int line, const LineRecord &older, const LineRecord &newer,
                     std::vector<ProjectChange> *changes);
