// Import of tables of objects (CSV and ICSV).
#pragma once

#include "formats/csvreader.h"
#include "import/basedataimporter.h"
#include "import/csvrow.h"
#include "store/objectdatabase.h"

#include <QMap>

#include <set>

/// Fills lines of a project from a table with a line for each subindex, on the worker thread. What
/// the table says of a subindex replaces what the project holds of it; an object that is there
/// keeps its record, unless the table has a line of its own for the object. A table whose rows all
/// name the same line, which the project does not have, fills the active line; other rows of
/// missing lines are passed over.
class CsvImporter : public BaseDataImporter
{
    Q_OBJECT

public:
    CsvImporter() = default;

    /// The user has named the active line: it gets the table even if that names another line,
    /// which the project has.
    void setLineNamed(bool isNamed) { isLineNamed = isNamed; }

    /// What lines beginning with "d" name; nothing is deleted.
    Q_INVOKABLE void getDeleteList(QList<BaseDataImporter::SubAddress> &list) const;
    /// What lines beginning with "c" name, a source and after it its target; nothing is copied.
    Q_INVOKABLE void getCopyList(QList<BaseDataImporter::SubAddress> &list) const;

public slots:
    void doImport() override;

private:
    using ObjectData = ObjectDataBase::INDEX_DATA_T;
    using ObjectKey = QPair<quint8, quint16>; ///< line and index

    void handleDeleteLine(const QStringList &fields);
    void handleCopyLine(const QStringList &fields);
    void readRow(const CsvReader &reader, const CsvColumns &columns);
    /// Why the row is not taken: it names no place of the project, or none in the range. Empty if
    /// it is.
    QString handleImportLine(const CsvRow &row, const CsvReader &reader, const CsvColumns &columns);
    /// What is taken otherwise than it stands there.
    void tellOfDoubts(const CsvRow &row, const CsvReader &reader, const CsvColumns &columns);
    void lookForForeignLine(CsvReader reader, const CsvColumns &columns);
    bool isUsableLine(qint64 number);
    void importObject(const ObjectKey &key, const CsvRow &row);
    void importSubIndex(const ObjectKey &key, CsvRow row);
    void provideObject(const ObjectKey &key, const CsvRow &row);
    void flush();
    void addMissingCounts();
    void forgetCaches();

    static void applyLimits(CsvRow &row);
    /// Strings and domains need a place and a size of their own.
    void applyStorage(const ObjectKey &key, CsvRow &row);

    FileProblems problems;
    bool isLineNamed = false;
    bool hasTakenRow = false;
    QList<SubAddress> deleteList;
    QList<SubAddress> copyList;
    qint64 foreignLine = -1;                   ///< stands for the active line; -1: none does
    QMap<quint8, bool> usableLines;            ///< those that rows named
    QMap<ObjectKey, ObjectData> madeObjects;   ///< made for the sake of a subindex
    std::set<ObjectKey> arrays;                ///< objects that a row calls an array
    QList<ObjectDataBase::SubEntry> collected; ///< not yet in the store
};
