// JSON for pages.
#include "formats/jsonwriter.h"

#include "support/characters.h"

#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace
{

constexpr ushort kLineSeparator = 0x2028; ///< ends a line in older scripts, as the next one
constexpr ushort kParagraphSeparator = 0x2029;

bool standsForItself(ushort unit)
{
    return unit >= 0x20 && unit != '"' && unit != '\\' && unit != '<' && unit != '>' &&
           unit != '&' && unit != 0x7F && unit != kLineSeparator && unit != kParagraphSeparator;
}

/// Of a text with none of these, all characters stand for themselves.
Characters::Eight mayNeedEscape(Characters::Eight characters)
{
    const auto are = [characters](char mark) {
        return Characters::Eight(characters == quint16(mark));
    };
    return Characters::areOdd(characters) | are('"') | are('\\') | are('<') | are('>') | are('&');
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

void JsonWriter::array(const int *first, const int *last)
{
    constexpr int kLongest = 12; // with sign and comma
    separate();
    QVarLengthArray<char, 512> text(2 + int(last - first) * kLongest);
    char *end = text.data();
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
    out.append(text.constData(), int(end - text.constData()));
}

void JsonWriter::value(const QString &text)
{
    separate();
    if (Characters::any(text, mayNeedEscape))
        return writeEscaped(text);
    QVarLengthArray<char, 512> plain(text.size() + 2 + int(Characters::kAtOnce));
    plain[0] = '"';
    (void)Characters::writeAscii(text, plain.data() + 1); // it is
    plain[text.size() + 1] = '"';
    out.append(plain.constData(), text.size() + 2);
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
