/* The start of a device whose lines speak several protocols, or raw CAN. The build tells the protocols of the
 * lines in STACK_PROTOCOLS, by the number of the line, and raw CAN alone by STACK_RAW_ONLY. Variants below 0 ask
 * for no protocols in two ways. */
#include "stack.h"

#ifdef STACK_RAW_ONLY
#include <rawcan_rawcan.h>

const int firstVariant = 1;

RET_T startDevice(int variant)
{
    (void)variant;
    return rawcanStackInit();
}
#else
#include <mp_mp.h>

const int firstVariant = -2;

RET_T startDevice(int variant)
{
    STACK_PROTOCOL_TYPE_T protocols[32] = { STACK_PROTOCOLS };
    STACK_PROTOCOL_TYPE_T *chosen = variant == -2 ? NULL : protocols;
#ifdef STACK_PARA
    CO_INIT_OPTION_T options;
#  define OPTIONS , &options
    options.master = variant > 0;
#else
#  define OPTIONS
#endif
#ifdef CO_CANFD_SUPPORTED
    BOOL_T modes[32] = { 0 };
#  define MODES , variant == 0 ? modes : NULL
#else
#  define MODES
#endif
    if (variant == -1)
        memset(protocols, 0, sizeof protocols);
#ifdef STACK_V4
    return mpStackInit(chosen, NULL OPTIONS MODES);
#else
    return mpStackInit(NULL, chosen OPTIONS MODES);
#endif
}
#endif
