// Copying and comparing lines of two stores.
#include "tests/fixtures/storefixture.h"

#include <QSignalSpy>

using Difference = ObjectDataBase::LineDifference;

class tst_LineCopy : public StoreTest
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        other = makeStore();
    }

    void objectsComeWithAllTheyHave()
    {
        other->addNode(2, Node());
        addObject(*other, 2, 0x2000);
        Sub quoted = makeSub("it's", 9, "it's");
        other->addSubIndex(2, 0x2000, 7, quoted);
        addObject(*other, 2, 0xFFFF);
        QVERIFY(store->copyLineFromDatabase(*other, 3, 2, 0, 0xFFFF)); // a new line
        QVERIFY(store->existNode(3));
        QVERIFY(store->compareLine(3, *other, 2, 0, 0xFFFF).isEmpty());
        for (const bool isCached : {true, false}) {
            if (!isCached)
                store->clearAllCachedSubs();
            QCOMPARE(objectOf(*store, 3, 0x2000), fullObject());
            const Sub copy = subOf(*store, 3, 0x2000, 1);
            QCOMPARE(copy, fullSub());
            QCOMPARE(joined(copy.signalId, copy.managedByOlm), QString("0/false"));
            QCOMPARE(subOf(*store, 3, 0x2000, 7), quoted);
        }
    }

    void rangeAndReplacement()
    {
        for (const quint16 index : {0x1FFF, 0x2000, 0x2001, 0x2002, 0x2003})
            addObject(*other, 0, index);
        addObject(*store, 0, 0x2000);
        store->addSubIndex(0, 0x2000, 9, makeSub("only here", 5, "1"));
        store->addSubIndex(0, 0x2002, 9, fullSub()); // without an object
        addObject(*store, 0, 0x2A00);
        Object plain = fullObject();
        plain.metadata.clear();
        other->addIndex(0, 0x2001, plain);
        store->addIndex(0, 0x2001, fullObject());
        other->saveIndexMetaData(0, 0x2001, {});
        store->addConnection(0, 0x2000, 1, 1, 0x2000, 1, 0);
        QSignalSpy changes(store.get(), &ObjectDataBase::updateNotify);
        QVERIFY(store->copyLineFromDatabase(*other, 0, ObjectDataBase::kFirstLine, 0x2000, 0x2002));
        QCOMPARE(store->getIndices(0, 0, 0xFFFF), QList<quint16>({0x2000, 0x2001, 0x2002, 0x2A00}));
        for (const quint16 index : {0x2000, 0x2002})
            QCOMPARE(store->getSubIndices(0, index, 0), QList<quint8>({1}));
        QVERIFY(objectOf(*store, 0, 0x2001).metadata.isEmpty());
        QCOMPARE(store->getConnectionCount(), 1);
        QCOMPARE(changes.size(), 1);
    }

    void settingsOfTheLine()
    {
        other->addNode(1, Node());
        other->setGeneralSettingsValue("co_node_id", "5,6");
        other->setGeneralSettingsValue("line1type", "5");
        other->setJ1939SettingsValue("startaddress", "0x80,0x81");
        other->setUDSServiceActive(1, 0x22, false);
        other->setUDSServiceSessions(1, 0x2E, "1,3");
        other->setDescriptionSettingsLine(1);
        other->setDescriptionSettingsValue("VendorName", "it's ours");
        other->setDescriptionSettingsValue("NrOfTXPDO", "4");
        store->setGeneralSettingsValue("co_node_id", "1");
        store->setGeneralSettingsValue("nmtmaster", "1");
        QVERIFY(store->copyLineFromDatabase(*other, 0, 1, 0, 0));
        store->setDescriptionSettingsLine(0);
        QCOMPARE(joined(store->getGeneralSettingsValue("co_node_id"),
                        store->getGeneralSettingsValue("nmtmaster"),
                        store->getGeneralSettingsValue("line0type"),
                        store->getJ1939SettingsValue("startaddress"),
                        store->isUDSServiceActive(0, 0x22), store->isUDSServiceActive(0, 0x2E),
                        store->getUDSServiceSessions(0, 0x2E),
                        store->getDescriptionSettingsValue("VendorName"),
                        store->getDescriptionSettingsValue("NrOfTXPDO")),
                 QString("6//5/0x81/false/true/1,3/it's ours/4"));
        store->setGeneralSettingsValue("line0type", "1"); // the project's own choice stays
        QVERIFY(store->copyLineFromDatabase(*other, 0, 1, 0, 0));
        QCOMPARE(store->getGeneralSettingsValue("line0type"), QString("1"));
    }

    /// Into the first of two J1939 lines, from the second of another project.
    void j1939SettingsOfTheLine_data()
    {
        // clang-format off
        columns<QString, QString, QString>("own", "theirs", "result");
        QTest::newRow("one_for_all_lines") << "5" << "700" << "700,5";
        QTest::newRow("alike") << "5" << "5" << "5";
        QTest::newRow("none") << "" << "700" << "700";
        QTest::newRow("lists") << "5,6" << "7,8" << "8,6";
        // clang-format on
    }
    void j1939SettingsOfTheLine()
    {
        const auto [own, theirs] = fetchRow<QString, QString>();
        other->addNode(1, Node());
        other->setJ1939SettingsValue("manufacturercode", theirs);
        store->addNode(1, Node());
        for (const char *type : {"line0type", "line1type"})
            store->setGeneralSettingsValue(type, "2");
        store->setJ1939SettingsValue("manufacturercode", own);
        QVERIFY(store->copyLineFromDatabase(*other, 0, 1, 0, 0));
        QTEST(store->getJ1939SettingsValue("manufacturercode"), "result");
    }

    void groupsOfADirection()
    {
        for (const quint8 direction : {0x55, 0}) {
            init();
            addGroup(*other, 61444, 0x55, "engine", 2);
            addGroup(*other, 61444, 0x77, "engine", 1);
            addGroup(*other, 65263, 0x55, "out of range", 1);
            addGroup(*store, 61444, 0x55, "old", 3);
            addGroup(*store, 65262, 0x55, "old", 1);
            QVERIFY(store->copyPGNsFromDatabase(*other, 0, 0, 0, 65262, direction));
            ObjectDataBase::PGN group;
            QVERIFY(store->getPGNData(0, 61444, 0x55, group));
            QCOMPARE(group.name, "engine");
            QCOMPARE(store->getSPNs(0, 61444, 0x55).size(), 2);
            QCOMPARE(store->getPGNs(0, 0x55, false), QList<quint32>({61444, 65262}));
            QCOMPARE(store->getSPNs(0, 61444, 0x77).size(), direction == 0 ? 1 : 0);
        }
    }

    void refusesWhatItCannotCopy()
    {
        QVERIFY(!store->copyLineFromDatabase(*other, 0, 7, 0, 0xFFFF)); // no such line
        QVERIFY(!store->copyLineFromDatabase(*store, 0, 0, 0, 0xFFFF)); // itself
        store->setLockWriteAccess(true);
        QVERIFY(!store->copyLineFromDatabase(*other, 0, 0, 0, 0xFFFF));
        store->setLockWriteAccess(false);
    }

    void differences()
    {
        for (const quint16 index : {0x1FFF, 0x2000, 0x2003, 0x2004, 0x2009})
            addObject(*store, 0, index);
        for (const quint16 index : {0x2001, 0x2003, 0x2004, 0x200A})
            addObject(*other, 0, index);
        Object renamed = fullObject();
        renamed.name = "other";
        other->addIndex(0, 0x2003, renamed);
        Object described = fullObject();
        described.description = "does not change the device";
        other->addIndex(0, 0x2004, described);
        Sub changed = fullSub();
        changed.upLimit = "99";
        other->addSubIndex(0, 0x2004, 1, changed);
        store->addSubIndex(0, 0x2004, 2, fullSub());
        other->addSubIndex(0, 0x2004, 3, fullSub());
        using Kind = Difference::Kind;
        QCOMPARE(store->compareLine(0, *other, ObjectDataBase::kFirstLine, 0x2000, 0x2009),
                 QList<Difference>({{Kind::OnlyHere, 0x2000, {}},
                                    {Kind::OnlyThere, 0x2001, {}},
                                    {Kind::Content, 0x2003, {}},
                                    {Kind::Content, 0x2004, 1},
                                    {Kind::OnlyHere, 0x2004, 2},
                                    {Kind::OnlyThere, 0x2004, 3},
                                    {Kind::OnlyHere, 0x2009, {}}}));
    }

private:
    static void addObject(ObjectDataBase &project, quint8 line, quint16 index)
    {
        project.addIndex(line, index, fullObject());
        project.addSubIndex(line, index, 1, fullSub());
    }

    static void addGroup(ObjectDataBase &project, quint32 number, quint8 direction,
                         const QString &name, quint32 signalCount)
    {
        ObjectDataBase::PGN group;
        group.name = name;
        group.direction = direction;
        project.addPGN(0, number, group);
        for (quint32 i = 0; i < signalCount; ++i)
            project.addSPN(0, number, direction, i, {});
    }

    std::unique_ptr<ObjectDataBase> other;
};

QTEST_GUILESS_MAIN(tst_LineCopy)
#include "tst_linecopy.moc"
