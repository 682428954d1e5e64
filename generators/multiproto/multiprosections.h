// The sections of the source of several protocols that are its own, in the order of the file. Those
// of the object dictionary and of J1939 stand between head and tables of raw CAN.
#pragma once

#include "generators/multiproto/multiprocontext.h"
#include "generators/objdict/objdictpreamble.h"

namespace MultiPro
{

/// Comment at the top, includes, macros, prototypes, counts of objects. \a withStandardLibrary: the
/// target has one.
void writeHead(Context &context, const ObjDict::HeadFacts &facts, bool withStandardLibrary);

/// `rawcanConfig` of each raw line with its tables of identifiers, which refer to the mappings.
void writeRawCanTables(Context &context);

/// `mpStackInit`, or `rawcanStackInit` for raw CAN alone; with several lines also its parts.
void writeStart(Context &context);

// Parts of writeStart().

/// The functions that start one line each (multiproinit_lines.cpp).
void writeLineFunctions(Context &context);

/// The start of the only line, inside the entry function (multiproinit_single.cpp).
void writeRawStart(Context &context);
void writeBothStart(Context &context);

} // namespace MultiPro
