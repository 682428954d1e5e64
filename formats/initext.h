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

namespace IniText
{

/// A stretch of a file.
struct Span {
    const char *begin;
    const char *end;

    int size() const { return int(end - begin); }
    Span trimmed() const;
};

/// One value with its key, kept as the file has them: a project holds half a million.
struct Entry {
    Span keyText;
    Span valueText;

    /// "/" parts the groups below the section.
    QString key() const;
    /// A text, a list of texts, or a byte array.
    QVariant value() const;
};

/// Entries in the order of the file by section; a section that stands twice is one.
using Sections = QMap<QString, QVector<Entry>>;

/// False if \a data holds lines that are neither section, key, comment nor blank, or are longer
/// than any value of a project; all other lines are in \a sections all the same. The entries stand
/// in \a data, which must outlive them. The long lines are told as problems of \a file.
bool read(const QByteArray &data, Sections *sections, const QString &file = QString());
bool read(QByteArray &&data, Sections *sections, const QString &file = QString()) = delete;

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
