// The NAME of the device as signals of a group.
#include "generators/addressclaim.h"

#include "generators/j1939settings.h"
#include "support/candatatype.h"
#include "support/cohelper.h"
#include "support/implementation.h"
#include "support/parametergroups.h"

#include <iterator>

namespace
{

using ParameterGroup::kAddressClaimed;
using Type = CAN::CANopenDataType;

/// Makes the default value of a signal from what its setting says of the line.
using MakeValue = QString (*)(const QString &element);

constexpr quint32 kReserved = 0; ///< the row without a number of its own

struct NameRow {
    quint32 spn;
    Type type;
    const char *name;
    const char *setting; ///< of the J1939 settings
    MakeValue value;
};

QString asItIs(const QString &element)
{
    return element;
}

QString zero(const QString & /*element*/)
{
    return QStringLiteral("0");
}

QString oneIfSet(const QString &element)
{
    return Numbers::toIntDecimal(element) != 0 ? QStringLiteral("1") : QStringLiteral("0");
}

// clang-format off
constexpr NameRow kName[] = {                       // order is that of the frame
    {2837,      Type::Unsigned21, "Identity Number",         "identitynumber",   asItIs},
    {2838,      Type::Unsigned11, "Manufacturer Code",       "manufacturercode", asItIs},
    {2840,      Type::Unsigned3,  "ECU Instance",            "ecuinstance",      asItIs},
    {2839,      Type::Unsigned5,  "Function Instance",       "functioninstance", asItIs},
    {2841,      Type::Unsigned8,  "Function",                "function",         asItIs},
    {kReserved, Type::Boolean,    "reserved",                "",                 zero},
    {2842,      Type::Unsigned7,  "Vehicle System",          "vehiclesystem",    asItIs},
    {2843,      Type::Unsigned4,  "Vehicle System Instance", "vehicleinstance",  asItIs},
    {2846,      Type::Unsigned3,  "Industry Group",          "industrygroup",    asItIs},
    {2844,      Type::Boolean,    "Addr Claiming Supported", "addresscapable",   oneIfSet},
};
// clang-format on

} // namespace

PgnData AddressClaim::group()
{
    PgnData group;
    group.number = kAddressClaimed;
    group.name = QStringLiteral("Address Claiming");
    group.description = QStringLiteral("This PGN is used to send the Address Claiming.");
    group.priority = 6;
    group.inhibitTimeMs = 250;
    group.mappingCount = static_cast<quint16>(std::size(kName));
    group.direction = Direction::kTransmitted;
    return group;
}

QVector<SpnData> AddressClaim::signalsOf(const ObjectDataBase &store, quint8 line,
                                         quint32 reservedSpn)
{
    const J1939Settings settings(store);
    QVector<SpnData> fields;
    for (const NameRow &row : kName) {
        SpnData spn;
        spn.pos = static_cast<qint16>(fields.size()); // rows with one place have no order
        spn.name = QLatin1String(row.name);
        spn.dataType = static_cast<quint32>(row.type);
        spn.implementation = Implementation::kManagedVariable;
        spn.defaultValue = row.value(settings.ofLine(row.setting, line));
        spn.number = row.spn == kReserved ? reservedSpn : row.spn;
        fields.append(spn);
    }
    return fields;
}

quint64 AddressClaim::nameOf(const ObjectDataBase &store, quint8 line)
{
    quint64 name = 0;
    int position = 0;
    const QVector<SpnData> fields = signalsOf(store, line, 0);
    for (const SpnData &field : fields) {
        const int bits = COHelper::getDataLengthBits(static_cast<Type>(field.dataType));
        const quint64 value = Numbers::toUIntByPrefix(field.defaultValue);
        name |= (value & ((quint64(1) << bits) - 1)) << position;
        position += bits;
    }
    return name;
}

void AddressClaim::declare(ObjectDataBase &store, quint8 line, quint32 reservedSpn)
{
    const PgnData claim = group();
    const QVector<SpnData> fields = signalsOf(store, line, reservedSpn);
    store.beginBatch();
    (void)store.addPGN(line, kAddressClaimed, claim); // fails in a locked store; so do its signals
    for (const SpnData &spn : fields)
        (void)store.addSPN(line, kAddressClaimed, claim.direction, spn.number, spn); // as above
    store.commitBatch();
}

quint8 AddressClaim::addressOf(const ObjectDataBase &store, quint8 line)
{
    const J1939Settings settings(store);
    if (settings.text(QStringLiteral("startaddress")).isEmpty())
        return kNullAddress;
    return static_cast<quint8>(
        Numbers::toUIntByPrefix(settings.ofLine("startaddress", line, LineList::Beyond::First)));
}
