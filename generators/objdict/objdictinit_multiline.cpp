// Start-up of several lines: one function for the whole and one per line.
#include "generators/objdict/objdictinit.h"
#include "generators/projectlines.h"

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

// Of a line, behind its SDO clients.
constexpr WriteService kServices[] = {
    initCommonServices, initIsoTp, initIdNego, initGuarding, initGfcOfLine, initSrdos, initLed,
};

/// The options of the run tell whether the device is NMT master, at least on one line.
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
        out.raw(QString::number(line));
        if (line != lines.last() || hasGaps(lines))
            out.raw(", ");
    }
    out.raw(" };"
            "\n");
}

void writeModesParameter(Context &context)
{
    if (context.form.canFd)
        context.out.raw("         , BOOL_T *pModes\n");
}

/// The end of a call whose last argument may be the modes.
const char *closeWithModes(const Context &context)
{
    return context.form.canFd ? ", pModes);\n" : ");\n";
}

/// Deliberate: where no line has a start-up function, what only those take is not used, and
/// compilers warn of it; held by tst_generatedc.
void ignoreWithoutLines(Context &context, const char *name)
{
    if (context.form.servedLines.isEmpty())
        context.out.raw(QStringLiteral("    (void) %1;\n").arg(QLatin1String(name)));
}

void writeEntryHead(Context &context)
{
    TextWriter &out = context.out;
    if (isDynamic(context))
        out.raw("RET_T coCanOpenStackInitPara(\n"
                "         CO_EVENT_STORE_T pLoadFunction,\n"
                "         CO_INIT_OPTION_T *pCoOptions\n");
    else
        out.raw("RET_T coCanOpenStackInit(\n"
                "         CO_EVENT_STORE_T pLoadFunction\n");
    writeModesParameter(context);
    out.raw("    )\n"
            "{\n"
            "    CO_INIT_OPTION_T *pCoInitOpt = NULL;\n"
            "    RET_T retVal;\n");
    ignoreWithoutLines(context, "pCoInitOpt");
    if (isDynamic(context))
        ignoreWithoutLines(context, "pCoOptions");
}

void writeEntryFunction(Context &context)
{
    TextWriter &out = context.out;
    writeEntryHead(context);
    out.raw("    retVal = coCanOpenStackInit_common(pLoadFunction");
    out.raw(closeWithModes(context));
    for (const quint8 line : qAsConst(context.form.servedLines)) {
        out.raw("    if (retVal == RET_OK) {\n");
        if (isDynamic(context))
            out.raw(QStringLiteral("        pCoInitOpt = &pCoOptions[%1];\n").arg(line));
        out.raw(
            QStringLiteral("        retVal = coCanOpenStackInit_line%1(%1, pCoInitOpt").arg(line));
        out.raw(closeWithModes(context));
        out.raw("    }\n");
    }
    out.raw("    if (retVal == RET_OK) {\n"
            "            retVal = coCanOpenStackInit_finish();\n"
            "    }\n"
            "    return(retVal);\n"
            "}\n");
}

/// Counts lines by place, while `pModes` has them by number. Deliberate: where numbers have gaps
/// the table of lines leads from one to the other, held by tst_golden.
void writeModeLoop(Context &context)
{
    const QList<quint8> lines = readProjectLines(context.store).numbers;
    const QString modes = hasNewInitStructure(context)
                              ? QStringLiteral("commonInitVars.fdMode[CO_LINE]")
                              : QStringLiteral("serviceInitVars.fdMode[CO_LINE]");
    TextWriter &out = context.out;
    out.raw(QStringLiteral("    for (CO_LINE = 0; CO_LINE < %1; CO_LINE ++)\n")
                .arg(QLatin1String(context.dialect.lineCountMacro)));
    out.raw("    {\n");
    out.raw(QStringLiteral("        %1 = CO_TRUE;\n").arg(modes));
    out.raw("        if (pModes != NULL) {\n");
    out.raw(hasGaps(lines)
                ? QStringLiteral("            %1 = pModes[canLineTable[CO_LINE]];\n").arg(modes)
                : QStringLiteral("            %1 = pModes[CO_LINE];\n").arg(modes));
    out.raw("        }\n"
            "    }\n");
}

