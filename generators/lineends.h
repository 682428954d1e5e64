// The line ends of generated sources, which the user may choose.
#pragma once

#include <QByteArray>
#include <QString>

namespace LineEnds
{

/// The files whose line ends follow the choice; all others keep those that they are written with.
/// Deliberate: of the variables only headers do, not gen_var_decl.c; held by tst_postgeneration.
constexpr const char *kFiles[] = {"gen_define.h",      "gen_indication.h", "gen_indices.h",
                                  "gen_extern_decl.h", "gen_var_decl.h",   "gen_srdo.c",
                                  "gen_sdg.c",         "gen_objdict.c",    "gen_pgn.c"};

/// What the user wants a line to end with; empty: files stay as they are written.
QString chosen();

/// \a content of the file \a path as it stands on disk at the end of the run.
QByteArray adjusted(const QString &path, const QByteArray &content);

} // namespace LineEnds
