// Which files the outputs of a run must not take the place of.
#include "support/outputguard.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <filesystem>
#include <sys/stat.h>

namespace
{

namespace fs = std::filesystem;

constexpr int kMostLinks = 40; // as many as the system follows

fs::path toPath(const QString &path)
{
    return fs::path(QFile::encodeName(path).toStdString());
}

/// Not cleaned: what ".." leads to depends on links before it.
QString absolute(const QString &path)
{
    return QDir::isRelativePath(path) ? QDir::currentPath() + QLatin1Char('/') + path : path;
}

/// Where a file that is written to \a path comes to stand, which need not be there yet: its folder
/// without links, and its last name.
fs::path placeOf(fs::path path)
{
    std::error_code error;
    for (int links = 0; links < kMostLinks; ++links) {
        path = fs::weakly_canonical(path.parent_path(), error) / path.filename();
        const fs::path target = fs::read_symlink(path, error);
        if (error)
            break; // no link
        path = path.parent_path() / target;
    }
    return path;
}

bool isSameFile(const fs::path &one, const fs::path &other)
{
    struct stat first;
    struct stat second;
    return ::stat(one.c_str(), &first) == 0 && ::stat(other.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

bool isSamePlace(const fs::path &one, const fs::path &other)
{
    return isSameFile(one, other) || (one.filename() == other.filename() &&
                                      isSameFile(one.parent_path(), other.parent_path()));
}

/// Does \a place lie in \a folder or below it?
bool isWithin(const fs::path &place, const fs::path &folder)
{
    for (fs::path above = place.parent_path();; above = above.parent_path()) {
        if (isSameFile(above, folder))
            return true;
        if (above == above.parent_path())
            return false;
    }
}

} // namespace

void OutputGuard::protect(const QString &path, const QString &role)
{
    if (!path.isEmpty())
        inputs.append({absolute(path), role});
}

QString OutputGuard::roleOf(const QString &path) const
{
    const fs::path place = placeOf(toPath(absolute(path)));
    for (const Input &input : inputs) {
        if (isSamePlace(placeOf(toPath(input.path)), place))
            return input.role;
    }
    return QString();
}

Problems::Problem OutputGuard::objection(const QString &path) const
{
    const auto error = [&path](const char *rule, const QString &text) {
        return Problems::Problem{Problems::Level::Error, path, 0, text, QLatin1String(rule)};
    };
    const QString role = roleOf(path);
    if (!role.isEmpty())
        return error("output-is-input",
                     QStringLiteral("was not written, since it is %1; give that another name or "
                                    "folder, for the next run writes here")
                         .arg(role));
    const fs::path place = placeOf(toPath(path));
    if (folder.isEmpty() || isWithin(place, toPath(folder)))
        return {};
    return error("output-leads-away",
                 QStringLiteral("was not written, since it is a link that leads out of %1, to %2; "
                                "remove the link")
                     .arg(folderName, QFile::decodeName(place.c_str())));
}

bool OutputGuard::admits(const QString &path) const
{
    const Problems::Problem problem = objection(path);
    if (!problem.text.isEmpty())
        Problems::report(problem);
    return problem.text.isEmpty();
}

void OutputGuard::remove(const QString &path) const
{
    const QFileInfo info(path);
    if (!info.exists() && !info.isSymLink())
        return;
    const QString role = roleOf(path);
    if (role.isEmpty()) {
        QFile::remove(path); // what cannot be removed stays
        return;
    }
    Problems::warning("output-is-input", path,
                      QStringLiteral("was not removed, since it is %1; give that another name or "
                                     "folder, for the next run removes it")
                          .arg(role));
}
