// The base of generators: which file a job writes, whether it may be written, and the job around
// it.
#pragma once

#include "generators/abstractgenerator.h"
#include "support/logging.h"

#include <QList>

#include <functional>

class QFile;

/// Writes one file. A subclass says which one, and writes it; it may write others beside it.
class FileGenerator : public AbstractGenerator
{
    Q_OBJECT

public:
    using AbstractGenerator::AbstractGenerator;

    /// True if testedFile() can be written or does not exist yet.
    bool checkWritability() override;

public slots:
    void doJob() final;

protected:
    /// The file of the job. Read when forceML is up to date, which its name may depend on.
    virtual QString targetFile() const = 0;

    /// The file that is looked at before the start.
    virtual QString testedFile() const { return targetFile(); }

    QStringList outputFiles() const override { return {targetFile()}; }

    /// Writes targetFile(), on the worker thread.
    virtual void writeFiles() = 0;

    /// Opens \a path for text that replaces what it held, and closes it after \a write, which says
    /// whether it could write. False if the file could not be opened. All that goes wrong makes the
    /// job a failed one.
    bool writeFile(const QString &path, const std::function<bool(QFile &)> &write);

    /// The same for \a write with a writer of text.
    bool writeText(const QString &path, const std::function<void(TextWriter &)> &write);

    /// The file \a name in the output directory.
    QString inOutputDirectory(const char *name) const;

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

    /// "_<line>", which names of files have where the project has several lines; else empty.
    QString lineTail() const;
};
