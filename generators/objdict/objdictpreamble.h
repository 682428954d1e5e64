// What stands before the tables of the object dictionary source: head, includes, prototypes,
// macros, pointers to the application's indication functions, counts; and the header gen_user.h.
#pragma once

#include "generators/objdict/objdictcontext.h"

namespace ObjDict
{

/// Who writes what, as the heads of files tell it.
struct HeadFacts {
    QString projectName;
    QString toolVersion;
};

/// A target without the standard library has a file of that name in the output folder.
bool hasStandardLibrary(const QString &outputDirectory);

/// gen_user.h declares functions that overwrite settings; is any of them wanted?
bool needsUserHeader(const Context &context);
void writeUserHeader(TextWriter &out, const HeadFacts &facts);

void writeIncludes(Context &context, bool withStandardLibrary);
void writeStartPrototypes(Context &context);
void writeApplicationHeaders(Context &context);
void writeMemorySpecifiers(Context &context);
void writeIndicationPointers(Context &context);
void writeObjectCounts(Context &context);

} // namespace ObjDict
