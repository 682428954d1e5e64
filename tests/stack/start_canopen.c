/* The start of a CANopen device. */
#include "stack.h"

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

#if defined(CO_CANFD_SUPPORTED) || defined(STACK_PARA)
const int firstVariant = 0;
#else
const int firstVariant = 1;
#endif

RET_T startDevice(int variant)
{
#ifdef CO_CANFD_SUPPORTED
    memset(modes, variant, sizeof modes);
#endif
#ifdef STACK_PARA
    CO_INIT_OPTION_T options[32];
    int i;
    for (i = 0; i < 32; ++i)
        options[i].master = (UNSIGNED8)variant;
    return coCanOpenStackInitPara(LOAD, options MODES);
#else
    (void)variant;
    return coCanOpenStackInit(LOAD MODES);
#endif
}
