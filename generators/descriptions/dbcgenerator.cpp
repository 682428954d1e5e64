// The DBC file of a J1939 line.
#include "generators/descriptions/dbcgenerator.h"

#include "formats/dbckeys.h"
#include "formats/kvadblib.h"
#include "generators/addressclaim.h"
#include "generators/j1939settings.h"
#include "generators/outputname.h"
#include "support/cohelper.h"
#include "support/filereasons.h"
#include "support/helper.h"
#include "support/implementation.h"
#include "support/logging.h"
#include "support/replacefile.h"
#include "support/runfiles.h"

#include <cerrno>
#include <memory>

namespace
{

using Type = CAN::CANopenDataType;

// Deliberate: the number of the NAME's function, so that the reserved bit replaces it in the
// project; held by tst_dbcgenerator.
constexpr quint32 kReservedSpn = 2841;
constexpr quint8 kNullAddress = 0xFE;
constexpr int kClassicDlc = 8;
constexpr int kJ1939FrameFormat = 3; // "J1939PG"
constexpr int kCyclic = 0;
constexpr int kNoSendType = 8;
constexpr int kDelimitedStringBits = 8;

/// Names of J1939::SigType, by value.
constexpr const char *kSigTypes[] = {
    "Default",         "Range",        "RangeSigned",         "ASCII",
    "Discrete",        "Control",      "ReferencePGN",        "DTC",
    "StringDelimiter", "StringLength", "StringLengthControl",
};
constexpr const char *kSendTypes[] = {
    "cyclic",   "reserved", "cyclicIfActive", "reserved",      "reserved",
    "reserved", "reserved", "reserved",       "noMsgSendType",
};
constexpr const char *kFrameFormats[] = {"StandardCAN", "ExtendedCAN", "reserved", "J1939PG"};
constexpr const char *kImplementations[] = {"Managed", "Variable"};

/// Logs a call that failed; the file is then written without what the call would have added.
bool succeeded(KvaDbStatus status, const char *call)
{
    if (status != kvaDbOK)
        qCWarning(lcGenerator) << "Error" << call << int(status);
    return status == kvaDbOK;
}

struct DatabaseCloser {
    void operator()(KvaDbHnd database) const { (void)kvaDbClose(database); }
};
using Database = std::unique_ptr<KvaDb, DatabaseCloser>;

/// The attributes that messages and signals of the file may have.
class Attributes
{
public:
    Attributes(KvaDbHnd handle, bool withImplementation) : database(handle)
    {
        using Owner = KvaDbAttributeOwner;
        const auto protocol =
            define(DbcKeys::kProtocolType, Owner::Database, KvaDbAttributeType::String);
        KvaDbAttributeHnd attribute = nullptr;
        if (succeeded(kvaDbAddAttribute(database, protocol, &attribute), "kvaDbAddAttribute"))
            (void)kvaDbSetAttributeValueString(attribute, QStringLiteral("J1939"), 5);
        cycleTime = defineNumber(DbcKeys::kCycleTime, Owner::Message, 0, 3600000);
        sendType = defineWords("GenMsgSendType", Owner::Message, kSendTypes, kNoSendType);
        sigType = defineWords(DbcKeys::kSignalType, Owner::Signal, kSigTypes,
                              int(J1939::SigType::Default));
        frameFormat =
            defineWords(DbcKeys::kFrameFormat, Owner::Message, kFrameFormats, kJ1939FrameFormat);
        spn = defineNumber(DbcKeys::kSpn, Owner::Signal, 0, 524287);
        if (withImplementation) {
            implementation =
                defineWords(DbcKeys::kImplementation, Owner::Signal, kImplementations, 0);
            variable = define(DbcKeys::kVariableName, Owner::Signal, KvaDbAttributeType::String);
        }
        bitSize = defineNumber(DbcKeys::kTextBits, Owner::Signal, 64, 5120);
    }

    KvaDbAttributeDefHnd cycleTime = nullptr;
    KvaDbAttributeDefHnd sendType = nullptr;
    KvaDbAttributeDefHnd sigType = nullptr;
    KvaDbAttributeDefHnd frameFormat = nullptr;
    KvaDbAttributeDefHnd spn = nullptr;
    KvaDbAttributeDefHnd implementation = nullptr; ///< null: not in this file
    KvaDbAttributeDefHnd variable = nullptr;
    KvaDbAttributeDefHnd bitSize = nullptr;

private:
    KvaDbAttributeDefHnd define(const char *name, KvaDbAttributeOwner owner,
                                KvaDbAttributeType type)
    {
        KvaDbAttributeDefHnd definition = nullptr;
        (void)succeeded(kvaDbAddAttributeDefinition(database, &definition),
                        "kvaDbAddAttributeDefinition");
        (void)kvaDbSetAttributeDefinitionName(definition, QLatin1String(name));
        (void)kvaDbSetAttributeDefinitionOwner(definition, owner);
        (void)kvaDbSetAttributeDefinitionType(definition, type);
        return definition;
    }

