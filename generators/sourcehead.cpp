// Default definitions of macros.
#include "generators/sourcehead.h"

#include "generators/textwriter.h"

void SourceHead::writeConstMacro(TextWriter &out, const StackDialect &dialect)
{
    out.block(R"(
/* definition of memory specifier */
#ifndef $macro$
#define $macro$ const
#endif

)",
              {{"macro", dialect.constMacro}});
}

void SourceHead::writeWatchdogMacro(TextWriter &out, const StackDialect &dialect)
{
    out.block(R"(
/* definition of watchdog handle during initialization */
#ifndef $macro$
#define $macro$
#endif /* $macro$ */


)",
              {{"macro", dialect.watchdogMacro}});
}
