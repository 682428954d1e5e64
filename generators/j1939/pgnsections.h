// The sections of the J1939 source, in the order of the file. The start-up is apart, see pgninit.h.
#pragma once

#include "generators/j1939/pgncontext.h"

namespace Pgn
{

/// Comment at the top, includes and macros. \a withStandardLibrary: the target has one.
void writeHead(Context &context, const QString &projectName, const QString &toolVersion,
               bool withStandardLibrary);

/// The arrays of variables that the tool manages; gives the signals their places.
void defineManagedVariables(Context &context);

/// One table for each group and each identifier. Reads the places of managed variables.
void declareMappings(Context &context);

/// The tables of groups refer to the mappings.
void defineTransmitPGNs(Context &context);
void defineReceivePGNs(Context &context);
void defineIdentify(Context &context);

/// What each line is started with; refers to the tables of groups and of the address claim.
void defineJ1939Config(Context &context);

} // namespace Pgn
