// Lists of objects that disagree with the sections, and words that are a slip of a known one.
#include "formats/edsoddities.h"

#include "formats/edskeys.h"
#include "formats/edsvalues.h"
#include "support/editdistance.h"
#include "support/numbers.h"
#include "support/objectranges.h"
#include "support/printable.h"

#include <QSet>

namespace
{

constexpr int kLongestKey = 40; ///< what is longer is no slip
constexpr int kShortestKey = 4;
constexpr int kMostLookups = 500;

QString lettersOf(const QString &word)
{
    QString letters;
    for (const QChar character : word) {
        if (!character.isDigit())
            letters += character.toLower();
    }
    return letters;
}

QStringList words(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts)
        list << QLatin1String(text);
    return list;
}

template <size_t Count>
QStringList words(const char *const (&texts)[Count])
{
    QStringList list;
    for (const char *text : texts)
        list << QLatin1String(text);
    return list;
}

QStringList objectKeys()
{
    return words({EdsKeys::kParameterName, EdsKeys::kObjectType, EdsKeys::kSubNumber,
                  EdsKeys::kDataType, EdsKeys::kAccessType, EdsKeys::kDefaultValue,
                  EdsKeys::kLowLimit, EdsKeys::kHighLimit, EdsKeys::kPdoMapping, EdsKeys::kObjFlags,
                  EdsKeys::kCompactSubObj, EdsKeys::kParameterValue, EdsKeys::kDenotation,
                  "UploadFile", "DownloadFile", "ParamRefd"});
}

/// A section about the file or the device, and the keys that it may have (CiA 306).
struct InfoSection {
    const char *name;
    QStringList keys;
};

const QVector<InfoSection> &infoSections()
{
    static const QVector<InfoSection> sections = {
        {EdsKeys::kFileInfo,
         words({EdsKeys::kFileName, EdsKeys::kFileVersion, EdsKeys::kFileRevision,
                EdsKeys::kEdsVersion, EdsKeys::kDescription, EdsKeys::kCreationTime,
                EdsKeys::kCreationDate, EdsKeys::kCreatedBy, EdsKeys::kModificationTime,
                EdsKeys::kModificationDate, EdsKeys::kModifiedBy, "LastEDS"})},
        {EdsKeys::kDeviceInfo,
         words({EdsKeys::kVendorName, EdsKeys::kVendorNumber, EdsKeys::kProductName,
                EdsKeys::kProductNumber, EdsKeys::kRevisionNumber, EdsKeys::kOrderCode,
                EdsKeys::kSimpleBootupSlave, EdsKeys::kSimpleBootupMaster, EdsKeys::kLssSupported,
                EdsKeys::kGranularity, EdsKeys::kDynamicChannelsSupported, EdsKeys::kGroupMessaging,
                EdsKeys::kNrOfRxPdo, EdsKeys::kNrOfTxPdo, "BaudRate_", "CompactPDO"}) +
             words(EdsKeys::kBaudRates)},
        {EdsKeys::kDummyUsage, {}},
    };
    return sections;
}

constexpr const char *kObjectLists[] = {"MandatoryObjects", "OptionalObjects",
                                        "ManufacturerObjects"};

QStringList sectionNames()
{
    return words({EdsKeys::kFileInfo, EdsKeys::kDeviceInfo, EdsKeys::kDummyUsage,
                  EdsKeys::kComments, "StandardDataTypes", "DynamicChannels", "SupportedModules",
                  EdsKeys::kDeviceComissioning, EdsKeys::kDeviceCommissioning, "ConnectedModules",
                  "Tools"}) +
           words(kObjectLists);
}

void noteSections(const EdsReader &reader, const EdsObjects &objects)
{
    EdsSlips slips(sectionNames());
    for (const int position : objects.others()) {
        const EdsSection &section = reader.sections()[position];
        const QString meant = slips.meant(section.name);
        if (!meant.isEmpty())
            reader.note("eds-section", section.line, [&] {
                return QStringLiteral("the section [%1] is passed over; did you mean [%2]")
                    .arg(section.name, meant);
            });
    }
}

/// Keys of sections about file and device, and sections of which only the last is read.
void noteInfo(const EdsReader &reader, const EdsObjects &objects, const InfoSection &info)
{
    const EdsSection *last = reader.section(QLatin1String(info.name));
    if (!last)
        return;
    EdsKeyCheck keys(reader, info.keys);
    for (const EdsEntry &entry : last->entries)
        keys.check(entry);
    for (const int position : objects.others()) {
        const EdsSection &section = reader.sections()[position];
        if (section.name == last->name && &section != last)
            reader.note("eds-twice", section.line, [&] {
                return QStringLiteral("the section [%1] is passed over, since it stands again in "
                                      "line %2: put them together")
                    .arg(QLatin1String(info.name), QString::number(last->line));
            });
    }
}

