// The text format of generated files: encoding and line ends. Knows no setting and no record.
#pragma once

#include <QTextStream>

/// Writes one file in UTF-8. Lives as long as the sections of the file are written; the device
/// belongs to the caller and outlives the writer.
class TextWriter
{
public:
    explicit TextWriter(QIODevice *device);

    /// \a text as it stands; whoever wants a line end gives "\n".
    void raw(const QString &text) { stream << text; }
    void raw(const char *utf8) { stream << QString::fromUtf8(utf8); }
    void raw(quint32 number) { stream << number; }

    /// Hands all text to the device. False if any of it, early or late, could not be written.
    bool finish();

private:
    QTextStream stream;
};
