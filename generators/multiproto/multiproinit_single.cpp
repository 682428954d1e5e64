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

/// The arguments behind the line: rows of the line, and its subindices.
QString dictionaryCounts(const Context &context, const char *format)
{
    const quint8 line = context.objDict.form.singleLine;
    return QString::fromLatin1(format).arg(QString::number(countAssignRows(context.objDict, line)),
                                           QString::number(countSubIndices(context.objDict, line)));
}

void writeCANopenStart(ObjDict::Context &objDict, const QString &dictionaryCall)
{
    TextWriter &out = objDict.out;
    out.raw("  /* variable initialization */\n"
            "    retVal = coCanOpenStackVarInit(&serviceInitVars);\n");
    addRetValHandling(objDict, 0);
    out.raw("\n"
            "    /* initialize object dictionary variables and pointers */\n");
    out.raw(dictionaryCall);
    out.raw("\n");
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
        ObjDict::Context inner{outer.store,     out,        outer.dialect,
                               outer.settings,  outer.form, outer.positions,
                               outer.rpdoTables};
        writeCANopenStart(inner, dictionaryCounts(context, "    coOdInitOdPtr(&od_assign[0], %1, "
                                                           "&od_description[0], %2, NULL, "
                                                           "&od_data_variables);\n"));
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
    out.raw("# ifdef CANOPEN_SUPPORTED\n"
            "#  ifdef J1939_CAM11_CAM21_SUPPORTED\n");
    out.raw(context.of(kWithoutCANopenTest));
    out.raw("\t\t/* init CANopen OD if CANopen is not active */\n"
            "\t\ticoOdAccessVarInit();\n");
    out.raw(dictionaryCounts(context, "        coOdInitOdPtr(&od_assign[0], %1, od_description, "
                                      "%2, NULL, &od_data_variables);\n"));
    out.parts("        ", context.objDict.dialect.watchdogMacro, "\n");
    out.raw("\t}\n"
            "#  endif /*J1939_CAM11_CAM21_SUPPORTED */\n"
            "# endif /* CANOPEN_SUPPORTED */\n");
}

} // namespace

void MultiPro::writeRawStart(Context &context)
{
    context.out.raw("\n"
                    "    retVal = rawcanStackInit_common(&rawcanInitVars);\n"
                    "    if (retVal != RET_OK) {\n"
                    "        return(retVal);\n"
                    "    }\n"
                    "    retVal = rawcanStackInit_line(&rawcanConfig);\n"
                    "    if (retVal != RET_OK) {\n"
                    "        return(retVal);\n"
                    "    }\n");
}

void MultiPro::writeBothStart(Context &context)
{
    TextWriter &out = context.out;
    out.raw("\n"
            "    protType = *pProtType;\n"
            "\n    /* initialize CANopen if requested */\n");
    out.raw(context.of(kCANopenTest));
    out.raw("#ifdef CANOPEN_SUPPORTED\n");
    generateCANopenInBothSl(context);
    out.raw("#else /* CANOPEN_SUPPORTED */\n"
            "        return(RET_SERVICE_NOT_INITIALIZED);\n"
            "#endif /* CANOPEN_SUPPORTED */\n"
            "    }\n"
            "\n    /* initialize J1939 if requested */\n");
    out.raw(context.of(kJ1939Test));
    out.raw("#ifdef J1939_SUPPORTED\n");
    generateJ1939InBothSl(context);
    out.raw("#else /* J1939_SUPPORTED */\n"
            "        return(RET_SERVICE_NOT_INITIALIZED);\n"
            "#endif /* J1939_SUPPORTED */\n"
            "    }\n"
            "\n");
}
