// Objects of a line in the YAML form: as they are, or short where the standards are regular.
#pragma once

#include "formats/yamlwriter.h"
#include "store/projectrecords.h"
#include "store/yaml/yamlcontext.h"

#include <QHash>

namespace YamlObjects
{

/// Takes what \a entries, keys of a line's map, say of objects, in long and in short form. The
/// entries that are about something else are what it gives.
QVector<YamlNode::Entry> read(const QVector<YamlNode::Entry> &entries,
                              std::map<quint16, ObjectRecord> *objects, YamlContext &context);

/// Writes the short forms, then the map of all other objects, into the open map of a line.
void write(const std::map<quint16, ObjectRecord> &objects, YamlWriter &writer);

/// The keys of a line that read() takes.
QStringList keys();

} // namespace YamlObjects

/// The objects of a line on their way out of a file, each once.
class YamlObjectSink
{
public:
    YamlObjectSink(std::map<quint16, ObjectRecord> *target, YamlContext *who)
        : objects(target), context(who)
    {
    }

    /// Tells it at \a key if the object is there already, or there are too many subindices.
    void add(quint16 index, YamlNode key, ObjectRecord &&object);

    const std::map<quint16, ObjectRecord> &all() const { return *objects; }
    /// Sets the default value of a subindex that may be there.
    void setDefault(quint16 index, quint8 sub, const QString &value);

private:
    std::map<quint16, ObjectRecord> *objects;
    YamlContext *context;
    QHash<quint16, int> lines; ///< where each stands
};
