// A cell of a project as a value of the YAML form, and back.
#pragma once

#include "formats/yamlwriter.h"
#include "store/yaml/yamlcontext.h"
#include "store/yaml/yamlforms.h"

#include <QVariant>

namespace YamlCells
{

/// What a number column can hold.
struct Bounds {
    qint64 low = 0;
    qint64 high = 0;
};

/// \a cell as the column's record gives it.
YamlValue toYaml(const YamlColumn &column, const QVariant &cell);

/// The cell for the column's record; none, and told, if the value does not fit.
std::optional<QVariant> fromYaml(const YamlColumn &column, YamlNode value, Bounds bounds,
                                 YamlContext &context);

/// A map of texts, sorted by key.
YamlValue toYaml(const Metadata &texts);
/// \a what is "metadata", say.
Metadata fromYaml(YamlNode map, const QString &what, YamlContext &context);

/// The short name of a data type, or its number if it has no name.
YamlValue typeToYaml(quint32 type);

} // namespace YamlCells
