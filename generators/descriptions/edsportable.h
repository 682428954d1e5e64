// What the portable form of data sheets makes of the values and sections of a project.
#pragma once

#include "generators/descriptions/edsform.h"

namespace EdsPortable
{

/// Metadata of a subindex: the number of the type that is described in place of its own.
constexpr const char *kTypeKey = "eds_datatype";

/// Types of CiA 301 alone, and values that all readers take: what a type cannot have, or what a
/// data sheet cannot say so that all understand it alike, is absent.
EdsSubTexts texts(const SubIndexData &data, EdsRole role, bool isConfiguration);

/// The same for an XML description, which holds more: all texts, numbers of REAL types in decimal,
/// and times.
EdsSubTexts xddTexts(const SubIndexData &data, EdsRole role);

/// The sections, entries and comments of \a text, each once; not those that \a isReserved knows,
/// and nothing that stands outside of a section.
QString ownSections(const QString &text, EdsForm::IsReserved *isReserved);

} // namespace EdsPortable
