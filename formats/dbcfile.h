// What a DBC file tells of a network, as plain records: messages, their signals, nodes, and what is
// said of them.
#pragma once

#include <QHash>
#include <QPair>
#include <QString>
#include <QStringList>
#include <QVector>

/// A place in a file; both from 1, columns in characters. 0 is no place.
struct DbcPlace {
    int line = 0;
    int column = 0;
};

/// What comments, attributes and values can be about.
enum class DbcOwner : quint8 { Network, Node, Message, Signal, Variable };

inline uint qHash(DbcOwner owner, uint seed = 0)
{
    return ::qHash(static_cast<quint8>(owner), seed);
}

/// The text for a number of a signal or variable.
struct DbcValue {
    qint64 number = 0; ///< one above the range of 64 bits with sign as its two's complement
    QString text;
};

struct DbcValueTable {
    QString name;
    QVector<DbcValue> values; ///< in the order of the file
    DbcPlace place;
};

struct DbcAttributeDefinition {
    enum class Type : quint8 { Integer, Hexadecimal, Float, Text, Words };

    QString name;
    DbcOwner owner = DbcOwner::Network;
    Type type = Type::Text;
    bool isDefined = true; ///< false: made for a value whose attribute the file does not define
    bool hasDefault = false;
    double minimum = 0; ///< of the three types of numbers; both 0 for no range
    double maximum = 0;
    QStringList words;    ///< of an enumeration, by number
    QString defaultValue; ///< as an attribute's text
    DbcPlace place;
};

/// The value of an attribute.
struct DbcAttribute {
    int definition = 0; ///< number in DbcFile::definitions
    QString text;       ///< a number as it is written; of an enumeration the word, if there is one
    DbcPlace place;
};

/// What nodes, messages, signals and variables have in common.
struct DbcItem {
    QString name;     ///< the one by which the file refers to it
    QString longName; ///< the whole name; mostly the same
    QString comment;
    QVector<DbcAttribute>
        attributes; ///< in the order of the file; of two of a name the last counts
    DbcPlace place;
};

using DbcNode = DbcItem;

/// An environment variable.
struct DbcVariable : DbcItem {
    QVector<DbcValue> values;
};

/// Numbers of a switch, both inclusive.
struct DbcRange {
    quint64 first = 0;
    quint64 last = 0;
};

struct DbcMultiplexing {
    bool isSwitch = false;   ///< its value tells which others are in the frame
    bool isSwitched = false; ///< in the frame only with these values of the switch
    QString switchName;      ///< the signal that switches it; empty if the file does not say
    QVector<DbcRange> ranges;
};

struct DbcSignal : DbcItem {
    enum class ValueType : quint8 { Integer, Float, Double };

    quint32 startBit = 0; ///< as in the file: bit 0 of byte 0 is 0, bit 7 of byte 1 is 15
    quint32 bits = 0;
    bool isBigEndian = false; ///< startBit is the most significant one then, else the least
    bool isSigned = false;
    bool isReplaced = false; ///< a later signal of the message has the same name, and counts
    ValueType valueType = ValueType::Integer;
    double factor = 1; ///< physical value = raw value * factor + offset
    double offset = 0;
    double minimum = 0; ///< physical; both 0 for no limits
    double maximum = 0;
    QString unit;
    QStringList receivers; ///< empty if nobody is named
    DbcMultiplexing multiplexing;
    QVector<DbcValue> values;

    /// Bytes that a frame must have to hold it.
    quint64 bytesNeeded() const;
};

struct DbcMessage : DbcItem {
    quint32 reference = 0;  ///< what the file writes: the identifier, with bit 31 if extended
    quint32 identifier = 0; ///< without that
    bool isExtended = false;
    bool isReplaced = false;  ///< a later message has the same identifier, and counts
    bool isPseudo = false;    ///< no message: holds signals that are in none
    quint32 size = 0;         ///< bytes; more than a frame has, for groups of several packets
    QString sender;           ///< empty if nobody is named
    QStringList transmitters; ///< those that the file lists besides, or the sender once more
    QVector<DbcSignal> signalList;
};

/// A whole file.
struct DbcFile {
    QString version;
    QString bitTiming; ///< what follows BS_:, which is obsolete
    DbcItem network;   ///< without name
    QVector<DbcNode> nodes;
    QVector<DbcMessage> messages;
    QVector<DbcVariable> variables;
    QVector<DbcValueTable> valueTables;
    QVector<DbcAttributeDefinition> definitions;
    /// Numbers in \a definitions.
    QHash<QPair<DbcOwner, QString>, int> definitionNumbers;

    /// Null if there is no attribute of that name for such owners.
    const DbcAttributeDefinition *definition(DbcOwner owner, const QString &name) const;

    /// The value for an item of that kind, else the default; a null text if there is neither.
    QString attribute(DbcOwner owner, const DbcItem &item, const char *name) const;

    QString attribute(const char *name) const
    {
        return attribute(DbcOwner::Network, network, name);
    }
    QString attribute(const DbcMessage &message, const char *name) const
    {
        return attribute(DbcOwner::Message, message, name);
    }
    QString attribute(const DbcSignal &signal, const char *name) const
    {
        return attribute(DbcOwner::Signal, signal, name);
    }
    QString attribute(const DbcNode &node, const char *name) const
    {
        return attribute(DbcOwner::Node, node, name);
    }
};
