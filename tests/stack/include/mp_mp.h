/* Test stand-in for a stack with several protocols: all of them, and the types by which the application
 * chooses. */
#ifndef MP_MP_H
#define MP_MP_H 1

#include <co_canopen.h>
#include <j1939_j1939.h>
#include <rawcan_rawcan.h>

typedef UNSIGNED8 STACK_PROTOCOL_TYPE_T;
#ifdef STACK_V4
#  define CORE_PROT_TYPE_CANOPEN MP_PROT_TYPE_CANOPEN
#  define CORE_PROT_TYPE_J1939   MP_PROT_TYPE_J1939
#  define CORE_PROT_TYPE_RAWCAN  MP_PROT_TYPE_RAWCAN
typedef STACK_PROTOCOL_TYPE_T CORE_PROTOCOL_TYPE_T;
typedef UNSIGNED8 CAN_LINE_TYPE;
#else
typedef STACK_PROTOCOL_TYPE_T MP_PROTOCOL_TYPE_T;
#endif

/* --- Function that the generated source gives to the application --- */

#ifdef STACK_PARA
#  define START_OPTIONS , CO_INIT_OPTION_T *pCoOptions
#else
#  define START_OPTIONS
#endif
#ifdef STACK_V4
RET_T mpStackInit(CORE_PROTOCOL_TYPE_T *pProtType, CO_EVENT_STORE_T pLoadFunction START_OPTIONS START_MODES);
#else
RET_T mpStackInit(CO_EVENT_STORE_T pLoadFunction, MP_PROTOCOL_TYPE_T *pProtType START_OPTIONS START_MODES);
#endif

#endif /* MP_MP_H */
