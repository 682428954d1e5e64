// The imports of a run.
#pragma once

#include "app/importrequest.h"
#include "store/linetype.h"

#include <QVector>

class BaseDataImporter;
class ObjectDataBase;

/// Brings files into the project that is open, each with the importer of its ending. Used on the
/// driver's thread, which waits while one works.
class Imports
{
public:
    explicit Imports(ObjectDataBase &store) : database(store) {}

    /// Runs them one after the other. False, and reported, if one of them cannot be done; none of
    /// them is begun if that can be told before. What is in a description or a table makes no
    /// difference.
    bool run(const QVector<ImportRequest> &requests);

private:
    bool isTriable(const ImportRequest &request) const;
    bool runOne(const ImportRequest &request);
    /// The line for what a file of that protocol holds, which is added if the project lacks it.
    /// False, and reported, if it speaks another protocol.
    bool provideLine(const ImportRequest &request, LineType typeOfFile);
    bool isFitting(const ImportRequest &request, LineType typeOfFile) const;
    void addLine(quint8 line);
    void setType(quint8 line, LineType type);
    void tellOfItself(const ImportRequest &request) const;

    ObjectDataBase &database;
};
