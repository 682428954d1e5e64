// Import of a line of another project.
#pragma once

#include "import/basedataimporter.h"
#include "store/objectdatabase.h"

#include <memory>

/// Copies a line of a project file, in any form, into the target line, which is added if it is
/// missing: objects and parameter groups within the index range, and all else that the line has.
/// What of the other project may be missed beside it is told.
class TSRPImporter : public BaseDataImporter
{
    Q_OBJECT

public:
    TSRPImporter() = default;

    /// The first one that the file has, if none is set.
    void setLineOfFile(quint8 line) { lineOfFile = line; }

    /// Opens the file; getLastError() tells if it is no project, or has no such line.
    LineType lineTypeOfFile() override;

public slots:
    void doImport() override;

private:
    /// Null, and reported, if it cannot be opened.
    std::unique_ptr<ObjectDataBase> openFile();
    bool copyLine(ObjectDataBase &other);
    void tellLinks(const ObjectDataBase &other) const;
    void tellSettings(const ObjectDataBase &other) const;

    quint8 lineOfFile = ObjectDataBase::kFirstLine;
    std::unique_ptr<ObjectDataBase> source; ///< once lineTypeOfFile() has opened it
};
