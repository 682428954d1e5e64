// Reader of tables in text form: text to lines, lines to fields. What the fields mean is the
// importer's concern.
#pragma once

#include <QString>
#include <QStringList>

/// Reads line by line; blank lines and lines that begin with "#" are passed over. The first line
/// left decides the separator: "," if it holds one, else ";".
///
/// A field in double quotes may hold separators, line ends and doubled quotes (RFC 4180). A field
/// that begins with a quote but has no closing one before a separator or line end is plain text, as
/// all other fields are. Takes time in proportion to the text, whatever it holds.
class CsvReader
{
public:
    explicit CsvReader(const QString &table) : text(table) {}

    /// Takes the next line apart. False at the end of the text.
    bool next();

    /// The first 1000 fields of that line; one field if there is no separator. A field of nothing
    /// is null, one of just a pair of quotes is empty.
    const QStringList &fields() const { return currentFields; }

    /// Its first character, as it stands.
    QChar firstCharacter() const { return first; }

    /// Its number in the file, from 1.
    int line() const { return currentLine; }

private:
    void chooseSeparator(int end);
    QString readField();
    QString readPlainField();
    /// Place of the quote that ends the field which the one at \a opening begins; -1 if none does.
    int closingQuote(int opening) const;
    bool endsField(int place) const;
    bool isLineEnd(int place) const;
    bool isSeparator(int place) const;

    QString text;
    QStringList currentFields;
    QChar first;
    QChar separator;
    bool hasHeader = false; ///< the separator has been looked for
    int position = 0;
    int currentLine = 0;
    int nextLine = 1; ///< number of the line at position
};
