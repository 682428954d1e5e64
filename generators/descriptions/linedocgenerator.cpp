// The files of documents.
#include "generators/descriptions/linedocgenerator.h"

#include "generators/outputname.h"

LineDocGenerator::LineDocGenerator(const QString &job, const char *singleFileEnding,
                                   const char *lineFileEnding)
    : TextFileGenerator(job), singleEnding(singleFileEnding), lineEnding(lineFileEnding)
{
}

QString LineDocGenerator::testedFile() const
{
    return OutputName::path(outputDirectory, projectName, QLatin1String(singleEnding));
}

QString LineDocGenerator::targetFile() const
{
    if (!isMultiLine())
        return testedFile();
    const QString tail = lineTail() + QLatin1String(lineEnding);
    return OutputName::path(outputDirectory, projectName, tail);
}
