/* Test stand-in for the CANopen services of the protocol stack: the types of its tables, events and start
 * structures, and each function that generated sources call. */
#ifndef CO_CANOPEN_H
#define CO_CANOPEN_H 1

#include <co_datatype.h>
#include <co_odaccess.h>
#include <iso_tp.h>
#include <stack_common.h>

/* --- PDO mapping --- */

#if CO_MAX_MAP_ENTRIES > 0
#  define STACK_MAP_ROWS CO_MAX_MAP_ENTRIES
#else
#  define STACK_MAP_ROWS 1
#endif

typedef struct {
    const void *variable;
    UNSIGNED8 length; /* bytes; bits with bitwise mapping */
    BOOL_T isNumeric;
    UNSIGNED32 mapping;
} PDO_TR_MAP_ENTRY_T;
typedef struct {
    UNSIGNED8 count;
    PDO_TR_MAP_ENTRY_T rows[STACK_MAP_ROWS];
} PDO_TR_MAP_TABLE_T;

typedef struct {
    void *variable;
    UNSIGNED8 length;
    BOOL_T isNumeric;
    UNSIGNED32 mapping;
#ifdef STACK_ROUTES
    UNSIGNED16 routing[STACK_LINES]; /* TPDO of each line that sends the value on */
#endif
} PDO_REC_MAP_ENTRY_T;
typedef struct {
    UNSIGNED8 count;
    PDO_REC_MAP_ENTRY_T rows[STACK_MAP_ROWS];
} PDO_REC_MAP_TABLE_T;

/* --- SRDOs of CiA 304 --- */

#ifdef CO_SRDO_SUPPORTED
typedef struct {
    void *variable;
    UNSIGNED8 bits;
    BOOL_T isInverted;
} CO_SRDO_MAP_ENTRY_T;
typedef struct {
    UNSIGNED8 line, number, direction;
    UNSIGNED16 refreshTimeMs;
    UNSIGNED8 validationTimeMs;
    struct { UNSIGNED32 base; UNSIGNED8 nodeIdFactor; } cobId1, cobId2;
    UNSIGNED8 entryCount;
    const CO_SRDO_MAP_ENTRY_T *entries;
} CO_SRDO_TABLE_T;
extern const CO_SRDO_TABLE_T srdo_table[CO_SRDO_CNT];
#endif

/* --- Start structures --- */

typedef UNSIGNED8 (*CO_NODE_ID_FUNCTION_T)(void);

typedef struct {
#ifdef STACK_NEW_INIT
    UNSIGNED8 version;
#endif
    UNSIGNED16 objects[STACK_LINES];
    UNSIGNED16 tpdos[STACK_LINES];
    UNSIGNED16 rpdos[STACK_LINES];
#ifdef CO_SRDO_SUPPORTED
    UNSIGNED8 srdos[STACK_LINES];
#endif
    UNSIGNED8 sdoServers[STACK_LINES];
    UNSIGNED8 sdoClients[STACK_LINES];
    UNSIGNED8 monitoredNodes[STACK_LINES];
    UNSIGNED8 errorHistory[STACK_LINES];
    UNSIGNED8 activeErrors[STACK_LINES];
    UNSIGNED8 emcyConsumers[STACK_LINES];
#ifdef CO_NETWORK_ROUTING_CNT
    UNSIGNED8 routings[STACK_LINES];
#endif
    UNSIGNED8 assignments[STACK_LINES];
    UNSIGNED8 guardings[STACK_LINES];
    UNSIGNED8 nodeIds[STACK_LINES];
    CO_NODE_ID_FUNCTION_T nodeIdFunctions[STACK_LINES];
#if defined(CO_CANFD_SUPPORTED) && !defined(STACK_NEW_INIT)
    BOOL_T fdMode[STACK_LINES];
#endif
} CO_SERVICE_INIT_VAL_T;

typedef struct { UNSIGNED8 master; } CO_INIT_OPTION_T;

/* --- Events --- */

