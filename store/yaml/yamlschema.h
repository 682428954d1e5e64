// The YAML form of projects as JSON Schema, by which editors complete and check projects. It is
// made of the same tables that the reader takes.
#pragma once

#include <QByteArray>

namespace YamlSchema
{

/// JSON Schema 2020-12; always the same bytes. What only the whole project can tell is left to the
/// reader: numbers that stand twice in different spelling, lines that are not there, objects that
/// stand in short and in long form.
QByteArray text();

} // namespace YamlSchema
