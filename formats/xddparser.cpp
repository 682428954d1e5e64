// From the elements of XML descriptions to records.
#include "formats/xddparser.h"

#include "formats/edsvalues.h"
#include "formats/xddreader.h"
#include "support/accesstype.h"
#include "support/cohelper.h"
#include "support/filereasons.h"
#include "support/numbers.h"
#include "support/pdomapping.h"
#include "support/printable.h"
#include "support/runfiles.h"

#include <QFile>

#include <algorithm>
#include <cctype>

namespace
{

using Type = CAN::CANopenDataType;

bool isStructure(CANopen::ObjectCode code)
{
    return code == CANopen::ObjectCode::Array || code == CANopen::ObjectCode::Record;
}

/// What the parameter states counts, then what its template does, then what stands in the object.
void fill(QString *value, const QString &of)
{
    if (value->isEmpty())
        *value = of;
}

/// \a text in the form that other descriptions have for such a type.
QString valueText(const QString &text, quint16 dataType)
{
    if (dataType == CAN::typeNumber(Type::Boolean) && text == QLatin1String("true"))
        return QStringLiteral("1");
    if (dataType == CAN::typeNumber(Type::Boolean) && text == QLatin1String("false"))
        return QStringLiteral("0");
    if (dataType != CAN::typeNumber(Type::OctetString))
        return text;
    const QString digits = QString(text).remove(QLatin1Char(' '));
    const bool isHex = std::all_of(digits.cbegin(), digits.cend(), [](QChar character) {
        return character.unicode() < 0x80 && std::isxdigit(character.unicode()) != 0;
    });
    return isHex ? digits : text;
}

/// Makes the records of one object after the other.
class RecordMaker
{
public:
    /// Parameters count until objects have taken texts of \a characters from them.
    RecordMaker(const XddFile &source, FileProblems *collector, qint64 characters)
        : file(source), problems(*collector), charactersLeft(characters)
    {
    }

    CANopen::CANopenIndex makeIndex(const XddObject &object)
    {
        CANopen::CANopenIndex record;
        record.index = object.index;
        record.line = object.line;
        record.objectCode = objectCode(object);
        record.member = makeValue(object, record.objectCode, QStringLiteral("unnamed object"),
                                  hasOwnValue(object, record.objectCode));
        record.dataType = record.member.dataType;
        record.name = record.member.name;
        record.defaultValue = record.member.defaultValue.toString();
        record.flag = record.member.writeDefault;
        record.statesValue = !object.dataType.isEmpty() || !object.access.isEmpty() ||
                             !object.defaultValue.isEmpty() || !object.parameterId.isEmpty();
        record.description = record.member.description;
        for (const XddEntry &sub : object.subs) {
            const bool isFirst = sub.subindex == 1;
            if (isFirst && record.objectCode == CANopen::ObjectCode::Array)
                record.dataType =
                    makeValue(sub, CANopen::ObjectCode::Var, QString(), false).dataType;
        }
        checkSubNumber(object, record.objectCode);
        return record;
    }

    CANopenSubindex makeSub(const XddEntry &sub)
    {
        return makeValue(sub, CANopen::ObjectCode::Var, QStringLiteral("unnamed subindex"), true);
    }

