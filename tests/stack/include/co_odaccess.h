/* Test stand-in for the stack's view of the object dictionary: the rows of its tables. */
#ifndef CO_ODACCESS_H
#define CO_ODACCESS_H 1

#include <co_datatype.h>

/* A tag is CO_DTYPE_<type>_<storage>; domains and virtual objects have no storage. Its number tells both, so
 * that a walk can take it apart. */
#define STACK_STORAGES(X, T) \
    X(T, CONST) X(T, VAR) X(T, PTR) X(T, SYNC) X(T, EMCY) X(T, ERRCTRL) X(T, STORE) X(T, TIME) X(T, NMT) \
    X(T, SDO_SERVER) X(T, SDO_CLIENT) X(T, GFC) X(T, SRDO) X(T, RPDO) X(T, RMAP) X(T, TPDO) X(T, TMAP) \
    X(T, SRD) X(T, NETWORK) X(T, FLYMA)
/* The first fifteen have arrays, in the order of these numbers; the others have a tag only. */
#define STACK_TYPES(X) \
    X(BOOL) X(U8) X(U16) X(U24) X(U32) X(U40) X(U48) X(U64) X(I8) X(I16) X(I32) X(R32) X(VS) X(OS) X(UTF8) \
    X(DOMAIN) X(I24) X(I40) X(I48) X(I56) X(I64) X(U56) X(R64) X(US) X(TD) X(U9) X(U10) X(U11) X(U12) X(U13) \
    X(U14) X(U15) X(U18) X(U19) X(U21) X(U29) X(STRING_NULL) X(STRING_ASTERIKS)

#define STACK_TYPE_NUMBER(T) STACK_TYPE_##T,
enum { STACK_TYPES(STACK_TYPE_NUMBER) STACK_TYPE_CNT };
#define STACK_STORAGE_NUMBER(T, S) STACK_STORAGE_##S,
enum { STACK_STORAGES(STACK_STORAGE_NUMBER, none) STACK_STORAGE_PLAIN };
#define STACK_TAG(T, S) CO_DTYPE_##T##_##S = STACK_TYPE_##T * 32 + STACK_STORAGE_##S,
#define STACK_TAGS(T) STACK_STORAGES(STACK_TAG, T) CO_DTYPE_##T = STACK_TYPE_##T * 32 + STACK_STORAGE_PLAIN,
typedef enum { STACK_TYPES(STACK_TAGS) STACK_NO_TAG } CO_DATA_TYPE_T;

#define CO_ATTR_NUM     0x001u
#define CO_ATTR_READ    0x002u
#define CO_ATTR_WRITE   0x004u
#define CO_ATTR_MAP_TR  0x008u
#define CO_ATTR_MAP_REC 0x010u
#define CO_ATTR_DEFVAL  0x020u
#define CO_ATTR_LIMIT   0x040u
#define CO_ATTR_STORE   0x080u
#define CO_ATTR_COMPACT 0x100u

typedef enum { CO_ODTYPE_VAR, CO_ODTYPE_ARRAY, CO_ODTYPE_STRUCT, CO_ODTYPE_DOM } CO_OBJECT_TYPE_T;

typedef struct {
    UNSIGNED8 subIndex;
    CO_DATA_TYPE_T dataType;
    UNSIGNED16 tableIdx; /* position of the value, or what the stack itself knows the entry by */
    UNSIGNED16 attributes;
    UNSIGNED16 defValIdx;
#ifdef CO_CONFIG_LIMIT_CHECK
    UNSIGNED16 limitMinIdx;
    UNSIGNED16 limitMaxIdx;
#endif
} CO_OBJECT_DESC_T;

typedef struct {
    UNSIGNED16 index;
    UNSIGNED16 rowCount;
    UNSIGNED8 highestSub;
    CO_OBJECT_TYPE_T objectType;
    UNSIGNED16 firstRow;
} CO_OD_ASSIGN_T;

/* Virtual objects: their values belong to the application, the tables only tell that they exist. */
typedef struct {
    UNSIGNED8 subIndex;
    CO_DATA_TYPE_T dataType;
    UNSIGNED16 tableIdx;
    UNSIGNED16 attributes;
    UNSIGNED16 defValIdx;
} CO_VOBJ_DESC_T;
typedef CO_OD_ASSIGN_T CO_VOD_ASSIGN_T;
#ifdef CO_VOD_ASSIGN_CNT
extern const CO_VOBJ_DESC_T vobj_description[CO_VOBJ_DESC_CNT];
extern const CO_VOD_ASSIGN_T vod_assign[CO_VOD_ASSIGN_CNT];
#endif

#define STACK_CONST_ARRAY(type, name) const type *const_##name;
#define STACK_ARRAY(type, name) type *name;
#define STACK_PTR_ARRAY(type, name) type *const *ptr_##name;
#define STACK_BASIC(X) X(UNSIGNED8, u8) X(UNSIGNED16, u16) X(UNSIGNED32, u32)
#define STACK_EXTENDED(X) X(UNSIGNED24, u24) X(UNSIGNED40, u40) X(UNSIGNED48, u48) X(UNSIGNED64, u64)
#define STACK_SIGNED(X) X(INTEGER8, i8) X(INTEGER16, i16) X(INTEGER32, i32)
#define STACK_REAL(X) X(REAL32, r32)

typedef struct {
    STACK_BASIC(STACK_CONST_ARRAY) STACK_REAL(STACK_CONST_ARRAY)
#ifdef CO_EXTENDED_DATA_TYPES
    STACK_EXTENDED(STACK_CONST_ARRAY)
#endif
    STACK_BASIC(STACK_ARRAY) STACK_REAL(STACK_ARRAY)
#ifdef CO_EXTENDED_DATA_TYPES
    STACK_EXTENDED(STACK_ARRAY)
#endif
    STACK_SIGNED(STACK_CONST_ARRAY)
    STACK_SIGNED(STACK_ARRAY)
    STACK_BASIC(STACK_PTR_ARRAY)
#ifdef CO_EXTENDED_DATA_TYPES
    STACK_EXTENDED(STACK_PTR_ARRAY)
#endif
    STACK_SIGNED(STACK_PTR_ARRAY) STACK_REAL(STACK_PTR_ARRAY)
    const VIS_STRING *const_vs;
    const UNSIGNED32 *const_vs_len;
    VIS_STRING *vs;
    UNSIGNED32 *vs_len, *vs_actLen;
#ifdef CO_UTF8_DATA_TYPE
    const UTF8_STRING *const_utf8;
    const UNSIGNED32 *const_utf8_len;
    VIS_STRING *utf8;
    UNSIGNED32 *utf8_len, *utf8_actLen;
#endif
    OCTET_STRING **os;
    UNSIGNED32 *os_len, *os_actLen;
    CO_DOMAIN_PTR *domain;
    UNSIGNED32 *domain_len, *domain_actLen;
} CO_OD_DATA_VARIABLES_T;

void coOdInitOdPtr(LINE_FIRST const CO_OD_ASSIGN_T *assign, UNSIGNED16 assignCount,
    const CO_OBJECT_DESC_T *description, UNSIGNED16 descriptionCount, void *unused,
    const CO_OD_DATA_VARIABLES_T *variables);
RET_T coOdGetDefaultVal_u32(LINE_FIRST UNSIGNED16 index, UNSIGNED8 subIndex, UNSIGNED32 *value);
RET_T coOdSetCobid(LINE_FIRST UNSIGNED16 index, UNSIGNED8 subIndex, UNSIGNED32 cobId);

#endif /* CO_ODACCESS_H */
