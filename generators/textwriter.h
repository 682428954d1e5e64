// The text format of generated files: encoding and line ends. Knows no setting and no record.
#pragma once

#include <QString>
#include <QVector>

#include <cstring>
#include <vector>

class QIODevice;

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

    /// Several texts and numbers, one behind the other.
    template <typename... Parts>
    void parts(const Parts &...list)
    {
        (raw(list), ...);
    }

    /// A C define with a number. \a start is all of the line before it, since the gap behind a name
    /// is part of the format: define("#define LAMP_CNT\t", 5) is "#define LAMP_CNT\t5u\n".
    void define(const char *start, quint32 value);

    /// The same with one number a line of the device: "#define LAMP_COUNTS\t5u, 7u\n".
    void defineList(const char *start, const QVector<quint32> &perLine);

    /// Hands all text to the device; so does the end of the writer. False if any of it, early or
    /// late, could not be written.
    bool finish();

private:
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
