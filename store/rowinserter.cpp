// Statements that insert rows.
#include "store/rowinserter.h"

#include "store/objectdatabase_p.h"

namespace
{

/// Each statement is kept by the connection; a hostile file could ask for very many.
constexpr int kMaxShapes = 256;

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
        const QVariant value = field.get(record);
        // The numbers of texts differ between projects, and so do maps.
        if (field.coding != Coding::Plain)
            usual << QVariant();
        else
            usual << (isText ? QVariant(value.toString()) : value);
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
    : table(tableName), columns(columnNames), keyColumns(keyCount), usual(usualCells),
      conflict(onConflict)
{
    Q_ASSERT(columns.size() <= 32 && usual.size() == columns.size());
    for (const QVariant &value : qAsConst(usual))
        literals << literalOf(value);
}

bool RowInserter::write(StorePrivate &store, const QVector<QVariant> &cells, quint32 kept)
{
    Shape shape;
    shape.kept = kept;
    for (int i = 0; i < cells.size(); ++i) {
        const QVariant &cell = cells.at(i);
        if (!cell.isValid())
            continue;
        shape.given |= bit(i);
        if (i >= keyColumns && cell.type() == usual.at(i).type() && cell == usual.at(i))
            shape.literal |= bit(i);
    }
    if (statements.size() >= kMaxShapes && !statements.contains(shape))
        shape.literal = 0;
    const quint32 bound = shape.given & ~shape.literal;
    const Prepared &prepared = preparedFor(store, shape);
    bool done = prepared.statement != nullptr;
    int place = 0; // the place holders stand in the order of the cells
    for (int i = 0; done && i < cells.size(); ++i) {
        if (bound & bit(i))
            done = SqliteConnection::bind(prepared.statement, ++place, cells.at(i));
    }
    if (done) {
        store.awaitUnblocked();
        done = SqliteConnection::run(prepared.statement);
    }
    return done || runByDriver(store, prepared.text, cells, bound);
}

bool RowInserter::runByDriver(StorePrivate &store, const QString &text,
                              const QVector<QVariant> &cells, quint32 bound)
{
    Cells values;
    for (int i = 0; i < cells.size(); ++i) {
        if (bound & bit(i))
            values << cells.at(i);
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
        values << (shape.literal & bit(i) ? literals.at(i) : QStringLiteral("?"));
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
