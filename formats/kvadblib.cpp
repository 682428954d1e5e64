// A database of CAN messages in memory.
#include "formats/kvadblib.h"

#include "formats/dbcwriter.h"
#include "formats/kvadbrecords.h"
#include "support/plaintext.h"

#include <QFile>

namespace
{

constexpr quint32 kExtendedMask = 0x1FFFFFFF;
constexpr quint32 kStandardMask = 0x7FF;

/// Makes one more of what the handle's \a list holds.
template <class Owner, class List, class Thing>
KvaDbStatus add(Owner *owner, List list, Thing **thing)
{
    if (!owner || !thing)
        return kvaDbErr_Param;
    *thing = &(owner->*list).emplace_back();
    return kvaDbOK;
}

KvaDbStatus addAttribute(KvaDbAttributeList *owner, KvaDbAttributeDefHnd definition,
                         KvaDbAttributeHnd *attribute)
{
    if (!definition || !attribute)
        return kvaDbErr_Param;
    const KvaDbStatus status = add(owner, &KvaDbAttributeList::attributes, attribute);
    if (status == kvaDbOK)
        (*attribute)->definition = definition;
    return status;
}

/// Sets a field of what the handle stands for.
template <class Thing, class Field, class Value>
KvaDbStatus set(Thing *thing, Field field, const Value &value)
{
    if (!thing)
        return kvaDbErr_Param;
    thing->*field = value;
    return kvaDbOK;
}

KvaDbStatus setNumber(KvaDbAttributeHnd attribute, KvaDbAttributeType type, int value)
{
    if (!attribute || attribute->definition->type != type)
        return kvaDbErr_Param;
    attribute->number = value;
    return kvaDbOK;
}

} // namespace

KvaDbStatus kvaDbOpen(KvaDbHnd *database)
{
    if (!database)
        return kvaDbErr_Param;
    *database = new KvaDb;
    return kvaDbOK;
}

KvaDbStatus kvaDbCreate(KvaDbHnd database, const QString &localName, const char *fileName)
{
    Q_UNUSED(localName)
    Q_UNUSED(fileName)
    if (!database)
        return kvaDbErr_Param;
    *database = KvaDb();
    database->isCreated = true;
    return kvaDbOK;
}

KvaDbStatus kvaDbWriteFile(KvaDbHnd database, const QString &fileName)
{
    if (!database)
        return kvaDbErr_Param;
    if (!database->isCreated)
        return kvaDbErr_NoDatabase;
    DbcWriter writer(*database);
    const QByteArray bytes = writer.bytes();
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) ||
        file.write(bytes) != bytes.size() || !file.flush())
        return kvaDbErr_WriteFile;
    return kvaDbOK;
}

KvaDbStatus kvaDbClose(KvaDbHnd database)
{
    delete database;
    return database ? kvaDbOK : kvaDbErr_Param;
}

KvaDbStatus kvaDbAddAttributeDefinition(KvaDbHnd database, KvaDbAttributeDefHnd *definition)
{
    return add(database, &KvaDb::definitions, definition);
}

KvaDbStatus kvaDbSetAttributeDefinitionName(KvaDbAttributeDefHnd definition, const QString &name)
{
    return set(definition, &KvaDbAttributeDef::name, name);
}

KvaDbStatus kvaDbSetAttributeDefinitionOwner(KvaDbAttributeDefHnd definition,
                                             KvaDbAttributeOwner owner)
{
    return set(definition, &KvaDbAttributeDef::owner, owner);
}

KvaDbStatus kvaDbSetAttributeDefinitionType(KvaDbAttributeDefHnd definition,
                                            KvaDbAttributeType type)
{
    return set(definition, &KvaDbAttributeDef::type, type);
}

KvaDbStatus kvaDbSetAttributeDefinitionInt(KvaDbAttributeDefHnd definition, int defaultValue,
                                           int minimum, int maximum)
{
    if (!definition || definition->type != KvaDbAttributeType::Integer)
        return kvaDbErr_Param;
    definition->defaultValue = defaultValue;
    definition->minimum = minimum;
    definition->maximum = maximum;
    return kvaDbOK;
}

KvaDbStatus kvaDbSetAttributeDefinitionFloat(KvaDbAttributeDefHnd definition,
                                             const QString &minimum, const QString &maximum)
{
    if (!definition || definition->type != KvaDbAttributeType::Float)
        return kvaDbErr_Param;
    definition->range = minimum + QLatin1Char(' ') + maximum;
    return kvaDbOK;
}

KvaDbStatus kvaDbSetAttributeDefinitionString(KvaDbAttributeDefHnd definition,
                                              const QString &defaultValue)
{
    return set(definition, &KvaDbAttributeDef::defaultText, defaultValue);
}

KvaDbStatus kvaDbAddAttributeDefinitionEnum(KvaDbAttributeDefHnd definition, const QString &name,
                                            int value)
{
    if (!definition || definition->type != KvaDbAttributeType::Enumeration)
        return kvaDbErr_Param;
    definition->values.append({name, value});
    return kvaDbOK;
}

KvaDbStatus kvaDbSetAttributeDefinitionEnumDefault(KvaDbAttributeDefHnd definition, int value)
{
    return set(definition, &KvaDbAttributeDef::defaultValue, value);
}

KvaDbStatus kvaDbAddAttribute(KvaDbHnd database, KvaDbAttributeDefHnd definition,
                              KvaDbAttributeHnd *attribute)
{
    return addAttribute(database, definition, attribute);
}

