/* Test stand-in for the transport protocol of ISO 15765-2. */
#ifndef ISO_TP_H
#define ISO_TP_H 1

#include <co_datatype.h>

typedef enum { ISOTP_FORMAT_NORMAL, ISOTP_FORMAT_NORMAL_FIXED, ISOTP_FORMAT_EXTENDED } ISOTP_FORMAT_T;

RET_T isoTpInit(LINE_ONLY);

#endif /* ISO_TP_H */
