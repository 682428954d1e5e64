// The text format of generated files: encoding and line ends. Knows no setting and no record.
#pragma once

#include <QString>
#include <QVector>

#include <cstring>
#include <initializer_list>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

class QIODevice;

/// What stands in place of "$name$" in a text: a text or a number. Only refers to its text, so it
/// is made in the call that takes it.
struct TextHole {
    TextHole(const char *holeName, const QString &text) : name(holeName), value(&text) {}
    TextHole(const char *holeName, const char *utf8) : name(holeName), value(utf8) {}

    template <typename Number, typename = std::enable_if_t<std::is_integral_v<Number>>>
    TextHole(const char *holeName, Number number) : name(holeName), value(qint64(number))
    {
    }

    std::string_view name;
    std::variant<const QString *, const char *, qint64> value;
};

/// A number in hexadecimal digits of lower case, and at least so many.
struct HexNumber {
    quint32 value;
    int digits;
};

/// Writes one file in UTF-8. Lives as long as the sections of the file are written; the device
/// belongs to the caller and outlives the writer.
class TextWriter
{
public:
    explicit TextWriter(QIODevice *device);
    ~TextWriter();
    TextWriter(const TextWriter &) = delete;
    TextWriter &operator=(const TextWriter &) = delete;

    /// \a text as it stands; whoever wants a line end gives "\n".
    void raw(const QString &text);
    void raw(const char *utf8) { bytes(utf8, std::strlen(utf8)); } // known of a literal
    void raw(quint32 number);
    void raw(HexNumber number);

    /// Several texts and numbers, one after the other.
    template <typename... Parts>
    void parts(const Parts &...list)
    {
        (raw(list), ...);
    }

    /// \a text with its holes: fill("case $line$:\n", {{"line", 3}}) is "case 3:\n". Values are not
    /// looked into, so one may hold a "$" of its own. A hole without a value and a value without a
    /// hole are mistakes of the caller: they are named on standard error, and finish() fails.
    void fill(const char *text, std::initializer_list<TextHole> holes);

    /// The same for a raw string literal, which begins with a line end that is not part of the
    /// text, so that its lines stand in the source as they will stand in the file:
    ///
    ///     out.block(R"(
    ///     UNSIGNED8 lineTable[$count$u];
    ///     )", {{"count", 5}});
    void block(const char *text, std::initializer_list<TextHole> holes = {});

    /// A C define with a number. \a start is all of the line before it, since the gap after a name
    /// is part of the format: define("#define LAMP_CNT\t", 5) is "#define LAMP_CNT\t5u\n".
    void define(const char *start, quint32 value);

    /// The same with one number a line of the device: "#define LAMP_COUNTS\t5u, 7u\n".
    void defineList(const char *start, const QVector<quint32> &perLine);

    /// Hands all text to the device; so does the end of the writer. False if any of it, early or
    /// late, could not be written.
    bool finish();

private:
    void value(const TextHole &hole);
    void reportMistake(const char *what, std::string_view name);

    void bytes(const char *start, size_t size)
    {
        if (size > buffer.size() - used)
            makeRoom(size);
        std::memcpy(buffer.data() + used, start, size);
        used += size;
    }

    void flush();
    void makeRoom(size_t size);

    /// Bytes that are handed to the device at once.
    static constexpr size_t kBlock = 64 * 1024;

    QIODevice *device;
    std::vector<char> buffer; ///< its size, from kBlock on, is that of the longest text
    size_t used = 0;
    bool failed = false;
};
