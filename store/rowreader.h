// Reads rows in bulk: cells come straight from SQLite where the driver of Qt makes a variant of
// each, which costs more than all else about a row.
#pragma once

#include "store/sqliteconnection.h"

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <QVector>

#include <vector>

class RowReader;
class Statement;
class StorePrivate;
struct sqlite3_value;

/// A cell of the row that a reader stands on; gone when the reader moves on. SQLite has a type for
/// each cell, whatever its column is declared as: all functions give what those of QVariant give
/// for the value that the driver makes of the cell.
class RowCell
{
public:
    bool isInteger() const; ///< false as well where the driver reads
    int toInt() const;
    uint toUInt() const;
    qlonglong toLongLong() const;
    QString toString() const;
    QByteArray toByteArray() const;
    QVariant toVariant() const;

private:
    friend RowReader;
    RowCell(const RowReader &reader, int place);

    const RowReader &rows;
    int column;
    sqlite3_value *value; ///< null: the driver reads
    int type;             ///< SQLite's; it holds until the value is converted
};

/// One run of a prepared SELECT, as a Statement is, for results of many rows. What fails is run by
/// a Statement, which logs why; so is all, where SqliteConnection has no handle.
class RowReader
{
public:
    /// \a values are numbers and texts.
    RowReader(StorePrivate &store, const QString &sql, const QVector<QVariant> &values = {});
    ~RowReader();
    RowReader(const RowReader &) = delete;
    RowReader &operator=(const RowReader &) = delete;

    bool ok() const; ///< so far: a row further down may fail
    bool next();
    RowCell value(int column) const { return RowCell(*this, column); }

private:
    friend RowCell;
    bool start();
    /// Equal texts that follow each other in a column share their memory, as those of many
    /// subindices do.
    QString textOf(sqlite3_value *value, int column) const;

    StorePrivate &store;
    QString sql;
    QVector<QVariant> values;
    SqliteStatement statement;         ///< null: the driver reads
    std::unique_ptr<Statement> driver; ///< null: SQLite reads
    bool isAtStart = true;             ///< the first row is there and next() was not called
    bool hasRow = false;
    bool succeeded = true;
    mutable std::vector<QString> lastTexts; ///< by column
};
