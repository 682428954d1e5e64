// Rows read straight from SQLite are what the driver makes of them, whatever a cell holds.
#include "store/objectdatabase_p.h"

#include <QTemporaryDir>
#include <QtTest>

namespace
{

/// All that a cell can be read as.
template <class Cell>
QStringList readings(const Cell &cell, const QVariant &variant)
{
    const QString text = cell.toString();
    return {QLatin1String(variant.typeName()),
            QString::number(cell.toInt()),
            QString::number(cell.toUInt()),
            QString::number(cell.toLongLong()),
            text.isNull() ? QStringLiteral("null") : QStringLiteral("text ") + text,
            QString::fromLatin1(cell.toByteArray().toHex()),
            variant.toString()};
}

QVector<QStringList> readByDriver(StorePrivate &store, const QString &sql)
{
    QVector<QStringList> rows;
    Statement statement(store, sql);
    while (statement.next())
        rows << readings(statement.value(0), statement.value(0));
    return rows;
}

QVector<QStringList> read(StorePrivate &store, const QString &sql)
{
    QVector<QStringList> rows;
    RowReader reader(store, sql);
    while (reader.next())
        rows << readings(reader.value(0), reader.value(0).toVariant());
    return rows;
}

} // namespace

class tst_RowReader : public QObject
{
    Q_OBJECT

    QTemporaryDir folder;
    int files = 0;
    QString file;
    std::unique_ptr<StorePrivate> store;

    /// A new database. Its encoding counts from its next opening on.
    bool fill(const QStringList &statements, const char *encoding = "UTF-8")
    {
        file = folder.filePath(QString::number(++files));
        store = std::make_unique<StorePrivate>(nullptr);
        bool done = store->openConnection(file) &&
                    store->exec(QStringLiteral("pragma encoding = '%1'").arg(encoding));
        for (const QString &sql : statements)
            done = done && store->exec(sql);
        return done && store->openConnection(file) &&
               store->sqlite.isOpen() != SqliteConnection::isDriverAsked();
    }

private slots:
    void oddCells_data()
    {
        QTest::addColumn<QString>("cell");
        QTest::newRow("null") << "null";
        QTest::newRow("negative") << "-7";
        QTest::newRow("beyond_int") << "4294967298";
        QTest::newRow("greatest_integer") << "9223372036854775807";
        QTest::newRow("least_integer") << "-9223372036854775807 - 1";
        QTest::newRow("real") << "2.5";
        QTest::newRow("negative_real") << "-0.1";
        QTest::newRow("real_beyond_integers") << "1e300";
        QTest::newRow("infinite") << "-9e999";
        QTest::newRow("number_as_text") << "'12'";
        QTest::newRow("negative_as_text") << "'-12'";
        QTest::newRow("blanks_around") << "' 12 '";
        QTest::newRow("letters_after") << "'12abc'";
        QTest::newRow("hexadecimal") << "'0x10'";
        QTest::newRow("real_as_text") << "'1.5'";
        QTest::newRow("text_beyond_int") << "'18446744073709551615'";
        QTest::newRow("empty_text") << "''";
        QTest::newRow("letters_of_two_bytes") << "'Gr\u00F6\u00DFe'";
        QTest::newRow("other_plane") << "char(128512)";
        QTest::newRow("byte_order_mark") << "char(65279) || 'a'";
        QTest::newRow("nul_inside") << "char(97, 0, 98)";
        QTest::newRow("nul_after_other_letters") << "char(228, 0, 98)";
        QTest::newRow("no_character") << "cast(x'41ff42c3' as text)";
        QTest::newRow("overlong") << "cast(x'c080c1bf' as text)";
        QTest::newRow("half_a_pair") << "cast(x'eda08041' as text)";
        QTest::newRow("odd_bytes") << "cast(x'00d841' as text)";
        QTest::newRow("bytes") << "x'3132'";
        QTest::newRow("no_bytes") << "x''";
        QTest::newRow("bytes_of_a_letter") << "x'c3b6'";
        QTest::newRow("zeros") << "zeroblob(3)";
    }

    void oddCells()
    {
        QFETCH(QString, cell);
        for (const char *encoding : {"UTF-8", "UTF-16le", "UTF-16be"}) {
            // Between others, and next to itself: equal texts share their memory.
            QVERIFY(fill(
                {QStringLiteral("create table T(cell)"),
                 QStringLiteral("insert into T values ('\u00C3\u00B6'), (%1), (%1), ('12'), (%1)")
                     .arg(cell)},
                encoding));
            const QString sql = QStringLiteral("select cell from T");
            QCOMPARE(read(*store, sql), readByDriver(*store, sql));
        }
    }

