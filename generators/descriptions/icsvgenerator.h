// The object dictionary as a table with rows for objects.
#pragma once

#include "generators/descriptions/csvtablegenerator.h"

/// Writes "<project>.icsv", or "<project>_<line>.icsv" where a project has several lines. The row
/// of an object stands ahead of those of its subindices and has an empty cell for the subindex.
class ICSVGenerator : public CsvTableGenerator
{
    Q_OBJECT

public:
    ICSVGenerator();

    /// False leaves the descriptions out, but not their column. Not for a running job.
    void setIncludeDescription(bool include) { layout.withDescription = include; }
};
