// The layout of the table with rows for objects.
#include "generators/descriptions/icsvgenerator.h"

namespace
{

CsvLayout groupedLayout()
{
    CsvLayout layout;
    layout.file = "%1/%2.icsv";
    layout.fileOfLine = "%1/%2_%3.icsv";
    layout.isGroupedTable = true;
    return layout;
}

} // namespace

ICSVGenerator::ICSVGenerator()
    : CsvTableGenerator(QStringLiteral("ICSV documentation"), groupedLayout())
{
}
