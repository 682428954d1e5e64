// Texts of a project inside generated C: comments, string literals, dates of the file's head.
#pragma once

#include <QString>

namespace CText
{

/// \a text for the inside of a comment: an end of comment in it becomes "* /".
QString comment(const QString &text);

/// \a text for the inside of a string literal, quotes not included. A quote, a line end, or a lone
/// backslash at the end would end the literal and is escaped; escapes that the text holds stand.
QString stringContent(const QString &text);

/// Date and time of the run, as the heads of generated files tell it; English in any locale.
QString generationTime();

} // namespace CText