    /// From 0 on.
    KvaDbAttributeDefHnd defineNumber(const char *name, KvaDbAttributeOwner owner, int defaultValue,
                                      int maximum)
    {
        const auto definition = define(name, owner, KvaDbAttributeType::Integer);
        (void)kvaDbSetAttributeDefinitionInt(definition, defaultValue, 0, maximum);
        return definition;
    }

    template <size_t N>
    KvaDbAttributeDefHnd defineWords(const char *name, KvaDbAttributeOwner owner,
                                     const char *const (&words)[N], int defaultValue)
    {
        const auto definition = define(name, owner, KvaDbAttributeType::Enumeration);
        int value = 0;
        for (const char *word : words)
            (void)kvaDbAddAttributeDefinitionEnum(definition, QLatin1String(word), value++);
        (void)kvaDbSetAttributeDefinitionEnumDefault(definition, defaultValue);
        return definition;
    }

    KvaDbHnd database;
};

void setNumber(KvaDbMessageHnd message, KvaDbAttributeDefHnd definition, int value)
{
    KvaDbAttributeHnd attribute = nullptr;
    if (succeeded(kvaDbAddMsgAttribute(message, definition, &attribute), "kvaDbAddMsgAttribute"))
        (void)succeeded(kvaDbSetAttributeValueInt(attribute, value), "kvaDbSetAttributeValueInt");
}

void setWord(KvaDbMessageHnd message, KvaDbAttributeDefHnd definition, int value)
{
    KvaDbAttributeHnd attribute = nullptr;
    if (succeeded(kvaDbAddMsgAttribute(message, definition, &attribute), "kvaDbAddMsgAttribute"))
        (void)kvaDbSetAttributeValueEnumeration(attribute, value);
}

KvaDbAttributeHnd addAttribute(KvaDbSignalHnd signal, KvaDbAttributeDefHnd definition)
{
    KvaDbAttributeHnd attribute = nullptr;
    (void)kvaDbAddSignalAttribute(signal, definition, &attribute);
    return attribute;
}

/// Bits of the signal in the project; strings have a size of their own.
int bitsOf(const ObjectDataBase::SPN &spn)
{
    const auto type = static_cast<Type>(spn.dataType);
    if (type == Type::StringAsterisk || type == Type::OctetString)
        return spn.bitSize;
    return COHelper::getDataLengthBits(type);
}

/// Adds a signal at \a position; the result is the number of bits that it takes there.
int addSignal(KvaDbMessageHnd message, const Attributes &attributes, const ObjectDataBase::SPN &spn,
              int position)
{
    int bits = bitsOf(spn);
    const bool isDelimited = static_cast<Type>(spn.dataType) == Type::StringAsterisk;
    if (spn.name.contains(QLatin1String("dummy")))
        return bits; // a gap
    // Deliberate: no signal without bits, such as a text that ends with NUL; readers refuse the
    // whole file for it. Held by tst_dbcgenerator.
    if (bits == 0 && !isDelimited)
        return 0;
    KvaDbSignalHnd signal = nullptr;
    (void)succeeded(kvaDbAddSignal(message, &signal), "kvaDbAddSignal");
    (void)succeeded(kvaDbSetSignalName(signal, Dbc::symbolName(spn.name)), "kvaDbSetSignalName");
    if (isDelimited) {
        (void)kvaDbSetAttributeValueInt(addAttribute(signal, attributes.bitSize), bits);
        bits = kDelimitedStringBits;
    }
    (void)succeeded(kvaDbSetSignalValueSize(signal, position, bits), "kvaDbSetSignalValueSize");
    if (!spn.description.isEmpty())
        (void)kvaDbSetSignalComment(signal, spn.description);
    (void)kvaDbSetAttributeValueInt(addAttribute(signal, attributes.spn), int(spn.number));
    if (isDelimited)
        (void)kvaDbSetAttributeValueEnumeration(addAttribute(signal, attributes.sigType),
                                                int(J1939::SigType::StringDelimiter));
    if (!attributes.implementation)
        return bits;
    const bool isVariable = spn.implementation != Implementation::kManagedVariable;
    (void)kvaDbSetAttributeValueEnumeration(addAttribute(signal, attributes.implementation),
                                            isVariable);
    if (isVariable)
        (void)kvaDbSetAttributeValueString(addAttribute(signal, attributes.variable), spn.varName,
                                           spn.varName.size());
    return bits;
}

quint32 messageId(const ObjectDataBase::PGN &group, quint32 pgn, quint8 direction, quint8 address)
{
    const quint32 prefix = (group.priority * 0x40000U + pgn) * 0x100U;
    // A received group: sent by anybody to this line.
    return direction == Direction::kReceived ? prefix + kNullAddress + address * 0x100U
                                             : prefix + address;
}

struct Line {
    const ObjectDataBase &store;
    quint8 number;
    quint8 address;
};

void addMessage(KvaDbHnd database, const Attributes &attributes, const Line &line, quint32 pgn,
                quint8 direction)
{
    ObjectDataBase::PGN group;
    (void)line.store.getPGNData(line.number, pgn, direction, group); // then the defaults stand
    KvaDbMessageHnd message = nullptr;
    (void)succeeded(kvaDbAddMsg(database, &message), "kvaDbAddMsg");
    (void)succeeded(kvaDbSetMsgName(message, Dbc::symbolName(group.name)), "kvaDbSetMsgName");
    (void)kvaDbSetMsgId(message, messageId(group, pgn, direction, line.address), KVADB_MESSAGE_EXT);
    if (!group.description.isEmpty())
        (void)kvaDbSetMsgComment(message, group.description);
    (void)succeeded(kvaDbSetMsgDlc(message, kClassicDlc), "kvaDbSetMsgDlc");
    setWord(message, attributes.frameFormat, kJ1939FrameFormat);
    if (group.cycleTimeMs != 0)
        setNumber(message, attributes.cycleTime, group.cycleTimeMs);
    setWord(message, attributes.sendType, group.cycleTimeMs == 0 ? kNoSendType : kCyclic);
    int position = 0;
    const QVector<ObjectDataBase::SPN> spns = line.store.getSPNRecords(line.number, pgn, direction);
    for (const ObjectDataBase::SPN &spn : spns)
        position += addSignal(message, attributes, spn, position);
}

} // namespace

