// The object dictionary as a plain table.
#pragma once

#include "generators/descriptions/csvtablegenerator.h"

/// Writes "<project>.csv", or "<project>_<line>.csv" where a project has several lines. An object
/// that has no subindex is not in the table.
class CSVGenerator : public CsvTableGenerator
{
    Q_OBJECT

public:
    CSVGenerator();
};
