// The parameter groups of the J1939 protocol itself, which need no signals from a project.
#pragma once

#include <QtGlobal>

/// Parameter group numbers (PGN).
namespace ParameterGroup
{

constexpr quint32 kSafetyHeader = 0x0E00;        ///< SHM of a safety data group (SAE J1939-76)
constexpr quint32 kMultiPg = 0x2500;             ///< several groups in one frame (SAE J1939-22)
constexpr quint32 kAcknowledgment = 0xE800;      ///< SAE J1939-21, 5.4.4
constexpr quint32 kRequest = 0xEA00;             ///< SAE J1939-21, 5.4.2
constexpr quint32 kTransportData = 0xEB00;       ///< TP.DT (SAE J1939-21, 5.10)
constexpr quint32 kTransportConnection = 0xEC00; ///< TP.CM (SAE J1939-21, 5.10)
constexpr quint32 kAddressClaimed = 0xEE00;      ///< carries the NAME (SAE J1939-81, 4.2.2)
constexpr quint32 kCommandedAddress = 0xFED8;    ///< SAE J1939-81, 4.2.3

/// Those that the stack handles itself, in the order in which a check reports them.
constexpr quint32 kOfStack[] = {
    kRequest,        kAddressClaimed, kTransportConnection, kTransportData,
    kAcknowledgment, kSafetyHeader,   kCommandedAddress,    kMultiPg,
};

constexpr bool isOfStack(quint32 group)
{
    for (const quint32 one : kOfStack) {
        if (one == group)
            return true;
    }
    return false;
}

} // namespace ParameterGroup
