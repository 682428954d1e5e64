/* What all protocols of the test stack share. Each function prints its call with all arguments, one line a
 * call. */
#include "stack.h"
#include <uds_uds.h>

#include <stdarg.h>
#include <stdio.h>

DICTIONARY_T dictionaries[32];
int failAt, callCount, isQuiet;
const char *failedCall;

RET_T called(const char *name, int line, int argumentCount, ...)
{
    va_list arguments;
    ++callCount;
    if (!isQuiet) {
        printf("call %s", name);
        if (line >= 0)
            printf(" line=%d", line);
        va_start(arguments, argumentCount);
        while (argumentCount-- > 0)
            printf(" %lu", va_arg(arguments, unsigned long));
        va_end(arguments);
        printf("\n");
    }
    if (callCount != failAt)
        return RET_OK;
    failedCall = name;
    return RET_STAND_IN_FAILED;
}

void printNumbers(const char *name, const void *numbers, size_t size, size_t width)
{
    size_t i;
    printf("  %s", name);
    for (i = 0; i < size / width; ++i)
        printf("%c%u", i ? ',' : ' ',
            width == 1 ? ((const UNSIGNED8 *)numbers)[i] : ((const UNSIGNED16 *)numbers)[i]);
    printf("\n");
}

/* The definitions of J1939 tell the number of all COBs as an initialiser with a comma, and count those that
 * the user adds for all lines together. */
static const unsigned allCobs[] = { STACK_COB_CNT };
#ifdef J1939_SUPPORTED
#  define ADDS_COBS 1
#else
#  define ADDS_COBS 0
#endif

#ifdef STACK_V4
RET_T coreStackInit(const STACK_COMMON_INIT_VAL_T *values)
#else
RET_T commonStackInit(const STACK_COMMON_INIT_VAL_T *values)
#endif
{
    unsigned line, cobs = 0;
    RET_T result = called("commonStackInit", -1, 1, UL(values->lines));
    if (isQuiet)
        return result;
    PRINT(receiveBuffers);
    PRINT(transmitBuffers);
    PRINT(cobs);
    for (line = 0; line < STACK_LINES; ++line)
        cobs += values->cobs[line];
    if (cobs > allCobs[0] || (cobs < allCobs[0] && !ADDS_COBS))
        printf("COBs of the lines make not the sum %u\n", allCobs[0]);
    PRINT(protocolType);
#ifdef STACK_UDS
    PRINT(isoTpClients);
    PRINT(isoTpServers);
#endif
#ifdef CO_CANFD_SUPPORTED
    PRINT(fdMode);
#endif
    return result;
}

RET_T udsStackInit_common(const UDS_SERVICE_INIT_VAL_T *values)
{
    RET_T result = called("udsStackInit_common", -1, 1, UL(values->version));
    if (!isQuiet)
        PRINT(clientCounts);
    return result;
}

static void printRow(const char *kind, unsigned service, unsigned sub, const UNSIGNED8 *list, unsigned count)
{
    unsigned i;
    printf("  %s %02x %u:", kind, service, sub);
    for (i = 0; i < count; ++i)
        printf(" %u", list[i]);
    printf("\n");
}

RET_T udsStackInit_line(LINE_FIRST const UDS_CONFIG_INIT_VAL_T *values)
{
    unsigned i;
    RET_T result = called("udsStackInit_line", LINE_VALUE, 8, UL(values->physicalRequestId),
        UL(values->physicalResponseId), UL(values->functionalRequestId), UL(values->physicalRequestExtension),
        UL(values->physicalResponseExtension), UL(values->functionalRequestExtension), UL(values->format),
        UL(values->isServer));
    for (i = 0; i < values->sessionRows && !isQuiet; ++i) {
        const UDS_REQ_SESSION_TYPE_TABLE_T *row = &values->sessions[i];
        printRow("session", row->service, row->subFunction, row->sessions, row->sessionCount);
    }
    for (i = 0; i < values->securityRows && !isQuiet; ++i) {
        const UDS_SECURITY_LEVEL_TABLE_T *row = &values->security[i];
        printRow("security", row->service, row->subFunction, row->levels, row->levelCount);
    }
    return result;
}

void coOdInitOdPtr(LINE_FIRST const CO_OD_ASSIGN_T *assign, UNSIGNED16 assignCount,
    const CO_OBJECT_DESC_T *description, UNSIGNED16 descriptionCount, void *unused,
    const CO_OD_DATA_VARIABLES_T *variables)
{
    DICTIONARY_T dictionary = { assign, assignCount, description, descriptionCount, variables };
#ifdef STACK_MULTI_LINE
    dictionaries[canLine] = dictionary;
#else
    dictionaries[0] = dictionary;
#endif
    (void)called("coOdInitOdPtr", LINE_VALUE, 1, UL(unused != NULL));
}

RET_T isoTpInit(LINE_ONLY) { return called("isoTpInit", LINE_VALUE, 0); }

#define ROWS(count) ((count) > 0 ? (count) : 1)
unsigned char bufferTable[ROWS(STACK_BUFFERS)];
