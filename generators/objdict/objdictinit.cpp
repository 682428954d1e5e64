// Start-up of a single line, and of the SDO server of a J1939 device.
#include "generators/objdict/objdictinit.h"

#include "generators/projectlines.h"

namespace ObjDict
{

namespace
{

// After the first SDO server, in the order of the start-up.
constexpr WriteService kServices[] = {
    initCommonServices, initGfc, initSrdos, initIsoTp, initIdNego, initGuarding,
};

/// Where the mode of the line stands, at the start and in the later test of it. Deliberate: in the
/// old form there is no structure of what all protocols share, held by tst_golden.
const char *modeOfLine(const Context &context)
{
    return hasNewInitStructure(context) ? "commonInitVars.fdMode[0]" : "serviceInitVars.fdMode[0]";
}

/// 0 slave, 1 master, 2 as the options of the run say.
qint32 readMasterSetting(const Context &context)
{
    return context.settings.decimalOfLine("nmtmaster", context.form.singleLine);
}

void writeHead(Context &context)
{
    TextWriter &out = context.out;
    if (isMasterByOptions(context)) {
        out.block(R"(

RET_T coCanOpenStackInitPara(
         CO_EVENT_STORE_T pLoadFunction,
         CO_INIT_OPTION_T *pCoOptions
$modes$)",
                  {{"modes", context.form.canFd ? "         , BOOL_T *pModes\n" : ""}});
    } else {
        out.block(R"(

RET_T coCanOpenStackInit(
         CO_EVENT_STORE_T pLoadFunction$modes$
)",
                  {{"modes", context.form.canFd ? ",\n         BOOL_T *pModes" : ""}});
    }
    out.block(R"(
    )
{
    RET_T retVal;
)");
}

void writeInitStructures(Context &context)
{
    TextWriter &out = context.out;
    writeCommonInitVars(context);
    out.raw("\n");
    writeServiceInitVars(context, "    CO_SERVICE_INIT_VAL_T\tserviceInitVars = {\n", "u,\n");
    writeUdsStructures(context);
    out.raw("\n");
    if (!context.form.canFd)
        return;
    out.block(R"(
    if (pModes != NULL) {
        $mode$ = pModes[0];
    }
)",
              {{"mode", modeOfLine(context)}});
}

void writeCommonStart(Context &context)
{
    TextWriter &out = context.out;
    if (hasNewInitStructure(context)) {
        out.parts("    /* common initialization */\n", context.dialect.commonStart);
        addRetValHandling(context, 0);
    }
    writeUdsCommonCall(context);
    out.raw("    /* variable initialization */\n"
            "    retVal = coCanOpenStackVarInit(&serviceInitVars);\n");
    addRetValHandling(context, 0);
    out.block(R"(

    /* initialize object dictionary variables and pointers */
    coOdInitOdPtr(&od_assign[0], CO_OD_ASSIGN_CNT, &od_description[0], CO_OBJ_DESC_CNT, NULL, &od_data_variables);

)");
}

void writeFirstSdoServer(Context &context)
{
    TextWriter &out = context.out;
    if (!context.form.canFd) {
        out.raw("    /* initialize sdo server(s) */\n"
                "    retVal = coSdoServerInit(1u);\n");
        addRetValHandling(context, 0);
        return;
    }
    out.block(R"(
    /* initialize (u)sdo server(s) */
    if ($mode$ == CO_TRUE) {
       retVal = coUsdoServerInit();
       if (retVal != RET_OK) {
           return(retVal);
       }
#ifdef CO_SDO_SERVER_CNT
    } else {
        retVal = coSdoServerInit(1);
       if (retVal != RET_OK) {
           return(retVal);
       }
#endif /* CO_SDO_SERVER_CNT */
    }
)",
              {{"mode", modeOfLine(context)}});
}

/// A comment and a call of NMT or LSS, with its check.
struct RoleStep {
    const char *comment;
    const char *call;
    const char *argument = "";
};

// clang-format off
constexpr RoleStep kLssMaster = {"    /* initialize LSS Master */\n",  "    retVal = coLssMasterInit("};
constexpr RoleStep kLssSlave  = {"    /* initialize LSS Slave */\n",   "    retVal =  coLssInit("};
constexpr RoleStep kNmtMaster = {"    /* initialize NMT master */ \n", "    retVal = coNmtInit(", "1u"};
constexpr RoleStep kNmtSlave  = {"    /* initialize NMT slave */ \n",  "    retVal = coNmtInit(", "0u"};

