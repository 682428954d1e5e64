// The table of texts: each text stands there once and is referred to by its number.
#include "store/objectdatabase_p.h"

#include <QSet>

namespace
{

/// The columns that hold a text's number; \a family is the table of each line, or a table.
struct StringColumns {
    const char *family;
    const char *columns;
};

constexpr StringColumns kLineStringColumns[] = {
    {"Objects", "name,description,device_class"},
    {"SubObjects", "name,denotation,description"},
    {"PGNs", "name,desc"},
    {"CANIDs", "name,desc"},
    {"SPNs", "name,desc"},
    {"DataElements", "name,desc"},
};

} // namespace

void ObjectDataBase::prepareQuotationMark(QString &text) const
{
    text.replace(QLatin1Char('\''), QLatin1String("''"));
}

int StorePrivate::insertString(const QString &given)
{
    const QString sql = QStringLiteral("insert into Strings values(NULL,?)");
    awaitUnblocked();
    const SqliteStatement direct = sqlite.isOpen() ? sqlite.take(sql) : nullptr;
    AsciiTexts texts;
    if (direct && SqliteConnection::bind(direct, 1, given, &texts) &&
        SqliteConnection::run(direct)) {
        sqlite.giveBack(sql, direct);
        return int(sqlite.lastRowId());
    }
    const Statement statement(*this, sql, {given.isNull() ? QStringLiteral("") : given});
    return statement.ok() ? statement.insertedRow() : -1;
}

int ObjectDataBase::getStringId(const QString &text)
{
    QHash<QString, int> &ids = d->idsOfStrings();
    const auto known = ids.constFind(text);
    // Deliberate: a text with an apostrophe gets a row at each call, though the first of the equal
    // rows is the one referred to. The others go at the next save; held by tst_objectdatabase
    // "apostrophes".
    if (known != ids.constEnd() && !text.contains(QLatin1Char('\'')))
        return *known;
    const int id = d->insertString(text);
    if (known != ids.constEnd())
        return *known;
    if (id < 0)
        return -1;
    ids.insert(text, id);
    d->strings.insert(id, text);
    return id;
}

QHash<QString, int> &StorePrivate::idsOfStrings()
{
    if (!stringsComplete)
        owner->cacheStrings();
    if (stringIdsComplete)
        return stringIds;
    stringIds.reserve(strings.size());
    for (auto row = strings.constBegin(); row != strings.constEnd(); ++row) {
        const auto known = stringIds.find(*row);
        if (known == stringIds.end())
            stringIds.insert(*row, row.key());
        else
            *known = qMin(*known, row.key());
    }
    stringIdsComplete = stringsComplete;
    return stringIds;
}

QString ObjectDataBase::getString(int id) const
{
    const auto known = d->strings.constFind(id);
    if (known != d->strings.constEnd() || d->stringsComplete)
        return known != d->strings.constEnd() ? *known : QString();
    Statement statement(*d, QStringLiteral("select string from Strings where id = ?"), {id});
    const QString text = statement.next() ? statement.value(0).toString() : QString();
    d->strings.insert(id, text);
    return text;
}

void StorePrivate::forgetStrings()
{
    stringIds.clear();
    strings.clear();
    stringsComplete = false;
    stringIdsComplete = false;
}

void ObjectDataBase::cacheStrings()
{
    // The map takes part in every write, so once it is complete it stays so.
    if (d->stringsComplete)
        return;
    d->forgetStrings();
    RowReader statement(*d, QStringLiteral("select id,string from Strings order by id"));
    while (statement.next()) {
        const int id = statement.value(0).toInt();
        d->strings.insert(id, statement.value(1).toString());
    }
    d->stringsComplete = statement.ok();
}

bool StorePrivate::dropUsedStrings(const QString &columns, const QString &table, QSet<int> *ids)
{
    RowReader rows(*this, QStringLiteral("select %1 from %2").arg(columns, table));
    const int count = columns.count(QLatin1Char(',')) + 1;
    while (rows.next()) {
        for (int i = 0; i < count; ++i)
            ids->remove(rows.value(i).toInt());
    }
    return rows.ok();
}

void ObjectDataBase::cleanUpStrings()
{
    QSet<int> unused;
    {
        RowReader rows(*d, QStringLiteral("select id from Strings"));
        while (rows.next())
            unused.insert(rows.value(0).toInt());
    }
    QSet<QString> tables; // an old project may lack some
    const QVector<QStringList> rows =
        d->allRows(QStringLiteral("select name from sqlite_master where type = 'table'"));
    for (const QStringList &row : rows)
        tables.insert(row.first().toLower()); // case makes no difference to SQL

    // Where a table cannot be read, nobody knows what it refers to.
    bool allRead = d->dropUsedStrings(QStringLiteral("name"), QStringLiteral("Signals"), &unused);
    const QList<quint8> lines = getNodes();
    for (const quint8 line : lines) {
        for (const StringColumns &row : kLineStringColumns) {
            const QString table = Schema::table(row.family, line);
            if (tables.contains(table.toLower()))
                allRead = d->dropUsedStrings(QLatin1String(row.columns), table, &unused) && allRead;
        }
    }
    if (unused.isEmpty() || !allRead)
        return;
    beginBatch();
    for (const int id : qAsConst(unused))
        d->exec(QStringLiteral("delete from Strings where id = ?"), {id});
    commitBatch();
    d->forgetStrings();
    cacheStrings();
}
