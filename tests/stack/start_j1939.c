/* The start of a J1939 device. */
#include "stack.h"
#include <j1939_j1939.h>

#ifdef CO_CANFD_SUPPORTED
const int firstVariant = 0;

RET_T startDevice(int variant)
{
    BOOL_T modes[STACK_LINES];
    memset(modes, variant, sizeof modes);
    return j1939StackInit(variant == 0 ? modes : NULL);
}
#else
const int firstVariant = 1;

RET_T startDevice(int variant)
{
    (void)variant;
    return j1939StackInit();
}
#endif
