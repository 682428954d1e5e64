// What the documents of one line share, whatever its protocol: the name of the file.
#pragma once

#include "generators/textfilegenerator.h"

/// The base of generators that write a file to read for one line.
class LineDocGenerator : public TextFileGenerator
{
    Q_OBJECT

protected:
    /// Endings of the file: \a singleEnding after the project's name, \a lineEnding after its
    /// name and the line, where the project has several.
    LineDocGenerator(const QString &jobName, const char *singleEnding, const char *lineEnding);

    QString targetFile() const override;

    /// The single-line name, in a project of several lines too.
    QString testedFile() const override;

private:
    const char *singleEnding;
    const char *lineEnding;
};
