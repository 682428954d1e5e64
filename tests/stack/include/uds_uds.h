/* Test stand-in for the diagnostic services of ISO 14229-1. */
#ifndef UDS_UDS_H
#define UDS_UDS_H 1

#include <iso_tp.h>

#define UDS_SUB_SESSION_DS 0x01u
#define UDS_SUB_SESSION_PRGS 0x02u
#define UDS_SUB_SESSION_EXTDS 0x03u
#define UDS_SUB_SESSION_SSDS 0x04u
#define UDS_SUB_SESSION_MANU_40 0x40u
#define UDS_SUB_RESET_HR 0x01u
#define UDS_SUB_RESET_KOFFONR 0x02u
#define UDS_SUB_RESET_SR 0x03u
#define UDS_ROUTINE_CTRL_START 0x01u
#define UDS_ROUTINE_CTRL_STOP 0x02u
#define UDS_ROUTINE_CTRL_REQ_RESULT 0x03u

typedef struct { UNSIGNED8 service, subFunction, sessions[16], sessionCount; } UDS_REQ_SESSION_TYPE_TABLE_T;
typedef struct { UNSIGNED8 service, subFunction, levels[16], levelCount; } UDS_SECURITY_LEVEL_TABLE_T;

typedef struct {
    UNSIGNED8 version;
    UNSIGNED8 clientCounts[STACK_LINES];
} UDS_SERVICE_INIT_VAL_T;

typedef struct {
    UNSIGNED32 physicalRequestId, physicalResponseId, functionalRequestId;
    UNSIGNED8 physicalRequestExtension, physicalResponseExtension, functionalRequestExtension;
    ISOTP_FORMAT_T format;
    const UDS_REQ_SESSION_TYPE_TABLE_T *sessions;
    UNSIGNED16 sessionRows;
    const UDS_SECURITY_LEVEL_TABLE_T *security;
    UNSIGNED16 securityRows;
    BOOL_T isServer;
} UDS_CONFIG_INIT_VAL_T;

RET_T udsStackInit_common(const UDS_SERVICE_INIT_VAL_T *values);
RET_T udsStackInit_line(LINE_FIRST const UDS_CONFIG_INIT_VAL_T *values);

#endif /* UDS_UDS_H */
