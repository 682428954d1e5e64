// What a generated file hands on to the next one: the section that the user wrote into it, and how
// often it was generated.
#pragma once

#include <QString>

namespace OldFile
{

/// Reads the text of \a file with "\n" as only line end; empty if there is no such regular file, or
/// it may not be read. Bytes that are no UTF-8 are taken for Latin-1, so that no character of the
/// user gets lost. False if not all could be read, or it is too long for a generated file: what the
/// user wrote into it is unknown then.
bool read(const QString &file, QString *text);

/// The lines between the marker lines, each with its "\n"; all sections, if there are several, and
/// up to the end of the text, if the last has no end.
QString extractUserSection(const QString &text);

/// The section with its marker lines and a line that tells of them. An empty one has an empty line.
QString userSectionText(const QString &section);

/// 0 if the text has none.
quint32 extractGenerationCounter(const QString &text);

} // namespace OldFile
