// What a DBC file tells of a bus, as plain values: where they come from differs with the protocol.
#pragma once

#include "formats/kvadblib.h"
#include "support/candatatype.h"

#include <QString>
#include <QVector>

namespace Dbc
{

/// Numbers of the attribute "VFrameFormat".
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

    // For users who want to see how values are stored; -1: not told.
    int implementation = -1;
    QString variable;
};

struct Frame {
    QString name;
    QString comment;
    quint32 identifier = 0;
    bool isExtended = false;
    FrameFormat format = FrameFormat::Standard;
    int bytes = 0;
    bool isSent = false; ///< by the device
    bool isReceived = false;
    bool hasVariableLength = false;
    quint16 cycleTimeMs = 0; ///< 0: none
    QVector<Signal> signalList;
};

} // namespace Dbc
