// What differs between two projects.
#pragma once

#include "store/comparison/projectchange.h"
#include "store/projectrecords.h"

/// All that was added, removed or changed since the older project. Objects belong together by index
/// and subindex, frames by number and direction, all else by what tells it from others.
ProjectComparison compareProjects(const ProjectRecord &older, const ProjectRecord &newer);
