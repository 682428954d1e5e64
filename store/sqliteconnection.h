// SQLite's own interface to the connection that the SQL driver of Qt has opened.
#pragma once

#include "store/rowvalue.h"

#include <QHash>
#include <QString>

#include <array>
#include <memory>

class QSqlDatabase;
class QVariant;
struct sqlite3;
struct sqlite3_stmt;

using SqliteStatement = std::shared_ptr<sqlite3_stmt>;

/// Texts that are bound, in the form in which nearly all databases hold them. Must outlive the run.
class AsciiTexts
{
public:
    /// Null if the text has other characters, or no place is left.
    const char *add(const QString &text);

private:
    std::array<char, 1024> bytes;
    int used = 0;
};

/// The handle behind a connection and the statements prepared on it, which RowReader and
/// RowInserter run. The driver keeps the handle; whatever thread runs the store's statements may
/// use it, one at a time.
class SqliteConnection
{
public:
    /// Before the first connection opens: SQLite does not count its memory, which takes a lock at
    /// each piece.
    static void beginUse();
    /// Without effect if the driver is another one, or has a SQLite that is not the very one that
    /// this program is linked with: then isOpen() stays false, and all reads go through the driver.
    void open(const QSqlDatabase &connection);
    /// Must run before the connection closes, which SQLite refuses while statements stand.
    void close();
    bool isOpen() const { return handle != nullptr; }
    /// Do cells hold their texts as UTF-8? Or else as UTF-16, which few databases do.
    bool hasUtf8() const { return isUtf8; }

    /// Null if it cannot be prepared. Lent until giveBack(): a nested run of the same text gets
    /// its own.
    SqliteStatement take(const QString &sql);
    void giveBack(const QString &sql, const SqliteStatement &statement);

    /// Binds a number, a text or bytes, as the driver does. \a place counts from 1. The value must
    /// outlive the run, at whose end it is let go of.
    static bool bind(const SqliteStatement &statement, int place, const QVariant &value);
    /// The same; the value must outlive the run too, and bytes are not copied.
    static bool bind(const SqliteStatement &statement, int place, const RowValue &value,
                     AsciiTexts *texts);
    /// Runs a statement that gives no rows.
    static bool run(const SqliteStatement &statement);

    /// Lets go of the file's pages in memory, which count for this process once they were read.
    void unmapPages();

    /// Of the last row that was inserted.
    qint64 lastRowId() const;

    /// Whether to use the driver only, as the environment asks: for tests, which hold both ways
    /// to the same results.
    static bool isDriverAsked();

private:
    sqlite3 *handle = nullptr;
    bool isUtf8 = false;
    QHash<QString, SqliteStatement> prepared; ///< by their text
};
