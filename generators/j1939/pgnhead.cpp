// What stands before the tables of the J1939 source.
#include "generators/ctext.h"
#include "generators/j1939/pgnsections.h"
#include "generators/sourcehead.h"

void Pgn::writeHead(Context &context, const QString &projectName, const QString &toolVersion,
                    bool withStandardLibrary)
{
    TextWriter &out = context.out;
    CText::writeHead(out, context.dialect.title, projectName, toolVersion);
    out.raw("\n");
    if (withStandardLibrary)
        out.raw("#include <stdlib.h>\n\n");
    out.raw("#include <gen_define.h>\n"
            "#include <j1939_j1939.h>\n");
    if (context.form.hasUds)
        out.raw("#include <iso_tp.h>\n"
                "#include <uds_uds.h>\n");
    out.raw("#include <gen_extern_decl.h>\n"
            "\n");
    SourceHead::writeConstMacro(out, context.dialect);
    SourceHead::writeWatchdogMacro(out, context.dialect);
}
