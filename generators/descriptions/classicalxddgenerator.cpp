// The frame of an XML description by CiA 311.
#include "generators/descriptions/classicalxddgenerator.h"

#include "generators/descriptions/canprofiles.h"
#include "generators/descriptions/edssections.h"
#include "generators/textwriter.h"
#include "store/projectfeatures.h"

ClassicalXddGenerator::ClassicalXddGenerator(const EdsVariants &lineVariants,
                                             const QString &variant, bool isClassical)
    : EDSGenerator(QStringLiteral("XDD file"), lineVariants, variant, false, isClassical)
{
}

bool ClassicalXddGenerator::isWanted(const ObjectDataBase &store, quint8 line)
{
    return readProjectFeatures(store).hasPortableDescriptions() &&
           !store.getIndices(line, ObjectRanges::kAssigned).isEmpty();
}

void ClassicalXddGenerator::write(TextWriter &out)
{
    database->setDescriptionSettingsLine(activeLine);
    const EdsSections::Context context = contextFor(out, portableXdd());
    QList<quint16> objects = EdsSections::describedObjects(context);
    while (!objects.isEmpty() && objects.last() > ObjectRanges::kAssigned.last)
        objects.removeLast();

    // What was written goes on to the file from time to time.
    QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    const auto handOver = [&out, &text] {
        out.raw(text);
        text.clear();
    };
    const XddForm form = classicalCanXdd();
    XddWriter writer(xml, *database, activeLine, context.fileName, form);
    CanProfiles profiles(writer, context);
    writer.startContainer(toolVersion);
    profiles.startDevice(objects);
    forEach(objects, [&](quint16 index) {
        profiles.writeParameters(index);
        handOver();
    });
    profiles.endDevice();
    emit progress(50);
    profiles.startCommunication();
    forEach(objects, [&](quint16 index) {
        profiles.writeObject(index);
        handOver();
    });
    profiles.endCommunication(objects);
    xml.writeEndDocument();
    handOver();
}
