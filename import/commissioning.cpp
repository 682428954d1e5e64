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
constexpr quint32 kNoNodeId = 255;           // of a device that gets one when it starts
constexpr quint32 kHighestBaudrate = 0xFFFF; // kBit/s

const QLatin1String kBytes("|x");

/// 0 if there is none from 1 to \a highest.
quint32 numberOf(const QString &text, quint32 highest)
{
    quint32 number = 0;
    (void)EdsValues::readNumber(text, number); // or 0
    return number <= highest ? number : 0;
}

void takeNodeId(ObjectDataBase &store, quint8 line, quint32 nodeId)
{
    const QString key = QStringLiteral("co_node_id");
    const QString list = store.getGeneralSettingsValue(key);
    // A project may say the same by no number at all, beside the name of a function.
    const bool isNews = nodeId == kNoNodeId ? !LineList::element(list, line).isEmpty()
                                            : nodeId > 0 && nodeId <= kHighestNodeId;
    if (isNews)
        (void)store.setGeneralSettingsValue(
            key, LineList::withElement(list, line, QString::number(nodeId))); // logged there
}

} // namespace

void Commissioning::take(ObjectDataBase &store, quint8 line,
                         const std::function<QString(const char *key)> &entryOf)
{
    takeNodeId(store, line, numberOf(entryOf(EdsKeys::kNodeId), kNoNodeId));
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
    QString digits = value; // some tools put blanks between the bytes
    digits.remove(QLatin1Char(' '));
    const auto isDigit = [](QChar character) {
        const ushort code = character.toLower().unicode();
        return (code >= '0' && code <= '9') || (code >= 'a' && code <= 'f');
    };
    const bool areBytes = !digits.isEmpty() && digits.size() % 2 == 0 &&
                          std::all_of(digits.begin(), digits.end(), isDigit);
    return areBytes ? kBytes + digits : value;
}

int Commissioning::sizeOf(const QString &value)
{
    return value.startsWith(kBytes) ? (value.size() - kBytes.size() + 1) / 2
                                    : value.toUtf8().size();
}
