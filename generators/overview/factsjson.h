// The facts of a project as the data of its page.
#pragma once

#include "generators/overview/facts.h"

#include <QByteArray>

namespace Overview
{

/// Appends JSON that may stand in the page. The same facts give the same bytes.
void writeJson(const Facts &facts, QByteArray &to);

} // namespace Overview
