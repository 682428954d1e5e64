// Rows as the text form of a project gives them: column by column, under names and numbers that are
// the file's data.
#include "store/objectdatabase_p.h"
#include "support/candatatype.h"
#include "support/numbers.h"

#include <type_traits>
#include <utility>

namespace
{

bool numberUpTo(const QString &text, quint32 highest, quint32 *number)
{
    bool ok = false;
    *number = Numbers::toUIntByPrefix(text, &ok);
    return ok && *number <= highest;
}

/// Types whose values are text, in which each blank counts.
bool isText(quint16 type)
{
    switch (static_cast<CAN::CANopenDataType>(type)) {
    case CAN::CANopenDataType::VisibleString:
    case CAN::CANopenDataType::OctetString:
    case CAN::CANopenDataType::UnicodeString:
    case CAN::CANopenDataType::StringNull:
    case CAN::CANopenDataType::StringAsterisk:
    case CAN::CANopenDataType::Utf8String:
        return true;
    default:
        return false;
    }
}

/// The data type among the cells of a row; none if it is not there.
std::optional<quint16> givenType(const QVector<ObjectDataBase::ColumnValue> &values)
{
    for (const ObjectDataBase::ColumnValue &value : values) {
        if (value.column == QLatin1String("datatype") && value.value.isValid())
            return static_cast<quint16>(Numbers::toUIntDecimal(value.value.toString()));
    }
    return std::nullopt;
}

/// Does the column hold a value of the row's data type?
template <class Record>
bool holdsValue(const Column<Record> &field)
{
    const QLatin1String name(field.name);
    return name == QLatin1String("defaultvalue") || name == QLatin1String("currentvalue");
}

/// The other types of columns are text and blob. Asked for each cell, so that one letter must do.
bool isNumber(const char *type)
{
    return *type == 'i';
}

/// What a cell of a number column is when it is read again: SQLite makes numbers of texts that look
/// like one.
QVariant storedNumber(const QString &text)
{
    bool ok = false;
    const qlonglong number = text.toLongLong(&ok);
    if (ok)
        return number;
    const double real = text.toDouble(&ok);
    return ok && qAbs(real) < 1e15 ? QVariant(real) : QVariant(text);
}

bool holdsObjectType(const char *column)
{
    return QLatin1String(column) == QLatin1String("objecttype");
}

bool isObjectType(qlonglong number)
{
    switch (static_cast<CANopen::ObjectCode>(number)) {
    case CANopen::ObjectCode::Null:
    case CANopen::ObjectCode::Domain:
    case CANopen::ObjectCode::DefType:
    case CANopen::ObjectCode::DefStruct:
    case CANopen::ObjectCode::Var:
    case CANopen::ObjectCode::Array:
    case CANopen::ObjectCode::Record:
        return true;
    }
    return false;
}

/// Adds a fault if the record will have another value than \a given; \a cell is what is bound.
template <class Record>
void noteUnfit(const Column<Record> &field, const QVariant &given, const QVariant &cell, int number,
               QVector<TextFault> *faults)
{
    if (field.coding == Coding::Blob) {
        const QByteArray bytes = given.toByteArray();
        if (!cell.isValid() && !bytes.isEmpty() && bytes != "0")
            faults->append({number, TextFault::Kind::NoMetadata, QVariant()});
        return;
    }
    if (field.coding != Coding::Plain || !isNumber(field.type) || cell.type() != QVariant::String)
        return;
    // The text itself, for a copy a cell would be felt.
    const QString &text = *static_cast<const QString *>(cell.constData());
    // An empty one counts as 0, which is what older tools wrote for it; flags are most of all
    // cells.
    const QChar first = text.isEmpty() ? QLatin1Char('0') : text.at(0);
    const bool isFlag = text.size() < 2 && (first == QLatin1Char('0') || first == QLatin1Char('1'));
    const bool isCode = std::is_same_v<Record, IndexData> && holdsObjectType(field.name);
    if (isFlag && (first == QLatin1Char('0') || !isCode))
        return;
    thread_local Record record; // made once, for there are many cells
    const QVariant stored = storedNumber(text);
    field.set(record, stored);
    const QVariant read = field.get(record);
    if (stored.type() == QVariant::String)
        faults->append({number, TextFault::Kind::NoNumber, read});
    else if (stored.toDouble() != read.toDouble())
        faults->append({number, TextFault::Kind::CutNumber, read});
    else if (isCode && !isObjectType(read.toLongLong()))
        faults->append({number, TextFault::Kind::NoObjectType, read});
}

/// Do both values hold the same text, and not only an equal one?
bool isSharedText(const QVariant &one, const QVariant &other)
{
    return one.type() == QVariant::String && other.type() == QVariant::String &&
           static_cast<const QString *>(one.constData())->constData() ==
               static_cast<const QString *>(other.constData())->constData();
}

} // namespace

/// The value of a given cell to bind; invalid if the cell is to be left out.
template <class Record>
QVariant StorePrivate::textCell(const Column<Record> &field, const QVariant &given, bool isTextRow)
{
    switch (field.coding) {
    case Coding::StringId:
        return owner->getStringId(given.toString());
    case Coding::Blob: {
        const QByteArray bytes = given.toByteArray();
        return unpackMetadata(bytes).isEmpty() ? QVariant() : QVariant(bytes);
    }
    case Coding::Plain:
        break;
    }
    const QString text = given.toString();
    return isTextRow && holdsValue(field) ? text : text.simplified();
}

