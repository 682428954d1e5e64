// Text of foreign files made safe for a terminal.
#pragma once

#include <QString>

/// \a text with control characters (C0 without tab, LF and CR LF, DEL, C1) as "\x1b": a name from a
/// foreign file must not move the cursor, ring, or hide what was printed before.
QString printableText(const QString &text);

/// The same for a single line: tabs and line ends as "\x09" and "\x0a" too.
QString printableLine(const QString &text);

/// \a text in quotation marks, as it stands in a problem; cut after 60 characters, since a file
/// that is no text holds words of any length.
QString quotedWord(const QString &text);
