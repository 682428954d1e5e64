/* The CANopen functions of the test stack. */
#include "stack.h"
#include <ico_odaccess.h>

#include <stdio.h>

/* Functions without arguments, or with numbers only. */
#define RECORD_0(name) RET_T name(LINE_ONLY) { return called(#name, LINE_VALUE, 0); }
#define RECORD_1(name, A) \
    RET_T name(LINE_FIRST A a) { return called(#name, LINE_VALUE, 1, UL(a)); }
#define RECORD_2(name, A, B) \
    RET_T name(LINE_FIRST A a, B b) { return called(#name, LINE_VALUE, 2, UL(a), UL(b)); }

RECORD_1(coSdoServerInit, UNSIGNED8)
RECORD_0(coUsdoServerInit)
RECORD_1(coSdoClientInit, UNSIGNED8)
RECORD_0(coUsdoClientInit)
RECORD_2(coErrorCtrlInit, UNSIGNED16, UNSIGNED8)
RECORD_0(coEmcyProducerInit)
RECORD_1(coSyncInit, UNSIGNED32)
RECORD_1(coEmcyConsumerInit, UNSIGNED8)
RECORD_2(coTimeInit, BOOL_T, BOOL_T)
RECORD_0(coSrdInit)
RECORD_2(coGfcInit, BOOL_T, BOOL_T)
RECORD_1(coSrdoInit, UNSIGNED8)
RECORD_0(coGuardingInit)
RECORD_0(coLssMasterInit)
RECORD_0(coLssInit)
RECORD_1(coNmtInit, UNSIGNED8)

void coLedInit(LINE_ONLY) { (void)called("coLedInit", LINE_VALUE, 0); }
void coIdNegoInit(LINE_ONLY) { (void)called("coIdNegoInit", LINE_VALUE, 0); }
void icoOdAccessVarInit(void) { (void)called("icoOdAccessVarInit", -1, 0); }
RET_T coPdoNetworkRouting(void) { return called("coPdoNetworkRouting", -1, 0); }
RET_T coEventRegister_LOAD_PARA(CO_EVENT_STORE_T load)
{
    return called("coEventRegister_LOAD_PARA", -1, 1, UL(load != NULL));
}

static void printServiceValues(const CO_SERVICE_INIT_VAL_T *values)
{
    unsigned i;
#ifdef STACK_NEW_INIT
    printf("  version %u\n", values->version);
#endif
    PRINT(objects);
    PRINT(tpdos);
    PRINT(rpdos);
#ifdef CO_SRDO_SUPPORTED
    PRINT(srdos);
#endif
    PRINT(sdoServers);
    PRINT(sdoClients);
    PRINT(monitoredNodes);
    PRINT(errorHistory);
    PRINT(activeErrors);
    PRINT(emcyConsumers);
#ifdef CO_NETWORK_ROUTING_CNT
    PRINT(routings);
#endif
    PRINT(assignments);
    PRINT(guardings);
    PRINT(nodeIds);
    printf("  nodeIdFunctions");
    for (i = 0; i < STACK_LINES; ++i)
        printf("%c%d", i ? ',' : ' ', values->nodeIdFunctions[i] != NULL);
    printf("\n");
#if defined(CO_CANFD_SUPPORTED) && !defined(STACK_NEW_INIT)
    PRINT(fdMode);
#endif
}

RET_T coCanOpenStackVarInit(const CO_SERVICE_INIT_VAL_T *values)
{
    RET_T result = called("coCanOpenStackVarInit", -1, 0);
    if (!isQuiet)
        printServiceValues(values);
    return result;
}

static void printMappingHead(const void *variable, unsigned length, unsigned isNumeric, UNSIGNED32 mapping)
{
    printf("  map %08lx length=%u numeric=%u ", UL(mapping), length, isNumeric);
    printTarget(variable);
}

/* Rows that are mapped: one in a multiplexed PDO. */
static unsigned mappedRows(unsigned count) { return count > 64 ? 1 : count; }

RET_T coPdoTransmitInit(LINE_FIRST UNSIGNED16 number, UNSIGNED8 transmissionType, UNSIGNED16 inhibitTime,
    UNSIGNED16 eventTimer, UNSIGNED8 syncStart, const PDO_TR_MAP_TABLE_T *table)
{
    unsigned i;
    RET_T result = called("coPdoTransmitInit", LINE_VALUE, 6, UL(number), UL(transmissionType), UL(inhibitTime),
        UL(eventTimer), UL(syncStart), UL(table ? table->count : 0));
    for (i = 0; table && i < STACK_MAP_ROWS && !isQuiet; ++i) {
        const PDO_TR_MAP_ENTRY_T *row = &table->rows[i];
        if (i < mappedRows(table->count)) {
            printMappingHead(row->variable, row->length, row->isNumeric, row->mapping);
            printf("\n");
        } else if (row->variable || row->length || row->isNumeric || row->mapping) {
            printf("  row %u is not empty\n", i);
        }
    }
    return result;
}

RET_T coPdoReceiveInit(LINE_FIRST UNSIGNED16 number, UNSIGNED8 transmissionType, UNSIGNED16 inhibitTime,
    UNSIGNED16 eventTimer, const PDO_REC_MAP_TABLE_T *table)
{
    unsigned i;
    RET_T result = called("coPdoReceiveInit", LINE_VALUE, 5, UL(number), UL(transmissionType), UL(inhibitTime),
        UL(eventTimer), UL(table ? table->count : 0));
    for (i = 0; table && i < STACK_MAP_ROWS && !isQuiet; ++i) {
        const PDO_REC_MAP_ENTRY_T *row = &table->rows[i];
        if (i < mappedRows(table->count)) {
            printMappingHead(row->variable, row->length, row->isNumeric, row->mapping);
#ifdef STACK_ROUTES
            printNumbers(" routing", row->routing, sizeof row->routing, sizeof row->routing[0]);
#else
            printf("\n");
#endif
        } else if (row->variable || row->length || row->isNumeric || row->mapping) {
            printf("  row %u is not empty\n", i);
        }
    }
    return result;
}

/* --- Tables whose lengths the definitions tell --- */

#define ROWS(count) ((count) > 0 ? (count) : 1)
unsigned char cobTable[ROWS(STACK_COB_CNT)];
unsigned char transmitPdoTable[ROWS(CO_PDO_TRANSMIT_CNT)], receivePdoTable[ROWS(CO_PDO_RECEIVE_CNT)];

/* --- COB-IDs: the node has the number 5 + line, and a default COB-ID tells where it was asked for --- */

UNSIGNED8 coNmtGetNodeId(LINE_ONLY) { return (UNSIGNED8)(5 + (LINE_VALUE > 0 ? LINE_VALUE : 0)); }
RET_T coOdGetDefaultVal_u32(LINE_FIRST UNSIGNED16 index, UNSIGNED8 subIndex, UNSIGNED32 *value)
{
    *value = (UNSIGNED32)index << 8 | subIndex;
    return called("coOdGetDefaultVal_u32", LINE_VALUE, 2, UL(index), UL(subIndex));
}
RET_T coOdSetCobid(LINE_FIRST UNSIGNED16 index, UNSIGNED8 subIndex, UNSIGNED32 cobId)
{
    return called("coOdSetCobid", LINE_VALUE, 3, UL(index), UL(subIndex), UL(cobId));
}
