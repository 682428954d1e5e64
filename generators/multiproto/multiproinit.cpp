// The entry function of the start-up, what all lines have in common, and its end.
#include "generators/initstructversions.h"
#include "generators/j1939/pgninit.h"
#include "generators/multiproto/multiprosections.h"
#include "generators/objdict/objdictinit.h"

namespace
{

using MultiPro::Context;
using Pgn::Line;

constexpr const char *kReturnTest = "    if (retVal != RET_OK) {\n"
                                    "        return (retVal);\n"
                                    "    }\n";

// --- Heads of functions ---

constexpr Word kEntryParameters = {"         CO_EVENT_STORE_T\tpLoadFunction,\n"
                                   "         MP_PROTOCOL_TYPE_T\t*pProtType",
                                   "         CORE_PROTOCOL_TYPE_T *pProtType,\n"
                                   "         CO_EVENT_STORE_T pLoadFunction\n"};
constexpr Word kCommonParameters = {"         CO_EVENT_STORE_T pLoadFunction,\n"
                                    "         MP_PROTOCOL_TYPE_T *pProtType",
                                    "         CORE_PROTOCOL_TYPE_T *pProtType,\n"
                                    "         CO_EVENT_STORE_T pLoadFunction\n"};
constexpr Word kProtocolVariable = {"MP_PROTOCOL_TYPE_T protType;\n",
                                    "CORE_PROTOCOL_TYPE_T protType;\n"};
constexpr Word kCommonCall = {"    retVal = mpStackInit_common(pLoadFunction, pProtType",
                              "    retVal = mpStackInit_common(pProtType, pLoadFunction"};

constexpr const char *kProtocolCheck = "    /* check for protocol information */\n"
                                       "    if (pProtType == NULL)  {\n"
                                       "        return(RET_INVALID_PARAMETER);\n"
                                       "    }\n";

/// What the application must have asked for on a line of this type.
struct ProtocolTest {
    LineType type;
    Word text; ///< with $line$ for its number
};

constexpr ProtocolTest kProtocolTests[] = {
    {LineType::CANopen,
     {"    if ((pProtType[$line$] & MP_PROT_TYPE_CANOPEN) != MP_PROT_TYPE_CANOPEN) {\n",
      "    if ((pProtType[$line$] & CORE_PROT_TYPE_CANOPEN) != CORE_PROT_TYPE_CANOPEN) {\n"}},
    {LineType::J1939,
     {"    if ((pProtType[$line$] & MP_PROT_TYPE_J1939) != MP_PROT_TYPE_J1939) {\n",
      "    if ((pProtType[$line$] & CORE_PROT_TYPE_J1939) != CORE_PROT_TYPE_J1939) {\n"}},
    {LineType::RawCan,
     {"    if ((pProtType[$line$] & MP_PROT_TYPE_RAWCAN) != MP_PROT_TYPE_RAWCAN) {\n",
      "    if ((pProtType[$line$] & CORE_PROT_TYPE_RAWCAN) != CORE_PROT_TYPE_RAWCAN) {\n"}},
};

// --- Protocols and modes of the lines, handed on to the common part ---

/// The words of a loop over the lines, which counts them by place.
struct LoopWords {
    Word protocols;
    Word modes;
};

constexpr Word kLoopStart = {
    "CO_LINE_TYPE CO_LINE;\n"
    "    for (CO_LINE = 0; CO_LINE < CO_MULTI_LINE_CNT; CO_LINE ++)\n",
    "CAN_LINE_TYPE CAN_LINE;\n"
    "    for (CAN_LINE = 0; CAN_LINE < CAN_MULTI_LINE_CNT; CAN_LINE ++)\n"};
constexpr Word kModeDefault = {"        commonInitVars.fdMode[CO_LINE] = CO_TRUE;\n",
                               "        commonInitVars.fdMode[CAN_LINE] = CO_TRUE;\n"};

constexpr LoopWords kByPlace = {
    {"        commonInitVars.protocolType[CO_LINE] = pProtType[CO_LINE];\n",
     "        commonInitVars.protocolType[CAN_LINE] = pProtType[CAN_LINE];\n"},
    {"            commonInitVars.fdMode[CO_LINE] = pModes[CO_LINE];\n",
     "            commonInitVars.fdMode[CAN_LINE] = pModes[CAN_LINE];\n"},
};
constexpr LoopWords kByNumber = {
    {"        commonInitVars.protocolType[CO_LINE] = pProtType[lineNumbers[CO_LINE]];\n",
     "        commonInitVars.protocolType[CAN_LINE] = pProtType[lineNumbers[CAN_LINE]];\n"},
    {"            commonInitVars.fdMode[CO_LINE] = pModes[lineNumbers[CO_LINE]];\n",
     "            commonInitVars.fdMode[CAN_LINE] = pModes[lineNumbers[CAN_LINE]];\n"},
};

void writeModesParameter(Context &context, const char *text)
{
    if (context.objDict.form.canFd)
        context.out.raw(text);
}

void writeEntryHead(Context &context)
{
    TextWriter &out = context.out;
    if (context.facts.isRawOnly()) {
        out.block(R"(
RET_T rawcanStackInit(void)
{
RET_T retVal;

)");
        return;
    }
    out.raw("RET_T mpStackInit(\n");
    out.raw(context.of(kEntryParameters));
    // Deliberate: the start-up of CANopen looks at them, held by tst_mixedc.
    if (context.facts.takesOptions)
        out.raw(",\n         CO_INIT_OPTION_T *pCoOptions");
    writeModesParameter(context, ",\n        BOOL_T *pModes");
    out.block(R"(

    )
{
RET_T retVal;
)");
    if (!context.facts.multiLine && context.facts.hasCANopen && context.facts.hasJ1939)
        out.raw(context.of(kProtocolVariable));
    out.raw("\n");
}

void writeProtocolTests(Context &context)
{
    TextWriter &out = context.out;
    out.raw(kProtocolCheck);
    for (const Line &line : qAsConst(context.pgn.lines)) {
        for (const ProtocolTest &test : kProtocolTests) {
            if (test.type != line.type)
                continue;
            out.fill(context.of(test.text), {{"line", line.number}});
            out.raw("        return(RET_SERVICE_NOT_INITIALIZED);\n"
                    "    }\n");
        }
    }
}

/// The whole of the entry function's body in the multi-line form.
void writeEntryBody(Context &context)
{
    TextWriter &out = context.out;
    const bool isRawOnly = context.facts.isRawOnly();
    if (isRawOnly) {
        out.raw("    retVal = mpStackInit_common();\n");
    } else {
        writeProtocolTests(context);
        out.raw(context.of(kCommonCall));
        out.raw(context.objDict.form.canFd ? ", pModes);\n" : ");\n");
    }
    // Deliberate: not all lines, since one of unknown type has no function to call, and the program
    // would not link; held by tst_mixedc.
    for (const quint8 line : startedLines(context)) {
        out.block(R"(
    if (retVal == RET_OK) {
        retVal = mpStackInit_line$line$($line$$options$);
    }
)",
                  {{"line", line}, {"options", isRawOnly ? "" : ", NULL"}});
    }
    out.block(R"(
    if (retVal == RET_OK) {
        retVal = mpStackInit_finish();
    };
    return(retVal);
};

)");
}

