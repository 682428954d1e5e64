// DBC files, for tools that watch the bus.
#pragma once

#include "generators/descriptions/dbcnetwork.h"
#include "generators/filegenerator.h"
#include "generators/frames/busframes.h"

/// The base of generators that write such a file for one line.
class DbcFileGenerator : public FileGenerator
{
    Q_OBJECT

protected:
    using FileGenerator::FileGenerator;

    /// Reads what the user and the project ask for, on the driver's thread.
    void resetJob() override;

    virtual Dbc::Bus bus() const = 0;
    virtual Frames::Collected frames(const Frames::Source &source) const = 0;

    const DbcForm &form() const;

    /// What the device is called: by its line, its description, or its project.
    QString deviceName() const;

    bool isCanFd = false;

private:
    void writeFiles() override;
    bool writeDatabase(KvaDb *handle, const QString &file);
    void tellOfLosses(const Dbc::Network &network, const Frames::Collected &frames) const;

    bool hasImplementationInfo = false; ///< the user wants variables and their kind in the file
    bool isPortable = false;
};

/// Writes "<project>.dbc", or "<project>_<line>.dbc" where a project has several lines, with the
/// groups of a J1939 line or the identifiers of a raw CAN line. The group of address claiming is
/// declared to the project before, and stays in it for the run.
class DBCGenerator : public DbcFileGenerator
{
    Q_OBJECT

public:
    DBCGenerator();

protected:
    /// Also declares the group of address claiming.
    void resetJob() override;

private:
    QString targetFile() const override;

    /// The single-line name, in a project of several lines too.
    QString testedFile() const override;
    Dbc::Bus bus() const override;
    Frames::Collected frames(const Frames::Source &source) const override;

    bool isJ1939 = true;
};

/// Writes "<project>_<line>_canopen.dbc" with the services of a CANopen device, in the portable
/// form only.
class CanopenDbcGenerator : public DbcFileGenerator
{
    Q_OBJECT

public:
    CanopenDbcGenerator();

private:
    QString targetFile() const override;
    Dbc::Bus bus() const override;
    Frames::Collected frames(const Frames::Source &source) const override;
};

namespace Dbc
{

/// Declares the address claim on a line, see AddressClaim::declare().
void declareIdentify(ObjectDataBase &store, quint8 line);

/// Characters that a name cannot hold become "_".
QString symbolName(const QString &name);

} // namespace Dbc