/// As in EdsValues, but without a copy of what nearly all files have here.
bool readNumber(const QStringRef &text, quint32 &number)
{
    const bool isHex = text.startsWith(QLatin1String("0x"));
    bool ok = false;
    number = isHex ? text.mid(2).toUInt(&ok, 16) : text.toUInt(&ok, 10);
    return ok || EdsValues::readNumber(text.toString(), number);
}

/// The lists of objects against the sections.
class ListCheck
{
public:
    ListCheck(const EdsReader &edsReader, const EdsObjects &edsObjects)
        : reader(edsReader), objects(edsObjects)
    {
    }

    void run()
    {
        for (const char *name : kObjectLists) {
            if (const EdsSection *section = reader.section(QLatin1String(name)))
                readList(*section);
        }
        if (listed.isEmpty())
            return;
        for (const EdsObject &object : objects.all()) {
            if (object.section >= 0 && ObjectRanges::kAssigned.contains(object.index) &&
                !listed.contains(object.index))
                unlisted.append(reader.sections()[object.section]);
        }
        noteUnlisted();
    }

private:
    void readList(const EdsSection &section)
    {
        quint32 promised = 0;
        quint32 count = 0;
        const EdsEntry *total = nullptr;
        for (const EdsEntry &entry : section.entries) {
            if (entry.key.compare(QLatin1String(EdsKeys::kSupportedObjects), Qt::CaseInsensitive) ==
                0)
                total = &entry;
            else if (readEntry(entry))
                ++count;
        }
        if (total && EdsValues::readNumber(total->value.toString(), promised) && promised != count)
            reader.note("eds-object-list", total->line, [&] {
                return QStringLiteral("SupportedObjects is %1, and the list has %2 objects")
                    .arg(QString::number(promised), QString::number(count));
            });
    }

    /// Is it one of an object?
    bool readEntry(const EdsEntry &entry)
    {
        quint32 number = 0;
        quint32 index = 0;
        if (!readNumber(entry.key, number) || !readNumber(entry.value, index) || index > 0xFFFF)
            return false;
        listed.insert(static_cast<quint16>(index));
        if (!objects.contains(static_cast<quint16>(index)))
            reader.note("eds-object-list", entry.line, [&] {
                return QStringLiteral("the object %1 is listed, and the file has no section [%2]: "
                                      "there is nothing to import of it")
                    .arg(quotedWord(entry.value.toString()), Numbers::toHex(index, 4).toUpper());
            });
        return true;
    }

    /// One warning for all: a file that lacks one list may hold hundreds of its objects.
    void noteUnlisted() const
    {
        constexpr int kMostNames = 3;
        if (unlisted.isEmpty())
            return;
        QStringList names;
        for (const EdsSection &section : unlisted.mid(0, kMostNames))
            names << QLatin1Char('[') + section.name + QLatin1Char(']');
        if (unlisted.size() > kMostNames)
            names << QStringLiteral("%1 more").arg(unlisted.size() - kMostNames);
        const QString last = names.takeLast();
        const QString all = names.isEmpty()
                                ? last
                                : names.join(QLatin1String(", ")) + QLatin1String(" and ") + last;
        reader.note("eds-object-list", unlisted.first().line, [&all] {
            return QStringLiteral("the lists of objects lack %1; all that has a section is "
                                  "imported")
                .arg(all);
        });
    }

    const EdsReader &reader;
    const EdsObjects &objects;
    QSet<quint16> listed;
    QVector<EdsSection> unlisted;
};

} // namespace

QString EdsSlips::meant(const QString &text)
{
    if (text.size() > kLongestKey || text.size() < kShortestKey)
        return QString();
    const auto former = found.constFind(text);
    if (former != found.constEnd())
        return *former;
    return found.size() < kMostLookups ? *found.insert(text, lookUp(text)) : QString();
}

QString EdsSlips::lookUp(const QString &text) const
{
    if (known.contains(text, Qt::CaseInsensitive))
        return QString();
    const QString nearest = nearestWord(text, known);
    return lettersOf(nearest) == lettersOf(text) ? QString() : nearest;
}

EdsKeyCheck::EdsKeyCheck(const EdsReader &edsReader) : EdsKeyCheck(edsReader, objectKeys()) {}

void EdsKeyCheck::check(const EdsEntry &entry)
{
    const QString meant = slips.meant(entry.key.toString());
    if (!meant.isEmpty())
        reader.note("eds-key", entry.line, [&] {
            return QStringLiteral("the key %1 is passed over; did you mean \"%2\"")
                .arg(quotedWord(entry.key.toString()), meant);
        });
}

void EdsOddities::note(const EdsReader &reader, const EdsObjects &objects)
{
    noteSections(reader, objects);
    for (const InfoSection &info : infoSections())
        noteInfo(reader, objects, info);
    ListCheck(reader, objects).run();
}
