// The NAME and the address of a node of a DBC file.
#include "import/dbcidentity.h"

#include "formats/dbcj1939.h"
#include "formats/dbckeys.h"
#include "support/direction.h"

namespace
{

constexpr quint8 kNullAddress = 0xFE; // SAE J1939-81, 4.2

struct Row {
    const char *setting;
    const char *attribute; ///< of nodes
    quint32 maximum;       // SAE J1939-81, 4.1.1
};

// clang-format off
constexpr Row kRows[] = {
    {"identitynumber",   "NmJ1939IdentityNumber",   0x1FFFFF},
    {"manufacturercode", "NmJ1939ManufacturerCode", 0x7FF},
    {"ecuinstance",      "NmJ1939ECUInstance",      0x7},
    {"functioninstance", "NmJ1939FunctionInstance", 0x1F},
    {"function",         "NmJ1939Function",         0xFF},
    {"vehiclesystem",    "NmJ1939System",           0x7F},
    {"vehicleinstance",  "NmJ1939SystemInstance",   0xF},
    {"industrygroup",    "NmJ1939IndustryGroup",    0x7},
    {"addresscapable",   "NmJ1939AAC",              0x1},
    {"startaddress",     DbcKeys::kStationAddress,  kNullAddress},
};
// clang-format on

/// Null if the file tells none.
QString valueOf(const DbcFile &file, const DbcNode &node, const Row &row, DbcTally *tally)
{
    const QString text = file.attribute(node, row.attribute);
    if (text.isEmpty())
        return QString();
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (isNumber && number >= 0 && number <= row.maximum)
        return QString::number(static_cast<quint32>(number));
    tally->add(DbcTally::Kind::NameValue, node, QLatin1String(row.attribute));
    return QString();
}

/// From which the node sends its first message; null if that is a placeholder.
QString addressOf(const QVector<DbcFrames::Choice> &choices)
{
    for (const DbcFrames::Choice &choice : choices) {
        const quint8 source = DbcJ1939::identifierOf(choice.message->identifier).source;
        if (choice.direction == Direction::kTransmitted && source < kNullAddress)
            return QString::number(source);
    }
    return QString();
}

} // namespace

QVector<DbcIdentity::Setting> DbcIdentity::of(const DbcFile &file, const QString &ownNode,
                                              const QVector<DbcFrames::Choice> &choices,
                                              DbcTally *tally)
{
    const DbcNode *own = nullptr;
    for (const DbcNode &node : file.nodes) {
        if (node.name == ownNode)
            own = &node;
    }
    QVector<Setting> settings;
    for (const Row &row : kRows)
        settings << Setting{row.setting, own ? valueOf(file, *own, row, tally) : QString()};
    QString &address = settings.last().value;
    if (address.toUInt() == kNullAddress) // which templates have for those without one
        address = QString();
    if (address.isNull())
        address = addressOf(choices);
    return settings;
}

int DbcIdentity::addressIn(const QVector<Setting> &settings)
{
    const QString &address = settings.last().value;
    return address.isNull() ? -1 : address.toInt();
}
