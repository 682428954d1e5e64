// What goes onto the disk, and what is reported of it.
#include "generators/filegenerator.h"

#include "generators/textwriter.h"
#include "generators/unchangedfiles.h"
#include "support/filereasons.h"
#include "support/outputguard.h"
#include "support/problems.h"
#include "support/replacefile.h"
#include "support/runfiles.h"

#include <QFile>
#include <QFileInfo>

namespace
{

/// The report on standard output has no room for reasons.
void tellNotWritten(const QString &path, const QString &reason)
{
    Problems::error("output-not-written", path,
                    QStringLiteral("could not be written: %1").arg(reason));
}

} // namespace

bool FileGenerator::checkWritability()
{
    return isNewOrWritable(testedFile());
}

bool FileGenerator::isNewOrWritable(const QString &path)
{
    const QFileInfo info(path);
    // A pipe or a device is no place for a file: opening it might never end.
    if (!info.exists() || ((info.isFile() || info.isDir()) && info.isWritable()))
        return true;
    tellNotWritten(path, FileReasons::whyNotWritable(path));
    return false;
}

bool FileGenerator::writeFile(const QString &path, const std::function<bool(QFile &)> &write)
{
    QFile file(path);
    if (!openOutputFile(file))
        return false;
    const bool isWritten = write(file);
    closeOutputFile(isWritten, file);
    return true;
}

bool FileGenerator::writeText(const QString &path, const std::function<void(TextWriter &)> &write)
{
    return writeFile(path, [&write](QFile &file) {
        TextWriter out(&file);
        write(out);
        return out.finish();
    });
}

void FileGenerator::replaceFile(const QString &path, const QByteArray &content)
{
    QString reason;
    if (!isUnchanged(path, content) && !ReplaceFile::write(path, content, &reason))
        fail(QStringLiteral("Could not write ") + path, path, reason);
    else
        RunFiles::noteWritten(path);
}

bool FileGenerator::isUnchanged(const QString &path, const QByteArray &content)
{
    return unchangedFiles && unchangedFiles->keep(path, content);
}

void FileGenerator::removeOutputFile(const QString &path)
{
    if (outputGuard)
        outputGuard->remove(path);
    else
        QFile::remove(path);
}

void FileGenerator::fail(const QString &error, const QString &path, const QString &reason)
{
    fail(error);
    tellNotWritten(path, reason);
}

bool FileGenerator::openOutputFile(QFile &file)
{
    const QString path = file.fileName();
    constexpr auto kMode = QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text;
    const QString text = QStringLiteral("Could not open ") + path;
    if (!isNewOrWritable(path) || (outputGuard && !outputGuard->admits(path))) {
        fail(text);
        return false;
    }
    if (unchangedFiles ? unchangedFiles->open(file) : file.open(kMode))
        return true;
    const QString reason = FileReasons::whyNotWritable(path);
    fail(text, path,
         reason.isEmpty() ? (unchangedFiles ? unchangedFiles->errorString() : file.errorString())
                          : reason);
    return false;
}

void FileGenerator::closeOutputFile(bool isWritten, QFile &file)
{
    const QString path = unchangedFiles ? unchangedFiles->targetOf(file) : file.fileName();
    QString reason;
    if (!isWritten || !file.flush())
        reason = file.errorString();
    else if (unchangedFiles && !unchangedFiles->commit(file))
        reason = unchangedFiles->errorString();
    file.close();
    if (reason.isEmpty())
        RunFiles::noteWritten(path);
    else
        fail(QStringLiteral("Could not write ") + path, path, reason);
}

QString FileGenerator::inOutputDirectory(const char *name) const
{
    return outputDirectory + QLatin1Char('/') + QLatin1String(name);
}

QString FileGenerator::lineTail() const
{
    return isMultiLine() ? QLatin1Char('_') + QString::number(activeLine) : QString();
}
