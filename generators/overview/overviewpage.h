// The page of a project: one file with its style, its script and its data.
#pragma once

#include "generators/overview/facts.h"

#include <QByteArray>

namespace Overview
{

/// The same facts give the same bytes.
QByteArray pageOf(const Facts &facts);

/// How each page begins, whatever the project and its script are.
QByteArray startOfPages();

} // namespace Overview
