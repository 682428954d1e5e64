// The text documentation of a CANopen line.
#include "generators/descriptions/textdocgenerator.h"

#include "generators/textwriter.h"
#include "support/cohelper.h"
#include "support/helper.h"
#include "support/numbers.h"
#include "support/plaintext.h"

#include <QRegularExpression>

namespace
{

/// A description in its own lines; "> " marks those that begin like an entry of the document.
QString describedText(const QString &description)
{
    static const QRegularExpression entry(QStringLiteral(
        "([\\n-\\r\\x{85}\\x{2028}\\x{2029}])([ \\t]*(?:Index|DataType|ObjectCode|Description|Sub|"
        "DefaultValue|AccessType|PDOMapping):)"));
    QString text = description;
    text.replace(QChar(0), QLatin1Char(' '));
    if (text.contains(QLatin1Char(':'))) // as few do
        text.replace(entry, QStringLiteral("\\1> \\2"));
    return text;
}

} // namespace

namespace TextDoc
{

void writeTitle(TextWriter &out, const QString &projectName)
{
    out.parts(TextDocGenerator::tr("CANopen Object Dictionary Documenation for %1")
                  .arg(oneLine(projectName)),
              "\n\n");
}

void documentIndex(TextWriter &out, const ObjectDataBase &store, quint8 line, quint16 index)
{
    ObjectDataBase::INDEX_DATA_T data;
    if (!store.getIndexData(line, index, data))
        return;
    out.parts("\nIndex:       0x", HexNumber{index, 4}, " - ",
              oneLine(Helper::substituteVariables(data.name, index, 0)), "\n");
    out.parts("DataType:    ", COHelper::index2DataTypeString(data.dataType), "\n");
    out.parts("ObjectCode:  ", COHelper::objectCode2String(data.objectCode), "\n");
    if (!data.description.isEmpty())
        out.parts("Description: ", describedText(data.description), "\n");
}

void documentSubIndex(TextWriter &out, quint16 index, quint8 subIndex,
                      const ObjectDataBase::SUBINDEX_DATA_T &data)
{
    out.parts("  Sub:          0x", HexNumber{subIndex, 2}, " - ",
              oneLine(Helper::substituteVariables(data.name, index, subIndex)), "\n");
    out.parts("  DataType:     ", COHelper::index2DataTypeString(data.dataType), "\n");
    if (!data.defaultValue.isEmpty())
        out.parts("  DefaultValue: ", oneLine(data.defaultValue), "\n");
    out.parts("  AccessType:   ", oneLine(data.accessType), "\n");
    out.parts("  PDOMapping:   ", data.pdoMapping.toUInt(), "\n");
    // Deliberate: one column short of the labels above, held by tst_golden.
    if (!data.description.isEmpty())
        out.parts("  Description: ", describedText(data.description), "\n");
}

} // namespace TextDoc

// Deliberate: the object name's spelling is part of the driver's report, held by tst_commandline.
TextDocGenerator::TextDocGenerator()
    : LineDocGenerator(QStringLiteral("textual documenation"), "_doc.txt", ".txt")
{
}

void TextDocGenerator::write(TextWriter &out)
{
    TextDoc::writeTitle(out, projectName);
    forEach(database->getIndices(activeLine, ObjectRanges::kAll), [&](quint16 index) {
        TextDoc::documentIndex(out, *database, activeLine, index);
        database->visitSubIndices(activeLine, index, 0, [&](quint8 sub, const SubIndexData &data) {
            TextDoc::documentSubIndex(out, index, sub, data);
        });
    });
}
