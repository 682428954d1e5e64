// Rows as the text form of a project gives them: column by column, under names and numbers that are
// the file's data.
#include "store/objectdatabase_p.h"
#include "support/logging.h"
#include "support/numbers.h"

namespace
{

/// The line of a table name such as "SubObjects12", or -1 if it is no table of \a family. The
/// number is the whole decimal number at the end.
int lineOfTable(const QString &table, const char *family)
{
    if (!table.startsWith(QLatin1String(family)))
        return -1;
    bool ok = false;
    const quint32 line = Numbers::toUIntDecimal(table.mid(int(qstrlen(family))), &ok);
    // Compared as written, for "Objects07" is no table of a project.
    return ok && line <= 0xFF && table == Schema::table(family, int(line)) ? int(line) : -1;
}

bool numberUpTo(const QString &text, quint32 highest, quint32 *number)
{
    bool ok = false;
    *number = Numbers::toUIntByPrefix(text, &ok);
    return ok && *number <= highest;
}

} // namespace

/// The value of a given cell to bind; invalid if the cell is to be left out.
template <class Record>
QVariant StorePrivate::textCell(const Column<Record> &field, const QVariant &given)
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
    return given.toString().simplified();
}

template <class Record, size_t N>
bool StorePrivate::writeTextRow(const Column<Record> (&known)[N], const QString &table,
                                const QVector<QPair<QLatin1String, quint32>> &key,
                                const QVector<ObjectDataBase::ColumnValue> &values)
{
    std::array<QVariant, N> given;
    for (const ObjectDataBase::ColumnValue &value : values) {
        const Column<Record> *field = findColumn(known, value.column);
        if (field && value.value.isValid())
            given[size_t(field - known)] = textCell(*field, value.value);
        else
            qCDebug(lcStore) << table << "has no" << value.column;
    }
    QString columns;
    QString keys;
    QString updates;
    Cells cells;
    for (const auto &part : key) {
        keys += part.first + QLatin1Char(',');
        cells << part.second;
    }
    for (size_t i = 0; i < N; ++i) {
        const QLatin1String name(known[i].name);
        const bool neverNull = QLatin1String(known[i].type).endsWith(QLatin1String("not null"));
        if (!given[i].isValid() && !neverNull)
            continue;
        columns += name + QLatin1Char(',');
        cells << (given[i].isValid() ? given[i] : QVariant(0));
        if (given[i].isValid())
            updates += name + QLatin1String("=excluded.") + name + QLatin1Char(',');
    }
    columns = keys + columns;
    for (QString *list : {&columns, &keys, &updates})
        list->chop(1);
    const QString action =
        updates.isEmpty() ? QStringLiteral("nothing") : QLatin1String("update set ") + updates;
    return exec(QStringLiteral("insert into %1 (%2) values(%3) on conflict(%4) do %5")
                    .arg(table, columns, placeHolders(cells.size()), keys, action),
                cells);
}

bool ObjectDataBase::setObjectIndexSqlValues(const QString &table, const QString &index,
                                             const QVector<ColumnValue> &values)
{
    quint32 number = 0;
    const int line = lineOfTable(table, "Objects");
    if (d->lockWriteAccess || line < 0 || !numberUpTo(index, 0xFFFF, &number))
        return false;
    clearCachedSubs(static_cast<quint8>(line));
    return d->writeTextRow(kIndexColumns, table, {{QLatin1String("objectindex"), number}}, values);
}

bool ObjectDataBase::setSubindexSqlValues(const QString &table, const QString &index,
                                          const QString &sub, const QVector<ColumnValue> &values)
{
    quint32 number = 0;
    quint32 subNumber = 0;
    const int line = lineOfTable(table, "SubObjects");
    if (d->lockWriteAccess || line < 0 || !numberUpTo(index, 0xFFFF, &number) ||
        !numberUpTo(sub, 0xFF, &subNumber))
        return false;
    clearCachedSubs(static_cast<quint8>(line));
    return d->writeTextRow(
        kSubIndexColumns, table,
        {{QLatin1String("objectindex"), number}, {QLatin1String("subindex"), subNumber}}, values);
}
