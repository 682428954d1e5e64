/* Test stand-in for the data types of the protocol stack: as small as the generated sources allow.
 * Settings of the build: STACK_V4 for sources of the newer generation, STACK_NEW_INIT where the project
 * sets new_init_structure, STACK_PARA where it chooses its NMT role at start-up, STACK_ROUTES where it sends
 * received PDOs on. */
#ifndef CO_DATATYPE_H
#define CO_DATATYPE_H 1

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <gen_define.h>

/* The two generations name a few definitions differently; what only the other one knows stays unknown. */
#ifdef STACK_V4
#  ifdef CAN_MULTI_LINE
#    define STACK_LINES CAN_MULTI_LINE_CNT
#  endif
#  define STACK_BUFFERS CORE_CONFIG_REC_BUFFER_CNT + CORE_CONFIG_TRANS_BUFFER_CNT
#  define STACK_TIMER_INTERVAL CORE_TIMER_INTERVAL
#  define STACK_COB_CNT CORE_COB_CNT
#else
#  ifdef CO_MULTI_LINE
#    define STACK_LINES CO_MULTI_LINE_CNT
#  endif
#  define STACK_BUFFERS CO_CONFIG_REC_BUFFER_CNT + CO_CONFIG_TRANS_BUFFER_CNT
#  define STACK_TIMER_INTERVAL CO_TIMER_INTERVAL
#  define STACK_COB_CNT CO_COB_CNT
#endif

/* In the multi-line form nearly all functions take the line first. */
#ifdef STACK_LINES
#  define STACK_MULTI_LINE 1
#  define LINE_FIRST UNSIGNED8 canLine,
#  define LINE_ONLY UNSIGNED8 canLine
#  define LINE_VALUE canLine
#else
#  define STACK_LINES 1
#  define LINE_FIRST
#  define LINE_ONLY void
#  define LINE_VALUE -1
#endif
#define CO_LINE_ARRAY_DECL STACK_LINES

typedef uint8_t UNSIGNED8;
typedef uint16_t UNSIGNED16;
typedef uint32_t UNSIGNED32;
typedef int8_t INTEGER8;
typedef int16_t INTEGER16;
typedef int32_t INTEGER32;
typedef float REAL32;
typedef double REAL64;
typedef UNSIGNED8 BOOL_T;
typedef UNSIGNED8 CO_LINE_TYPE;

/* Widths that C does not know are bytes, the most significant first. */
typedef struct { UNSIGNED8 bytes[3]; } UNSIGNED24;
typedef struct { UNSIGNED8 bytes[5]; } UNSIGNED40;
typedef struct { UNSIGNED8 bytes[6]; } UNSIGNED48;
typedef struct { UNSIGNED8 bytes[8]; } UNSIGNED64;
typedef struct { UNSIGNED8 bytes[3]; } INTEGER24;
typedef struct { UNSIGNED8 bytes[8]; } INTEGER64;
#define U24_SET(a, b, c)                {{ a, b, c }}
#define U40_SET(a, b, c, d, e)          {{ a, b, c, d, e }}
#define U48_SET(a, b, c, d, e, f)       {{ a, b, c, d, e, f }}
#define U64_SET(a, b, c, d, e, f, g, h) {{ a, b, c, d, e, f, g, h }}
#define I24_SET(a, b, c)                {{ a, b, c }}

#define STACK_UTF8_BYTES 256
typedef char *VIS_STRING;
typedef UNSIGNED8 UTF8_STRING[STACK_UTF8_BYTES]; /* initialised byte by byte */
typedef UNSIGNED8 OCTET_STRING;
typedef UNSIGNED8 *CO_DOMAIN_PTR;

#define CO_FALSE 0u
#define CO_TRUE 1u

typedef enum { RET_OK, RET_INVALID_PARAMETER, RET_SERVICE_NOT_INITIALIZED, RET_STAND_IN_FAILED } RET_T;

#endif /* CO_DATATYPE_H */
