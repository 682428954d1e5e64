// What a run depends on.
#include "app/dependencyfile.h"

#include "formats/makerule.h"
#include "support/filereasons.h"
#include "support/problems.h"
#include "support/replacefile.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace
{

QString absolute(const QString &path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

QString nameInRule(const QString &path, const QVector<NamedFolder> &folders)
{
    for (const NamedFolder &folder : folders) {
        const QString start = folder.path + QLatin1Char('/');
        if (path.startsWith(start))
            return QDir::cleanPath(folder.name + QLatin1Char('/') + path.mid(start.size()));
    }
    return path;
}

/// The files of \a paths that are there, each once, but for those of \a without.
QStringList namesOf(const QStringList &paths, const QVector<NamedFolder> &folders,
                    const QSet<QString> &without)
{
    QStringList names;
    for (const QString &path : paths) {
        if (!QFileInfo(path).isFile() || without.contains(absolute(path)))
            continue;
        const QString name = nameInRule(path, folders);
        if (names.contains(name))
            continue;
        if (MakeRule::canName(name))
            names << name;
        else
            Problems::warning("unnamable-dependency", path,
                              QStringLiteral("is left out of the dependency file, which cannot "
                                             "hold a line end; give it another name"));
    }
    return names;
}

} // namespace

QString writeDependencyFile(const QString &path, const RunFiles &files,
                            const QVector<NamedFolder> &folders)
{
    QSet<QString> written;
    for (const QString &file : files.writtenFiles())
        written << absolute(file);
    QStringList targets = namesOf(files.writtenFiles(), folders, {});
    const QStringList inputs = namesOf(files.readFiles(), folders, written);
    if (targets.isEmpty())
        targets << path;
    QString reason = FileReasons::whyNotWritable(path);
    if (reason.isEmpty())
        (void)ReplaceFile::write(path, MakeRule::text(targets, inputs), &reason); // it tells
    return reason;
}
