// Texts as device descriptions hold them by the letter of CiA 306: printable ASCII on lines of at
// most 255 characters, in a form that no reader takes for a comment.
#pragma once

#include <QString>
#include <QStringList>

namespace EdsText
{

constexpr int kLineLength = 255;

/// \a text on one line in printable ASCII. Letters lose their marks, so that "ö" is "o"; of a
/// character that has no counterpart "?" is left. Line ends and control characters become blanks.
QString ascii(const QString &text);

/// The value of the entry \a key that says \a text: as ascii() has it, without blanks at its ends
/// and cut to the line. Blanks before ";" and "#" go too, since some readers take what follows for
/// a comment.
QString entry(const char *key, const QString &text);

/// Does the entry \a key give back \a text as it is, whoever reads it? An empty text is none.
bool isHeld(const char *key, const QString &text);

/// The lines of \a text in ASCII; of those that are longer than \a width the pieces.
QStringList lines(const QString &text, int width);

/// The lines of a comment of the file, each of which fits its entry "Line<n>=". Empty lines are
/// left out, for an entry without a value counts as missing.
QStringList commentLines(const QString &text);

} // namespace EdsText