    /// Does the object's own element describe the value of subindex 0?
    static bool hasOwnValue(const XddObject &object, CANopen::ObjectCode code)
    {
        const bool hasNumber0 = std::any_of(object.subs.cbegin(), object.subs.cend(),
                                            [](const XddEntry &sub) { return sub.subindex == 0; });
        return !isStructure(code) && code != CANopen::ObjectCode::DefStruct && !hasNumber0;
    }

private:
    /// The record of an object or a subindex; told of what it lacks if it \a isValue.
    CANopenSubindex makeValue(const XddEntry &entry, CANopen::ObjectCode code,
                              const QString &missingName, bool isValue)
    {
        const XddParameter parameter = parameterOf(entry);
        XddValues values = parameter;
        mergeValues(&values, entry);
        CANopenSubindex record;
        record.index = entry.index;
        record.subindex = entry.subindex;
        record.line = entry.line;
        record.name = entry.name.isEmpty() ? values.name : entry.name;
        record.description = parameter.description;
        record.dataType = dataType(entry, parameter, code, isValue);
        record.accessType = access(values.access, entry, isValue, code);
        setMapping(&record, entry.mapping,
                   !parameter.access.isEmpty() && entry.access == AccessType::kReadWrite);
        setValues(&record, values, isValue ? entry.line : 0);
        setFlags(&record, entry);
        if (record.name.isEmpty()) {
            record.name = missingName;
            if (isValue)
                miss(entry, "name", "unnamed");
        }
        return record;
    }

    static void mergeValues(XddValues *values, const XddValues &entry)
    {
        for (QString XddValues::*field :
             {&XddValues::name, &XddValues::access, &XddValues::lowLimit, &XddValues::highLimit,
              &XddValues::defaultValue, &XddValues::actualValue, &XddValues::denotation})
            fill(&(values->*field), entry.*field);
    }

    /// That with what its template says; an empty one if the entry refers to none.
    XddParameter parameterOf(const XddEntry &entry)
    {
        if (entry.parameterId.isEmpty())
            return XddParameter();
        const auto found = file.parameters.constFind(entry.parameterId);
        if (found == file.parameters.constEnd() && file.types.contains(entry.parameterId)) {
            // Some files refer to the type, or to the member of a structure.
            XddParameter typed;
            typed.type.reference = entry.parameterId;
            return typed;
        }
        if (found == file.parameters.constEnd()) {
            problems.add("xdd-reference", entry.line, [&] {
                return QStringLiteral("there is no parameter %1, to which %2 refers")
                    .arg(quotedWord(entry.parameterId), wordsFor(entry));
            });
            return XddParameter();
        }
        XddParameter result = *found;
        const XddParameter pattern = file.parameters.value(result.templateId);
        mergeValues(&result, pattern);
        fill(&result.limitsId, pattern.limitsId);
        mergeValues(&result, file.limits.value(result.limitsId));
        fill(&result.description, pattern.description);
        if (result.type.type == 0 && !result.type.isBitString && result.type.reference.isEmpty())
            result.type = pattern.type;
        // The schema's default, where the object says nothing either.
        if (entry.access.isEmpty())
            fill(&result.access, AccessType::kReadOnly);
        return isAffordable(result, entry) ? result : XddParameter();
    }

    /// A small file may refer to a large parameter from each of its objects.
    bool isAffordable(const XddParameter &parameter, const XddEntry &entry)
    {
        const bool wasAffordable = charactersLeft >= 0;
        for (const QString &text :
             {parameter.name, parameter.description, parameter.lowLimit, parameter.highLimit,
              parameter.defaultValue, parameter.actualValue, parameter.denotation})
            charactersLeft -= text.size();
        if (charactersLeft < 0 && wasAffordable)
            problems.add("xdd-reference", entry.line, [&] {
                return QStringLiteral("the texts of the parameters to which objects refer take too "
                                      "much memory; from %1 on parameters are passed over")
                    .arg(wordsFor(entry));
            });
        return charactersLeft >= 0;
    }

    CANopen::ObjectCode objectCode(const XddObject &object)
    {
        using Code = CANopen::ObjectCode;
        bool ok = false;
        const uint number = Numbers::toUIntByPrefix(object.objectType, &ok);
        const auto code = static_cast<Code>(number);
        if (ok && number > 0 && number <= 0xFF && !COHelper::objectCode2String(code).isEmpty())
            return code;
        const bool hasMembers = std::any_of(object.subs.cbegin(), object.subs.cend(),
                                            [](const XddEntry &sub) { return sub.subindex > 0; });
        problems.add("xdd-value", object.line, [&] {
            return QStringLiteral("objectType %1 is no object code, and the subobjects of %2 "
                                  "decide")
                .arg(quotedWord(object.objectType), wordsFor(object));
        });
        return hasMembers ? Code::Record : Code::Var;
    }

