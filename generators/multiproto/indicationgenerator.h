// gen_indication.h: prototypes of the application's functions that the stack calls by name.
#pragma once

#include "generators/textfilegenerator.h"

/// Writes the header once for all CANopen lines of a project. The names are general settings;
/// nothing checks that they are names of C.
class indicationgenerator : public TextFileGenerator
{
    Q_OBJECT

public:
    indicationgenerator();

private:
    QString targetFile() const override { return inOutputDirectory("gen_indication.h"); }
    void write(TextWriter &out) override;
};

/// The sections of the file.
namespace Indications
{

void writeHead(TextWriter &out, const QString &projectName, const QString &toolVersion);

/// Is a function set that would be declared here? Read and write functions of the USDO server count
/// without the server too.
bool staticIndisAvailable(const ObjectDataBase &store);

/// In the multi-line form each function takes the line as its first parameter.
void writePrototypes(TextWriter &out, const ObjectDataBase &store, bool multiLine);

} // namespace Indications
