// Small text operations that all parts of the tool share.
#pragma once

#include <QByteArray>
#include <QString>

/// Text helpers. The constructor's argument names the tool of the family, and has no effect here.
class Helper
{
public:
    /// The largest file that readWholeFile() takes.
    static constexpr qint64 kMaxFileBytes = 256 * 1024 * 1024;

    explicit Helper(unsigned char tool = 0) { Q_UNUSED(tool) }

    /// \a text with its place holders filled: "${number}" with \a count in decimal, "${index}" with
    /// \a count as four lower-case hexadecimal digits, "${sub}" with \a subindex in decimal. All
    /// other text stands unchanged, an unknown place holder too.
    static QString substituteVariables(const QString &text, quint16 count, quint8 subindex);

    /// \a text with each of its line ends (LF, CRLF or CR) as \a ending.
    static QByteArray withLineEnds(QByteArray text, const QString &ending);

    /// Rewrites \a file so that each of its line ends (LF, CRLF or CR) is \a ending. The old file
    /// is replaced in one step; a missing file, or one that has these ends already, is left alone.
    /// False if the file could not be read or written.
    static bool modifyLineEnding(const QString &file, const QString &ending);

    /// All bytes of \a file. False if it cannot be opened, is no regular file, or is larger than
    /// 256 MiB.
    static bool readWholeFile(const QString &file, QByteArray &bytes);

    /// Text of bytes that are UTF-8, UTF-16 or UTF-32 with byte order mark, or else Windows-1252.
    /// The mark is left out; after one of UTF-8 the rest may be Windows-1252 as well.
    static QString decodeText(const QByteArray &bytes);

    /// \a text in UTF-8 as initialiser of a C byte array: "{0x41,0x62}".
    static QString UTF8String2ArrayString(const QString &text);
};
