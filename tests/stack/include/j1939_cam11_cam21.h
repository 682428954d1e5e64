/* Test stand-in for the SDO server that a J1939 device offers by CAM11 and CAM21 messages. */
#ifndef J1939_CAM11_CAM21_H
#define J1939_CAM11_CAM21_H 1

#include <co_datatype.h>

RET_T j1939OdInit(LINE_ONLY);

#endif /* J1939_CAM11_CAM21_H */
