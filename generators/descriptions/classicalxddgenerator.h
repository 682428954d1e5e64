// The XML device description (XDD) of a device on classical CAN, by CiA 311.
#pragma once

#include "generators/descriptions/edsgenerator.h"

/// Writes what the data sheet beside it tells, under its name with another ending; in the portable
/// form alone.
class ClassicalXddGenerator : public EDSGenerator
{
    Q_OBJECT

public:
    /// As those of the data sheet beside it, which describes no CAN FD device.
    ClassicalXddGenerator(const EdsVariants &lineVariants, const QString &define, bool classical);

    QString targetFile() const override { return fileWith(".xdd"); }

    /// Does the portable form of \a store have one for \a line? A file without objects is none.
    static bool isWanted(const ObjectDataBase &store, quint8 line);

private:
    QString testedFile() const override { return targetFile(); }
    void write(TextWriter &out) override;
};
