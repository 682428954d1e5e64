// From sections to records: which sections make up an object, and what their entries mean.
#include "formats/edsparser.h"

#include "formats/edskeys.h"
#include "formats/edsobjects.h"
#include "formats/edsoddities.h"
#include "formats/edsvalues.h"
#include "support/cohelper.h"
#include "support/numbers.h"
#include "support/printable.h"

#include <array>
#include <optional>
#include <utility>

namespace
{

constexpr quint8 kMaxMembers = 254; // CiA 301: subindex 255 describes the structure

using Kind = EdsAddress::Kind;

enum Field {
    ParameterName,
    ObjectType,
    DataType,
    AccessType,
    DefaultValue,
    LowLimit,
    HighLimit,
    PDOMappable,
    ObjFlags,
    SubNumber,
    CompactSubObj,
    ParameterValue,
    Denotation,
    FieldCount
};

/// The keys in the order of Field.
const QLatin1String kFieldKeys[FieldCount] = {
    QLatin1String(EdsKeys::kParameterName), QLatin1String(EdsKeys::kObjectType),
    QLatin1String(EdsKeys::kDataType),      QLatin1String(EdsKeys::kAccessType),
    QLatin1String(EdsKeys::kDefaultValue),  QLatin1String(EdsKeys::kLowLimit),
    QLatin1String(EdsKeys::kHighLimit),     QLatin1String(EdsKeys::kPdoMapping),
    QLatin1String(EdsKeys::kObjFlags),      QLatin1String(EdsKeys::kSubNumber),
    QLatin1String(EdsKeys::kCompactSubObj), QLatin1String(EdsKeys::kParameterValue),
    QLatin1String(EdsKeys::kDenotation),
};

/// The known entries of one section.
class Entries
{
public:
    /// What \a edsSection does not say is taken from \a fallback.
    Entries(const EdsReader &edsReader, const EdsSection &edsSection,
            const EdsSection *fallback = nullptr)
        : reader(edsReader), section(edsSection)
    {
        if (fallback)
            add(fallback->entries);
        add(section.entries);
    }

    const EdsSection &edsSection() const { return section; }

    /// Does the section describe a value?
    bool holdsData() const
    {
        return found[DataType] || found[AccessType] || found[DefaultValue] || found[ParameterValue];
    }

    QString text(Field field) const
    {
        return found[field] ? found[field]->value.toString() : QString();
    }

    int lineOf(Field field) const { return found[field]->line; }
    bool has(Field field) const { return found[field] && !found[field]->value.isEmpty(); }

    /// Those of the section that are none of the known ones.
    const QVector<const EdsEntry *> &unknown() const { return others; }

    /// A number; 0 if the entry is missing or empty, or told as being none.
    quint32 number(Field field) const
    {
        quint32 result = 0;
        const QString value = EdsValues::withoutComment(text(field));
        if (!value.isEmpty() && !EdsValues::readNumber(value, result))
            noteValue(field, "is no number, and counts as 0");
        return result;
    }

    QString name(const QString &missing) const
    {
        const QString given = text(ParameterName);
        return given.isEmpty() ? missing : given;
    }

    /// Nothing if there is no such entry, or no object code in it.
    std::optional<CANopen::ObjectCode> objectCode() const
    {
        const QString word = EdsValues::withoutComment(text(ObjectType));
        quint32 code = 0;
        const bool isNumber = EdsValues::readNumber(word, code);
        auto result = COHelper::string2objectCode(word);
        if (isNumber && code <= 0xFF)
            result = static_cast<CANopen::ObjectCode>(code);
        if (result != CANopen::ObjectCode::Null && !COHelper::objectCode2String(result).isEmpty())
            return result;
        if (!word.isEmpty())
            noteValue(ObjectType, "is no object code, and the sections of the object decide: use "
                                  "0x7 for a variable, 0x8 for an array or 0x9 for a record");
        return std::nullopt;
    }

