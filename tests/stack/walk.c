/* Walks the tables of the object dictionary as a stack does, from what coOdInitOdPtr() was given, and
 * prints each subindex with its meaning; runs of equal subindices are unfolded. */
#include "stack.h"

#include <stdio.h>

#define TYPE_NAME(T) #T,
static const char *const typeNames[] = { STACK_TYPES(TYPE_NAME) };
#define STORAGE_NAME(T, S) "_" #S,
static const char *const storageNames[] = { STACK_STORAGES(STORAGE_NAME, none) "" };
static const char *const attributeNames[] = {
    "NUM", "READ", "WRITE", "MAP_TR", "MAP_REC", "DEFVAL", "LIMIT", "STORE", "COMPACT"
};
static const char *const objectTypeNames[] = { "VAR", "ARRAY", "STRUCT", "DOM" };

/* Do generated sources define the variables of the application, with values that are known? */
#ifndef STACK_DEFINES_VARIABLES
#  define STACK_DEFINES_VARIABLES 0
#endif

/* --- Addresses of values --- */

#ifdef CO_EXTENDED_DATA_TYPES
#  define EXTENDED(expression) expression
#else
#  define EXTENDED(expression) NULL
#endif
#define AT(array) (array ? (const void *)&array[position] : NULL)

#define POINTED(array) (array ? (const void *)array[position] : NULL)
#ifdef CO_UTF8_DATA_TYPE
#  define UTF8(expression) expression
#else
#  define UTF8(expression) NULL
#endif
#define NUMBERS(prefix, FIND) \
    case STACK_TYPE_BOOL: case STACK_TYPE_U8: return FIND(v->prefix##u8); \
    case STACK_TYPE_U16: return FIND(v->prefix##u16); \
    case STACK_TYPE_U24: return EXTENDED(FIND(v->prefix##u24)); \
    case STACK_TYPE_U32: return FIND(v->prefix##u32); \
    case STACK_TYPE_U40: return EXTENDED(FIND(v->prefix##u40)); \
    case STACK_TYPE_U48: return EXTENDED(FIND(v->prefix##u48)); \
    case STACK_TYPE_U64: return EXTENDED(FIND(v->prefix##u64)); \
    case STACK_TYPE_I8: return FIND(v->prefix##i8); \
    case STACK_TYPE_I16: return FIND(v->prefix##i16); \
    case STACK_TYPE_I32: return FIND(v->prefix##i32); \
    case STACK_TYPE_R32: return FIND(v->prefix##r32);

static const void *constant(const CO_OD_DATA_VARIABLES_T *v, unsigned type, unsigned position)
{
    switch (type) {
    NUMBERS(const_, AT)
    case STACK_TYPE_VS: return POINTED(v->const_vs);
    case STACK_TYPE_UTF8: return UTF8(POINTED(v->const_utf8));
    default: return NULL;
    }
}

static const void *variable(const CO_OD_DATA_VARIABLES_T *v, unsigned type, unsigned position)
{
    switch (type) {
    NUMBERS(, AT)
    default: return NULL;
    }
}

static const void *pointed(const CO_OD_DATA_VARIABLES_T *v, unsigned type, unsigned position)
{
    switch (type) {
    NUMBERS(ptr_, POINTED)
    case STACK_TYPE_VS: return POINTED(v->vs);
    case STACK_TYPE_OS: return POINTED(v->os);
    case STACK_TYPE_UTF8: return UTF8(POINTED(v->utf8));
    default: return NULL;
    }
}

/* Bytes that a string or domain may hold; -1 for all else. */
static long sizeOf(const CO_OD_DATA_VARIABLES_T *v, unsigned tag, unsigned position)
{
    switch (tag) {
    case CO_DTYPE_VS_CONST: return v->const_vs_len ? (long)v->const_vs_len[position] : -1;
    case CO_DTYPE_VS_PTR: return v->vs_len ? (long)v->vs_len[position] : -1;
    case CO_DTYPE_OS_PTR: return v->os_len ? (long)v->os_len[position] : -1;
#ifdef CO_UTF8_DATA_TYPE
    case CO_DTYPE_UTF8_CONST: return v->const_utf8_len ? (long)v->const_utf8_len[position] : -1;
    case CO_DTYPE_UTF8_PTR: return v->utf8_len ? (long)v->utf8_len[position] : -1;
#endif
    default: return -1;
    }
}

/* Address of the value of a row; NULL where the stack itself holds it. */
static const void *valueOf(const CO_OD_DATA_VARIABLES_T *v, const CO_OBJECT_DESC_T *row, unsigned distance)
{
    const unsigned type = row->dataType / 32, storage = row->dataType % 32;
    switch (storage) {
    case STACK_STORAGE_CONST: return constant(v, type, row->tableIdx);
    case STACK_STORAGE_VAR: return variable(v, type, row->tableIdx + distance);
    case STACK_STORAGE_PTR: return pointed(v, type, row->tableIdx + distance);
    default: return NULL;
    }
}

/* --- Printing --- */

static void printNumber(const void *address, unsigned type)
{
    static const unsigned char bytesOfType[] = { 0, 0, 0, 3, 0, 5, 6, 8 };
    unsigned i;
    unsigned long long number = 0;
    switch (type) {
    case STACK_TYPE_BOOL: case STACK_TYPE_U8: printf("%u", *(const UNSIGNED8 *)address); return;
    case STACK_TYPE_U16: printf("%u", *(const UNSIGNED16 *)address); return;
    case STACK_TYPE_U32: printf("%lu", (unsigned long)*(const UNSIGNED32 *)address); return;
    case STACK_TYPE_I8: printf("%d", *(const INTEGER8 *)address); return;
    case STACK_TYPE_I16: printf("%d", *(const INTEGER16 *)address); return;
    case STACK_TYPE_I32: printf("%ld", (long)*(const INTEGER32 *)address); return;
    case STACK_TYPE_R32: printf("%.6g", *(const REAL32 *)address); return;
    default: break;
    }
    for (i = 0; i < bytesOfType[type]; ++i)
        number = number << 8 | ((const UNSIGNED8 *)address)[i];
    printf("%llu", number);
}

static void printText(const char *text, long size)
{
    for (; size > 0; ++text, --size) {
        if (*text > ' ' && *text <= '~' && *text != '%')
            putchar(*text);
        else
            printf("%%%02x", (unsigned)(UNSIGNED8)*text);
    }
}

int printAppVariable(const void *address)
{
    const APP_VARIABLE_T *row;
    for (row = appVariables; row->expression; ++row) {
        if (row->address == address)
            return printf("->%s", row->expression);
    }
    return 0;
}

static void printKnownVariable(const void *address)
{
    if (!printAppVariable(address))
        printf("->unknown");
}

static int hasArray(unsigned type) { return type <= STACK_TYPE_R32; }

/* Services of which a device has one do not look at what their objects refer to. */
static int hasReference(unsigned storage, unsigned subIndex)
{
    return storage != STACK_STORAGE_TIME && storage != STACK_STORAGE_GFC && storage != STACK_STORAGE_SRD &&
        (storage != STACK_STORAGE_FLYMA || subIndex != 0);
}

static void printValue(const CO_OD_DATA_VARIABLES_T *v, const CO_OBJECT_DESC_T *row, unsigned distance)
{
    const unsigned type = row->dataType / 32, storage = row->dataType % 32;
    const void *address = valueOf(v, row, distance);
    const long size = sizeOf(v, row->dataType, row->tableIdx + distance);
    if (row->dataType == CO_DTYPE_DOMAIN)
        printf(" domain=%d", v->domain && v->domain_len && v->domain_actLen ? (int)(row->tableIdx + distance) : -1);
    else if (storage > STACK_STORAGE_PTR) {
        if (hasReference(storage, row->subIndex))
            printf(" ref=%u", row->tableIdx);
    }
    else if (!address) {
        printf(" value=none");
    } else {
        printf(" value=");
        if (storage == STACK_STORAGE_PTR) {
            printKnownVariable(address);
            printf("%s", STACK_DEFINES_VARIABLES ? "=" : "");
        }
        if (storage != STACK_STORAGE_PTR || STACK_DEFINES_VARIABLES) {
            if (hasArray(type))
                printNumber(address, type);
            else
                printText(address, size);
        }
    }
    if (size >= 0)
        printf(" size=%ld", size);
}

static void printBounds(const CO_OD_DATA_VARIABLES_T *v, const CO_OBJECT_DESC_T *row)
{
    const unsigned type = row->dataType / 32;
    const void *value = hasArray(type) ? constant(v, type, row->defValIdx) : NULL;
    if (value) {
        printf(" default=");
        printNumber(value, type);
    }
#ifdef CO_CONFIG_LIMIT_CHECK
    if (row->attributes & CO_ATTR_LIMIT && row->attributes & CO_ATTR_WRITE) {
        const void *low = hasArray(type) ? constant(v, type, row->limitMinIdx) : NULL;
        const void *high = hasArray(type) ? constant(v, type, row->limitMaxIdx) : NULL;
        if (!low || !high) {
            printf(" limits=none");
            return;
        }
        printf(" limits=");
        printNumber(low, type);
        printf("..");
        printNumber(high, type);
    }
#endif
}

static void printAttributes(unsigned attributes)
{
    unsigned bit;
    const char *separator = " ";
    for (bit = 0; bit < sizeof attributeNames / sizeof attributeNames[0]; ++bit) {
        if (attributes >> bit & 1u) {
            printf("%s%s", separator, attributeNames[bit]);
            separator = "|";
        }
    }
}

static void printSubIndex(const DICTIONARY_T *d, int line, unsigned index, const CO_OBJECT_DESC_T *row,
    unsigned distance)
{
    printf("sub %d %04x:%u %s%s", line, index, row->subIndex + distance, typeNames[row->dataType / 32],
        storageNames[row->dataType % 32]);
    printAttributes(row->attributes & ~CO_ATTR_COMPACT);
    printValue(d->variables, row, distance);
    printBounds(d->variables, row);
    printf("\n");
}

void printDictionary(int line)
{
    const DICTIONARY_T *d = &dictionaries[line];
    unsigned i, r, distance, folded = 0;
    for (i = 0; i < d->assignCount; ++i) {
        const CO_OD_ASSIGN_T *object = &d->assign[i];
        printf("object %d %04x highest=%u %s\n", line, object->index, object->highestSub,
            objectTypeNames[object->objectType]);
#ifndef STACK_MULTI_LINE /* with several lines the count is that of one, the rows those of all */
        if (object->firstRow + object->rowCount > d->descriptionCount)
            printf("rows beyond the end\n");
#endif
        for (r = 0; r < object->rowCount; ++r) {
            const CO_OBJECT_DESC_T *row = &d->description[object->firstRow + r];
            const unsigned last = row->attributes & CO_ATTR_COMPACT ? object->highestSub : row->subIndex;
            for (distance = 0; row->subIndex + distance <= last; ++distance)
                printSubIndex(d, line, object->index, row, distance);
            folded += last - row->subIndex;
        }
    }
    printf("folded %d %u\n", line, folded);
}

/* The subindex whose variable stands at an address, on whichever line started so far. */
static int printManagedVariable(const void *address)
{
    unsigned line, i, r;
    for (line = 0; line < 32; ++line) {
        const DICTIONARY_T *d = &dictionaries[line];
        for (i = 0; i < d->assignCount; ++i) {
            const CO_OD_ASSIGN_T *object = &d->assign[i];
            for (r = 0; r < object->rowCount; ++r) {
                const CO_OBJECT_DESC_T *row = &d->description[object->firstRow + r];
                const unsigned last = row->attributes & CO_ATTR_COMPACT ? object->highestSub : row->subIndex;
                unsigned distance;
                for (distance = 0; row->subIndex + distance <= last; ++distance) {
                    if (valueOf(d->variables, row, distance) != address)
                        continue;
                    if (row->dataType % 32 == STACK_STORAGE_VAR) {
                        printf("%u-%04x:%u", line, object->index, row->subIndex + distance);
                        return 1;
                    }
                    if (row->dataType % 32 == STACK_STORAGE_CONST && hasArray(row->dataType / 32)) {
                        printf("constant ");
                        printNumber(address, row->dataType / 32);
                        return 1;
                    }
                }
            }
        }
    }
    return 0;
}

void printTarget(const void *address)
{
    if (!address)
        printf("NULL");
    else if (!printManagedVariable(address))
        printKnownVariable(address);
}

void printVirtualObjects(void)
{
#ifdef CO_VOD_ASSIGN_CNT
    unsigned i, r, sub;
    for (i = 0; i < CO_VOD_ASSIGN_CNT; ++i) {
        const CO_VOD_ASSIGN_T *object = &vod_assign[i];
        printf("virtual %04x highest=%u\n", object->index, object->highestSub);
        if (object->firstRow + object->rowCount > CO_VOBJ_DESC_CNT)
            printf("rows beyond the end\n");
        for (r = 0; r < object->rowCount; ++r) {
            const CO_VOBJ_DESC_T *row = &vobj_description[object->firstRow + r];
            const unsigned last = row->attributes & CO_ATTR_COMPACT ? object->highestSub : row->subIndex;
            for (sub = row->subIndex; sub <= last; ++sub) {
                printf("virtual  %u %s", sub, typeNames[row->dataType / 32]);
                printAttributes(row->attributes & ~CO_ATTR_COMPACT);
                printf("\n");
            }
        }
    }
#endif
}

/* SRDOs are printed with their COB-IDs for the node with number 1. */
void printSafetyObjects(void)
{
#ifdef CO_SRDO_SUPPORTED
    unsigned i, entry;
    for (i = 0; i < CO_SRDO_CNT; ++i) {
        const CO_SRDO_TABLE_T *srdo = &srdo_table[i];
        printf("srdo %u %u %u %u %u %lu %lu\n", srdo->line, srdo->number, srdo->direction, srdo->refreshTimeMs,
            srdo->validationTimeMs, (unsigned long)srdo->cobId1.base + srdo->cobId1.nodeIdFactor,
            (unsigned long)srdo->cobId2.base + srdo->cobId2.nodeIdFactor);
        for (entry = 0; entry < srdo->entryCount; ++entry) {
            printf("srdo  bits=%u inverted=%u ", srdo->entries[entry].bits, srdo->entries[entry].isInverted);
            if (srdo->entries[entry].variable)
                printKnownVariable(srdo->entries[entry].variable);
            printf("\n");
        }
    }
#endif
}
