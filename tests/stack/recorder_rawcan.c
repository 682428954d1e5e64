/* The raw CAN functions of the test stack. */
#include "stack.h"
#include <rawcan_rawcan.h>

#include <stdio.h>

RET_T rawcanStackInit_common(const RAWCAN_SERVICE_INIT_VAL_T *values)
{
    RET_T result = called("rawcanStackInit_common", -1, 1, UL(values->version));
    if (isQuiet)
        return result;
    PRINT(received);
    PRINT(transmitted);
    return result;
}

static void printMapping(const CORE_MAPPING_T *rows, unsigned count)
{
    unsigned i;
    for (i = 0; i < count; ++i) {
        printf("   map ");
        printSignal(rows[i].dataType, rows[i].bits, rows[i].variable);
        printf("\n");
    }
}

RET_T rawcanStackInit_line(LINE_FIRST const RAWCAN_CONFIG_T *config)
{
    unsigned i;
    RET_T result = called("rawcanStackInit_line", LINE_VALUE, 0);
    if (isQuiet)
        return result;
    for (i = 0; i < config->receiveCount; ++i) {
        const RAWCAN_REC_CONFIG_T *row = &config->received[i];
        printf("  rxid %lu mask=%lu\n", UL(row->id), UL(row->ignoreMask));
        printMapping(row->mapping, row->mappingCount);
    }
    for (i = 0; i < config->transmitCount; ++i) {
        const RAWCAN_TR_CONFIG_T *row = &config->transmitted[i];
        printf("  txid %lu cycle=%u inhibit=%u\n", UL(row->id), row->cycleTimeMs, row->inhibitTimeMs);
        printMapping(row->mapping, row->mappingCount);
    }
    return result;
}
