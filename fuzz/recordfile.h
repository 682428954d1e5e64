// Project databases from readable text, row by row, so that a project may hold what no tool writes.
#pragma once

#include <QByteArray>
#include <QString>

/// Writes a database to \a file: a new project, changed by the lines of \a records in their order.
///
///     +                             one more line of the project, four at most
///     Objects0 objectindex=#4096    a row; one with the same key is replaced
///     -Signals                      drops a table
///     -Nodes lssslave               drops a column
///
/// Words stand apart by blanks, with "%20" for a byte. A value is text, "#" with an integer, "|"
/// with bytes, or "~" for NULL. What SQLite refuses is passed over.
void writeRecordFile(const QByteArray &records, const QString &file);