KvaDbStatus kvaDbAddMsgAttribute(KvaDbMessageHnd message, KvaDbAttributeDefHnd definition,
                                 KvaDbAttributeHnd *attribute)
{
    return addAttribute(message, definition, attribute);
}

KvaDbStatus kvaDbAddNodeAttribute(KvaDbNodeHnd node, KvaDbAttributeDefHnd definition,
                                  KvaDbAttributeHnd *attribute)
{
    return addAttribute(node, definition, attribute);
}

KvaDbStatus kvaDbAddSignalAttribute(KvaDbSignalHnd signal, KvaDbAttributeDefHnd definition,
                                    KvaDbAttributeHnd *attribute)
{
    return addAttribute(signal, definition, attribute);
}

KvaDbStatus kvaDbSetAttributeValueInt(KvaDbAttributeHnd attribute, int value)
{
    return setNumber(attribute, KvaDbAttributeType::Integer, value);
}

KvaDbStatus kvaDbSetAttributeValueEnumeration(KvaDbAttributeHnd attribute, int value)
{
    return setNumber(attribute, KvaDbAttributeType::Enumeration, value);
}

KvaDbStatus kvaDbSetAttributeValueString(KvaDbAttributeHnd attribute, const QString &text,
                                         int length)
{
    if (!attribute || attribute->definition->type != KvaDbAttributeType::String)
        return kvaDbErr_Param;
    attribute->text = oneLine(text.left(length)); // unlike comments, values are one line
    return kvaDbOK;
}

KvaDbStatus kvaDbSetAttributeValueFloat(KvaDbAttributeHnd attribute, const QString &number)
{
    if (!attribute || attribute->definition->type != KvaDbAttributeType::Float)
        return kvaDbErr_Param;
    attribute->text = number;
    return kvaDbOK;
}

KvaDbStatus kvaDbSetComment(KvaDbHnd database, const QString &comment)
{
    return set(database, &KvaDb::comment, comment);
}

KvaDbStatus kvaDbSetDoubledBackslashes(KvaDbHnd database, bool areDoubled)
{
    return set(database, &KvaDb::doublesBackslashes, areDoubled);
}

KvaDbStatus kvaDbAddNode(KvaDbHnd database, KvaDbNodeHnd *node)
{
    return add(database, &KvaDb::nodes, node);
}

KvaDbStatus kvaDbSetNodeName(KvaDbNodeHnd node, const QString &name)
{
    return set(node, &KvaDbNode::name, name);
}

KvaDbStatus kvaDbAddMsg(KvaDbHnd database, KvaDbMessageHnd *message)
{
    return add(database, &KvaDb::messages, message);
}

KvaDbStatus kvaDbSetMsgName(KvaDbMessageHnd message, const QString &name)
{
    return set(message, &KvaDbMessage::name, name);
}

KvaDbStatus kvaDbSetMsgComment(KvaDbMessageHnd message, const QString &comment)
{
    return set(message, &KvaDbMessage::comment, comment);
}

KvaDbStatus kvaDbSetMsgId(KvaDbMessageHnd message, quint32 identifier, quint32 flags)
{
    const bool isExtended = flags & KVADB_MESSAGE_EXT;
    return set(message, &KvaDbMessage::identifier,
               isExtended ? (identifier & kExtendedMask) | KVADB_MESSAGE_EXT
                          : identifier & kStandardMask);
}

KvaDbStatus kvaDbSetMsgDlc(KvaDbMessageHnd message, int bytes)
{
    return set(message, &KvaDbMessage::dlc, bytes);
}

KvaDbStatus kvaDbAddSignal(KvaDbMessageHnd message, KvaDbSignalHnd *signal)
{
    return add(message, &KvaDbMessage::signalList, signal);
}

KvaDbStatus kvaDbSetSignalName(KvaDbSignalHnd signal, const QString &name)
{
    return set(signal, &KvaDbSignal::name, name);
}

KvaDbStatus kvaDbSetSignalComment(KvaDbSignalHnd signal, const QString &comment)
{
    return set(signal, &KvaDbSignal::comment, comment);
}

KvaDbStatus kvaDbSetSignalValueSize(KvaDbSignalHnd signal, int startBit, int bits)
{
    if (!signal)
        return kvaDbErr_Param;
    signal->startBit = startBit;
    signal->bits = bits;
    return kvaDbOK;
}

KvaDbStatus kvaDbSetMsgSender(KvaDbMessageHnd message, KvaDbNodeHnd node)
{
    return set(message, &KvaDbMessage::sender, node);
}

KvaDbStatus kvaDbSetSignalReceiver(KvaDbSignalHnd signal, KvaDbNodeHnd node)
{
    return set(signal, &KvaDbSignal::receiver, node);
}

KvaDbStatus kvaDbSetSignalType(KvaDbSignalHnd signal, KvaDbSignalType type)
{
    return set(signal, &KvaDbSignal::type, type);
}

KvaDbStatus kvaDbSetSignalValueLimits(KvaDbSignalHnd signal, const QString &minimum,
                                      const QString &maximum)
{
    if (!signal)
        return kvaDbErr_Param;
    signal->minimum = minimum;
    signal->maximum = maximum;
    return kvaDbOK;
}

KvaDbStatus kvaDbAddSignalValue(KvaDbSignalHnd signal, int number, const QString &text)
{
    if (!signal)
        return kvaDbErr_Param;
    signal->values.append({number, text});
    return kvaDbOK;
}
