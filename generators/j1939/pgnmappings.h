// What the mapping tables of groups have in common, whoever sends them.
#pragma once

#include "generators/j1939/pgncontext.h"

namespace Pgn
{

/// The address of a signal's variable as a C expression; "NULL" for a signal that has none, and for
/// a managed one without a place.
void writeAddressInGroup(TextWriter &out, const Signal &signal);

/// The width of a signal; strings have a size of their own.
quint32 bitsInGroup(const Signal &signal);

/// "1234/0x04d2 name", for a comment.
QString numberAndName(quint32 number, const QString &name);

/// What stands between the braces of a signal's row.
using RowWriter = void (*)(Context &context, const Signal &signal);

/// The rows of a table, and its end.
void writeRows(Context &context, const QVector<Signal> &mapping, RowWriter writeRow);

} // namespace Pgn
