// Rows of the text form on their way into their tables. Names and numbers are the file's data.
#include "store/textrowwriter.h"

#include "support/candatatype.h"
#include "support/numbers.h"

#include <algorithm>
#include <type_traits>
#include <utility>

namespace
{

const QString kEmpty = QStringLiteral("");

bool numberUpTo(const QString &text, quint32 highest, quint32 *number)
{
    bool ok = false;
    *number = Numbers::toUIntByPrefix(text, &ok);
    return ok && *number <= highest;
}

/// Types whose values are text, in which each blank counts.
bool isTextType(quint16 type)
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

/// Does SQLite make a number of it in a number column, just as toLongLong() does?
bool isPlainNumber(const QString &text)
{
    constexpr int kMostDigits = 18;
    return !text.isEmpty() && text.size() <= kMostDigits &&
           std::all_of(text.begin(), text.end(),
                       [](QChar ch) { return ch >= QLatin1Char('0') && ch <= QLatin1Char('9'); });
}

template <class Record>
bool isNotNull(const Column<Record> &field)
{
    return QLatin1String(field.type).endsWith(QLatin1String("not null"));
}

template <class Record>
bool holdsType(const Column<Record> &field)
{
    return std::is_same_v<Record, SubIndexData> &&
           QLatin1String(field.name) == QLatin1String("datatype");
}

quint16 typeOf(const QVariant &given)
{
    return static_cast<quint16>(Numbers::toUIntDecimal(given.toString()));
}

template <class Record>
const Column<Record> *findColumn(const Column<Record> *columns, int count, const QString &name)
{
    const auto *found =
        std::find_if(columns, columns + count, [&name](const Column<Record> &field) {
            return name == QLatin1String(field.name);
        });
    return found != columns + count ? found : nullptr;
}

/// The value of a given cell; invalid if the cell is to be left out. Each blank of a text counts.
template <class Record>
QVariant cellFor(StorePrivate &store, const Column<Record> &field, const QVariant &given,
                 bool isText)
{
    switch (field.coding) {
    case Coding::StringId:
        return store.owner->getStringId(given.toString());
    case Coding::Blob: {
        const QByteArray bytes = given.toByteArray();
        return unpackMetadata(bytes).isEmpty() ? QVariant() : QVariant(bytes);
    }
    case Coding::Plain:
        break;
    }
    const QString text = given.toString();
    return isText ? text : text.simplified();
}

} // namespace

template <class Record>
TextRowWriter<Record>::TextRowWriter(StorePrivate &target, quint8 ofLine)
    : store(target), line(ofLine)
{
    if constexpr (kKeyColumns == 2) {
        columns = kSubIndexColumns;
        columnCount = int(std::size(kSubIndexColumns));
    } else {
        columns = kIndexColumns;
        columnCount = int(std::size(kIndexColumns));
    }
    knownCells.resize(size_t(columnCount) * kKnownOfColumn);
    cells.resize(kKeyColumns + columnCount);
}

template <class Record>
bool TextRowWriter<Record>::write(const TextRow &row)
{
    if (!takeKey(row.numbers))
        return false;
    rowFaults.clear();
    const bool hasSameColumns = hasColumnsOf(row);
    if (!hasSameColumns)
        takeColumns(row);
    if (!hasSameColumns || isDoubled)
        clearCells();
    const bool wasText = std::exchange(isText, holdsText(row));
    for (int i = 0; i < row.count; ++i) {
        const Place &place = places.at(i);
        const bool isAsBefore =
            place.isKnown && IniText::isSame(place.given, row.first[i].valueText());
        if (!isAsBefore || (isText != wasText && holdsValue(columns[place.column])))
            takeCell(row, i);
    }
    return writeCells();
}