    /// Never 0. The element of a parameter has not all types, so that the attribute counts first.
    quint16 dataType(const XddEntry &entry, const XddParameter &parameter, CANopen::ObjectCode code,
                     bool isValue)
    {
        bool ok = false;
        const uint number = entry.dataType.toUInt(&ok, 16);
        if (ok && number > 0 && number <= 0xFFFF)
            return static_cast<quint16>(number);
        if (!entry.dataType.isEmpty())
            problems.add("xdd-value", entry.line, [&] {
                return QStringLiteral("dataType %1 of %2 is none, and is passed over")
                    .arg(quotedWord(entry.dataType), wordsFor(entry));
            });
        const XddType type = simpleType(parameter.type);
        if (type.type != 0)
            return type.type;
        if (type.isBitString && !parameter.defaultValue.isEmpty())
            return CAN::typeNumber(Type::OctetString);
        if (type.isBitString || code == CANopen::ObjectCode::Domain)
            return CAN::typeNumber(Type::Domain);
        if (isValue)
            miss(entry, "data type", "UNSIGNED8");
        return CAN::typeNumber(Type::Unsigned8);
    }

    /// Types may be made of others, or, where a file is wrong, of themselves.
    XddType simpleType(XddType type) const
    {
        constexpr int kMostSteps = 16;
        for (int step = 0; step < kMostSteps && !type.reference.isEmpty(); ++step)
            type = file.types.value(type.reference);
        return type;
    }

    QString access(const QString &word, const XddEntry &entry, bool isValue,
                   CANopen::ObjectCode code)
    {
        const QString result = COHelper::normalizeAccessType(word);
        if (word.isEmpty()) {
            if (isValue && code != CANopen::ObjectCode::Domain)
                miss(entry, "access", "ro");
        } else if (result.compare(word.trimmed(), Qt::CaseInsensitive) != 0) {
            problems.add("xdd-value", entry.line, [&] {
                return QStringLiteral("access %1 of %2 is none, and counts as %3")
                    .arg(quotedWord(word), wordsFor(entry), result);
            });
        }
        return result;
    }

    /// The direction of the mapping goes into the access, as other descriptions have it. Where a
    /// parameter and its object both state one, \a isExact, there the words for the direction were
    /// at hand.
    static void setMapping(CANopenSubindex *record, const QString &word, bool isExact)
    {
        PDOMapping mapping;
        mapping.fromCSVString(word);
        record->pdoMapping = mapping != PDOMapping(PDOMappingType::No);
        record->exactMapping = mapping;
        if (isExact || record->accessType != AccessType::kReadWrite)
            return;
        if (mapping == PDOMapping(PDOMappingType::Tpdo))
            record->accessType = AccessType::kReadWriteRead;
        else if (mapping == PDOMapping(PDOMappingType::Rpdo))
            record->accessType = AccessType::kReadWriteWrite;
    }

    /// Tells of what is no value if there is a line.
    void setValues(CANopenSubindex *record, const XddValues &values, int line)
    {
        const QString defaultValue = EdsValues::normalize(
            valueText(values.defaultValue, record->dataType), record->dataType);
        record->defaultValue = defaultValue;
        record->writeDefault = !defaultValue.isEmpty();
        record->currentValue =
            EdsValues::normalize(valueText(values.actualValue, record->dataType), record->dataType);
        record->denotation = values.denotation;
        record->lowLimit = EdsValues::normalizeLimit(values.lowLimit, record->dataType);
        record->upLimit = EdsValues::normalizeLimit(values.highLimit, record->dataType);
        record->hasLimits = !record->lowLimit.isEmpty() || !record->upLimit.isEmpty();
        for (const QString &value :
             {defaultValue, record->currentValue, record->lowLimit, record->upLimit}) {
            if (line > 0 && !value.isEmpty() && !EdsValues::isOfType(value, record->dataType))
                problems.add("xdd-value", line, [&] {
                    return QStringLiteral("%1 is no value of the data type, and is taken as it is")
                        .arg(quotedWord(value));
                });
        }
    }

