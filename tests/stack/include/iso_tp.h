/* Test stand-in for the transport protocol of ISO 15765-2. */
#ifndef ISO_TP_H
#define ISO_TP_H 1

#include <co_datatype.h>

typedef enum { ISOTP_FORMAT_NORMAL, ISOTP_FORMAT_NORMAL_FIXED, ISOTP_FORMAT_EXTENDED } ISOTP_FORMAT_T;

/* A definitions header without a section for ISO-TP leaves the connections to the stack. */
#ifndef ISOTP_CLIENT_COUNTS
#  define ISOTP_CLIENT_COUNTS 1u
#endif
#ifndef ISOTP_SERVER_COUNTS
#  define ISOTP_SERVER_COUNTS 1u
#endif

RET_T isoTpInit(LINE_ONLY);

#endif /* ISO_TP_H */
