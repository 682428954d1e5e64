// A J1939 line: its settings, the NAME of the device, its groups and their signals.
#include "check/modelchecker.h"
#include "support/cohelper.h"
#include "support/implementation.h"
#include "support/numbers.h"

#include <algorithm>
#include <iterator>

using Check::Msg;
using Type = CAN::CANopenDataType;

namespace
{

constexpr quint8 kDirections[] = {Direction::kReceived, Direction::kTransmitted}; // report order
constexpr quint32 kFrameBits = 64; // of one CAN frame

/// A part of the device's NAME (SAE J1939-81, 4.1.1), or its address.
struct IdentityRow {
    const char *setting;
    Msg missing;
};

// clang-format off
constexpr IdentityRow kIdentity[] = {               // in reporting order
    {"identitynumber",   Msg::IdentityNumberMissing},
    {"manufacturercode", Msg::ManufacturerCodeMissing},
    {"ecuinstance",      Msg::EcuInstanceMissing},
    {"functioninstance", Msg::FunctionInstanceMissing},
    {"function",         Msg::FunctionMissing},
    {"vehiclesystem",    Msg::VehicleSystemMissing},
    {"vehicleinstance",  Msg::VehicleInstanceMissing},
    {"industrygroup",    Msg::IndustryGroupMissing},
    {"startaddress",     Msg::StartAddressMissing},
};

/// Types that a safe message cannot carry, in ranges of their numbers.
struct TypeRange {
    Type first;
    Type last;
};

constexpr TypeRange kUnsafeTypes[] = {
    {Type::Unknown,       Type::Unknown},
    {Type::VisibleString, Type::VisibleString},
    {Type::Domain,        Type::Domain},
    {Type::Unsigned40,    Type::Unsigned48},
    {Type::Unsigned64,    Type::Unsigned64},
    {Type::Unsigned5,     Type::Unsigned9},
    {Type::Unsigned11,    Type::Unsigned12},
    {Type::Unsigned19,    Type::StringAsterisk},
};
// clang-format on

bool canBeSafe(quint32 dataType)
{
    return std::none_of(std::begin(kUnsafeTypes), std::end(kUnsafeTypes), [=](TypeRange range) {
        return dataType >= CAN::typeNumber(range.first) && dataType <= CAN::typeNumber(range.last);
    });
}

quint32 bitsOf(const ObjectDataBase::SPN &spn)
{
    const quint8 bits = COHelper::getDataLengthBits(Type(spn.dataType));
    return bits ? bits : spn.bitSize;
}

} // namespace

qint32 ModelChecker::startJ1939Check(quint8 lineCount, quint8 lineNumber, ObjectDataBase *store,
                                     const QList<quint32> &specialPgns)
{
    Q_UNUSED(lineCount)
    line = lineNumber;
    setProject(store);
    project->cacheAllSpnDataForLine(line);
    checkJ1939Settings();
    checkIdentityOfLine();
    checkSpecialGroups(specialPgns);
    checkGroups();
    checkSignalVariables();
    return errorCount;
}

void ModelChecker::reportGroup(Msg id, quint32 pgn)
{
    report(id, {-1, -1, kLineUnderCheck, qint32(pgn)},
           {QString::number(pgn), QStringLiteral("%1").arg(pgn, 4, 16, QLatin1Char('0'))});
}

void ModelChecker::checkJ1939Settings()
{
    if (features.hasSortedCobs())
        report(Msg::SortedCobListWithJ1939, {});
    if (features.namesGroupFilter())
        report(Msg::GroupFilterWithoutCANopen, {});
    const QString cobs = project->getGeneralSettingsValue(QStringLiteral("additional_cob_count"));
    if (features.hasDynamicGroups() && cobs.trimmed().isEmpty())
        report(Msg::AdditionalCobsMissing, {});
}

