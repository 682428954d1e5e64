// The bit rate from the settings of the description.
#include "generators/bitrate.h"

#include "formats/edskeys.h"
#include "store/objectdatabase.h"
#include "support/numbers.h"

std::optional<quint32> BitRate::ofLine(const ObjectDataBase &store)
{
    const auto setting = [&](const char *key) {
        return store.getDescriptionSettingsValue(QLatin1String(key));
    };
    bool isNumber = false;
    const quint32 stated = Numbers::toUIntDecimal(setting("NodeBaudrate"), &isNumber);
    if (isNumber && stated > 0 && stated <= 0xFFFF)
        return stated;
    std::optional<quint32> highest;
    for (const char *key : EdsKeys::kBaudRates) {
        if (Numbers::toUIntByPrefix(setting(key)) != 0)
            highest = Numbers::toUIntDecimal(QLatin1String(key).mid(int(qstrlen("BaudRate_"))));
    }
    return highest;
}
