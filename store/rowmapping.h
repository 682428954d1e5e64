// How a field of a record becomes a cell of a row, and back. columns.h holds the tables made of it.
#pragma once

#include "store/records.h"
#include "store/rowreader.h"
#include "store/rowvalue.h"

#include <QVariant>

/// What the number or text in a cell stands for.
enum class Coding {
    Plain,    ///< the value itself
    StringId, ///< the id of the text in the table Strings
    Blob,     ///< a serialised string map
};

/// One column of a record's table.
template <class Record>
struct Column {
    const char *name;
    const char *type; ///< as declared in SQL
    Coding coding;
    QVariant (*get)(const Record &);
    void (*set)(Record &, const QVariant &);
    void (*read)(Record &, const RowCell &); ///< does the same
    void (*setText)(Record &, const QString &);
    RowValue (*value)(const Record &); ///< what get() gives; of a text in the record
};

/// A string map as the bytes that a project keeps; an empty map gives no bytes.
QByteArray packMetadata(const Metadata &metadata);
/// The reverse; bytes that are no such map give an empty map.
Metadata unpackMetadata(const QByteArray &bytes);

namespace RowMapping
{

template <class T>
QVariant toCell(const T &value)
{
    if constexpr (std::is_same_v<T, QString>)
        return value.isNull() ? QVariant(QLatin1String(""))
                              : QVariant(value); // a null would be NULL
    else if constexpr (std::is_same_v<T, PDOMapping>)
        return QVariant(static_cast<int>(value.toUInt()));
    else if constexpr (std::is_same_v<T, Metadata>)
        return value.isEmpty() ? QVariant(0) : QVariant(packMetadata(value));
    else
        return QVariant(static_cast<qlonglong>(value));
}

/// The same for RowInserter.
template <class T>
RowValue toValue(const T &value)
{
    if constexpr (std::is_same_v<T, QString>)
        return value;
    else if constexpr (std::is_same_v<T, PDOMapping>)
        return value.toUInt();
    else if constexpr (std::is_same_v<T, Metadata>)
        return value.isEmpty() ? RowValue(0) : RowValue(packMetadata(value));
    else
        return static_cast<qint64>(value);
}

/// Most records have a 0 in place of a map, which needs no look at bytes.
inline bool hasNoMap(const RowCell &cell)
{
    return cell.isInteger();
}
inline bool hasNoMap(const QVariant & /*cell*/)
{
    return false; // its bytes tell
}

/// NULL reads as zero or as an empty text, which is also what it becomes in the text form.
/// \a Cell is a QVariant or a RowCell.
template <class T, class Cell>
T fromCell(const Cell &cell)
{
    if constexpr (std::is_same_v<T, QString>)
        return cell.toString();
    else if constexpr (std::is_same_v<T, PDOMapping>)
        return PDOMapping::fromUInt(static_cast<quint8>(cell.toUInt()));
    else if constexpr (std::is_same_v<T, Metadata>)
        return hasNoMap(cell) ? Metadata() : unpackMetadata(cell.toByteArray());
    else
        return static_cast<T>(cell.toLongLong());
}

template <class T>
void setText(T &value, const QString &text)
{
    if constexpr (std::is_same_v<T, QString>)
        value = text;
    else
        value = fromCell<T>(QVariant(text));
}

template <auto Member>
struct MemberTraits;

template <class R, class T, T R::*Member>
struct MemberTraits<Member> {
    using Record = R;
    using Type = T;
};

} // namespace RowMapping

/// The column that \a Member is stored in. A record that inherits the member is named.
template <auto Member, class Record = typename RowMapping::MemberTraits<Member>::Record>
constexpr auto column(const char *name, const char *type, Coding coding = Coding::Plain)
{
    using Traits = RowMapping::MemberTraits<Member>;
    return Column<Record>{
        name,
        type,
        coding,
        [](const Record &record) { return RowMapping::toCell(record.*Member); },
        [](Record &record, const QVariant &cell) {
            record.*Member = RowMapping::fromCell<typename Traits::Type>(cell);
        },
        [](Record &record, const RowCell &cell) {
            record.*Member = RowMapping::fromCell<typename Traits::Type>(cell);
        },
        [](Record &record, const QString &text) { RowMapping::setText(record.*Member, text); },
        [](const Record &record) { return RowMapping::toValue(record.*Member); }};
}
