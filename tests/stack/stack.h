/* What the parts of the test program share; generated sources do not see it. */
#ifndef STACK_H
#define STACK_H 1

#include <co_canopen.h>

/* A variable of the application, by the expression that the project names it with. */
typedef struct {
    const char *expression;
    const void *address;
} APP_VARIABLE_T;
extern const APP_VARIABLE_T appVariables[]; /* ends with an empty row */

/* What coOdInitOdPtr() was given for a line. */
typedef struct {
    const CO_OD_ASSIGN_T *assign;
    unsigned assignCount;
    const CO_OBJECT_DESC_T *description;
    unsigned descriptionCount;
    const CO_OD_DATA_VARIABLES_T *variables;
} DICTIONARY_T;
extern DICTIONARY_T dictionaries[32];

/* Records one call. The call with number failAt, from 1 up, fails; 0 lets all succeed. Quiet calls
 * print nothing. */
extern int failAt, callCount, isQuiet;
extern const char *failedCall;
RET_T called(const char *name, int line, int argumentCount, ...);
#define UL(value) ((unsigned long)(value))

/* Prints an array of numbers that are width bytes wide, and a member of a structure that is one. */
void printNumbers(const char *name, const void *numbers, size_t size, size_t width);
#define PRINT(member) \
    printNumbers(#member, values->member, sizeof values->member, sizeof values->member[0])

/* Prints the type, width and variable of a signal. */
void printSignal(CORE_DATA_TYPE_T type, unsigned bits, const void *variable);

void printDictionary(int line);
void printVirtualObjects(void);
void printSafetyObjects(void);

/* Prints what an entry of a mapping table points to. */
void printTarget(const void *address);
/* The same for variables of the application alone; 0 if it is none of them. */
int printAppVariable(const void *address);

/* --- What the protocols of a project give to the program --- */

/* Starts the stack: variant 1 in CAN FD mode and as master, where the project leaves the choice; the other is
 * started too where firstVariant is 0. */
extern const int firstVariant;
RET_T startDevice(int variant);

#endif /* STACK_H */
