// The frame of a job that writes a file.
#include "generators/filegenerator.h"

#include "generators/textwriter.h"

#include <QFile>

bool FileGenerator::checkWritability()
{
    return isNewOrWritable(testedFile());
}

void FileGenerator::doJob()
{
    const JobBracket bracket(*this);
    checkForceMLFlag();
    writeFiles();
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

QString FileGenerator::inOutputDirectory(const char *name) const
{
    return outputDirectory + QLatin1Char('/') + QLatin1String(name);
}

QString FileGenerator::lineTail() const
{
    return isMultiLine() ? QLatin1Char('_') + QString::number(activeLine) : QString();
}
