// Ways of values between lines.
#pragma once

#include "generators/overview/facts.h"

class ObjectDataBase;

namespace Overview
{

/// Links of PDOs, then signals that take the value of another one, then the lines of each group.
QVector<Connection> readConnections(const ObjectDataBase &store);

} // namespace Overview
