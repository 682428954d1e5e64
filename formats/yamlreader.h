// Reading of YAML files within bounds.
#pragma once

#include "formats/yamldocument.h"
#include "formats/yamlproblems.h"

/// What is wrong goes to \a problems. False if the document cannot be looked at, since the file
/// breaks a bound or the syntax, or there is nothing in it. True with problems means that what is
/// in the document was understood, and can be looked at to find more of them.
namespace YamlReader
{

/// The file of that name. What it does not give at all is the problem of its first line.
bool readFile(const QString &fileName, YamlDocument *document, YamlProblems *problems);

/// \a text is UTF-8.
bool read(const QByteArray &text, YamlDocument *document, YamlProblems *problems);

/// What can be said of a file before it is parsed: its size, the lengths of its lines, and that it
/// is text. False if something is wrong.
bool checkText(const QByteArray &text, YamlProblems *problems);

} // namespace YamlReader
