// One object and its subindices.
#include "check/modelchecker.h"
#include "check/modelchecker_p.h"
#include "store/writedefault.h"
#include "support/accesstype.h"
#include "support/cohelper.h"
#include "support/implementation.h"
#include "support/logging.h"
#include "support/numbers.h"
#include "support/objectindex.h"

#include <QRegularExpression>

#include <algorithm>
#include <limits>

using CAN::CANopenDataType;
using Check::Msg;

namespace
{

constexpr qint64 kLowest = std::numeric_limits<qint64>::min();
constexpr qint64 kHighest = std::numeric_limits<qint64>::max();

struct RangeRow {
    CANopenDataType type;
    qint64 low;
    qint64 high;
};

// clang-format off
// Deliberate: a type that is not listed takes no negative number, not even a signed one; held by
// tst_modelchecker "ranges".
constexpr RangeRow kRanges[] = {
    {CANopenDataType::Boolean,                0,             1},
    {CANopenDataType::Integer8,            -128,           127},
    {CANopenDataType::Integer16,         -32768,         32767},
    {CANopenDataType::Integer32,  -2147483648LL,    2147483647},
    {CANopenDataType::Unsigned8,              0,           255},
    {CANopenDataType::Unsigned16,             0,         65535},
    {CANopenDataType::Unsigned32,             0,  4294967295LL},
    {CANopenDataType::Real32,     -2147483648LL,      kHighest},
    {CANopenDataType::Integer64,        kLowest,      kHighest},
    {CANopenDataType::Unsigned24,             0,      16777215},
    {CANopenDataType::Unsigned40,             0, 1099511627775},
    {CANopenDataType::Unsigned48,             0, 281474976710655},
};
// clang-format on

/// What a safe message may carry.
struct SafeTypeRow {
    CANopenDataType type;
    quint8 bits;
    qint8 startBit; ///< in its first byte; -1: any
};

constexpr SafeTypeRow kSafeTypes[] = {
    {CANopenDataType::Unsigned8, 8, 0},   {CANopenDataType::Unsigned16, 16, 0},
    {CANopenDataType::Unsigned32, 32, 0}, {CANopenDataType::Unsigned24, 24, 0},
    {CANopenDataType::Unsigned2, 2, -1},  {CANopenDataType::Unsigned3, 3, -1},
    {CANopenDataType::Unsigned4, 4, -1},  {CANopenDataType::Unsigned10, 10, 6},
};

RangeRow rangeOf(CANopenDataType type)
{
    for (const RangeRow &row : kRanges) {
        if (row.type == type)
            return row;
    }
    return {type, 0, kHighest};
}

bool isWithin(const RangeRow &range, const QString &text)
{
    const qint64 number = Numbers::toLongLongByPrefix(text);
    return number >= range.low && number <= range.high;
}

/// A range without upper end is marked by the one character U+FFFF, for which SQLite gives U+FFFD
/// when it reads it back.
bool isOpenEnd(const QString &limit)
{
    return limit == QChar(0xFFFF) || limit == QChar(0xFFFD);
}

/// Generated C names the type of each entry that it describes; the stack has none for structures
/// and for numbers that are not assigned.
bool isNamelessInC(const SubIndexData &data)
{
    return data.implementation != Implementation::kVirtualObject &&
           COHelper::index2DataTypeShortString(data.dataType).isEmpty();
}

CANopenDataType typeOf(const SubIndexData &data)
{
    return static_cast<CANopenDataType>(data.dataType);
}

} // namespace

void ModelChecker::checkIndex(quint16 index, bool &corrected)
{
    IndexData object;
    (void)project->getIndexData(line, index, object); // then the defaults stand
    QList<quint8> subs = project->getSubIndices(line, index, 0);
    std::sort(subs.begin(), subs.end());
    const bool isVariable = object.objectCode == CANopen::ObjectCode::Var;
    if (!isVariable && subs.isEmpty()) {
        reportObject(Msg::SubIndicesMissing, index);
    } else if (!isVariable) {
        checkEntryCount(index, subs, corrected);
        checkSub0Attributes(index, corrected);
    }
    if (object.name.isEmpty())
        reportObject(Msg::ObjectNameMissing, index);
    if (isVariable && subs.size() > 1)
        reportObject(Msg::VariableHasSubIndices, index);
    project->visitSubIndices(line, index, 0, [&](quint8 sub, const SubIndexData &data) {
        checkSub(index, sub, data, object.objectCode);
    });
}

