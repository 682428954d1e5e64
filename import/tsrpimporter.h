// Import of a line of another project.
#pragma once

#include "import/basedataimporter.h"

/// Copies the first line of a project file, database or text, into the target line: objects and
/// parameter groups within the index range, and the settings of the line.
class TSRPImporter : public BaseDataImporter
{
    Q_OBJECT

public:
    TSRPImporter() = default;

public slots:
    void doImport() override;
};
