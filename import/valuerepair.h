// Values of a description that the rest of the tool could not work with.
#pragma once

#include "formats/edsrecords.h"
#include "support/fileproblems.h"

/// Makes the limits and the default value of a subindex such that they fit its type and its type's
/// form of numbers. What is sound stays as it is; each change is a note.
class ValueRepair
{
public:
    /// \a collector takes the notes and must outlive this.
    explicit ValueRepair(FileProblems *collector) : notes(*collector) {}

    void repair(CANopenSubindex *record) const;

    /// "0x1A00:01", as notes name a subindex.
    static QString placeOf(const CANopenSubindex &record);

private:
    /// Hexadecimal digits are the bits of a REAL type; the project has the number.
    void readRealBits(CANopenSubindex *record) const;
    /// Whole numbers get a decimal point where the check would compare them as integers.
    void showRealNumbers(CANopenSubindex *record) const;
    void cutLimit(const CANopenSubindex &record, QString *limit, bool isUpper) const;
    void dropCrossedLimits(CANopenSubindex *record) const;
    void dropWideLimits(CANopenSubindex *record) const;
    void dropOpenLow(CANopenSubindex *record) const;
    void closeUpperEnd(CANopenSubindex *record) const;
    void dropLimits(CANopenSubindex *record, const char *why) const;
    void addOtherLimit(CANopenSubindex *record) const;
    void tellOfDefault(const CANopenSubindex &record) const;

    FileProblems &notes;
};
