// From sections to records: which sections make up an object, and what their entries mean.
#include "formats/edsparser.h"

#include "formats/edskeys.h"
#include "formats/edsvalues.h"
#include "support/cohelper.h"
#include "support/numbers.h"

#include <array>
#include <optional>

namespace
{

constexpr quint8 kMaxMembers = 254; // CiA 301: subindex 255 describes the structure

enum class Kind { Other, Object, Subindex, Names, Values, Denotations };

/// What the name of a section says.
struct Address {
    Kind kind = Kind::Other;
    quint16 index = 0;
    quint8 subindex = 0;
};

struct SuffixRow {
    const char *suffix;
    Kind kind;
};

constexpr SuffixRow kSuffixes[] = {
    {"", Kind::Object},
    {"name", Kind::Names},
    {"value", Kind::Values},
    {"denotation", Kind::Denotations},
};

/// Reads the normalized name of a section; nothing if it is no part of the object dictionary.
Address addressOf(const QString &name)
{
    const int start = name.startsWith(QLatin1String("0x")) ? 2 : 0;
    const QStringRef digits = name.midRef(start, 4);
    const QStringRef suffix = name.midRef(start + 4);
    bool ok = digits.size() == 4 && digits[0] != QLatin1Char('+') && digits[0] != QLatin1Char('-');
    Address address;
    if (ok)
        address.index = digits.toUShort(&ok, 16);
    if (!ok || digits.contains(QLatin1Char('x')))
        return Address();
    for (const SuffixRow &row : kSuffixes) {
        if (suffix == QLatin1String(row.suffix))
            address.kind = row.kind;
    }
    if (suffix.startsWith(QLatin1String("sub"))) {
        const uint number = suffix.mid(3).toUInt(&ok, 16);
        address.kind = ok && number <= 0xFF ? Kind::Subindex : Kind::Other;
        address.subindex = static_cast<quint8>(number);
    }
    return address;
}

/// The sections of one object; numbers are positions in the reader's list.
struct ObjectSections {
    struct Sub {
        quint8 number;
        int section;
    };
    quint16 index = 0;
    int object = -1; ///< -1: the file has subindices only
    QVector<Sub> subs;
};

/// The objects of a file in the order in which they first appear.
class ObjectDirectory
{
public:
    explicit ObjectDirectory(const EdsReader &reader)
    {
        const QVector<EdsSection> &sections = reader.sections();
        for (int i = 0; i < sections.size(); ++i)
            add(reader, sections[i], i);
    }

    const QVector<ObjectSections> &objects() const { return all; }

    int listOf(quint16 index, Kind kind) const { return lists.value(listKey(index, kind), -1); }

private:
    static quint32 listKey(quint16 index, Kind kind)
    {
        return quint32(index) << 8 | static_cast<quint32>(kind);
    }

    ObjectSections &object(quint16 index)
    {
        const auto found = byIndex.constFind(index);
        if (found != byIndex.constEnd())
            return all[*found];
        byIndex.insert(index, all.size());
        all.append(ObjectSections());
        all.last().index = index;
        return all.last();
    }

    void add(const EdsReader &reader, const EdsSection &section, int position)
    {
        const Address address = addressOf(section.name);
        bool isRepeated = false;
        switch (address.kind) {
        case Kind::Object: {
            int &place = object(address.index).object;
            isRepeated = place >= 0;
            place = position;
            break;
        }
        case Kind::Subindex:
            isRepeated = addSub(address, position);
            break;
        case Kind::Other:
            if (!section.name.isEmpty() && section.name[0].isDigit())
                reader.note(section.line,
                            QStringLiteral("section [%1] is passed over").arg(section.name));
            break;
        default:
            lists.insert(listKey(address.index, address.kind), position);
        }
        if (isRepeated)
            reader.note(
                section.line,
                QStringLiteral("section [%1] takes the place of an earlier one").arg(section.name));
    }

