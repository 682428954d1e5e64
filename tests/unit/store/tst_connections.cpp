// Links between lines, locks, mapping queries and the process image of the store.
#include "tests/fixtures/storefixture.h"

class TestConnections : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        store->addNode(1, {});
        store->addNode(2, {});
    }

    void deletes()
    {
        // What is left of the four links; a locked store keeps them all.
        const auto left = [this](const auto &remove) {
            store->clearConnections(0, 0);
            addLinks();
            store->setLockWriteAccess(true);
            remove();
            store->setLockWriteAccess(false);
            const QString locked = priorities() == "1 2 3 4" ? "" : "lock broken ";
            remove();
            return locked + priorities();
        };
        QCOMPARE(left([this] { store->removeConnnection(0, 0x2000, 1, 1, 0x2100, 1); }), "2 3 4");
        QCOMPARE(left([this] { store->removeConnnection(2); }), "1 2 4");
        QCOMPARE(left([this] { store->removeConnnection(1, 0x2100); }), "3");
        QCOMPARE(left([this] { store->removeConnnection(1, 0x2100, 1); }), "2 3");
        QCOMPARE(left([this] { store->clearConnections(0, 1); }), "3 4");
        QCOMPARE(left([this] { store->clearConnections(1, 0); }), "1 2 3");
        QCOMPARE(left([this] { store->clearConnections(0, 0); }), "");
    }

    void queries()
    {
        addLinks();
        QVERIFY(store->isConnected(0, 0x2000, 1, 1, 0x2100, 1));
        QVERIFY(!store->isConnected(0, 0x2000, 1, 1, 0x2100, 2));
        QVERIFY(store->isProducerConnected(1, 0x2100, 1) &&
                store->isConsumerConnected(1, 0x2100, 2));
        QVERIFY(!store->isProducerConnected(1, 0x2100, 2) &&
                !store->isConsumerConnected(0, 0x2000, 1));
        QCOMPARE(store->getProducerNode(2, 0x2100, 1), quint8(1));
        QVERIFY(store->getProducer(1, 0x2100, 2) == place(0x2000, 2));
        QVERIFY(store->getConsumer(1, 0x2100, 1) == place(0x2200, 1));
        QVERIFY(!store->getProducer(0, 0x2000, 1) && !store->getConsumer(2, 0x2100, 1));
        QVERIFY(store->getPDOConnections(0, 1, true).isEmpty());
        QCOMPARE(store->getConnectionCount(), 4);

        Sub sub = makeSub("multiplexed", 5, {});
        sub.signalId = 7;
        store->addSubIndex(1, 0x2000, 1, sub);
        QVERIFY(store->executeSql(
            "insert into Signals (sigid,datatype,accesstype) values(7,5,'txmpdo')"));
        QCOMPARE(priorities(true), "1 2 3 4");
        QCOMPARE(priorities(false), "1 2 4");
    }

    void changes()
    {
        addLinks();
        ObjectDataBase::Connection link = store->getPDOConnections(true).first();
        link.priority = 9;
        QVERIFY(store->updateConnectionPriority(link));
        QCOMPARE(priorities(), "2 9 3 4");
        QVERIFY(store->updateConnections(0x2100, 0x2300)); // on both sides
        QVERIFY(store->isConnected(1, 0x2300, 1, 0, 0x2200, 1));
        QSignalSpy spy(store.get(), &ObjectDataBase::updateNotify);
        QVERIFY(store->moveConnections(1, 5));
        QCOMPARE(int(spy.first().first().value<ObjectDataBase::ChangeSet>().kind), 14);
        QVERIFY(store->isConnected(0, 0x2000, 2, 5, 0x2300, 2));
        QVERIFY(store->isConnected(5, 0x2300, 1, 0, 0x2200, 1));
    }

    void possible()
    {
        for (const quint8 line : {0, 1})
            store->addSubIndex(line, 0x2000, 1, makeSub("u16", 6, {}));
        store->addSubIndex(1, 0x2001, 1, makeSub("u8", 5, {}));
        store->initPossibleConnectionQuery(0, 1);
        // By the snapshot, by the project, and the type that was told.
        const auto answers = [this](quint16 from, quint8 line, quint16 to, quint8 sub) {
            quint16 type = 99;
            const bool fast = store->isConnectionPossible(0, from, 1, line, to, sub, type);
            return joined(fast, store->isConnectionPossible(0, from, 1, line, to, sub), type);
        };
        QCOMPARE(answers(0x2000, 1, 0x2000, 1), "true/true/6");
        QCOMPARE(answers(0x2000, 1, 0x2001, 1), "false/false/6");
        QCOMPARE(answers(0x2000, 0, 0x2000, 1), "false/false/99"); // one line
        QCOMPARE(answers(0x3000, 1, 0x3000, 1), "true/true/0");    // neither is there
        QCOMPARE(answers(0x3000, 1, 0, 1), "false/false/99");
        QCOMPARE(answers(0x2000, 1, 0xFFFF, 255), "false/true/6"); // goes with all
    }

    void locks()
    {
        for (const quint16 index : {0x1801, 0x1800, 0x1801})
            store->setLockedPdo(0, index, true);
        store->setLockedPdo(1, 0x1800, true);
        store->setLockedMapping(0, 0x1A00, true);
        QCOMPARE(store->getLockedPDOs(0), (QList<quint16>{0x1800, 0x1801}));
        QVERIFY(store->isPdoLocked(0, 0x1801) && !store->isMappingLocked(0, 0x1801));
        store->setLockWriteAccess(true);
        store->setLockedPdo(0, 0x1801, false);
        QVERIFY(!store->clearLockedMappings());
        store->setLockWriteAccess(false);
        QVERIFY(store->isPdoLocked(0, 0x1801) && store->isMappingLocked(0, 0x1A00));
        store->setLockedPdo(0, 0x1801, false);
        QCOMPARE(store->getLockedPDOs(0), QList<quint16>{0x1800});
        QVERIFY(store->clearLockedPDOs(0));
        QVERIFY(store->getLockedPDOs(0).isEmpty() && store->isPdoLocked(1, 0x1800));
        QVERIFY(store->clearLockedPDOs());
        QVERIFY(!store->isPdoLocked(1, 0x1800) && store->isMappingLocked(0, 0x1A00));
    }

    void mappings()
    {
        addPdo(0x1400, "0x200", {"0x20000108", "0x10000008"}, "rw", "rw");
        addPdo(0x1800, "0x180", {"0x30000010", "536871176"}, "rw", "const");
        addPdo(0x1801, "0x280", {}, "const", "rw");
        QVERIFY(!store->isMappingStatic(0, 0x1400));
        QVERIFY(store->isMappingStatic(0, 0x1800) && store->isMappingStatic(0, 0x1801));
        const QList<ObjectDataBase::SubAddress> entries{place(0x1600, 1), place(0x1A00, 2)};
        QVERIFY(store->getMappingObjectsForObject(0, 0x2000, 1) == entries);
        QVERIFY(store->isObjectMapped(0, 0x2000, 1) && !store->isObjectMapped(0, 0x2000, 0));
        QVERIFY(!store->isObjectMapped(0, 0x1000, 0));
    }

    void unusedPdosGo()
    {
        store->cacheAllSubs(0, 0); // caches must follow
        addPdo(0x1400, "$NODEID+0x200", {"0x20000108", "0x20000208"}, "rw", "rw");
        store->setSubIndexValue(0, 0x1600, 0, "1");
        addPdo(0x1401, "0", {"0x20000108"}, "rw", "rw");
        addPdo(0x1800, "0x8000180", {"0x20000108"}, "rw", "rw");
        addPdo(0x1801, "0x80000180", {"0x20000108"}, "rw", "rw");
        addPdo(0x1802, "0x180", {}, "rw", "rw");
        QVERIFY(store->removeUnusedPDOsAndMakeOtherPDOsstatic(0));
        for (int pass = 0; pass < 2; ++pass, store->clearAllCachedSubs()) {
            QCOMPARE(store->getIndices(0, 0x1400, 0x1BFF),
                     (QList<quint16>{0x1400, 0x1600, 0x1801, 0x1A01}));
            QCOMPARE(store->getSubIndices(0, 0x1600, 0), (QList<quint8>{0, 1}));
            QCOMPARE(subOf(*store, 0, 0x1600, 0).accessType +
                         subOf(*store, 0, 0x1600, 1).accessType,
                     "constconst");
        }
    }

    void positions()
    {
        const auto position = &ObjectDataBase::startPosInProcessImage;
        QCOMPARE(position(0xA041, 1), 254u);
        QCOMPARE(position(0xA0C0, 3), 4u);
        QCOMPARE(position(0xA1C0, 3), 8u);
        QCOMPARE(position(0xA681, 1), 1016u);
        QCOMPARE(position(0x9FFF, 7), 0u);
    }

    void freePlaces_data()
    {
        // clang-format off
        columns<QVector<int>, int, bool, QString>("taken", "type", "output", "place");
        QTest::newRow("empty_input") << QVector<int>{} << 5 << false << "a040:1";
        QTest::newRow("empty_output") << QVector<int>{} << 7 << true << "a680:1";
        QTest::newRow("behind_last") << QVector<int>{0xA04001, 0xA04002} << 2 << false << "a000:3";
        QTest::newRow("behind_last_aligned") << QVector<int>{0xA04001} << 4 << false << "a1c0:2";
        QTest::newRow("behind_wider") << QVector<int>{0xA68001} << 5 << true << "a4c0:5";
        QTest::newRow("gap_of_three") << QVector<int>{0xA04001, 0xA04004} << 5 << false << "a040:2";
        QTest::newRow("gap_too_narrow") << QVector<int>{0xA04001, 0xA04003} << 5 << false << "a040:4";
        QTest::newRow("second_object") << QVector<int>{0xA040FE} << 5 << false << "a040:1";
        QTest::newRow("full_object") << QVector<int>{-254} << 5 << false << "a041:1";
        QTest::newRow("full_short_range") << QVector<int>{-254 * 64} << 2 << false << "none";
        QTest::newRow("no_range") << QVector<int>{} << 8 << false << "none";
        // clang-format on
    }

    void freePlaces()
    {
        const auto [taken, type, output] = fetchRow<QVector<int>, int, bool>();
        QList<ObjectDataBase::SubEntry> entries;
        const auto take = [&entries](int index, int sub) {
            const bool isWide = index >= 0xA680;
            entries.append({0, quint16(index), quint8(sub), makeSub("v", isWide ? 7 : 5, {})});
        };
        for (const int key : qAsConst(taken)) {
            for (int i = 0; i < -key; ++i) // that many from the start of the range
                take(0xA040 + i / 254, i % 254 + 1);
            if (key > 0)
                take(key >> 8, key & 0xFF);
        }
        store->addSubIndices(entries);
        for (const ObjectDataBase::SubEntry &entry : qAsConst(entries)) {
            if (entry.subindex == 1 || !store->existIndex(0, entry.index))
                store->addIndex(0, entry.index, {});
        }
        const auto found = store->findFreeNVVariable(0, quint16(type), output);
        QTEST(found ? QStringLiteral("%1:%2").arg(QString::number(found->index, 16),
                                                  QString::number(found->subindex))
                    : QStringLiteral("none"),
              "place");
    }

    void networkVariables()
    {
        QVERIFY(store->addNVObj(1, 6, true, "speed") == place(0xA580, 1));
        QVERIFY(store->addNVObj(1, 5, false, "mode") == place(0xA040, 3));
        QVERIFY(store->addNVObj(1, 6, true, "torque") == place(0xA580, 3));
        const Object object = objectOf(*store, 1, 0xA580);
        QCOMPARE(joined(object.name, object.dataType, int(object.objectCode)),
                 "PLC_ARRAY_UNSIGNED16_OUTPUT/6/8");
        QCOMPARE(subOf(*store, 1, 0xA580, 0).name, "Heighest Subindex");
        const Sub sub = subOf(*store, 1, 0xA040, 3);
        QCOMPARE(joined(sub.name, sub.dataType, sub.accessType, sub.pdoMapping.toUInt()),
                 "mode/5/rww/3");
        const QString image = "Pos: 0: Index: 0xa580 sub: 1 size = 2\nPos: 2: Index: 0xa040 sub: 3 "
                              "size = 1\nPos: 4: Index: 0xa580 sub: 3 size = 2\n";
        QCOMPARE(store->getProcessImage(1), image);
        store->addSubIndex(1, 0xA040, 2, makeSub("clash", 5, {}));
        QVERIFY(
            store->getProcessImage(1).contains("Pos: 1: Index: 0xa040 sub: 2 size = 1 ERROR\nPos: "
                                               "2: Index: 0xa040 sub: 3 size = 1\n"));

        store->addConnection(1, 0xA580, 3, 2, 0xA000, 1, 0);
        QVERIFY(store->removeUnusedNV());
        QCOMPARE(store->getSubIndices(1, 0xA580, 0), (QList<quint8>{0, 3}));
        QCOMPARE(store->getSubIndices(1, 0xA040, 1), QList<quint8>());
        store->addNVObj(0, 5, false, "stays");
        QVERIFY(store->deleteAllNV(0, false)); // all lines but line 0
        QVERIFY(store->getIndices(1, 0xA000, 0xAFFF).isEmpty() && store->existIndex(0, 0xA040));
        QCOMPARE(store->getConnectionCount(), 0);
        store->setLockWriteAccess(true);
        QVERIFY(!store->addNVObj(0, 5, false, "locked") && !store->deleteAllNV(0, false));
        store->setLockWriteAccess(false);
    }

