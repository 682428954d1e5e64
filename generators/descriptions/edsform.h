// What the forms of electronic data sheets and configuration files (CiA 306) differ in.
#pragma once

#include "generators/descriptions/descriptionform.h"
#include "store/records.h"

#include <QDateTime>
#include <QStringList>

#include <optional>

/// What a subindex is to its object.
enum class EdsRole {
    Value,
    Count,  ///< subindex 0 of an array or a record
    Domain, ///< all of an object of the code DOMAIN
};

/// The entries of a subindex that the forms write differently; what is absent is not written.
struct EdsSubTexts {
    quint16 dataType = 0;
    QString accessType;
    std::optional<quint32> pdoMapping;
    std::optional<QString> defaultValue;
    std::optional<QString> lowLimit;
    std::optional<QString> highLimit;
    std::optional<QString> parameterValue; ///< DCF
};

/// The functions take texts of the project, and give what stands in the file.
struct EdsForm : DescriptionForm {
    quint32 firstUnlisted = 0;        ///< optional objects from here on stand in no list
    bool countsDescribedPdos = false; ///< in this file; else those of the line
    bool listsAbsentObjects = false;  ///< the mandatory ones
    bool namesOwnFile = false;        ///< else the plain file of the project
    bool repeatsDescriptions = false; ///< of an object and its subindex 0 that have the same
    quint8 highestCount = 0;          ///< the largest value of subindex 0

    /// The value of an entry.
    QString (*entry)(const char *key, const QString &text) = nullptr;
    /// The same for a number from 0 to \a highest; and for one that is 0 or 1.
    QString (*number)(const QString &text, quint32 highest) = nullptr;
    QString (*flag)(const QString &text) = nullptr;
    QString (*orderCode)(const QString &text) = nullptr;
    QString (*day)(const QDateTime &moment) = nullptr;
    QString (*clock)(const QDateTime &moment) = nullptr;

    /// The lines of the file's comment, and those of an object's description.
    QStringList (*commentLines)(const QString &text) = nullptr;
    QStringList (*descriptionLines)(const QString &text) = nullptr;
    /// The user's own sections; \a isReserved tells whether a name, in lower case, is that of
    /// another section.
    using IsReserved = bool(const QString &name);
    QString (*ownSections)(const QString &text, IsReserved *isReserved) = nullptr;

    /// An index, or a subindex, in the name of a section.
    QString (*hex)(quint64 number, int digits) = nullptr;
    QString (*name)(const QString &text, const char *missing) = nullptr;
    CANopen::ObjectCode (*objectCode)(CANopen::ObjectCode code, bool hasMembers) = nullptr;
    EdsSubTexts (*texts)(const SubIndexData &data, EdsRole role, bool isConfiguration) = nullptr;
};

const EdsForm &classicEds();
const EdsForm &portableEds();
/// The portable form for files whose descriptions have all letters.
const EdsForm &portableXdd();
