// Nodes, objects, subindices, texts and caches of the store.
#include "storefixture.h"

#include <QSignalSpy>
#include <QtTest>

class TestObjectDatabase : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void nodeUpdateKeepsFirstValues();
    void deletedNodeLeavesNoTrace();
    void lockedStoreRefusesWrites();
    void everyColumnReadsBack();
    void apostrophes();
    void cachesFollowWrites_data();
    void cachesFollowWrites();
    void getSubIndexNameGivesCachedDisplayName();
    void freeNumbers();
    void bitSize_data();
    void bitSize();
    void mappableSubs();
    void subsByProperty();
    void emptyMetadata();
    void cleanUpStringsKeepsUsedTexts();
    void blockedThreadWaits();

private:
    StoreFixture fixture;
    std::unique_ptr<ObjectDataBase> store;
};

void TestObjectDatabase::init()
{
    store = std::make_unique<ObjectDataBase>();
    QVERIFY(store->createNewDataBase());
}

void TestObjectDatabase::nodeUpdateKeepsFirstValues()
{
    ObjectDataBase::NODE_DATA_T node;
    node.name = QStringLiteral("pump");
    node.isBootupManager = true;
    node.multilineData = 7;
    QVERIFY(store->addNode(1, node));
    ObjectDataBase::NODE_DATA_T stored;
    QVERIFY(store->getNodeData(1, stored));
    QVERIFY(stored == node);

    node.name = QStringLiteral("valve");
    node.isBootupManager = false;
    node.multilineData = 8;
    QVERIFY(store->addNode(1, node));
    QVERIFY(store->getNodeData(1, stored));
    QCOMPARE(stored.name, QStringLiteral("valve"));
    QVERIFY(stored.isBootupManager);
    QCOMPARE(stored.multilineData, 7u);
    QCOMPARE(store->getNodes(), (QList<quint8>{0, 1}));
    QVERIFY(store->isUDSServiceActive(1, 34));
    QCOMPARE(store->getUDSServiceSessions(1, 34), QStringLiteral("1"));
}

void TestObjectDatabase::deletedNodeLeavesNoTrace()
{
    QVERIFY(store->addNode(2, {}));
    store->setGeneralSettingsValue(QStringLiteral("line2type"), QStringLiteral("1"));
    QVERIFY(store->delNode(2));
    QVERIFY(!store->existNode(2));
    QVERIFY(!store->existGeneralSettingsValue(QStringLiteral("line2type")));
    QVERIFY(store->getDescriptionSettingsKeys().filter(QRegExp(QStringLiteral("_2$"))).isEmpty());
    QVERIFY(store->delNode(254)); // a line that never was
}

void TestObjectDatabase::lockedStoreRefusesWrites()
{
    store->setLockWriteAccess(true);
    QVERIFY(!store->addNode(3, {}));
    QVERIFY(!store->addIndex(0, 0x2000, {}));
    QVERIFY(!store->addSubIndex(0, 0x2000, 0, {}));
    QVERIFY(!store->setSubIndexValue(0, 0x2000, 0, QStringLiteral("1")));
    QVERIFY(!store->setMiscSettingsValue(QStringLiteral("a"), QStringLiteral("b")));
    QVERIFY(store->setGeneralSettingsValue(QStringLiteral("a"), QStringLiteral("b")));
    store->setLockWriteAccess(false);
    QCOMPARE(store->getNodes(), QList<quint8>{0});
    QVERIFY(!store->existIndex(0, 0x2000));
}

