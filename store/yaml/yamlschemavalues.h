// What a single value or a number key of the YAML form can be, as JSON Schema.
//
// Editors type bare values as YAML 1.2 does: 0x10 and 16 are the integer 16, true is a truth, null
// and nothing at all are null, all else is a text. The reader takes texts as they stand. So what it
// reads as a number is an integer within bounds here, or a text that spells one. The schema never
// refuses what the reader takes; a few slips are the reader's alone to tell, such as a number in
// quotes that is too large.
#pragma once

#include "store/yaml/yamlcells.h"

#include <QJsonObject>

namespace YamlSchemaValues
{

/// A value of that column, with its help. \a base is what stands if the key is left out.
QJsonObject ofColumn(const YamlColumn &column, YamlCells::Bounds bounds, const QVariant &base);

/// Any single value, read as its text.
QJsonObject text(const QString &help = QString());
/// The same; the words are those that usually stand there.
QJsonObject wordText(const YamlWords &words, const QString &help);
/// A list of single values, or one of them.
QJsonObject list(const QString &help);
/// A map of single values with any keys.
QJsonObject texts(const QString &help);
/// A whole number within bounds, decimal or hexadecimal.
QJsonObject number(YamlCells::Bounds bounds, const QString &help);
/// One of the words, or a number within bounds.
QJsonObject word(const YamlWords &words, YamlCells::Bounds bounds, const QString &help);

/// A regular expression for number keys up to \a high, in each spelling; with all numbers that have
/// as many digits.
QString numberKey(quint32 high);
/// The same for any number, with a sign or without.
QString anyNumberKey();
/// A number, or "$NODEID+0x180".
QJsonObject valueOrNode();
/// What a PDO maps: "0x2012:1", or a number.
QJsonObject mappingEntry();
/// The end of a connection, such as "0/0x2010:1".
QString connectionEnd();
/// As numberKey(), and the words.
QString wordKey(const YamlWords &words, quint32 high);

/// What the values refer to: for "$defs".
QJsonObject definitions();
/// A reference to a definition, with what it means in its place.
QJsonObject reference(const char *definition, const QString &help = QString());

/// With \a help as "description", unless it is empty.
QJsonObject described(QJsonObject schema, const QString &help);

} // namespace YamlSchemaValues