    bool addSub(const Address &address, int position)
    {
        QVector<ObjectSections::Sub> &subs = object(address.index).subs;
        const quint32 key = quint32(address.index) << 8 | address.subindex;
        const auto found = subPlaces.constFind(key);
        if (found != subPlaces.constEnd()) {
            subs[*found].section = position;
            return true;
        }
        subPlaces.insert(key, subs.size());
        subs.append({address.subindex, position});
        return false;
    }

    QVector<ObjectSections> all;
    QHash<quint16, int> byIndex;
    QHash<quint32, int> subPlaces; ///< place of a subindex in its object's list
    QHash<quint32, int> lists;
};

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
    CompactSubObj,
    ParameterValue,
    Denotation,
    FieldCount
};

/// The keys in the order of Field.
const QLatin1String kFieldKeys[FieldCount] = {
    QLatin1String(EdsKeys::kParameterName),  QLatin1String(EdsKeys::kObjectType),
    QLatin1String(EdsKeys::kDataType),       QLatin1String(EdsKeys::kAccessType),
    QLatin1String(EdsKeys::kDefaultValue),   QLatin1String(EdsKeys::kLowLimit),
    QLatin1String(EdsKeys::kHighLimit),      QLatin1String(EdsKeys::kPdoMapping),
    QLatin1String(EdsKeys::kObjFlags),       QLatin1String(EdsKeys::kCompactSubObj),
    QLatin1String(EdsKeys::kParameterValue), QLatin1String(EdsKeys::kDenotation),
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

    /// A number; 0 if the entry is missing or empty, or logged as being none.
    quint32 number(Field field) const
    {
        quint32 result = 0;
        const QString value = EdsValues::withoutComment(text(field));
        if (!value.isEmpty() && !EdsValues::readNumber(value, result))
            noteValue(field);
        return result;
    }

    QString name(const QString &missing) const
    {
        const QString given = text(ParameterName);
        if (given.isEmpty())
            reader.note(section.line, QStringLiteral("[%1] has no name").arg(section.name));
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
            noteValue(ObjectType);
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
            noteValue(DataType);
        return static_cast<quint16>(code == CANopen::ObjectCode::Domain
                                        ? CAN::CANopenDataType::Domain
                                        : CAN::CANopenDataType::Unsigned8);
    }

    QString accessType() const
    {
        const QString word = EdsValues::withoutComment(text(AccessType));
        const QString result = COHelper::normalizeAccessType(word);
        if (!word.isEmpty() && !result.startsWith(word, Qt::CaseInsensitive))
            noteValue(AccessType);
        return result;
    }

private:
    void add(const QVector<EdsEntry> &entries)
    {
        for (const EdsEntry &entry : entries) {
            for (int field = 0; field < FieldCount; ++field) {
                const QLatin1String key = kFieldKeys[field];
                // Nearly all files have the keys in this case, which is quicker to compare.
                if (entry.key.size() == key.size() &&
                    (entry.key == key || entry.key.compare(key, Qt::CaseInsensitive) == 0))
                    found[size_t(field)] = &entry;
            }
        }
    }

    void noteValue(Field field) const
    {
        reader.note(found[field]->line, QStringLiteral("%1 cannot be %2")
                                            .arg(found[field]->key.toString(),
                                                 found[field]->value.left(80).toString()));
    }

    const EdsReader &reader;
    const EdsSection &section;
    std::array<const EdsEntry *, FieldCount> found{};
};

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
            reader.note(entry.line, QStringLiteral("the line is no entry of the list"));
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

