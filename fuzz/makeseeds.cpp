// Writes a project database for each file of rows: fuzz_seeds <folder of row files> <folder>
// The databases are small, so that a change of one byte often means something.
#include "fuzz/recordfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QSqlDatabase>
#include <QSqlQuery>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QDir source(QCoreApplication::arguments().value(1));
    const QDir target(QCoreApplication::arguments().value(2));
    for (const QString &name : source.entryList(QDir::Files)) {
        QFile records(source.filePath(name));
        if (!records.open(QIODevice::ReadOnly))
            return 1;
        const QString file = target.filePath(name);
        writeRecordFile(records.readAll(), file);
        {
            QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "seeds");
            database.setDatabaseName(file);
            database.open();
            QSqlQuery query(database);
            for (const char *statement : {"PRAGMA page_size=512", "VACUUM"})
                query.exec(statement);
        }
        QSqlDatabase::removeDatabase("seeds");
    }
    return 0;
}
