// The functions that start one line each.
#include "generators/multiproto/multiprosections.h"
#include "generators/objdict/objdictinit.h"
#include "support/linelist.h"

namespace
{

using MultiPro::Context;
using ObjDict::CallForm;
using Pgn::Line;

constexpr int kMaster = 1;
constexpr int kMasterByList = 2; ///< the setting of the lines' roles decides

// Of a line that speaks CANopen, after its first SDO server.
constexpr ObjDict::WriteService kServices[] = {
    ObjDict::initFurtherSdoServers,
    ObjDict::initSdoClients,
    ObjDict::initCommonServices,
    ObjDict::initGfc,
    ObjDict::initSrdos,
    ObjDict::initLed,
};

/// How a line with CANopen takes part in NMT and LSS.
struct Role {
    bool isMaster = false;
    bool isByList = false;
};

/// Deliberate: each line has its own element of the setting, held by tst_mixedc.
Role readRole(const Context &context, quint8 line)
{
    const GeneralSettings &settings = context.objDict.settings;
    const qint32 mode = settings.decimalOfLine("nmtmaster", line);
    if (mode != kMasterByList)
        return {mode == kMaster, false};
    const QString element = LineList::element(settings.text("co_ml_ms"), line);
    return {Numbers::toIntDecimal(element) == kMaster, true};
}

void writeLineHead(Context &context, quint8 line, const char *variable)
{
    TextWriter &out = context.out;
    out.block(R"(
RET_T mpStackInit_line$line$(
	UNSIGNED8 canLine,
	CO_INIT_OPTION_T *pCoOptions
    )
{
)",
              {{"line", line}});
    // Deliberate: compilers warn about a parameter that is not used, held by tst_mixedc.
    out.parts(variable, "    (void) pCoOptions; /* currently unused */\n\n");
}

void writeRawLineHead(Context &context, quint8 line)
{
    TextWriter &out = context.out;
    if (!context.facts.isRawOnly()) {
        writeLineHead(context, line, "RET_T retVal;\n");
        return;
    }
    out.block(R"(
RET_T mpStackInit_line$line$(
	UNSIGNED8 canLine
    )
{
RET_T retVal;
)",
              {{"line", line}});
}

/// \a offset as for ObjDict::writeOdInitCall().
void writeDictionary(Context &context, quint8 line, int &offset, const char *comment)
{
    context.out.raw(comment);
    writeOdInitCall(context.objDict, "    coOdInitOdPtr(", line, offset);
}

void writeClassicSdoServer(Context &context, const CallForm &form)
{
    context.out.raw("    /* initialize sdo server(s) */\n");
    writeCheckedCall(context.objDict, form, "    retVal = coSdoServerInit(", QStringLiteral("1u"));
}

void writeFirstSdoServer(Context &context, const CallForm &form)
{
    if (!context.objDict.form.canFd) {
        writeClassicSdoServer(context, form);
        return;
    }
    context.out.block(R"(
    /* initialize usdo server(s) */
    retVal = coUsdoServerInit(canLine);
    if (retVal != RET_OK) {
       return(retVal);
    }
    $watchdog$
)",
                      {{"watchdog", context.objDict.dialect.watchdogMacro}});
}

void writeLss(Context &context, const Role &role)
{
    if (!context.objDict.features.hasLss())
        return;
    TextWriter &out = context.out;
    out.raw("\n");
    if (role.isByList)
        out.raw(role.isMaster ? "    retVal = coLssMasterInit(canLine);\n"
                              : "    retVal = coLssInit(canLine);\n");
    else
        out.raw(role.isMaster ? "    /* initialize LSS Master */\n"
                                "    retVal = coLssMasterInit(canLine);\n"
                              : "    /* initialize LSS Slave */\n"
                                "    retVal =  coLssInit(canLine);\n");
    addRetValHandling(context.objDict, 0);
}

void writeNmt(Context &context, const Role &role)
{
    context.out.raw(role.isMaster ? "    /* initialize NMT master */ \n"
                                    "    retVal = coNmtInit(canLine, 1u);\n"
                                  : "    /* initialize NMT slave */ \n"
                                    "    retVal = coNmtInit(canLine, 0u);\n");
}