void writeCommonHead(Context &context)
{
    TextWriter &out = context.out;
    out.raw("RET_T mpStackInit_common(\n");
    if (!context.facts.isRawOnly()) {
        out.raw(context.of(kCommonParameters));
        writeModesParameter(context, ",\n         BOOL_T *pModes");
    }
    out.block(R"(

    )
{
    RET_T retVal = RET_OK;
)");
}

// --- Structures ---

/// Around `serviceInitVars`, where the stack's generation asks whether it has CANopen.
constexpr Word kGuardStart = {"", "\n#ifdef CANOPEN_SUPPORTED\n"};
constexpr Word kGuardEnd = {"", "#endif /* CANOPEN_SUPPORTED */\n"};

void writeCANopenValues(Context &context)
{
    // Deliberate: without the new structures there is none, held by tst_multiprogenerator.
    if (!context.facts.hasCANopen || !hasNewInitStructure(context.objDict))
        return;
    context.out.raw(context.of(kGuardStart));
    writeServiceInitVars(context.objDict, "CO_SERVICE_INIT_VAL_T\tserviceInitVars = {\n", ",\n");
    context.out.raw(context.of(kGuardEnd));
    context.out.raw("\n");
}

void writeJ1939Values(Context &context)
{
    // Deliberate: a line of both protocols counts, since the code below refers to the structure;
    // held by tst_mixedc.
    if (!context.facts.hasJ1939)
        return;
    context.out.raw("const J1939_SERVICE_INIT_VAL_T\tj1939InitVars = {\n");
    writeServiceValues(context.pgn);
}

