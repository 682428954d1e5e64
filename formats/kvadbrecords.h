// What the handles of the database of messages stand for. Lists leave what they hold in its place,
// since handles point to it.
#pragma once

#include "formats/kvadblib.h"

#include <QString>
#include <QVector>

#include <list>

struct KvaDbAttributeDef {
    struct EnumValue {
        QString name;
        int value;
    };
    QString name;
    KvaDbAttributeOwner owner = KvaDbAttributeOwner::Database;
    KvaDbAttributeType type = KvaDbAttributeType::Integer;
    int defaultValue = 0;
    int minimum = 0;
    int maximum = 0;
    QString defaultText;
    QString range; ///< of real numbers, as it stands in the file
    QVector<EnumValue> values;
};

struct KvaDbAttribute {
    KvaDbAttributeDef *definition = nullptr;
    int number = 0;
    QString text; ///< also that of a real number
};

/// What can have attributes.
struct KvaDbAttributeList {
    std::list<KvaDbAttribute> attributes;
};

/// A node, message or signal.
struct KvaDbNamed : KvaDbAttributeList {
    QString name;
    // Chosen when the file is written:
    QString fileName;
    QString fullFileName; ///< unique as well: readers take it in place of a shortened name

    bool isShortened() const { return fileName != fullFileName; }
};

struct KvaDbNode : KvaDbNamed {
};

struct KvaDbSignal : KvaDbNamed {
    struct Value {
        int number;
        QString text;
    };
    QString comment;
    int startBit = 0;
    int bits = 0;
    KvaDbSignalType type = KvaDbSignalType::Unsigned;
    QString minimum; ///< as it stands in the file; empty: what the bits can hold
    QString maximum;
    QVector<Value> values;
    const KvaDbNode *receiver = nullptr; ///< null: nobody is named
};

struct KvaDbMessage : KvaDbNamed {
    QString comment;
    quint32 identifier = 0; ///< bit 31: extended
    int dlc = 0;
    const KvaDbNode *sender = nullptr; ///< null: nobody is named
    std::list<KvaDbSignal> signalList;
};

struct KvaDb : KvaDbAttributeList {
    bool isCreated = false;
    bool doublesBackslashes = true;
    QString comment;
    std::list<KvaDbAttributeDef> definitions;
    std::list<KvaDbNode> nodes;
    std::list<KvaDbMessage> messages;
};
