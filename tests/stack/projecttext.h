// Projects for tests as short tables of text.
#pragma once

#include "store/objectdatabase.h"

/// Adds to a store what \a text tells, a row a line:
///
///     key=value                 a general setting; "misc:key=value" is a misc setting,
///                               "j1939:key=value" a J1939 setting, "text:key=value" a
///                               description of the line
///     set key=value key=value   several of them, without blanks in the values
///     uds 49 1,3 2              an active diagnostic service with its sessions and user levels;
///                               one that is not active has the word off behind it
///     line 2                    what follows is of line 2, which is added as a CANopen line
///     1a00 rec name=a desc=b    an object with its kind: var, arr, rec, dom, or a number, and
///     flags
///                               name=, desc=, type=U16, meta=key:value
///     1a00:1 U32 rw 0 0x20000010 map lim=0..9 nv shared nodef size=8 var=name
///                               a subindex: type, access, implementation, default value ("-" is
///                               none, %20 a blank), and flags in any order, as well name=a desc=b
///                               shown=c eds=2 map=4 meta=key:value; the object is made if it does
///                               not exist: a variable, or an array behind sub 0
///     2206:1..4 U16 rw 0 3,4,5,6 map
///                               several of them, each with its value
///     pdo 1800 0x181 255 30     communication parameters of a PDO: subindices 1, 2, 3, 5, 6
///     tx 61444 100 20 3 safe fd=2,1,12
///                               a parameter group that is sent, or received with rx: cycle and
///                               inhibit time, priority, and flags
///     spn 190 U16 2 var=speed   a signal of the group above: number, type, implementation, and
///     flags
///                               var=name, value=5, bits=80
///     txid 291 100 20           a CAN identifier of raw CAN that is sent, or received with rxid:
///     cycle and
///                               inhibit time
///     item 1 U16 0 value=5      a signal of the identifier above, as with spn
///
/// Groups, identifiers and signals may have a flag name=. Blanks around a row, empty rows, and rows
/// that begin with "# " count as nothing.
void buildProject(ObjectDataBase &store, const QString &text);
