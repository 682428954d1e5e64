// The object dictionary of a line as a table for spreadsheets, which the import reads back.
#pragma once

#include "generators/descriptions/linedocgenerator.h"

/// All that the kinds of tables differ in.
struct CsvLayout {
    const char *ending = "";     ///< of the file's name, with its dot
    bool isGroupedTable = false; ///< each object has a row of its own ahead of its subindices, and
                                 ///< there are columns for what only objects and displays hold
    bool withDescription = true; ///< else the cells of that column stay empty
};

/// Writes a row for each subindex, in ascending order, with values as the project holds them.
class CsvTableGenerator : public LineDocGenerator
{
    Q_OBJECT

protected:
    CsvTableGenerator(const QString &name, const CsvLayout &tableLayout);

    CsvLayout layout;

private:
    void write(TextWriter &out) override;
};

/// The rows of the file. A record that the store does not hold writes nothing.
namespace CsvRows
{

void writeHeader(TextWriter &out, const CsvLayout &layout);
void writeObject(TextWriter &out, const CsvLayout &layout, const ObjectDataBase &store, quint8 line,
                 quint16 index);

} // namespace CsvRows