    void failures_data()
    {
        QTest::addColumn<QString>("sql");
        QTest::addColumn<int>("rows");
        QTest::addColumn<bool>("isRead");
        QTest::newRow("no_row") << "select cell from T where cell = 7" << 0 << true;
        QTest::newRow("rows") << "select cell from T" << 3 << true;
        QTest::newRow("no_table") << "select cell from None" << 0 << false;
        QTest::newRow("no_statement") << "selected cell" << 0 << false;
        QTest::newRow("fails_at_once") << "select abs(cell) from T order by cell" << 0 << false;
        QTest::newRow("fails_in_the_middle") << "select abs(cell) from T" << 2 << false;
    }

    void failures()
    {
        QFETCH(QString, sql);
        QVERIFY(
            fill({QStringLiteral("create table T(cell)"),
                  QStringLiteral("insert into T values (1), (2), (-9223372036854775807 - 1)")}));
        RowReader reader(*store, sql);
        int rows = 0;
        while (reader.next())
            ++rows;
        QVERIFY(!reader.next()); // does not begin anew
        QTEST(rows, "rows");
        QTEST(reader.ok(), "isRead");
        QCOMPARE(store->failure.isEmpty(), reader.ok());
        QVERIFY(!store->damaged);
    }

    void boundValues_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("number") << QVariant(-7);
        QTest::newRow("beyond_int") << QVariant(quint32(4294967295U));
        QTest::newRow("flag") << QVariant(true);
        QTest::newRow("text") << QVariant("it's\n");
        QTest::newRow("other_letters") << QVariant(QStringLiteral("\u00D6l"));
        QTest::newRow("empty") << QVariant("");
        QTest::newRow("null_text") << QVariant(QString());
        QTest::newRow("none") << QVariant();
    }

    void boundValues()
    {
        QFETCH(QVariant, value);
        QVERIFY(fill({}));
        const QString sql = QStringLiteral("select typeof(?) || ?");
        const QString word = QStringLiteral("outer");
        RowReader outer(*store, sql, {word, word});
        RowReader reader(*store, sql,
                         {value, value}); // of the same text, while the other one stands
        Statement driver(*store, sql, {value, value});
        QVERIFY(outer.next() && reader.next() && driver.next());
        QCOMPARE(reader.value(0).toVariant(), driver.value(0));
        QCOMPARE(outer.value(0).toString(), QStringLiteral("textouter"));
    }

    void insertedTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << "it's";
        QTest::newRow("other_letters") << "Gr\u00F6\u00DFe";
        QTest::newRow("nul_inside") << QString(QLatin1String("a\0b", 3));
        QTest::newRow("null") << QString();
        QTest::newRow("two_are_long") << QString(600, 'x');
        QTest::newRow("each_is_long") << QString(1025, 'x');
    }

    void insertedTexts()
    {
        QFETCH(QString, text);
        for (const char *encoding : {"UTF-8", "UTF-16le"}) {
            QVERIFY(fill({"create table T(id integer, one text, other text)"}, encoding));
            RowInserter rows("T", {"id", "one", "other"}, 1, Cells(3),
                             RowInserter::Conflict::Replace);
            QVERIFY(rows.write(*store, {1, text, text}));
            const QString given = text.isNull() ? QString("") : text;
            QVERIFY(store->exec("insert into T values(2,?,?)", {given, given}));
            QCOMPARE(read(*store, "select distinct typeof(one) || hex(one), typeof(other) || "
                                  "hex(other) from T")
                         .size(),
                     1);
        }
    }

    void leavesNothingBehind()
    {
        QVERIFY(fill({QStringLiteral("create table T(cell)"),
                      QStringLiteral("insert into T values (1), (2)")}));
        const QString sql = QStringLiteral("select cell from T");
        QVERIFY(RowReader(*store, sql).next()); // half read
        QVERIFY(store->exec(QStringLiteral("insert into T values (3)")));
        QCOMPARE(read(*store, sql).size(), 3);
        QVERIFY(RowReader(*store, sql).next());
        QVERIFY(store->exec(QStringLiteral("pragma locking_mode = exclusive")));
        QVERIFY(store->exec(QStringLiteral("drop table T")));
        // A connection that cannot close would keep its lock.
        QVERIFY(store->openConnection(file));
        QVERIFY(store->exec(QStringLiteral("create table T(cell)")));
        QCOMPARE(read(*store, sql).size(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_RowReader)
#include "tst_rowreader.moc"
