// What the parser of device descriptions hands over: a record an object and one a subindex. Values
// are text in the form in which a project stores them.
#pragma once

#include "support/candatatype.h"
#include "support/pdomapping.h"

#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>

#include <optional>

/// A subindex; a plain variable hands over its own data as subindex 0.
struct CANopenSubindex {
    quint16 index = 0;
    quint8 subindex = 0;
    quint16 dataType = CAN::typeNumber(CAN::CANopenDataType::Unsigned8); ///< never 0
    QString accessType = QStringLiteral("ro");
    QString name;
    QVariant defaultValue;
    QString currentValue;      ///< DCF: ParameterValue
    QString denotation;        ///< DCF: display name
    QString lowLimit;          ///< empty if the file does not say
    QString upLimit;           ///< empty if the file does not say
    bool writeDefault = false; ///< the section gives a default value
    bool hasLimits = false;    ///< at least one of the limits is given
    bool refuseRead = false;   ///< ObjFlags: not to be read by a scan
    bool refuseWrite = false;  ///< ObjFlags: not to be written by a download
    bool pdoMapping = false;
    /// XDD, which says more than that it is mappable; elsewhere the access decides on that.
    std::optional<PDOMapping> exactMapping = std::nullopt;
    QString description; ///< the section's comment, line feeds between its lines
    int line = 0;        ///< of the file, from 1; 0 for none
};
Q_DECLARE_METATYPE(CANopenSubindex)

namespace CANopen
{

/// An object. For a compact one, whose members have no sections of their own, it holds all that is
/// needed to make them.
struct CANopenIndex {
    quint16 index = 0;
    ObjectCode objectCode = ObjectCode::Var;
    quint16 dataType = CAN::typeNumber(CAN::CANopenDataType::Unsigned8); ///< never 0
    QString name;
    quint8 compactSubObj = 0; ///< number of members of a compact object, 0 to 254
    QString defaultValue;     ///< of the members of a compact object
    bool flag = false;        ///< the section gives a default value
    bool statesValue = false; ///< the section has something that only a value has
    QString description;      ///< the section's comment, line feeds between its lines
    int line = 0;             ///< of the file, from 1; 0 for none

    CANopenSubindex member; ///< what is common to the members of a compact object
    /// Lists of a compact object by subindex; members without an entry are not in them.
    QMap<quint8, QString> memberNames;
    QMap<quint8, QString> memberValues; ///< DCF: ParameterValue of the member
    QMap<quint8, QString> memberDenotations;
};

} // namespace CANopen
Q_DECLARE_METATYPE(CANopen::CANopenIndex)
