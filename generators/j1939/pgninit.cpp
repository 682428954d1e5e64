// The function that starts the J1939 stack.
#include "generators/j1939/pgninit.h"

#include "generators/commonstart.h"
#include "generators/initstructversions.h"
#include "generators/udsstart.h"

namespace
{

using namespace Pgn;

constexpr const char *kReturnTest = "\tif (retVal != RET_OK) {\n"
                                    "\t\treturn(retVal);\n"
                                    "\t}\n";

constexpr Word kBufferCounts[] = {
    {"\t{ CO_REC_BUFFER_COUNTS },\n", "\t{ CORE_REC_BUFFER_COUNTS },\n"},
    {"\t{ CO_TR_BUFFER_COUNTS },\n", "\t{ CORE_TR_BUFFER_COUNTS },\n"},
    {"\t{ CO_COB_COUNTS },\n", "\t{ CORE_COB_COUNTS },\n"},
};

void writeWatchdog(Context &context)
{
    context.out.parts("\t", context.dialect.watchdogMacro, "\n");
}

void writeFunctionHead(Context &context)
{
    TextWriter &out = context.out;
    out.block(R"(

/*  J1939 stack initialization function */

RET_T j1939StackInit(
)");
    out.raw(context.form.canFd ? "\tBOOL_T *pModes\n" : "\tvoid\n");
    out.block(R"(
	)
{
RET_T retVal;
)");
    // Deliberate: only the new structures have modes to set, held by tst_pgngenerator.
    if (context.form.canFd && context.form.multiLine && context.features.hasNewInitStructure())
        out.raw("UNSIGNED8 i;\n");
}

void writeModes(Context &context)
{
    TextWriter &out = context.out;
    out.raw("\tif (pModes != NULL) {\n");
    if (context.form.multiLine) {
        out.block(R"(
		for (i = 0; i < $lineCount$; i++)  {
			commonInitVars.fdMode[i] = pModes[i];
		}
)",
                  {{"lineCount", context.dialect.lineCountMacro}});
    } else {
        out.raw("\t\tcommonInitVars.fdMode[0] = pModes[0];\n");
    }
    out.raw("\t}\n");
}

void writeNewValues(Context &context)
{
    TextWriter &out = context.out;
    out.block(R"(
	$version$u,
	{ J1939_RECEIVE_PGN_COUNTS },
	{ J1939_TRANSMIT_PGN_COUNTS },
	{ J1939_SSDO_COUNTS },
	{ J1939_CSDO_COUNTS })",
              {{"version", initStructVersion(InitStruct::J1939, context.store)}});
    if (context.form.excludeSafePgns)
        out.raw(",\n"
                "\t{ J1939_SDG_TRANS_COUNTS },\n"
                "\t{ J1939_SDG_REC_COUNTS }");
    if (context.form.canFd)
        out.raw(",\n"
                "\t{ J1939_DEST_BUFFER_COUNTS }\n");
}

void writeOldValues(Context &context)
{
    TextWriter &out = context.out;
    out.raw("\t3u,\n");
    for (const Word &word : kBufferCounts)
        out.raw(context.dialect.of(word));
    out.raw("\t{ J1939_RECEIVE_PGN_COUNTS },\n"
            "\t{ J1939_TRANSMIT_PGN_COUNTS }\n");
}

void writeStructures(Context &context)
{
    TextWriter &out = context.out;
    const bool isNew = context.features.hasNewInitStructure();
    if (isNew) {
        writeCommonInitVars(out, context.dialect, context.store);
        out.raw(context.dialect.constMacro);
    }
    out.raw(isNew ? " J1939_SERVICE_INIT_VAL_T\tserviceInitVars = {\n"
                  : "const J1939_SERVICE_INIT_VAL_T\tserviceInitVars = {\n");
    writeServiceValues(context);
    if (!context.form.canFd)
        return;
    if (isNew)
        writeModes(context);
    else
        out.raw("\t(void)pModes;\n");
}

void writeCommonStart(Context &context)
{
    TextWriter &out = context.out;
    // Deliberate: the structure of a line that is not started would be an unused one, held by
    // tst_generatedj1939.
    QList<quint8> startedLines;
    for (const Line &line : qAsConst(context.lines)) {
        if (line.hasJ1939())
            startedLines << line.number;
    }
    if (context.form.hasUds) {
        UdsStart::writeStructures(out, context.store, startedLines);
        out.raw("\n");
    }
    // Deliberate: the call hands over a structure that only the new form has, held by
    // tst_pgngenerator.
    if (context.features.hasNewInitStructure()) {
        out.parts(context.dialect.commonStart, kReturnTest);
        writeWatchdog(context);
    }
    out.parts("\tretVal = j1939StackInit_common(&serviceInitVars);\n", kReturnTest);
    if (context.form.hasUds) {
        UdsStart::writeCommonCall(out);
        out.raw("\n");
    }
    writeWatchdog(context);
}

void writeLineStart(Context &context, const Line &line)
{
    TextWriter &out = context.out;
    if (context.form.multiLine)
        out.parts("\tretVal = j1939StackInit_line(", quint32(line.number), ", &j1939Config",
                  lineSuffix(context, line), ");\n");
    else
        out.raw("\tretVal = j1939StackInit_line(&j1939Config);\n");
    out.raw(kReturnTest);
    if (context.form.hasUds) {
        UdsStart::writeLineCall(out, line.number, context.form.multiLine);
        out.raw("\n");
    }
    if (context.form.hasUds || context.form.multiLine)
        writeWatchdog(context);
}

void writeDictionaryStart(Context &context)
{
    TextWriter &out = context.out;
    out.raw("\n"
            "\t/* initialize object dictionary for CiA510 server */\n");
    if (!context.form.multiLine) {
        out.parts("\tretVal = j1939OdInit();\n", kReturnTest);
        return;
    }
    for (const Line &line : qAsConst(context.lines)) {
        if (!line.hasJ1939())
            continue;
        out.parts("\tretVal = j1939OdInit(", quint32(line.number), ");\n", kReturnTest);
        writeWatchdog(context);
    }
}

} // namespace

void Pgn::writeServiceValues(Context &context)
{
    if (context.features.hasNewInitStructure())
        writeNewValues(context);
    else
        writeOldValues(context);
    context.out.raw("};\n"
                    "\n");
}

void Pgn::generateStackInit(Context &context)
{
    writeFunctionHead(context);
    writeStructures(context);
    writeCommonStart(context);
    // Deliberate: lines of other protocols have no structure to hand over, held by
    // tst_pgngenerator.
    for (const Line &line : qAsConst(context.lines)) {
        if (line.hasJ1939())
            writeLineStart(context, line);
    }
    writeWatchdog(context);
    if (context.features.hasSdoServer())
        writeDictionaryStart(context);
    context.out.block(R"(

	return RET_OK;
}
)");
}
