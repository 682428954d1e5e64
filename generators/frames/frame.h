// The frames of a bus as plain values: where they come from differs with the protocol. DBC files
// and the overview tell of them.
#pragma once

#include "formats/kvadblib.h"
#include "support/candatatype.h"

#include <QString>
#include <QVector>

#include <optional>

namespace Frames
{

/// Numbers of the attribute "VFrameFormat" of DBC files.
enum class FrameFormat {
    Standard = 0,
    Extended = 1,
    J1939 = 3,
    StandardFd = 14,
    ExtendedFd = 15,
};

struct ValueText {
    int number;
    const char *text;
};

/// A table of fixed content.
struct ValueTexts {
    constexpr ValueTexts() = default;
    template <size_t N>
    constexpr ValueTexts(const ValueText (&table)[N]) : first(table), last(table + N)
    {
    }
    const ValueText *begin() const { return first; }
    const ValueText *end() const { return last; }

    const ValueText *first = nullptr;
    const ValueText *last = nullptr;
};

/// A run of bits in a frame.
struct Signal {
    QString name; ///< as in the project, as all texts here
    QString comment;
    int start = 0;
    int bits = 0;
    KvaDbSignalType type = KvaDbSignalType::Unsigned;
    QString low; ///< limits in decimal digits; empty: what the bits can hold
    QString high;
    QString startValue; ///< in decimal digits; empty: 0
    ValueTexts values;

    // Of J1939.
    qint64 spn = -1;   ///< -1: none
    int toldBits = -1; ///< those of the project, where bits is another number; else -1
    J1939::SigType sigType = J1939::SigType::Default;

    // Where the value is kept, as far as it is an object.
    quint16 index = 0;
    quint8 sub = 0;
    quint16 dataType = 0;  ///< of the project
    bool isFiller = false; ///< bits without a meaning; see Source::keepsAll

    // For users who want to see how values are stored; -1: not told.
    int implementation = -1;
    QString variable;
};

/// What a frame is for, in the order in which people read of a device.
enum class FrameKind {
    Nmt,
    Sync,
    Emergency,
    Time,
    Rpdo,
    Tpdo,
    Sdo,
    Heartbeat,
    Group,      ///< of J1939
    Identifier, ///< of raw CAN
};

struct Frame {
    FrameKind kind = FrameKind::Identifier;
    QString name;
    QString comment;
    quint32 identifier = 0;
    bool isExtended = false;
    FrameFormat format = FrameFormat::Standard;
    int bytes = 0;
    bool isSent = false; ///< by the device
    bool isReceived = false;
    bool hasVariableLength = false;
    double cycleMs = 0; ///< 0: none
    double inhibitMs = 0;
    QVector<Signal> signalList;

    // Of CANopen.
    quint16 index = 0;       ///< the object of its parameters; 0: none
    bool isEnabled = true;   ///< see Source::keepsAll
    bool addsNodeId = false; ///< to what the project says of its identifier
    std::optional<quint32> transmissionType;
    quint32 eventTimerMs = 0; ///< 0: none

    // Of J1939.
    quint32 pgn = 0;
    quint8 priority = 0;
};

} // namespace Frames
