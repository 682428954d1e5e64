// DBC files of a line.
#include "generators/descriptions/dbcgenerator.h"

#include "formats/dbckeys.h"
#include "formats/kvadblib.h"
#include "generators/addressclaim.h"
#include "generators/frames/canopenframes.h"
#include "generators/j1939settings.h"
#include "generators/outputname.h"
#include "store/linetype.h"
#include "store/projectfeatures.h"
#include "support/filereasons.h"
#include "support/helper.h"
#include "support/logging.h"
#include "support/problems.h"
#include "support/replacefile.h"
#include "support/runfiles.h"

#include <algorithm>
#include <cerrno>
#include <memory>

namespace
{

/// Identifiers of a device whose node-ID is not known are those of this one.
constexpr quint8 kExampleNodeId = 1;

struct DatabaseCloser {
    void operator()(KvaDbHnd database) const { (void)kvaDbClose(database); }
};
using Database = std::unique_ptr<KvaDb, DatabaseCloser>;

/// A part of the NAME as an attribute of the node.
struct NameRow {
    const char *setting;
    const char *attribute;
    int highest;
};

// clang-format off
constexpr NameRow kName[] = {
    {"addresscapable",   "NmJ1939AAC",              1},
    {"industrygroup",    "NmJ1939IndustryGroup",    7},
    {"vehiclesystem",    "NmJ1939System",           127},
    {"vehicleinstance",  "NmJ1939SystemInstance",   15},
    {"function",         "NmJ1939Function",         255},
    {"functioninstance", "NmJ1939FunctionInstance", 31},
    {"ecuinstance",      "NmJ1939ECUInstance",      7},
    {"manufacturercode", "NmJ1939ManufacturerCode", 2047},
    {"identitynumber",   "NmJ1939IdentityNumber",   2097151},
};
// clang-format on

QVector<Dbc::NodeNumber> numbersOfNode(const ObjectDataBase &store, quint8 line)
{
    const J1939Settings settings(store);
    QVector<Dbc::NodeNumber> numbers;
    numbers.append({DbcKeys::kStationAddress, AddressClaim::kNullAddress, 255,
                    AddressClaim::addressOf(store, line)});
    for (const NameRow &row : kName) {
        bool isNumber = false;
        const qint64 value = Numbers::toUIntByPrefix(settings.ofLine(row.setting, line), &isNumber);
        numbers.append({row.attribute, 0, row.highest, isNumber ? value : -1});
    }
    return numbers;
}

} // namespace

void Dbc::declareIdentify(ObjectDataBase &store, quint8 line)
{
    AddressClaim::declare(store, line, Frames::classicForm().reservedSpn);
}

QString Dbc::symbolName(const QString &name)
{
    const QChar *const characters = name.constData();
    QString symbol;
    QChar *changed = nullptr;
    for (int i = 0; i < name.size(); ++i) {
        const ushort code = characters[i].unicode();
        const bool canStand = (code >= '0' && code <= '9') || (code >= 'a' && code <= 'z') ||
                              (code >= 'A' && code <= 'Z') || code == '_' || code == '*';
        if (canStand)
            continue;
        if (!changed) {
            symbol = name;
            changed = symbol.data();
        }
        changed[i] = QLatin1Char('_');
    }
    return changed ? symbol : name; // most need no copy
}

// --- All files ---

void DbcFileGenerator::resetJob()
{
    const ProjectFeatures features = readProjectFeatures(*database);
    hasImplementationInfo = wantsImplementationInfo();
    isPortable = features.hasPortableDescriptions();
    isCanFd = features.hasCanFd();
}

const DbcForm &DbcFileGenerator::form() const
{
    return isPortable ? portableDbc() : classicDbc();
}

QString DbcFileGenerator::deviceName() const
{
    QString name;
    (void)database->getNodeName(activeLine, name);
    if (!name.isEmpty())
        return name;
    database->setDescriptionSettingsLine(activeLine);
    name = database->getDescriptionSettingsValue(QStringLiteral("ProductName"));
    return name.isEmpty() ? projectName : name;
}

void DbcFileGenerator::writeFiles()
{
    qCDebug(lcGenerator) << "DBC prprae output";
    const QString target = targetFile();
    KvaDbHnd handle = nullptr;
    if (!Dbc::succeeded(kvaDbOpen(&handle), "open dbc Database")) {
        fail(QStringLiteral("Could not create output file."));
        return;
    }
    const Database owner(handle);
    QString temporaryName;
    QString reason;
    bool isKept = false;
    const auto write = [&](const QString &temporary) {
        temporaryName = temporary;
        QByteArray content;
        if (!writeDatabase(handle, temporary) ||
            (unchangedFiles && !Helper::readWholeFile(temporary, content))) {
            reason = FileReasons::ofSystem(errno);
            return false;
        }
        isKept = isUnchanged(target, content);
        return !isKept;
    };
    if (ReplaceFile::replace(target, ReplaceFile::Backup::None, write, &reason) || isKept)
        return RunFiles::noteWritten(target);
    const QString former = lastErrorString;
    fail(wasError
             ? former
             : QStringLiteral("Could not copy output file. %1 - %2").arg(temporaryName, target),
         target, reason);
}

