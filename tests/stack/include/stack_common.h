/* Test stand-in for what all protocols of the stack share: their start, and the types of signals. The
 * header of each protocol includes it. */
#ifndef STACK_COMMON_H
#define STACK_COMMON_H 1

#include <co_datatype.h>

/* --- Start structure and function --- */

#define MP_PROT_TYPE_UNKNOWN 0x00u
#define MP_PROT_TYPE_CANOPEN 0x01u
#define MP_PROT_TYPE_J1939   0x02u
#define MP_PROT_TYPE_RAWCAN  0x04u
#define MP_PROT_TYPE_UDS     0x08u

typedef struct {
    UNSIGNED8 lines;
    UNSIGNED16 receiveBuffers[STACK_LINES];
    UNSIGNED16 transmitBuffers[STACK_LINES];
    UNSIGNED16 cobs[STACK_LINES];
    UNSIGNED8 protocolType[STACK_LINES];
#ifdef STACK_UDS
    UNSIGNED8 isoTpClients[STACK_LINES];
    UNSIGNED8 isoTpServers[STACK_LINES];
#endif
#ifdef CO_CANFD_SUPPORTED
    BOOL_T fdMode[STACK_LINES];
#endif
} STACK_COMMON_INIT_VAL_T;
#ifdef STACK_V4
typedef STACK_COMMON_INIT_VAL_T CORE_COMMON_INIT_VAL_T;
RET_T coreStackInit(const CORE_COMMON_INIT_VAL_T *values);
#else
typedef STACK_COMMON_INIT_VAL_T CO_COMMON_INIT_VAL_T;
RET_T commonStackInit(const CO_COMMON_INIT_VAL_T *values);
#endif

/* --- Types of the signals of J1939 and raw CAN --- */

#define STACK_SIGNAL_TYPES(X) \
    X(U1) X(U2) X(U3) X(U4) X(U5) X(U6) X(U7) X(U8) X(U16) X(U32) X(U40) X(U48) X(U56) X(U64) \
    X(I8) X(I16) X(I24) X(I32) X(I40) X(I48) X(I56) X(I64) X(R32) X(R64) X(VS) X(OS) X(US) X(UTF8) X(TD) X(D) \
    X(STRING_NULL) X(STRING_ASTERIKS) X(NON_NUMERIC)
#define STACK_SIGNAL_TYPE(name) CORE_DTYPE_##name,
typedef enum { STACK_SIGNAL_TYPES(STACK_SIGNAL_TYPE) STACK_SIGNAL_TYPE_CNT } CORE_DATA_TYPE_T;

#endif /* STACK_COMMON_H */
