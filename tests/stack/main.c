/* Starts the stack as an application does, and prints what the generated sources told it: the calls and
 * their arguments, the object dictionary, and whether each failed call ends the start. */
#include "stack.h"
#include <j1939_cam11_cam21.h>

#include <stdio.h>

/* Functions that a project may have or not. */
#define OPTIONAL __attribute__((weak))
RET_T userOverwriteCobIdSettings(void) OPTIONAL;
RET_T userOverwriteStringDefaultvalues(void) OPTIONAL;
void printAppStrings(void) OPTIONAL;

#define INDICATIONS(X) \
    X(CO_EVENT_SDO_SERVER_T, coEventSdoServerReadInd) X(CO_EVENT_SDO_SERVER_T, coEventSdoServerWriteInd) \
    X(CO_EVENT_SDO_SERVER_CHECK_WRITE_T, coEventSdoServerCheckWriteInd) X(CO_EVENT_PDO_T, coEventPdoInd) \
    X(CO_EVENT_PDO_T, coEventPdoRecInd) X(CO_EVENT_PDO_T, coEventPdoSyncInd) X(CO_EVENT_NMT_T, coEventNmtInd) \
    X(CO_EVENT_ERRCTRL_T, coEventErrCtrlInd) X(CO_EVENT_SYNC_T, coEventSyncInd) \
    X(CO_EVENT_SYNC_FINISHED_T, coEventSyncFinishedInd) X(CO_EVENT_LED_T, coEventLedGreenInd) \
    X(CO_EVENT_LED_T, coEventLedRedInd) X(CO_EVENT_CAN_STATE_T, coEventCanStateInd) \
    X(CO_EVENT_CFG_MANAGER_T, coEventCfgManInd) X(CO_EVENT_FLYMA_T, coEventFlyMaInd) \
    X(CO_EVENT_SDO_CLIENT_READ_T, coEventSdoClientReadInd) \
    X(CO_EVENT_SDO_CLIENT_WRITE_T, coEventSdoClientWriteInd) X(CO_EVENT_EMCY_T, coEventEmcyInd) \
    X(CO_EVENT_EMCY_CONS_T, coEventEmcyConsumerInd) X(CO_EVENT_TIME_T, coEventTimeInd) \
    X(CO_EVENT_STORE_T, coEventStoreInd) X(CO_EVENT_LSS_T, coEventLssInd) \
    X(CO_EVENT_LSS_MASTER_T, coEventLssMasterInd) X(CO_EVENT_COMM_T, coEventCommInd) \
    X(CO_EVENT_MANAGER_BOOTUP_T, coEventManagerInd) X(CO_EVENT_MPDO_T, coEventMPdoInd) \
    X(CO_EVENT_USDO_SERVER_T, coEventUsdoServerReadInd) \
    X(CO_EVENT_USDO_SERVER_FINISHED_T, coEventUsdoServerReadFinishedInd) \
    X(CO_EVENT_USDO_SERVER_T, coEventUsdoServerWriteInd) \
    X(CO_EVENT_USDO_SERVER_CHECK_WRITE_T, coEventUsdoServerCheckWriteInd) \
    X(CO_EVENT_USDO_SERVER_DOMAIN_READ_T, coEventUsdoServerDomainReadInd) \
    X(CO_EVENT_USDO_SERVER_DOMAIN_WRITE_T, coEventUsdoServerDomainWriteInd) \
    X(CO_EVENT_USDO_CLIENT_READ_T, coEventUsdoClientReadInd) \
    X(CO_EVENT_USDO_CLIENT_WRITE_T, coEventUsdoClientWriteInd) \
    X(CO_EVENT_USDO_CLIENT_DOMAIN_TRANSFER_T, coEventUsdoClientDomainReadInd) \
    X(CO_EVENT_USDO_CLIENT_DOMAIN_TRANSFER_T, coEventUsdoClientDomainWriteInd)

#define DECLARE(type, name) extern const type name OPTIONAL;
INDICATIONS(DECLARE)

/* Each function of the application prints its name; its true arguments do not matter here. */
static void printIndications(void)
{
#define PRINT_INDICATION(type, name) \
    if (&name && name) { \
        printf("indication " #name " "); \
        ((void (*)(void))name)(); \
    }
    INDICATIONS(PRINT_INDICATION)
}

#ifndef STACK_SDO_SERVER
#ifdef CO_CANFD_SUPPORTED
static BOOL_T modes[32];
#  define MODES , modes
#else
#  define MODES
#endif
#ifdef CO_EVENT_DYNAMIC_STORE
static RET_T load(EVENT_LINE UNSIGNED8);
#  ifdef STACK_MULTI_LINE
static RET_T load(UNSIGNED8 line, UNSIGNED8 subIndex) { return line + subIndex ? RET_OK : RET_INVALID_PARAMETER; }
#  else
static RET_T load(UNSIGNED8 subIndex) { return subIndex ? RET_OK : RET_INVALID_PARAMETER; }
#  endif
#  define LOAD load
#else
#  define LOAD NULL
#endif

static RET_T start(int isMaster)
{
#ifdef STACK_PARA
    CO_INIT_OPTION_T options[32];
    int i;
    for (i = 0; i < 32; ++i)
        options[i].master = (UNSIGNED8)isMaster;
    return coCanOpenStackInitPara(LOAD, options MODES);
#else
    (void)isMaster;
    return coCanOpenStackInit(LOAD MODES);
#endif
}

static void printStart(int variant)
{
    printf("start %d\n", variant);
    callCount = 0;
    printf("result %d\n", start(variant));
}

/* Lets one call after the other fail; one whose result is lost is named. */
static void printLostFailures(void)
{
    int calls;
    isQuiet = 1;
    callCount = 0;
    (void)start(0);
    calls = callCount;
    for (failAt = 1; failAt <= calls; ++failAt) {
        callCount = 0;
        if (start(0) == RET_OK || callCount != failAt)
            printf("lost failure of %s\n", failedCall);
    }
    failAt = 0;
    isQuiet = 0;
}
#endif

int main(void)
{
    int line;
#ifdef STACK_SDO_SERVER
    for (line = 0; line < 32; ++line)
#  ifdef STACK_MULTI_LINE
        (void)j1939OdInit((UNSIGNED8)line);
#  else
        if (line == 0)
            (void)j1939OdInit();
#  endif
#else
#  if defined(CO_CANFD_SUPPORTED) || defined(STACK_PARA)
    printStart(0);
#  endif
#  ifdef CO_CANFD_SUPPORTED
    for (line = 0; line < 32; ++line)
        modes[line] = CO_TRUE;
#  endif
    printStart(1);
    printLostFailures();
#endif
    for (line = 0; line < 32; ++line) {
        if (dictionaries[line].assign)
            printDictionary(line);
    }
    printVirtualObjects();
    printSafetyObjects();
    printIndications();
    if (userOverwriteCobIdSettings) {
        printf("overwrite\n");
        printf("result %d\n", userOverwriteCobIdSettings());
    }
    if (userOverwriteStringDefaultvalues) {
        (void)userOverwriteStringDefaultvalues();
        printAppStrings();
    }
    return 0;
}
