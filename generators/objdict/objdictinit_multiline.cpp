// Start-up of several lines: one function for the whole and one per line.
#include "generators/objdict/objdictinit.h"
#include "generators/projectlines.h"
#include "support/accesstype.h"
#include "support/objectindex.h"

#include <algorithm>

namespace ObjDict
{

namespace
{

constexpr int kMaster = 1;
constexpr int kMasterByOptions = 2;

constexpr FinishWords kFinishWords = {"\n"
                                      "RET_T coCanOpenStackInit_finish(void)\n"
                                      "{\n",
                                      "    RET_T retVal;\n"};

// Of a line, after its SDO clients.
constexpr WriteService kServices[] = {
    initCommonServices, initIsoTp, initIdNego, initGuarding, initGfcOfLine, initSrdos, initLed,
};

/// The options of the run say whether the device is NMT master, at least on one line.
bool isDynamic(const Context &context)
{
    return context.settings.text("nmtmaster").contains(QLatin1Char('2'));
}

bool isMasterByOptions(const Context &context, quint8 line)
{
    return isDynamic(context) &&
           context.settings.decimalOfLine("nmtmaster", line) == kMasterByOptions;
}

bool hasGaps(const QList<quint8> &lines)
{
    return !lines.isEmpty() && lines.last() != lines.size() - 1;
}

/// Deliberate: all existing lines, in the order of the counts that the definitions header lists, so
/// that a position means the same in all of them. Where numbers have gaps the last one has a comma
/// as well, which C allows. Both held by tst_golden.
void writeLineTable(Context &context)
{
    const QList<quint8> lines = readProjectLines(context.store).numbers;
    TextWriter &out = context.out;
    out.raw("\nUNSIGNED8 canLineTable[CO_LINE_ARRAY_DECL] = {");
    for (const quint8 line : lines) {
        out.raw(quint32(line));
        if (line != lines.last() || hasGaps(lines))
            out.raw(", ");
    }
    out.raw(" };\n");
}

/// The line of a function's parameter with the modes, if it has one.
const char *modesParameter(const Context &context)
{
    return context.form.canFd ? "         , BOOL_T *pModes\n" : "";
}

/// The last argument of a call that hands them on.
const char *modesArgument(const Context &context)
{
    return context.form.canFd ? ", pModes" : "";
}

/// Deliberate: where no line has a start-up function, what only those take is not used, and
/// compilers warn about it; held by tst_generatedc.
void ignoreWithoutLines(Context &context, const char *name)
{
    if (context.form.servedLines.isEmpty())
        context.out.fill("    (void) $name$;\n", {{"name", name}});
}

void writeEntryHead(Context &context)
{
    TextWriter &out = context.out;
    if (isDynamic(context))
        out.block(R"(
RET_T coCanOpenStackInitPara(
         CO_EVENT_STORE_T pLoadFunction,
         CO_INIT_OPTION_T *pCoOptions
)");
    else
        out.block(R"(
RET_T coCanOpenStackInit(
         CO_EVENT_STORE_T pLoadFunction
)");
    out.block(R"(
$modes$    )
{
    CO_INIT_OPTION_T *pCoInitOpt = NULL;
    RET_T retVal;
)",
              {{"modes", modesParameter(context)}});
    ignoreWithoutLines(context, "pCoInitOpt");
    if (isDynamic(context))
        ignoreWithoutLines(context, "pCoOptions");
}

void writeEntryFunction(Context &context)
{
    TextWriter &out = context.out;
    writeEntryHead(context);
    out.fill("    retVal = coCanOpenStackInit_common(pLoadFunction$modes$);\n",
             {{"modes", modesArgument(context)}});
    for (const quint8 line : qAsConst(context.form.servedLines)) {
        out.raw("    if (retVal == RET_OK) {\n");
        if (isDynamic(context))
            out.fill("        pCoInitOpt = &pCoOptions[$line$];\n", {{"line", line}});
        out.fill("        retVal = coCanOpenStackInit_line$line$($line$, pCoInitOpt$modes$);\n"
                 "    }\n",
                 {{"line", line}, {"modes", modesArgument(context)}});
    }
    out.block(R"(
    if (retVal == RET_OK) {
            retVal = coCanOpenStackInit_finish();
    }
    return(retVal);
}
)");
}

/// Counts lines by place, while `pModes` has them by number. Deliberate: where numbers have gaps
/// the table of lines leads from one to the other, held by tst_golden.
void writeModeLoop(Context &context)
{
    const QList<quint8> lines = readProjectLines(context.store).numbers;
    context.out.block(R"(
    for (CO_LINE = 0; CO_LINE < $lineCount$; CO_LINE ++)
    {
        $mode$ = CO_TRUE;
        if (pModes != NULL) {
            $mode$ = pModes[$line$];
        }
    }
)",
                      {{"lineCount", context.dialect.lineCountMacro},
                       {"mode", hasNewInitStructure(context) ? "commonInitVars.fdMode[CO_LINE]"
                                                             : "serviceInitVars.fdMode[CO_LINE]"},
                       {"line", hasGaps(lines) ? "canLineTable[CO_LINE]" : "CO_LINE"}});
}

void writeCommonHead(Context &context)
{
    TextWriter &out = context.out;
    out.block(R"(
RET_T coCanOpenStackInit_common(
         CO_EVENT_STORE_T pLoadFunction
$modes$    )
{
$line$    RET_T retVal = RET_OK;
)",
              {{"modes", modesParameter(context)},
               {"line", context.form.canFd ? "    CO_LINE_TYPE    CO_LINE;\n" : ""}});
    writeCommonInitVars(context);
    writeServiceInitVars(context, "    CO_SERVICE_INIT_VAL_T\tserviceInitVars = {\n", ",\n");
    out.raw("\n");
}

void writeCommonFunction(Context &context)
{
    TextWriter &out = context.out;
    writeCommonHead(context);
    if (context.form.canFd)
        writeModeLoop(context);
    if (hasNewInitStructure(context)) {
        out.block(R"(
    /* common initialization */
$start$    if (retVal != RET_OK) {
        return (retVal);
    }

)",
                  {{"start", context.dialect.commonStart}});
    }
    writeUdsCommonCall(context);
    out.block(R"(
    /* multi-line initialization */
    retVal = coCanOpenStackVarInit(&serviceInitVars);
    if (retVal != RET_OK) {
        return(retVal);
    }
)");
    writeLoadParameterBlock(context);
    out.block(R"(

    return(retVal);
}

)");
}

