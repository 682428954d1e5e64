// Names and texts as DBC files hold them by the strictest of their readers.
#pragma once

#include <QString>

namespace DbcStrings
{

/// \a text in letters, digits and "_" of ASCII; none of the names that have a meaning of their own.
QString name(const QString &text);

/// \a text as all readers give it back: in letters of Windows-1252, with "\n" for all line ends and
/// without other control characters. What is no such letter is written without its marks, or in
/// the ASCII of EdsText, and makes \a isWhole false. No backslash stands before a quote, another
/// backslash or the end, where readers do not agree on its meaning: a blank follows it there. A
/// text with a quote and a semicolon after it is on one line.
QString portable(const QString &text, bool *isWhole);

} // namespace DbcStrings
