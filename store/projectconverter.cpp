// Corrections of older projects.
#include "store/projectconverter.h"

#include "store/objectdatabase.h"
#include "support/numbers.h"
#include "support/parametergroups.h"

ProjectConverter::ProjectConverter(QObject *parent) : QObject(parent) {}

void ProjectConverter::setDatabase(ObjectDataBase *store)
{
    database = store;
}

bool ProjectConverter::doGenericCorrection()
{
    return true;
}

bool ProjectConverter::do1939Correction()
{
    database->fixFaultyPGNSPNCount();
    database->fixEDP_DP_PGNs();
    return true;
}

bool ProjectConverter::doCANopenCorrection()
{
    if (!database->getNodes().isEmpty())
        moveMasterList();
    enableCountedService(QStringLiteral("usdo_server_enabled"), QStringLiteral("usdo_server_cnt"));
    enableCountedService(QStringLiteral("usdo_client_enabled"), QStringLiteral("usdo_client_cnt"));
    return true;
}

bool ProjectConverter::doMPCorrection()
{
    const QList<quint8> lines = database->getNodes();
    for (const quint8 line : lines)
        (void)database->delPGN(line, ParameterGroup::kAddressClaimed,
                               Direction::kTransmitted); // most lines do not hold it
    return true;
}

bool ProjectConverter::doEnergyBusCorrection()
{
    return true;
}

/// A list with one element a line is the old form of "nmtmaster".
void ProjectConverter::moveMasterList()
{
    const QString oldKey = QStringLiteral("co_ml_ms");
    const QString value = database->getGeneralSettingsValue(oldKey);
    if (!value.contains(QLatin1Char(',')))
        return;
    database->setGeneralSettingsValue(QStringLiteral("nmtmaster"), value);
    database->setGeneralSettingsValue(oldKey, QString());
}

/// Older tools had a count but no switch. Both are 8-bit numbers to the stack.
void ProjectConverter::enableCountedService(const QString &enabledKey, const QString &countKey)
{
    const auto readByte = [this](const QString &key) {
        return static_cast<quint8>(Numbers::toUIntDecimal(database->getGeneralSettingsValue(key)));
    };
    if (readByte(enabledKey) == 0 && readByte(countKey) != 0)
        database->setGeneralSettingsValue(enabledKey, QStringLiteral("1"));
}
