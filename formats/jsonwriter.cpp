// JSON for pages.
#include "formats/jsonwriter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace
{

constexpr ushort kLineSeparator = 0x2028; ///< ends a line in older scripts, as the next one
constexpr ushort kParagraphSeparator = 0x2029;

constexpr bool standsForItself(ushort unit)
{
    return unit >= 0x20 && unit != '"' && unit != '\\' && unit != '<' && unit != '>' &&
           unit != '&' && unit != 0x7F && unit != kLineSeparator && unit != kParagraphSeparator;
}

/// The characters of ASCII that stand for themselves.
constexpr std::array<bool, 0x80> kPlain = [] {
    std::array<bool, 0x80> result{};
    for (ushort unit = 0; unit < result.size(); ++unit)
        result[unit] = standsForItself(unit);
    return result;
}();

} // namespace

void JsonWriter::start(char bracket)
{
    separate();
    out += bracket;
    needsComma = false;
}

void JsonWriter::end(char bracket)
{
    out += bracket;
    needsComma = true;
}

void JsonWriter::separate()
{
    if (needsComma)
        out += ',';
    needsComma = true;
}

void JsonWriter::key(const char *name)
{
    separate();
    out += '"';
    out += name;
    out += "\":";
    needsComma = false;
}

void JsonWriter::value(qint64 number)
{
    separate();
    char digits[24];
    const std::to_chars_result end = std::to_chars(digits, digits + sizeof digits, number);
    out.append(digits, int(end.ptr - digits));
}

void JsonWriter::value(double number)
{
    if (!std::isfinite(number))
        return null();
    separate();
    out += QByteArray::number(number, 'g', 9);
}

void JsonWriter::value(bool claim)
{
    separate();
    out += claim ? "true" : "false";
}

void JsonWriter::null()
{
    separate();
    out += "null";
}

void JsonWriter::array(const int *first, const int *last)
{
    constexpr int kLongest = 12; // with sign and comma
    separate();
    const int start = out.size();
    out.resize(start + 2 + int(last - first) * kLongest);
    char *end = out.data() + start;
    *end++ = '[';
    for (const int *number = first; number != last; ++number) {
        if (number != first)
            *end++ = ',';
        if (*number >= 0 && *number < 10)
            *end++ = char('0' + *number);
        else if (*number == -1)
            end = std::copy_n("null", 4, end);
        else
            end = std::to_chars(end, end + kLongest, *number).ptr;
    }
    *end++ = ']';
    out.truncate(int(end - out.data()));
}

/// Most texts are plain.
void JsonWriter::value(const QString &text)
{
    separate();
    const int start = out.size();
    out.resize(start + text.size() + 2);
    char *end = out.data() + start;
    *end++ = '"';
    for (const QChar unit : text) {
        if (unit.unicode() >= kPlain.size() || !kPlain[unit.unicode()]) {
            out.truncate(start);
            return writeEscaped(text);
        }
        *end++ = char(unit.unicode());
    }
    *end = '"';
}

/// Half a pair of surrogates has no form in UTF-8.
void JsonWriter::writeEscaped(const QString &text)
{
    out += '"';
    const int size = text.size();
    for (int i = 0; i < size; ++i) {
        const ushort unit = text.at(i).unicode();
        const bool isPair =
            QChar::isHighSurrogate(unit) && i + 1 < size && text.at(i + 1).isLowSurrogate();
        const bool isHalf = QChar::isSurrogate(unit) && !isPair;
        if (!standsForItself(unit) || isHalf)
            escape(unit);
        else
            out += text.midRef(i, isPair ? 2 : 1).toUtf8();
        i += isPair ? 1 : 0;
    }
    out += '"';
}

void JsonWriter::escape(ushort unit)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += kDigits[(unit >> shift) & 0xF];
}
