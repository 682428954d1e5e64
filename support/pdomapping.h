// Whether and into which PDOs a subindex may be mapped.
#pragma once

#include <QString>

enum class PDOMappingType : quint8 {
    No = 0,       ///< not mappable
    Default = 1,  ///< mappable, and mapped by default
    Optional = 2, ///< mappable
    Rpdo = 3,     ///< mappable in receive PDOs only
    Tpdo = 4,     ///< mappable in transmit PDOs only
};

/// The PDO mapping attribute of a subindex, with its forms in CSV, XDD and EDS files.
class PDOMapping
{
public:
    constexpr PDOMapping() = default;
    constexpr PDOMapping(PDOMappingType mappingType) : type(mappingType) {}

    /// The mapping with that number; a number above 4 counts as not mappable.
    static PDOMapping fromUInt(quint32 number);

    /// Takes "no", "default", "optional", "RPDO" or "TPDO" in any case; any other word means "no".
    void fromCSVString(const QString &word);
    QString getCSVStringValue() const;

    /// Value of the attribute PDOmapping of ISO 15745 based descriptions; the words are those of
    /// CSV.
    QString getXDDStringValue() const { return getCSVStringValue(); }

    /// The number as stored in a project, 0 to 4.
    constexpr quint32 toUInt() const { return static_cast<quint32>(type); }

    /// The EDS entry PDOMapping (CiA 306): 1 for a mappable object, else 0.
    constexpr quint32 toBinary() const { return type == PDOMappingType::No ? 0 : 1; }

    constexpr bool isEqualToType(PDOMappingType other) const { return type == other; }
    constexpr bool operator==(const PDOMapping &other) const { return type == other.type; }
    constexpr bool operator!=(const PDOMapping &other) const { return type != other.type; }

private:
    PDOMappingType type = PDOMappingType::No;
};
