// Tables of the object dictionary.
#include "generators/descriptions/csvtablegenerator.h"

#include "formats/csvtable.h"
#include "generators/textwriter.h"
#include "support/cohelper.h"
#include "support/numbers.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace
{

using CsvTable::Column;

/// What a row of a subindex is written from.
struct SubFacts {
    quint8 sub = 0;
    // The same in all rows of an object.
    QString indexText;
    quint8 line = 0;
    QString codeText;
    bool withDescription = true;
    ObjectDataBase::INDEX_DATA_T object;
    const ObjectDataBase::SUBINDEX_DATA_T *data = nullptr; ///< none in the row of an object
};

/// An integer without limits. Empty cells would be read as the limits of its type, unless they are
/// in quotes.
bool isWithoutLimits(const ObjectDataBase::SUBINDEX_DATA_T &data)
{
    if (!data.lowLimit.isEmpty() || !data.upLimit.isEmpty())
        return false;
    QString low;
    QString high;
    COHelper::getDefaultLimits(static_cast<CAN::CANopenDataType>(data.dataType), low, high);
    return !low.isEmpty();
}

/// The cells of a row as they go to the file.
class Cells
{
public:
    explicit Cells(TextWriter &writer) : out(writer) {}

    /// A text of the project, in quotes if asked for or needed.
    void text(const QString &text, bool inQuotes = false)
    {
        if (inQuotes || CsvTable::needsQuotes(text))
            out.raw(CsvTable::field(text, inQuotes));
        else
            out.raw(text);
    }
    /// A word of the table, which needs none.
    void word(const char *word) { out.raw(word); }
    void word(const QString &word) { out.raw(word); }
    void number(quint32 number) { out.raw(number); }
    void yesNo(bool isYes) { out.raw(isYes ? "yes" : "no"); }
    void hex(quint8 number) { out.parts("0x", HexNumber{number, 2}); }
    /// The name, or the number of a type that has none.
    void type(quint16 type)
    {
        const QString name = COHelper::index2DataTypeString(type);
        if (name.isEmpty())
            out.raw(type);
        else
            out.raw(name);
    }

private:
    TextWriter &out;
};

QString metadataText(const Metadata &metadata)
{
    QJsonObject object;
    for (auto it = metadata.constBegin(); it != metadata.constEnd(); ++it)
        object.insert(it.key(), it.value());
    return object.isEmpty()
               ? QString()
               : QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

struct ColumnRow {
    Column column;
    void (*ofSub)(Cells &cells, const SubFacts &facts);
    void (*ofObject)(Cells &cells,
                     const SubFacts &facts) = nullptr; ///< empty in the row of an object if null
};

// clang-format off
constexpr ColumnRow kColumns[] = { // the order of the enumeration
    {Column::Index, [](Cells &c, const SubFacts &f) { c.word(f.indexText); },
              [](Cells &c, const SubFacts &f) { c.word(f.indexText); }},
    {Column::Sub, [](Cells &c, const SubFacts &f) { c.hex(f.sub); }},
    {Column::Line, [](Cells &c, const SubFacts &f) { c.number(f.line); },
             [](Cells &c, const SubFacts &f) { c.number(f.line); }},
    {Column::ObjectCode, [](Cells &c, const SubFacts &f) { c.word(f.codeText); },
                   [](Cells &c, const SubFacts &f) { c.word(f.codeText); }},
    {Column::EdsName, [](Cells &c, const SubFacts &f) { c.text(f.data->name); },
                [](Cells &c, const SubFacts &f) { c.text(f.object.name); }},
    {Column::DataType, [](Cells &c, const SubFacts &f) { c.type(f.data->dataType); },
                 [](Cells &c, const SubFacts &f) { c.type(f.object.dataType); }},
    {Column::Access, [](Cells &c, const SubFacts &f) { c.text(f.data->accessType); }},
    {Column::Mapable, [](Cells &c, const SubFacts &f) { c.word(COHelper::pdoMapping2String(f.data->pdoMapping)); }},
    {Column::Value, [](Cells &c, const SubFacts &f) { c.text(f.data->defaultValue); }},
    {Column::HasDefault, [](Cells &c, const SubFacts &f) { c.word(f.data->defaultInEds ? "1" : "0"); }},
    {Column::DefaultInEds, [](Cells &c, const SubFacts &f) { c.number(f.data->writeDefaultToEds); }},
    {Column::HasLimit, [](Cells &c, const SubFacts &f) { c.yesNo(f.data->limitInEds); }},
    {Column::LowLimit, [](Cells &c, const SubFacts &f) { c.text(f.data->lowLimit, isWithoutLimits(*f.data)); }},
    {Column::UpLimit, [](Cells &c, const SubFacts &f) { c.text(f.data->upLimit, isWithoutLimits(*f.data)); }},
    {Column::Size, [](Cells &c, const SubFacts &f) { c.number(f.data->size); }},
    {Column::Implementation, [](Cells &c, const SubFacts &f) { c.word(COHelper::implementation2Word(f.data->implementation)); }},
    {Column::VarName, [](Cells &c, const SubFacts &f) { c.text(f.data->varName); }},
    {Column::NvStorage, [](Cells &c, const SubFacts &f) { c.yesNo(f.data->nvStorage); }},
    {Column::Description, [](Cells &c, const SubFacts &f) { if (f.withDescription) c.text(f.data->description); },
                    [](Cells &c, const SubFacts &f) { if (f.withDescription) c.text(f.object.description); }},
    {Column::Denotation, [](Cells &c, const SubFacts &f) { c.text(f.data->denotation); }},
    {Column::Metadata, [](Cells &c, const SubFacts &f) { c.text(metadataText(f.data->metadata)); },
                 [](Cells &c, const SubFacts &f) { c.text(metadataText(f.object.metadata)); }},
};
// clang-format on

/// A row of the cells that \a writeCell writes for the columns of the table.
template <typename WriteCell>
void writeRow(TextWriter &out, const CsvLayout &layout, WriteCell writeCell)
{
    Cells cells(out);
    bool isFirst = true;
    for (const ColumnRow &column : kColumns) {
        if (!layout.isGroupedTable && CsvTable::isOfGroupedTable(column.column))
            continue;
        if (!isFirst)
            out.raw(";");
        isFirst = false;
        writeCell(column, cells);
    }
    out.raw("\n");
}

} // namespace

void CsvRows::writeHeader(TextWriter &out, const CsvLayout &layout)
{
    writeRow(out, layout, [](const ColumnRow &column, Cells &cells) {
        cells.word(CsvTable::nameOf(column.column));
    });
}

void CsvRows::writeObject(TextWriter &out, const CsvLayout &layout, const ObjectDataBase &store,
                          quint8 line, quint16 index)
{
    SubFacts facts;
    facts.withDescription = layout.withDescription;
    if (!store.getIndexData(line, index, facts.object))
        return;
    facts.indexText = QStringLiteral("0x") + Numbers::toHex(index, 4);
    facts.line = line;
    facts.codeText = COHelper::objectCode2String(facts.object.objectCode);
    if (layout.isGroupedTable) {
        writeRow(out, layout, [&facts](const ColumnRow &column, Cells &cells) {
            if (column.ofObject)
                column.ofObject(cells, facts);
        });
    }
    store.visitSubIndices(line, index, 0, [&](quint8 sub, const SubIndexData &data) {
        facts.sub = sub;
        facts.data = &data;
        writeRow(out, layout,
                 [&facts](const ColumnRow &column, Cells &cells) { column.ofSub(cells, facts); });
    });
}

CsvTableGenerator::CsvTableGenerator(const QString &name, const CsvLayout &tableLayout)
    : LineDocGenerator(name, tableLayout.ending, tableLayout.ending), layout(tableLayout)
{
}

void CsvTableGenerator::write(TextWriter &out)
{
    CsvRows::writeHeader(out, layout);
    forEach(database->getIndices(activeLine, ObjectRanges::kAll), [&](quint16 index) {
        CsvRows::writeObject(out, layout, *database, activeLine, index);
    });
}