    /// Never 0: what has no type that can be read is a byte, or a domain if \a code says so.
    quint16 dataType(CANopen::ObjectCode code) const
    {
        const QString value = EdsValues::withoutComment(text(DataType));
        quint32 type = 0;
        if (!EdsValues::readNumber(value, type))
            type = COHelper::mapDataTypeString(value);
        if (type > 0 && type <= 0xFFFF)
            return static_cast<quint16>(type);
        if (!value.isEmpty())
            noteValue(DataType, code == CANopen::ObjectCode::Domain
                                    ? "is no data type, and counts as DOMAIN"
                                    : "is no data type, and counts as UNSIGNED8");
        return static_cast<quint16>(code == CANopen::ObjectCode::Domain
                                        ? CAN::CANopenDataType::Domain
                                        : CAN::CANopenDataType::Unsigned8);
    }

    QString accessType() const
    {
        const QString word = EdsValues::withoutComment(text(AccessType));
        const QString result = COHelper::normalizeAccessType(word);
        if (!word.isEmpty() && !result.startsWith(word, Qt::CaseInsensitive))
            noteValue(AccessType, "is no access type, and counts as ro: use const, ro, rw, wo, "
                                  "rwr or rww");
        return result;
    }

    /// Warns of the value of an entry that is there; \a consequence goes on after it.
    void noteValue(Field field, const char *consequence) const
    {
        const EdsEntry &entry = *found[field];
        reader.note("eds-value", entry.line, [&] {
            return QStringLiteral("%1 %2 %3")
                .arg(entry.key.toString(), quotedWord(entry.value.toString()),
                     QLatin1String(consequence));
        });
    }

private:
    void add(const QVector<EdsEntry> &entries)
    {
        for (const EdsEntry &entry : entries) {
            const int field = fieldOf(entry.key);
            if (field == FieldCount) {
                others.append(&entry);
                continue;
            }
            const EdsEntry *former = std::exchange(found[size_t(field)], &entry);
            if (former && former >= entries.begin() && former->value != entry.value)
                noteTwice(*former, entry);
        }
    }

    static int fieldOf(const QStringRef &key)
    {
        for (int field = 0; field < FieldCount; ++field) {
            const QLatin1String known = kFieldKeys[field];
            // Nearly all files have the keys in this case, which is quicker to compare.
            if (key.size() == known.size() &&
                (key == known || key.compare(known, Qt::CaseInsensitive) == 0))
                return field;
        }
        return FieldCount;
    }

    void noteTwice(const EdsEntry &former, const EdsEntry &entry) const
    {
        reader.note("eds-twice", entry.line, [&] {
            return QStringLiteral("%1 takes the place of the one in line %2, which is %3: remove "
                                  "one of them")
                .arg(entry.key.toString(), QString::number(former.line),
                     quotedWord(former.value.toString()));
        });
    }

