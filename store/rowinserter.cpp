// Statements that insert rows.
#include "store/rowinserter.h"

#include "store/objectdatabase_p.h"

namespace
{

/// Each statement is kept by the connection; a hostile file could ask for very many.
constexpr int kMaxShapes = 256;

RowValue::Kind kindOf(const QVariant &usual)
{
    if (!usual.isValid())
        return RowValue::Kind::None;
    return usual.type() == QVariant::String ? RowValue::Kind::Text : RowValue::Kind::Number;
}

QVariant variantOf(const RowValue &cell)
{
    switch (cell.kind()) {
    case RowValue::Kind::Number:
        return cell.number();
    case RowValue::Kind::Text: // a null would be NULL
        return cell.text().isNull() ? QVariant(QLatin1String("")) : QVariant(cell.text());
    case RowValue::Kind::Bytes:
        return cell.bytes();
    case RowValue::Kind::Null:
    case RowValue::Kind::None:
        break;
    }
    return QVariant(QVariant::String);
}

QString literalOf(const QVariant &value)
{
    if (value.type() != QVariant::String)
        return value.toString();
    return QLatin1Char('\'') + value.toString().replace(QLatin1Char('\''), QLatin1String("''")) +
           QLatin1Char('\'');
}

template <class Record, size_t N>
RowInserter makeInserter(const char *family, quint8 line, const QStringList &key,
                         const Column<Record> (&known)[N], bool isText)
{
    QStringList columns = key;
    Cells usual(key.size()); // keys are never literal
    const Record record;
    for (const Column<Record> &field : known) {
        columns << QString::fromLatin1(field.name);
        // The numbers of texts differ between projects, and so do maps.
        usual << (field.coding == Coding::Plain ? field.get(record) : QVariant());
    }
    const bool replaces = !isText && key.size() == 2;
    return RowInserter(Schema::table(family, line), columns, key.size(), usual,
                       replaces ? RowInserter::Conflict::Replace : RowInserter::Conflict::Update);
}

} // namespace

RowInserter &StorePrivate::inserter(RowKind kind, quint8 line)
{
    const int key = int(kind) << 8 | line;
    const auto known = inserters.find(key);
    if (known != inserters.end())
        return *known;
    const QStringList index{QStringLiteral("objectindex")};
    const bool isText = kind == RowKind::TextObject || kind == RowKind::TextSubIndex;
    if (kind == RowKind::Object || kind == RowKind::TextObject)
        return *inserters.insert(key, makeInserter("Objects", line, index, kIndexColumns, isText));
    return *inserters.insert(key, makeInserter("SubObjects", line,
                                               index + QStringList(QStringLiteral("subindex")),
                                               kSubIndexColumns, isText));
}

RowInserter::RowInserter(const QString &tableName, const QStringList &columnNames, int keyCount,
                         const QVector<QVariant> &usualCells, Conflict onConflict)
    : table(tableName), columns(columnNames), keyColumns(keyCount), conflict(onConflict)
{
    Q_ASSERT(columns.size() <= 32 && usualCells.size() == columns.size());
    for (const QVariant &value : usualCells)
        usual.push_back({kindOf(value), value.toLongLong(), value.toString(), literalOf(value)});
}

bool RowInserter::isUsual(int column, const RowValue &cell) const
{
    const Usual &known = usual[size_t(column)];
    if (cell.kind() != known.kind || column < keyColumns)
        return false;
    return cell.kind() == RowValue::Kind::Number ? cell.number() == known.number
                                                 : cell.text() == known.text;
}

bool RowInserter::write(StorePrivate &store, const RowValues &cells, quint32 kept)
{
    Shape shape;
    shape.kept = kept;
    for (int i = 0; i < cells.size(); ++i) {
        const RowValue &cell = cells[i];
        if (cell.kind() == RowValue::Kind::None)
            continue;
        shape.given |= bit(i);
        if (isUsual(i, cell))
            shape.literal |= bit(i);
    }
    if (statements.size() >= kMaxShapes && !statements.contains(shape))
        shape.literal = 0;
    const quint32 bound = shape.given & ~shape.literal;
    const Prepared &prepared = preparedFor(store, shape);
    bool done = prepared.statement != nullptr;
    AsciiTexts texts;
    int place = 0; // the place holders stand in the order of the cells
    for (int i = 0; done && i < cells.size(); ++i) {
        if (bound & bit(i))
            done = SqliteConnection::bind(prepared.statement, ++place, cells[i], &texts);
    }
    if (done) {
        store.awaitUnblocked();
        done = SqliteConnection::run(prepared.statement);
    }
    return done || runByDriver(store, prepared.text, cells, bound);
}

bool RowInserter::runByDriver(StorePrivate &store, const QString &text, const RowValues &cells,
                              quint32 bound)
{
    Cells values;
    for (int i = 0; i < cells.size(); ++i) {
        if (bound & bit(i))
            values << variantOf(cells[i]);
    }
    return store.exec(text, values);
}

RowInserter::Prepared &RowInserter::preparedFor(StorePrivate &store, const Shape &shape)
{
    auto known = statements.find(shape);
    if (known == statements.end()) {
        if (statements.size() >= 2 * kMaxShapes)
            statements.clear();
        known = statements.insert(shape, {statementText(shape), nullptr});
    }
    // Tried again if it failed, for the table may come with its line.
    if (!known->statement && store.sqlite.isOpen())
        known->statement = store.sqlite.take(known->text);
    return *known;
}

QString RowInserter::statementText(const Shape &shape) const
{
    QStringList names;
    QStringList values;
    QStringList updates;
    for (int i = 0; i < columns.size(); ++i) {
        if (!(shape.given & bit(i)))
            continue;
        names << columns.at(i);
        values << (shape.literal & bit(i) ? usual[size_t(i)].literal : QStringLiteral("?"));
        if (i >= keyColumns && !(shape.kept & bit(i)))
            updates << QStringLiteral("%1=excluded.%1").arg(columns.at(i));
    }
    const QLatin1Char comma(',');
    const bool replaces = conflict == Conflict::Replace;
    QString text = QStringLiteral("insert %1into %2 (%3) values(%4)")
                       .arg(replaces ? QStringLiteral("or replace ") : QString(), table,
                            names.join(comma), values.join(comma));
    if (!replaces)
        text += QStringLiteral(" on conflict(%1) do ").arg(columns.mid(0, keyColumns).join(comma)) +
                (updates.isEmpty() ? QStringLiteral("nothing")
                                   : QLatin1String("update set ") + updates.join(comma));
    return text;
}
