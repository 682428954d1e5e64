// What other tools of the family do with a store: copies of objects, single cells, statements of
// their own.
#include "store/databasetextconverter.h"
#include "tests/fixtures/storefixture.h"

class tst_FamilyTools : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        QVERIFY(store->addNode(1, {}));
    }

    void copies_data()
    {
        columns<QString, int>("way", "targetLine");
        for (const char *way : {"copyIndex", "pasteSavedIndex", "copySubIndex"}) {
            for (const int line : {0, 1})
                QTest::addRow("%s_to_line_%d", way, line) << way << line;
        }
    }
    void copies()
    {
        const auto [way, targetLine] = fetchRow<QString, int>();
        const auto line = quint8(targetLine);
        const bool isWhole = way != "copySubIndex";
        const qint32 signal = store->addSignal({});
        Sub full = fullSub();
        full.signalId = signal;
        store->addIndex(0, 0x2000, fullObject());
        store->addSubIndex(0, 0x2000, 1, full);
        store->cacheAllSubs(0, 0);
        store->cacheAllSubNames(0, 0);
        store->addSubIndex(0, 0x2000, 2, makeSub("it's", 9, "it''s"));
        Object old;
        old.name = "old";
        old.metadata = {{"k", "old"}};
        store->addIndex(line, 0x3000, old);
        store->addSubIndex(line, 0x3000, 1, makeSub("old", 7, "1"));
        store->addSubIndex(line, 0x3000, 9, makeSub("old", 7, "1"));
        store->cacheAllSubNames(line, 0x3000);
        store->addConnection(0, 0x2000, 1, 1, 0x5000, 1, 0);
        store->addConnection(line, 0x3000, 9, 2, 0x5000, 2, 0);
        if (way == "pasteSavedIndex") {
            QVERIFY(store->saveIndex(0, 0x2000));
            QVERIFY(!store->saveIndex(0, 0x7777)); // and what is kept stays
            QVERIFY(store->delIndex(0, 0x2000, true));
            QVERIFY(store->pasteSavedIndex(line, 0x3000));
        } else if (isWhole) {
            QVERIFY(store->copyIndex(0, 0x2000, line, 0x3000));
        } else {
            for (const quint8 sub : {1, 2})
                QVERIFY(store->copySubIndex(0, 0x2000, sub, line, 0x3000, sub));
        }
        for (const bool isCached : {true, false}) {
            if (!isCached)
                store->clearAllCachedSubs();
            QCOMPARE(objectOf(*store, line, 0x3000), isWhole ? fullObject() : old);
            QCOMPARE(store->getSubIndices(line, 0x3000, 3),
                     isWhole ? QList<quint8>() : QList<quint8>{9});
            const Sub copy = subOf(*store, line, 0x3000, 1);
            QCOMPARE(copy, full);
            QCOMPARE(joined(copy.managedByOlm, copy.signalId),
                     joined(false, line == 0 ? signal : 0)); // a signal belongs to its line
            QCOMPARE(store->getSubIndexName(line, 0x3000, 1, true), "shown");
        }
        QCOMPARE(store->getSubIndexValue(line, 0x3000, 2), "it''s");
        QCOMPARE(store->getConnectionCount(), 2);
    }

    void savedObjectOutlivesItsSignal()
    {
        Sub sub;
        sub.signalId = store->addSignal({});
        store->addIndex(0, 0x2000, {});
        store->addSubIndex(0, 0x2000, 0, sub);
        QVERIFY(store->saveIndex(0, 0x2000));
        QVERIFY(store->delSignal(sub.signalId));
        QVERIFY(store->pasteSavedIndex(0, 0x2001));
        QCOMPARE(subOf(*store, 0, 0x2001, 0).signalId, 0);
        QVERIFY(store->createNewDataBase());
        QVERIFY(!store->pasteSavedIndex(0, 0x2001)); // nor does it go to another project
    }

    void refusals_data()
    {
        columns<QString, bool>("way", "isLocked");
        for (const char *way : {"no source", "no target", "locked"})
            QTest::newRow(way) << way << (qstrcmp(way, "locked") == 0);
    }
    void refusals()
    {
        const auto [way, isLocked] = fetchRow<QString, bool>();
        store->addIndex(0, 0x2000, {});
        store->addSubIndex(0, 0x2000, 0, makeSub("a", 5, "1"));
        store->addIndex(1, 0x2000, {});
        QVERIFY(store->saveIndex(0, 0x2000));
        const quint16 from = way == "no source" ? 0x2001 : 0x2000;
        const quint8 to = way == "no target" ? 7 : 1;
        const QString column = isLocked ? "size" : "size=1,uplimit";
        store->setLockWriteAccess(isLocked);
        QVERIFY(!store->copyIndex(0, from, to, 0x2000));
        QVERIFY(!store->copySubIndex(0, from, 0, to, 0x2000, 0));
        QVERIFY(way == "no source" || !store->pasteSavedIndex(to, 0x2001));
        QVERIFY(way == "no target" || !store->saveIndex(0, from));
        QVERIFY(!store->setSubindexSqlValue("SubObjects0", "0x2000", "0x0", column, 1));
        QVERIFY(!store->setSubindexSqlValue("SubObjects0 ", "0x2000", "0x0", "size", 1));
        QVERIFY(!store->setObjectIndexSqlValue("Objects0", "0x2005", "name", QVariant()));
        store->setLockWriteAccess(false);
        QCOMPARE(store->getSubIndices(1, 0x2000, 0), QList<quint8>());
        QCOMPARE(store->getIndices(0, 0, 0xFFFF), QList<quint16>{0x2000});
    }

    void singleCells_data()
    {
        columns<QString, QVariant, QString>("column", "value", "expected"); // name/default/size
        QTest::newRow("text") << "name" << QVariant("it's") << "it's/1  2/4";
        QTest::newRow("value_of_a_string") << "defaultvalue" << QVariant("a  b ") << "old/a  b /4";
        QTest::newRow("number") << "size" << QVariant(" 9") << "old/1  2/9";
    }
    void singleCells()
    {
        const auto [column, value] = fetchRow<QString, QVariant>();
        Sub sub = makeSub("old", 9, "1  2");
        sub.size = 4;
        store->addIndex(0, 0x2000, {});
        store->addSubIndex(0, 0x2000, 1, sub);
        store->cacheAllSubs(0, 0);
        store->cacheAllSubNames(0, 0);
        QVERIFY(store->setSubindexSqlValue("SubObjects0", "0x2000", "0x1", column, value));
        for (const bool isCached : {false, true}) {
            if (isCached)
                store->cacheAllSubs(0, 0);
            sub = subOf(*store, 0, 0x2000, 1);
            QTEST(joined(sub.name, sub.defaultValue, sub.size), "expected");
            QCOMPARE(store->getSubIndexName(0, 0x2000, 1, true), sub.name);
        }
        QVERIFY(store->setObjectIndexSqlValue("Objects0", "0x2001", "name", "new")); // a new row
        QCOMPARE(store->getIndexName(0, 0x2001), "new");
    }

    void statementsOfOthersAreSeen()
    {
        QSqlQuery query(connection());
        store->addIndex(0, 0x2000, {});
        store->addSubIndex(0, 0x2000, 0, makeSub("a", 5, "1"));
        store->cacheAllSubs(0, 0);
        QVERIFY(store->queryExec(&query, "update SubObjects0 set defaultvalue = '2'"));
        QCOMPARE(store->getSubIndexValue(0, 0x2000, 0), "2");
        QVERIFY(!store->queryExec(&query, "update nothing"));

        // A table without the constraint gets it, though the caller is in the middle of reading.
        QVERIFY(store->createUDSSettingsTable(9, query) && store->createSubObjectsTable(9, query));
        QVERIFY(store->queryExec(&query, "create table Rows as select * from SubObjects0"));
        QVERIFY(store->queryExec(&query, "drop table SubObjects0"));
        QVERIFY(store->queryExec(&query, "alter table Rows rename to SubObjects0"));
        QVERIFY(store->queryExec(&query, "insert into SubObjects0 select * from SubObjects0"));
        QVERIFY(store->queryExec(&query, "select * from SubObjects0") && query.next());
        QVERIFY(store->addUniqueColumnsToSubDatabase(0, query));
        QVERIFY(store->addUniqueColumnsToUDSSettings(0, query));
        QVERIFY(!store->addUniqueColumnsToUDSSettings(5, query)); // no such line
        QVERIFY(store->executeSql("select count(*) from SubObjects0"));
        QCOMPARE(store->getSqlResultLines(), QStringList{"1 "});
        QVERIFY(store->isUDSServiceActive(0, 34));
    }

    void signalsInMemory()
    {
        for (const int spn : {190, 91}) {
            ObjectDataBase::SPN data;
            data.pos = qint16(-spn);
            data.dataType = quint32(spn) / 10;
            QVERIFY(store->addSPN(1, 0xF004, spn == 91 ? 0x77 : 0x55, quint32(spn), data));
            QVERIFY(store->addSPN(1, 0xF004, 0x77, 190, data));
        }
        QList<quint32> spns{1};
        QList<quint16> types;
        ObjectDataBase::SPN data;
        QVERIFY(!store->getSPNsFromCache(1, 0xF004, 0x77, spns)); // not read yet
        QCOMPARE(spns, QList<quint32>{1});
        QVERIFY(store->getSPNDataTypes(1, 0xF004, {91, 5, 190}, types));
        QCOMPARE(types, (QList<quint16>{9, 0, 19}));
        store->cacheAllSpnDataTypes(1);
        QVERIFY(store->getSPNsFromCache(1, 0xF004, 0x77, spns));
        QVERIFY(store->getSPNDataTypesFromCache(1, 0xF004, 0x77, types));
        QVERIFY(store->getSPNDataFromCache({1, 0xF004, 0x55, 190}, data));
        QCOMPARE(spns.size(), 2);
        QCOMPARE(types.size(), 2);
        QVERIFY(!store->getSPNDataFromCache({1, 0xF004, 0x55, 91}, data));
        QVERIFY(store->delSPN(1, 0xF004, 0x55, 190));
        QVERIFY(!store->getSPNsFromCache(1, 0xF004, 0x55, spns)); // no signal is left
        QVERIFY((ObjectDataBase::SPN_Identifier{1, 2, 0, 9} <
                 ObjectDataBase::SPN_Identifier{1, 2, 1, 0}));
    }

    void textOfAConnection()
    {
        store->addIndex(0, 0x2000, fullObject());
        const QString file = fixture.path("p.tsrt");
        {
            DatabaseTextConverter converter;
            converter.setTextOutputFile(file);
            converter.setSqlDatabaseFile(connection());
            QVERIFY(converter.convertSqlToText());
        }
        QVERIFY(store->existIndex(0, 0x2000)); // the connection is still open
        ObjectDataBase opened;
        QVERIFY(opened.openDataBase(file));
        QCOMPARE(objectOf(opened, 0, 0x2000), fullObject());
    }

private:
    /// That of the store, the only one.
    static QSqlDatabase connection()
    {
        return QSqlDatabase::database(QSqlDatabase::connectionNames().value(0));
    }
};

QTEST_GUILESS_MAIN(tst_FamilyTools)
#include "tst_familytools.moc"