    void setFlags(CANopenSubindex *record, const XddEntry &entry)
    {
        bool ok = false;
        const uint flags = entry.flags.toUInt(&ok, 16);
        record->refuseWrite = (flags & 1) != 0;
        record->refuseRead = (flags & 2) != 0;
        if (!ok && !entry.flags.isEmpty())
            problems.add("xdd-value", entry.line, [&] {
                return QStringLiteral("objFlags %1 of %2 are none, and count as 0")
                    .arg(quotedWord(entry.flags), wordsFor(entry));
            });
    }

    void checkSubNumber(const XddObject &object, CANopen::ObjectCode code)
    {
        bool ok = false;
        const int number = object.subNumber.toInt(&ok);
        if (!ok || !isStructure(code) || number == object.subs.size())
            return;
        problems.add("xdd-sub-number", object.line, [&] {
            return QStringLiteral("subNumber is %1, and %2 has %3 subobjects, which are taken")
                .arg(QString::number(number), wordsFor(object),
                     QString::number(object.subs.size()));
        });
    }

    void miss(const XddEntry &entry, const char *what, const char *substitute)
    {
        problems.add("xdd-missing", entry.line, [&] {
            return QStringLiteral("%1 has no %2, and counts as %3")
                .arg(wordsFor(entry), QLatin1String(what), QLatin1String(substitute));
        });
    }

    static QString wordsFor(const XddEntry &entry)
    {
        return QStringLiteral("%1:%2").arg(Numbers::toHex(entry.index, 4).toUpper(),
                                           Numbers::toHex(entry.subindex, 2).toUpper());
    }

    const XddFile &file;
    FileProblems &problems;
    qint64 charactersLeft;
};

} // namespace

bool XddParser::load(const QString &fileName)
{
    file = XddFile();
    problems.begin(fileName);
    reasonLine = 0;
    reason = FileReasons::whyNotReadable(fileName);
    QFile source(fileName);
    if (reason.isEmpty() && !source.open(QIODevice::ReadOnly))
        reason = source.errorString();
    if (!reason.isEmpty())
        return false;
    RunFiles::noteRead(fileName);
    return parse(source.read(XddReader::kMostBytes + 1), fileName);
}

bool XddParser::parse(const QByteArray &bytes, const QString &origin)
{
    file = XddFile();
    problems.begin(origin);
    reasonLine = 0;
    if (bytes.size() > XddReader::kMostBytes) {
        reason = QStringLiteral("it is larger than %1 MiB").arg(XddReader::kMostBytes >> 20);
        return false;
    }
    XddReader reader(bytes, &file, &problems);
    (void)reader.read();
    reason = reader.whyNot();
    reasonLine = reader.lineOfReason();
    if (!reason.isEmpty())
        return false;
    constexpr int kFreeCharacters = 8 * 1024 * 1024;
    RecordMaker maker(file, &problems, bytes.size() + kFreeCharacters);
    for (const XddObject &object : qAsConst(file.objects)) {
        const CANopen::CANopenIndex record = maker.makeIndex(object);
        emit newIndex(record);
        if (RecordMaker::hasOwnValue(object, record.objectCode))
            emit newSubIndex(record.member);
        for (const XddEntry &sub : object.subs)
            emit newSubIndex(maker.makeSub(sub));
    }
    return true;
}

void XddParser::note(const char *rule, int line, const std::function<QString()> &words) const
{
    problems.add(rule, line, words);
}

void XddParser::tellProblems() const
{
    problems.tell();
}