constexpr Word kBufferCounts = {"\t{ CO_REC_BUFFER_COUNTS },\n"
                                "\t{ CO_TR_BUFFER_COUNTS },\n"
                                "\t{ CO_COB_COUNTS },\n",
                                "\t{ CORE_REC_BUFFER_COUNTS },\n"
                                "\t{ CORE_TR_BUFFER_COUNTS },\n"
                                "\t{ CORE_COB_COUNTS },\n"};

void writeRawValues(Context &context)
{
    if (!context.facts.hasRaw)
        return;
    TextWriter &out = context.out;
    const bool isNew = hasNewInitStructure(context.objDict);
    out.raw("const RAWCAN_SERVICE_INIT_VAL_T\trawcanInitVars = {\n");
    if (isNew)
        out.parts("       ", quint32(initStructVersion(InitStruct::RawCan, context.objDict.store)),
                  "u,\n");
    else
        out.parts("\t3u,\n", context.of(kBufferCounts));
    out.block(R"(
	{ RAWCAN_RECEIVE_COUNTS },
	{ RAWCAN_TRANSMIT_COUNTS }
};
)");
    if (!isNew)
        out.raw("\n");
}

void writeStructures(Context &context)
{
    writeCommonInitVars(context.objDict);
    writeCANopenValues(context);
    writeJ1939Values(context);
    writeRawValues(context);
}

// --- The common part ---

void writeWatchdog(Context &context)
{
    context.out.parts("    ", context.objDict.dialect.watchdogMacro, "\n");
}

void writeCommonStart(Context &context)
{
    context.out.parts(context.objDict.dialect.commonStart, kReturnTest);
    writeWatchdog(context);
}

void writeLineNumbers(Context &context)
{
    TextWriter &out = context.out;
    out.raw("static const UNSIGNED8 lineNumbers[] = {");
    const char *separator = " ";
    for (const Line &line : qAsConst(context.pgn.lines)) {
        out.parts(separator, quint32(line.number), "u");
        separator = ", ";
    }
    out.raw(" };\n");
}

/// The application gives protocols and modes by the number of a line. Deliberate: where numbers
/// have gaps a table leads from place to number, held by tst_mixedc.
void writeLoop(Context &context)
{
    if (context.facts.isRawOnly())
        return;
    TextWriter &out = context.out;
    const QVector<Line> &lines = context.pgn.lines;
    // A project has no line here if all its numbers are beyond those of generated C.
    const bool hasGaps = !lines.isEmpty() && lines.last().number != lines.size() - 1;
    const LoopWords &words = hasGaps ? kByNumber : kByPlace;
    if (hasGaps)
        writeLineNumbers(context);
    out.parts(context.of(kLoopStart), "    {\n", context.of(words.protocols));
    if (context.objDict.form.canFd)
        out.parts(context.of(kModeDefault), "        if (pModes != NULL) {\n",
                  context.of(words.modes), "        }\n");
    out.raw("    }\n");
}

