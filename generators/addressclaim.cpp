// The NAME of the device as signals of a group.
#include "generators/j1939/addressclaim.h"

#include "generators/j1939/pgncontext.h"
#include "generators/projectlines.h"
#include "support/candatatype.h"

#include <QStringList>

#include <iterator>

namespace
{

using Type = CAN::CANopenDataType;

/// Makes the default value of a signal from the line's element of its setting.
using MakeValue = QString (*)(const QString &element);

struct NameRow {
    quint32 spn;
    Type type;
    const char *name;
    const char *setting; ///< of the J1939 settings; one element a line
    MakeValue value;
};

QString asSet(const QString &element)
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
    {0xB15, Type::Unsigned21, "Identity Number",         "identitynumber",   asSet},
    {0xB16, Type::Unsigned11, "Manufacturer Code",       "manufacturercode", asSet},
    {0xB18, Type::Unsigned3,  "ECU Instance",            "ecuinstance",      asSet},
    {0xB17, Type::Unsigned5,  "Function Instance",       "functioninstance", asSet},
    {0xB19, Type::Unsigned8,  "Function",                "function",         asSet},
    {0,     Type::Boolean,    "reserved",                "",                 zero},
    {0xB1A, Type::Unsigned7,  "Vehicle System",          "vehiclesystem",    asSet},
    {0xB1B, Type::Unsigned4,  "Vehicle System Instance", "vehicleinstance",  asSet},
    {0xB1E, Type::Unsigned3,  "Industry Group",          "industrygroup",    asSet},
    {0xB1C, Type::Boolean,    "Addr Claiming Supported", "addresscapable",   oneIfSet},
};
// clang-format on

void declareOnLine(ObjectDataBase &store, quint8 line)
{
    const J1939Settings settings(store);
    (void)store.delPGN(line, Pgn::kAddressClaimed, Pgn::kTransmitted); // there may be none
    ObjectDataBase::PGN group;
    group.name = QStringLiteral("Address Claiming");
    group.description = QStringLiteral("This PGN is used to send the Address Claiming.");
    group.number = Pgn::kAddressClaimed;
    group.priority = 6;
    group.inhibitTimeMs = 250;
    group.mappingCount = static_cast<quint16>(std::size(kName));
    group.direction = Pgn::kTransmitted;
    (void)store.addPGN(line, group.number, group); // fails in a locked store; so do its signals
    qint16 place = 0;
    for (const NameRow &row : kName) {
        ObjectDataBase::SPN spn;
        spn.pos = place++; // rows with one place have no order of their own
        spn.name = QLatin1String(row.name);
        spn.dataType = static_cast<quint32>(row.type);
        spn.implementation = 0;
        // A line behind the end of the list has no value.
        spn.defaultValue = row.value(
            settings.text(QLatin1String(row.setting)).split(QLatin1Char(',')).value(line));
        (void)store.addSPN(line, group.number, group.direction, row.spn, spn); // as above
    }
}

} // namespace

void Pgn::declareIdentify(ObjectDataBase &store)
{
    const QList<quint8> lines = readProjectLines(store).numbers;
    store.beginBatch();
    for (const quint8 line : lines) {
        if (carriesJ1939(readLineType(store, line)) ||
            store.getPGNs(line, kTransmitted, false).size() >= 2)
            declareOnLine(store, line);
    }
    store.commitBatch();
}
