/* Test stand-in for the inner side of the object dictionary. */
#ifndef ICO_ODACCESS_H
#define ICO_ODACCESS_H 1

void icoOdAccessVarInit(void);

#endif /* ICO_ODACCESS_H */
