// The least that a run could cost: reads every row of a project's tables once through QtSql and
// writes a given number of bytes to one file. The tool's times are told as multiples of this.
//
// Usage: bench_floor <project.tsrp> <bytes> <output file>
#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <cstdio>

namespace
{

/// Rows of the table, each of whose values was fetched; -1 if it cannot be read.
qint64 readTable(const QSqlDatabase &database, const QString &table)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("select * from %1").arg(table)))
        return -1;
    const int columns = query.record().count();
    qint64 rows = 0;
    for (; query.next(); ++rows) {
        for (int column = 0; column < columns; ++column)
            query.value(column);
    }
    return rows;
}

bool readProject(const QString &file)
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    database.setDatabaseName(file);
    database.setConnectOptions(QStringLiteral("QSQLITE_OPEN_READONLY"));
    if (!database.open())
        return false;
    const QStringList tables = database.tables();
    for (const QString &table : tables) {
        if (readTable(database, table) < 0)
            return false;
    }
    return true;
}

bool writeBytes(const QString &path, qint64 bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    const QByteArray block(64 * 1024, 'x');
    for (; bytes > 0; bytes -= block.size()) {
        const qint64 size = qMin<qint64>(bytes, block.size());
        if (file.write(block.constData(), size) != size)
            return false;
    }
    return file.flush();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() != 4) {
        std::fprintf(stderr, "usage: bench_floor <project.tsrp> <bytes> <output file>\n");
        return 2;
    }
    const bool done =
        readProject(arguments.at(1)) && writeBytes(arguments.at(3), arguments.at(2).toLongLong());
    return done ? 0 : 1;
}
