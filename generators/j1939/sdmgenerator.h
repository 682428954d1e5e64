// The C source of safety data groups (SAE J1939-76): their mappings, and the tables of groups that
// each line sends and receives.
#pragma once

#include "generators/j1939/pgncontext.h"
#include "generators/textfilegenerator.h"

/// Writes gen_sdg.c for all lines of a project, in the words of the stack that the project asks
/// for.
class SDMGenerator : public TextFileGenerator
{
    Q_OBJECT

public:
    SDMGenerator();

private:
    QString targetFile() const override { return inOutputDirectory("gen_sdg.c"); }
    void write(TextWriter &out) override;
};

namespace Sdg
{

/// The safe groups of a line in one direction, as many as the definitions header counts; none on a
/// line that does not speak J1939.
QVector<const Pgn::Group *> safeGroups(const Pgn::Line &line, const Pgn::Traffic &traffic);

// The sections, in file order. Tables refer to mappings, the configuration to tables.
void declareMappings(Pgn::Context &context);
void defineTables(Pgn::Context &context);

/// One row a line, in the order of the counts in the definitions header.
void defineConfiguration(Pgn::Context &context);

} // namespace Sdg
