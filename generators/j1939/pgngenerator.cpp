// The order of the sections.
#include "generators/j1939/pgngenerator.h"

#include "generators/addressclaim.h"
#include "generators/j1939/pgninit.h"
#include "generators/j1939/pgnsections.h"
#include "generators/projectlines.h"
#include "support/parametergroups.h"

void Pgn::declareIdentify(ObjectDataBase &store)
{
    constexpr quint32 kNoNumber = 0;
    const QList<quint8> lines = readProjectLines(store).numbers;
    for (const quint8 line : lines) {
        if (!carriesJ1939(readLineType(store, line)) &&
            store.getPGNs(line, Direction::kTransmitted, false).size() < 2)
            continue;
        (void)store.delPGN(line, ParameterGroup::kAddressClaimed,
                           Direction::kTransmitted); // there may be none
        AddressClaim::declare(store, line, kNoNumber);
    }
}

PGNGenerator::PGNGenerator() : PGNGenerator(Pgn::classicDialect()) {}

PGNGenerator::PGNGenerator(const Pgn::Dialect &stackDialect)
    : TextFileGenerator(QStringLiteral("gen_pgn.c")), dialect(stackDialect)
{
}

PGNGeneratorV4::PGNGeneratorV4() : PGNGenerator(Pgn::v4Dialect()) {}

void PGNGenerator::resetJob()
{
    database->setLockWriteAccess(false);
    Pgn::declareIdentify(*database);
}

void PGNGenerator::write(TextWriter &out)
{
    Pgn::Context context = Pgn::makeContext(*database, out, dialect);
    writeHead(context, projectName, toolVersion, hasStandardLibrary());
    emit progress(25);
    defineManagedVariables(context);
    declareMappings(context);
    emit progress(50);
    defineTransmitPGNs(context);
    emit progress(70);
    defineReceivePGNs(context);
    emit progress(90);
    defineIdentify(context);
    defineJ1939Config(context);
    generateStackInit(context);
}