bool DbcFileGenerator::writeDatabase(KvaDbHnd handle, const QString &file)
{
    if (!Dbc::succeeded(kvaDbCreate(handle, file, nullptr), "create dbc file") ||
        !Dbc::succeeded(kvaDbWriteFile(handle, file), "create dbc file")) {
        fail(QStringLiteral("Could not create output file."));
        return false;
    }
    emit progress(25);
    Dbc::Bus told = bus();
    told.withImplementation = hasImplementationInfo;
    told.isCanFd = isCanFd;
    Dbc::Network network(handle, form(), told);
    const Frames::Collected collected =
        frames({*database, *form().frames, activeLine,
                AddressClaim::addressOf(*database, activeLine), isCanFd, hasImplementationInfo});
    network.add(collected.frames);
    if (isPortable)
        tellOfLosses(network, collected);
    return Dbc::succeeded(kvaDbWriteFile(handle, file), "create dbc file");
}

void DbcFileGenerator::tellOfLosses(const Dbc::Network &network,
                                    const Frames::Collected &frames) const
{
    const struct {
        int count;
        const char *rule;
        const char *words;
    } losses[] = {
        {network.changedTexts(), "dbc-letters",
         "texts with letters that no DBC file can hold, which are written without their marks or "
         "as \"?\""},
        {network.clashingFrames(), "dbc-left-out",
         "frames left out whose identifier another frame has, with other signals"},
        {frames.unfitIdentifiers, "dbc-left-out",
         "frames left out whose identifier has more than 29 bits"},
        {frames.unfitSignals, "dbc-left-out", "signals left out that are not within their frame"},
    };
    for (const auto &loss : losses) {
        if (loss.count > 0)
            Problems::warning(loss.rule, targetFile(),
                              QStringLiteral("%1: %2").arg(QLatin1String(loss.words),
                                                           QString::number(loss.count)));
    }
}

// --- J1939 and raw CAN ---

DBCGenerator::DBCGenerator() : DbcFileGenerator(QStringLiteral("DBC File")) {}

QString DBCGenerator::testedFile() const
{
    return OutputName::path(outputDirectory, projectName, QStringLiteral(".dbc"));
}

QString DBCGenerator::targetFile() const
{
    return OutputName::path(outputDirectory, projectName, lineTail() + QLatin1String(".dbc"));
}

void DBCGenerator::resetJob()
{
    DbcFileGenerator::resetJob();
    isJ1939 = readLineType(*database, activeLine) != LineType::RawCan;
    if (isJ1939)
        AddressClaim::declare(*database, activeLine, form().frames->reservedSpn);
}

Dbc::Bus DBCGenerator::bus() const
{
    Dbc::Bus bus;
    bus.device = deviceName();
    bus.isJ1939 = isJ1939;
    if (isJ1939)
        bus.numbers = numbersOfNode(*database, activeLine);
    return bus;
}

Frames::Collected DBCGenerator::frames(const Frames::Source &source) const
{
    if (!isJ1939)
        return Frames::identifiersOf(source);
    database->cacheAllSpnDataForLine(activeLine);
    return Frames::groupsOf(source);
}

// --- CANopen ---

CanopenDbcGenerator::CanopenDbcGenerator() : DbcFileGenerator(QStringLiteral("CANopen DBC File")) {}

QString CanopenDbcGenerator::targetFile() const
{
    return OutputName::path(outputDirectory, projectName,
                            QStringLiteral("_%1_canopen.dbc").arg(activeLine));
}

Dbc::Bus CanopenDbcGenerator::bus() const
{
    Dbc::Bus bus;
    bus.device = deviceName();
    const auto nodeId = Frames::nodeIdOf(*database, activeLine);
    bus.comment =
        nodeId ? QStringLiteral("Node-ID %1").arg(*nodeId)
               : QStringLiteral("The device gets its node-ID when it starts; the identifiers are "
                                "those of node-ID %1")
                     .arg(kExampleNodeId);
    return bus;
}

Frames::Collected CanopenDbcGenerator::frames(const Frames::Source &source) const
{
    return Frames::canopenFramesOf(
        source, Frames::nodeIdOf(source.store, source.line).value_or(kExampleNodeId));
}
