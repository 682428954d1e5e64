// J1939 in DBC files.
#include "formats/dbcj1939.h"

#include "formats/dbckeys.h"

#include <algorithm>
#include <iterator>

namespace
{

constexpr quint8 kFirstPdu2Format = 240; // SAE J1939-21, 5.2.5

// clang-format off
constexpr DbcJ1939::VariableText kVariableTexts[] = {
    {CAN::CANopenDataType::StringAsterisk, J1939::SigType::StringDelimiter, "a \"*\""},
    {CAN::CANopenDataType::StringNull,     J1939::SigType::Ascii,           "a zero byte"},
};
// clang-format on

template <class Predicate>
const DbcJ1939::VariableText *findText(Predicate isMeant)
{
    const auto *row = std::find_if(std::begin(kVariableTexts), std::end(kVariableTexts), isMeant);
    return row == std::end(kVariableTexts) ? nullptr : row;
}

/// Empty if the file names none.
QString protocolOf(const DbcFile &file)
{
    return file.attribute(DbcKeys::kProtocolType).trimmed();
}

bool isJ1939Network(const DbcFile &file)
{
    return protocolOf(file).compare(QLatin1String("J1939"), Qt::CaseInsensitive) == 0;
}

/// The word for the frame format, or its usual number where the attribute has no words.
bool isJ1939Format(const QString &format)
{
    return format.compare(QLatin1String("J1939PG"), Qt::CaseInsensitive) == 0 ||
           format == QLatin1String("3");
}

/// Has it an attribute that makers of other networks have no use for?
bool hasJ1939Attributes(const DbcFile &file)
{
    return std::any_of(file.definitions.cbegin(), file.definitions.cend(),
                       [](const DbcAttributeDefinition &definition) {
                           const QString &name = definition.name;
                           return (definition.owner == DbcOwner::Signal &&
                                   name == QLatin1String(DbcKeys::kSpn)) ||
                                  (definition.owner == DbcOwner::Node &&
                                   name.startsWith(QLatin1String(DbcKeys::kNamePart)));
                       });
}

} // namespace

DbcJ1939::Identifier DbcJ1939::identifierOf(quint32 identifier)
{
    const auto byte = [identifier](int shift) { return static_cast<quint8>(identifier >> shift); };
    Identifier result;
    result.priority = byte(26) & 7;
    result.source = byte(0);
    result.isPdu1 = byte(16) < kFirstPdu2Format;
    if (result.isPdu1)
        result.destination = byte(8);
    result.group = (identifier >> 8) & (result.isPdu1 ? 0x3FF00 : 0x3FFFF);
    return result;
}

bool DbcJ1939::isJ1939(const DbcFile &file)
{
    return isJ1939Network(file) ||
           std::any_of(file.messages.cbegin(), file.messages.cend(),
                       [&](const DbcMessage &message) { return isJ1939(file, message); });
}

bool DbcJ1939::isLikelyJ1939(const DbcFile &file)
{
    return protocolOf(file).isEmpty() && isAllExtended(file) && hasJ1939Attributes(file);
}

bool DbcJ1939::isAllExtended(const DbcFile &file)
{
    bool isAny = false;
    for (const DbcMessage &message : file.messages) {
        if (message.isPseudo)
            continue;
        if (!message.isExtended)
            return false;
        isAny = true;
    }
    return isAny;
}

bool DbcJ1939::isJ1939(const DbcFile &file, const DbcMessage &message)
{
    if (!message.isExtended || message.isPseudo)
        return false;
    const QString format = file.attribute(message, DbcKeys::kFrameFormat);
    return format.isNull() ? isJ1939Network(file) : isJ1939Format(format);
}

QString DbcJ1939::VariableText::remark(quint32 bits) const
{
    return QStringLiteral("Variable length: up to %1 bits, and ends with %2. What follows comes "
                          "earlier if it is shorter.")
        .arg(QString::number(bits), QLatin1String(end));
}

const DbcJ1939::VariableText *DbcJ1939::variableText(CAN::CANopenDataType type)
{
    return findText([type](const VariableText &text) { return text.type == type; });
}

const DbcJ1939::VariableText *DbcJ1939::variableText(const DbcSignal &signal)
{
    return findText([&signal](const VariableText &text) {
        return signal.comment.endsWith(text.remark(signal.bits));
    });
}