template <class Record>
bool TextRowWriter<Record>::writeCell(const QStringList &numbers, const QString &name,
                                      const QVariant &given)
{
    const Column<Record> *field = findColumn(columns, columnCount, name);
    if (!field || !takeKey(numbers))
        return false;
    rowFaults.clear();
    places.clear();
    clearCells();
    isText = holdsType(*field) ? isTextType(typeOf(given)) : hasTextInStore();
    const int column = int(field - columns);
    Known &known = knownFor(column, {nullptr, nullptr});
    readCell(0, column, given, isText && holdsValue(*field), &known);
    setCell(column, known);
    return writeCells();
}

template <class Record>
bool TextRowWriter<Record>::takeKey(const QStringList &numbers)
{
    quint32 index = 0;
    quint32 sub = 0;
    if (store.lockWriteAccess || !numberUpTo(numbers.first(), 0xFFFF, &index) ||
        (kKeyColumns == 2 && !numberUpTo(numbers.at(1), 0xFF, &sub)))
        return false;
    cells[0] = index;
    cells[kKeyColumns - 1] = kKeyColumns == 2 ? sub : index;
    return true;
}

template <class Record>
bool TextRowWriter<Record>::hasColumnsOf(const TextRow &row) const
{
    bool isSame = row.count == places.size();
    for (int i = 0; isSame && i < row.count; ++i)
        isSame = places.at(i).name && places.at(i).name == row.columns.at(i).begin;
    return isSame;
}

template <class Record>
void TextRowWriter<Record>::takeColumns(const TextRow &row)
{
    quint32 taken = 0;
    typePlace = -1;
    isDoubled = false;
    places.clear();
    for (int i = 0; i < row.count; ++i) {
        const IniText::Span name = row.columns.at(i);
        const Column<Record> *field = findColumn(
            columns, columnCount,
            name.begin ? QString::fromLatin1(name.begin, name.size()) : row.cell(i).column);
        const int column = field ? int(field - columns) : -1;
        places.append({name.begin, column});
        if (!field)
            continue;
        isDoubled = isDoubled || taken & RowInserter::bit(column);
        taken |= RowInserter::bit(column);
        if (typePlace < 0 && holdsType(*field))
            typePlace = i;
    }
}

/// As a row without cells is.
template <class Record>
void TextRowWriter<Record>::clearCells()
{
    kept = 0;
    for (int i = 0; i < columnCount; ++i) {
        const bool isNeeded = isNotNull(columns[i]);
        cells[kKeyColumns + i] = isNeeded ? RowValue(0) : RowValue();
        if (isNeeded)
            kept |= RowInserter::bit(kKeyColumns + i);
    }
    for (Place &place : places)
        place.isKnown = false;
}

template <class Record>
bool TextRowWriter<Record>::holdsText(const TextRow &row)
{
    if (kKeyColumns < 2 || typePlace < 0)
        return hasTextInStore();
    const IniText::Span given = row.first[typePlace].valueText();
    if (!IniText::isSame(given, lastType)) {
        lastType = given;
        isLastTypeText = isTextType(typeOf(row.cell(typePlace).value));
    }
    return isLastTypeText;
}

/// Of a subindex whose data type is not given.
template <class Record>
bool TextRowWriter<Record>::hasTextInStore() const
{
    return kKeyColumns == 2 && isTextType(store.owner->getSubIndexDatatype(
                                   line, quint16(cells[0].number()), quint8(cells[1].number())));
}

/// Where what is known of a text is kept; another text may be there.
template <class Record>
typename TextRowWriter<Record>::Known &TextRowWriter<Record>::knownFor(int column,
                                                                       IniText::Span given)
{
    uint place = uint(given.size());
    if (given.size() > 0)
        place += 3 * uchar(given.begin[0]) + 5 * uchar(given.end[-1]) +
                 7 * uchar(given.begin[given.size() / 2]);
    return knownCells[size_t(column) * kKnownOfColumn + place % kKnownOfColumn];
}

