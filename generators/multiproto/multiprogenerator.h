// The C source of a device whose lines speak several protocols, or raw CAN: the tables of all
// lines, and one start-up function that brings each of them up by the protocol of its type.
#pragma once

#include "generators/multiproto/multiprocontext.h"
#include "generators/objdict/objdictgenerator.h"

/// Writes gen_mp.c, or gen_rawcan.c for raw CAN alone, and writes or removes gen_user.h. The group
/// of address claiming is declared to the project before the job, and stays in it for the run.
class MultiProGenerator : public ObjDictGenerator
{
    Q_OBJECT

public:
    MultiProGenerator();

protected:
    explicit MultiProGenerator(const MultiPro::Dialect &stackDialect);

    /// Declares the group of address claiming, on the driver's thread.
    void resetJob() override;

private:
    QString targetFile() const override;

    /// That of the object dictionary's source.
    QString testedFile() const override { return ObjDictGenerator::targetFile(); }
    void write(TextWriter &out) override;
    void writeTables(MultiPro::Context &context);

    MultiPro::Dialect words;
};

/// The same for stacks with the core headers.
class MultiProGeneratorV4 : public MultiProGenerator
{
    Q_OBJECT

public:
    MultiProGeneratorV4();
};
