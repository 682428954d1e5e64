// The C source of the virtual objects: places for their values, and their description.
#pragma once

#include "generators/objdict/objdictcontext.h"
#include "generators/textfilegenerator.h"

/// Writes gen_vobjdict.c. Its tables are as long as the counts of the definitions header.
class VobjDictGenerator : public TextFileGenerator
{
    Q_OBJECT

public:
    VobjDictGenerator();

    /// As in ObjDictGenerator: the tables are those of a J1939 device's SDO server.
    bool cia510ServerMode = false;

    /// May be asked before the start. False as well if the definitions header counts none, since
    /// the tables would have no length.
    bool areVirtualObjectsPresent() const;

private:
    QString targetFile() const override { return inOutputDirectory("gen_vobjdict.c"); }
    void write(TextWriter &out) override;
};

/// The sections of the file.
namespace VobjDict
{

/// What the definitions header of a generation of the stack counts.
struct Counted {
    QList<quint8> lines;
    bool hasStrings = false; ///< strings and domains have values
};
Counted readCounted(const ObjectDataBase &store);
/// Is there an array for the values of a type?
bool hasValues(quint16 dataType, const Counted &counted);

/// Writes an array a type, and gives the places of the values.
ObjDict::Positions::Map writeValues(ObjDict::Context &context, const Counted &counted);
void describeObjects(ObjDict::Context &context, const ObjDict::Positions::Map &values);
void assignObjects(ObjDict::Context &context);

} // namespace VobjDict
