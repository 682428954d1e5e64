// The rows of the text form of a project, put together from its entries.
#pragma once

#include "formats/initext.h"
#include "store/objectdatabase.h"

#include <QStringList>
#include <QVector>

/// A row as the text form has it.
struct TextRow {
    QStringList numbers; ///< of its key
    QVector<ObjectDataBase::ColumnValue> cells;
    const IniText::Entry *first = nullptr; ///< the entry of the first cell; the others follow it
    QVector<int> lists;                    ///< cells with commas and without quotation marks
};

/// Goes through rows, whose keys are "number/column", or have two numbers. Cells of a row that
/// stand apart in the file come as two rows. Most cells stand as they are in the row before, at the
/// same position: they are not read again, and share their texts.
class TextRows
{
public:
    /// The entries must outlive this.
    explicit TextRows(const QVector<IniText::Entry> &entries);

    bool next();
    /// Empty numbers, or too many, if a key is of another shape.
    const TextRow &row() const { return current; }

private:
    /// The bytes before the column, if they say all of the place; else none.
    static IniText::Span prefixOf(const IniText::Entry &entry);
    bool continuesRow(const IniText::Entry &entry) const;
    void takeCell(const IniText::Entry &entry);
    /// Is the cell of the same column as the one in the row before?
    bool hasSameColumn(const IniText::Entry &entry, int number) const;

    const IniText::Entry *at;
    const IniText::Entry *end;
    QString place;          ///< of the row: "0x1018/0x1"
    IniText::Span prefix{}; ///< of its cells, while all of them have the same
    int count = 0;          ///< its cells so far
    TextRow current;        ///< its further cells are those of the row before
    TextRow last;           ///< the row before, but for its cells
    IniText::Span lastPrefix{};
};

/// A value as text. One with commas that stands without quotes is a list in the file.
QString textOf(const QVariant &value);
