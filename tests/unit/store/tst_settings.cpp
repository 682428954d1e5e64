// The five settings stores and their values by line.
#include "storefixture.h"

#include <QSignalSpy>
#include <QtTest>

class TestSettings : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void generalElements_data();
    void generalElements();
    void j1939ElementBeyondTheEnd();
    void identicalValueIsNoChange();
    void apostrophes();
    void removedLineTakesItsElement();
    void newLineCopiesHighestLine();
    void listsAreCutToTheLines();
    void descriptionLines();

private:
    StoreFixture fixture;
    std::unique_ptr<ObjectDataBase> store;
};

void TestSettings::init()
{
    store = std::make_unique<ObjectDataBase>();
    QVERIFY(store->createNewDataBase());
}

void TestSettings::generalElements_data()
{
    QTest::addColumn<QString>("list");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("element");
    QTest::addColumn<QString>("afterSetting9");
    QTest::newRow("empty") << "" << 0 << ""
                           << "9";
    QTest::newRow("inside") << "1,2" << 1 << "2"
                            << "1,9";
    QTest::newRow("beyond gives last") << "1,2" << 3 << "2"
                                       << "1,2, ,9";
    QTest::newRow("gap is a blank") << "1" << 3 << "1"
                                    << "1, , ,9";
    QTest::newRow("empty element") << "1,,3" << 1 << ""
                                   << "1,9,3";
}

void TestSettings::generalElements()
{
    QFETCH(QString, list);
    QFETCH(int, line);
    const QString key = QStringLiteral("some_key");
    store->setGeneralSettingsValue(key, list);
    QTEST(store->getGeneralSettingsValueLine(key, quint8(line)), "element");
    QVERIFY(store->setGeneralSettingsValueLine(key, QStringLiteral("9"), quint8(line)));
    QTEST(store->getGeneralSettingsValue(key), "afterSetting9");
}

void TestSettings::j1939ElementBeyondTheEnd()
{
    store->setJ1939SettingsValue(QStringLiteral("function"), QStringLiteral("1,2"));
    QCOMPARE(store->getJ1939SettingsValueLine(QStringLiteral("function"), 1), QStringLiteral("2"));
    QCOMPARE(store->getJ1939SettingsValueLine(QStringLiteral("function"), 3),
             QStringLiteral("1,2"));
}

void TestSettings::identicalValueIsNoChange()
{
    store->setGeneralSettingsValue(QStringLiteral("k"), QStringLiteral("v"));
    QSignalSpy spy(store.get(), &ObjectDataBase::updateNotify);
    QVERIFY(store->setGeneralSettingsValue(QStringLiteral("k"), QStringLiteral("v")));
    QCOMPARE(spy.count(), 0);
    QVERIFY(store->setGeneralSettingsValue(QStringLiteral("k"), QStringLiteral("w")));
    QCOMPARE(spy.count(), 1);
    const auto change = spy.first().first().value<ObjectDataBase::ChangeSet>();
    QCOMPARE(int(change.kind), 9);
}

void TestSettings::apostrophes()
{
    const QString key = QStringLiteral("k");
    const QString value = QStringLiteral("it's");
    QVERIFY(!store->setGeneralSettingsValue(key, value));
    QVERIFY(!store->setEnergyBusSettingsValue(key, value));
    QVERIFY(!store->existGeneralSettingsValue(key));
    QVERIFY(store->setDescriptionSettingsValue(key, value));
    QVERIFY(store->setMiscSettingsValue(key, value));
    QVERIFY(store->setJ1939SettingsValue(key, value));
    QCOMPARE(store->getMiscSettingsValue(key), value);
}

void TestSettings::removedLineTakesItsElement()
{
    store->setGeneralSettingsValue(QStringLiteral("list"), QStringLiteral("a,b,c"));
    store->setGeneralSettingsValue(QStringLiteral("single"), QStringLiteral("x"));
    store->setGeneralSettingsValue(QStringLiteral("line1type"), QStringLiteral("1"));
    store->removeNodeInGeneralSettings(1);
    QCOMPARE(store->getGeneralSettingsValue(QStringLiteral("list")), QStringLiteral("a,c"));
    QCOMPARE(store->getGeneralSettingsValue(QStringLiteral("single")), QStringLiteral("x"));
    QVERIFY(!store->existGeneralSettingsValue(QStringLiteral("line1type")));
    store->removeNodeInGeneralSettings(0);
    QCOMPARE(store->getGeneralSettingsValue(QStringLiteral("single")), QString());
}

void TestSettings::newLineCopiesHighestLine()
{
    store->setGeneralSettingsValue(QStringLiteral("co_node_id"), QStringLiteral("5"));
    store->addNode(1, {});
    QCOMPARE(store->getGeneralSettingsValue(QStringLiteral("co_node_id")), QStringLiteral("5,5"));
}

void TestSettings::listsAreCutToTheLines()
{
    store->setGeneralSettingsValue(QStringLiteral("co_node_id"), QStringLiteral("1,2,3"));
    store->setGeneralSettingsValue(QStringLiteral("hw_defines"), QStringLiteral("1,2,3"));
    store->fixGeneralsettingsLineCount();
    QCOMPARE(store->getGeneralSettingsValue(QStringLiteral("co_node_id")), QStringLiteral("1"));
    QCOMPARE(store->getGeneralSettingsValue(QStringLiteral("hw_defines")), QStringLiteral("1,2,3"));
}

void TestSettings::descriptionLines()
{
    store->setDescriptionSettingsValue(QStringLiteral("Comment"), QStringLiteral("zero"));
    store->setDescriptionSettingsLine(2);
    QVERIFY(!store->existDescriptionSettingsValue(QStringLiteral("Comment")));
    QVERIFY(store->setDescriptionSettingsValue(QStringLiteral("Comment"), QStringLiteral("x")));
    QVERIFY(store->addDescriptionSettingsValue(QStringLiteral("Comment"), QStringLiteral("y")));
    QCOMPARE(store->getDescriptionSettingsValue(QStringLiteral("Comment")), QStringLiteral("x"));
    QVERIFY(store->existDescriptionSettingsValue(QStringLiteral("Comment_2")));
    QVERIFY(store->getDescriptionSettingsKeys().contains(QStringLiteral("Comment_2")));
    store->setDescriptionSettingsLine(0);
    QCOMPARE(store->getDescriptionSettingsValue(QStringLiteral("Comment")), QStringLiteral("zero"));

    store->addDefaultDescriptionSettings(3);
    QCOMPARE(store->getDescriptionSettingsValue(QStringLiteral("OrderCode")),
             QStringLiteral("0815-BUY-ME"));
    QVERIFY(store->getDescriptionSettingsKeys().contains(QStringLiteral("BaudRate_125_3")));
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"
