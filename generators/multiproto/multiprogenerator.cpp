// The order of the sections.
#include "generators/multiproto/multiprogenerator.h"

#include "generators/j1939/pgngenerator.h"
#include "generators/j1939/pgnsections.h"
#include "generators/multiproto/multiprosections.h"
#include "generators/objdict/objdictdescription.h"
#include "generators/objdict/objdictinit.h"
#include "generators/objdict/objdictpdo.h"
#include "generators/objdict/objdictvalues.h"

MultiProGenerator::MultiProGenerator() : MultiProGenerator(MultiPro::classicDialect()) {}

MultiProGenerator::MultiProGenerator(const MultiPro::Dialect &stackDialect)
    : ObjDictGenerator(false, stackDialect.objDict, QStringLiteral("gen_mp.c")), words(stackDialect)
{
}

MultiProGeneratorV4::MultiProGeneratorV4() : MultiProGenerator(MultiPro::v4Dialect()) {}

QString MultiProGenerator::targetFile() const
{
    return MultiPro::readFacts(*database).isRawOnly() ? inOutputDirectory("gen_rawcan.c")
                                                      : inOutputDirectory("gen_mp.c");
}

void MultiProGenerator::resetJob()
{
    database->setLockWriteAccess(false);
    Pgn::declareIdentify(*database);
}

void MultiProGenerator::write(TextWriter &out)
{
    MultiPro::Context context = MultiPro::makeContext(*database, out, words, activeLine);
    updateUserHeader(ObjDict::needsUserHeader(context.objDict.settings, context.objDict.features));
    writeHead(context, {projectName, toolVersion}, hasStandardLibrary());
    writeTables(context);
    emit progress(75);
    writeStart(context);
    overwrite301(context.objDict);
    if (context.objDict.positions.isOverfull)
        fail(QStringLiteral("More than 65535 values of one type in ") + targetFile());
}

// Sections read the places that those before them left, so their order is binding.
void MultiProGenerator::writeTables(MultiPro::Context &context)
{
    defineManagedVariables(context.pgn);
    declareMappings(context.pgn);
    defineIdentify(context.pgn);
    defineTransmitPGNs(context.pgn);
    defineReceivePGNs(context.pgn);
    defineJ1939Config(context.pgn);
    emit progress(25);
    if (context.facts.hasCANopen) {
        defineManagedVariables(context.objDict);
        defineAllConsts(context.objDict);
        defineApplicationVariables(context.objDict);
        describeObjects(context.objDict);
        assignObjects(context.objDict);
        createMappingTables(context.objDict);
        initDataTypeStructure(context.objDict);
    }
    emit progress(50);
    if (context.facts.hasRaw)
        writeRawCanTables(context);
}
