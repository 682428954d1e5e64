// The handle of a connection, and the test whether it may be used.
#include "store/sqliteconnection.h"

#include "support/characters.h"
#include "support/logging.h"

#include <QSqlDatabase>
#include <QSqlDriver>
#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

#include <sqlite3.h>

namespace
{

/// A project with many lines uses some statements for each; above this number they are made anew.
constexpr int kMaxPrepared = 500;

/// Version, source and options of the SQLite that this program is linked with.
QStringList linkedIdentity()
{
    QStringList parts{QString::fromLatin1(sqlite3_libversion()),
                      QString::fromLatin1(sqlite3_sourceid())};
    for (int i = 0; const char *option = sqlite3_compileoption_get(i); ++i)
        parts << QString::fromLatin1(option);
    return parts;
}

/// The same of the one that the driver has, by what no schema can put something in place of.
QStringList identityOf(const QSqlDatabase &connection)
{
    QStringList parts;
    QSqlQuery query(connection);
    query.setForwardOnly(true);
    if (query.exec(QStringLiteral("select sqlite_version(), sqlite_source_id()")) && query.next())
        parts << query.value(0).toString() << query.value(1).toString();
    (void)query.exec(QStringLiteral("pragma compile_options")); // without it they differ
    while (query.next())
        parts << query.value(0).toString();
    return parts;
}

/// The driver names the type of its handle; null if that is no open SQLite.
sqlite3 *handleOf(const QSqlDatabase &connection)
{
    const QVariant handle = connection.driver()->handle();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3 *const *>(handle.constData());
}

/// Ends a run: what was bound need not last any longer.
void letGo(const SqliteStatement &statement)
{
    sqlite3_reset(statement.get());
    sqlite3_clear_bindings(statement.get());
}

} // namespace

bool SqliteConnection::isDriverAsked()
{
    return qEnvironmentVariableIntValue("TESSARINE_ROWS_BY_DRIVER") != 0;
}

const char *AsciiTexts::add(const QString &text)
{
    const int size = text.size();
    if (size + int(Characters::kAtOnce) > int(bytes.size()) - used)
        return nullptr;
    char *const copy = bytes.data() + used;
    if (!Characters::writeAscii(text, copy))
        return nullptr;
    used += size;
    return copy;
}

void SqliteConnection::beginUse()
{
    static const int result = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    (void)result; // a program that uses SQLite by itself has it as it wants
}

void SqliteConnection::open(const QSqlDatabase &connection)
{
    close();
    sqlite3 *found = isDriverAsked() ? nullptr : handleOf(connection);
    if (!found)
        return;
    // Structures of another build may lie differently in memory. A process loads one driver.
    static const bool isSame = identityOf(connection) == linkedIdentity();
    if (!isSame || sqlite3_initialize() != SQLITE_OK) {
        qCDebug(lcStore) << "the SQL driver has another SQLite than" << linkedIdentity();
        return;
    }
    handle = found;
    const SqliteStatement encoding = take(QStringLiteral("pragma encoding"));
    isUtf8 = encoding && sqlite3_step(encoding.get()) == SQLITE_ROW &&
             qstrcmp(reinterpret_cast<const char *>(sqlite3_column_text(encoding.get(), 0)),
                     "UTF-8") == 0;
}

void SqliteConnection::close()
{
    prepared.clear();
    handle = nullptr;
}

SqliteStatement SqliteConnection::take(const QString &sql)
{
    if (const SqliteStatement known = prepared.take(sql))
        return known;
    sqlite3_stmt *statement = nullptr;
    const int bytes = int(sizeof(QChar)) * sql.size();
    if (sqlite3_prepare16_v2(handle, sql.utf16(), bytes, &statement, nullptr) != SQLITE_OK)
        return nullptr;
    return SqliteStatement(statement, sqlite3_finalize);
}

void SqliteConnection::giveBack(const QString &sql, const SqliteStatement &statement)
{
    letGo(statement);
    if (prepared.size() >= kMaxPrepared)
        prepared.clear();
    if (handle)
        prepared.insert(sql, statement);
}

bool SqliteConnection::bind(const SqliteStatement &statement, int place, const QVariant &value)
{
    sqlite3_stmt *const raw = statement.get();
    if (value.isNull())
        return sqlite3_bind_null(raw, place) == SQLITE_OK;
    if (value.type() == QVariant::ByteArray) {
        const QByteArray bytes = value.toByteArray();
        return sqlite3_bind_blob(raw, place, bytes.constData(), bytes.size(), SQLITE_STATIC) ==
               SQLITE_OK;
    }
    if (value.type() == QVariant::Double)
        return sqlite3_bind_double(raw, place, value.toDouble()) == SQLITE_OK;
    if (value.type() != QVariant::String)
        return sqlite3_bind_int64(raw, place, value.toLongLong()) == SQLITE_OK;
    const QString text = value.toString();
    return sqlite3_bind_text16(raw, place, text.utf16(), int(sizeof(QChar)) * text.size(),
                               SQLITE_STATIC) == SQLITE_OK;
}

bool SqliteConnection::bind(const SqliteStatement &statement, int place, const RowValue &value,
                            AsciiTexts *texts)
{
    sqlite3_stmt *const raw = statement.get();
    switch (value.kind()) {
    case RowValue::Kind::Number:
        return sqlite3_bind_int64(raw, place, value.number()) == SQLITE_OK;
    case RowValue::Kind::Text: {
        const QString &text = value.text();
        if (const char *ascii = texts->add(text))
            return sqlite3_bind_text(raw, place, ascii, text.size(), SQLITE_STATIC) == SQLITE_OK;
        return sqlite3_bind_text16(raw, place, text.utf16(), int(sizeof(QChar)) * text.size(),
                                   SQLITE_STATIC) == SQLITE_OK;
    }
    case RowValue::Kind::Bytes:
        return sqlite3_bind_blob(raw, place, value.bytes().constData(), value.bytes().size(),
                                 SQLITE_STATIC) == SQLITE_OK;
    case RowValue::Kind::Null:
    case RowValue::Kind::None:
        break;
    }
    return sqlite3_bind_null(raw, place) == SQLITE_OK;
}

bool SqliteConnection::run(const SqliteStatement &statement)
{
    const bool done = sqlite3_step(statement.get()) == SQLITE_DONE;
    letGo(statement);
    return done;
}

void SqliteConnection::unmapPages()
{
    if (!handle)
        return;
    sqlite3_int64 limit = -1; // asks for it
    sqlite3_file_control(handle, "main", SQLITE_FCNTL_MMAP_SIZE, &limit);
    sqlite3_int64 none = 0;
    sqlite3_file_control(handle, "main", SQLITE_FCNTL_MMAP_SIZE, &none);
    sqlite3_file_control(handle, "main", SQLITE_FCNTL_MMAP_SIZE, &limit);
}

qint64 SqliteConnection::lastRowId() const
{
    return sqlite3_last_insert_rowid(handle);
}
