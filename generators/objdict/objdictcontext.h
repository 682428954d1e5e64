// What the sections of the object dictionary source share: the differences of the two stack
// generations, the form of the file, and the positions that one section leaves for the next.
#pragma once

#include "generators/sourcecontext.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QVector>

#include <array>
#include <optional>

namespace ObjDict
{

/// What the two generations of the stack differ in.
struct Dialect : StackDialect {
    const char *storageMacro = "";      ///< storage class of variables
    const char *constStorageMacro = ""; ///< storage class of constant data
    const char *commonStart = "";       ///< call that starts what all protocols share
};

constexpr Dialect classicDialect()
{
    Dialect d{classicStack()};
    d.storageMacro = "CO_STORAGE_CLASS";
    d.constStorageMacro = "CO_CONST_STORAGE_CLASS";
    d.commonStart = "    retVal = commonStackInit(&commonInitVars);\n";
    return d;
}

constexpr Dialect v4Dialect()
{
    Dialect d{v4Stack()};
    d.storageMacro = "CORE_STORAGE_CLASS";
    d.constStorageMacro = "CORE_CONST_STORAGE_CLASS";
    d.commonStart = "    retVal = coreStackInit(&commonInitVars);\n";
    return d;
}

/// That of the stack which the project asks for.
Dialect dialectOf(const ObjectDataBase &store);

/// The types of values that have an array of their own, `od_<tag>`.
enum class ValueClass { U8, U16, U24, U32, U40, U48, U64, I8, I16, I24, I32, R32 };
constexpr int kValueClassCount = 12;

/// None for strings, domains and types without an array.
std::optional<ValueClass> valueClassOf(quint16 dataType);

/// The line, index and subindex in one number, ascending in that order.
using Key = quint32;
constexpr Key keyOf(quint8 line, quint16 index, quint8 sub)
{
    return quint32(line) << 24 | quint32(index) << 8 | sub;
}

/// Where values went. The sections of values fill it (objdictvalues), those of descriptions, PDO
/// tables and start-up code read it; descriptionRows is filled by the description table and read by
/// the assignment table. What is absent has no place.
struct Positions {
    using Map = QHash<Key, quint16>;
    Map managed;   ///< in `od_<tag>`, or `od_ptr_<tag>` and strings for application variables
    Map constants; ///< default value in `od_const_<tag>`
    Map lowLimits;
    Map highLimits;

    /// The rows of an object in the description.
    struct RowPlace {
        quint16 first = 0;
        quint16 count = 0;
    };
    QHash<Key, RowPlace> descriptionRows; ///< by the key of subindex 0

    /// String defaults of application variables in `stringDefaultValues`.
    struct StringPlace {
        quint32 offset = 0; ///< bytes
        quint32 size = 0;   ///< bytes
    };
    QMap<Key, StringPlace> strings; ///< ascending, the order of the file

    /// Arrays that were written, by ValueClass.
    using Presence = std::array<bool, kValueClassCount>;
    Presence constArrays{};
    Presence managedArrays{};
    Presence pointerArrays{};
    bool hasConstVisString = false;
    bool hasVisString = false;
    bool hasOctetString = false;
    bool hasDomain = false;
    bool hasConstUtf8String = false;
    bool hasUtf8String = false;

    /// An array has more values than a position can address; set by whoever gives positions, read
    /// by the shell, which fails the job.
    bool isOverfull = false;
};

/// One static RPDO mapping; equal ones of a line share a table.
struct MappingTable {
    struct Entry {
        QString address; ///< C expression
        quint8 bits = 0;
        quint32 mapping = 0; ///< index, subindex and length of CiA 301, 7.4.8.2

        bool operator==(const Entry &other) const
        {
            return address == other.address && bits == other.bits && mapping == other.mapping;
        }
    };
    quint8 mappedCount = 0; ///< subindex 0 of the mapping object; 254 and 255 are multiplexed PDOs
    QVector<Entry> entries;

    bool operator==(const MappingTable &other) const
    {
        return mappedCount == other.mappedCount && entries == other.entries;
    }
};

/// The shape of the file, decided once before its first section.
struct Form {
    QList<quint8> lines;       ///< existing lines 0..31 that have objects, ascending
    QList<quint8> servedLines; ///< those with at least two objects: they get a start-up function
    QList<quint8> cobIdLines;  ///< existing lines 0..31 whose COB-IDs may be overwritten
    bool multiLine = false;    ///< see ProjectLines
    quint8 singleLine = 0;     ///< the line that the single-line form starts
    bool compactArrays = false;
    bool canFd = false;
    bool sdoServerOnly = false; ///< the form for the CAM11/CAM21 SDO server of a J1939 device
    bool hasLimitCheck = false; ///< rows of the description give limits
};

/// The form that the project asks for. compactArrays and sdoServerOnly are left to the caller.
Form readForm(const ObjectDataBase &store, quint8 activeLine);

/// See SourceContext.
struct Context : SourceContext<Dialect> {
    using SourceContext::SourceContext;

    Form form;
    Positions positions;
    QHash<quint8, QVector<MappingTable>> rpdoTables; ///< by line; written by the PDO tables, read
                                                     ///< by the calls that hand them to the stack
};

} // namespace ObjDict
