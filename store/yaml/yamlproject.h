// A whole project in the YAML form.
#pragma once

#include "formats/yamldocument.h"
#include "store/projectrecords.h"

#include <QIODevice>

namespace YamlProject
{

/// What is wrong goes to \a problems; then \a project is not to be used.
bool read(const YamlDocument &document, ProjectRecord *project, YamlProblems *problems);

/// The same project always gives the same bytes. False if the device does not take them.
bool write(const ProjectRecord &project, QIODevice *device);

} // namespace YamlProject
