// Signals of lines, their groups, and the groups of lines.
#include "tests/fixtures/storefixture.h"

#include <QSignalSpy>

using Signal = ObjectDataBase::SIGNAL_DATA_T;

namespace
{

Signal makeSignal(quint8 line, const QString &name, qint32 group = 0, qint32 ref = 0)
{
    Signal signal;
    signal.line = line;
    signal.name = name;
    signal.group = group;
    signal.ref = ref;
    return signal;
}

} // namespace

class tst_Signals : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        store = makeStore();
        store->addNode(1, Node());
        speed = store->addSignal(makeSignal(0, "it's fast", store->addSignalGroup("motion")));
        copy = store->addSignal(makeSignal(1, "speed", 0, speed));
        tie(*store, 1, 0x2000, speed);
    }

    void everyFieldIsKept()
    {
        Signal signal = makeSignal(1, "all", 5, copy);
        signal.dataType = 7;
        signal.accessType = "txmpdo";
        signal.defaultValue = "1,5'";
        signal.transmitType = 255;
        signal.transmitTrigger = 3;
        signal.eventTimer = 65535;
        signal.syncValue = 4;
        signal.syncStartValue = 240;
        signal.routing = -1;
        const qint32 id = store->addSignal(Signal());
        QCOMPARE(store->addSignal(signal, id), id);
        for (const bool isCached : {true, false}) {
            if (!isCached)
                store->executeSql("select 1"); // forgets all caches
            Signal read;
            QVERIFY(store->getSignalData(id, read));
            QCOMPARE(joined(read.line, read.name, read.dataType, read.accessType, read.defaultValue,
                            read.group, read.ref),
                     QString("1/all/7/txmpdo/1,5'/5/%1").arg(copy));
            QCOMPARE(joined(read.transmitType, read.transmitTrigger, read.eventTimer,
                            read.syncValue, read.syncStartValue, read.routing),
                     QString("255/3/65535/4/240/-1"));
            QCOMPARE(store->getSignals(1), QList<qint32>({copy, id}));
        }
        store->cleanUpStrings();
        QCOMPARE(of(*store, speed).name, "it's fast");
    }

    void deletionCutsTies_data()
    {
        columns<QString>("how");
        for (const char *how : {"signal", "signals of the line", "line"})
            QTest::newRow(how) << QString(how);
    }

    void deletionCutsTies()
    {
        QFETCH(QString, how);
        store->cacheAllSubs(1, 0);
        store->addGroup("front");
        store->addNodeToGroup("front", 1);
        store->addNodeToGroup("front", 0);
        if (how == "signal")
            QVERIFY(store->delSignal(speed));
        else
            QVERIFY(how == "line" ? store->delNode(0) : store->delAllSignals(0));
        for (const bool isCached : {true, false}) {
            if (!isCached)
                store->executeSql("select 1");
            Sub sub;
            QVERIFY(store->getSubIndexData(1, 0x2000, 0, sub));
            QCOMPARE(joined(sub.signalId, of(*store, copy).ref, of(*store, copy).name),
                     QString("0/0/speed"));
            QVERIFY(store->getSignals(0).isEmpty());
        }
        QCOMPARE(store->getGroupNodes("front"),
                 how == "line" ? QList<quint8>({1}) : QList<quint8>({1, 0}));
    }

    void groupsOfSignals()
    {
        const qint32 motion = of(*store, speed).group;
        QCOMPARE(store->addSignalGroup("motion"), motion);
        const qint32 heat = store->addSignalGroup("heat");
        QVERIFY(heat > motion);
        QVERIFY(store->updateSignalGroups({{motion, "way"}, {9, "new"}}));
        QCOMPARE(store->getSignalGroups(), (QMap<qint32, QString>{{motion, "way"}, {9, "new"}}));
        QCOMPARE(of(*store, speed).group, motion);
        QVERIFY(store->delSignalGroup(motion));
        QCOMPARE(of(*store, speed).group, 0);
    }

    void groupsOfLines()
    {
        QSignalSpy changes(store.get(), &ObjectDataBase::updateNotify);
        QVERIFY(store->addGroup("a'b") && store->addGroup("c"));
        QVERIFY(!store->addGroup("c") && !store->addGroup("") && !store->renameGroup("c", "a'b"));
        QVERIFY(store->addNodeToGroup("c", 1) && store->addNodeToGroup("c", 0));
        QVERIFY(!store->addNodeToGroup("c", 0) && !store->addNodeToGroup("none", 0));
        QVERIFY(store->renameGroup("c", "d") && !store->delNodeFromGroup("a'b", 0));
        store->executeSql("update Groups set nodeidlist = '1,x,256,0' where name = 'd'");
        QCOMPARE(store->getGroupNodes("d"), QList<quint8>({1, 0}));
        QVERIFY(store->delGroup("a'b") && !store->delGroup("a'b"));
        QCOMPARE(store->getGroups(), QStringList("d"));
        QCOMPARE(changes.size(), 6);
    }

    void lockedStoreKeepsAll()
    {
        store->addGroup("front");
        store->setLockWriteAccess(true);
        QCOMPARE(store->addSignal(Signal()) + store->addSignalGroup("x"), -2);
        QVERIFY(!store->delSignal(speed) && !store->delAllSignals(0) &&
                !store->updateSignalGroups({}) && !store->addGroup("x") &&
                !store->delGroup("front") && !store->renameGroup("front", "x") &&
                !store->addNodeToGroup("front", 0) && !store->delUDSService(0, 16));
        store->setLockWriteAccess(false);
        QCOMPARE(of(*store, speed).name, "it's fast");
    }

    void copiedLineKeepsTies()
    {
        const qint32 twin = store->addSignal(makeSignal(1, "twin", of(*store, speed).group, copy));
        tie(*store, 1, 0x2001, twin);
        std::unique_ptr<ObjectDataBase> target = makeStore();
        target->addSignal(makeSignal(0, "own"));
        const qint32 old = target->addSignal(makeSignal(0, "speed", 3));
        QVERIFY(target->copyLineFromDatabase(*store, 0, 1, 0, 0xFFFF));
        QCOMPARE(target->getSignals(0).size(), 3);
        Sub sub;
        QVERIFY(target->getSubIndexData(0, 0x2001, 0, sub));
        const Signal read = of(*target, sub.signalId);
        QCOMPARE(joined(read.name, read.ref, target->getSignalGroups().value(read.group)),
                 QString("twin/%1/motion").arg(old));
        QCOMPARE(joined(of(*target, old).group, of(*target, old).ref), QString("0/0"));
        QVERIFY(target->getSubIndexData(0, 0x2000, 0, sub)); // tied to a signal of another line
        QCOMPARE(sub.signalId, 0);
    }

private:
    static Signal of(const ObjectDataBase &from, qint32 id)
    {
        Signal signal;
        if (!from.getSignalData(id, signal))
            signal.name = "none";
        return signal;
    }

    static void tie(ObjectDataBase &to, quint8 line, quint16 index, qint32 id)
    {
        Sub sub = makeSub("tied", 5, "0");
        sub.signalId = id;
        to.addIndex(line, index, Object());
        to.addSubIndex(line, index, 0, sub);
    }

    StoreFixture files;
    std::unique_ptr<ObjectDataBase> store;
    qint32 speed = 0;
    qint32 copy = 0;
};

QTEST_GUILESS_MAIN(tst_Signals)
#include "tst_signals.moc"
