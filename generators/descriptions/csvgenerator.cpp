// The layout of the plain table.
#include "generators/descriptions/csvgenerator.h"

namespace
{

CsvLayout plainLayout()
{
    CsvLayout layout;
    layout.file = "%1/%2.csv";
    layout.fileOfLine = "%1/%2_%3.csv";
    return layout;
}

} // namespace

CSVGenerator::CSVGenerator() : CsvTableGenerator(QStringLiteral("CSV documentation"), plainLayout())
{
}
