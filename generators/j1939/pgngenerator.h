// The C source of a J1939 device: variables and mappings of its signals, tables of its groups, the
// NAME by which it claims an address, and the start-up code.
#pragma once

#include "generators/j1939/pgncontext.h"
#include "generators/textfilegenerator.h"

/// Writes gen_pgn.c. The group of address claiming is declared to the project before the job, and
/// stays in it for the run.
class PGNGenerator : public TextFileGenerator
{
    Q_OBJECT

public:
    PGNGenerator();

protected:
    explicit PGNGenerator(const Pgn::Dialect &stackDialect);

    /// Declares the group of address claiming, on the driver's thread.
    void resetJob() override;

private:
    QString targetFile() const override { return inOutputDirectory("gen_pgn.c"); }
    void write(TextWriter &out) override;

    Pgn::Dialect dialect;
};

/// The same for stacks with the core headers.
class PGNGeneratorV4 : public PGNGenerator
{
    Q_OBJECT

public:
    PGNGeneratorV4();
};

namespace Pgn
{

/// Declares the address claim on each line that speaks J1939, or that sends at least two groups.
/// What the line had under that number is replaced.
void declareIdentify(ObjectDataBase &store);

} // namespace Pgn
