// The C source of the CANopen object dictionary: all values, the tables that describe them, the
// PDO mappings and the start-up code.
#pragma once

#include "generators/abstractgenerator.h"
#include "generators/objdict/objdictcontext.h"
#include "generators/objdict/objdictpreamble.h"

/// Writes gen_objdict.c, and writes or removes gen_user.h.
class ObjDictGenerator : public AbstractGenerator
{
    Q_OBJECT

public:
    /// \a compactArrayDescription: like subindices at the end of an object are described by one
    /// row.
    explicit ObjDictGenerator(bool compactArrayDescription);

    bool checkWritability() override;

    /// Write the form for the CAM11/CAM21 SDO server of a J1939 device. Set before the start.
    bool cia510ServerMode = false;

public slots:
    void doJob() override;

protected:
    QStringList outputFiles() const override;

    /// \a jobNameText: see AbstractGenerator.
    ObjDictGenerator(bool compactArrayDescription, const ObjDict::Dialect &stackDialect,
                     const QString &jobNameText);

    /// \a source, and gen_user.h if the project needs it.
    QStringList withUserHeader(const QString &source) const;

    /// Writes or removes gen_user.h.
    void updateUserHeader(bool isNeeded);

    ObjDict::Dialect dialect;

private:
    QString targetFile() const;
    QString userHeaderFile() const;
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
