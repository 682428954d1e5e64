// What differs between two projects, as plain records.
#pragma once

#include <QMap>
#include <QString>
#include <QVector>

#include <vector>

/// What a change is about, in the order in which changes stand; what is nested goes with its owner.
enum class ChangeKind {
    Line,
    Setting,
    Object,
    Subindex,
    Group, ///< of J1939
    Signal,
    Frame, ///< a CAN identifier of a raw CAN line
    Element,
    Service, ///< a diagnostic service
    Lock,    ///< a PDO that the user fixed
    LineSignal,
    SignalGroup,
    Connection,
    VirtualNode,
    LineGroup,
};

/// A column, by the word that the YAML form has for it. Values are spelled as in YAML, on one line.
/// Of long ones the part around the difference stands there.
struct ChangedField {
    QString name;   ///< empty: the value of a setting
    QString before; ///< empty: there was none, for an empty text is ""
    QString after;  ///< likewise
};

struct ProjectChange {
    enum class Change { Added, Removed, Changed };

    ChangeKind kind = ChangeKind::Object;
    Change change = Change::Changed;
    int line = -1;      ///< -1: of the project, or of several lines
    qint64 number = -1; ///< of the object, group or CAN identifier that it is in
    int subindex = -1;
    QString what; ///< "0x2010:1 Speed"; names as the project has them
    QVector<ChangedField> fields;
};

/// The changes from an older project, sorted: those of the project first, then line by line.
struct ProjectComparison {
    QString with; ///< file of the older project, as the user named it
    std::vector<ProjectChange> changes;
    QMap<int, QString> titles; ///< of lines, such as "Line 0, CANopen"
};
