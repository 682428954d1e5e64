// Rows of text to rows of a database.
#include "fuzz/recordfile.h"

#include "store/objectdatabase.h"
#include "tests/fixtures/testkit.h"

#include <QMap>
#include <QSqlDatabase>
#include <QSqlQuery>

namespace
{

constexpr int kMaxAddedLines = 3;

/// A new project as database; made once for each number of lines.
QByteArray newProject(int addedLines, const QString &file)
{
    static QMap<int, QByteArray> made;
    QByteArray &bytes = made[addedLines];
    if (bytes.isEmpty()) {
        ObjectDataBase store;
        store.createNewDataBase();
        for (int line = 1; line <= addedLines; ++line)
            store.addNode(static_cast<quint8>(line), ObjectDataBase::NODE_DATA_T());
        store.saveDatabaseAsSql(file);
        bytes = readFile(file);
    }
    return bytes;
}

QByteArray decoded(const QByteArray &word)
{
    return QByteArray::fromPercentEncoding(word);
}

QString quotedName(const QByteArray &word)
{
    QString name = QString::fromUtf8(decoded(word));
    return '"' + name.replace('"', "\"\"") + '"';
}

QVariant valueOf(const QByteArray &word)
{
    switch (word.isEmpty() ? '\0' : word.at(0)) {
    case '#':
        return word.mid(1).toLongLong();
    case '|':
        return decoded(word.mid(1));
    case '~':
        return QVariant(QVariant::String);
    default:
        return QString::fromUtf8(decoded(word));
    }
}

void drop(QSqlQuery &query, const QList<QByteArray> &words)
{
    const QString table = quotedName(words.first().mid(1));
    if (words.size() == 1)
        query.exec("DROP TABLE " + table);
    for (const QByteArray &column : words.mid(1))
        query.exec(QString("ALTER TABLE %1 DROP COLUMN %2").arg(table, quotedName(column)));
}

void insert(QSqlQuery &query, const QList<QByteArray> &words)
{
    QStringList columns;
    QVector<QVariant> values;
    for (const QByteArray &word : words.mid(1)) {
        const int split = word.indexOf('=');
        columns << quotedName(word.left(split));
        values << (split < 0 ? QVariant() : valueOf(word.mid(split + 1)));
    }
    const QString places =
        QString("?,").repeated(columns.size()).chopped(columns.isEmpty() ? 0 : 1);
    if (!query.prepare(QString("INSERT OR REPLACE INTO %1 (%2) VALUES (%3)")
                           .arg(quotedName(words.first()), columns.join(','), places)))
        return;
    for (const QVariant &value : values)
        query.addBindValue(value);
    query.exec();
}

} // namespace

void writeRecordFile(const QByteArray &records, const QString &file)
{
    const QList<QByteArray> lines = records.split('\n');
    const int addedLines = qMin(int(lines.count("+")), kMaxAddedLines);
    writeFile(file, newProject(addedLines, file));
    {
        QSqlDatabase database = QSqlDatabase::addDatabase("QSQLITE", "recordfile");
        database.setDatabaseName(file);
        database.open();
        QSqlQuery query(database);
        for (const char *pragma : {"PRAGMA journal_mode=OFF", "PRAGMA synchronous=OFF", "BEGIN"})
            query.exec(pragma);
        for (const QByteArray &line : lines) {
            QList<QByteArray> words = line.simplified().split(' ');
            if (words.first().startsWith('-'))
                drop(query, words);
            else if (!words.first().isEmpty() && words.first() != "+")
                insert(query, words);
        }
        query.exec("COMMIT");
    }
    QSqlDatabase::removeDatabase("recordfile");
}
