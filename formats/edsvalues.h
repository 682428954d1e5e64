// Numbers and values as device descriptions write them (CiA 306), and the form in which a project
// stores them.
#pragma once

#include <QString>

namespace EdsValues
{

/// \a text up to its first ";", blanks cut.
QString withoutComment(const QString &text);

/// Decimal (leading zeros allowed), hexadecimal after "0x", else hexadecimal digits alone. A
/// comment after the number is passed over. False if it is no number of 32 bits; \a number then
/// stays.
bool readNumber(const QString &text, quint32 &number);

/// Can \a text be a value of the type: a number, a sum with the node-ID, or any text where the type
/// asks for no number? Its range does not count.
bool isOfType(const QString &text, quint16 dataType);

/// A default or current value of a type. Texts of types without a fixed size stay as they are. Of
/// the others comments are cut; node-id sums become "$NODEID+x"; hexadecimal digits alone get their
/// "0x"; a hexadecimal number above the positive range of a signed type is its two's complement, in
/// decimal.
QString normalize(const QString &text, quint16 dataType);

/// The same for a limit, but that hexadecimal limits of signed types are always given in decimal,
/// which is how limits of signed types are read.
QString normalizeLimit(const QString &text, quint16 dataType);

} // namespace EdsValues
