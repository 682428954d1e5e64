// The adapter between a J1939 device and its application: a function to read and one to write each
// signal that lies in a variable of the application.
#pragma once

#include "generators/filegenerator.h"
#include "generators/j1939/extdeclgenerator.h"
#include "generators/j1939/pgncontext.h"

/// Writes gen_j1939_adapter.c with the functions, and j1939_adapter.c, which declares them to the
/// code that the user writes into it. That code stays when the file is rewritten; files of these
/// names that are not ours are not written at all.
class J1939AdapterGenerator : public FileGenerator
{
    Q_OBJECT

public:
    J1939AdapterGenerator();

    bool checkWritability() override;

private:
    QString targetFile() const override { return inOutputDirectory("gen_j1939_adapter.c"); }
    QString userFile() const { return inOutputDirectory("j1939_adapter.c"); }
    QStringList outputFiles() const override { return {targetFile(), userFile()}; }
    void writeFiles() override;

    /// Returns the declarations of the functions.
    QStringList writeFunctionsFile(TextWriter &out);
    QByteArray userFileContent(const QStringList &prototypes, const QByteArray &userSection) const;
};

namespace J1939Adapter
{

/// The functions of one signal.
struct Functions {
    QString comment; ///< names the signal for a reader
    QString readPrototype;
    QString writePrototype;
    QString parameter;
    ExtDecl::Access access;
};

/// By line, direction, group and place in the frame. Signals whose type is not known have none.
QVector<Functions> functionsOf(const Pgn::Context &context, const ExtDecl::Variables &variables);

/// True if \a file, one of the adapter's by its name, is ours and holds no code of the user, so
/// that a project without the adapter may delete it.
bool isWithoutCode(const QString &file);

} // namespace J1939Adapter