    const EdsReader &reader;
    const EdsSection &section;
    std::array<const EdsEntry *, FieldCount> found{};
    QVector<const EdsEntry *> others;
};

QString hexIndex(quint16 index)
{
    return Numbers::toHex(index, 4).toUpper();
}

/// Warns of a value that is no number though its type asks for one.
void checkNumber(const Entries &entries, Field field, const QString &normalized, quint16 dataType)
{
    if (!normalized.isEmpty() && !EdsValues::isOfType(normalized, dataType))
        entries.noteValue(field, "is no value of the data type, and is taken as it is");
}

/// The data of a section that describes a value: of a variable, a subindex, or a compact object.
CANopenSubindex readValueSection(const Entries &entries, CANopen::ObjectCode code,
                                 const QString &missingName)
{
    CANopenSubindex record;
    record.dataType = entries.dataType(code);
    record.accessType = entries.accessType();
    record.name = entries.name(missingName);
    const QString defaultValue = EdsValues::normalize(entries.text(DefaultValue), record.dataType);
    record.defaultValue = defaultValue;
    record.writeDefault = !defaultValue.isEmpty();
    record.currentValue = EdsValues::normalize(entries.text(ParameterValue), record.dataType);
    record.denotation = entries.text(Denotation);
    record.lowLimit = EdsValues::normalizeLimit(entries.text(LowLimit), record.dataType);
    record.upLimit = EdsValues::normalizeLimit(entries.text(HighLimit), record.dataType);
    record.hasLimits = !record.lowLimit.isEmpty() || !record.upLimit.isEmpty();
    const quint32 flags = entries.number(ObjFlags);
    record.refuseWrite = (flags & 1) != 0;
    record.refuseRead = (flags & 2) != 0;
    record.pdoMapping = entries.number(PDOMappable) != 0;
    record.description = entries.edsSection().comment;
    record.line = entries.edsSection().line;
    checkNumber(entries, DefaultValue, defaultValue, record.dataType);
    checkNumber(entries, ParameterValue, record.currentValue, record.dataType);
    checkNumber(entries, LowLimit, record.lowLimit, record.dataType);
    checkNumber(entries, HighLimit, record.upLimit, record.dataType);
    return record;
}

QMap<quint8, QString> readList(const EdsReader &reader, int position)
{
    QMap<quint8, QString> list;
    if (position < 0)
        return list;
    for (const EdsEntry &entry : reader.sections()[position].entries) {
        bool ok = false;
        const quint32 number = Numbers::toUIntByPrefix(entry.key.toString(), &ok);
        if (ok && number <= kMaxMembers && !entry.value.isEmpty())
            list.insert(static_cast<quint8>(number), entry.value.toString());
        else if (entry.key.compare(QLatin1String(EdsKeys::kNrOfEntries), Qt::CaseInsensitive) != 0)
            reader.note("eds-line", entry.line, [&] {
                return quotedWord(entry.key + QLatin1Char('=') + entry.value) +
                       QLatin1String(" is passed over: it is no subindex from 0 to 254 with its "
                                     "text");
            });
    }
    return list;
}

/// A variable carries one comment as object and as subindex 0, and descriptions made by this tool
/// hold it twice. It is taken once, so that it does not grow with every round.
QString withoutRepetition(const QString &comment)
{
    const int half = comment.size() / 2;
    const bool isTwice = comment.size() % 2 == 1 && comment[half] == QLatin1Char('\n') &&
                         comment.leftRef(half) == comment.midRef(half + 1);
    return isTwice ? comment.left(half) : comment;
}

CANopen::ObjectCode codeByShape(const EdsObject &sections, quint32 memberCount)
{
    for (const EdsObject::Sub &sub : sections.subs) {
        if (sub.number > 0)
            return CANopen::ObjectCode::Record;
    }
    return memberCount > 0 ? CANopen::ObjectCode::Array : CANopen::ObjectCode::Var;
}

bool isStructure(CANopen::ObjectCode code)
{
    return code == CANopen::ObjectCode::Array || code == CANopen::ObjectCode::Record;
}

/// Can the object's own section hold the value of subindex 0?
bool mayHoldValue(const EdsObject &sections, CANopen::ObjectCode code)
{
    return sections.section >= 0 && !isStructure(code) && code != CANopen::ObjectCode::DefStruct;
}

/// Makes the records of one object after the other.
class RecordMaker
{
public:
    RecordMaker(const EdsReader &edsReader, const EdsObjects &objects)
        : reader(edsReader), directory(objects), keys(edsReader)
    {
    }

    /// Must come before the subindices of the object, which use its lists.
    CANopen::CANopenIndex makeIndex(const EdsObject &sections)
    {
        CANopen::CANopenIndex record;
        record.index = sections.index;
        record.line =
            reader
                .sections()[sections.section < 0 ? sections.subs.first().section : sections.section]
                .line;
        record.memberNames = readList(reader, directory.listOf(sections.index, Kind::Names));
        record.memberValues = readList(reader, directory.listOf(sections.index, Kind::Values));
        record.memberDenotations =
            readList(reader, directory.listOf(sections.index, Kind::Denotations));
        names = record.memberNames;
        values = record.memberValues;
        denotations = record.memberDenotations;
        if (sections.section < 0) {
            record.name = QStringLiteral("unnamed object");
            record.objectCode = CANopen::ObjectCode::Record;
            reader.note("eds-no-object", record.line, [&] {
                return QStringLiteral("there is no section [%1] of the object: a record "
                                      "without a name is made for its subindices")
                    .arg(hexIndex(sections.index));
            });
            return record;
        }
        readObject(sections, record);
        return record;
    }

