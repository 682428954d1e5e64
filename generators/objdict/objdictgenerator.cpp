// The order of the sections.
#include "generators/objdict/objdictgenerator.h"

#include "generators/objdict/objdictdescription.h"
#include "generators/objdict/objdictinit.h"
#include "generators/objdict/objdictpdo.h"
#include "generators/objdict/objdictvalues.h"

#include <QFile>

ObjDictGenerator::ObjDictGenerator(bool compactArrayDescription)
    : ObjDictGenerator(compactArrayDescription, ObjDict::classicDialect())
{
}

ObjDictGenerator::ObjDictGenerator(bool compactArrayDescription,
                                   const ObjDict::Dialect &stackDialect)
    : AbstractGenerator(QStringLiteral("gen_objdict.c")), dialect(stackDialect),
      compactArrays(compactArrayDescription)
{
}

ObjDictGeneratorV4::ObjDictGeneratorV4(bool compactArrayDescription)
    : ObjDictGenerator(compactArrayDescription, ObjDict::v4Dialect())
{
}

QString ObjDictGenerator::targetFile() const
{
    return QStringLiteral("%1/gen_objdict.c").arg(outputDirectory);
}

ObjDict::HeadFacts ObjDictGenerator::headFacts() const
{
    return {projectName, toolVersion};
}

bool ObjDictGenerator::checkWritability()
{
    return isNewOrWritable(targetFile());
}

void ObjDictGenerator::doJob()
{
    const JobBracket bracket(*this);
    QFile file(targetFile());
    if (!openOutputFile(file))
        return;
    TextWriter out(&file);
    ObjDict::Context context{*database, out, dialect, GeneralSettings(*database), {}, {}, {}};
    context.form = ObjDict::readForm(*database, activeLine);
    context.form.compactArrays = compactArrays;
    context.form.sdoServerOnly = cia510ServerMode;
    updateUserHeader(ObjDict::needsUserHeader(context));
    writePreamble(context);
    writeTables(context);
    writeStartUp(context);
    if (context.positions.isOverfull)
        fail(QStringLiteral("More than 65535 values of one type in ") + file.fileName());
    closeOutputFile(out, file);
}

void ObjDictGenerator::updateUserHeader(bool isNeeded)
{
    QFile file(QStringLiteral("%1/gen_user.h").arg(outputDirectory));
    if (!isNeeded) {
        file.remove(); // there may be none
        return;
    }
    if (!openOutputFile(file))
        return;
    TextWriter out(&file);
    ObjDict::writeUserHeader(out, headFacts());
    closeOutputFile(out, file);
}

void ObjDictGenerator::writePreamble(ObjDict::Context &context)
{
    writeHead(context, "object dictionary", headFacts());
    writeIncludes(context, ObjDict::hasStandardLibrary(outputDirectory));
    writeStartPrototypes(context);
    writeApplicationHeaders(context);
    writeMemorySpecifiers(context);
    writeIndicationPointers(context);
    writeObjectCounts(context);
}

// Each section reads the positions that those before it left, so their order is binding.
void ObjDictGenerator::writeTables(ObjDict::Context &context)
{
    defineManagedVariables(context);
    defineAllConsts(context);
    // Deliberate: the SDO server has no function that would use the texts, held by
    // tst_objdictgenerator.
    if (context.settings.decimal("generate_string_defaults") > 0 && !cia510ServerMode)
        generateStringDefaultValues(context);
    defineApplicationVariables(context);
    emit progress(25);
    describeObjects(context);
    emit progress(50);
    assignObjects(context);
    emit progress(75);
    if (!cia510ServerMode)
        createMappingTables(context);
    initDataTypeStructure(context);
}

void ObjDictGenerator::writeStartUp(ObjDict::Context &context)
{
    if (cia510ServerMode) {
        initCamod(context);
        return;
    }
    if (context.form.multiLine)
        initObjectDictionaryMultiLine(context);
    else
        initObjectDictionary(context);
    overwrite301(context);
    if (context.settings.decimal("generate_string_defaults") > 0)
        generateStringDefaultValueFunction(context);
}
