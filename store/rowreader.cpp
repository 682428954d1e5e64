// Cells by SQLite's own interface.
#include "store/rowreader.h"

#include "store/objectdatabase_p.h"
#include "support/ascii.h"

#include <sqlite3.h>

RowReader::RowReader(StorePrivate &privateStore, const QString &text,
                     const QVector<QVariant> &bound)
    : store(privateStore), sql(text), values(bound)
{
    if (store.sqlite.isOpen() && start())
        return;
    statement.reset();
    driver = std::make_unique<Statement>(store, sql, values);
}

RowReader::~RowReader()
{
    if (statement)
        store.sqlite.giveBack(sql, statement);
}

bool RowReader::start()
{
    statement = store.sqlite.take(sql);
    if (!statement)
        return false;
    for (int i = 0; i < values.size(); ++i) {
        if (!SqliteConnection::bind(statement, i + 1, values.at(i)))
            return false;
    }
    store.awaitUnblocked();
    const int result = sqlite3_step(statement.get());
    hasRow = result == SQLITE_ROW;
    if (hasRow)
        lastTexts.resize(size_t(sqlite3_column_count(statement.get())));
    return hasRow || result == SQLITE_DONE;
}

bool RowReader::ok() const
{
    return driver ? driver->ok() : succeeded;
}

bool RowReader::next()
{
    if (driver)
        return driver->next();
    if (isAtStart || !hasRow) { // SQLite begins anew after the last row
        isAtStart = false;
        return hasRow;
    }
    const int result = sqlite3_step(statement.get());
    hasRow = result == SQLITE_ROW;
    if (!hasRow && result != SQLITE_DONE) {
        succeeded = false;
        const auto reason = QString::fromUtf8(sqlite3_errmsg(sqlite3_db_handle(statement.get())));
        store.noteFailure(sql, reason, result);
    }
    return hasRow;
}

QString RowReader::textOf(sqlite3_value *value, int column) const
{
    QString &last = lastTexts[size_t(column)];
    if (store.sqlite.hasUtf8()) {
        const auto *bytes = reinterpret_cast<const char *>(sqlite3_value_text(value));
        const int size = sqlite3_value_bytes(value);
        if (bytes && isAscii(bytes, size)) {
            const QLatin1String text(bytes, size);
            if (last.isNull() || last != text)
                last = QString(text);
            return last;
        }
    }
    // SQLite says what becomes of bytes that are no characters.
    const auto *units = static_cast<const QChar *>(sqlite3_value_text16(value));
    const int size = sqlite3_value_bytes16(value) / int(sizeof(QChar));
    if (last.isNull() || last != QStringView(units, size))
        last = QString(units, size);
    return last;
}

// Values are asked without the lock of the connection: one thread at a time works on it.
RowCell::RowCell(const RowReader &reader, int place)
    : rows(reader), column(place),
      value(reader.statement ? sqlite3_column_value(reader.statement.get(), place) : nullptr),
      type(value ? sqlite3_value_type(value) : SQLITE_NULL)
{
}

bool RowCell::isInteger() const
{
    return type == SQLITE_INTEGER;
}

int RowCell::toInt() const
{
    return type == SQLITE_INTEGER ? int(sqlite3_value_int64(value)) : toVariant().toInt();
}

uint RowCell::toUInt() const
{
    return type == SQLITE_INTEGER ? uint(sqlite3_value_int64(value)) : toVariant().toUInt();
}

qlonglong RowCell::toLongLong() const
{
    return type == SQLITE_INTEGER ? sqlite3_value_int64(value) : toVariant().toLongLong();
}

QString RowCell::toString() const
{
    return type == SQLITE_TEXT ? rows.textOf(value, column) : toVariant().toString();
}

QByteArray RowCell::toByteArray() const
{
    return type == SQLITE_INTEGER ? QByteArray::number(qlonglong(sqlite3_value_int64(value)))
                                  : toVariant().toByteArray();
}

QVariant RowCell::toVariant() const
{
    if (!value)
        return rows.driver->value(column);
    switch (type) {
    case SQLITE_INTEGER:
        return qlonglong(sqlite3_value_int64(value));
    case SQLITE_FLOAT:
        return sqlite3_value_double(value);
    case SQLITE_TEXT:
        return rows.textOf(value, column);
    case SQLITE_BLOB: {
        const auto *bytes = static_cast<const char *>(sqlite3_value_blob(value));
        return QByteArray(bytes, sqlite3_value_bytes(value));
    }
    default:
        return QVariant(QVariant::String);
    }
}