    CANopenSubindex makeSub(const EdsObject &sections, const CANopen::CANopenIndex &object,
                            const EdsObject::Sub &sub) const
    {
        const EdsSection &section = reader.sections()[sub.section];
        // Some tools write a subindex 0 without data after the variable that has them.
        const bool isBare = sub.number == 0 && mayHoldValue(sections, object.objectCode) &&
                            !Entries(reader, section).holdsData();
        const Entries entries(reader, section,
                              isBare ? &reader.sections()[sections.section] : nullptr);
        const auto code = entries.objectCode().value_or(CANopen::ObjectCode::Var);
        CANopenSubindex record =
            readValueSection(entries, code, QStringLiteral("unnamed subindex"));
        record.index = sections.index;
        record.subindex = sub.number;
        checkEntries(entries, record, code, !names.value(sub.number).isEmpty());
        if (isBare && record.description.isEmpty())
            record.description = object.member.description;
        if (entries.text(ParameterName).isEmpty())
            record.name = names.value(sub.number, record.name);
        if (record.currentValue.isEmpty())
            record.currentValue = EdsValues::normalize(values.value(sub.number), record.dataType);
        if (record.denotation.isEmpty())
            record.denotation = denotations.value(sub.number);
        return record;
    }

private:
    void checkKeys(const Entries &entries) const
    {
        for (const EdsEntry *entry : entries.unknown())
            keys.check(*entry);
    }

    /// Of a section that describes a value: are its keys known, and none of them missing?
    void checkEntries(const Entries &entries, const CANopenSubindex &record,
                      CANopen::ObjectCode code, bool isNameListed) const
    {
        checkKeys(entries);
        const EdsSection &section = entries.edsSection();
        QStringList missing;
        QStringList taken;
        const auto miss = [&](Field field, const QString &substitute) {
            missing << kFieldKeys[field];
            taken << substitute;
        };
        if (!entries.has(ParameterName) && !isNameListed)
            miss(ParameterName, QStringLiteral("unnamed"));
        const bool isDomain = code == CANopen::ObjectCode::Domain;
        if (!entries.has(DataType) && !isDomain)
            miss(DataType, QStringLiteral("UNSIGNED8"));
        if (!entries.has(AccessType) && !isDomain)
            miss(AccessType, QStringLiteral("ro"));
        if (!missing.isEmpty())
            reader.note("eds-missing", section.line, [&] {
                return QStringLiteral("the section [%1] has no %2, and counts as %3")
                    .arg(section.name, missing.join(QLatin1String(" and no ")),
                         taken.join(QLatin1String(" and ")));
            });
        checkDataType(entries, record.dataType);
    }

    void checkDataType(const Entries &entries, quint16 type) const
    {
        // Devices may define types of their own, as objects below 0x1000.
        if (entries.has(DataType) && COHelper::index2DataTypeString(type).isEmpty() &&
            !directory.contains(type))
            entries.noteValue(DataType, "is neither a data type nor an object of the file that "
                                        "describes one, and is kept as it is");
    }

