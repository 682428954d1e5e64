// JSON for pages.
#include "formats/jsonwriter.h"

#include <algorithm>
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

void JsonWriter::value(const QString &text)
{
    separate();
    out += '"';
    const auto isPlain = [](QChar unit) {
        return unit.unicode() < 0x80 && standsForItself(unit.unicode());
    };
    if (std::all_of(text.begin(), text.end(), isPlain))
        out += text.toLatin1();
    else
        write(text);
    out += '"';
}

/// Half a pair of surrogates has no form in UTF-8.
void JsonWriter::write(const QString &text)
{
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
}

void JsonWriter::escape(ushort unit)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += kDigits[(unit >> shift) & 0xF];
}
