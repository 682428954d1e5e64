// The features of a project as generated files take them.
#pragma once

#include "generators/ctext.h"
#include "store/projectfeatures.h"

/// Deliberate: as the values stand in a line of C, where a compiler does not see some signs at
/// their end. The check and the choice of the stack take the texts as they are, so that "1\" is 0
/// to them; held by tst_modelchecker and tst_definecounts.
inline ProjectFeatures readCodeFeatures(const ObjectDataBase &store)
{
    return readProjectFeatures(store, CText::line);
}
