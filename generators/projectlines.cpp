// The lines of generated C.
#include "generators/projectlines.h"

#include "store/objectdatabase.h"

namespace
{

/// The stack's tables hold no more lines.
constexpr quint8 kHighestGeneratedLine = 31;

} // namespace

ProjectLines readProjectLines(const ObjectDataBase &store)
{
    ProjectLines lines;
    const QList<quint8> nodes = store.getNodes();
    for (const quint8 line : nodes) {
        if (line <= kHighestGeneratedLine)
            lines.numbers << line;
    }
    lines.multiLine =
        lines.numbers.size() >= 2 ||
        store.getMiscSettingsValue(QStringLiteral("generateML")) == QLatin1String("true");
    return lines;
}
