// What the documents of one line share, whatever its protocol: the name of the file, and the walk
// over the records that an aborted job ends.
#pragma once

#include "generators/abstractgenerator.h"
#include "support/logging.h"

#include <QList>

/// The base of generators that write a file to read for one line.
class LineDocGenerator : public AbstractGenerator
{
    Q_OBJECT

public:
    /// Looks at the single-line name only, in a project of several lines too.
    bool checkWritability() override;

protected:
    QStringList outputFiles() const override;

    /// Endings of the file: \a singleEnding behind the project's name, \a lineEnding behind its
    /// name and the line, where the project has several.
    LineDocGenerator(const QString &jobName, const char *singleEnding, const char *lineEnding);

    /// Call checkForceMLFlag() before.
    QString targetFile() const;

    /// Calls \a section for each record, until the job is aborted.
    template <class Number, class Section>
    void forEach(const QList<Number> &records, const Section &section) const
    {
        for (const Number record : records) {
            if (abortRequested) {
                qCDebug(lcGenerator) << "Generation aborted";
                return;
            }
            section(record);
        }
    }

private:
    QString singleLineFile() const;

    const char *singleEnding;
    const char *lineEnding;
};
