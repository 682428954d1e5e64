// The J1939 projects whose generated C is compiled and run. What each switches on stands in its rows; see
// projecttext.h for their form.
#pragma once

/// %1 is the number of the line. Each width of a number, and safe groups among the others.
constexpr const char *kGroups = R"(
    line %1
    line%1type=2
    tx 61444 10 5 3 fd=2,1,12
    spn 899 U4 0
    spn 512 U8 0
    spn 190 U16 0
    spn 1483 U3 0
    spn 1675 U5 0
    spn 1 B 0
    spn 2 U2 0
    tx 65226 1000 0 6 fd=6,4,0
    spn 10 U6 0
    spn 11 U7 0
    spn 12 U9 0
    spn 13 U15 0
    spn 14 U18 0
    spn 15 U19 0
    spn 16 U21 0
    tx 65280 100 20 2 safe
    spn 5000 U24 0
    spn 5001 U32 0
    tx 65281 0 0 7
    rx 0 10 0 3 fd=5,3,255
    spn 190 U16 0
    spn 20 U29 0
    spn 21 U40 0
    spn 22 U48 0
    spn 23 U64 0
    rx 61444 0 0 6
    spn 190 U16 0
    spn 191 U8 0
    rx 65282 20 10 2 safe
    spn 5002 U10 0
    rx 65283 0 0 6
    spn 30 R32 0
    spn 31 STRING_ASTERISK 0 bits=80
)";

constexpr const char *kName = R"(
    j1939:startaddress=0x80,129u
    j1939:identitynumber=0x1FFFFF,2
    j1939:manufacturercode=010,2047
    j1939:ecuinstance=1
    j1939:function=130,,7
    j1939:functioninstance=2,31
    j1939:vehiclesystem=127
    j1939:vehicleinstance=15,1
    j1939:industrygroup=3,4
    j1939:addresscapable=1
)";

/// Variables of the application: numbers, strings, elements of arrays, expressions, none at all.
constexpr const char *kVariables = R"(
    rx 65260 0 0 6
    spn 237 STRING_ASTERISK 2 var=vehicleNumber bits=136
    spn 238 STRING_NULL 2 var=names[1] bits=80
    spn 239 OS 2 var=rawData bits=64
    rx 65270 0 0 6
    spn 100 U8 2 var=levels[0]
    spn 101 U8 2 var=levels[3]
    spn 102 U24 2 var=hours
    spn 103 I16 2 var=angle
    spn 104 R32 2 var=ratio
    spn 105 U48 2 var=clock
    spn 106 U8 2
    spn 107 U16 2 var=tank.level
    tx 65271 50 0 5
    spn 108 U8 2 var=&tank.flags[1]
    spn 109 U2 2 var=*matrix
    spn 110 U16 0
    spn 111 U16 2 var=speed value=5
    tx 65284 50 0 5 safe
    spn 112 U16 2 var=safeSpeed
    spn 113 U32 0
)";

constexpr const char *kModules = R"(
    j1939:diagsupport=1
    j1939:dm_receivesize=20u
    j1939:dm_transmitsize=30
    j1939:diagsupport_dm1=1
    j1939:diagsupport_dm7=1
    j1939:diagtoolsupport=1
    j1939:dmtool_receivesize=
    j1939:bamsupport=1
    j1939:bamcycletime=50
    j1939:cmdtsupport=1
    j1939:cmdtpackets=16
    j1939:requestsupport=1
    j1939:requestindication_cnt=2
    j1939:rxindication_cnt=1
    j1939:canindication_cnt=2
    j1939:nmea2000support=1
    j1939:propsupport=1
    j1939:bitwisemapping=1
    j1939:recalladdrclaims=1
    event_can=2
    isotp_connection_cnt=2
)";

/// The objects of the server follow.
constexpr const char *kSdoServer = R"(
    j1939:cia510serversupport=1
    j1939:cia510clientsupport=1
    applicationheader=gen_extern_decl.h app_cells.h
    line 0
    line0type=2
)";

/// What no generated file declares, since it is no plain name.
constexpr const char *kAppExpressions = R"(
#ifndef APP_EXPRESSIONS_H
#define APP_EXPRESSIONS_H 1
#include <stdint.h>
struct TANK { uint16_t level; uint8_t flags[2]; };
extern struct TANK tank;
extern uint8_t matrix[2][2];
#endif
)";
/// For object dictionaries.
constexpr const char *kAppCells = R"(
extern UNSIGNED8 cells[8];
extern UNSIGNED24 cells24[8];
#define CELL_OF(n) (&cells[n])
#define CELL24_OF(n) (&cells24[n])
)";
constexpr const char *kAppDefinitions = R"(
struct TANK tank;
uint8_t matrix[2][2];
UNSIGNED8 cells[8];
UNSIGNED24 cells24[8];
)";
