// Reads the facts of a project from its store.
#pragma once

#include "generators/objdict/objectnames.h"
#include "generators/overview/facts.h"

class ObjectDataBase;

namespace Overview
{

/// All that the store knows, with the \a names of its objects; read when the caches of its lines
/// are filled, since then hardly a statement runs. The files of the project, and what the check has
/// found, are not in it.
Facts readFacts(ObjectDataBase &store, const ObjectNamesByLine &names);

} // namespace Overview
