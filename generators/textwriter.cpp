// The text format of generated files.
#include "generators/textwriter.h"

#include <QFileDevice>

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
    // Most texts are ASCII, and go over without a conversion of their own. Both loops run over all
    // characters, so that the compiler can take several at once.
    const ushort *characters = text.utf16();
    const int size = text.size();
    ushort seen = 0;
    for (int i = 0; i < size; ++i)
        seen |= characters[i];
    if (seen < 0x80) {
        const int start = buffer.size();
        buffer.resize(start + size);
        char *bytes = buffer.data() + start;
        for (int i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(characters[i]);
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
