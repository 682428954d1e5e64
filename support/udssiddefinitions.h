// The diagnostic services of ISO 14229-1 by number and name.
#pragma once

#include <QMap>
#include <QString>

namespace UDS
{

/// Service identifiers of ISO 14229-1.
enum class SID : quint8 {
    DiagnosticSessionControl = 16,
    ECUReset = 17,
    ClearDiagnosticInformation = 20,
    ReadDTCInformation = 25,
    ReadDataByIdentifier = 34,
    ReadMemoryByAddress = 35,
    SecurityAccess = 39,
    CommunicationControl = 40,
    WriteDataByIdentifier = 46,
    InputOutputControlByIdentifier = 47,
    RoutineControl = 49,
    RequestDownload = 52,
    RequestUpload = 53,
    TransferData = 54,
    RequestTransferExit = 55,
    WriteMemoryByAddress = 61,
    TesterPresent = 62,
};

/// What a new line serves, all in the default session.
constexpr SID kOfNewLine[] = {SID::DiagnosticSessionControl, SID::ECUReset, SID::TesterPresent,
                              SID::ReadDataByIdentifier, SID::WriteDataByIdentifier};
constexpr const char *kSessionsOfNewLine = "1";

/// A service with the sessions in which it may be asked for.
struct ServiceInSessions {
    SID sid;
    const char *sessions;
};

// clang-format off
/// What a line serves whose project was saved without any service.
constexpr ServiceInSessions kAllServices[] = {
    {SID::DiagnosticSessionControl, "1,2,3,4"}, {SID::ECUReset, "1,2,3,4"},
    {SID::TesterPresent, "1,2,3,4"}, {SID::ReadDataByIdentifier, "1,2,3,4"},
    {SID::WriteDataByIdentifier, "1,2,3,4"}, {SID::ReadMemoryByAddress, "1,2,3,4"},
    {SID::WriteMemoryByAddress, "1,2,3,4"}, {SID::ClearDiagnosticInformation, "1,2,3,4"},
    {SID::ReadDTCInformation, "1,2,3,4"}, {SID::RoutineControl, "1,2,3,4"},
    {SID::SecurityAccess, "2,3,4"}, {SID::CommunicationControl, "2,3,4"},
    {SID::InputOutputControlByIdentifier, "2,3,4"}, {SID::RequestDownload, "2,3,4"},
    {SID::RequestUpload, "2,3,4"}, {SID::TransferData, "2,3,4"}, {SID::RequestTransferExit, "2,3,4"},
};
// clang-format on

} // namespace UDS

class UDSSIDDefinitions
{
public:
    /// Service names by service identifier.
    static QMap<quint8, QString> getSIDNames();
};
