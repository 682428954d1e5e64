// What a device description holds outside of its objects: device information, comments, and the
// number of PDOs.
#include "formats/edskeys.h"
#include "formats/edsvalues.h"
#include "import/edsimporter.h"
#include "support/accesstype.h"
#include "support/cohelper.h"
#include "support/numbers.h"
#include "support/objectindex.h"
#include "support/objectranges.h"
#include "support/printable.h"

#include <QSet>

namespace
{

/// An entry that becomes the description setting of this name.
struct InfoKey {
    const char *name;
    bool isNumber; ///< a comment may follow it
};

constexpr InfoKey kFileInfo[] = {
    {EdsKeys::kFileVersion, false},
    {EdsKeys::kFileRevision, false},
    {EdsKeys::kCreatedBy, false},
    {EdsKeys::kModifiedBy, false},
};

// Deliberate: "Dummy004" for the fourth, so that Dummy0004 of a file is not taken into a project
// with classic descriptions; held by tst_edsimporter.
constexpr InfoKey kDummyUsage[] = {
    {EdsKeys::kDummies[0], true}, {EdsKeys::kDummies[1], true}, {EdsKeys::kDummies[2], true},
    {"Dummy004", true},           {EdsKeys::kDummies[4], true}, {EdsKeys::kDummies[5], true},
    {EdsKeys::kDummies[6], true},
};

constexpr InfoKey kDeviceInfo[] = {
    {EdsKeys::kVendorName, false},  {EdsKeys::kProductName, false}, {EdsKeys::kOrderCode, false},
    {EdsKeys::kLssSupported, true}, {EdsKeys::kBaudRates[0], true}, {EdsKeys::kBaudRates[1], true},
    {EdsKeys::kBaudRates[2], true}, {EdsKeys::kBaudRates[3], true}, {EdsKeys::kBaudRates[4], true},
    {EdsKeys::kBaudRates[5], true}, {EdsKeys::kBaudRates[6], true}, {EdsKeys::kBaudRates[7], true},
    {EdsKeys::kNrOfRxPdo, true},    {EdsKeys::kNrOfTxPdo, true},
};

/// What else a project with portable descriptions takes, so that its own files lose nothing.
constexpr InfoKey kPortableDummyUsage[] = {{EdsKeys::kDummies[3], true}};
constexpr InfoKey kPortableDeviceInfo[] = {{EdsKeys::kSelfStarting, true}};

/// The entries of a section that stand in \a keys, under the spelling of the table.
template <size_t Count>
void readInfo(const DescriptionSource &file, const char *sectionName, const InfoKey (&keys)[Count],
              QMap<QString, QString> &result)
{
    const auto entries = file.section(sectionName).value_or(QVector<DescriptionSource::Entry>());
    for (const DescriptionSource::Entry &entry : entries) {
        for (const InfoKey &key : keys) {
            if (entry.key.compare(QLatin1String(key.name), Qt::CaseInsensitive) != 0)
                continue;
            result.insert(QLatin1String(key.name),
                          key.isNumber ? EdsValues::withoutComment(entry.value) : entry.value);
            quint32 number = 0;
            if (key.isNumber && !entry.value.isEmpty() &&
                !EdsValues::readNumber(entry.value, number))
                file.warn(file.rules().value, entry.line, [&] {
                    return QStringLiteral("%1 %2 is no number, and is taken as it is")
                        .arg(entry.key, quotedWord(entry.value));
                });
        }
    }
}

/// The objects of the PDOs of one direction.
struct PdoObjects {
    ObjectRange parameters;
    ObjectRange mappings;
};

constexpr PdoObjects kReceivePdos = {ObjectRanges::kRpdoParameters, ObjectRanges::kRpdoMappings};
constexpr PdoObjects kTransmitPdos = {ObjectRanges::kTpdoParameters, ObjectRanges::kTpdoMappings};
constexpr quint32 kMaxPdos = 512;

/// Free places of a range of objects, the lowest ones first; those that \a preferred names come
/// before all others.
QList<quint16> freePlaces(const QList<quint16> &taken, const QList<quint16> &preferred)
{
    const QSet<quint16> takenPlaces(taken.begin(), taken.end());
    QSet<quint16> offered = takenPlaces;
    QList<quint16> places;
    const auto offer = [&](quint16 place) {
        if (!offered.contains(place))
            places.append(place);
        offered.insert(place);
    };
    for (const quint16 place : preferred)
        offer(place);
    for (quint16 place = 0; place < kMaxPdos; ++place)
        offer(place);
    return places;
}

} // namespace

