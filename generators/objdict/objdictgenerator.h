// The C source of the CANopen object dictionary: all values, the tables that describe them, the
// PDO mappings and the start-up code.
#pragma once

#include "generators/objdict/objdictcontext.h"
#include "generators/objdict/objdictpreamble.h"
#include "generators/textfilegenerator.h"

/// Writes gen_objdict.c, and writes or removes gen_user.h.
class ObjDictGenerator : public TextFileGenerator
{
    Q_OBJECT

public:
    /// \a compactArrayDescription: like subindices at the end of an object are described by one
    /// row.
    explicit ObjDictGenerator(bool compactArrayDescription);

    /// Write the form for the CAM11/CAM21 SDO server of a J1939 device. Set before the start.
    bool cia510ServerMode = false;

protected:
    /// \a jobNameText: see AbstractGenerator.
    ObjDictGenerator(bool compactArrayDescription, const ObjDict::Dialect &stackDialect,
                     const QString &jobNameText);

    QString targetFile() const override { return inOutputDirectory("gen_objdict.c"); }

    /// With gen_user.h, if the project needs it.
    QStringList outputFiles() const override;
    void write(TextWriter &out) override;

    /// Writes or removes gen_user.h.
    void updateUserHeader(bool isNeeded);

    ObjDict::Dialect dialect;

private:
    QString userHeaderFile() const { return inOutputDirectory("gen_user.h"); }
    void writePreamble(ObjDict::Context &context);
    void writeTables(ObjDict::Context &context);
    void writeStartUp(ObjDict::Context &context);

    bool compactArrays = false;
};

/// The same for stacks with the core headers.
class ObjDictGeneratorV4 : public ObjDictGenerator
{
    Q_OBJECT

public:
    explicit ObjDictGeneratorV4(bool compactArrayDescription);
};
