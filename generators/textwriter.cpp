// The text format of generated files.
#include "generators/textwriter.h"

#include "support/characters.h"

#include <QFileDevice>
#include <QtDebug>

#include <algorithm>
#include <array>
#include <charconv>

TextWriter::TextWriter(QIODevice *target) : device(target), buffer(kBlock) {}

TextWriter::~TextWriter()
{
    flush();
}

void TextWriter::raw(const QString &text)
{
    // Most texts are ASCII, and go over without a conversion of their own.
    const auto size = static_cast<size_t>(text.size());
    if (size + Characters::kAtOnce > buffer.size() - used)
        makeRoom(size + Characters::kAtOnce);
    if (Characters::writeAscii(text, buffer.data() + used)) {
        used += size;
        return;
    }
    const QByteArray utf8 = text.toUtf8();
    bytes(utf8.constData(), static_cast<size_t>(utf8.size()));
}

void TextWriter::raw(quint32 number)
{
    std::array<char, 10> digits; // 4294967295
    const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
    bytes(digits.data(), static_cast<size_t>(end - digits.data()));
}

void TextWriter::raw(HexNumber number)
{
    std::array<char, 8> digits; // FFFFFFFF
    size_t start = digits.size();
    const size_t first = start - static_cast<size_t>(number.digits);
    for (quint32 rest = number.value; rest != 0 || start > first; rest >>= 4)
        digits[--start] = "0123456789abcdef"[rest & 0xF];
    bytes(digits.data() + start, digits.size() - start);
}

void TextWriter::fill(const char *text, std::initializer_list<TextHole> holes)
{
    Q_ASSERT(holes.size() <= 32);
    quint32 filled = 0; // a bit for each value
    while (const char *start = std::strchr(text, '$')) {
        bytes(text, static_cast<size_t>(start - text));
        const char *end = std::strchr(start + 1, '$');
        const std::string_view name =
            end ? std::string_view(start + 1, static_cast<size_t>(end - start - 1)) : start + 1;
        text = end ? end + 1 : start + 1 + name.size();
        const auto *const hole = std::find_if(
            holes.begin(), holes.end(), [&](const TextHole &one) { return one.name == name; });
        if (hole == holes.end()) {
            reportMistake("no value for", name);
            continue;
        }
        filled |= 1u << (hole - holes.begin());
        value(*hole);
    }
    raw(text);
    for (const TextHole &hole : holes) {
        if (!(filled >> (&hole - holes.begin()) & 1u))
            reportMistake("no place for", hole.name);
    }
}

void TextWriter::block(const char *text, std::initializer_list<TextHole> holes)
{
    if (*text != '\n')
        reportMistake("no line end before", text);
    fill(text + (*text == '\n'), holes);
}

void TextWriter::value(const TextHole &hole)
{
    if (const auto *text = std::get_if<const QString *>(&hole.value)) {
        raw(**text);
    } else if (const auto *utf8 = std::get_if<const char *>(&hole.value)) {
        raw(*utf8);
    } else {
        std::array<char, 20> digits; // -9223372036854775808
        const qint64 number = std::get<qint64>(hole.value);
        const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
        bytes(digits.data(), static_cast<size_t>(end - digits.data()));
    }
}

void TextWriter::reportMistake(const char *what, std::string_view name)
{
    failed = true;
    qCritical("TextWriter: %s \"%.*s\"", what, static_cast<int>(name.size()), name.data());
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

void TextWriter::makeRoom(size_t size)
{
    flush();
    if (size > buffer.size())
        buffer.resize(size);
}

void TextWriter::flush()
{
    const auto size = static_cast<qint64>(used);
    if (size != 0 && device->write(buffer.data(), size) != size)
        failed = true;
    used = 0;
}

bool TextWriter::finish()
{
    flush();
    auto *file = qobject_cast<QFileDevice *>(device);
    return !(file && !file->flush()) && !failed;
}
