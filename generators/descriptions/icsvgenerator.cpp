// The layout of the table with rows for objects.
#include "generators/descriptions/icsvgenerator.h"

namespace
{

CsvLayout groupedLayout()
{
    CsvLayout layout;
    layout.ending = ".icsv";
    layout.isGroupedTable = true;
    return layout;
}

} // namespace

ICSVGenerator::ICSVGenerator()
    : CsvTableGenerator(QStringLiteral("ICSV documentation"), groupedLayout())
{
}
