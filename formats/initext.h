// The INI dialect of QSettings, read and written here because a text project holds a cell a line:
// QSettings keeps them all in sorted maps, and takes seconds for what a scan does at once. It would
// also run Qt's deserialisation over whatever a file holds.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QMap>
#include <QString>
#include <QVariant>
#include <QVector>

#include <cstring>

namespace IniText
{

inline bool isBlank(char ch)
{
    return ch == ' ' || (ch >= '\t' && ch <= '\r');
}

/// A stretch of a file.
struct Span {
    const char *begin;
    const char *end;

    int size() const { return int(end - begin); }
    Span trimmed() const
    {
        Span result = *this;
        while (result.begin < result.end && isBlank(*result.begin))
            ++result.begin;
        while (result.end > result.begin && isBlank(result.end[-1]))
            --result.end;
        return result;
    }
};

inline bool isSame(Span one, Span other)
{
    const int size = one.size();
    return size == other.size() &&
           (size == 0 || std::memcmp(one.begin, other.begin, size_t(size)) == 0);
}

/// One value with its key, kept as the file has them, in few bytes: a project holds half a million.
class Entry
{
public:
    Entry() = default;
    /// Of a line with its first "=" outside quotes.
    Entry(Span line, const char *equals)
        : start(line.begin), keySize(quint32(equals - line.begin)), size(quint32(line.size()))
    {
    }

    Span keyText() const { return Span{start, start + keySize}.trimmed(); }
    Span valueText() const { return {start + keySize + 1, start + size}; }

    /// "/" parts the groups below the section.
    QString key() const;
    /// A text, a list of texts, or a byte array.
    QVariant value() const;

private:
    const char *start = nullptr;
    quint32 keySize = 0;
    quint32 size = 0;
};

/// Entries in the order of the file by section; a section that stands twice is one.
using Sections = QMap<QString, QVector<Entry>>;

/// What is wrong with a line.
enum class LineFault {
    TooLong,        ///< longer than any value of a project; passed over
    ConflictMarker, ///< of a merge that nobody has finished
    NoKey,          ///< neither section, key, comment nor blank; passed over
    EmptyKey,       ///< nothing before its "=", which is read all the same
    BeforeSections, ///< a key that no section holds; passed over
    OpenSection,    ///< "[" without "]", which is read as if it were there
    AfterSection,   ///< more than a comment after "]"; passed over
    CutValue,       ///< ";" right after a text, so that the rest of it is a comment
    NoEscape,       ///< "\" in a value before a character with which it means nothing; both go
    SwallowedLines, ///< lines that look like keys or sections inside a quoted value
};

/// Where in the text things stand that the sections do not tell.
struct Outline {
    struct FaultyLine {
        LineFault fault;
        Span line;
        bool isLost; ///< the sections do not hold what stands in it
    };

    /// Of a kind; of a file that is no text project each line might be one.
    static constexpr int kMostFaults = 1000;

    QMap<QString, const char *> heads; ///< the "[" of each section, the first one
    QVector<FaultyLine> faults;        ///< in the order of the text, at most kMostFaults of a kind
    QMap<LineFault, int> faultCounts;  ///< all of them
};

/// \a data ends with a zero character, as a byte array does that has bytes of its own. False if it
/// holds lines that are neither section, key, comment nor blank, or are longer than any value of a
/// project; all other lines are in \a sections all the same. Comments begin with ";" or "#". The
/// entries stand in \a data, which must outlive them.
bool read(const QByteArray &data, Sections *sections, Outline *outline = nullptr);
bool read(QByteArray &&data, Sections *sections, Outline *outline = nullptr) = delete;

/// Numbers of lines, counted when somebody asks.
class LineNumbers
{
public:
    /// \a text must outlive this, and stay as it is.
    explicit LineNumbers(const QByteArray &text) : data(text) {}

    /// Of the line that \a place stands in, from 1. A line ends with LF, CR LF or CR.
    int at(const char *place);

private:
    void findLines();

    const QByteArray &data;
    QVector<const char *> starts; ///< of each 32nd line; empty until the first question
};

/// Writes a file section by section. Texts are UTF-8.
class Writer
{
public:
    explicit Writer(QIODevice *target) : device(target) {}

    void section(const QString &name);
    void value(const QString &key, const QString &text);
    void value(const QString &key, const QByteArray &bytes);

    /// False if anything could not be written.
    bool finish();

private:
    void flushIfLarge();

    QIODevice *device;
    QByteArray buffer;
    bool failed = false;
    bool empty = true;
};

} // namespace IniText

Q_DECLARE_TYPEINFO(IniText::Entry, Q_MOVABLE_TYPE); // a vector of them grows in place