private:
    static ObjectDataBase::SubAddress place(int index, int sub)
    {
        return {quint16(index), quint8(sub)};
    }

    /// Four links whose priorities name them.
    void addLinks()
    {
        QVERIFY(store->addConnection(1, 0x2000, 1, 2, 0x2100, 1, 3));
        QVERIFY(store->addConnection(0, 0x2000, 1, 1, 0x2100, 1, 1));
        QVERIFY(store->addConnection(0, 0x2000, 2, 1, 0x2100, 2, 2));
        QVERIFY(store->addConnection(1, 0x2100, 1, 0, 0x2200, 1, 4));
    }

    QString priorities(bool withMpdo = true) const
    {
        QStringList result;
        for (const ObjectDataBase::Connection &link : store->getPDOConnections(withMpdo))
            result << QString::number(link.priority);
        return result.join(' ');
    }

    void addPdo(quint16 index, const QString &cobId, const QStringList &entries,
                const QString &countAccess, const QString &entryAccess)
    {
        const auto put = [this](int object, int sub, const QString &value, const QString &access) {
            Sub data = makeSub("s", 7, value);
            data.accessType = access;
            store->addIndex(0, quint16(object), {});
            store->addSubIndex(0, quint16(object), quint8(sub), data);
        };
        put(index, 1, cobId, "rw");
        put(index + 0x200, 0, QString::number(entries.size()), countAccess);
        for (int i = 0; i < entries.size(); ++i)
            put(index + 0x200, i + 1, entries.at(i), entryAccess);
    }
};

QTEST_GUILESS_MAIN(TestConnections)
#include "tst_connections.moc"
