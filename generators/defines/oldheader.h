// What a generated header hands on to the next one: the section that the user wrote into it, and
// how often it was generated.
#pragma once

#include <QString>

namespace Defines
{

constexpr char kUserSectionStart[] = "/* user-specific section: start */";
constexpr char kUserSectionEnd[] = "/* user-specific section: end */";

/// Reads the text of \a file with "\n" as only line end; empty if there is no such regular file, or
/// it may not be read. Bytes that are no UTF-8 are taken for Latin-1, so that no character of the
/// user gets lost. False if not all could be read, or it is too long for a header: what the user
/// wrote into it is unknown then.
bool readOldHeader(const QString &file, QString *header);

/// The lines between the marker lines, each with its "\n"; all sections, if there are several, and
/// up to the end of the text, if the last has no end.
QString extractUserSection(const QString &header);

/// 0 if the header has none.
quint32 extractGenerationCounter(const QString &header);

} // namespace Defines
