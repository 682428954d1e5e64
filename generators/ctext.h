// Texts of a project inside generated C: comments, string literals, code, dates of the file's head.
//
// No text may leave its place: whatever it holds, the rest of the file means the same. Texts that
// are not C, or not complete C, may keep their own place from compiling.
#pragma once

#include <QString>

class TextWriter;

namespace CText
{

/// \a text for the inside of a block comment, as one line: an end of comment in it becomes "* /", a
/// start "/ *".
QString comment(const QString &text);

/// \a text, which is C on purpose, for the rest of a line of code or of a define: as one line,
/// without a backslash at its end, with the ends of comments and literals that it leaves open.
QString line(const QString &text);

/// \a text, which is C on purpose, as one expression with more text after it: as line(), without
/// "//" comments. What would lead out of it (brackets that nothing opened, commas and semicolons
/// outside of brackets, a "#") becomes a blank, and brackets that it leaves open are closed.
QString expression(const QString &text);

/// \a text as lines of C that the user gives, with the end of the last. They stay as they are; an
/// empty line follows where the last would take the next one in.
QString freeLines(const QString &text);

/// \a text as the name of a function, "_" in place of what no name can hold. Blanks around it go.
QString name(const QString &text);

/// \a text for the inside of a string literal, quotes not included. Escapes of C that the text
/// holds stand; all that would end the literal or make the compiler warn is escaped, such as a
/// quote, a line end, or a backslash that begins no escape.
QString stringContent(const QString &text);

/// \a text as a number of type float; 0 for what is not a finite number.
QString realNumber(const QString &text);

/// Bytes of a literal with that content, as stringContent() gives it, without the closing zero.
quint32 literalBytes(const QString &content);

/// The comment at the top of a generated file, with its date. \a title is the text line, in which
/// stand $project$, $tool$ and $version$.
void writeHead(TextWriter &out, const char *title, const QString &projectName,
               const QString &toolVersion);

/// Date and time of the run, as the heads of generated files give it.
QString generationTime();

} // namespace CText