void TestObjectDatabase::everyColumnReadsBack()
{
    ObjectDataBase::INDEX_DATA_T object;
    object.name = QStringLiteral("Drehzahl ä");
    object.dataType = 6;
    object.objectCode = CANopen::ObjectCode::Record;
    object.description = QStringLiteral("two\nlines");
    object.category = 3;
    object.deviceClass = QStringLiteral("drive");
    object.fwSupported = true;
    object.metadata = {{QStringLiteral("eds_define"), QStringLiteral("A")}};
    QVERIFY(store->addIndex(0, 0x6042, object));
    ObjectDataBase::INDEX_DATA_T readObject;
    QVERIFY(store->getIndexData(0, 0x6042, readObject));
    QVERIFY(readObject == object);

    ObjectDataBase::SUBINDEX_DATA_T sub = makeSub(QStringLiteral("x, y"), 7, QStringLiteral("5"));
    sub.accessType = QStringLiteral("rww");
    sub.currentValue = QStringLiteral("6");
    sub.pdoMapping = PDOMapping(PDOMappingType::Tpdo);
    sub.lowLimit = QStringLiteral("-1");
    sub.upLimit = QStringLiteral("9");
    sub.size = 10;
    sub.defaultInEds = false;
    sub.limitInEds = sub.refuseRead = sub.refuseWrite = sub.dcfComponent = true;
    sub.cyclicRead = sub.changedByUser = sub.sharedLines = sub.nvStorage = true;
    sub.managedByOlm = true;
    sub.allowedAccessTypes = QStringLiteral("ro,rw");
    sub.implementation = 2;
    sub.description = QStringLiteral("d");
    sub.varName = QStringLiteral("v");
    sub.category = 4;
    sub.writeDefaultToEds = 2;
    sub.wizardSource = 454;
    sub.denotation = QStringLiteral("shown");
    sub.signalId = 12;
    sub.metadata = {{QStringLiteral("k"), QStringLiteral("v")}};
    QVERIFY(store->addSubIndex(0, 0x6042, 3, sub));
    ObjectDataBase::SUBINDEX_DATA_T readSub;
    QVERIFY(store->getSubIndexData(0, 0x6042, 3, readSub));
    QVERIFY(readSub == sub);
    QVERIFY(readSub.managedByOlm);
    QCOMPARE(readSub.signalId, 12);
    QVERIFY(!store->getSubIndexData(0, 0x6042, 4, readSub));
    QVERIFY(readSub == sub); // a miss leaves the caller's record alone
}

void TestObjectDatabase::apostrophes()
{
    store->cacheAllSubs(0, 0);
    const auto text = makeSub(QStringLiteral("it's"), 9, QStringLiteral("it's"));
    QVERIFY(store->addSubIndex(0, 0x2000, 0, text));
    QCOMPARE(store->getSubIndexValue(0, 0x2000, 0), QStringLiteral("it''s"));
    store->clearAllCachedSubs();
    QCOMPARE(store->getSubIndexValue(0, 0x2000, 0), QStringLiteral("it's"));
    QCOMPARE(store->getSubIndexName(0, 0x2000, 0, true), QStringLiteral("it's"));

    const auto bytes = makeSub(QStringLiteral("it's"), 10, QStringLiteral("'"));
    QVERIFY(store->addSubIndex(0, 0x2000, 1, bytes));
    QCOMPARE(store->getSubIndexValue(0, 0x2000, 1), QStringLiteral("'"));
    const int id = store->getStringId(QStringLiteral("it's"));
    QCOMPARE(store->getStringId(QStringLiteral("it's")), id);
    QCOMPARE(store->getString(id), QStringLiteral("it's"));
}

void TestObjectDatabase::cachesFollowWrites_data()
{
    QTest::addColumn<bool>("cached");
    QTest::newRow("cached line") << true;
    QTest::newRow("uncached line") << false;
}

