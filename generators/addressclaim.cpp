// The NAME of the device as signals of a group.
#include "generators/addressclaim.h"

#include "generators/j1939settings.h"
#include "support/candatatype.h"

#include <QStringList>

#include <iterator>

namespace
{

using Type = CAN::CANopenDataType;

/// Makes the default value of a signal from its setting.
using MakeValue = QString (*)(const QString &setting, quint8 line);

constexpr quint32 kReserved = 0; ///< the row without a number of its own

struct NameRow {
    quint32 spn;
    Type type;
    const char *name;
    const char *setting; ///< of the J1939 settings
    MakeValue value;
};

QString ofLine(const QString &setting, quint8 line)
{
    return setting.split(QLatin1Char(',')).value(line); // none behind the end of the list
}

QString zero(const QString & /*setting*/, quint8 /*line*/)
{
    return QStringLiteral("0");
}

/// All lines share a setting that is no list.
QString oneIfSet(const QString &setting, quint8 line)
{
    const QString element = setting.contains(QLatin1Char(',')) ? ofLine(setting, line) : setting;
    return Numbers::toIntDecimal(element) != 0 ? QStringLiteral("1") : QStringLiteral("0");
}

// clang-format off
constexpr NameRow kName[] = {                       // order is that of the frame
    {2837,      Type::Unsigned21, "Identity Number",         "identitynumber",   ofLine},
    {2838,      Type::Unsigned11, "Manufacturer Code",       "manufacturercode", ofLine},
    {2840,      Type::Unsigned3,  "ECU Instance",            "ecuinstance",      ofLine},
    {2839,      Type::Unsigned5,  "Function Instance",       "functioninstance", ofLine},
    {2841,      Type::Unsigned8,  "Function",                "function",         ofLine},
    {kReserved, Type::Boolean,    "reserved",                "",                 zero},
    {2842,      Type::Unsigned7,  "Vehicle System",          "vehiclesystem",    ofLine},
    {2843,      Type::Unsigned4,  "Vehicle System Instance", "vehicleinstance",  ofLine},
    {2846,      Type::Unsigned3,  "Industry Group",          "industrygroup",    ofLine},
    {2844,      Type::Boolean,    "Addr Claiming Supported", "addresscapable",   oneIfSet},
};
// clang-format on

} // namespace

void AddressClaim::declare(ObjectDataBase &store, quint8 line, quint32 reservedSpn)
{
    const J1939Settings settings(store);
    ObjectDataBase::PGN group;
    group.name = QStringLiteral("Address Claiming");
    group.description = QStringLiteral("This PGN is used to send the Address Claiming.");
    group.priority = 6;
    group.inhibitTimeMs = 250;
    group.mappingCount = static_cast<quint16>(std::size(kName));
    group.direction = kDirection;
    store.beginBatch();
    (void)store.addPGN(line, kGroup, group); // fails in a locked store; so do its signals
    qint16 place = 0;
    for (const NameRow &row : kName) {
        ObjectDataBase::SPN spn;
        spn.pos = place++; // rows with one place have no order of their own
        spn.name = QLatin1String(row.name);
        spn.dataType = static_cast<quint32>(row.type);
        spn.implementation = 0;
        spn.defaultValue = row.value(settings.text(QLatin1String(row.setting)), line);
        const quint32 number = row.spn == kReserved ? reservedSpn : row.spn;
        (void)store.addSPN(line, kGroup, kDirection, number, spn); // as above
    }
    store.commitBatch();
}