// Inside the test of the options.
constexpr RoleStep kDynamicLssMaster = {"        /* initialize LSS Master */\n",  "        retVal = coLssMasterInit("};
constexpr RoleStep kDynamicLssSlave  = {"        /* initialize LSS Slave */\n",   "        retVal = coLssInit("};
constexpr RoleStep kDynamicNmtMaster = {"        /* initialize NMT master */ \n", "        retVal = coNmtInit(", "1u"};
constexpr RoleStep kDynamicNmtSlave  = {"        /* initialize NMT slave */ \n",  "        retVal = coNmtInit(", "0u"};
// clang-format on

void writeStep(Context &context, const CallForm &form, const RoleStep &step, int indent)
{
    context.out.raw(step.comment);
    writeCheckedCall(context, form, step.call, QLatin1String(step.argument), indent);
}

void writeDynamicRole(Context &context, const CallForm &form, bool hasLss)
{
    TextWriter &out = context.out;
    out.block(R"(

    /* Check dynamic options for master flag */
    if (pCoOptions->master == 1) {
)");
    if (hasLss)
        writeStep(context, form, kDynamicLssMaster, 4);
    writeStep(context, form, kDynamicNmtMaster, 4);
    out.raw("    } else {\n");
    if (hasLss)
        writeStep(context, form, kDynamicLssSlave, 4);
    writeStep(context, form, kDynamicNmtSlave, 4);
    out.raw("    }\n");
}

void writeRole(Context &context, const CallForm &form)
{
    const bool hasLss = context.features.hasLss();
    if (isMasterByOptions(context)) {
        writeDynamicRole(context, form, hasLss);
        return;
    }
    const qint32 master = readMasterSetting(context);
    if (hasLss) {
        context.out.raw("\n");
        writeStep(context, form, master == 1 ? kLssMaster : kLssSlave, 0);
    }
    writeStep(context, form, master < 1 ? kNmtSlave : kNmtMaster, 0);
}

} // namespace

bool isMasterByOptions(const Context &context)
{
    return readMasterSetting(context) == 2;
}

void initObjectDictionary(Context &context)
{
    // Deliberate: objects and UDS tables are those of the line that exists, also where it is not
    // line 0, held by tst_generatedc.
    const CallForm form = {context.form.singleLine, false};
    writeHead(context);
    writeInitStructures(context);
    writeCommonStart(context);
    writeUdsLineCall(context, form);
    initServices(context, form);
    context.out.raw("    return(RET_OK);\n"
                    "}\n");
}

void initServices(Context &context, const CallForm &form)
{
    initLed(context, form);
    writeFirstSdoServer(context);
    initFurtherSdoServers(context, form);
    initSdoClients(context, form);
    for (const WriteService service : kServices)
        service(context, form);
    writeLoadParameterBlock(context);
    writeRole(context, form);
}

void writeOdInitCall(Context &context, const char *call, quint8 line, int &offset)
{
    const int rows = countAssignRows(context, line);
    context.out.raw(call);
    context.out.fill(
        "canLine, &od_assign[$offset$], $rows$, od_description, $subs$, NULL, "
        "&od_data_variables);\n",
        {{"offset", offset}, {"rows", rows}, {"subs", countSubIndices(context, line)}});
    offset += rows;
}

void initCamod(Context &context)
{
    TextWriter &out = context.out;
    out.raw("\n");
    // The J1939 stack knows no forced multi-line form: lines are counted here.
    if (readProjectLines(context.store).numbers.size() < 2) {
        out.block(R"(
RET_T	j1939OdInit(void)
{
	coOdInitOdPtr(&od_assign[0], CO_OD_ASSIGN_CNT, &od_description[0], CO_OBJ_DESC_CNT, NULL, &od_data_variables);

	return(RET_OK);
}
)");
        return;
    }
    out.block(R"(
RET_T	j1939OdInit(
	UNSIGNED8 canLine
)
{
	switch (canLine) {
)");
    // Deliberate: virtual objects are left out of the rows, as they are of the table, so that each
    // line begins at its own; held by tst_generatedc.
    int offset = 0;
    for (const quint8 line : qAsConst(context.form.lines)) {
        out.fill("\t\tcase $line$:\n"
                 "\t\t/* initialize object dictionary variables and pointers */\n",
                 {{"line", line}});
        writeOdInitCall(context, "\t\tcoOdInitOdPtr(", line, offset);
        out.raw("\n"
                "\t\tbreak;\n");
    }
    out.block(R"(
	default:
	break;
	}
	return(RET_OK);
}
)");
}

} // namespace ObjDict
