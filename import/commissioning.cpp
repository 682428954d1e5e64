// The place of a device in its network.
#include "import/commissioning.h"

#include "formats/edskeys.h"
#include "formats/edsvalues.h"
#include "store/objectdatabase.h"
#include "support/linelist.h"

#include <algorithm>

namespace
{

constexpr quint32 kHighestNodeId = 127;
constexpr quint32 kHighestBaudrate = 0xFFFF; // kBit/s

const QLatin1String kBytes("|x");

/// 0 if there is none from 1 to \a highest.
quint32 numberOf(const QString &text, quint32 highest)
{
    quint32 number = 0;
    (void)EdsValues::readNumber(text, number); // or 0
    return number <= highest ? number : 0;
}

} // namespace

void Commissioning::take(ObjectDataBase &store, quint8 line,
                         const std::function<QString(const char *key)> &entryOf)
{
    const QString idKey = QStringLiteral("co_node_id");
    const quint32 nodeId = numberOf(entryOf(EdsKeys::kNodeId), kHighestNodeId);
    if (nodeId > 0)
        (void)store.setGeneralSettingsValue(
            idKey, LineList::withElement(store.getGeneralSettingsValue(idKey), line,
                                         QString::number(nodeId))); // logged there
    const QString name = entryOf(EdsKeys::kNodeName);
    if (!name.isEmpty())
        (void)store.setNodeSqlValue(QStringLiteral("name"), name,
                                    QString::number(line)); // logged there
    const quint32 baudrate = numberOf(entryOf(EdsKeys::kBaudrate), kHighestBaudrate);
    if (baudrate > 0)
        (void)store.setDescriptionSettingsValue(QStringLiteral("NodeBaudrate"),
                                                QString::number(baudrate)); // logged there
}

QString Commissioning::octets(const QString &value)
{
    const auto isDigit = [](QChar character) {
        const ushort code = character.toLower().unicode();
        return (code >= '0' && code <= '9') || (code >= 'a' && code <= 'f');
    };
    const bool areBytes = !value.isEmpty() && value.size() % 2 == 0 &&
                          std::all_of(value.begin(), value.end(), isDigit);
    return areBytes ? kBytes + value : value;
}

int Commissioning::sizeOf(const QString &value)
{
    return value.startsWith(kBytes) ? (value.size() - kBytes.size() + 1) / 2
                                    : value.toUtf8().size();
}
