// The electronic data sheet (EDS) of a line, in the format of CiA 306.
#pragma once

#include "generators/descriptions/edsvariants.h"
#include "generators/textfilegenerator.h"

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
    QString targetFile() const override;

private:
    /// The plain name, whatever the file's name is.
    QString testedFile() const override;
    void write(TextWriter &out) override;
    void writeSections(TextWriter &out);

    const EdsVariants variants;
    const QString define;
    const bool canFd;
    const bool classical;
};
