// The rows of the text form of a project, put together from its entries.
#pragma once

#include "formats/initext.h"

#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

/// A cell as the text form has it.
struct TextCell {
    QString column;
    QVariant value;
};

/// A row as the text form has it.
struct TextRow {
    QStringList numbers;                   ///< of its key
    const IniText::Entry *first = nullptr; ///< the entry of the first cell; the others follow it
    int count = 0;                         ///< of its cells
    /// Name of the column of each cell, as bytes of a key that has the same; null if the key has
    /// escapes. A name that repeats that of the row before is the very same piece of the text.
    QVector<IniText::Span> columns;

    /// A list is joined to one text.
    TextCell cell(int number) const;
};

/// Goes through rows, whose keys are "number/column", or have two numbers. Cells of a row that
/// stand apart in the file come as two rows. Most rows have the columns of the row before, which
/// are only compared then.
class TextRows
{
public:
    /// The entries must outlive this.
    explicit TextRows(const QVector<IniText::Entry> &entries);

    bool next();
    /// Empty numbers, or too many, if a key is of another shape.
    const TextRow &row() const { return current; }

private:
    /// Has the entry the prefix of the row and the column that this place has in the row before?
    bool repeatsColumn(const IniText::Entry &entry) const;
    bool continuesRow(const IniText::Entry &entry);
    void takeCell(const IniText::Entry &entry, bool isRepeated);

    const IniText::Entry *at;
    const IniText::Entry *end;
    QString place;          ///< of the row: "0x1018/0x1"
    IniText::Span prefix{}; ///< of its cells, while all of them have the same
    TextRow current;
};

/// A value as text. One with commas that stands without quotes is a list in the file.
QString textOf(const QVariant &value);