template <class Record, size_t N>
void StorePrivate::readTextCell(const Column<Record> (&columns)[N],
                                const ObjectDataBase::ColumnValue &given, int number,
                                bool isTextRow, KnownTextCell *cell)
{
    const int faults = textFaults.size();
    if (cell->column < 0 || cell->given.column != given.column) {
        const Column<Record> *found = findColumn(columns, given.column);
        cell->column = found ? int(found - columns) : -1;
    }
    cell->given = given;
    cell->isTextRow = isTextRow;
    cell->isKnown = false;
    cell->written = QVariant();
    if (cell->column < 0 || !given.value.isValid()) {
        textFaults.append({number, TextFault::Kind::NoColumn, QVariant()});
        cell->column = -1;
        return;
    }
    const Column<Record> *field = &columns[cell->column];
    cell->written = textCell(*field, given.value, isTextRow);
    noteUnfit(*field, given.value, cell->written, number, &textFaults);
    // A text with an apostrophe gets a row at each call of getStringId().
    const bool hasApostrophe = given.value.toString().contains(QLatin1Char('\''));
    cell->isKnown = faults == textFaults.size() && field->coding != Coding::Blob &&
                    !(field->coding == Coding::StringId && hasApostrophe);
}

template <class Record, size_t N>
bool StorePrivate::writeTextRow(const Column<Record> (&columns)[N], RowInserter &rows, Cells cells,
                                const QVector<ObjectDataBase::ColumnValue> &values, bool isTextRow)
{
    auto &last = std::is_same_v<Record, IndexData> ? lastTextObject : lastTextSubIndex;
    const int keyColumns = cells.size();
    cells.resize(keyColumns + int(N));
    last.resize(values.size());
    textFaults.clear();
    for (int i = 0; i < values.size(); ++i) {
        KnownTextCell &cell = last[i];
        if (!cell.isKnown || cell.isTextRow != isTextRow ||
            cell.given.column != values.at(i).column ||
            !isSharedText(cell.given.value, values.at(i).value)) {
            readTextCell(columns, values.at(i), i, isTextRow, &cell);
        }
        if (cell.column < 0)
            continue;
        QVariant &place = cells[keyColumns + cell.column];
        if (place.isValid())
            textFaults.append({i, TextFault::Kind::Doubled, QVariant()});
        place = cell.written;
    }
    quint32 kept = 0;
    for (int i = 0; i < int(N); ++i) {
        QVariant &cell = cells[keyColumns + i];
        if (!cell.isNull() || !QLatin1String(columns[i].type).endsWith(QLatin1String("not null")))
            continue;
        if (!cell.isValid())
            kept |= RowInserter::bit(keyColumns + i);
        cell = cell.isValid() ? QVariant(QLatin1String("")) : QVariant(0); // an empty text is none
    }
    return rows.write(*this, cells, kept);
}

void StorePrivate::findNodeFaults(const QVector<ObjectDataBase::ColumnValue> &values)
{
    textFaults.clear();
    for (int i = 0; i < values.size(); ++i) {
        const QVariant &given = values.at(i).value;
        if (const Column<NodeData> *field = findColumn(kNodeColumns, values.at(i).column))
            noteUnfit(*field, given, given.toString().simplified(), i, &textFaults);
        else
            textFaults.append({i, TextFault::Kind::NoColumn, QVariant()});
    }
}

bool ObjectDataBase::setObjectIndexSqlValues(const QString &table, const QString &index,
                                             const QVector<ColumnValue> &values)
{
    quint32 number = 0;
    const int line = Schema::lineOfTable(table, "Objects");
    if (d->lockWriteAccess || line < 0 || !numberUpTo(index, 0xFFFF, &number))
        return false;
    clearCachedSubs(static_cast<quint8>(line));
    return d->writeTextRow(kIndexColumns, d->inserter(RowKind::TextObject, quint8(line)), {number},
                           values, false);
}

bool ObjectDataBase::setSubindexSqlValues(const QString &table, const QString &index,
                                          const QString &sub, const QVector<ColumnValue> &values)
{
    quint32 number = 0;
    quint32 subNumber = 0;
    const int line = Schema::lineOfTable(table, "SubObjects");
    if (d->lockWriteAccess || line < 0 || !numberUpTo(index, 0xFFFF, &number) ||
        !numberUpTo(sub, 0xFF, &subNumber))
        return false;
    const auto place = static_cast<quint8>(line);
    const auto object = static_cast<quint16>(number);
    const auto member = static_cast<quint8>(subNumber);
    const std::optional<quint16> type = givenType(values);
    const bool isTextRow = isText(type ? *type : getSubIndexDatatype(place, object, member));
    clearCachedSubs(place);
    d->cachedSubNames.remove(StorePrivate::placeKey(place, object, member));
    return d->writeTextRow(kSubIndexColumns, d->inserter(RowKind::TextSubIndex, place),
                           {number, subNumber}, values, isTextRow);
}
