// Look-ups in what a DBC file tells.
#include "formats/dbcfile.h"

quint64 DbcSignal::bytesNeeded() const
{
    // Counted from the front of the frame, a big-endian signal is without a gap, too.
    const quint64 first =
        isBigEndian ? quint64(startBit) / 8 * 8 + 7 - quint64(startBit) % 8 : quint64(startBit);
    return (first + bits + 7) / 8;
}

const DbcAttributeDefinition *DbcFile::definition(DbcOwner owner, const QString &name) const
{
    const int number = definitionNumbers.value({owner, name}, -1);
    return number < 0 ? nullptr : &definitions[number];
}

QString DbcFile::attribute(DbcOwner owner, const DbcItem &item, const char *name) const
{
    const int number = definitionNumbers.value({owner, QLatin1String(name)}, -1);
    if (number < 0)
        return QString();
    for (int i = item.attributes.size() - 1; i >= 0; --i) {
        if (item.attributes[i].definition == number)
            return item.attributes[i].text;
    }
    const DbcAttributeDefinition &definition = definitions[number];
    return definition.hasDefault ? definition.defaultValue : QString();
}
