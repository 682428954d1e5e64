// Texts of string objects as bytes and as C literals.
#pragma once

#include <QByteArray>
#include <QString>

namespace ObjDict
{

/// Bytes after "|x", two hexadecimal digits each, a last single digit by itself; else the text in
/// UTF-8.
QByteArray stringBytes(const QString &value);

/// "\x41\x0a" for "|x410a".
QString toByteValues(const QString &value);

/// Inside of a literal for a constant string. Filled up with zeros, so that the stack finds
/// \a size bytes; strings of more than 65535 bytes are not filled up.
QString literalOfSize(const QString &value, quint32 size);

} // namespace ObjDict
