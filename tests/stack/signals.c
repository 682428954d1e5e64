/* How the test program prints the signals of J1939 and raw CAN. */
#include "stack.h"

#include <stdio.h>

#define TYPE_NAME(name) #name,
static const char *const typeNames[] = { STACK_SIGNAL_TYPES(TYPE_NAME) };

/* --- Variables that the tool manages have no name: they are numbered as they come --- */

static struct {
    const UNSIGNED8 *address;
    unsigned bytes;
} managed[1024];
static unsigned managedCount;

static unsigned bytesOf(unsigned bits)
{
    unsigned bytes = 1;
    while (bytes * 8 < bits)
        bytes *= 2;
    return bytes;
}

static void printValue(const void *address, unsigned bytes)
{
    unsigned i;
    unsigned long long number = 0;
    switch (bytes) {
    case 1: number = *(const UNSIGNED8 *)address; break;
    case 2: number = *(const UNSIGNED16 *)address; break;
    case 4: number = *(const UNSIGNED32 *)address; break;
    default:
        for (i = 0; i < bytes; ++i)
            number = number << 8 | ((const UNSIGNED8 *)address)[i];
    }
    printf("=%llu", number);
}

static void printManaged(const UNSIGNED8 *address, unsigned bits)
{
    const unsigned bytes = bytesOf(bits);
    unsigned i;
    for (i = 0; i < managedCount; ++i) {
        if (managed[i].address == address && managed[i].bytes == bytes)
            break;
        if (address < managed[i].address + managed[i].bytes && managed[i].address < address + bytes)
            printf("overlapping ");
    }
    if (i == managedCount && managedCount < sizeof managed / sizeof managed[0]) {
        managed[managedCount].address = address;
        managed[managedCount++].bytes = bytes;
    }
    printf("managed %u", i);
    printValue(address, bytes);
}

void printSignal(CORE_DATA_TYPE_T type, unsigned bits, const void *variable)
{
    printf("%s bits=%u ", typeNames[type], bits);
    if (!variable)
        printf("NULL");
    else if (!printAppVariable(variable))
        printManaged(variable, bits);
}
