/* The application of the pump: its variables and functions, and the start of the stack. */
#include "stack.h"
#include <gen_indication.h>

/* Declarations of variables are definitions here. */
#define extern
#include "pump_variables.h"
#undef extern

const APP_VARIABLE_T appVariables[] = { { NULL, NULL } };

RET_T pumpCheckParameter(BOOL_T execute, UNSIGNED8 sdoNr, UNSIGNED16 index, UNSIGNED8 subIndex,
    const UNSIGNED8 *pData)
{
    (void)execute, (void)sdoNr, (void)index, (void)subIndex, (void)pData;
    return RET_OK;
}

RET_T pumpNmtStateChanged(BOOL_T execute, CO_NMT_STATE_T nmtState)
{
    (void)execute, (void)nmtState;
    return RET_OK;
}

RET_T pumpEmergencySent(UNSIGNED16 errCode, UNSIGNED8 *addErrorCode)
{
    (void)errCode, (void)addErrorCode;
    return RET_OK;
}

int main(void)
{
    return coCanOpenStackInit(NULL) == RET_OK ? 0 : 1;
}
