// The start of a project's only line: raw CAN, or both protocols as the application chooses.
#include "generators/multiproto/multiprosections.h"
#include "generators/objdict/objdictinit.h"

#include <QBuffer>

namespace
{

using MultiPro::Context;

constexpr Word kCANopenTest = {
    "    if ((protType & MP_PROT_TYPE_CANOPEN) == MP_PROT_TYPE_CANOPEN)  {\n",
    "    if ((protType & CORE_PROT_TYPE_CANOPEN) == CORE_PROT_TYPE_CANOPEN)  {\n"};
constexpr Word kJ1939Test = {
    "    if ((protType & MP_PROT_TYPE_J1939) == MP_PROT_TYPE_J1939)  {\n",
    "    if ((protType & CORE_PROT_TYPE_J1939) == CORE_PROT_TYPE_J1939)  {\n"};
constexpr Word kWithoutCANopenTest = {
    "\tif ((protType & MP_PROT_TYPE_CANOPEN) != MP_PROT_TYPE_CANOPEN)  {\n",
    "\tif ((protType & CORE_PROT_TYPE_CANOPEN) != CORE_PROT_TYPE_CANOPEN)  {\n"};

void writeWatchdog(Context &context)
{
    context.out.parts("    ", context.objDict.dialect.watchdogMacro, "\n");
}

/// Four more blanks before each line; lines of the preprocessor stay where they are.
QString indented(const QString &text)
{
    QString result;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (int i = 0; i + 1 < lines.size(); ++i) {
        const bool isBlock = !lines.at(i).isEmpty() && !lines.at(i).startsWith(QLatin1Char('#'));
        result += (isBlock ? QStringLiteral("    ") : QString()) + lines.at(i) + QLatin1Char('\n');
    }
    return result;
}

void writeCANopenStart(ObjDict::Context &objDict)
{
    TextWriter &out = objDict.out;
    out.raw("  /* variable initialization */\n"
            "    retVal = coCanOpenStackVarInit(&serviceInitVars);\n");
    addRetValHandling(objDict, 0);
    out.block(R"(

    /* initialize object dictionary variables and pointers */
    coOdInitOdPtr(&od_assign[0], $rows$, &od_description[0], $subs$, NULL, &od_data_variables);

)",
              {{"rows", countAssignRows(objDict, objDict.form.singleLine)},
               {"subs", countSubIndices(objDict, objDict.form.singleLine)}});
    // Deliberate: UDS is started before, once for both protocols; held by tst_mixedc.
    initServices(objDict, {objDict.form.singleLine, false});
}

void generateCANopenInBothSl(Context &context)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly); // into memory, which does not fail
    {
        const ObjDict::Context &outer = context.objDict;
        TextWriter out(&buffer);
        ObjDict::Context inner(outer.store, out, outer.dialect);
        inner.form = outer.form;
        inner.positions = outer.positions;
        inner.rpdoTables = outer.rpdoTables;
        writeCANopenStart(inner);
    }
    context.out.raw(indented(QString::fromUtf8(buffer.data())));
}

void generateJ1939InBothSl(Context &context)
{
    constexpr const char *kReturnTest = "\tif (retVal != RET_OK) {\n"
                                        "\t return(retVal);\n"
                                        "\t}\n";
    TextWriter &out = context.out;
    out.parts("\tretVal = j1939StackInit_common(&j1939InitVars);\n", kReturnTest);
    writeWatchdog(context);
    out.parts("\tretVal = j1939StackInit_line(&j1939Config);\n", kReturnTest);
    writeWatchdog(context);
    if (!context.facts.hasCiA510)
        return;
    const quint8 line = context.objDict.form.singleLine;
    out.block(R"(
# ifdef CANOPEN_SUPPORTED
#  ifdef J1939_CAM11_CAM21_SUPPORTED
$test$		/* init CANopen OD if CANopen is not active */
		icoOdAccessVarInit();
        coOdInitOdPtr(&od_assign[0], $rows$, od_description, $subs$, NULL, &od_data_variables);
        $watchdog$
	}
#  endif /*J1939_CAM11_CAM21_SUPPORTED */
# endif /* CANOPEN_SUPPORTED */
)",
              {{"test", context.of(kWithoutCANopenTest)},
               {"rows", countAssignRows(context.objDict, line)},
               {"subs", countSubIndices(context.objDict, line)},
               {"watchdog", context.objDict.dialect.watchdogMacro}});
}

} // namespace

void MultiPro::writeRawStart(Context &context)
{
    context.out.block(R"(

    retVal = rawcanStackInit_common(&rawcanInitVars);
    if (retVal != RET_OK) {
        return(retVal);
    }
    retVal = rawcanStackInit_line(&rawcanConfig);
    if (retVal != RET_OK) {
        return(retVal);
    }
)");
}

void MultiPro::writeBothStart(Context &context)
{
    TextWriter &out = context.out;
    out.block(R"(

    protType = *pProtType;

    /* initialize CANopen if requested */
)");
    out.raw(context.of(kCANopenTest));
    out.raw("#ifdef CANOPEN_SUPPORTED\n");
    generateCANopenInBothSl(context);
    out.block(R"(
#else /* CANOPEN_SUPPORTED */
        return(RET_SERVICE_NOT_INITIALIZED);
#endif /* CANOPEN_SUPPORTED */
    }

    /* initialize J1939 if requested */
)");
    out.raw(context.of(kJ1939Test));
    out.raw("#ifdef J1939_SUPPORTED\n");
    generateJ1939InBothSl(context);
    out.block(R"(
#else /* J1939_SUPPORTED */
        return(RET_SERVICE_NOT_INITIALIZED);
#endif /* J1939_SUPPORTED */
    }

)");
}
