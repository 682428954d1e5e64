// The five settings stores and their values by line.
#include "tests/fixtures/storefixture.h"

class TestSettings : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void generalElements()
    {
        // The element of a line, and the list once that element was set to 9.
        const auto elements = [this](const QString &list, quint8 line) {
            store->setGeneralSettingsValue("some_key", list);
            const QString element = store->getGeneralSettingsValueLine("some_key", line);
            store->setGeneralSettingsValueLine("some_key", "9", line);
            return element + '|' + general("some_key");
        };
        QCOMPARE(elements("", 0), "|9");
        QCOMPARE(elements("1,2", 1), "2|1,9");
        QCOMPARE(elements("1,2", 3), "2|1,2, ,9"); // beyond the end the last one, and blanks
        QCOMPARE(elements("1", 3), "1|1, , ,9");
        QCOMPARE(elements("1,,3", 1), "|1,9,3");
        store->setJ1939SettingsValue("function", "1,2");
        QCOMPARE(store->getJ1939SettingsValueLine("function", 1), "2");
        QCOMPARE(store->getJ1939SettingsValueLine("function", 3), "1,2"); // beyond the end all
    }

    void identicalValueIsNoChange()
    {
        store->setGeneralSettingsValue("k", "v");
        QSignalSpy spy(store.get(), &ObjectDataBase::updateNotify);
        QVERIFY(store->setGeneralSettingsValue("k", "v"));
        QCOMPARE(spy.count(), 0);
        QVERIFY(store->setGeneralSettingsValue("k", "w"));
        QCOMPARE(spy.count(), 1);
        QCOMPARE(int(spy.first().first().value<ObjectDataBase::ChangeSet>().kind), 9);
    }

    void apostrophes()
    {
        QVERIFY(!store->setGeneralSettingsValue("k", "it's"));
        QVERIFY(!store->setEnergyBusSettingsValue("k", "it's"));
        QVERIFY(!store->existGeneralSettingsValue("k"));
        QVERIFY(store->setDescriptionSettingsValue("k", "it's"));
        QVERIFY(store->setMiscSettingsValue("k", "it's"));
        QVERIFY(store->setJ1939SettingsValue("k", "it's"));
        QCOMPARE(store->getMiscSettingsValue("k"), "it's");
    }

    void removedLineTakesItsElement()
    {
        store->setGeneralSettingsValue("list", "a,b,c");
        store->setGeneralSettingsValue("single", "x");
        store->setGeneralSettingsValue("line1type", "1");
        store->removeNodeInGeneralSettings(1);
        QCOMPARE(general("list"), "a,c");
        QCOMPARE(general("single"), "x");
        QVERIFY(!store->existGeneralSettingsValue("line1type"));
        store->removeNodeInGeneralSettings(0);
        QCOMPARE(general("single"), "");
    }

    void listsFollowTheLines()
    {
        store->setGeneralSettingsValue("co_node_id", "5");
        store->addNode(1, {});
        QCOMPARE(general("co_node_id"), "5,5"); // the new line copies the highest one
        store->setGeneralSettingsValue("co_node_id", "1,2,3");
        store->setGeneralSettingsValue("hw_defines", "1,2,3");
        store->fixGeneralsettingsLineCount();
        QCOMPARE(general("co_node_id"), "1,2");
        QCOMPARE(general("hw_defines"), "1,2,3");
    }

    void descriptionLines()
    {
        store->setDescriptionSettingsValue("Comment", "zero");
        store->setDescriptionSettingsLine(2);
        QVERIFY(!store->existDescriptionSettingsValue("Comment"));
        QVERIFY(store->setDescriptionSettingsValue("Comment", "x"));
        QVERIFY(store->addDescriptionSettingsValue("Comment", "y"));
        QCOMPARE(store->getDescriptionSettingsValue("Comment"), "x");
        QVERIFY(store->existDescriptionSettingsValue("Comment_2"));
        QCOMPARE(store->getDescriptionSettingsValue("Comment_2"), "");
        QVERIFY(store->getDescriptionSettingsKeys().contains("Comment_2"));
        store->setDescriptionSettingsLine(0);
        QCOMPARE(store->getDescriptionSettingsValue("Comment"), "zero");

        store->addDefaultDescriptionSettings(3);
        QCOMPARE(store->getDescriptionSettingsValue("OrderCode"), "0815-BUY-ME");
        QVERIFY(store->getDescriptionSettingsKeys().contains("BaudRate_125_3"));
    }

private:
    QString general(const QString &key) const { return store->getGeneralSettingsValue(key); }
};

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
