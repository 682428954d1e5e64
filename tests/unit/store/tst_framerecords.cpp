// Groups and signals of J1939 lines, identifiers and data elements of raw CAN lines.
#include "tests/fixtures/storefixture.h"

using Pgn = ObjectDataBase::PGN;
using Spn = ObjectDataBase::SPN;
using CanId = ObjectDataBase::CANID;
using Element = ObjectDataBase::DataElement;

class tst_FrameRecords : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void keepsGroups()
    {
        Spn fresh;
        QCOMPARE(joined(fresh.implementation, fresh.defaultValue), "2/0");
        QVERIFY(store->addPGN(0, 0xF004, group(0x55)));
        QVERIFY(store->addPGN(0, 0xF004, group(0x77)));
        QVERIFY(store->addPGN(0, 0x1234, group(0x55)));
        for (const int spn : {190, 512, 91})
            QVERIFY(store->addSPN(0, 0xF004, 0x55, quint32(spn), signal(spn)));
        for (const bool cached : {false, true}) {
            if (cached)
                store->cacheAllSpnDataForLine(0);
            QCOMPARE(store->getPGNs(0, 0, false), QList<quint32>({0x1234, 0xF004, 0xF004}));
            QCOMPARE(store->getPGNs(0, 0x77, false), QList<quint32>({0xF004}));
            Pgn found;
            QVERIFY(store->getPGNData(0, 0xF004, 0x55, found));
            QCOMPARE(joined(found.name, found.description, found.number, found.edpDpKey,
                            found.priority, found.cycleTimeMs, found.inhibitTimeMs,
                            found.mappingCount, found.direction, found.isSafe, found.srvtMs,
                            found.fdTrailerFormat, found.fdAssuranceType,
                            found.fdAssuranceDataSize),
                     "It's EEC1/d/61444/0/6/10/20/3/85/0/40/50/60/70");
            // The order of the frame is that of the positions, here descending by number.
            QCOMPARE(store->getSPNs(0, 0xF004, 0x55), QList<quint32>({512, 190, 91}));
            Spn spn;
            QVERIFY(store->getSPNData(0, 0xF004, 0x55, 190, spn));
            QCOMPARE(joined(spn.pos, spn.name, spn.description, spn.defaultValue, spn.dataType,
                            spn.pgn, spn.direction, spn.number, spn.implementation, spn.varName,
                            spn.bitSize, spn.slotDf),
                     "-190/It's 190/s/0'0/5/61444/85/190/0/v'190/8/9");
            QVERIFY(!store->existsSPN(0, 0xF004, 0x77, 190));
            QVERIFY(!store->existsPGN(0, 0x1234, 0x77));
        }
        // Writers are seen by readers of the cached line, in the order of the rows.
        Pgn changed = group(0x55);
        changed.name = "new";
        Spn moved = signal(91);
        moved.pos = -999;
        QVERIFY(store->addPGN(0, 0x1234, changed) && store->addPGN(0, 0xF004, changed));
        QVERIFY(store->addPGN(0, 0x2000, changed) && store->addPGN(0, 0x1234, group(0x77)));
        QVERIFY(store->addSPN(0, 0xF004, 0x55, 91, moved) && store->delSPN(0, 0xF004, 0x55, 512));
        QVERIFY(store->addSPN(0, 0xF004, 0x55, 7, signal(7)) && store->delPGN(0, 0xF004, 0x77));
        for (const bool cached : {true, false}) {
            if (!cached)
                store->clearAllCachedSpnData();
            QCOMPARE(store->getPGNs(0, 0, false), QList<quint32>({0x1234, 0x1234, 0x2000, 0xF004}));
            for (const quint32 number : {0x1234, 0x2000, 0xF004})
                QCOMPARE(store->getPGNName(0, number, 0x55), "new");
            QCOMPARE(store->getPGNName(0, 0x1234, 0x77), "It's EEC1");
            QCOMPARE(store->getSPNs(0, 0xF004, 0x55), QList<quint32>({91, 190, 7}));
        }
        store->cacheAllSpnDataForLine(0);
        QVERIFY(store->delPGN(0, 0xF004, 0x55));
        QCOMPARE(store->getPGNs(0, 0x55, false), QList<quint32>({0x1234, 0x2000}));
        QVERIFY(store->getSPNs(0, 0xF004, 0x55).isEmpty());
        store->setLockWriteAccess(true);
        QVERIFY(!store->addPGN(0, 1, group(0x55)) && !store->delPGN(0, 0x1234, 0x55));
        store->setLockWriteAccess(false);
    }

    void leavesSafeGroupsOut()
    {
        Pgn safe = group(0x55);
        safe.isSafe = 1;
        store->addPGN(0, 1, safe);
        store->addPGN(0, 2, group(0x55));
        store->executeSql("update PGNs0 set issafe = NULL where number = 2");
        for (const quint8 direction : {0x55, 0})
            QCOMPARE(store->getPGNs(0, direction, true), QList<quint32>({2}));
        store->cacheAllSpnDataForLine(0);
        QCOMPARE(store->getPGNs(0, 0x55, true), QList<quint32>({2}));
    }

    void foldsDataPages()
    {
        Pgn paged = group(0x77);
        paged.edpDpKey = 1;
        store->addPGN(0, 0xFF00, paged);
        store->addSPN(0, 0xFF00, 0x77, 7, signal(7));
        store->addPGN(0, 0xFF00, group(0x55));
        store->fixEDP_DP_PGNs();
        QCOMPARE(store->getPGNs(0, 0x77, false), QList<quint32>({0x1FF00}));
        QCOMPARE(store->getSPNs(0, 0x1FF00, 0x77), QList<quint32>({7}));
        QCOMPARE(store->getPGNs(0, 0x55, false), QList<quint32>({0xFF00}));
    }

    void signalsGoTheWayOfTheirGroup()
    {
        store->addPGN(0, 1, group(0x77));
        store->addPGN(0, 2, group(0x77));
        store->addPGN(0, 2, group(0x55));
        for (const quint32 number : {1, 2, 3})
            store->addSPN(0, number, 0, number, signal(9));
        store->updatePGNdirectionAttributes(0);
        QVERIFY(store->existsSPN(0, 1, 0x77, 1));
        QVERIFY(store->existsSPN(0, 2, 0x55, 2)); // the way of the row that came last
        QVERIFY(store->existsSPN(0, 3, 0, 3));
    }

    void keepsIdentifiers()
    {
        CanId id;
        id.name = "lamp";
        id.direction = 0x77;
        QVERIFY(store->addCANID(0, 0x18FF0001, id));
        Element element;
        element.pos = 3;
        element.bitSize = 4;
        for (const int number : {2, 1})
            QVERIFY(store->addDataElement(0, 0x18FF0001, 0x77, quint32(number), element));
        element.name = "other";
        element.pos = element.bitSize = 9;
        QVERIFY(store->addDataElement(0, 0x18FF0001, 0x77, 2, element));
        for (const bool cached : {false, true}) {
            if (cached)
                store->cacheAllSpnDataForLine(0);
            QCOMPARE(store->getCANIDs(0, 0), QList<quint32>({0x18FF0001}));
            QVERIFY(store->getCANIDs(0, 0x55).isEmpty());
            QCOMPARE(store->getCANIDName(0, 0x18FF0001, 0x77), "lamp");
            QCOMPARE(store->getDataElements(0, 0x18FF0001, 0x77), QList<quint32>({1, 2}));
            Element found;
            QVERIFY(store->getDataElementData(0, 0x18FF0001, 0x77, 2, found));
            QCOMPARE(joined(found.name, found.pos, found.bitSize, found.canid),
                     "other/3/4/419364865");
        }
        QVERIFY(store->delDataElement(0, 0x18FF0001, 0x77, 2));
        QCOMPARE(store->getDataElements(0, 0x18FF0001, 0x77), QList<quint32>({1}));
    }

    void savesNoIndexOfItsOwn()
    {
        const QString file = fixture.path("project.tsrp");
        store->addSPN(0, 1, 0x55, 9, signal(9));
        QVERIFY(store->saveDataBase(file));
        store->addSPN(0, 1, 0x55, 9, signal(9)); // finds its row without one, too
        QCOMPARE(store->getSPNs(0, 1, 0x55), QList<quint32>({9}));
        QVERIFY(StoreFixture::runSql(file, {"create index KeyOfSPNs0 on SPNs0 (pos)"}));
    }

    void comparesWithAnotherStore()
    {
        const auto other = makeStore();
        for (ObjectDataBase *one : {store.get(), other.get()}) {
            const quint32 number = one == other.get() ? 2 : 1;
            one->addPGN(0, number, group(0x55));
            one->addSPN(0, number, 0x55, 9, signal(9));
            CanId id;
            id.direction = 0x55;
            one->addCANID(0, number, id);
        }
        QVERIFY(store->pgnEqual(other.get(), 0, 0, 1, 2, 0x55));
        QVERIFY(store->CANIDEqual(other.get(), 0, 0, 1, 2, 0x55));
        QVERIFY(!store->pgnEqual(other.get(), 0, 0, 1, 1, 0x55));
        other->addSPN(0, 2, 0x55, 9, signal(10));
        QVERIFY(!store->pgnEqual(other.get(), 0, 0, 1, 2, 0x55));
        other->addDataElement(0, 2, 0x55, 1, {});
        QVERIFY(!store->CANIDEqual(other.get(), 0, 0, 1, 2, 0x55));
    }

private:
    static Pgn group(int direction)
    {
        Pgn pgn;
        pgn.name = "It's EEC1";
        pgn.description = "d";
        pgn.priority = 6;
        pgn.cycleTimeMs = 10;
        pgn.inhibitTimeMs = 20;
        pgn.mappingCount = 3;
        pgn.direction = quint8(direction);
        pgn.srvtMs = 40;
        pgn.fdTrailerFormat = 50;
        pgn.fdAssuranceType = 60;
        pgn.fdAssuranceDataSize = 70;
        return pgn;
    }

    static Spn signal(int number)
    {
        Spn spn;
        spn.pos = qint16(-number);
        spn.name = QString("It's %1").arg(number);
        spn.description = "s";
        spn.defaultValue = "0'0";
        spn.dataType = 5;
        spn.implementation = 0;
        spn.varName = QString("v'%1").arg(number);
        spn.bitSize = 8;
        spn.slotDf = 9;
        return spn;
    }
};

QTEST_GUILESS_MAIN(tst_FrameRecords)
#include "tst_framerecords.moc"
