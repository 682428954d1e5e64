// What the forms of DBC files differ in.
#pragma once

#include "generators/descriptions/descriptionform.h"
#include "generators/frames/frameform.h"

/// Of one kind of files.
struct DbcForm : DescriptionForm {
    const Frames::Form *frames = nullptr;
    bool tellsDevice = false; ///< as a node, which sends and receives
    /// Attributes of frames and signals that readers know beyond those of the classic form.
    bool tellsMore = false;
    bool doublesBackslashes = true;
    bool hasEachIdentifierOnce = false;

    QString (*name)(const QString &text) = nullptr;
    /// \a isWhole becomes false if letters are lost.
    QString (*text)(const QString &text, bool *isWhole) = nullptr;
};

const DbcForm &classicDbc();
const DbcForm &portableDbc();
