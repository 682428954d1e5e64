// Reads the facts of a project from its store.
#pragma once

#include "generators/overview/facts.h"

class ObjectDataBase;

namespace Overview
{

/// All that the store knows; read when the caches of its lines are filled, since then hardly a
/// statement runs. The files of the project, and what the check has found, are not in it.
Facts readFacts(ObjectDataBase &store);

} // namespace Overview
