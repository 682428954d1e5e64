// A whole project as plain records, without a database: what its YAML form is made of, and what two
// projects are compared by.
#pragma once

#include "store/records.h"

#include <QList>
#include <QMap>
#include <QStringList>

#include <map>
#include <vector>

/// An object with its subindices.
struct ObjectRecord {
    bool exists = true; ///< false: there are subindices only, without a row for the object
    IndexData data;
    std::map<quint8, SubIndexData> subs;
};

/// A frame with its signals. Those of a line are sorted by direction and number, and signals by
/// their place in the frame (those of CAN identifiers by number); of equal ones in the order of
/// their rows. A number may stand twice, even in one direction; then the first has the signals.
template <class Frame, class Signal>
struct FrameRecord {
    Frame frame;
    std::vector<Signal> signalsOf;
};

using GroupRecord = FrameRecord<PgnData, SpnData>;
using CanFrameRecord = FrameRecord<CanIdData, DataElementData>;

/// PDOs that the user fixed on a line; ascending, each once.
struct LockRecord {
    QList<quint16> pdos;
    QList<quint16> mappings;
};

struct LineRecord {
    NodeData node;
    std::map<quint16, ObjectRecord> objects;
    std::vector<GroupRecord> groups;
    std::vector<SpnData> otherSignals; ///< of groups that the line does not have
    std::vector<CanFrameRecord> frames;
    std::vector<DataElementData> otherElements; ///< of identifiers that the line does not have
    std::map<quint8, UdsServiceData> services;  ///< by service identifier
};

/// A node of another device, CiA 302.
struct VirtualNodeRecord {
    qint64 line = 0;
    qint64 node = 0;
    QString name;
};

struct LineGroupRecord {
    QString name;
    QString lines; ///< a comma list of numbers
};

using Settings = QMap<QString, QString>;

/// All that a project holds but the texts' numbers. Scratch lines are left out.
struct ProjectRecord {
    Settings general;
    Settings description; ///< with the lines' suffixes
    Settings energyBus;
    Settings misc;
    Settings j1939;
    std::map<quint8, LineRecord> lines;
    std::map<qint32, LineSignalData> lineSignals;
    QMap<qint32, QString> signalGroups;
    std::map<qint64, VirtualNodeRecord> virtualNodes;
    std::vector<LineGroupRecord> lineGroups; ///< in the order of their rows, as the connections
    std::vector<ConnectionData> connections;
    std::map<quint8, LockRecord> locks; ///< by line, also of lines that do not exist
};

/// How many subindices, frames and signals it has.
qint64 countOfRecords(const ProjectRecord &project);
