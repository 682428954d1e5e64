// The statements in a project's schema: text from outside that SQLite takes for programs.
#pragma once

#include <QString>

/// What a schema may hold that runs by itself, at any read or write of a table and for as long as
/// its writer likes: expressions, triggers, views and virtual tables. No project has any.
namespace SchemaText
{

/// Is \a sql, a statement of sqlite_master, a table or an index of plain columns? Tables: no CHECK,
/// no computed column, no default in parentheses. Indexes: no condition, no expression. An empty
/// text, which the indexes have that SQLite makes by itself, is plain.
bool isPlain(const QString &sql);

} // namespace SchemaText
