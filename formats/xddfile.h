// What an XML description of a device (CiA 311) tells, as its elements have it. Parameters may
// stand before or after the objects that refer to them, so that all is held until the end.
#pragma once

#include <QHash>
#include <QMap>
#include <QString>
#include <QVector>

/// What an object, a subobject or a parameter may state; empty for what it does not.
struct XddValues {
    QString name;
    QString access; ///< a word of CiA 306, such as "rw"
    QString lowLimit;
    QString highLimit;
    QString defaultValue;
    QString actualValue;
    QString denotation;
};

struct XddType {
    quint16 type = 0; ///< CANopen::CANopenDataType; 0 if it is told by \a reference, or not at all
    bool isBitString = false; ///< a string of bytes, or of no known size
    QString reference;        ///< ID of the type that it is made of
};

/// A parameter, or a template of parameters.
struct XddParameter : XddValues {
    XddType type;
    QString description;
    QString templateId;
    QString limitsId; ///< of the template of its limits
    int line = 0;
};

/// An object or a subobject; texts are as in the file.
struct XddEntry : XddValues {
    quint16 index = 0;
    quint8 subindex = 0;
    QString objectType;
    QString dataType;
    QString mapping;
    QString flags;
    QString subNumber;
    QString parameterId;
    int line = 0;
};

struct XddObject : XddEntry {
    QVector<XddEntry> subs; ///< in the order of the file, each number once
};

/// A text about the device or the file.
struct XddInformation {
    QString value;
    int line = 0;
};

struct XddFile {
    QVector<XddObject> objects;              ///< in the order of the file, each index once
    QHash<QString, XddParameter> parameters; ///< by ID, templates too
    QHash<QString, XddParameter> limits; ///< templates of limits by ID, of which only these count
    QHash<QString, XddType> types;       ///< by ID
    /// Device, file and commissioning, by the keys of EDS and DCF files (edskeys.h).
    QMap<QString, XddInformation> information;
};
