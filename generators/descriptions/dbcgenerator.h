// The groups of a J1939 line as a DBC file, for tools that watch the bus.
#pragma once

#include "generators/filegenerator.h"

struct KvaDb;

/// Writes "<project>.dbc", or "<project>_<line>.dbc" where a project has several lines. The group
/// of address claiming is declared to the project before, and stays in it for the run.
class DBCGenerator : public FileGenerator
{
    Q_OBJECT

public:
    DBCGenerator();

protected:
    /// Reads the user's choices and declares the group of address claiming, on the driver's thread.
    void resetJob() override;

private:
    QString targetFile() const override;

    /// The single-line name, in a project of several lines too.
    QString testedFile() const override;
    void writeFiles() override;
    bool writeDatabase(KvaDb *handle, const QString &file);

    bool hasImplementationInfo = false; ///< the user wants variables and their kind in the file
};

namespace Dbc
{

/// Declares the address claim on a line, see AddressClaim::declare().
void declareIdentify(ObjectDataBase &store, quint8 line);

/// Characters that a name cannot hold become "_".
QString symbolName(const QString &name);

/// Address of the line from the list of start addresses; 0xFE, the null address, if there is none.
quint8 lineAddress(const ObjectDataBase &store, quint8 line);

} // namespace Dbc