void writeProtocolStarts(Context &context)
{
    TextWriter &out = context.out;
    if (context.facts.hasCANopen) {
        context.out.raw(context.of(kGuardStart));
        out.raw("    coCanOpenStackVarInit(&serviceInitVars);\n");
        writeWatchdog(context);
        context.out.raw(context.of(kGuardEnd));
    }
    if (context.facts.hasJ1939) {
        out.raw("    j1939StackInit_common(&j1939InitVars);\n");
        writeWatchdog(context);
    }
    if (context.facts.hasRaw) {
        out.raw(context.of({"   rawcanStackInit_common(&rawcanInitVars);\n",
                            "    rawcanStackInit_common(&rawcanInitVars);\n"}));
        writeWatchdog(context);
    }
    out.raw("\n");
}

void writeLoadParameters(Context &context)
{
    TextWriter &out = context.out;
    // Deliberate: the event is one of CANopen, which the stack lacks without such a line; held by
    // tst_mixedc.
    const bool isForeign =
        !context.facts.hasCANopen && context.objDict.settings.decimal("event_store") > 0;
    if (isForeign)
        out.raw("#ifdef CANOPEN_SUPPORTED\n");
    writeLoadParameterBlock(
        context.objDict, {"        return (retVal);\n", "        return RET_INVALID_PARAMETER;\n"});
    if (isForeign)
        out.block(R"(
#else /* CANOPEN_SUPPORTED */
    (void) pLoadFunction;
#endif /* CANOPEN_SUPPORTED */
)");
    out.raw("\n");
}

void writeCommonFunction(Context &context)
{
    TextWriter &out = context.out;
    writeCommonHead(context);
    writeStructures(context);
    writeLoop(context);
    out.raw("\n");
    writeCommonStart(context);
    writeProtocolStarts(context);
    writeUdsCommonCall(context.objDict);
    out.raw("\n");
    if (!context.facts.isRawOnly())
        writeLoadParameters(context);
    out.block(R"(
    return(retVal);
};


)");
}

// --- A single line ---

void writeSingleProtocol(Context &context)
{
    TextWriter &out = context.out;
    if (context.facts.isRawOnly()) {
        out.raw("\n");
        return;
    }
    // Deliberate: before the pointer is read for the first time, held by tst_mixedc.
    out.parts("\n", kProtocolCheck);
    out.raw("    commonInitVars.protocolType[0] = *pProtType;\n");
    // Deliberate: an application without modes to set gives none, held by tst_mixedc.
    if (context.objDict.form.canFd)
        out.block(R"(
    if (pModes != NULL) {
        commonInitVars.fdMode[0] = *pModes;
    }
)");
    out.raw("\n");
}

void writeSingleUds(Context &context)
{
    if (!context.facts.hasUds)
        return;
    writeUdsCommonCall(context.objDict);
    writeWatchdog(context);
    writeUdsLineCall(context.objDict, {context.objDict.form.singleLine, false});
    writeWatchdog(context);
}

void writeSingleBody(Context &context)
{
    TextWriter &out = context.out;
    writeStructures(context);
    writeSingleProtocol(context);
    writeCommonStart(context);
    writeSingleUds(context);
    if (context.facts.hasRaw) {
        MultiPro::writeRawStart(context);
        writeWatchdog(context);
    } else if (context.facts.hasCANopen && context.facts.hasJ1939) {
        MultiPro::writeBothStart(context);
        writeWatchdog(context);
    }
    out.raw("    return(RET_OK);\n"
            "}\n");
}

constexpr ObjDict::FinishWords kFinishWords = {"RET_T mpStackInit_finish(void)\n"
                                               "{\n",
                                               "RET_T retVal;\n"};

} // namespace

void MultiPro::writeStart(Context &context)
{
    TextWriter &out = context.out;
    writeUdsStructures(context.objDict);
    out.raw("\n/*  stack initialization */"
            "\n");
    writeEntryHead(context);
    if (!context.facts.multiLine) {
        writeSingleBody(context);
        return;
    }
    writeEntryBody(context);
    writeCommonFunction(context);
    writeLineFunctions(context);
    out.raw("\n"
            "\n");
    // Deliberate: all lines, but none without CANopen, whose stack routes no PDOs; held by
    // tst_multiprogenerator.
    writeFinishFunction(context.objDict, kFinishWords, context.objDict.form.cobIdLines);
}
