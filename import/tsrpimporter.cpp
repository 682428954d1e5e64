// From another project into this one.
#include "import/tsrpimporter.h"

#include "store/objectdatabase.h"

void TSRPImporter::doImport()
{
    const Job job(*this);
    if (abortRequested || !database)
        return;
    ObjectDataBase other;
    if (importFileName.isEmpty() || !other.openDataBase(importFileName, true)) {
        fail(QStringLiteral("Could not open %1").arg(importFileName));
        return;
    }
    emit progress(20);
    constexpr quint8 from = ObjectDataBase::kFirstLine;
    bool done = database->copyLineFromDatabase(other, activeLine, from, lowIndex, highIndex);
    done = done && database->copyPGNsFromDatabase(other, activeLine, from, lowIndex, highIndex,
                                                  Direction::kBoth);
    if (!done)
        fail(QStringLiteral("Could not copy all of %1").arg(importFileName));
}
