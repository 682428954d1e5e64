// The executable end of the object dictionary source: the functions by which an application starts
// the stack, and the one that sets COB-IDs of the predefined connection set.
#pragma once

#include "generators/objdict/objdictstartcalls.h"

namespace ObjDict
{

// One of these three is written, by the form of the file. Positions and PDO tables are filled.

/// `coCanOpenStackInit` for the only line, or `coCanOpenStackInitPara` if options of the run say
/// whether the device is master.
void initObjectDictionary(Context &context);

/// All calls after that of the dictionary, for a single line: services, the function that loads
/// parameters, the roles of NMT and LSS.
void initServices(Context &context, const CallForm &form);

/// Do the parameters of a single line's start-up have options, which give the NMT role?
bool isMasterByOptions(const Context &context);

/// The same for several lines: the whole start-up, its parts for one line each, and what all lines
/// have in common (objdictinit_multiline.cpp).
void initObjectDictionaryMultiLine(Context &context);

/// `j1939OdInit` for the SDO server of a J1939 device.
void initCamod(Context &context);

/// `userOverwriteCobIdSettings`, if the project asks for it (objdictinit_cobids.cpp).
void overwrite301(Context &context);

/// The first words of the function that ends the start-up of several lines, and its variable.
struct FinishWords {
    const char *head;
    const char *variable;
};
/// \a lines are those whose objects say whether PDOs are routed.
void writeFinishFunction(Context &context, const FinishWords &words, const QList<quint8> &lines);

/// The call that hands the dictionary of a line to the stack; \a offset is the line's first row in
/// `od_assign`, and goes on to the next line's.
void writeOdInitCall(Context &context, const char *call, quint8 line, int &offset);

} // namespace ObjDict