void ModelChecker::checkIdentityOfLine()
{
    constexpr qint32 kMakersCode = 1193;
    for (const IdentityRow &row : kIdentity) {
        const QString value =
            project->getJ1939SettingsValueLine(QLatin1String(row.setting), line).trimmed();
        if (value.isEmpty())
            report(row.missing, {}, {QString::number(line)});
        if (row.missing == Msg::ManufacturerCodeMissing &&
            Numbers::toIntDecimal(value) == kMakersCode)
            report(Msg::ManufacturerCodeOfMaker, {});
        warnOfShortIdentity(row.setting);
    }
    warnOfShortIdentity("addresscapable");
}

void ModelChecker::warnOfShortIdentity(const char *setting) const
{
    warnOfShortList(QStringLiteral("J1939 setting '%1'").arg(QLatin1String(setting)),
                    project->getJ1939SettingsValue(QLatin1String(setting)), line,
                    QStringLiteral(", or give one value without comma for all lines"));
}

void ModelChecker::checkSpecialGroups(const QList<quint32> &specialPgns)
{
    for (const quint8 direction : kDirections) {
        const QList<quint32> groups = project->getPGNs(line, direction, false);
        for (const quint32 pgn : specialPgns) {
            if (groups.contains(pgn))
                reportGroup(Msg::PgnHandledByStack, pgn);
        }
    }
}

void ModelChecker::checkGroups()
{
    const bool supportsSafety = features.hasSafetyGroups();
    quint32 bits = 0;
    for (const quint8 direction : kDirections) {
        const QList<quint32> groups = project->getPGNs(line, direction, false);
        for (const quint32 pgn : groups)
            bits = checkGroup(pgn, direction, supportsSafety);
    }
    checkTransport(bits);
}

quint32 ModelChecker::checkGroup(quint32 pgn, quint8 direction, bool supportsSafety)
{
    ObjectDataBase::PGN group;
    (void)project->getPGNData(line, pgn, direction, group); // then the defaults stand
    const bool isSafe = group.isSafe != 0;
    quint32 bits = 0;
    const QVector<ObjectDataBase::SPN> spns = project->getSPNRecords(line, pgn, direction);
    for (const ObjectDataBase::SPN &spn : spns) {
        bits += bitsOf(spn);
        if (!isSafe)
            continue;
        if (!supportsSafety) {
            reportGroup(Msg::SafeGroupWithoutSupport, pgn);
            break;
        }
        if (spn.implementation == Implementation::kManagedVariable)
            reportGroup(Msg::SafeGroupHasManagedVariable, pgn);
        if (!canBeSafe(spn.dataType))
            reportGroup(Msg::SafeGroupTypeUnsupported, pgn);
    }
    if (isSafe && errorCount == 0 && !checkSafePGNStructure(line, pgn, group.direction))
        reportGroup(Msg::SafeGroupStructureUnsupported, pgn);
    if (isSafe && supportsSafety && bits > kFrameBits)
        reportGroup(Msg::SafeGroupTooLong, pgn);
    return bits;
}

/// Deliberate: the length of the last group alone decides, held by tst_modelchecker.
void ModelChecker::checkTransport(quint32 lastGroupBits)
{
    const bool supportsBam = features.hasBam();
    const bool supportsCmdt = features.hasCmdt();
    if (!supportsBam && !supportsCmdt && lastGroupBits > kFrameBits)
        report(Msg::TransportProtocolMissing, {});
    else if (supportsCmdt && static_cast<quint8>(decimalJ1939Setting("cmdtpackets")) == 0)
        report(Msg::TransportPacketCountZero, {});
}

void ModelChecker::checkSignalVariables()
{
    for (const quint8 direction : kDirections) {
        const QList<quint32> groups = project->getPGNs(line, direction, false);
        for (const quint32 pgn : groups) {
            const QVector<ObjectDataBase::SPN> spns = project->getSPNRecords(line, pgn, direction);
            for (const ObjectDataBase::SPN &spn : spns) {
                if (spn.implementation == Implementation::kApplicationVariable &&
                    spn.varName.trimmed().isEmpty())
                    report(Msg::SpnVariableMissing,
                           {-1, -1, kLineUnderCheck, qint32(pgn), qint32(spn.number)},
                           {QString::number(spn.number), QString::number(pgn)});
            }
        }
    }
}
