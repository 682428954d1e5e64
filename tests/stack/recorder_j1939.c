/* The J1939 functions of the test stack. */
#include "stack.h"
#include <j1939_j1939.h>

#include <stdio.h>

RET_T j1939StackInit_common(const J1939_SERVICE_INIT_VAL_T *values)
{
    RET_T result = called("j1939StackInit_common", -1, 1, UL(values->version));
    if (isQuiet)
        return result;
#ifndef STACK_NEW_INIT
    PRINT(receiveBuffers);
    PRINT(transmitBuffers);
    PRINT(cobs);
#endif
    PRINT(receivePgns);
    PRINT(transmitPgns);
#ifdef STACK_NEW_INIT
    PRINT(sdoServers);
    PRINT(sdoClients);
#  ifdef J1939_SDG_SUPPORTED
    PRINT(safeTransmit);
    PRINT(safeReceive);
#  endif
#  ifdef CO_CANFD_SUPPORTED
    PRINT(destinationBuffers);
#  endif
#endif
    return result;
}

/* --- Groups --- */

static void printMapping(const J1939_MAPPING_T *row)
{
    printf("   map %lu ", UL(row->spn));
    printSignal(row->dataType, row->bits, row->variable);
#ifdef J1939_DYNAMIC_PGN
    printf(" %u", row->isChanged);
#endif
    printf("\n");
}

static void printGroup(const char *kind, const J1939_PGN_CONFIG_T *group)
{
    unsigned i;
    printf("  %s %lu cycle=%u inhibit=%u priority=%u", kind, UL(group->number), group->cycleTimeMs,
        group->inhibitTimeMs, group->priority);
#ifdef CO_CANFD_SUPPORTED
    printf(" trailer=%u assurance=%u,%u", group->trailerFormat, group->assuranceType, group->assuranceDataSize);
#endif
    printf("\n");
    for (i = 0; i < group->mappingCount; ++i)
        printMapping(&group->mapping[i]);
}

RET_T j1939StackInit_line(LINE_FIRST const J1939_CONFIG_T *config)
{
    unsigned i;
    RET_T result = called("j1939StackInit_line", LINE_VALUE, 1, UL(config->startAddress));
    if (isQuiet)
        return result;
    printGroup("claim", config->addressClaim);
    for (i = 0; i < config->receiveCount; ++i)
        printGroup("rx", &config->receiveGroups[i]);
    for (i = 0; i < config->transmitCount; ++i)
        printGroup("tx", &config->transmitGroups[i]);
    return result;
}

/* --- Tables whose lengths the definitions tell --- */

#define ROWS(count) ((count) > 0 ? (count) : 1)
#if defined(J1939_TIMER_INTERVAL) && defined(CO_TIMER_INTERVAL)
const unsigned long timerInterval = J1939_TIMER_INTERVAL;
#endif
unsigned char receiveGroupTable[ROWS(J1939_RECEIVE_PGN_CNT)], transmitGroupTable[ROWS(J1939_TRANSMIT_PGN_CNT)];
#ifdef J1939_DIAGNOSTIC_SUPPORTED
unsigned char diagnosticBuffers[ROWS(J1939_DIAG_REC_BUF_SIZE) + ROWS(J1939_DIAG_TR_BUF_SIZE)];
#endif
#ifdef J1939_DIAGNOSTIC_TOOL_SUPPORTED
unsigned char diagnosticToolBuffers[ROWS(J1939_DIAGTOOL_REC_BUF_SIZE) + ROWS(J1939_DIAGTOOL_TR_BUF_SIZE)];
#endif
#ifdef J1939_CMDT_SUPPORTED
unsigned char packetsOfMessage[ROWS(J1939_CMDT_MAX_PACKETS)];
#endif
#ifdef J1939_SDG_TRANS_CNT
unsigned char safeTransmitTable[J1939_SDG_TRANS_CNT];
#endif
#ifdef J1939_SDG_REC_CNT
unsigned char safeReceiveTable[J1939_SDG_REC_CNT];
#endif
#if defined(CO_CANFD_SUPPORTED)
unsigned char destinationBufferTable[ROWS(J1939_DEST_BUFFER_CNT)];
#endif
