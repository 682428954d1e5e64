// The protocol of a CAN line.
#include "store/linetype.h"

#include "store/objectdatabase.h"
#include "support/numbers.h"

LineType readLineType(const ObjectDataBase &store, quint8 line)
{
    const QString key = QStringLiteral("line%1type").arg(line);
    return static_cast<LineType>(Numbers::toIntDecimal(store.getGeneralSettingsValue(key)));
}