void ModelChecker::checkEntryCount(quint16 index, const QList<quint8> &subs, bool &corrected)
{
    const quint8 highest = subs.last();
    if (highest == static_cast<quint8>(valueOf(index, 0)) || !checkSub0Required(line, index))
        return;
    // Deliberate: an object without subindex 0 gets the message too, although there is nothing to
    // store the number in; held by tst_modelchecker "no_subindex_0".
    correct(corrected, Msg::Sub0ValueCorrected, {index, 0}, {hex4(index)}, [this, index, highest] {
        project->setSubIndexValue(line, index, 0, QString::number(highest));
    });
}

/// Must run after checkEntryCount(): the record that is written back here holds what that one has
/// corrected.
void ModelChecker::checkSub0Attributes(quint16 index, bool &corrected)
{
    SubIndexData data;
    if (project->getSubIndexData(line, index, 0, data)) {
        const bool required = checkSub0Required(line, index);
        if (!data.defaultInEds && required)
            report(Msg::Sub0DefaultFlagMissing, {index, 0}, {hex4(index)});
        const bool isVariable = data.implementation != Implementation::kManagedConst &&
                                data.implementation != Implementation::kVirtualObject;
        if (isVariable && required && data.accessType == AccessType::kConst) {
            correct(corrected, Msg::Sub0MadeConstant, {index, 0}, {hex4(index)},
                    [this, index, data]() mutable {
                        data.implementation = Implementation::kManagedConst;
                        project->addSubIndex(line, index, 0, data);
                    });
        }
    }
    if (!isDefaultWrittenToEds(data))
        report(Msg::Sub0DefaultNotInEds, {index, 0}, {hex4(index)});
}

bool ModelChecker::checkSub0Required(quint8 lineNumber, quint16 index) const
{
    if (index == ObjectIndex::kErrorHistory)
        return false; // there it is the number of errors that happened
    if (!ObjectRanges::isPdoMapping(index))
        return true;
    if (isDynamicMapping(lineNumber, index))
        return false;
    const QString value = project->getSubIndexValue(lineNumber, index, 0);
    return static_cast<quint8>(Numbers::toUIntByPrefix(value)) < PdoEntryCount::kSourceMpdo;
}

bool ModelChecker::isDynamicMapping(quint8 lineNumber, quint16 index) const
{
    SubIndexData data;
    return project->getSubIndexData(lineNumber, index, 0, data) &&
           data.accessType == AccessType::kReadWrite;
}

void ModelChecker::checkSub(quint16 index, quint8 subIndex, const SubIndexData &data,
                            CANopen::ObjectCode objectCode)
{
    if (!limitCheckEnabled && data.limitInEds && ObjectRanges::kAll.contains(index))
        reportSub(Msg::LimitCheckOff, index, subIndex);
    const bool hasMembers =
        objectCode == CANopen::ObjectCode::Array || objectCode == CANopen::ObjectCode::Record;
    if (hasMembers && data.name.isEmpty())
        reportSub(Msg::SubIndexNameMissing, index, subIndex);
    checkImplementation(index, subIndex, data);
    checkStrings(index, subIndex, data);
    if (typeOf(data) != CANopenDataType::VisibleString &&
        typeOf(data) != CANopenDataType::OctetString)
        checkRanges(index, subIndex, data);
}

qint32 ModelChecker::startTypeCheck(quint8 lineNumber, ObjectDataBase *store)
{
    const qint32 lineErrors = errorCount; // the J1939 check of the line adds to it
    startLine(lineNumber, store);
    const QList<quint16> objects = indicesOf(ObjectRanges::kAll);
    for (const quint16 index : objects) {
        project->visitSubIndices(line, index, 0, [&](quint8 sub, const SubIndexData &data) {
            if (isNamelessInC(data))
                reportSub(Msg::DatatypeUnknown, index, sub);
        });
    }
    const qint32 errors = errorCount;
    errorCount = lineErrors;
    return errors;
}

void ModelChecker::checkImplementation(quint16 index, quint8 subIndex, const SubIndexData &data)
{
    if (data.implementation == Implementation::kApplicationVariable) {
        const auto endsName = [](QChar ch) { return ch == ' ' || ch == ',' || ch == ';'; };
        if (data.varName.isEmpty())
            reportSub(Msg::VariableNameMissing, index, subIndex);
        else if (std::any_of(data.varName.begin(), data.varName.end(), endsName))
            reportSub(Msg::VariableNameInvalid, index, subIndex);
    }
    checkAccess(index, subIndex, data);
    if (data.implementation == Implementation::kManagedConst &&
        data.accessType.contains(QLatin1Char('w')))
        reportSub(Msg::ConstantIsWritable, index, subIndex);
}

