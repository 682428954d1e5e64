// The lines of generated C.
#include "generators/projectlines.h"

#include "store/objectdatabase.h"
#include "store/projectfeatures.h"

namespace
{

/// The stack's tables hold no more lines.
constexpr quint8 kHighestGeneratedLine = 31;

/// Lines above it choose no generators.
constexpr quint8 kHighestTypedLine = 239;

} // namespace

ProjectLines readProjectLines(const ObjectDataBase &store)
{
    ProjectLines lines;
    const QList<quint8> nodes = store.getNodes();
    for (const quint8 line : nodes) {
        if (line <= kHighestGeneratedLine)
            lines.numbers << line;
    }
    // Deliberate: a stack without lines has tables without elements, which C does not know, and the
    // only line of a device has its number nowhere in the sources; held by tst_mixedc.
    if (lines.numbers.isEmpty() && !nodes.isEmpty() && nodes.first() <= kHighestTypedLine)
        lines.numbers << nodes.first();
    lines.multiLine = lines.numbers.size() >= 2 || readProjectFeatures(store).forcesMultiLine();
    return lines;
}