void writeDispatcher(Context &context)
{
    TextWriter &out = context.out;
    out.block(R"(
RET_T coCanOpenStackInit_line(
                  UNSIGNED8 canLine,
                  CO_INIT_OPTION_T *pCoOptions
$modes$       )
{
    RET_T retVal;
)",
              {{"modes", modesParameter(context)}});
    ignoreWithoutLines(context, "pCoOptions");
    if (context.form.canFd)
        ignoreWithoutLines(context, "pModes");
    out.raw("    switch(canLine) {\n");
    for (const quint8 line : qAsConst(context.form.servedLines)) {
        out.block(R"(
   	case $line$:
   		retVal = coCanOpenStackInit_line$line$(canLine, pCoOptions$modes$);
   		break;
)",
                  {{"line", line}, {"modes", modesArgument(context)}});
    }
    out.block(R"(
   	default:
   		retVal = RET_INVALID_PARAMETER;
   	break;
    }
    return(retVal);
}
)");
}

bool hasSdoServers(const Context &context)
{
    const QList<quint8> &lines = context.form.lines;
    return std::any_of(lines.begin(), lines.end(), [&](quint8 line) {
        return !context.store.getIndices(line, ObjectRanges::kSdoServers).isEmpty();
    });
}

/// Deliberate: with CAN FD, and no SDO server for the other mode, a check without a call of its own
/// may be the first; held by tst_golden.
bool mayCheckUnset(const Context &context, quint8 line)
{
    const qint32 master = context.settings.decimalOfLine("nmtmaster", line);
    const bool hasLssWithoutCall = context.features.hasLss() && master != 0 && master != kMaster;
    const bool hasBareCheck = hasLssWithoutCall || context.features.hasIdNegotiation();
    return context.form.canFd && hasBareCheck && !hasSdoServers(context);
}

