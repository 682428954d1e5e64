// What the statements of a DBC file say of things that stand elsewhere in it, perhaps further down.
#pragma once

#include "formats/dbcfile.h"

/// What a statement is about, as the file names it.
struct DbcSubject {
    DbcOwner owner = DbcOwner::Network;
    quint32 message = 0; ///< DbcMessage::reference
    QString name;        ///< of the node, signal or variable
    DbcPlace place;      ///< of the statement
};

/// In the order of the file. They are kept until all is read, since files have their statements in
/// any order.
struct DbcRemarks {
    struct Comment {
        DbcSubject subject;
        QString text;
    };
    struct Attribute {
        DbcSubject subject;
        QString name;
        QString text;
    };
    struct Default {
        QString name;
        QString text;
        DbcPlace place;
    };
    struct Values {
        DbcSubject subject;
        QVector<DbcValue> values;
    };
    struct ValueType {
        DbcSubject subject;
        DbcSignal::ValueType type;
    };
    struct Transmitters {
        DbcSubject subject;
        QStringList nodes;
    };
    struct Switch {
        DbcSubject subject;
        QString name;
        QVector<DbcRange> ranges;
    };

    QVector<Comment> comments;
    QVector<Default> defaults;
    QVector<Attribute> attributes;
    QVector<Values> values;
    QVector<ValueType> valueTypes;
    QVector<Transmitters> transmitters;
    QVector<Switch> switches;
};