    void checkSubNumber(const EdsObject &sections, const Entries &entries,
                        CANopen::ObjectCode code) const
    {
        quint32 number = 0;
        if (!isStructure(code) || !EdsValues::readNumber(entries.text(SubNumber), number))
            return;
        quint32 highest = 0; // the structure at 255 may be counted or not
        for (const EdsObject::Sub &sub : sections.subs)
            highest = sub.number <= kMaxMembers ? qMax<quint32>(highest, sub.number) : highest;
        const auto count = static_cast<quint32>(sections.subs.size());
        // Some tools count the subindices, others do so without 0, or without gaps.
        for (const quint32 meant : {count, count - 1, highest, highest + 1}) {
            if (number == meant)
                return;
        }
        reader.note("eds-sub-number", entries.lineOf(SubNumber), [&] {
            return QStringLiteral("SubNumber is %1, and the file has %2 subindices of [%3], which "
                                  "are taken: add what is missing, or mend the number")
                .arg(QString::number(number), QString::number(count), hexIndex(sections.index));
        });
    }

    void readObject(const EdsObject &sections, CANopen::CANopenIndex &record) const
    {
        const EdsSection &section = reader.sections()[sections.section];
        const Entries entries(reader, section);
        const quint32 memberCount = entries.number(CompactSubObj);
        record.objectCode = entries.objectCode().value_or(codeByShape(sections, memberCount));
        record.member =
            readValueSection(entries, record.objectCode, QStringLiteral("unnamed object"));
        const bool hasNoValue = isStructure(record.objectCode)
                                    ? memberCount == 0
                                    : record.objectCode == CANopen::ObjectCode::DefStruct;
        if (hasNoValue)
            checkKeys(entries);
        else
            checkEntries(entries, record.member, record.objectCode, false);
        record.member.index = record.index;
        record.dataType = record.member.dataType;
        record.name = record.member.name;
        record.defaultValue = record.member.defaultValue.toString();
        record.flag = record.member.writeDefault;
        record.statesValue = entries.holdsData();
        if (record.objectCode == CANopen::ObjectCode::Array)
            record.dataType = elementType(sections, record.dataType);
        if (isStructure(record.objectCode)) {
            record.compactSubObj = static_cast<quint8>(qMin<quint32>(memberCount, kMaxMembers));
            for (QString &value : record.memberValues)
                value = EdsValues::normalize(value, record.dataType);
        } else {
            record.member.description = withoutRepetition(section.comment);
        }
        record.description = record.member.description;
        if (memberCount != record.compactSubObj)
            entries.noteValue(CompactSubObj, isStructure(record.objectCode)
                                                 ? "is more than an object has, and counts as 254"
                                                 : "is passed over, since only arrays and records "
                                                   "have members");
        if (memberCount == 0)
            checkSubNumber(sections, entries, record.objectCode);
    }

    /// The type of an array is that of its first element, whose section may stand anywhere.
    quint16 elementType(const EdsObject &sections, quint16 ownType) const
    {
        for (const EdsObject::Sub &sub : sections.subs) {
            if (sub.number == 1)
                return Entries(reader, reader.sections()[sub.section])
                    .dataType(CANopen::ObjectCode::Var);
        }
        return ownType;
    }

    const EdsReader &reader;
    const EdsObjects &directory;
    mutable EdsKeyCheck keys; ///< remembers what it looked up
    QMap<quint8, QString> names;
    QMap<quint8, QString> values;
    QMap<quint8, QString> denotations;
};

/// Does the object's own section hold the value of subindex 0?
bool hasOwnValue(const EdsObject &sections, CANopen::ObjectCode code)
{
    if (!mayHoldValue(sections, code))
        return false;
    for (const EdsObject::Sub &sub : sections.subs) {
        if (sub.number == 0)
            return false;
    }
    return true;
}

} // namespace

bool EdsParser::LoadEds(QString file)
{
    isRead = reader.read(file);
    if (!isRead)
        return false;
    const EdsObjects directory(reader);
    RecordMaker maker(reader, directory);
    for (const EdsObject &sections : directory.all()) {
        const CANopen::CANopenIndex record = maker.makeIndex(sections);
        emit newIndex(record);
        if (hasOwnValue(sections, record.objectCode))
            emit newSubIndex(record.member);
        for (const EdsObject::Sub &sub : sections.subs)
            emit newSubIndex(maker.makeSub(sections, record, sub));
    }
    EdsOddities::note(reader, directory);
    return !directory.all().isEmpty();
}