void TestObjectDatabase::cachesFollowWrites()
{
    QFETCH(bool, cached);
    store->addIndex(0, 0x2000, {});
    store->addSubIndex(0, 0x2000, 0, makeSub(QStringLiteral("a"), 5, QStringLiteral("1")));
    store->addSubIndex(0, 0x2000, 1, makeSub(QStringLiteral("b"), 5, QStringLiteral("2")));
    if (cached)
        store->cacheAllSubs(0, 0);

    store->setSubIndexValue(0, 0x2000, 0, QStringLiteral("3"));
    store->setSubIndexParameterName(0, 0x2000, 0, QStringLiteral("renamed"));
    store->delSubIndex(0, 0x2000, 1, false);
    store->addSubIndex(0, 0x2000, 2, makeSub(QStringLiteral("c"), 6, QStringLiteral("4")));
    store->addIndex(0, 0x2001, {});
    store->setIndexName(0, 0x2001, QStringLiteral("second"));

    ObjectDataBase::SUBINDEX_DATA_T sub;
    QVERIFY(store->getSubIndexData(0, 0x2000, 0, sub));
    QCOMPARE(sub.defaultValue, QStringLiteral("3"));
    QCOMPARE(sub.name, QStringLiteral("renamed"));
    QVERIFY(!store->existSubIndex(0, 0x2000, 1));
    QCOMPARE(store->getSubIndices(0, 0x2000, 0), (QList<quint8>{0, 2}));
    QCOMPARE(store->getSubIndices(0, 0x2000, 1), (QList<quint8>{2}));
    QCOMPARE(store->getSubIndexDatatype(0, 0x2000, 2), quint16(6));
    QCOMPARE(store->getIndices(0, 0x1000, 0xFFFF), (QList<quint16>{0x2000, 0x2001}));
    QCOMPARE(store->getIndices(0, 0x2001, 0x2001), (QList<quint16>{0x2001}));
    QCOMPARE(store->getIndexName(0, 0x2001), QStringLiteral("second"));
    store->delIndex(0, 0x2000, false);
    QVERIFY(!store->existIndex(0, 0x2000));
    QVERIFY(store->getSubIndices(0, 0x2000, 0).isEmpty());
}

void TestObjectDatabase::getSubIndexNameGivesCachedDisplayName()
{
    auto sub = makeSub(QStringLiteral("parameter"), 5, {});
    sub.denotation = QStringLiteral("display");
    store->addSubIndex(0, 0x2000, 0, sub);
    QCOMPARE(store->getSubIndexName(0, 0x2000, 0, false), QStringLiteral("parameter"));
    store->cacheAllSubNames(0, 0);
    QCOMPARE(store->getSubIndexName(0, 0x2000, 0, false), QStringLiteral("display"));
    store->clearCachedSubNames();
    store->cacheAllSubs(0, 0);
    store->cacheAllSubNames(0, 0x2000);
    QCOMPARE(store->getSubIndexName(0, 0x2000, 0, false), QStringLiteral("display"));
    store->setSubIndexName(0, 0x2000, 0, QString());
    QCOMPARE(store->getSubIndexName(0, 0x2000, 0, true), QStringLiteral("parameter"));
}

void TestObjectDatabase::freeNumbers()
{
    store->addIndex(0, 0x2000, {});
    store->addIndex(0, 0x2001, {});
    QCOMPARE(store->getNextFreeIndex(0, 0x2000), quint16(0x2002));
    QCOMPARE(store->getNextFreeIndex(0, 0x3000), quint16(0x3000));
    for (const quint8 sub : {0, 1, 2, 4})
        store->addSubIndex(0, 0x2000, sub, {});
    QCOMPARE(store->getNextFreeSubIndex(0, 0x2000, 0), 3u);
    QCOMPARE(store->getNextFreeSubIndex(0, 0x2000, 4), 5u);
    QCOMPARE(store->getNextFreeSubIndex(0, 0x2000, 5), 0xFFFFFFFFu);
}

void TestObjectDatabase::bitSize_data()
{
    QTest::addColumn<quint16>("type");
    QTest::addColumn<quint32>("size");
    QTest::addColumn<quint32>("bits");
    QTest::newRow("visible string") << quint16(9) << 10u << 80u;
    QTest::newRow("domain") << quint16(15) << 4u << 32u;
    QTest::newRow("utf8 string") << quint16(124) << 3u << 24u;
    QTest::newRow("number ignores size") << quint16(7) << 10u << 32u;
}

void TestObjectDatabase::bitSize()
{
    QFETCH(quint16, type);
    QFETCH(quint32, size);
    auto sub = makeSub({}, type, {});
    sub.size = size;
    store->addSubIndex(0, 0x2000, 0, sub);
    QTEST(store->getSubIndexBitSize(0, 0x2000, 0), "bits");
    QCOMPARE(store->getSubIndexBitSize(0, 0x2000, 1), 0u);
}

