// The changes of a line's object dictionary.
#pragma once

#include "store/comparison/projectchange.h"
#include "store/projectrecords.h"

/// Appends them by index and subindex. An object that is a plain variable in both projects has one
/// change for itself and its subindex 0.
void addObjectChanges(int line, const LineRecord &older, const LineRecord &newer,
                      std::vector<ProjectChange> *changes);
