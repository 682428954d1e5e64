// Reading and writing of short forms.
#include "store/yaml/yamlshortforms.h"

bool YamlShortForms::read(const YamlNode::Entry &entry)
{
    Q_UNUSED(entry)
    return false;
}

void YamlShortForms::finish() {}

QSet<quint16> YamlShortForms::write(const std::map<quint16, ObjectRecord> &objects,
                                    YamlWriter &writer)
{
    Q_UNUSED(objects)
    Q_UNUSED(writer)
    return {};
}

QStringList YamlShortForms::keys()
{
    return {};
}