void TestObjectDatabase::mappableSubs()
{
    store->addIndex(0, 0x2000, {});
    for (quint8 mapping = 0; mapping <= 4; ++mapping) {
        auto sub = makeSub({}, mapping == 2 ? 6 : 5, {});
        sub.pdoMapping = PDOMapping::fromUInt(mapping);
        store->addSubIndex(0, 0x2000, mapping, sub);
        store->addSubIndex(0, 0x3000, mapping, sub); // without an object
    }
    const auto subsOf = [](const QList<ObjectDataBase::SubAddress> &addresses) {
        QList<int> subs;
        for (const auto &address : addresses)
            subs << address.subindex;
        return subs;
    };
    QCOMPARE(subsOf(store->getMappableSubs(0, quint16(0), true)), (QList<int>{1, 2, 4}));
    QCOMPARE(subsOf(store->getMappableSubs(0, quint16(0), false)), (QList<int>{1, 2, 3}));
    QCOMPARE(subsOf(store->getMappableSubs(0, quint16(6), false)), (QList<int>{2}));
    QCOMPARE(store->getMappableSubs(0, quint16(0x2001)).size(), 4);
    QCOMPARE(store->getSubIndicesMappable(0, 0x2000, 2), (QList<quint8>{2, 3, 4}));
}

void TestObjectDatabase::subsByProperty()
{
    store->addIndex(0, 0x2000, {});
    store->addSubIndex(0, 0x2000, 1, makeSub({}, 5, QStringLiteral("7")));
    store->addSubIndex(0, 0x2000, 2, makeSub({}, 7, QStringLiteral("x")));
    QCOMPARE(store->getSubsByProperty(0, QStringLiteral("datatype"), QStringLiteral("7")).size(),
             1);
    QCOMPARE(
        store->getSubsByProperty(0, QStringLiteral("defaultvalue"), QStringLiteral("7")).size(), 1);
    QVERIFY(store->getSubsByProperty(0, QStringLiteral("1=1 or datatype"), QStringLiteral("7"))
                .isEmpty());
}

void TestObjectDatabase::emptyMetadata()
{
    const Metadata metadata{{QStringLiteral("eds_define"), QStringLiteral("A")}};
    ObjectDataBase::INDEX_DATA_T object;
    object.metadata = metadata;
    store->addIndex(0, 0x2000, object);
    object.metadata.clear();
    store->addIndex(0, 0x2000, object);
    ObjectDataBase::INDEX_DATA_T stored;
    store->getIndexData(0, 0x2000, stored);
    QCOMPARE(stored.metadata, metadata); // an update without attributes keeps them

    auto sub = makeSub({}, 5, {});
    sub.metadata = metadata;
    store->addSubIndex(0, 0x2000, 0, sub);
    QList<ObjectDataBase::INDEX_SUB_METADATA_T> all;
    QVERIFY(store->getAllSubIndicesWithMetaData(0, all));
    QCOMPARE(all.size(), 1);
    sub.metadata.clear();
    store->addSubIndex(0, 0x2000, 0, sub); // the row is replaced, and they go
    all.clear();
    QVERIFY(store->getAllSubIndicesWithMetaData(0, all));
    QVERIFY(all.isEmpty());
}

void TestObjectDatabase::cleanUpStringsKeepsUsedTexts()
{
    ObjectDataBase::INDEX_DATA_T object;
    object.name = QStringLiteral("kept");
    store->addIndex(0, 0x2000, object);
    store->getStringId(QStringLiteral("unused"));
    store->cleanUpStrings();
    QVERIFY(store->existSubIndexName(0, QStringLiteral("kept")));
    QVERIFY(!store->existSubIndexName(0, QStringLiteral("unused")));
    QCOMPARE(store->getIndexName(0, 0x2000), QStringLiteral("kept"));
    QVERIFY(store->getStringId(QStringLiteral("unused")) >= 0);
}

void TestObjectDatabase::blockedThreadWaits()
{
    store->setBlockUpdates(true);
    QVERIFY(store->existNode(0)); // the thread that blocks is not stopped by itself
    std::atomic<bool> passed{false};
    std::unique_ptr<QThread> other(QThread::create([&] { passed = store->existNode(0); }));
    other->start();
    QVERIFY(!other->wait(100));
    QVERIFY(!passed);
    store->setBlockUpdates(false);
    QVERIFY(other->wait(5000));
    QVERIFY(passed);
}

QTEST_GUILESS_MAIN(TestObjectDatabase)
#include "tst_objectdatabase.moc"
