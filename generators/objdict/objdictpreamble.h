// What stands before the tables of the object dictionary source: head, includes, prototypes,
// macros, pointers to the application's indication functions, counts; and the header gen_user.h.
#pragma once

#include "generators/objdict/objdictcontext.h"
#include "store/projectfeatures.h"

namespace ObjDict
{

/// Who writes what, as the heads of files say.
struct HeadFacts {
    QString projectName;
    QString toolVersion;
};

/// gen_user.h declares functions that overwrite settings; is any of them wanted?
bool needsUserHeader(const GeneralSettings &settings, const ProjectFeatures &features);
void writeUserHeader(TextWriter &out, const HeadFacts &facts);

void writeIncludes(Context &context, bool withStandardLibrary);
void writeStartPrototypes(Context &context);
void writeApplicationHeaders(Context &context);

/// Includes of the application's headers, if there are any. \a include is the line for one of them,
/// with %1 for its name.
void writeHeaderList(Context &context, const char *include);

/// Macros that a target may set before, all of them or one by one.
void writeMemorySpecifiers(Context &context);
void writeStorageMacros(Context &context);

void writeIndicationPointers(Context &context);
void writeObjectCounts(Context &context);

} // namespace ObjDict
