// Corrections of a project that has just been opened, and the modifier file.
#include "store/databasemodifier.h"
#include "store/projectconverter.h"
#include "tests/unit/store/storefixture.h"

#include <QFile>
#include <QTest>

using Settings = QMap<QString, QString>;

class tst_ProjectCorrections : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        store = std::make_unique<ObjectDataBase>();
        QVERIFY(store->createNewDataBase());
    }

    void correctsCANopenSettings_data()
    {
        QTest::addColumn<Settings>("before");
        QTest::addColumn<Settings>("after");
        QTest::newRow("master_list") << Settings{{"co_ml_ms", "1,0"}, {"nmtmaster", "0"}}
                                     << Settings{{"co_ml_ms", ""}, {"nmtmaster", "1,0"}};
        QTest::newRow("master_value") << Settings{{"co_ml_ms", "1"}, {"nmtmaster", "0"}}
                                      << Settings{{"co_ml_ms", "1"}, {"nmtmaster", "0"}};
        QTest::newRow("counted_server")
            << Settings{{"usdo_server_cnt", "2"}}
            << Settings{{"usdo_server_enabled", "1"}, {"usdo_client_enabled", ""}};
        QTest::newRow("counted_client")
            << Settings{{"usdo_client_cnt", "255"}, {"usdo_client_enabled", "256"}}
            << Settings{{"usdo_client_enabled", "1"}};
        QTest::newRow("count_beyond_a_byte")
            << Settings{{"usdo_server_cnt", "256"}, {"usdo_server_enabled", "0"}}
            << Settings{{"usdo_server_enabled", "0"}};
    }
    void correctsCANopenSettings()
    {
        QFETCH(Settings, before);
        QFETCH(Settings, after);
        for (auto entry = before.cbegin(); entry != before.cend(); ++entry)
            store->setGeneralSettingsValue(entry.key(), entry.value());
        ProjectConverter converter;
        converter.setDatabase(store.get());
        QVERIFY(converter.doCANopenCorrection());
        for (auto entry = after.cbegin(); entry != after.cend(); ++entry)
            QCOMPARE(store->getGeneralSettingsValue(entry.key()), entry.value());
    }

    void appliesModifierFile_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("general");
        QTest::addColumn<QString>("j1939");
        QTest::newRow("both_stores")
            << QByteArray("GeneralSettings:key:1\nJ1939Settings:key:2") << "1"
            << "2";
        QTest::newRow("dos_line_ends") << QByteArray("\r\nGeneralSettings:key:1\r\n") << "1"
                                       << "";
        QTest::newRow("utf8") << QByteArray("GeneralSettings:key:\xC3\xBC\n") << "\u00FC"
                              << "";
        QTest::newRow("last_wins")
            << QByteArray("GeneralSettings:key:1\nGeneralSettings:key:2") << "2"
            << "";
        QTest::newRow("four_fields") << QByteArray("GeneralSettings:key:C:/x.h\n") << ""
                                     << "";
        QTest::newRow("comments") << QByteArray("#GeneralSettings:key:1\n #GeneralSettings:key:1\n")
                                  << ""
                                  << "";
        QTest::newRow("bytes") << QByteArrayLiteral("\0\xFF:\x80:\n::\nJ1939Settings:key:3") << ""
                               << "3";
    }
    void appliesModifierFile()
    {
        QFETCH(QByteArray, text);
        store->setLockWriteAccess(true);
        QVERIFY(apply(text));
        QTEST(store->getGeneralSettingsValue(QStringLiteral("key")), "general");
        QTEST(store->getJ1939SettingsValue(QStringLiteral("key")), "j1939");
    }

    void otherStoresAreOutOfReach()
    {
        QVERIFY(apply("MiscSettings:generateML:true\n"));
        QVERIFY(!store->existMiscSettingsValue(QStringLiteral("generateML")));
    }

    void refusesWhatIsNoFile()
    {
        DatabaseModifier modifier(store.get());
        QVERIFY(!modifier.setModifierFile(fixture.path(QStringLiteral("none"))));
        QVERIFY(!modifier.setModifierFile(fixture.path(QString())));
        QVERIFY(!modifier.getLastError().isEmpty());
        QVERIFY(!modifier.applyModifierFile());
    }

private:
    bool apply(const QByteArray &text)
    {
        QFile file(fixture.path(QStringLiteral("mod.txt")));
        if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
            return false;
        file.close();
        DatabaseModifier modifier(store.get());
        return modifier.setModifierFile(file.fileName()) && modifier.applyModifierFile();
    }

    StoreFixture fixture;
    std::unique_ptr<ObjectDataBase> store;
};

QTEST_GUILESS_MAIN(tst_ProjectCorrections)
#include "tst_projectcorrections.moc"
