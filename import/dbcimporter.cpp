// From the frames of a DBC file to a line of the project.
#include "import/dbcimporter.h"

#include "formats/dbcj1939.h"
#include "store/objectdatabase.h"
#include "store/projectfeatures.h"
#include "support/cohelper.h"
#include "support/linelist.h"
#include "support/numbers.h"
#include "support/printable.h"
#include "support/problems.h"

#include <algorithm>

namespace
{

constexpr quint32 kFrameBits = 64; // of one CAN frame
constexpr int kMostNodesShown = 30;

QString nodesText(const DbcFile &file)
{
    if (file.nodes.isEmpty())
        return QStringLiteral("the file names no nodes");
    QStringList names;
    for (const DbcNode &node : file.nodes.mid(0, kMostNodesShown))
        names << quotedWord(node.name);
    const int more = file.nodes.size() - names.size();
    return QStringLiteral("the file has %1%2")
        .arg(names.join(QLatin1String(", ")),
             more > 0 ? QStringLiteral(" and %1 more").arg(more) : QString());
}

/// A group that does not fit one frame.
bool isLong(const GroupRecord &group)
{
    quint32 bits = 0;
    for (const SpnData &spn : group.signalsOf) {
        const quint32 ofType = COHelper::getDataLengthBits(CAN::CANopenDataType(spn.dataType));
        bits += ofType != 0 ? ofType : spn.bitSize;
    }
    return bits > kFrameBits;
}

} // namespace

LineType DbcImporter::lineTypeOfFile()
{
    provideFile();
    const DbcFile &file = reader.file();
    const bool hasLine = database && database->existNode(activeLine);
    const LineType line = hasLine ? readLineType(*database, activeLine) : LineType();
    choosesType = !isKnown(line);
    const bool canBeJ1939 =
        std::any_of(file.messages.begin(), file.messages.end(),
                    [](const DbcMessage &message) { return message.isExtended; });
    const bool isJ1939 = DbcJ1939::isJ1939(file) || (carriesJ1939(line) && canBeJ1939) ||
                         (choosesType && DbcJ1939::isLikelyJ1939(file));
    return isJ1939 ? LineType::J1939 : LineType::RawCan;
}

void DbcImporter::provideFile()
{
    if (wasTried)
        return;
    wasTried = true;
    if (!reader.read(importFileName))
        refuse(reader.whyNotRead());
    else if (!ownNode.isEmpty() && DbcFrames::findNode(reader.file(), ownNode).isEmpty())
        refuse(QStringLiteral("it has no node %1; %2")
                   .arg(quotedWord(ownNode), nodesText(reader.file())));
}

void DbcImporter::doImport()
{
    const Job job(*this);
    if (abortRequested || !database)
        return;
    provideFile();
    const LineType type = readLineType(*database, activeLine);
    if (!lastError.isEmpty())
        return;
    if (!carriesJ1939(type) && type != LineType::RawCan)
        return refuse(
            QStringLiteral("line %1 is neither one of J1939 nor one of raw CAN").arg(activeLine));
    reader.tellProblems();
    importMessages(type);
}

void DbcImporter::refuse(const QString &reason)
{
    Problems::error("not-imported", importFileName,
                    QStringLiteral("could not be imported: %1").arg(reason));
    fail(QStringLiteral("Could not import %1: %2").arg(importFileName, reason));
}

void DbcImporter::importMessages(LineType type)
{
    const bool isJ1939 = carriesJ1939(type);
    DbcTally tally;
    DbcFrames frames(reader.file(),
                     isJ1939 ? DbcFrames::Protocol::J1939 : DbcFrames::Protocol::RawCan, ownNode,
                     &tally);
    avoidWhatStays(&frames, isJ1939);
    if (frames.choices().isEmpty()) {
        tally.tell(importFileName);
        Problems::error("nothing-imported", importFileName,
                        QStringLiteral("has no message that could be taken, and the line stays as "
                                       "it is"));
        return;
    }
    DbcText::Device device;
    device.isTold = readProjectFeatures(*database).hasPortableDescriptions();
    device.node = DbcFrames::findNode(reader.file(), ownNode);
    if (device.isTold)
        setName(device.node);
    if (!isJ1939) {
        frames.setDevice(device);
        tellOfProtocol();
        (void)database->putCanFrames(activeLine, frames.canFrames()); // the store logs a failure
        tally.tell(importFileName);
        return;
    }
    const auto identity = DbcIdentity::of(reader.file(), device.node, frames.choices(), &tally);
    device.address = DbcIdentity::addressIn(identity);
    frames.setDevice(device);
    const std::vector<GroupRecord> groups = frames.groups();
    (void)database->putGroups(activeLine, groups); // as above
    tally.tell(importFileName);
    setIdentity(identity);
    provideTransport(groups);
}

