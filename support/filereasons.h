// Why a file cannot be read or written, in words for the user.
#pragma once

#include <QString>

/// The texts follow a colon: "could not be opened: it is a folder".
namespace FileReasons
{

/// What the system says of \a errorNumber, such as "No space left on device".
QString ofSystem(int errorNumber);

/// Why \a path cannot be read as a file; empty if it can. Folders are none, and neither are pipes
/// and devices, which might never end.
QString whyNotReadable(const QString &path);

/// Why no file can be written to \a path as it is now; empty if it can be tried. What is not there
/// may come into being.
QString whyNotWritable(const QString &path);

} // namespace FileReasons