typedef enum { CO_NMT_STATE_OPERATIONAL } CO_NMT_STATE_T;
typedef enum { CO_ERRCTRL_BOOTUP } CO_ERRCTRL_T;
typedef enum { CO_CAN_STATE_BUS_OFF } CO_CAN_STATE_T;
typedef enum { CO_CFG_TRANSFER_ACTIVE } CO_CFG_TRANSFER_T;
typedef enum { CO_FLYMA_STATE_ACTIVE } CO_FLYMA_STATE_T;
typedef enum { CO_LSS_SERVICE_STORE } CO_LSS_SERVICE_T;
typedef enum { CO_LSS_MASTER_SERVICE_STORE } CO_LSS_MASTER_SERVICE_T;
typedef enum { CO_COMM_STATE_EVENT_ACTIVE } CO_COMM_STATE_EVENT_T;
typedef enum { CO_MANAGER_EVENT_BOOTED } CO_MANAGER_EVENT_T;
typedef struct { UNSIGNED32 milliseconds; UNSIGNED16 days; } CO_TIME_T;

#ifdef STACK_MULTI_LINE
#  define EVENT_LINE UNSIGNED8,
#else
#  define EVENT_LINE
#endif
#define ADDRESS UNSIGNED16, UNSIGNED8 /* index and subindex */

typedef RET_T (*CO_EVENT_SDO_SERVER_T)(EVENT_LINE BOOL_T, UNSIGNED8, ADDRESS);
typedef RET_T (*CO_EVENT_SDO_SERVER_CHECK_WRITE_T)(EVENT_LINE BOOL_T, UNSIGNED8, ADDRESS, const UNSIGNED8 *);
typedef void (*CO_EVENT_PDO_T)(EVENT_LINE UNSIGNED16);
typedef RET_T (*CO_EVENT_NMT_T)(EVENT_LINE BOOL_T, CO_NMT_STATE_T);
typedef void (*CO_EVENT_ERRCTRL_T)(EVENT_LINE UNSIGNED8, CO_ERRCTRL_T, CO_NMT_STATE_T);
typedef void (*CO_EVENT_SYNC_T)(EVENT_LINE UNSIGNED8);
typedef void (*CO_EVENT_SYNC_FINISHED_T)(EVENT_LINE UNSIGNED8);
typedef void (*CO_EVENT_LED_T)(EVENT_LINE BOOL_T);
typedef void (*CO_EVENT_CAN_STATE_T)(EVENT_LINE CO_CAN_STATE_T);
typedef void (*CO_EVENT_CFG_MANAGER_T)(EVENT_LINE CO_CFG_TRANSFER_T, UNSIGNED8, ADDRESS, UNSIGNED32);
typedef void (*CO_EVENT_FLYMA_T)(EVENT_LINE CO_FLYMA_STATE_T, UNSIGNED8, UNSIGNED8);
typedef void (*CO_EVENT_SDO_CLIENT_READ_T)(EVENT_LINE UNSIGNED8, ADDRESS, UNSIGNED32, UNSIGNED32);
typedef void (*CO_EVENT_SDO_CLIENT_WRITE_T)(EVENT_LINE UNSIGNED8, ADDRESS, UNSIGNED32);
typedef RET_T (*CO_EVENT_EMCY_T)(EVENT_LINE UNSIGNED16, UNSIGNED8 *);
typedef void (*CO_EVENT_EMCY_CONS_T)(EVENT_LINE UNSIGNED8, UNSIGNED16, UNSIGNED8, const UNSIGNED8 *);
typedef void (*CO_EVENT_TIME_T)(EVENT_LINE CO_TIME_T *);
typedef RET_T (*CO_EVENT_STORE_T)(EVENT_LINE UNSIGNED8);
typedef void (*CO_EVENT_LSS_T)(EVENT_LINE CO_LSS_SERVICE_T, UNSIGNED16, UNSIGNED8 *, UNSIGNED8 *);
typedef void (*CO_EVENT_LSS_MASTER_T)(EVENT_LINE CO_LSS_MASTER_SERVICE_T, UNSIGNED16, UNSIGNED8, UNSIGNED32 *);
typedef void (*CO_EVENT_COMM_T)(EVENT_LINE CO_COMM_STATE_EVENT_T);
typedef void (*CO_EVENT_MANAGER_BOOTUP_T)(EVENT_LINE UNSIGNED8, CO_MANAGER_EVENT_T);
typedef void (*CO_EVENT_MPDO_T)(EVENT_LINE UNSIGNED16, ADDRESS);
typedef RET_T (*CO_EVENT_USDO_SERVER_T)(EVENT_LINE BOOL_T, UNSIGNED8, ADDRESS);
typedef void (*CO_EVENT_USDO_SERVER_FINISHED_T)(EVENT_LINE UNSIGNED8, ADDRESS);
typedef RET_T (*CO_EVENT_USDO_SERVER_CHECK_WRITE_T)(EVENT_LINE UNSIGNED8, ADDRESS, const UNSIGNED8 *);
typedef RET_T (*CO_EVENT_USDO_SERVER_DOMAIN_READ_T)(EVENT_LINE ADDRESS, UNSIGNED32, UNSIGNED32);
typedef RET_T (*CO_EVENT_USDO_SERVER_DOMAIN_WRITE_T)(EVENT_LINE ADDRESS, UNSIGNED32, UNSIGNED32);
typedef void (*CO_EVENT_USDO_CLIENT_READ_T)(EVENT_LINE UNSIGNED8, ADDRESS, RET_T);
typedef void (*CO_EVENT_USDO_CLIENT_WRITE_T)(EVENT_LINE UNSIGNED8, ADDRESS, RET_T);
typedef RET_T (*CO_EVENT_USDO_CLIENT_DOMAIN_TRANSFER_T)(EVENT_LINE UNSIGNED8, ADDRESS, UNSIGNED32, UNSIGNED32);

