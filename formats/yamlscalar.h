// How a single value is spelled in YAML.
#pragma once

#include <QString>
#include <QStringList>

namespace YamlScalar
{

/// What a text stands for.
enum class Meaning {
    Text,    ///< a text: what a reader would take for a number, a truth or nothing gets quotes
    Written, ///< a number as somebody spelled it, or any other text: numbers stay bare
};

/// On one line, in quotes only if it has to be. Good in lists in brackets, maps in braces and as a
/// key. Lone surrogates become U+FFFD.
QString oneLine(const QString &text, Meaning meaning);

/// Would a reader of YAML 1.1 or 1.2 take the bare text for something else than a text?
bool looksTyped(const QString &text);

/// Of a text with line ends that reads well as a block: what follows the "|", and its lines. Empty
/// if it cannot be one.
QStringList literalBlock(const QString &text);

/// The same for ">", of a text without line ends that is broken between its words.
QStringList foldedBlock(const QString &text, int width);

/// In double quotes, on lines of about \a width that end with a backslash.
QStringList quotedLines(const QString &text, int width);

} // namespace YamlScalar
