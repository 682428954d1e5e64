// The text format of generated files.
#include "generators/textwriter.h"

#include <QFileDevice>

#include <algorithm>
#include <array>
#include <charconv>

namespace
{

/// Bytes that are handed to the device at once.
constexpr int kBlock = 64 * 1024;

} // namespace

TextWriter::TextWriter(QIODevice *target) : device(target)
{
    buffer.reserve(2 * kBlock);
}

TextWriter::~TextWriter()
{
    flush();
}

void TextWriter::raw(const QString &text)
{
    const bool isAscii = std::all_of(text.begin(), text.end(),
                                     [](QChar character) { return character.unicode() < 0x80; });
    if (isAscii) {
        // Most texts are, and go over without a conversion of their own.
        const int start = buffer.size();
        buffer.resize(start + text.size());
        std::transform(text.begin(), text.end(), buffer.begin() + start,
                       [](QChar character) { return char(character.unicode()); });
    } else {
        buffer += text.toUtf8();
    }
    flushIfFull();
}

void TextWriter::raw(const char *utf8)
{
    buffer += utf8;
    flushIfFull();
}

void TextWriter::raw(quint32 number)
{
    std::array<char, 10> digits; // 4294967295
    const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    buffer.append(digits.data(), int(end - digits.data()));
}

void TextWriter::define(const char *start, quint32 value)
{
    raw(start);
    raw(value);
    raw("u\n");
}

void TextWriter::defineList(const char *start, const QVector<quint32> &perLine)
{
    raw(start);
    for (int i = 0; i < perLine.size(); ++i) {
        raw(i ? ", " : "");
        raw(perLine.at(i));
        raw("u");
    }
    raw("\n");
}

void TextWriter::flushIfFull()
{
    if (buffer.size() >= kBlock)
        flush();
}

void TextWriter::flush()
{
    if (!buffer.isEmpty() && device->write(buffer) != buffer.size())
        failed = true;
    buffer.resize(0);
}

bool TextWriter::finish()
{
    flush();
    auto *file = qobject_cast<QFileDevice *>(device);
    return !(file && !file->flush()) && !failed;
}
