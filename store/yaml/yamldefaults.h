// What the subindices of a line have unless they say otherwise.
//
// Where a project comes from shows in all of its subindices: new ones have the limits 0 and 0,
// those of a text project have none, and those of imported descriptions the range of their type.
// The line says it once, in YamlKeys::kObjectDefaults.
#pragma once

#include "formats/yamlwriter.h"
#include "store/projectrecords.h"
#include "store/yaml/yamlcontext.h"

#include <optional>

class YamlDefaults
{
public:
    /// The ones with which the file gets short.
    static YamlDefaults of(const std::map<quint16, ObjectRecord> &objects);

    void read(YamlNode map, YamlContext &context);
    /// An empty map if they are those of a new subindex.
    YamlValue write() const;
    static QStringList keys();

    /// \a base, of which the context has set the name, the type and more, with what is said here.
    SubIndexData over(SubIndexData base) const;
    /// Those of \a type, if limits come from it.
    void followType(SubIndexData *base, quint16 type) const;
    /// What a record like that has as its implementation.
    quint8 implementationOf(const SubIndexData &record) const;

private:
    enum class Limits { Zero, None, Type, Given };

    void setLimits(SubIndexData *base, quint16 type) const;
    void readLimits(YamlNode value, YamlContext &context);
    void chooseLimits(const std::map<quint16, ObjectRecord> &objects);

    Limits limits = Limits::Zero;
    QString lowLimit; ///< if they are given
    QString upLimit;
    std::optional<QString> allowedAccess;
    std::optional<quint8> implementation; ///< also of what is a constant else
};
