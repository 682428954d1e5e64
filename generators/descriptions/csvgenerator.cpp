// The layout of the plain table.
#include "generators/descriptions/csvgenerator.h"

namespace
{

CsvLayout plainLayout()
{
    CsvLayout layout;
    layout.ending = ".csv";
    return layout;
}

} // namespace

CSVGenerator::CSVGenerator() : CsvTableGenerator(QStringLiteral("CSV documentation"), plainLayout())
{
}
