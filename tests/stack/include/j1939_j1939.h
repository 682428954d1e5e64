/* Test stand-in for the J1939 services of the protocol stack: the rows of its tables, its start structures, and
 * each function that generated sources call. */
#ifndef J1939_J1939_H
#define J1939_J1939_H 1

#include <co_datatype.h>
#include <stack_common.h>
#ifdef J1939_CAM11_CAM21_SUPPORTED
#  include <j1939_cam11_cam21.h>
#endif

/* --- Mappings and groups --- */

typedef struct {
    void *variable;
    UNSIGNED16 bits;
    UNSIGNED32 spn;
    CORE_DATA_TYPE_T dataType;
#ifdef J1939_DYNAMIC_PGN
    UNSIGNED8 isChanged; /* at run time */
#endif
} J1939_MAPPING_T;

typedef enum {
    J1939_ATF_SAE_NONE, J1939_ATF_MANU_CYBERSEC_32, J1939_ATF_MANU_CYBERSEC_64, J1939_ATF_MANU_FUNC_SAFETY_32,
    J1939_ATF_MANU_FUNC_SAFETY_64, J1939_ATF_MANU_FUNC_CYB_SAFE_32
} J1939_TRAILER_FORMAT_T;
typedef enum {
    J1939_ADT_NONE, J1939_ADT_MANU_CYBERSEC, J1939_ADT_MANU_FUNC_SAFETY, J1939_ADT_MANU_FUNC_CYB_SAFE
} J1939_ASSURANCE_TYPE_T;
#define INVALID_VALUE 0xFF /* of either type */

typedef struct {
    UNSIGNED32 number;
    const J1939_MAPPING_T *mapping;
    UNSIGNED16 cycleTimeMs;
    UNSIGNED16 inhibitTimeMs;
    UNSIGNED8 priority;
    UNSIGNED16 mappingCount;
#ifdef CO_CANFD_SUPPORTED
    J1939_TRAILER_FORMAT_T trailerFormat;
    J1939_ASSURANCE_TYPE_T assuranceType;
    UNSIGNED8 assuranceDataSize;
#endif
} J1939_PGN_CONFIG_T;

/* --- Start structures --- */

typedef struct {
    const J1939_PGN_CONFIG_T *transmitGroups;
    UNSIGNED16 transmitCount;
    const J1939_PGN_CONFIG_T *receiveGroups;
    UNSIGNED16 receiveCount;
    const J1939_PGN_CONFIG_T *addressClaim;
    UNSIGNED8 startAddress;
} J1939_CONFIG_T;

typedef struct {
    UNSIGNED8 version;
#ifndef STACK_NEW_INIT
    UNSIGNED16 receiveBuffers[STACK_LINES];
    UNSIGNED16 transmitBuffers[STACK_LINES];
    UNSIGNED16 cobs[STACK_LINES];
#endif
    UNSIGNED16 receivePgns[STACK_LINES];
    UNSIGNED16 transmitPgns[STACK_LINES];
#ifdef STACK_NEW_INIT
    UNSIGNED8 sdoServers[STACK_LINES];
    UNSIGNED8 sdoClients[STACK_LINES];
#  ifdef J1939_SDG_SUPPORTED
    UNSIGNED8 safeTransmit[STACK_LINES];
    UNSIGNED8 safeReceive[STACK_LINES];
#  endif
#  ifdef CO_CANFD_SUPPORTED
    UNSIGNED8 destinationBuffers[STACK_LINES];
#  endif
#endif
} J1939_SERVICE_INIT_VAL_T;

RET_T j1939StackInit_common(const J1939_SERVICE_INIT_VAL_T *values);
RET_T j1939StackInit_line(LINE_FIRST const J1939_CONFIG_T *config);

/* --- Functions that the generated source gives to the application --- */

#ifdef CO_CANFD_SUPPORTED
RET_T j1939StackInit(BOOL_T *pModes);
#else
RET_T j1939StackInit(void);
#endif

#endif /* J1939_J1939_H */
