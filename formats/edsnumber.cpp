// From the spellings of a project to those that all readers of device descriptions take.
#include "formats/edsnumber.h"

#include "support/numbers.h"

#include <algorithm>

namespace
{

constexpr quint32 kLowestNodeId = 1;
constexpr quint32 kHighestNodeId = 127;

const QLatin1String kNodeId("$NODEID");
const QLatin1String kHexPrefix("0x");

/// Takes the node-ID and the sign of its sum out of \a text.
bool takeNodeId(QString &text)
{
    const bool isFirst = text.startsWith(kNodeId, Qt::CaseInsensitive);
    if (!isFirst && !text.endsWith(kNodeId, Qt::CaseInsensitive))
        return false;
    QString rest = isFirst ? text.mid(kNodeId.size()) : text.chopped(kNodeId.size());
    rest = rest.trimmed();
    if (rest.isEmpty()) {
        text = QStringLiteral("0");
        return true;
    }
    const QLatin1Char plus('+');
    if (isFirst ? !rest.startsWith(plus) : !rest.endsWith(plus))
        return false;
    text = (isFirst ? rest.mid(1) : rest.chopped(1)).trimmed();
    return true;
}

/// Digits without any sign.
bool readDigits(const QString &digits, int base, quint64 &number)
{
    const auto isDigit = [base](QChar digit) {
        const ushort code = digit.toLower().unicode();
        return (code >= '0' && code <= '9') || (base == 16 && code >= 'a' && code <= 'f');
    };
    bool ok = std::all_of(digits.begin(), digits.end(), isDigit);
    if (ok)
        number = digits.toULongLong(&ok, base);
    return ok;
}

} // namespace

bool WholeNumber::operator<(const WholeNumber &other) const
{
    if (isNegative != other.isNegative)
        return isNegative;
    return isNegative ? other.magnitude < magnitude : magnitude < other.magnitude;
}

WholeNumber WholeNumber::operator+(quint32 count) const
{
    if (!isNegative)
        return {false, magnitude > ~quint64(0) - count ? ~quint64(0) : magnitude + count};
    return magnitude > count ? WholeNumber{true, magnitude - count}
                             : WholeNumber{false, count - magnitude};
}

WholeRange EdsNumber::rangeOf(int bits, bool isSigned)
{
    const quint64 all = ~quint64(0) >> (64 - bits);
    if (!isSigned)
        return {{}, {false, all}};
    return {{true, (all >> 1) + 1}, {false, all >> 1}};
}

std::optional<EdsNumber> EdsNumber::read(const QString &text, int bits, bool isSigned)
{
    QString digits = text.trimmed();
    EdsNumber result;
    result.isSum = takeNodeId(digits);
    const bool hasSign = digits.startsWith(QLatin1Char('-')) || digits.startsWith(QLatin1Char('+'));
    const bool isMinus = digits.startsWith(QLatin1Char('-'));
    if (hasSign)
        digits.remove(0, 1);
    bool isHex = digits.startsWith(kHexPrefix, Qt::CaseInsensitive);
    if (isHex)
        digits.remove(0, kHexPrefix.size());
    quint64 magnitude = 0;
    if (!readDigits(digits, isHex ? 16 : 10, magnitude) || (result.isSum && hasSign))
        return std::nullopt;

    const WholeRange range = rangeOf(bits, isSigned);
    result.value = {isMinus && magnitude > 0, magnitude};
    if (isHex && isSigned && !hasSign && range.high.magnitude < magnitude &&
        magnitude <= rangeOf(bits, false).high.magnitude)
        result.value = {true, rangeOf(bits, false).high.magnitude - magnitude + 1};
    if (!result.isWithin(range) || (result.isSum && result.value.isNegative))
        return std::nullopt;

    isHex = isHex && !result.value.isNegative;
    const int most = (bits + 3) / 4;
    QString number =
        isHex ? kHexPrefix +
                    (digits.size() > most ? Numbers::toHex(magnitude, most).toUpper() : digits)
              : QString::number(result.value.magnitude);
    if (result.value.isNegative)
        number.prepend(QLatin1Char('-'));
    result.written = result.isSum ? kNodeId + QLatin1Char('+') + number : number;
    return result;
}

bool EdsNumber::isWithin(const WholeRange &range) const
{
    if (!isSum)
        return range.contains(value);
    return range.contains(value + kLowestNodeId) && range.contains(value + kHighestNodeId);
}
