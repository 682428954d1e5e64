// A database of CAN messages in memory, and its DBC form. Handles belong to the database and die
// with it; a null handle gives kvaDbErr_Param.
#pragma once

#include <QByteArray>
#include <QString>

struct KvaDb;
struct KvaDbNode;
struct KvaDbMessage;
struct KvaDbSignal;
struct KvaDbAttributeDef;
struct KvaDbAttribute;

using KvaDbHnd = KvaDb *;
using KvaDbNodeHnd = KvaDbNode *;
using KvaDbMessageHnd = KvaDbMessage *;
using KvaDbSignalHnd = KvaDbSignal *;
using KvaDbAttributeDefHnd = KvaDbAttributeDef *;
using KvaDbAttributeHnd = KvaDbAttribute *;

enum KvaDbStatus {
    kvaDbOK = 0,
    kvaDbErr_Param = -3,      ///< a null handle, or a call that does not fit the definition's type
    kvaDbErr_NoDatabase = -5, ///< kvaDbCreate() has not been called
    kvaDbErr_WriteFile = -6,
};

enum class KvaDbAttributeOwner { Database = 1, Message = 2, Signal = 4, Node = 8 };
enum class KvaDbAttributeType { Integer = 1, Float = 3, Enumeration = 4, String = 5 };
enum class KvaDbSignalType { Unsigned, Signed, Float, Double };

/// Of an identifier: it has 29 bits.
constexpr quint32 KVADB_MESSAGE_EXT = 0x80000000;

KvaDbStatus kvaDbOpen(KvaDbHnd *database);
/// Empties the database. Neither name is looked at: it lives in memory only.
KvaDbStatus kvaDbCreate(KvaDbHnd database, const QString &localName, const char *fileName);
KvaDbStatus kvaDbWriteFile(KvaDbHnd database, const QString &fileName);
KvaDbStatus kvaDbClose(KvaDbHnd database);

KvaDbStatus kvaDbAddAttributeDefinition(KvaDbHnd database, KvaDbAttributeDefHnd *definition);
KvaDbStatus kvaDbSetAttributeDefinitionName(KvaDbAttributeDefHnd definition, const QString &name);
KvaDbStatus kvaDbSetAttributeDefinitionOwner(KvaDbAttributeDefHnd definition,
                                             KvaDbAttributeOwner owner);
KvaDbStatus kvaDbSetAttributeDefinitionType(KvaDbAttributeDefHnd definition,
                                            KvaDbAttributeType type);
KvaDbStatus kvaDbSetAttributeDefinitionInt(KvaDbAttributeDefHnd definition, int defaultValue,
                                           int minimum, int maximum);
/// The default is 0. Here and below numbers that an int cannot hold are texts, in decimal digits.
KvaDbStatus kvaDbSetAttributeDefinitionFloat(KvaDbAttributeDefHnd definition,
                                             const QString &minimum, const QString &maximum);
KvaDbStatus kvaDbSetAttributeDefinitionString(KvaDbAttributeDefHnd definition,
                                              const QString &defaultValue);
KvaDbStatus kvaDbAddAttributeDefinitionEnum(KvaDbAttributeDefHnd definition, const QString &name,
                                            int value);
KvaDbStatus kvaDbSetAttributeDefinitionEnumDefault(KvaDbAttributeDefHnd definition, int value);

KvaDbStatus kvaDbAddAttribute(KvaDbHnd database, KvaDbAttributeDefHnd definition,
                              KvaDbAttributeHnd *attribute);
KvaDbStatus kvaDbAddNodeAttribute(KvaDbNodeHnd node, KvaDbAttributeDefHnd definition,
                                  KvaDbAttributeHnd *attribute);
KvaDbStatus kvaDbAddMsgAttribute(KvaDbMessageHnd message, KvaDbAttributeDefHnd definition,
                                 KvaDbAttributeHnd *attribute);
KvaDbStatus kvaDbAddSignalAttribute(KvaDbSignalHnd signal, KvaDbAttributeDefHnd definition,
                                    KvaDbAttributeHnd *attribute);
KvaDbStatus kvaDbSetAttributeValueInt(KvaDbAttributeHnd attribute, int value);
KvaDbStatus kvaDbSetAttributeValueEnumeration(KvaDbAttributeHnd attribute, int value);
KvaDbStatus kvaDbSetAttributeValueString(KvaDbAttributeHnd attribute, const QString &text,
                                         int length);
KvaDbStatus kvaDbSetAttributeValueFloat(KvaDbAttributeHnd attribute, const QString &number);

KvaDbStatus kvaDbSetComment(KvaDbHnd database, const QString &comment);
/// Is a backslash within quotes written twice, as at first? Some readers take both.
KvaDbStatus kvaDbSetDoubledBackslashes(KvaDbHnd database, bool areDoubled);

KvaDbStatus kvaDbAddNode(KvaDbHnd database, KvaDbNodeHnd *node);
/// As the names of messages.
KvaDbStatus kvaDbSetNodeName(KvaDbNodeHnd node, const QString &name);

KvaDbStatus kvaDbAddMsg(KvaDbHnd database, KvaDbMessageHnd *message);
/// Names may repeat, begin with a digit, be keywords or be long: the file gets unique names of up
/// to 32 characters, and the full ones, unique too, as attributes.
KvaDbStatus kvaDbSetMsgName(KvaDbMessageHnd message, const QString &name);
KvaDbStatus kvaDbSetMsgComment(KvaDbMessageHnd message, const QString &comment);
KvaDbStatus kvaDbSetMsgId(KvaDbMessageHnd message, quint32 identifier, quint32 flags);
KvaDbStatus kvaDbSetMsgDlc(KvaDbMessageHnd message, int bytes);
KvaDbStatus kvaDbSetMsgSender(KvaDbMessageHnd message, KvaDbNodeHnd node);

KvaDbStatus kvaDbAddSignal(KvaDbMessageHnd message, KvaDbSignalHnd *signal);
KvaDbStatus kvaDbSetSignalName(KvaDbSignalHnd signal, const QString &name);
KvaDbStatus kvaDbSetSignalComment(KvaDbSignalHnd signal, const QString &comment);
/// Least significant byte first.
KvaDbStatus kvaDbSetSignalValueSize(KvaDbSignalHnd signal, int startBit, int bits);
/// Unsigned at first.
KvaDbStatus kvaDbSetSignalType(KvaDbSignalHnd signal, KvaDbSignalType type);
/// At first what an unsigned number of its bits can hold; "0" twice for no limits.
KvaDbStatus kvaDbSetSignalValueLimits(KvaDbSignalHnd signal, const QString &minimum,
                                      const QString &maximum);
/// Adds a number that has a meaning.
KvaDbStatus kvaDbAddSignalValue(KvaDbSignalHnd signal, int number, const QString &text);
KvaDbStatus kvaDbSetSignalReceiver(KvaDbSignalHnd signal, KvaDbNodeHnd node);
