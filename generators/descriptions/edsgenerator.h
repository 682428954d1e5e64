// The electronic data sheet (EDS) of a line, in the format of CiA 306.
#pragma once

#include "generators/textfilegenerator.h"

class EdsVariants;

/// Writes "<project>.eds". The names of other files name the line of a project with several lines,
/// and the variant, or that the file is the classical companion of a CAN FD device.
class EDSGenerator : public TextFileGenerator
{
    Q_OBJECT

public:
    /// \a define is the variant to be described, one of edsDefines(). \a fd: the file describes a
    /// CAN FD device. \a classical: the file describes a CAN FD device to those who know none.
    EDSGenerator(const QString &define, bool fd, bool classical);

    /// The file to be written; final when the job is over, which may learn that the project counts
    /// as one of several lines.
    QString targetFile() const override;

    /// The variants of the line, which must outlive the job; without them the job looks through all
    /// objects.
    void setVariants(const EdsVariants *found) { variants = found; }

private:
    /// The plain name, whatever the file's name is.
    QString testedFile() const override;
    void write(TextWriter &out) override;
    void writeSections(TextWriter &out);

    const QString define;
    const bool canFd;
    const bool classical;
    const EdsVariants *variants = nullptr;
};
