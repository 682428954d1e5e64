// Replaces a user's file so that a complete one stands on disk at every instant.
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace ReplaceFile
{

enum class Backup {
    None,   ///< the new file takes the old one's place in one step
    Rename, ///< the old file stays as "<file>.bak"
};

/// Lets \a write make the new file under the name it is given, brings it to disk if there is an old
/// one, and puts it in the place of \a name. False if \a write gives false or the file could not be
/// replaced; the old file then stands as it was, and nothing else is left. Without a backup, a file
/// that is protected against writing is not replaced, and with one, no file whose backup cannot be
/// made. Then \a reason, if there is one and \a write has not filled it, says what was in the way.
bool replace(const QString &name, Backup backup, const std::function<bool(const QString &)> &write,
             QString *reason = nullptr);

/// The same without a backup, for a file of these bytes.
bool write(const QString &name, const QByteArray &content, QString *reason = nullptr);

/// Removes what a killed run left of its replacing \a name; never what another run is writing.
void removeLeftover(const QString &name);

/// Copies the bytes of \a source into \a target, which is made or emptied. False if either cannot
/// be opened, read or written to the end; \a reason, if there is one, then says which and why.
bool copyContents(const QString &source, const QString &target, QString *reason = nullptr);

} // namespace ReplaceFile
