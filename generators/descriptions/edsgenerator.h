// The electronic data sheet (EDS) of a line, in the format of CiA 306, and its configuration (DCF).
#pragma once

#include "generators/descriptions/edsvariants.h"
#include "generators/textfilegenerator.h"

struct EdsForm;
class FileProblems;
namespace EdsSections
{
struct Context;
} // namespace EdsSections

/// Writes "<project>.eds". The names of other files name the line of a project with several lines,
/// and the variant, or that the file is the classical companion of a CAN FD device.
class EDSGenerator : public TextFileGenerator
{
    Q_OBJECT

public:
    /// \a lineVariants are those of the line, \a define is the one to be described. \a fd: the file
    /// describes a CAN FD device. \a classical: the file describes a CAN FD device to those who
    /// know none.
    EDSGenerator(const EdsVariants &lineVariants, const QString &define, bool fd, bool classical);

    /// The file to be written; final when the job is over, which may learn that the project counts
    /// as one of several lines.
    QString targetFile() const override { return fileWith(".eds"); }

protected:
    /// The same for another kind of file, as jobs are named.
    EDSGenerator(const QString &kind, const EdsVariants &lineVariants, const QString &define,
                 bool fd, bool classical);

    /// The name of the job's file, or of the one beside it, with this \a ending.
    QString fileWith(const char *ending) const;

    /// What the sections of the file get.
    EdsSections::Context contextFor(TextWriter &out, const EdsForm &form,
                                    FileProblems *problems = nullptr) const;

    /// The data sheet that the file is the configuration of; empty if it is no configuration.
    virtual QString dataSheet() const { return {}; }

private:
    /// The plain name, whatever the file's name is.
    QString testedFile() const override;
    void write(TextWriter &out) override;
    void writeSections(TextWriter &out, const EdsForm &form);

    const EdsVariants variants;
    const QString define;
    const bool canFd;
    const bool classical;
};

/// Writes the configuration (DCF) beside a data sheet, with the current values of the objects; in
/// the portable form alone.
class DCFGenerator : public EDSGenerator
{
    Q_OBJECT

public:
    /// As that of the data sheet beside it.
    DCFGenerator(const EdsVariants &lineVariants, const QString &define, bool fd, bool classical);

    QString targetFile() const override { return fileWith(".dcf"); }

    /// Does the portable form of \a store have one for \a line? So it is if the line asks for it,
    /// or if an object has a current value.
    static bool isWanted(const ObjectDataBase &store, quint8 line);

private:
    QString testedFile() const override { return targetFile(); }
    QString dataSheet() const override;
};
