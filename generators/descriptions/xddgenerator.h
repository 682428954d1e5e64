// The XML device description (XDD) of a CAN FD line, a container of profiles by ISO 15745.
#pragma once

#include "generators/abstractgenerator.h"

/// Writes "<project>_<vendor>.xdd", the vendor as eight hexadecimal digits of object 0x1018; the
/// name tells the line too where a project has several.
class XDDGenerator : public AbstractGenerator
{
    Q_OBJECT

public:
    XDDGenerator();

    /// True in practice: the name that is looked at has a place holder for the vendor.
    bool checkWritability() override;

public slots:
    void doJob() override;

protected:
    QStringList outputFiles() const override;

private:
    QString filePath() const;
};
