// Reader of the INI-like text of device descriptions (CiA 306), tolerant of what files in the field
// hold. It knows sections, keys and comments; what they mean is the parser's concern.
#pragma once

#include "support/fileproblems.h"

#include <QHash>
#include <QString>
#include <QVector>

#include <functional>

/// A line "key=value", blanks around both cut. Both point into the reader's text.
struct EdsEntry {
    QStringRef key;
    QStringRef value;
    int line = 0; ///< from 1
};

/// A section with its lines in the order of the file.
struct EdsSection {
    QString name; ///< as between the brackets, in lower case and without any blanks
    int line = 0; ///< of the section's head, from 1
    QVector<EdsEntry> entries;
    QString comment; ///< lines of its ";;" blocks without these two characters, "\n" between them
};

/// Holds the sections of one file. Used by one thread at a time; not copied, for its entries point
/// into its text.
class EdsReader
{
public:
    EdsReader() = default;
    EdsReader(const EdsReader &) = delete;
    EdsReader &operator=(const EdsReader &) = delete;

    /// False if the file cannot be opened, is no regular file, or is larger than 256 MiB; the
    /// reader is empty then.
    bool read(const QString &file);

    /// The same from bytes; \a origin stands for the file name in problems.
    void parse(const QByteArray &bytes, const QString &origin);

    /// In the order of the file; a repeated section stands here each time.
    const QVector<EdsSection> &sections() const { return allSections; }

    /// The last section of that name, in any case and with any blanks; null if there is none.
    const EdsSection *section(const QString &name) const;

    /// The file or origin that was read last.
    const QString &fileName() const { return file; }

    /// Keeps an oddity of a line for tellProblems(); see FileProblems.
    void note(const char *rule, int line, const std::function<QString()> &words) const;

    /// Warns of all that was noted, and forgets it.
    void tellProblems() const;

    /// As Helper::decodeText(), with blanks in place of control characters.
    static QString decode(const QByteArray &bytes);

private:
    /// A ";;" block that is still to be given to a section.
    struct Block {
        QString text;
        bool isOpen = false;
        bool isBehindBlank = false;
    };

    void readLine(const QStringRef &raw);
    void readSectionHead(const QStringRef &line);
    void readEntry(const QStringRef &line);
    void readComment(const QStringRef &line);
    void closeBlock();

    QString file;
    mutable FileProblems problems; ///< what is noted changes nothing of the sections
    QString text;
    QVector<EdsSection> allSections;
    QHash<QString, int> lastByName;
    Block block;
    int lineNumber = 0;
    bool lastWasBlank = true;
};
