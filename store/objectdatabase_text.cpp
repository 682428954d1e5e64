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

struct CellList {
    QStringList columns;
    QVariantList cells;

    void set(const QString &column, const QVariant &cell)
    {
        const int present = columns.indexOf(column);
        if (present >= 0) {
            cells[present] = cell;
            return;
        }
        columns << column;
        cells << cell;
    }
};

} // namespace

template <class Record, size_t N>
bool StorePrivate::writeTextRow(const Column<Record> (&known)[N], const QString &table,
                                const QVector<QPair<QString, quint32>> &key,
                                const QStringList &neverNull,
                                const QVector<ObjectDataBase::ColumnValue> &values)
{
    CellList row;
    for (const auto &part : key)
        row.set(part.first, part.second);
    const int keyCount = row.columns.size();
    QStringList updates;
    for (const ObjectDataBase::ColumnValue &given : values) {
        const Column<Record> *field = findColumn(known, given.column);
        if (!field || !given.value.isValid()) {
            qCDebug(lcStore) << table << "has no" << given.column;
            continue;
        }
        const QString column = QString::fromLatin1(field->name);
        if (field->coding == Coding::Blob) {
            const QByteArray bytes = given.value.toByteArray();
            if (unpackMetadata(bytes).isEmpty())
                continue;
            row.set(column, bytes);
        } else if (field->coding == Coding::StringId) {
            row.set(column, owner->getStringId(given.value.toString()));
        } else {
            row.set(column, given.value.toString().simplified());
        }
        updates << QStringLiteral("%1=excluded.%1").arg(column);
    }
    for (const QString &column : neverNull) {
        if (!row.columns.contains(column))
            row.set(column, 0);
    }
    const QString action = updates.isEmpty()
                               ? QStringLiteral("nothing")
                               : QStringLiteral("update set ") + updates.join(QLatin1Char(','));
    return exec(QStringLiteral("insert into %1 (%2) values(%3) on conflict(%4) do %5")
                    .arg(table, row.columns.join(QLatin1Char(',')), placeHolders(row.cells.size()),
                         row.columns.mid(0, keyCount).join(QLatin1Char(',')), action),
                row.cells);
}

bool ObjectDataBase::setObjectIndexSqlValues(const QString &table, const QString &index,
                                             const QVector<ColumnValue> &values)
{
    quint32 number = 0;
    const int line = lineOfTable(table, "Objects");
    if (d->lockWriteAccess || line < 0 || !numberUpTo(index, 0xFFFF, &number))
        return false;
    clearCachedSubs(static_cast<quint8>(line));
    return d->writeTextRow(kIndexColumns, table, {{QStringLiteral("objectindex"), number}},
                           {QStringLiteral("datatype"), QStringLiteral("objecttype")}, values);
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
        {{QStringLiteral("objectindex"), number}, {QStringLiteral("subindex"), subNumber}},
        {QStringLiteral("datatype"), QStringLiteral("accesstype"),
         QStringLiteral("implementation")},
        values);
}
