// The way of rows of the text form into the tables of objects and subindices.
#pragma once

#include "store/objectdatabase_p.h"
#include "store/textrows.h"

#include <vector>

/// A cell of the text form that a row cannot hold as it stands there, or that loses something.
struct TextFault {
    enum class Kind { List, NoColumn, NoNumber, CutNumber, NoObjectType, NoMetadata, Doubled };

    int cell = 0; ///< its position in the row
    Kind kind = Kind::NoColumn;
    QVariant read; ///< what a number column has in its place
};

/// Writes the rows of one table. Most cells of a project hold what one of the rows before has in
/// the same column: what their text becomes is remembered, and most rows keep nearly all of the row
/// before. The entries of all rows must outlive this.
template <class Record>
class TextRowWriter
{
public:
    /// For the objects (IndexData) or the subindices (SubIndexData) of a line.
    TextRowWriter(StorePrivate &target, quint8 ofLine);
    TextRowWriter(const TextRowWriter &) = delete; // its cells are texts that it knows
    TextRowWriter &operator=(const TextRowWriter &) = delete;

    /// Inserts or updates a row; its key are one or two numbers. Columns that may not be NULL and
    /// are not given become 0 in a new row. Runs of blanks become one, but for the values of a row
    /// whose data type is a text. False if the numbers are none of the table, or if the row cannot
    /// be written.
    bool write(const TextRow &row);
    /// The same for one cell, which stands in no file.
    bool writeCell(const QStringList &numbers, const QString &name, const QVariant &given);

    /// Of the last row.
    const QVector<TextFault> &faults() const { return rowFaults; }

private:
    /// What a column gets for a text.
    struct Known {
        IniText::Span given{nullptr, nullptr}; ///< none: the next row may get another value
        bool isText = false;                   ///< a value in which each blank counts
        QString text;
        RowValue value; ///< the text above, or what else it is
    };
    /// Where the row before has its cells.
    struct Place {
        const char *name; ///< of the column
        int column;       ///< of the record; -1: there is none of that name
        IniText::Span given{nullptr, nullptr};
        bool isKnown = false;
    };
    static constexpr int kKeyColumns = std::is_same_v<Record, SubIndexData> ? 2 : 1;
    static constexpr int kKnownOfColumn = 16;

    bool takeKey(const QStringList &numbers);
    bool hasColumnsOf(const TextRow &row) const;
    void takeColumns(const TextRow &row);
    void clearCells();
    bool holdsText(const TextRow &row);
    bool hasTextInStore() const;
    Known &knownFor(int column, IniText::Span given);
    void takeCell(const TextRow &row, int number);
    QVariant givenIn(const TextRow &row, int number);
    void readCell(int number, int column, const QVariant &given, bool asText, Known *known);
    void setCell(int column, const Known &known);
    bool writeCells();

    StorePrivate &store;
    quint8 line;
    const Column<Record> *columns;
    int columnCount;
    std::vector<Known> knownCells; ///< some for each column
    QVector<Place> places;
    bool isDoubled = false; ///< two places are of the same column
    int typePlace = -1;     ///< of the data type of a subindex
    IniText::Span lastType{nullptr, nullptr};
    bool isLastTypeText = false;
    bool isText = false; ///< the value of the row is a text
    RowValues cells;
    quint32 kept = 0; ///< cells that are not given and may not be NULL
    QVector<TextFault> rowFaults;
};

/// Of a row of the lines, whose cells are not written as a row.
QVector<TextFault> faultsOfNode(const TextRow &row);
