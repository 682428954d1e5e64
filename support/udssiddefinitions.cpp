// Names of the diagnostic services.
#include "support/udssiddefinitions.h"

QMap<quint8, QString> UDSSIDDefinitions::getSIDNames()
{
    return {
        {16, QStringLiteral("DiagnosticSessionControl")},
        {17, QStringLiteral("ECUReset")},
        {20, QStringLiteral("ClearDiagnosticInformation")},
        {25, QStringLiteral("ReadDTCInformation")},
        {34, QStringLiteral("ReadDataByIdentifier")},
        {35, QStringLiteral("ReadMemoryByAddress")},
        {39, QStringLiteral("SecurityAccess")},
        {40, QStringLiteral("CommunicationControl")},
        {46, QStringLiteral("WriteDataByIdentifier")},
        {47, QStringLiteral("InputOutputControlByIdentifier")},
        {49, QStringLiteral("RoutineControl")},
        {52, QStringLiteral("RequestDownload")},
        {53, QStringLiteral("RequestUpload")},
        {54, QStringLiteral("TransferData")},
        {55, QStringLiteral("RequestTransferExit")},
        {61, QStringLiteral("WriteMemoryByAddress")},
        {62, QStringLiteral("TesterPresent")},
    };
}
