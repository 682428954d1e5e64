// The files of documents.
#include "generators/descriptions/linedocgenerator.h"

#include "generators/outputname.h"

LineDocGenerator::LineDocGenerator(const QString &job, const char *singleFileEnding,
                                   const char *lineFileEnding)
    : AbstractGenerator(job), singleEnding(singleFileEnding), lineEnding(lineFileEnding)
{
}

QString LineDocGenerator::singleLineFile() const
{
    return OutputName::path(outputDirectory, projectName, QLatin1String(singleEnding));
}

QString LineDocGenerator::targetFile() const
{
    if (!isMultiLine())
        return singleLineFile();
    const QString tail = QLatin1Char('_') + QString::number(activeLine) + QLatin1String(lineEnding);
    return OutputName::path(outputDirectory, projectName, tail);
}

bool LineDocGenerator::checkWritability()
{
    return isNewOrWritable(singleLineFile());
}

QStringList LineDocGenerator::outputFiles() const
{
    return {targetFile()};
}
