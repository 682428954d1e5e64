// Paths of output files whose names hold words of the project, and names of files in them.
#pragma once

#include <QString>
#include <QStringList>

namespace OutputName
{

/// \a text without control characters. A file system takes all but NUL, at which the name would
/// end; a terminal or a build script that meets such a name goes astray.
QString withoutControls(const QString &text);

/// The headers that \a list names, separated by blanks, without what an include line has around
/// them: quotation marks and angle brackets.
QStringList headers(const QString &list);

/// "<folder>/<project><tail>", such as "/x/pump_0.html" for the tail "_0.html", which always stands
/// in full. A name that is too long for a file system is shortened before it.
QString path(const QString &folder, const QString &project, const QString &tail);

/// "<folder>/<project><middle><variant><tail>". \a variant is any text of the user; what would lead
/// into another folder becomes "_" in it. Of a name that is too long, the longer one of project and
/// variant is shortened, so that two variants can come to have one name.
QString path(const QString &folder, const QString &project, const QString &middle,
             const QString &variant, const QString &tail);

} // namespace OutputName