EDSImporter::PromisedPdos EDSImporter::importFileDeviceInfo()
{
    QMap<QString, QString> values;
    readInfo(*source, EdsKeys::kFileInfo, kFileInfo, values);
    readInfo(*source, EdsKeys::kDummyUsage, kDummyUsage, values);
    readInfo(*source, EdsKeys::kDeviceInfo, kDeviceInfo, values);
    if (followsLetter) {
        readInfo(*source, EdsKeys::kDummyUsage, kPortableDummyUsage, values);
        readInfo(*source, EdsKeys::kDeviceInfo, kPortableDeviceInfo, values);
    }
    for (auto value = values.constBegin(); value != values.constEnd(); ++value)
        (void)database->setDescriptionSettingsValue(value.key(), value.value()); // logged there
    importGranularity();
    importComments();

    PromisedPdos promised;
    (void)EdsValues::readNumber(values.value(QLatin1String(EdsKeys::kNrOfRxPdo)),
                                promised.receive); // or 0
    (void)EdsValues::readNumber(values.value(QLatin1String(EdsKeys::kNrOfTxPdo)),
                                promised.transmit); // or 0
    return promised;
}

/// One of the project's own counts, unless it says that there is no mapping, or its descriptions
/// are portable.
void EDSImporter::importGranularity()
{
    constexpr quint32 kMostBits = 64;
    const QString key = QLatin1String(EdsKeys::kGranularity);
    const DescriptionSource::Entry stated =
        source->entry(EdsKeys::kDeviceInfo, EdsKeys::kGranularity);
    quint32 bits = 0;
    if (!hasTakenObject || !EdsValues::readNumber(stated.value, bits) || bits > kMostBits)
        return;
    const bool isNeeded =
        bits > 0 && Numbers::toUIntByPrefix(database->getDescriptionSettingsValue(key)) == 0;
    if (isNeeded || followsLetter)
        (void)database->setDescriptionSettingsValue(key, QString::number(bits)); // logged there
    if (!isNeeded)
        return;
    changes.addNote("import-granularity", stated.line, [bits] {
        return QStringLiteral("the granularity of %1 is taken, since the project has none")
            .arg(bits);
    });
}

void EDSImporter::importComments()
{
    const auto section = source->section(EdsKeys::kComments);
    if (!section)
        return;
    quint32 count = 0;
    bool hasCount = false;
    QMap<quint32, QString> lines;
    for (const DescriptionSource::Entry &entry : *section) {
        quint32 number = 0;
        if (entry.key.compare(QLatin1String(EdsKeys::kLines), Qt::CaseInsensitive) == 0)
            hasCount = EdsValues::readNumber(entry.value, count);
        else if (entry.key.startsWith(QLatin1String(EdsKeys::kLine), Qt::CaseInsensitive) &&
                 EdsValues::readNumber(entry.key.mid(4), number))
            lines.insert(number, entry.value);
        else
            source->warn(source->rules().line, entry.line, [&] {
                return quotedWord(entry.key + QLatin1Char('=') + entry.value) +
                       QLatin1String(" is no line of the comment, and is passed over: use Line1, "
                                     "Line2 and so on");
            });
    }
    QStringList comment;
    for (auto line = lines.constBegin(); line != lines.constEnd(); ++line) {
        if (line.key() > 0 && (!hasCount || line.key() <= count))
            comment.append(line.value());
    }
    (void)database->setDescriptionSettingsValue(QStringLiteral("Comment"),
                                                comment.join(QLatin1Char('\n'))); // logged there
}

void EDSImporter::createMissingPdos(PdoDirection direction, quint32 promised)
{
    const PdoObjects &objects = direction == PdoDirection::Receive ? kReceivePdos : kTransmitPdos;
    const auto placesFrom = [this](ObjectRange range) {
        QList<quint16> places;
        for (const quint16 index : database->getIndices(activeLine, range))
            places.append(index - range.first);
        return places;
    };
    const auto createFrom = [&](ObjectRange range, const QList<quint16> &preferred,
                                void (EDSImporter::*create)(quint8, quint16)) {
        const QList<quint16> taken = placesFrom(range);
        int missing = static_cast<int>(qMin(promised, kMaxPdos)) - taken.size();
        if (missing > 0)
            notePromise(direction, range, missing);
        for (const quint16 place : freePlaces(taken, preferred)) {
            if (missing <= 0)
                return;
            if (isInRange(range.first + place)) {
                (this->*create)(activeLine, range.first + place);
                --missing;
            }
        }
    };
    createFrom(objects.parameters, {},
               direction == PdoDirection::Receive ? &EDSImporter::createDefaultRpdo
                                                  : &EDSImporter::createDefaultTpdo);
    // A mapping belongs to the communication parameter of the same number.
    createFrom(objects.mappings, placesFrom(objects.parameters),
               &EDSImporter::createDefaultMapping);
}