void DbcImporter::setName(const QString &node)
{
    QString name;
    (void)database->getNodeName(activeLine, name);
    const QVector<DbcNode> &nodes = reader.file().nodes;
    const auto own = std::find_if(nodes.begin(), nodes.end(),
                                  [&node](const DbcNode &one) { return one.name == node; });
    if (name.isEmpty() && own != nodes.end())
        (void)database->setNodeSqlValue(QStringLiteral("name"), own->longName,
                                        QString::number(activeLine)); // logged there
}

void DbcImporter::tellOfProtocol() const
{
    if (choosesType && DbcJ1939::isAllExtended(reader.file()))
        Problems::report({Problems::Level::Note, importFileName, 0,
                          QStringLiteral("does not say that it is of J1939, and is taken as raw "
                                         "CAN: if it is, import it into a J1939 line"),
                          QStringLiteral("dbc-protocol")});
}

void DbcImporter::avoidWhatStays(DbcFrames *frames, bool isJ1939) const
{
    FrameKeys replaced;
    for (const DbcFrames::Choice &choice : frames->choices())
        replaced.insert({choice.number, choice.direction});
    const QList<quint8> lines = database->getNodes();
    for (const quint8 line : lines) {
        database->visitLine(line, [frames](quint16, quint8, const SubIndexData &data) {
            if (!data.varName.isEmpty())
                frames->avoid(data.varName);
        });
        database->cacheAllSpnDataForLine(line);
        const bool isTarget = line == activeLine;
        for (const quint8 direction : {Direction::kReceived, Direction::kTransmitted}) {
            avoidGroups(frames, line, direction, isTarget && isJ1939 ? replaced : FrameKeys());
            avoidCanFrames(frames, line, direction, isTarget && !isJ1939 ? replaced : FrameKeys());
        }
    }
    database->clearAllCachedSpnData();
}

void DbcImporter::avoidGroups(DbcFrames *frames, quint8 line, quint8 direction,
                              const FrameKeys &replaced) const
{
    const QList<quint32> groups = database->getPGNs(line, direction, false);
    for (const quint32 group : groups) {
        if (replaced.contains({group, direction}))
            continue;
        const auto spns = database->getSPNRecords(line, group, direction);
        for (const SpnData &spn : spns)
            frames->avoid(spn);
    }
}

void DbcImporter::avoidCanFrames(DbcFrames *frames, quint8 line, quint8 direction,
                                 const FrameKeys &replaced) const
{
    const QList<quint32> ids = database->getCANIDs(line, direction);
    for (const quint32 id : ids) {
        if (replaced.contains({id, direction}))
            continue;
        const auto elements = database->getDataElementRecords(line, id, direction);
        for (const DataElementData &element : elements)
            frames->avoid(element.varName);
    }
}

void DbcImporter::setIdentity(const QVector<DbcIdentity::Setting> &identity)
{
    QStringList unknown;
    for (const DbcIdentity::Setting &setting : identity) {
        const QString key = QLatin1String(setting.key);
        const bool isEmpty =
            database->getJ1939SettingsValueLine(key, activeLine).trimmed().isEmpty();
        if (setting.value.isNull() && isEmpty)
            unknown << key;
        if (!setting.value.isNull() || isEmpty)
            setForLine(key, setting.value.isNull() ? QStringLiteral("0") : setting.value);
    }
    if (!unknown.isEmpty())
        Problems::warning("j1939-name", importFileName,
                          QStringLiteral("does not tell all of the NAME and address of line %1, "
                                         "which have 0 for it: set %2")
                              .arg(QString::number(activeLine), unknown.join(QLatin1String(", "))));
}

void DbcImporter::setForLine(const QString &key, const QString &value)
{
    const QString former = database->getJ1939SettingsValue(key);
    const bool isShared = !former.trimmed().isEmpty() && !LineList::isList(former);
    const QList<quint8> lines = database->getNodes();
    for (const quint8 line : lines) {
        if (isShared && line != activeLine && carriesJ1939(readLineType(*database, line)))
            (void)database->setJ1939SettingsValueLine(key, former,
                                                      line); // the store logs a failure
    }
    (void)database->setJ1939SettingsValueLine(key, value, activeLine); // as above
}

void DbcImporter::provideTransport(const std::vector<GroupRecord> &groups)
{
    const auto isOn = [this](const char *key) {
        return Numbers::toIntDecimal(database->getJ1939SettingsValue(QLatin1String(key))) > 0;
    };
    if (std::none_of(groups.begin(), groups.end(), isLong) || isOn("bamsupport") ||
        isOn("cmdtsupport"))
        return;
    (void)database->setJ1939SettingsValue(QStringLiteral("bamsupport"),
                                          QStringLiteral("1")); // the store logs a failure
    Problems::report({Problems::Level::Note, importFileName, 0,
                      QStringLiteral("has groups of more than 8 bytes, for which bamsupport is 1 "
                                     "now"),
                      QStringLiteral("j1939-transport")});
}
