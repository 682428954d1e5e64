// How a report names files.
#include "app/artifacturis.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace
{

QString withSlash(const QString &folder)
{
    return folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
}

/// The same file with the links in the names of its folders resolved.
QString inRealFolder(const QString &path)
{
    const QFileInfo info(path);
    const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
    return folder.isEmpty() ? path : withSlash(folder) + info.fileName();
}

/// Colons too: "a:b" would be a URI of the scheme "a".
QString encoded(const QString &path)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(path, "/"));
}

} // namespace

ArtifactUris::ArtifactUris(const QString &folder)
{
    (void)baseOf(withSlash(QDir(folder).absolutePath()));
}

Sarif::File ArtifactUris::of(const QString &path)
{
    const QString file = QDir::cleanPath(QDir(folders.first()).absoluteFilePath(path));
    for (const QString &name : {file, inRealFolder(file)}) {
        if (name.startsWith(folders.first()))
            return {encoded(name.mid(folders.first().size())), known.first().id};
    }
    const QFileInfo info(file);
    return {encoded(info.fileName()), baseOf(withSlash(info.absolutePath())).id};
}

const Sarif::Base &ArtifactUris::baseOf(const QString &folder)
{
    int position = folders.indexOf(folder);
    if (position < 0) {
        position = folders.size();
        const QString id =
            position == 0 ? QStringLiteral("%SRCROOT%") : QStringLiteral("FOLDER%1").arg(position);
        folders.append(folder);
        known.append({id, QUrl::fromLocalFile(folder).toString(QUrl::FullyEncoded)});
    }
    return known.at(position);
}
