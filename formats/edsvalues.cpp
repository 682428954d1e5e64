// Forms of values in device descriptions.
#include "formats/edsvalues.h"

#include "support/cohelper.h"
#include "support/numbers.h"

#include <algorithm>

namespace
{

enum class Class { Text, Integer, OtherNumber };

Class classOf(quint16 dataType)
{
    const auto type = static_cast<CAN::CANopenDataType>(dataType);
    if (COHelper::getDataLengthBits(type) == 0)
        return Class::Text;
    switch (type) {
    case CAN::CANopenDataType::Real32:
    case CAN::CANopenDataType::Real64:
    case CAN::CANopenDataType::TimeOfDay:
    case CAN::CANopenDataType::TimeDifference:
        return Class::OtherNumber;
    default:
        return Class::Integer;
    }
}

bool hasHexPrefix(const QString &text)
{
    return text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
}

/// Hexadecimal digits that are no decimal number, such as "1A".
bool isBareHex(const QString &text)
{
    bool hasLetter = false;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        const bool isLetter = (code | 0x20) >= 'a' && (code | 0x20) <= 'f';
        if (!isLetter && (code < '0' || code > '9'))
            return false;
        hasLetter = hasLetter || isLetter;
    }
    return hasLetter;
}

bool isNumber(const QString &text)
{
    bool ok = false;
    text.toULongLong(&ok, hasHexPrefix(text) || isBareHex(text) ? 16 : 10);
    return ok;
}

/// Decimal digits, or hexadecimal ones after "0x".
bool isPlainNumber(const QString &text)
{
    const bool isHex = text.startsWith(QLatin1String("0x"));
    if (text.size() > 18 || text.size() <= (isHex ? 2 : 0))
        return false;
    const auto isDigit = [isHex](QChar character) {
        const ushort code = character.unicode();
        return (code >= '0' && code <= '9') ||
               (isHex && ((code >= 'a' && code <= 'f') || (code >= 'A' && code <= 'F')));
    };
    return std::all_of(text.begin() + (isHex ? 2 : 0), text.end(), isDigit);
}

/// The sum of node-id and a number, or the node-id alone, in one form; other texts as they are.
QString nodeIdSum(const QString &text)
{
    const QLatin1String nodeId("$NODEID");
    QString sum = text.simplified();
    sum.remove(QLatin1Char(' '));
    if (sum.compare(nodeId, Qt::CaseInsensitive) == 0)
        return nodeId;
    QString number;
    if (sum.startsWith(QLatin1String("$NODEID+"), Qt::CaseInsensitive))
        number = sum.mid(nodeId.size() + 1);
    else if (sum.endsWith(QLatin1String("+$NODEID"), Qt::CaseInsensitive))
        number = sum.chopped(nodeId.size() + 1);
    if (!isNumber(number))
        return text;
    if (isBareHex(number))
        number.prepend(QLatin1String("0x"));
    return QString(nodeId) + QLatin1Char('+') + number;
}

/// A hexadecimal number of a signed type of \a bits in decimal; \a text if it does not fit, or if
/// it is positive and \a positiveToo is not set.
QString signedNumber(const QString &text, int bits, bool positiveToo)
{
    bool ok = false;
    const quint64 number = text.toULongLong(&ok, 16);
    const quint64 allBits = ~quint64(0) >> (64 - bits);
    if (!ok || number > allBits)
        return text;
    if (number <= allBits >> 1)
        return positiveToo ? QString::number(number) : text;
    return QString::number(static_cast<qint64>(number | ~allBits));
}

QString normalizeNumber(const QString &text, quint16 dataType, bool positiveToo)
{
    QString value = EdsValues::withoutComment(text);
    if (value.contains(QLatin1Char('$')))
        return nodeIdSum(value);
    if (classOf(dataType) != Class::Integer)
        return value;
    if (isBareHex(value))
        value.prepend(QLatin1String("0x"));
    const auto type = static_cast<CAN::CANopenDataType>(dataType);
    if (hasHexPrefix(value) && COHelper::isSignedInteger(type))
        return signedNumber(value, COHelper::getDataLengthBits(type), positiveToo);
    return value;
}

} // namespace

QString EdsValues::withoutComment(const QString &text)
{
    const auto *const end = std::find(text.begin(), text.end(), QLatin1Char(';'));
    if (end != text.end())
        return text.left(int(end - text.begin())).trimmed();
    const bool hasBlanks = !text.isEmpty() && (text.front().isSpace() || text.back().isSpace());
    return hasBlanks ? text.trimmed() : text; // nearly never, and asked for each value
}

bool EdsValues::readNumber(const QString &text, quint32 &number)
{
    const QString digits = withoutComment(text);
    bool ok = false;
    const quint32 read =
        isPlainNumber(digits)
            ? Numbers::toUIntByPrefix(digits, &ok)
            : digits.toUInt(&ok, hasHexPrefix(digits) || isBareHex(digits) ? 16 : 10);
    if (ok)
        number = read;
    return ok;
}

bool EdsValues::isOfType(const QString &text, quint16 dataType)
{
    if (isPlainNumber(text)) // nearly all are
        return true;
    const Class kind = classOf(dataType);
    if (kind == Class::Text)
        return true;
    const QString value = withoutComment(text);
    if (value.contains(QLatin1Char('$')))
        return nodeIdSum(value).startsWith(QLatin1String("$NODEID"));
    const bool hasSign = value.startsWith(QLatin1Char('-')) || value.startsWith(QLatin1Char('+'));
    if (value.isEmpty() || isNumber(hasSign ? value.mid(1) : value))
        return true;
    bool isReal = false;
    value.toDouble(&isReal);
    return kind == Class::OtherNumber && isReal;
}

QString EdsValues::normalize(const QString &text, quint16 dataType)
{
    return classOf(dataType) == Class::Text ? text : normalizeNumber(text, dataType, false);
}

QString EdsValues::normalizeLimit(const QString &text, quint16 dataType)
{
    return classOf(dataType) == Class::Text ? text : normalizeNumber(text, dataType, true);
}
