/* Starts the stack as an application does, and prints what the generated sources told it: the calls and
 * their arguments, the object dictionary, and whether each failed call ends the start. */
#include "stack.h"

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

static void printStart(int variant)
{
    printf("start %d\n", variant);
    callCount = 0;
    printf("result %d\n", startDevice(variant));
}

/* Lets one call after the other fail; one whose result is lost is named. */
static void printLostFailures(void)
{
    int calls;
    isQuiet = 1;
    callCount = 0;
    (void)startDevice(0);
    calls = callCount;
    for (failAt = 1; failAt <= calls; ++failAt) {
        callCount = 0;
        if (startDevice(0) == RET_OK || callCount != failAt)
            printf("lost failure of %s\n", failedCall);
    }
    failAt = 0;
    isQuiet = 0;
}

int main(void)
{
    int line, variant;
    for (variant = firstVariant; variant <= 1; ++variant)
        printStart(variant);
    printLostFailures();
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
