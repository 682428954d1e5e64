// The base of generators: which file is written, whether it may be, and how it is opened and
// closed.
#pragma once

#include "generators/abstractgenerator.h"
#include "support/logging.h"

#include <QList>

#include <functional>

class QFile;
class TextWriter;

/// Writes one file. A subclass says which one, and writes it; it may write others beside it.
class FileGenerator : public AbstractGenerator
{
    Q_OBJECT

public:
    using AbstractGenerator::AbstractGenerator;

    /// True if testedFile() can be written or does not exist yet.
    bool checkWritability() override;

protected:
    /// The file of the job. Read when forceML is up to date, which its name may depend on.
    virtual QString targetFile() const = 0;

    /// The file that is looked at before the start.
    virtual QString testedFile() const { return targetFile(); }

    QStringList outputFiles() const override { return {targetFile()}; }

    // What goes wrong in these makes the job a failed one, and is reported.

    /// Opens \a path for text that replaces what it held, and closes it after \a write, which says
    /// whether it could write. False if the file could not be opened.
    bool writeFile(const QString &path, const std::function<bool(QFile &)> &write);

    /// The same for \a write with a writer of text.
    bool writeText(const QString &path, const std::function<void(TextWriter &)> &write);

    /// Replaces the file \a path in one step: should the disk fill up, the old one is still there,
    /// with what the user wrote into it.
    void replaceFile(const QString &path, const QByteArray &content);

    /// True if \a content need not be written to the file \a path; for those that do not use the
    /// functions above.
    bool isUnchanged(const QString &path, const QByteArray &content);

    /// Reports why the file cannot be written.
    static bool isNewOrWritable(const QString &path);

    /// Removes a file that the project does not need any more; there may be none.
    void removeOutputFile(const QString &path);

    using AbstractGenerator::fail;
    /// The same for the output file \a path, with \a reason for standard error.
    void fail(const QString &error, const QString &path, const QString &reason);

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

    /// The file \a name in the output directory.
    QString inOutputDirectory(const char *name) const;

    /// "_<line>", which names of files have where the project has several lines; else empty.
    QString lineTail() const;

private:
    bool openOutputFile(QFile &file);
    void closeOutputFile(bool isWritten, QFile &file);
};