void Dbc::declareIdentify(ObjectDataBase &store, quint8 line)
{
    AddressClaim::declare(store, line, kReservedSpn);
}

QString Dbc::symbolName(const QString &name)
{
    QString symbol = name;
    for (QChar &character : symbol) {
        const ushort code = character.unicode();
        const bool canStand = (code >= '0' && code <= '9') || (code >= 'a' && code <= 'z') ||
                              (code >= 'A' && code <= 'Z') || code == '_' || code == '*';
        if (!canStand)
            character = QLatin1Char('_');
    }
    return symbol;
}

quint8 Dbc::lineAddress(const ObjectDataBase &store, quint8 line)
{
    const J1939Settings settings(store);
    if (settings.text(QStringLiteral("startaddress")).isEmpty())
        return kNullAddress;
    return static_cast<quint8>(
        Numbers::toUIntByPrefix(settings.ofLine("startaddress", line, LineList::Beyond::First)));
}

DBCGenerator::DBCGenerator() : FileGenerator(QStringLiteral("DBC File")) {}

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
    hasImplementationInfo = wantsImplementationInfo();
    Dbc::declareIdentify(*database, activeLine);
}

void DBCGenerator::writeFiles()
{
    qCDebug(lcGenerator) << "DBC prprae output";
    const QString target = targetFile();
    KvaDbHnd handle = nullptr;
    if (!succeeded(kvaDbOpen(&handle), "open dbc Database")) {
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
        if (!writeDatabase(handle, temporary) || !Helper::readWholeFile(temporary, content)) {
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

bool DBCGenerator::writeDatabase(KvaDbHnd handle, const QString &file)
{
    if (!succeeded(kvaDbCreate(handle, file, nullptr), "create dbc file") ||
        !succeeded(kvaDbWriteFile(handle, file), "create dbc file")) {
        fail(QStringLiteral("Could not create output file."));
        return false;
    }
    emit progress(25);
    const Attributes attributes(handle, hasImplementationInfo);
    database->cacheAllSpnDataForLine(activeLine);
    const Line line{*database, activeLine, Dbc::lineAddress(*database, activeLine)};
    for (const quint8 direction : {Direction::kReceived, Direction::kTransmitted}) {
        const QList<quint32> groups = database->getPGNs(activeLine, direction, false);
        for (const quint32 pgn : groups)
            addMessage(handle, attributes, line, pgn, direction);
    }
    return succeeded(kvaDbWriteFile(handle, file), "create dbc file");
}
