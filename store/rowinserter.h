// Inserts the rows of one table.
#pragma once

#include "store/rowvalue.h"
#include "store/sqliteconnection.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <vector>

class StorePrivate;

/// Binding a value costs more than all else about a row, and most cells of a row hold what they
/// hold in nearly all rows. Such a cell stands as literal in the statement; there is a statement
/// for each set of literals, within limits. Made once for a table, used for all its rows.
class RowInserter
{
public:
    enum class Conflict {
        Replace, ///< a row with the same key is replaced as a whole
        Update,  ///< its cells are updated, but for those that are to be kept
    };

    /// At most 32 columns; the first \a keyColumns of them are the key and are always bound.
    /// \a usual has a value for each column, number or text; an invalid one means: never literal.
    RowInserter(const QString &table, const QStringList &columns, int keyColumns,
                const QVector<QVariant> &usual, Conflict conflict);

    /// Bit of a column in a set of columns.
    static constexpr quint32 bit(int column) { return quint32(1) << column; }

    /// A cell for each column. Columns in \a kept are written in a new row only.
    bool write(StorePrivate &store, const RowValues &cells, quint32 kept = 0);

private:
    struct Shape {
        quint32 given = 0;
        quint32 literal = 0;
        quint32 kept = 0;

        bool operator==(const Shape &other) const
        {
            return given == other.given && literal == other.literal && kept == other.kept;
        }
        friend uint qHash(const Shape &shape, uint seed)
        {
            return ::qHash(quint64(shape.given) << 32 | shape.literal, seed) ^ shape.kept;
        }
    };

    struct Usual {
        RowValue::Kind kind; ///< None: never literal
        qint64 number;
        QString text;
        QString literal;
    };

    struct Prepared {
        QString text;
        SqliteStatement statement; ///< null if the driver has to run it
    };

    /// Also says why a statement fails.
    static bool runByDriver(StorePrivate &store, const QString &text, const RowValues &cells,
                            quint32 bound);
    bool isUsual(int column, const RowValue &cell) const;
    Prepared &preparedFor(StorePrivate &store, const Shape &shape);
    QString statementText(const Shape &shape) const;

    QString table;
    QStringList columns;
    int keyColumns;
    std::vector<Usual> usual;
    Conflict conflict;
    QHash<Shape, Prepared> statements;
};
