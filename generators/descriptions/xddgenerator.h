// The XML device description (XDD) of a CAN FD line, a container of profiles by ISO 15745.
#pragma once

#include "generators/filegenerator.h"

/// Writes "<project>_<vendor>.xdd", the vendor as eight hexadecimal digits of object 0x1018; the
/// name holds the line too where a project has several.
class XDDGenerator : public FileGenerator
{
    Q_OBJECT

public:
    XDDGenerator();

private:
    QString targetFile() const override;

    /// A name with a placeholder for the vendor, so that in practice there is no such file.
    QString testedFile() const override;
    void writeFiles() override;
    bool writeXml(QFile &file);
};