void ModelChecker::checkAccess(quint16 index, quint8 subIndex, const SubIndexData &data)
{
    for (const QLatin1String known : AccessType::kAll) {
        if (data.accessType == known)
            return;
    }
    report(Msg::AccessTypeInvalid, {index, subIndex},
           {hex4(index), hex2(subIndex), data.accessType});
}

/// A managed variable is kept as a number.
void ModelChecker::checkStrings(quint16 index, quint8 subIndex, const SubIndexData &data)
{
    if (data.implementation != Implementation::kManagedVariable)
        return;
    switch (typeOf(data)) {
    case CANopenDataType::OctetString:
        return reportSub(Msg::OctetStringManaged, index, subIndex);
    case CANopenDataType::VisibleString:
        return reportSub(Msg::VisibleStringManaged, index, subIndex);
    case CANopenDataType::Utf8String:
        return reportSub(Msg::Utf8StringManaged, index, subIndex);
    default:
        return;
    }
}

void ModelChecker::checkRanges(quint16 index, quint8 subIndex, const SubIndexData &data)
{
    const bool isDomain = typeOf(data) == CANopenDataType::Domain;
    if (!isDomain && typeOf(data) != CANopenDataType::Utf8String) {
        const RangeRow range = rangeOf(typeOf(data));
        const bool isSound =
            isWithin(range, data.defaultValue) &&
            (!data.limitInEds || (isWithin(range, data.lowLimit) && isWithin(range, data.upLimit)));
        if (!isSound)
            reportSub(Msg::ValueOutOfType, index, subIndex);
    }
    if (typeOf(data) == CANopenDataType::Unknown || isNamelessInC(data))
        reportSub(Msg::DatatypeUnknown, index, subIndex);
    if (isDomain || !data.limitInEds)
        return;
    bool isNumber = false;
    const qint64 low = Numbers::toLongLongByPrefix(data.lowLimit);
    const qint64 high = Numbers::toLongLongByPrefix(data.upLimit);
    const qint64 value = Numbers::toLongLongByPrefix(data.defaultValue, &isNumber);
    if (isNumber && !isOpenEnd(data.upLimit) && (value < low || high < value))
        reportSub(Msg::DefaultOutOfLimits, index, subIndex);
}

bool ModelChecker::checkValues(CANopenDataType type, const QList<QVariant> &values)
{
    const RangeRow range = rangeOf(type);
    return std::all_of(values.cbegin(), values.cend(), [&range](const QVariant &value) {
        return isWithin(range, value.toString());
    });
}

bool ModelChecker::getLimitsByBits(quint8 bits, bool isUnsigned, qint64 &low, qint64 &high)
{
    const int valueBits = isUnsigned ? bits : bits - 1;
    high = valueBits >= 63 ? kHighest : valueBits < 1 ? 0 : (qint64(1) << valueBits) - 1;
    low = isUnsigned || bits == 0 ? 0 : -high - 1;
    return true;
}

bool ModelChecker::checkSafePGNStructure(quint8 lineNumber, quint32 pgn, quint8 direction) const
{
    quint32 position = 0;
    const QList<quint16> types = project->getSPNDataTypes(lineNumber, pgn, direction);
    for (const quint16 type : types) {
        const auto row = std::find_if(
            std::begin(kSafeTypes), std::end(kSafeTypes),
            [type](const SafeTypeRow &candidate) { return quint16(candidate.type) == type; });
        if (row == std::end(kSafeTypes) ||
            (row->startBit >= 0 && position % 8 != quint32(row->startBit)))
            return false;
        position += row->bits;
    }
    return true;
}

QString ModelChecker::disableCob(const QString &cobId)
{
    static const QRegularExpression pattern(QStringLiteral("(\\$nodeid\\+)*(0x[0-9A-Fa-f]+)"),
                                            QRegularExpression::CaseInsensitiveOption);
    constexpr quint32 kInvalid = 0x80000000;
    const QRegularExpressionMatch match = pattern.match(cobId);
    qCDebug(lcCheck) << "COB-ID" << match.capturedTexts();
    if (!match.hasMatch())
        return cobId;
    QString number = match.captured(2);
    const quint32 value = Numbers::toUIntByPrefix(number);
    if (!(value & kInvalid))
        number = QStringLiteral("0x%1").arg(value | kInvalid, 8, 16, QLatin1Char('0'));
    return match.captured(1) + number;
}