/// All of CANopen after the first SDO server. Only a line that speaks nothing else negotiates its
/// node-ID.
void writeCANopenServices(Context &context, const CallForm &form, bool isCANopenOnly)
{
    const Role role = readRole(context, form.line);
    for (const ObjDict::WriteService service : kServices)
        service(context.objDict, form);
    writeLss(context, role);
    initIsoTp(context.objDict, form);
    if (isCANopenOnly)
        initIdNego(context.objDict, form);
    writeNmt(context, role);
}

void writeJ1939Call(Context &context, const CallForm &form)
{
    writeCheckedCall(context.objDict, form, "    retVal = j1939StackInit_line(",
                     QStringLiteral("&j1939Config_l%1").arg(form.line));
}

constexpr const char *kDictionaryComment =
    "    /* initialize object dictionary variables and pointers */\n";

void writeCANopenLine(Context &context, const CallForm &form, int &offset)
{
    writeLineHead(context, form.line, "RET_T retVal = RET_OK;\n");
    writeDictionary(context, form.line, offset, kDictionaryComment);
    context.out.raw("\n");
    writeFirstSdoServer(context, form);
    writeCANopenServices(context, form, true);
}

void writeBothLine(Context &context, const CallForm &form, int &offset)
{
    writeLineHead(context, form.line, "RET_T retVal;\n");
    writeJ1939Call(context, form);
    writeDictionary(context, form.line, offset, kDictionaryComment);
    context.out.raw("\n");
    writeClassicSdoServer(context, form);
    writeCANopenServices(context, form, false);
}

void writeJ1939Line(Context &context, const CallForm &form, int &offset)
{
    writeLineHead(context, form.line, "RET_T retVal;\n");
    writeJ1939Call(context, form);
    // Deliberate: there is a dictionary to refer to only beside lines of CANopen, where a line that
    // does not use its rows passes them by; held by tst_mixedc.
    if (context.facts.hasCiA510 && context.facts.hasCANopen)
        writeDictionary(context, form.line, offset,
                        "    /* initialize object dictionary variables and pointers CiA 510 */\n");
    else
        offset += countAssignRows(context.objDict, form.line);
    initIsoTp(context.objDict, form);
}

void writeRawLine(Context &context, const CallForm &form, int &offset)
{
    writeRawLineHead(context, form.line);
    writeCheckedCall(context.objDict, form, "    retVal = rawcanStackInit_line(",
                     QStringLiteral("&rawcanConfig_l%1").arg(form.line));
    offset += countAssignRows(context.objDict, form.line);
    initIsoTp(context.objDict, form);
}

/// Writes all but the end of a line's function.
using WriteLine = void (*)(Context &context, const CallForm &form, int &offset);

WriteLine writerOf(LineType type)
{
    switch (type) {
    case LineType::CANopen:
        return writeCANopenLine;
    case LineType::CANopenAndJ1939:
        return writeBothLine;
    case LineType::J1939:
        return writeJ1939Line;
    case LineType::RawCan:
        return writeRawLine;
    }
    return nullptr;
}

} // namespace

void MultiPro::writeLineFunctions(Context &context)
{
    TextWriter &out = context.out;
    int offset = 0;
    // Deliberate: no function for a line above 31, which has no tables to hand over; held by
    // tst_multiprogenerator.
    for (const Line &line : qAsConst(context.pgn.lines)) {
        out.parts("\n", "/* init line ", quint32(line.number), " */\n");
        const CallForm form = {line.number, true};
        const WriteLine write = writerOf(line.type);
        if (!write) {
            // Deliberate: rows of a line that is not started stand in the table all the same, here
            // and above; held by tst_mixedc.
            offset += countAssignRows(context.objDict, line.number);
            continue;
        }
        write(context, form, offset);
        if (line.type != LineType::CANopen)
            writeUdsLineCall(context.objDict, form);
        out.raw("    return(retVal);\n"
                "}\n");
    }
}
