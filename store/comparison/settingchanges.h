// The changes of a project's settings.
#pragma once

#include "store/comparison/projectchange.h"
#include "store/projectrecords.h"

/// Appends them by their keys, as "-set" takes them; those with an element for each line by line.
/// An empty value is none, as for all that read settings. What the store notes of the file itself,
/// such as the version of the tool that saved it, is no change of the project.
void addSettingChanges(const ProjectRecord &older, const ProjectRecord &newer,
                       std::vector<ProjectChange> *changes);