void EDSImporter::notePromise(PdoDirection direction, ObjectRange range, int missing)
{
    const char *const key =
        direction == PdoDirection::Receive ? EdsKeys::kNrOfRxPdo : EdsKeys::kNrOfTxPdo;
    const DescriptionSource::Entry entry = source->entry(EdsKeys::kDeviceInfo, key);
    source->warn(source->rules().promise, entry.line, [&] {
        return QStringLiteral("%1 promises objects from 0x%2 on that the file lacks, and %3 "
                              "are made with default values: give them a use, or mend the "
                              "number")
            .arg(QLatin1String(key), Numbers::toHex(range.first, 4).toUpper(),
                 QString::number(missing));
    });
}

void EDSImporter::createDefaultRpdo(quint8 line, quint16 index)
{
    const int number = kReceivePdos.parameters.numberOf(index);
    addDefaultParameter(line, index, QStringLiteral("Receive PDO parameter %1").arg(number),
                        PdoParameter::kTransmissionType);
}

void EDSImporter::createDefaultTpdo(quint8 line, quint16 index)
{
    const int number = kTransmitPdos.parameters.numberOf(index);
    addDefaultParameter(line, index, QStringLiteral("Transmit PDO parameter %1").arg(number),
                        PdoParameter::kEventTimer);

    SubData time;
    time.dataType = CAN::typeNumber(CAN::CANopenDataType::Unsigned16);
    time.accessType = AccessType::kReadWrite;
    time.defaultValue = time.currentValue = QStringLiteral("0");
    time.name = QStringLiteral("Inhibit Time");
    addDefaultSub(line, index, PdoParameter::kInhibitTime, time);
    time.name = QStringLiteral("Event Timer");
    addDefaultSub(line, index, PdoParameter::kEventTimer, time);
}

/// The object and the subindices 0 to 2, which both directions have.
void EDSImporter::addDefaultParameter(quint8 line, quint16 index, const QString &name,
                                      quint8 lastSub)
{
    ObjectDataBase::INDEX_DATA_T object;
    object.objectCode = CANopen::ObjectCode::Record;
    object.name = name;
    (void)database->addIndex(line, index, object); // the store logs a failure

    SubData count;
    count.name = QStringLiteral("Number of Entries");
    count.defaultValue = count.currentValue = count.upLimit = QString::number(lastSub);
    addDefaultSub(line, index, 0, count);

    SubData cobId;
    cobId.name = QStringLiteral("COB-ID");
    cobId.dataType = CAN::typeNumber(CAN::CANopenDataType::Unsigned32);
    cobId.accessType = AccessType::kReadWrite;
    cobId.defaultValue = QStringLiteral("0x80000000"); // the PDO does not exist yet
    addDefaultSub(line, index, PdoParameter::kCobId, cobId);

    SubData transmission;
    transmission.name = QStringLiteral("Transmission Type");
    transmission.accessType = AccessType::kReadWrite;
    transmission.defaultValue = transmission.currentValue = QStringLiteral("0xFF");
    addDefaultSub(line, index, PdoParameter::kTransmissionType, transmission);
}

void EDSImporter::createDefaultMapping(quint8 line, quint16 index)
{
    ObjectDataBase::INDEX_DATA_T object;
    object.objectCode = CANopen::ObjectCode::Record;
    object.name = QStringLiteral("Mapping Parameter");
    (void)database->addIndex(line, index, object); // the store logs a failure

    SubData count;
    count.name = QStringLiteral("Number of Entries");
    count.accessType = AccessType::kReadWrite;
    count.defaultValue = count.currentValue = count.upLimit = QStringLiteral("8");
    addDefaultSub(line, index, 0, count);

    for (quint8 sub = 1; sub <= 8; ++sub) {
        SubData entry;
        entry.name = QStringLiteral("Mappping Entry %1").arg(sub); // so spelled in all projects
        entry.dataType = CAN::typeNumber(CAN::CANopenDataType::Unsigned32);
        entry.accessType = AccessType::kReadWrite;
        entry.defaultValue = QStringLiteral("0x00000000");
        addDefaultSub(line, index, sub, entry);
    }
}

/// Adds a subindex; an upper limit that was not set becomes that of the type.
void EDSImporter::addDefaultSub(quint8 line, quint16 index, quint8 sub, SubData data)
{
    if (data.upLimit == SubData().upLimit)
        COHelper::getDefaultLimits(static_cast<CAN::CANopenDataType>(data.dataType), data.lowLimit,
                                   data.upLimit);
    (void)database->addSubIndex(line, index, sub, data); // the store logs a failure
}
