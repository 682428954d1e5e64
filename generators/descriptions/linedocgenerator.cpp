// The files of documents.
#include "generators/descriptions/linedocgenerator.h"

LineDocGenerator::LineDocGenerator(const QString &job, const char *singleFileEnding,
                                   const char *lineFileEnding)
    : AbstractGenerator(job), singleEnding(singleFileEnding), lineEnding(lineFileEnding)
{
}

QString LineDocGenerator::singleLineFile() const
{
    return QStringLiteral("%1/%2%3").arg(outputDirectory, projectName, QLatin1String(singleEnding));
}

QString LineDocGenerator::targetFile() const
{
    return isMultiLine() ? QStringLiteral("%1/%2_%3%4")
                               .arg(outputDirectory, projectName, QString::number(activeLine),
                                    QLatin1String(lineEnding))
                         : singleLineFile();
}

bool LineDocGenerator::checkWritability()
{
    return isNewOrWritable(singleLineFile());
}