CANopen::ObjectCode codeByShape(const ObjectSections &sections, quint32 memberCount)
{
    for (const ObjectSections::Sub &sub : sections.subs) {
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
bool mayHoldValue(const ObjectSections &sections, CANopen::ObjectCode code)
{
    return sections.object >= 0 && !isStructure(code) && code != CANopen::ObjectCode::DefStruct;
}

/// Makes the records of one object after the other.
class RecordMaker
{
public:
    RecordMaker(const EdsReader &edsReader, const ObjectDirectory &objects)
        : reader(edsReader), directory(objects)
    {
    }

    /// Must come before the subindices of the object, which use its lists.
    CANopen::CANopenIndex makeIndex(const ObjectSections &sections)
    {
        CANopen::CANopenIndex record;
        record.index = sections.index;
        record.memberNames = readList(reader, directory.listOf(sections.index, Kind::Names));
        record.memberValues = readList(reader, directory.listOf(sections.index, Kind::Values));
        record.memberDenotations =
            readList(reader, directory.listOf(sections.index, Kind::Denotations));
        names = record.memberNames;
        values = record.memberValues;
        denotations = record.memberDenotations;
        if (sections.object < 0) {
            record.name = QStringLiteral("unnamed object");
            record.objectCode = CANopen::ObjectCode::Record;
            reader.note(reader.sections()[sections.subs.first().section].line,
                        QStringLiteral("the subindex has no object, one is made"));
            return record;
        }
        readObject(sections, record);
        return record;
    }

    CANopenSubindex makeSub(const ObjectSections &sections, const CANopen::CANopenIndex &object,
                            const ObjectSections::Sub &sub) const
    {
        const EdsSection &section = reader.sections()[sub.section];
        // Some tools write a subindex 0 without data after the variable that has them.
        const bool isBare = sub.number == 0 && mayHoldValue(sections, object.objectCode) &&
                            !Entries(reader, section).holdsData();
        const Entries entries(reader, section,
                              isBare ? &reader.sections()[sections.object] : nullptr);
        const auto code = entries.objectCode().value_or(CANopen::ObjectCode::Var);
        CANopenSubindex record =
            readValueSection(entries, code, QStringLiteral("unnamed subindex"));
        record.index = sections.index;
        record.subindex = sub.number;
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
    void readObject(const ObjectSections &sections, CANopen::CANopenIndex &record) const
    {
        const EdsSection &section = reader.sections()[sections.object];
        const Entries entries(reader, section);
        const quint32 memberCount = entries.number(CompactSubObj);
        record.objectCode = entries.objectCode().value_or(codeByShape(sections, memberCount));
        record.member =
            readValueSection(entries, record.objectCode, QStringLiteral("unnamed object"));
        record.member.index = record.index;
        record.dataType = record.member.dataType;
        record.name = record.member.name;
        record.defaultValue = record.member.defaultValue.toString();
        record.flag = record.member.writeDefault;
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
            reader.note(section.line,
                        QStringLiteral("%1 members are not possible").arg(memberCount));
    }

    /// The type of an array is that of its first element, whose section may stand anywhere.
    quint16 elementType(const ObjectSections &sections, quint16 ownType) const
    {
        for (const ObjectSections::Sub &sub : sections.subs) {
            if (sub.number == 1)
                return Entries(reader, reader.sections()[sub.section])
                    .dataType(CANopen::ObjectCode::Var);
        }
        return ownType;
    }

    const EdsReader &reader;
    const ObjectDirectory &directory;
    QMap<quint8, QString> names;
    QMap<quint8, QString> values;
    QMap<quint8, QString> denotations;
};

/// Does the object's own section hold the value of subindex 0?
bool hasOwnValue(const ObjectSections &sections, CANopen::ObjectCode code)
{
    if (!mayHoldValue(sections, code))
        return false;
    for (const ObjectSections::Sub &sub : sections.subs) {
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
    const ObjectDirectory directory(reader);
    RecordMaker maker(reader, directory);
    for (const ObjectSections &sections : directory.objects()) {
        const CANopen::CANopenIndex record = maker.makeIndex(sections);
        emit newIndex(record);
        if (hasOwnValue(sections, record.objectCode))
            emit newSubIndex(record.member);
        for (const ObjectSections::Sub &sub : sections.subs)
            emit newSubIndex(maker.makeSub(sections, record, sub));
    }
    return !directory.objects().isEmpty();
}
