/* Test stand-in for raw CAN: the rows of its tables, its start structure, and each function that generated
 * sources call. */
#ifndef RAWCAN_RAWCAN_H
#define RAWCAN_RAWCAN_H 1

#include <co_datatype.h>
#include <iso_tp.h>
#include <stack_common.h>

typedef struct {
    void *variable;
    UNSIGNED8 bits;
    CORE_DATA_TYPE_T dataType;
} CORE_MAPPING_T;

typedef struct {
    UNSIGNED32 id;
    const CORE_MAPPING_T *mapping;
    UNSIGNED16 cycleTimeMs;
    UNSIGNED16 inhibitTimeMs;
    UNSIGNED16 mappingCount;
} RAWCAN_TR_CONFIG_T;

typedef struct {
    UNSIGNED32 id;
    UNSIGNED32 ignoreMask;
    const CORE_MAPPING_T *mapping;
    UNSIGNED16 mappingCount;
} RAWCAN_REC_CONFIG_T;

typedef struct {
    const RAWCAN_TR_CONFIG_T *transmitted;
    UNSIGNED16 transmitCount;
    const RAWCAN_REC_CONFIG_T *received;
    UNSIGNED16 receiveCount;
} RAWCAN_CONFIG_T;

typedef struct {
    UNSIGNED8 version;
#ifndef STACK_NEW_INIT
    UNSIGNED16 receiveBuffers[STACK_LINES];
    UNSIGNED16 transmitBuffers[STACK_LINES];
    UNSIGNED16 cobs[STACK_LINES];
#endif
    UNSIGNED16 received[STACK_LINES];
    UNSIGNED16 transmitted[STACK_LINES];
} RAWCAN_SERVICE_INIT_VAL_T;

RET_T rawcanStackInit_common(const RAWCAN_SERVICE_INIT_VAL_T *values);
RET_T rawcanStackInit_line(LINE_FIRST const RAWCAN_CONFIG_T *config);

/* --- Function that the generated source gives to the application --- */

RET_T rawcanStackInit(void);

#endif /* RAWCAN_RAWCAN_H */