void writeCommonHead(Context &context)
{
    TextWriter &out = context.out;
    out.raw("RET_T coCanOpenStackInit_common(\n"
            "         CO_EVENT_STORE_T pLoadFunction\n");
    writeModesParameter(context);
    out.raw("    )\n"
            "{\n");
    if (context.form.canFd)
        out.raw("    CO_LINE_TYPE    CO_LINE;\n");
    out.raw("    RET_T retVal = RET_OK;\n");
    out.raw(commonInitVarsText(context));
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
        out.raw("    /* common initialization */\n");
        out.raw(context.dialect.commonStart);
        out.raw("    if (retVal != RET_OK) {\n"
                "        return (retVal);\n"
                "    }\n"
                "\n");
    }
    out.raw(udsCommonText(context));
    out.raw("    /* multi-line initialization */\n"
            "    retVal = coCanOpenStackVarInit(&serviceInitVars);\n"
            "    if (retVal != RET_OK) {\n"
            "        return(retVal);\n"
            "    }\n");
    writeLoadParameterBlock(context);
    out.raw("\n"
            "    return(retVal);\n"
            "}\n"
            "\n");
}

void writeDispatcher(Context &context)
{
    TextWriter &out = context.out;
    out.raw("RET_T coCanOpenStackInit_line(\n"
            "                  UNSIGNED8 canLine,\n"
            "                  CO_INIT_OPTION_T *pCoOptions\n");
    writeModesParameter(context);
    out.raw("       )\n"
            "{\n"
            "    RET_T retVal;\n");
    ignoreWithoutLines(context, "pCoOptions");
    if (context.form.canFd)
        ignoreWithoutLines(context, "pModes");
    out.raw("    switch(canLine) {\n");
    for (const quint8 line : qAsConst(context.form.servedLines)) {
        out.raw(QStringLiteral("   \tcase %1:\n").arg(line));
        out.raw(QStringLiteral("   \t\tretVal = coCanOpenStackInit_line%1(canLine, pCoOptions")
                    .arg(line));
        out.raw(closeWithModes(context));
        out.raw("   \t\tbreak;\n");
    }
    out.raw("   \tdefault:\n"
            "   \t\tretVal = RET_INVALID_PARAMETER;\n"
            "   \tbreak;\n"
            "    }\n"
            "    return(retVal);\n"
            "}\n");
}

bool hasSdoServers(const Context &context)
{
    const QList<quint8> &lines = context.form.lines;
    return std::any_of(lines.begin(), lines.end(), [&](quint8 line) {
        return !context.store.getIndices(line, 0x1200, 0x127F).isEmpty();
    });
}

/// Deliberate: with CAN FD, and no SDO server for the other mode, a check without a call of its own
/// may be the first; held by tst_golden.
bool mayCheckUnset(const Context &context, quint8 line)
{
    const qint32 master = context.settings.decimalOfLine("nmtmaster", line);
    const bool hasLssWithoutCall =
        context.settings.decimal("lss_supported") > 0 && master != 0 && master != kMaster;
    const bool hasBareCheck = hasLssWithoutCall || context.settings.decimal("idnego_supported") > 0;
    return context.form.canFd && hasBareCheck && !hasSdoServers(context);
}

void writeLineHead(Context &context, quint8 line)
{
    TextWriter &out = context.out;
    out.raw(
        "\n"
        "\n/* *************************************************************************************"
        "***** */\n");
    out.raw(QStringLiteral("/* Initialize line << %1 */\n").arg(line));
    out.raw(QStringLiteral("RET_T coCanOpenStackInit_line%1(\n").arg(line));
    out.raw("                  UNSIGNED8 canLine,\n"
            "                  CO_INIT_OPTION_T *pCoOptions\n");
    if (context.form.canFd)
        out.raw("                  , BOOL_T *pModes\n");
    out.raw("       )\n"
            "{\n");
    out.raw(mayCheckUnset(context, line) ? "    RET_T retVal = RET_OK;\n" : "    RET_T retVal;\n");
    // Deliberate: also where only other lines look at the options, for compilers warn of a
    // parameter that is not used; held by tst_generatedc.
    if (!isMasterByOptions(context, line))
        out.raw("    (void) pCoOptions; /* currently unused */\n\n");
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
    out.raw("    if (pModes != NULL) {\n"
            "        if (pModes[canLine] == CO_TRUE) {\n"
            "            retVal = coUsdoServerInit(canLine);\n"
            "            if (retVal != RET_OK) {\n"
            "                return(retVal);\n"
            "            }\n"
            "#ifdef CO_SDO_SERVER_CNT\n"
            "        }\n"
            "        else {\n"
            "            retVal = coSdoServerInit(canLine, 1u);\n"
            "            if (retVal != RET_OK) {\n"
            "                return(retVal);\n"
            "            }\n");
    initFurtherSdoServers(context, form);
    out.raw("#endif /* CO_SDO_SERVER_CNT */\n"
            "        }\n"
            "    } else {\n"
            "        retVal = coUsdoServerInit(canLine);\n");
    addRetValHandling(context, 0);
    out.raw("    }\n");
}

