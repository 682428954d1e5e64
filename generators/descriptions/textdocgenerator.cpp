// The text documentation of a CANopen line.
#include "generators/descriptions/textdocgenerator.h"

#include "generators/textwriter.h"
#include "support/cohelper.h"
#include "support/helper.h"
#include "support/logging.h"

#include <QFile>
#include <QThread>

namespace TextDoc
{

void writeTitle(TextWriter &out, const QString &projectName)
{
    out.raw(TextDocGenerator::tr("CANopen Object Dictionary Documenation for %1").arg(projectName));
    out.raw(QStringLiteral("\n\n"));
}

void documentIndex(TextWriter &out, const ObjectDataBase &store, quint8 line, quint16 index)
{
    ObjectDataBase::INDEX_DATA_T data;
    if (!store.getIndexData(line, index, data))
        return;
    out.raw(QStringLiteral("\nIndex:       0x%1 - ").arg(index, 4, 16, QLatin1Char('0')));
    out.raw(Helper::substituteVariables(data.name, index, 0) + QLatin1Char('\n'));
    out.raw(QStringLiteral("DataType:    %1\n").arg(COHelper::index2DataTypeString(data.dataType)));
    out.raw(QStringLiteral("ObjectCode:  %1\n").arg(COHelper::objectCode2String(data.objectCode)));
    if (!data.description.isEmpty())
        out.raw(QStringLiteral("Description: %1\n").arg(data.description));
}

void documentSubIndex(TextWriter &out, const ObjectDataBase &store, quint8 line, quint16 index,
                      quint8 subIndex)
{
    ObjectDataBase::SUBINDEX_DATA_T data;
    if (!store.getSubIndexData(line, index, subIndex, data))
        return;
    out.raw(QStringLiteral("  Sub:          0x%1 - ").arg(subIndex, 2, 16, QLatin1Char('0')));
    out.raw(Helper::substituteVariables(data.name, index, subIndex) + QLatin1Char('\n'));
    out.raw(
        QStringLiteral("  DataType:     %1\n").arg(COHelper::index2DataTypeString(data.dataType)));
    if (!data.defaultValue.isEmpty())
        out.raw(QStringLiteral("  DefaultValue: %1\n").arg(data.defaultValue));
    out.raw(QStringLiteral("  AccessType:   %1\n").arg(data.accessType));
    out.raw(QStringLiteral("  PDOMapping:   %1\n").arg(data.pdoMapping.toUInt()));
    // Deliberate: one column short of the labels above, held by tst_textdocgenerator.
    if (!data.description.isEmpty())
        out.raw(QStringLiteral("  Description: %1\n").arg(data.description));
}

} // namespace TextDoc

// Deliberate: the object name's spelling is part of the driver's report, held by tst_commandline.
TextDocGenerator::TextDocGenerator() : AbstractGenerator(QStringLiteral("textual documenation")) {}

QString TextDocGenerator::singleLineFile() const
{
    return QStringLiteral("%1/%2_doc.txt").arg(outputDirectory, projectName);
}

bool TextDocGenerator::checkWritability()
{
    return isNewOrWritable(singleLineFile());
}

void TextDocGenerator::doJob()
{
    const JobBracket bracket(*this);
    checkForceMLFlag();
    QFile file(isMultiLine() ? QStringLiteral("%1/%2_%3.txt")
                                   .arg(outputDirectory, projectName, QString::number(activeLine))
                             : singleLineFile());
    if (!openOutputFile(file))
        return;
    TextWriter out(&file);
    TextDoc::writeTitle(out, projectName);
    const QList<quint16> indices = database->getIndices(activeLine, 0x1000, 0xFFFF);
    for (const quint16 index : indices) {
        if (abortRequested) {
            qCDebug(lcGenerator) << "Generation aborted";
            break;
        }
        TextDoc::documentIndex(out, *database, activeLine, index);
        const QList<quint8> subIndices = database->getSubIndices(activeLine, index, 0);
        for (const quint8 subIndex : subIndices)
            TextDoc::documentSubIndex(out, *database, activeLine, index, subIndex);
        QThread::yieldCurrentThread();
    }
    closeOutputFile(out, file);
}
