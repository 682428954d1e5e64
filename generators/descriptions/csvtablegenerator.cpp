// Tables of the object dictionary.
#include "generators/descriptions/csvtablegenerator.h"

#include "generators/textwriter.h"
#include "support/cohelper.h"
#include "support/logging.h"
#include "support/numbers.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

namespace
{

/// What a row of a subindex is written from.
struct SubFacts {
    quint8 sub = 0;
    // The same in all rows of an object.
    QString indexText;
    QString lineText;
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

QString hex(quint32 number, int digits)
{
    return QStringLiteral("0x") + Numbers::toHex(number, digits);
}

QString yesNo(bool isYes)
{
    return isYes ? QStringLiteral("yes") : QStringLiteral("no");
}

/// The name, or the number of a type that has none.
QString typeWord(quint16 type)
{
    const QString name = COHelper::index2DataTypeString(type);
    return name.isEmpty() ? QString::number(type) : name;
}

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
    const char *name;
    QString (*ofSub)(const SubFacts &facts);
    QString (*ofObject)(const SubFacts &facts) = nullptr; ///< empty in the row of an object if null
    bool isOfGroupedTable = false;                        ///< other tables do not have it
    bool isLimit = false;
};

// clang-format off
constexpr ColumnRow kColumns[] = { // row order is column order
    {"index", [](const SubFacts &f) { return f.indexText; },
              [](const SubFacts &f) { return f.indexText; }},
    {"sub", [](const SubFacts &f) { return hex(f.sub, 2); }},
    {"line", [](const SubFacts &f) { return f.lineText; },
             [](const SubFacts &f) { return f.lineText; }},
    {"objectcode", [](const SubFacts &f) { return f.codeText; },
                   [](const SubFacts &f) { return f.codeText; }},
    {"edsname", [](const SubFacts &f) { return f.data->name; },
                [](const SubFacts &f) { return f.object.name; }},
    {"datatype", [](const SubFacts &f) { return typeWord(f.data->dataType); },
                 [](const SubFacts &f) { return typeWord(f.object.dataType); }},
    {"access", [](const SubFacts &f) { return f.data->accessType; }},
    {"mapable", [](const SubFacts &f) { return COHelper::pdoMapping2String(f.data->pdoMapping); }},
    {"value", [](const SubFacts &f) { return f.data->defaultValue; }},
    {"hasdefault", [](const SubFacts &f) { return f.data->defaultInEds ? QStringLiteral("1") : QStringLiteral("0"); }},
    {"defaultineds", [](const SubFacts &f) { return QString::number(f.data->writeDefaultToEds); }},
    {"haslimit", [](const SubFacts &f) { return yesNo(f.data->limitInEds); }},
    {"lowlimit", [](const SubFacts &f) { return f.data->lowLimit; }, nullptr, false, true},
    {"uplimit", [](const SubFacts &f) { return f.data->upLimit; }, nullptr, false, true},
    {"size", [](const SubFacts &f) { return QString::number(f.data->size); }},
    {"implementation", [](const SubFacts &f) { return COHelper::implementation2Word(f.data->implementation); }},
    {"varname", [](const SubFacts &f) { return f.data->varName; }},
    {"nvstorage", [](const SubFacts &f) { return yesNo(f.data->nvStorage); }},
    {"description", [](const SubFacts &f) { return f.withDescription ? f.data->description : QString(); },
                    [](const SubFacts &f) { return f.withDescription ? f.object.description : QString(); }},
    {"denotation", [](const SubFacts &f) { return f.data->denotation; }, nullptr, true},
    {"metadata", [](const SubFacts &f) { return metadataText(f.data->metadata); },
                 [](const SubFacts &f) { return metadataText(f.object.metadata); }, true},
};
// clang-format on

/// A row of the fields that \a fieldOf makes of the columns of the table.
template <typename FieldOf>
void writeRow(TextWriter &out, const CsvLayout &layout, FieldOf fieldOf)
{
    const char *separator = "";
    for (const ColumnRow &column : kColumns) {
        if (!layout.isGroupedTable && column.isOfGroupedTable)
            continue;
        out.raw(separator);
        out.raw(fieldOf(column));
        separator = ";";
    }
    out.raw("\n");
}

} // namespace

QString CsvTable::field(const QString &text, bool inQuotes)
{
    for (const QChar character : text) {
        inQuotes = inQuotes || character == QLatin1Char(';') || character == QLatin1Char('"') ||
                   character == QLatin1Char('\n') || character == QLatin1Char('\r');
    }
    if (!inQuotes)
        return text;
    return QLatin1Char('"') + QString(text).replace(QLatin1String("\""), QLatin1String("\"\"")) +
           QLatin1Char('"');
}

void CsvTable::writeHeader(TextWriter &out, const CsvLayout &layout)
{
    writeRow(out, layout, [](const ColumnRow &column) { return QString::fromLatin1(column.name); });
}

void CsvTable::writeObject(TextWriter &out, const CsvLayout &layout, const ObjectDataBase &store,
                           quint8 line, quint16 index)
{
    SubFacts facts;
    facts.withDescription = layout.withDescription;
    if (!store.getIndexData(line, index, facts.object))
        return;
    facts.indexText = hex(index, 4);
    facts.lineText = QString::number(line);
    facts.codeText = COHelper::objectCode2String(facts.object.objectCode);
    if (layout.isGroupedTable) {
        writeRow(out, layout, [&facts](const ColumnRow &column) {
            return column.ofObject ? CsvTable::field(column.ofObject(facts)) : QString();
        });
    }
    store.visitSubIndices(line, index, 0, [&](quint8 sub, const SubIndexData &data) {
        facts.sub = sub;
        facts.data = &data;
        const bool withoutLimits = isWithoutLimits(data);
        writeRow(out, layout, [&](const ColumnRow &column) {
            return CsvTable::field(column.ofSub(facts), column.isLimit && withoutLimits);
        });
    });
}

CsvTableGenerator::CsvTableGenerator(const QString &name, const CsvLayout &tableLayout)
    : AbstractGenerator(name), layout(tableLayout)
{
}

bool CsvTableGenerator::checkWritability()
{
    return isNewOrWritable(QString::fromLatin1(layout.file).arg(outputDirectory, projectName));
}

void CsvTableGenerator::doJob()
{
    const JobBracket bracket(*this);
    checkForceMLFlag();
    const QString pattern = QString::fromLatin1(isMultiLine() ? layout.fileOfLine : layout.file);
    QFile file(isMultiLine()
                   ? pattern.arg(outputDirectory, projectName, QString::number(activeLine))
                   : pattern.arg(outputDirectory, projectName));
    if (!openOutputFile(file))
        return;
    TextWriter out(&file);
    CsvTable::writeHeader(out, layout);
    const QList<quint16> indices = database->getIndices(activeLine, 0x1000, 0xFFFF);
    for (const quint16 index : indices) {
        if (abortRequested) {
            qCDebug(lcGenerator) << "Generation aborted";
            break;
        }
        CsvTable::writeObject(out, layout, *database, activeLine, index);
        QThread::yieldCurrentThread();
    }
    closeOutputFile(out, file);
}