void writeLineHead(Context &context, quint8 line)
{
    context.out.block(R"(


/* ****************************************************************************************** */
/* Initialize line << $line$ */
RET_T coCanOpenStackInit_line$line$(
                  UNSIGNED8 canLine,
                  CO_INIT_OPTION_T *pCoOptions
$modes$       )
{
    RET_T retVal$value$;
)",
                      {{"line", line},
                       {"modes", context.form.canFd ? "                  , BOOL_T *pModes\n" : ""},
                       {"value", mayCheckUnset(context, line) ? " = RET_OK" : ""}});
    // Deliberate: also where only other lines look at the options, since compilers warn about a
    // parameter that is not used; held by tst_generatedc.
    if (!isMasterByOptions(context, line))
        context.out.raw("    (void) pCoOptions; /* currently unused */\n\n");
}

void writeSdoServers(Context &context, const CallForm &form)
{
    TextWriter &out = context.out;
    out.raw("    /* initialize (u)sdo server(s) */\n");
    if (!context.form.canFd) {
        writeCheckedCall(context, form, "    retVal = coSdoServerInit(", QStringLiteral("1u"));
        initFurtherSdoServers(context, form);
        return;
    }
    out.block(R"(
    if (pModes != NULL) {
        if (pModes[canLine] == CO_TRUE) {
            retVal = coUsdoServerInit(canLine);
            if (retVal != RET_OK) {
                return(retVal);
            }
#ifdef CO_SDO_SERVER_CNT
        }
        else {
            retVal = coSdoServerInit(canLine, 1u);
            if (retVal != RET_OK) {
                return(retVal);
            }
)");
    initFurtherSdoServers(context, form);
    out.block(R"(
#endif /* CO_SDO_SERVER_CNT */
        }
    } else {
        retVal = coUsdoServerInit(canLine);
)");
    addRetValHandling(context, 0);
    out.raw("    }\n");
}

void writeSdoClients(Context &context, const CallForm &form)
{
    initUsdoClient(context, form);
    const QList<quint16> clients = context.store.getIndices(form.line, ObjectRanges::kSdoClients);
    for (const quint16 index : clients) {
        context.out.raw("    /* initialize sdo client */\n");
        writeCheckedCall(context, form, "    retVal = coSdoClientInit(",
                         QStringLiteral("%1u").arg(ObjectRanges::kSdoClients.numberOf(index)));
    }
}

void writeLss(Context &context, quint8 line)
{
    TextWriter &out = context.out;
    const qint32 master = context.settings.decimalOfLine("nmtmaster", line);
    out.raw("\n");
    if (master == kMaster)
        out.block(R"(
    /* initialize LSS Master */
#ifdef CO_LSS_MASTER_SUPPORTED
    retVal = coLssMasterInit(canLine);
#endif /* CO_LSS_MASTER_SUPPORTED */
)");
    else if (master == 0)
        out.raw("    /* initialize LSS Slave */\n"
                "    retVal =  coLssInit(canLine);\n");
    addRetValHandling(context, 0);
}

void writeDynamicNmt(Context &context, bool hasLss)
{
    TextWriter &out = context.out;
    out.block(R"(
    /* Check dynamic options for master flag */
    if (pCoOptions->master == 1) {
        /* initialize Master */
        retVal = coNmtInit(canLine, 1u);
)");
    addRetValHandling(context, 4);
    out.raw("#ifdef CO_LSS_MASTER_SUPPORTED\n"
            "       retVal = coLssMasterInit(canLine);\n");
    addRetValHandling(context, 4);
    out.block(R"(
#endif /* CO_LSS_MASTER_SUPPORTED */
    } else {
        /* initialize NMT slave */ 
        retVal = coNmtInit(canLine, 0u);
)");
    addRetValHandling(context, 4);
    if (hasLss) {
        out.raw("        /* initialize LSS Slave */\n"
                "        retVal =  coLssInit(canLine);\n");
        addRetValHandling(context, 4);
    }
    out.raw("    }\n"
            "\n");
}

void writeNmt(Context &context, quint8 line, bool hasLss)
{
    TextWriter &out = context.out;
    if (isMasterByOptions(context, line)) {
        writeDynamicNmt(context, hasLss);
        return;
    }
    if (context.settings.decimalOfLine("nmtmaster", line) == kMaster)
        out.raw("    /* initialize NMT master */ \n"
                "    retVal = coNmtInit(canLine, 1u);\n");
    else
        out.raw("    /* initialize NMT slave */ \n"
                "    retVal = coNmtInit(canLine, 0u);\n");
    addRetValHandling(context, 0);
}

void writeLineFunction(Context &context, quint8 line, int &assignOffset)
{
    const CallForm form = {line, true};
    const bool hasLss = context.features.hasLss();
    TextWriter &out = context.out;
    writeLineHead(context, line);
    writeUdsLineCall(context, form);
    out.raw("    /* initialize object dictionary variables and pointers */\n");
    writeOdInitCall(context, "    coOdInitOdPtr(", line, assignOffset);
    out.raw("\n");
    writeSdoServers(context, form);
    writeSdoClients(context, form);
    for (const WriteService service : kServices)
        service(context, form);
    if (hasLss)
        writeLss(context, line);
    writeNmt(context, line, hasLss);
    out.raw("    return(RET_OK);\n"
            "}\n");
}

void writeLineFunctions(Context &context)
{
    int assignOffset = 0;
    for (const quint8 line : qAsConst(context.form.lines)) {
        // Deliberate: the rows of a line with a single object, which is not started, stand in the
        // table all the same; held by tst_generatedc.
        if (context.form.servedLines.contains(line))
            writeLineFunction(context, line, assignOffset);
        else
            assignOffset += countAssignRows(context, line);
    }
}

bool hasDynamicRpdo(const Context &context, quint8 line)
{
    const QList<quint16> mappings = context.store.getIndices(line, ObjectRanges::kRpdoMappings);
    return std::any_of(mappings.begin(), mappings.end(), [&](quint16 index) {
        ObjectDataBase::SUBINDEX_DATA_T data;
        return context.store.getSubIndexData(line, index, 0, data) &&
               data.accessType == AccessType::kReadWrite;
    });
}

/// Routes are looked up at run time only for mappings that change there.
bool needsRouting(const Context &context, const QList<quint8> &lines)
{
    const bool hasRoutes = std::any_of(lines.begin(), lines.end(), [&](quint8 line) {
        return !context.store.getSubIndices(line, ObjectIndex::kPdoRouting, 1).isEmpty();
    });
    return hasRoutes && std::any_of(lines.begin(), lines.end(),
                                    [&](quint8 line) { return hasDynamicRpdo(context, line); });
}

} // namespace

void writeFinishFunction(Context &context, const FinishWords &words, const QList<quint8> &lines)
{
    TextWriter &out = context.out;
    out.raw(words.head);
    if (needsRouting(context, lines)) {
        out.parts(words.variable, "    /* initialize PDO routing */ \n"
                                  "    retVal = coPdoNetworkRouting();\n");
        addRetValHandling(context, 0);
    } else {
        out.block(R"(
    /*
     * Currently this function is only required to initialize PDO Routing.
     * Without it the function is empty, but may be used later for additional
     * purposes.
     */
)");
    }
    out.raw("    return(RET_OK);\n"
            "}\n");
}

void initObjectDictionaryMultiLine(Context &context)
{
    writeLineTable(context);
    writeUdsStructures(context);
    context.out.raw("\n");
    writeEntryFunction(context);
    writeCommonFunction(context);
    writeDispatcher(context);
    writeLineFunctions(context);
    writeFinishFunction(context, kFinishWords, context.form.servedLines);
}

} // namespace ObjDict
