// The columns of object tables.
#pragma once

#include "formats/csvtable.h"
#include "store/records.h"
#include "support/fileproblems.h"

#include <QStringList>
#include <QVector>

/// One line of a table, as far as its cells say. Numbers are as given, in range or not.
struct CsvRow {
    qint64 index = -1; ///< -1 if none is given
    qint64 sub = 0;
    qint64 line = -1;      ///< -1: the line that the import goes to
    bool isObject = false; ///< is about an object, not about one of its subindices
    bool hasName = false;
    bool hasLowLimit = false; ///< the table has the column; a null limit is an empty cell
    bool hasUpLimit = false;
    QString objectCode = QStringLiteral("VARIABLE");
    QString implementation = QStringLiteral("none");
    SubIndexData data;
    quint32 replaced = 0; ///< bit n: the word of column n was none, and something else is taken
};

/// The columns of one table, by its header.
class CsvColumns
{
public:
    /// Names in any case and with blanks around them; unknown ones are passed over, and of two
    /// equal ones the first counts.
    explicit CsvColumns(const QStringList &header);

    CsvRow read(const QStringList &fields) const;

    bool has(CsvTable::Column column) const;
    /// Without blanks around it; empty if the table has no such column.
    QString cell(const QStringList &fields, CsvTable::Column column) const;
    int count() const { return names.size(); }

    /// Warns of columns that say nothing; \a line is that of the header.
    void tellOfHeader(int line, FileProblems &problems) const;
    /// Warns of the words in \a fields that \a row has replaced.
    void tellOfWords(const CsvRow &row, const QStringList &fields, int line,
                     FileProblems &problems) const;

private:
    QStringList names;          ///< of the header, in lower case
    QVector<int> places;        ///< by the table of known columns; -1: not in this table
    bool isGroupedTable = true; ///< objects have lines of their own, without a subindex
};