void writeSdoClients(Context &context, const CallForm &form)
{
    initUsdoClient(context, form);
    const QList<quint16> clients = context.store.getIndices(form.line, 0x1280, 0x12FF);
    for (const quint16 index : clients) {
        context.out.raw("    /* initialize sdo client */\n");
        writeCheckedCall(context, form, "    retVal = coSdoClientInit(",
                         QStringLiteral("%1u").arg(index - 0x127F));
    }
}

void writeLss(Context &context, quint8 line)
{
    TextWriter &out = context.out;
    const qint32 master = context.settings.decimalOfLine("nmtmaster", line);
    out.raw("\n");
    if (master == kMaster)
        out.raw("    /* initialize LSS Master */\n"
                "#ifdef CO_LSS_MASTER_SUPPORTED\n"
                "    retVal = coLssMasterInit(canLine);\n"
                "#endif /* CO_LSS_MASTER_SUPPORTED */\n");
    else if (master == 0)
        out.raw("    /* initialize LSS Slave */\n"
                "    retVal =  coLssInit(canLine);\n");
    addRetValHandling(context, 0);
}

void writeDynamicNmt(Context &context, bool hasLss)
{
    TextWriter &out = context.out;
    out.raw("    /* Check dynamic options for master flag */\n"
            "    if (pCoOptions->master == 1) {\n"
            "        /* initialize Master */\n"
            "        retVal = coNmtInit(canLine, 1u);\n");
    addRetValHandling(context, 4);
    out.raw("#ifdef CO_LSS_MASTER_SUPPORTED\n"
            "       retVal = coLssMasterInit(canLine);\n");
    addRetValHandling(context, 4);
    out.raw("#endif /* CO_LSS_MASTER_SUPPORTED */\n"
            "    } else {\n"
            "        /* initialize NMT slave */ \n"
            "        retVal = coNmtInit(canLine, 0u);\n");
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
    const bool hasLss = context.settings.decimal("lss_supported") > 0;
    TextWriter &out = context.out;
    writeLineHead(context, line);
    out.raw(udsLineText(context, form));
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
    const QList<quint16> mappings = context.store.getIndices(line, 0x1600, 0x17FF);
    return std::any_of(mappings.begin(), mappings.end(), [&](quint16 index) {
        ObjectDataBase::SUBINDEX_DATA_T data;
        return context.store.getSubIndexData(line, index, 0, data) &&
               data.accessType == QLatin1String("rw");
    });
}

/// Routes are looked up at run time only for mappings that change there.
bool needsRouting(const Context &context, const QList<quint8> &lines)
{
    const bool hasRoutes = std::any_of(lines.begin(), lines.end(), [&](quint8 line) {
        return !context.store.getSubIndices(line, 0x1F2C, 1).isEmpty();
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
        out.raw("    /*\n"
                "     * Currently this function is only required to initialize PDO Routing.\n"
                "     * Without it the function is empty, but may be used later for additional\n"
                "     * purposes.\n"
                "     */\n");
    }
    out.raw("    return(RET_OK);\n"
            "}\n");
}

void initObjectDictionaryMultiLine(Context &context)
{
    writeLineTable(context);
    context.out.raw(udsStructuresText(context));
    context.out.raw("\n");
    writeEntryFunction(context);
    writeCommonFunction(context);
    writeDispatcher(context);
    writeLineFunctions(context);
    writeFinishFunction(context, kFinishWords, context.form.servedLines);
}

} // namespace ObjDict
