// The C source of the virtual objects: places for their values, and their description.
#pragma once

#include "generators/abstractgenerator.h"
#include "generators/objdict/objdictcontext.h"

/// Writes gen_vobjdict.c. Its tables are as long as the counts of the definitions header.
class VobjDictGenerator : public AbstractGenerator
{
    Q_OBJECT

public:
    VobjDictGenerator();

    /// As in ObjDictGenerator: the tables are those of a J1939 device's SDO server.
    bool cia510ServerMode = false;

    bool checkWritability() override;

    /// May be asked before the start. False as well if the definitions header counts none, since
    /// the tables would have no length.
    bool areVirtualObjectsPresent() const;

public slots:
    void doJob() override;

protected:
    QStringList outputFiles() const override;

private:
    QString targetFile() const;
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

/// Writes an array a type, and gives the places of the values.
ObjDict::Positions::Map writeValues(ObjDict::Context &context, const Counted &counted);
void describeObjects(ObjDict::Context &context, const ObjDict::Positions::Map &values);
void assignObjects(ObjDict::Context &context);

} // namespace VobjDict
