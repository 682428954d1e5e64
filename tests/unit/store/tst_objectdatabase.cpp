// Nodes, objects, subindices, texts and caches of the store.
#include "tests/fixtures/storefixture.h"

class TestObjectDatabase : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void nodeUpdateKeepsFirstValues()
    {
        Node node;
        node.name = "pump";
        node.isBootupManager = true;
        node.multilineData = 7;
        QVERIFY(store->addNode(1, node));
        Node stored;
        QVERIFY(store->getNodeData(1, stored));
        QVERIFY(stored == node);

        Node update;
        update.name = node.name = "valve";
        update.multilineData = 8;
        QVERIFY(store->addNode(1, update));
        QVERIFY(store->getNodeData(1, stored));
        QVERIFY(stored == node);
        QCOMPARE(store->getNodes(), (QList<quint8>{0, 1}));
        QVERIFY(store->isUDSServiceActive(1, 34));
        QCOMPARE(store->getUDSServiceSessions(1, 34), "1");
    }

    void deletedNodeLeavesNoTrace()
    {
        QVERIFY(store->addNode(2, {}));
        store->setGeneralSettingsValue("line2type", "1");
        QVERIFY(store->isUDSServiceActive(2, 34));
        QVERIFY(store->delNode(2));
        QVERIFY(!store->existNode(2) && !store->isUDSServiceActive(2, 34));
        QVERIFY(!store->existGeneralSettingsValue("line2type"));
        QVERIFY(store->getDescriptionSettingsKeys().filter(QRegExp("_2$")).isEmpty());
        QVERIFY(store->delNode(254)); // a line that never was
    }

    void udsServicesOfALine()
    {
        QCOMPARE(store->getUDSServiceActiveCnt(0), 5);
        QVERIFY(store->setUDSServiceActive(0, 16, false));
        QVERIFY(store->setUDSServiceActive(0, 15, true)); // below the services
        QCOMPARE(store->getUDSServiceActiveCnt(0), 4);
        QVERIFY(store->setUDSServiceUserLevels(0, 17, "1,it's"));
        QCOMPARE(store->getUDSServiceUserLevels(0, 17), "1,it's");
        QCOMPARE(store->getUDSServiceUserLevels(0, 34), "");
        QVERIFY(store->delUDSService(0, 62));
        QCOMPARE(store->getUDSServices(0), QList<quint8>({15, 16, 17, 34, 46}));
        ObjectDataBase::UDS_SERVICE_T service;
        QVERIFY(!store->getUDSServiceData(0, 62, service));
        QVERIFY(store->getUDSServiceData(0, 17, service));
        QCOMPARE(joined(service.active, service.sessions, service.userLevels),
                 QString("true/1/1,it's"));
    }

    void lockedStoreRefusesWrites()
    {
        store->setLockWriteAccess(true);
        QVERIFY(!store->addNode(3, {}));
        QVERIFY(!store->addIndex(0, 0x2000, {}));
        QVERIFY(!store->addSubIndex(0, 0x2000, 0, {}));
        QVERIFY(!store->setSubIndexValue(0, 0x2000, 0, "1"));
        QVERIFY(!store->setMiscSettingsValue("a", "b"));
        QVERIFY(store->setGeneralSettingsValue("a", "b"));
        store->setLockWriteAccess(false);
        QCOMPARE(store->getNodes(), QList<quint8>{0});
        QVERIFY(!store->existIndex(0, 0x2000));
    }

    void everyColumnReadsBack()
    {
        const Object object = fullObject();
        QVERIFY(store->addIndex(0, 0x6042, object));
        QVERIFY(objectOf(*store, 0, 0x6042) == object);

        const Sub sub = fullSub();
        QVERIFY(store->addSubIndex(0, 0x6042, 3, sub));
        Sub stored;
        QVERIFY(store->getSubIndexData(0, 0x6042, 3, stored));
        QVERIFY(stored == sub);
        QVERIFY(stored.managedByOlm);
        QCOMPARE(stored.signalId, 12);
        QVERIFY(!store->getSubIndexData(0, 0x6042, 4, stored));
        QVERIFY(stored == sub); // a miss leaves the caller's record alone
    }

    void apostrophes_data()
    {
        // clang-format off
        columns<QString, QString>("text", "between");
        QTest::newRow("one") << "it's" << "";
        QTest::newRow("doubled") << "it''s" << "";
        QTest::newRow("doubled_and_renamed") << "it''s" << "denotation";
        QTest::newRow("doubled_and_other_value_set") << "it''s" << "current value";
        // clang-format on
    }
    void apostrophes()
    {
        const auto [text, between] = fetchRow<QString, QString>();
        store->cacheAllSubs(0, 0);
        QVERIFY(store->addSubIndex(0, 0x2000, 0, makeSub(text, 9, text)));
        QCOMPARE(store->getSubIndexValue(0, 0x2000, 0), QString(text).replace("'", "''"));
        if (between == "denotation")
            QVERIFY(store->setSubIndexName(0, 0x2000, 0, text));
        else if (!between.isEmpty())
            QVERIFY(store->setSubIndexCurrentValue(0, 0x2000, 0, text));
        for (quint32 size = 4; size < 6; ++size) {
            Sub sub = subOf(*store, 0, 0x2000, 0);
            sub.size = size;
            QVERIFY(store->addSubIndex(0, 0x2000, 0, sub)); // read, changed and written back
        }
        store->clearAllCachedSubs();
        QCOMPARE(store->getSubIndexValue(0, 0x2000, 0), text);
        QCOMPARE(store->getSubIndexName(0, 0x2000, 0, true), text);
        if (between == "current value")
            QCOMPARE(store->getSubIndexCurrentValue(0, 0x2000, 0), text);

        QVERIFY(store->addSubIndex(0, 0x2000, 1, makeSub("it's", 10, "'")));
        QCOMPARE(store->getSubIndexValue(0, 0x2000, 1), "'");
        const int id = store->getStringId("it's");
        QCOMPARE(store->getStringId("it's"), id);
        store->executeSql("select id from Strings where string = 'it''s'");
        QVERIFY(store->getSqlResultLines().size() > 2);
        QCOMPARE(store->getString(id), "it's");
    }

    void cachesFollowWrites()
    {
        for (const bool isCached : {false, true}) {
            store = makeStore();
            store->addIndex(0, 0x2000, {});
            store->addSubIndex(0, 0x2000, 0, makeSub("a", 5, "1"));
            store->addSubIndex(0, 0x2000, 1, makeSub("b", 5, "2"));
            if (isCached)
                store->cacheAllSubs(0, 0);

            store->setSubIndexValue(0, 0x2000, 0, "3");
            store->setSubIndexParameterName(0, 0x2000, 0, "renamed");
            store->delSubIndex(0, 0x2000, 1, false);
            store->addSubIndex(0, 0x2000, 2, makeSub("c", 6, "4"));
            store->addIndex(0, 0x2001, {});
            store->setIndexName(0, 0x2001, "second");

            QCOMPARE(subOf(*store, 0, 0x2000, 0).defaultValue, "3");
            QCOMPARE(subOf(*store, 0, 0x2000, 0).name, "renamed");
            QVERIFY(!store->existSubIndex(0, 0x2000, 1));
            QCOMPARE(store->getSubIndices(0, 0x2000, 0), (QList<quint8>{0, 2}));
            QCOMPARE(store->getSubIndices(0, 0x2000, 1), (QList<quint8>{2}));
            QCOMPARE(store->getSubIndexDatatype(0, 0x2000, 2), quint16(6));
            QCOMPARE(store->getIndices(0, 0x1000, 0xFFFF), (QList<quint16>{0x2000, 0x2001}));
            QCOMPARE(store->getIndices(0, 0x2001, 0x2001), (QList<quint16>{0x2001}));
            QCOMPARE(store->getIndexName(0, 0x2001), "second");
            store->delIndex(0, 0x2000, false);
            QVERIFY(!store->existIndex(0, 0x2000));
            QVERIFY(store->getSubIndices(0, 0x2000, 0).isEmpty());
        }
    }

    void getSubIndexNameGivesCachedDisplayName()
    {
        Sub sub = makeSub("parameter", 5, {});
        sub.denotation = "display";
        store->addSubIndex(0, 0x2000, 0, sub);
        QCOMPARE(store->getSubIndexName(0, 0x2000, 0, false), "parameter");
        store->cacheAllSubNames(0, 0);
        QCOMPARE(store->getSubIndexName(0, 0x2000, 0, false), "display");
        store->clearCachedSubNames();
        store->cacheAllSubs(0, 0);
        store->cacheAllSubNames(0, 0x2000);
        QCOMPARE(store->getSubIndexName(0, 0x2000, 0, false), "display");
        store->setSubIndexName(0, 0x2000, 0, QString());
        QCOMPARE(store->getSubIndexName(0, 0x2000, 0, true), "parameter");
        store->addSubIndex(0, 0x2000, 0, makeSub("new", 5, {}));
        QCOMPARE(store->getSubIndexName(0, 0x2000, 0, true), "new");
        store->delSubIndex(0, 0x2000, 0, false);
        QCOMPARE(store->getSubIndexName(0, 0x2000, 0, true), "");
        store->addSubIndex(0, 0x2000, 1, sub);
        store->cacheAllSubNames(0, 0);
        store->delIndex(0, 0x2000, false);
        QCOMPARE(store->getSubIndexName(0, 0x2000, 1, true), "");
    }

    void freeNumbers()
    {
        store->addIndex(0, 0x2000, {});
        store->addIndex(0, 0x2001, {});
        store->addIndex(0, 0xFFFF, {});
        QCOMPARE(store->getNextFreeIndex(0, 0x2000), quint16(0x2002));
        QCOMPARE(store->getNextFreeIndex(0, 0xFFFF), quint16(0xFFFF)); // there is none
        for (const quint8 sub : {0, 1, 2, 4})
            store->addSubIndex(0, 0x2000, sub, {});
        QCOMPARE(store->getNextFreeSubIndex(0, 0x2000, 0), 3u);
        QCOMPARE(store->getNextFreeSubIndex(0, 0x2000, 5), 0xFFFFFFFFu);
    }

    void bitSize()
    {
        const auto bitsOf = [this](quint16 type, quint32 size) {
            Sub sub = makeSub({}, type, {});
            sub.size = size;
            store->addSubIndex(0, 0x2000, 0, sub);
            return store->getSubIndexBitSize(0, 0x2000, 0);
        };
        QCOMPARE(bitsOf(9, 10), 80u);  // visible string
        QCOMPARE(bitsOf(124, 3), 24u); // UTF-8 string
        QCOMPARE(bitsOf(7, 10), 32u);  // a number ignores the size
        QCOMPARE(store->getSubIndexBitSize(0, 0x2000, 1), 0u);
    }

    void mappableSubs()
    {
        store->addIndex(0, 0x2000, {});
        for (quint8 mapping = 0; mapping <= 4; ++mapping) {
            Sub sub = makeSub({}, mapping == 2 ? 6 : 5, {});
            sub.pdoMapping = PDOMapping::fromUInt(mapping);
            store->addSubIndex(0, 0x2000, mapping, sub);
            store->addSubIndex(0, 0x3000, mapping, sub); // without an object
        }
        const auto subsOf = [this](quint16 type, bool transmit) {
            QList<int> subs;
            for (const auto &address : store->getMappableSubs(0, type, transmit))
                subs << address.subindex;
            return subs;
        };
        QCOMPARE(subsOf(0, true), (QList<int>{1, 2, 4}));
        QCOMPARE(subsOf(0, false), (QList<int>{1, 2, 3}));
        QCOMPARE(subsOf(6, false), (QList<int>{2}));
        QCOMPARE(store->getMappableSubs(0, quint16(0x2001)).size(), 4);
        QCOMPARE(store->getSubIndicesMappable(0, 0x2000, 2), (QList<quint8>{2, 3, 4}));
    }

    void subsByProperty()
    {
        store->addIndex(0, 0x2000, {});
        store->addSubIndex(0, 0x2000, 1, makeSub({}, 5, "7"));
        store->addSubIndex(0, 0x2000, 2, makeSub({}, 7, "x"));
        QCOMPARE(store->getSubsByProperty(0, "datatype", "7").size(), 1);
        QCOMPARE(store->getSubsByProperty(0, "defaultvalue", "7").size(), 1);
        QCOMPARE(store->getSubsByProperty(0, "1", "1").size(), 2); // all of them
        QVERIFY(store->getSubsByProperty(0, "1=1 or datatype", "7").isEmpty());
    }

    void emptyMetadata()
    {
        const Metadata metadata{{"eds_define", "A"}};
        Object object;
        object.metadata = metadata;
        store->addIndex(0, 0x2000, object);
        store->addIndex(0, 0x2000, {});
        QCOMPARE(objectOf(*store, 0, 0x2000).metadata, metadata); // an update without keeps them

        Sub sub = makeSub({}, 5, {});
        sub.metadata = metadata;
        store->addSubIndex(0, 0x2000, 0, sub);
        const auto count = [this]() {
            QList<ObjectDataBase::INDEX_SUB_METADATA_T> all;
            return store->getAllSubIndicesWithMetaData(0, all) ? all.size() : -1;
        };
        QCOMPARE(count(), 1);
        store->addSubIndex(0, 0x2000, 0, {}); // the row is replaced, and they go
        QCOMPARE(count(), 0);
    }

    void cleanUpStringsKeepsUsedTexts()
    {
        Object object;
        object.name = "kept";
        store->addIndex(0, 0x2000, object);
        store->getStringId("unused");
        store->cleanUpStrings();
        QVERIFY(store->existSubIndexName(0, "kept"));
        QVERIFY(!store->existSubIndexName(0, "unused"));
        QCOMPARE(store->getIndexName(0, 0x2000), "kept");
        QVERIFY(store->getStringId("unused") >= 0);
    }

    void manyLines()
    {
        QVERIFY(!store->addIndex(200, 0x2000, {})); // before its line is there
        for (int line = 1; line <= 200; ++line)
            QVERIFY(store->addNode(static_cast<quint8>(line), {}));
        QVERIFY(store->addIndex(200, 0x2000, {}));
        store->getStringId("unused");
        store->cleanUpStrings();
        QVERIFY(!store->existSubIndexName(0, "unused"));
        QCOMPARE(store->getIndexName(200, 0x2000), "unnamed object");
    }

    void blockedThreadWaits()
    {
        store->setBlockUpdates(true);
        QVERIFY(store->existNode(0)); // the thread that blocks is not stopped by itself
        std::atomic<bool> passed{false};
        std::unique_ptr<QThread> other(QThread::create([&] { passed = store->existNode(0); }));
        other->start();
        QVERIFY(!other->wait(100));
        QVERIFY(!passed);
        store->setBlockUpdates(false);
        QVERIFY(other->wait(kLongestWaitMs));
        QVERIFY(passed);
    }
};

QTEST_GUILESS_MAIN(TestObjectDatabase)
#include "tst_objectdatabase.moc"