/* --- Functions that start the services --- */

RET_T coCanOpenStackVarInit(const CO_SERVICE_INIT_VAL_T *values);
RET_T coSdoServerInit(LINE_FIRST UNSIGNED8 number);
RET_T coUsdoServerInit(LINE_ONLY);
RET_T coSdoClientInit(LINE_FIRST UNSIGNED8 number);
RET_T coUsdoClientInit(LINE_ONLY);
RET_T coErrorCtrlInit(LINE_FIRST UNSIGNED16 heartbeatMs, UNSIGNED8 consumers);
RET_T coEmcyProducerInit(LINE_ONLY);
RET_T coSyncInit(LINE_FIRST UNSIGNED32 cobId);
RET_T coEmcyConsumerInit(LINE_FIRST UNSIGNED8 consumers);
RET_T coTimeInit(LINE_FIRST BOOL_T isProducer, BOOL_T isConsumer);
RET_T coPdoTransmitInit(LINE_FIRST UNSIGNED16 number, UNSIGNED8 transmissionType, UNSIGNED16 inhibitTime,
    UNSIGNED16 eventTimer, UNSIGNED8 syncStart, const PDO_TR_MAP_TABLE_T *table);
RET_T coPdoReceiveInit(LINE_FIRST UNSIGNED16 number, UNSIGNED8 transmissionType, UNSIGNED16 inhibitTime,
    UNSIGNED16 eventTimer, const PDO_REC_MAP_TABLE_T *table);
RET_T coSrdInit(LINE_ONLY);
RET_T coGfcInit(LINE_FIRST BOOL_T isProducer, BOOL_T isConsumer);
RET_T coSrdoInit(LINE_FIRST UNSIGNED8 number);
void coIdNegoInit(LINE_ONLY);
RET_T coGuardingInit(LINE_ONLY);
RET_T coLssMasterInit(LINE_ONLY);
RET_T coLssInit(LINE_ONLY);
RET_T coNmtInit(LINE_FIRST UNSIGNED8 isMaster);
void coLedInit(LINE_ONLY);
RET_T coPdoNetworkRouting(void);
UNSIGNED8 coNmtGetNodeId(LINE_ONLY);
RET_T coEventRegister_LOAD_PARA(CO_EVENT_STORE_T load);

/* --- Functions that the generated source gives to the application --- */

#ifdef CO_CANFD_SUPPORTED
#  define START_MODES , BOOL_T *pModes
#else
#  define START_MODES
#endif
#ifdef STACK_PARA
RET_T coCanOpenStackInitPara(CO_EVENT_STORE_T pLoadFunction, CO_INIT_OPTION_T *pCoOptions START_MODES);
#else
RET_T coCanOpenStackInit(CO_EVENT_STORE_T pLoadFunction START_MODES);
#endif

#endif /* CO_CANOPEN_H */
