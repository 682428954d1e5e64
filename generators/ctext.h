// Texts of a project inside generated C: comments, string literals, dates of the file's head.
#pragma once

#include <QString>

namespace CText
{

/// \a text for the inside of a comment: an end of comment in it becomes "* /", a start "/ *".
QString comment(const QString &text);

/// \a text for the inside of a string literal, quotes not included. Escapes of C that the text
/// holds stand; all that would end the literal or make the compiler warn is escaped, such as a
/// quote, a line end, or a backslash that begins no escape.
QString stringContent(const QString &text);

/// \a text as a number of type float; 0 for what is no finite number.
QString realNumber(const QString &text);

/// Bytes of a literal with that content, as stringContent() gives it, without the closing zero.
quint32 literalBytes(const QString &content);

/// The comment at the top of a generated file, with its date. \a title is the text line: %1 stands
/// for the project's name, %2 for that of the tool, %3 for its version.
QString headComment(const char *title, const QString &projectName, const QString &toolVersion);

/// Date and time of the run, as the heads of generated files tell it.
QString generationTime();

} // namespace CText
