/* Test stand-in for safety data groups of the J1939 stack: what gen_sdg.c tells of them. */
#ifndef J1939_SDG_H
#define J1939_SDG_H 1

#include <co_datatype.h>

typedef struct {
    void *variable; /* NULL: bits without variable */
    UNSIGNED16 bits;
} J1939_SDG_MAPPING_T;

typedef struct {
    UNSIGNED32 number;
    const J1939_SDG_MAPPING_T *mapping;
    UNSIGNED16 cycleTimeMs;
    UNSIGNED32 srvtMs; /* safety-relevant validation time */
    UNSIGNED8 priority;
    UNSIGNED16 mappingCount;
} J1939_SDG_GROUP_T;

/* One line. */
typedef struct {
    const J1939_SDG_GROUP_T *transmitGroups;
    UNSIGNED16 transmitCount;
    const J1939_SDG_GROUP_T *receiveGroups;
    UNSIGNED16 receiveCount;
} J1939_SDG_CONFIG_T;

extern const J1939_SDG_CONFIG_T j1939SdgConfig[];

#endif /* J1939_SDG_H */
