// The tables of a project, and the columns that older projects lack. objectdatabase_lifecycle.cpp
// runs them; schema version 104.
#pragma once

#include <QString>
#include <QStringList>

namespace Schema
{

/// A table that exists once a project.
struct TableRow {
    const char *name;
    const char *columns;
    bool createdOnOpen; ///< older projects may lack it
};

/// In the order of creation.
extern const TableRow kTables[14];

/// Table names of a line: Schema::table("Objects", 3) is "Objects3".
QString table(const char *family, int line);

/// The line of a table name such as "SubObjects12", or -1 if it is no table of \a family. The
/// number is the whole decimal number at the end.
int lineOfTable(const QString &table, const char *family);

QString createTable(const TableRow &row, bool ifNotExists);

/// "create table if not exists" of a line's table; \a family is "Objects", "SubObjects", "PGNs",
/// "SPNs", "CANIDs", "DataElements" or "UDSSettings".
QString createLineTable(const char *family, int line);

/// Is \a sql, as SQLite keeps it, the statement by which this tool makes the table? It then lacks
/// nothing, and holds nothing that computes.
bool isAsToday(const QString &table, const QString &sql);

/// Names of the columns of a line's table, in the order on disk; families as above.
QStringList lineColumnNames(const char *family);

/// Declarations of the columns of "Objects" or "SubObjects" that can be added to a table with rows.
QString nullableColumns(const char *family);

/// The tables that every line has but its UDS settings, in the order of creation.
extern const char *const kLineFamilies[6];

/// Conditions that leave out rows which no object dictionary can hold.
inline constexpr char kIndexInRange[] = "objectindex between 0 and 65535";
inline constexpr char kSubIndexInRange[] =
    "objectindex between 0 and 65535 and subindex between 0 and 255";

/// Columns that a table got over time, in the order in which they are added to an older project.
struct AddedColumns {
    const char *table;   ///< a table, or the family of a line's table
    const char *columns; ///< "name type" separated by commas
};

/// Once a project. Only the lines 0 to 3 ever were made without the columns of SPNs.
extern const AddedColumns kFixedLadder[8];

/// Once a line.
extern const AddedColumns kLineLadder[3];

} // namespace Schema