template <class Record>
void TextRowWriter<Record>::takeCell(const TextRow &row, int number)
{
    Place &place = places[number];
    if (place.column < 0) {
        (void)givenIn(row, number);
        rowFaults.append({number, TextFault::Kind::NoColumn, QVariant()});
        return;
    }
    place.given = row.first[number].valueText();
    const bool asText = isText && holdsValue(columns[place.column]);
    Known &known = knownFor(place.column, place.given);
    if (!known.given.begin || known.isText != asText ||
        !IniText::isSame(known.given, place.given)) {
        const int faultsBefore = rowFaults.size();
        const QVariant given = givenIn(row, number);
        readCell(number, place.column, given, asText, &known);
        // A text with an apostrophe gets a row at each call of getStringId().
        const bool hasApostrophe = columns[place.column].coding == Coding::StringId &&
                                   given.toString().contains(QLatin1Char('\''));
        const bool isFit = faultsBefore == rowFaults.size() && !hasApostrophe;
        known.given = isFit ? place.given : IniText::Span{nullptr, nullptr};
    }
    place.isKnown = known.given.begin;
    const int cell = kKeyColumns + place.column;
    if (isDoubled && cells[cell].kind() != RowValue::Kind::None && !(kept & RowInserter::bit(cell)))
        rowFaults.append({number, TextFault::Kind::Doubled, QVariant()});
    setCell(place.column, known);
}

/// A list is joined, and told of.
template <class Record>
QVariant TextRowWriter<Record>::givenIn(const TextRow &row, int number)
{
    const QVariant given = row.first[number].value();
    if (given.type() != QVariant::StringList)
        return given;
    rowFaults.append({number, TextFault::Kind::List, QVariant()});
    return textOf(given);
}

template <class Record>
void TextRowWriter<Record>::readCell(int number, int column, const QVariant &given, bool asText,
                                     Known *known)
{
    const Column<Record> &field = columns[column];
    const QVariant cell = cellFor(store, field, given, asText);
    noteUnfit(field, given, cell, number, &rowFaults);
    known->isText = asText;
    known->text = cell.type() == QVariant::String ? cell.toString() : QString();
    if (!cell.isValid())
        known->value = RowValue();
    else if (cell.isNull())
        known->value = isNotNull(field) ? RowValue(kEmpty) : RowValue::null();
    else if (cell.type() == QVariant::ByteArray)
        known->value = RowValue(cell.toByteArray());
    else if (cell.type() != QVariant::String)
        known->value = cell.toLongLong();
    else
        known->value = isNumber(field.type) && isPlainNumber(known->text)
                           ? RowValue(known->text.toLongLong())
                           : RowValue(known->text);
}

template <class Record>
void TextRowWriter<Record>::setCell(int column, const Known &known)
{
    const int cell = kKeyColumns + column;
    cells[cell] = known.value;
    kept &= ~RowInserter::bit(cell);
}

template <class Record>
bool TextRowWriter<Record>::writeCells()
{
    store.owner->clearCachedSubs(line);
    if constexpr (kKeyColumns == 2)
        store.cachedSubNames.remove(
            StorePrivate::placeKey(line, quint16(cells[0].number()), quint8(cells[1].number())));
    const RowKind kind = kKeyColumns == 2 ? RowKind::TextSubIndex : RowKind::TextObject;
    return store.inserter(kind, line).write(store, cells, kept);
}

template class TextRowWriter<IndexData>;
template class TextRowWriter<SubIndexData>;

QVector<TextFault> faultsOfNode(const TextRow &row)
{
    QVector<TextFault> faults;
    for (int i = 0; i < row.count; ++i) {
        if (row.first[i].value().type() == QVariant::StringList)
            faults.append({i, TextFault::Kind::List, QVariant()});
        const TextCell cell = row.cell(i);
        if (const auto *field = findColumn(kNodeColumns, cell.column))
            noteUnfit(*field, cell.value, cell.value.toString().simplified(), i, &faults);
        else
            faults.append({i, TextFault::Kind::NoColumn, QVariant()});
    }
    return faults;
}
