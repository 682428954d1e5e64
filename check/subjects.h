// The part of a project's file that a message of the check is about, so that a finding can be shown
// where it is mended.
#pragma once

#include "check/messages.h"

namespace Check
{

/// The cell of an object or subindex, or the setting, that decides; each may be null.
struct Subject {
    const char *column = nullptr;  ///< of the finding's subindex, or of its object
    const char *store = nullptr;   ///< the settings store's table
    const char *setting = nullptr; ///< a key in it
};

/// Nothing for a message about something that is missing, or about no cell in particular.
Subject subjectOf(Msg id);

} // namespace Check
