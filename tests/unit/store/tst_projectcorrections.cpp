// Corrections of a project that has just been opened, and the modifier file.
#include "store/databasemodifier.h"
#include "store/projectconverter.h"
#include "tests/fixtures/storefixture.h"

using Settings = QMap<QString, QString>;

class tst_ProjectCorrections : public QObject
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void correctsCANopenSettings_data()
    {
        columns<Settings, Settings>("before", "after");
        // clang-format off
        QTest::newRow("master_list") << Settings{{"co_ml_ms", "1,0"}, {"nmtmaster", "0"}} << Settings{{"co_ml_ms", ""}, {"nmtmaster", "1,0"}};
        QTest::newRow("master_value") << Settings{{"co_ml_ms", "1"}, {"nmtmaster", "0"}} << Settings{{"co_ml_ms", "1"}, {"nmtmaster", "0"}};
        QTest::newRow("counted_server") << Settings{{"usdo_server_cnt", "2"}} << Settings{{"usdo_server_enabled", "1"}, {"usdo_client_enabled", ""}};
        QTest::newRow("counted_client") << Settings{{"usdo_client_cnt", "255"}, {"usdo_client_enabled", "256"}} << Settings{{"usdo_client_enabled", "1"}};
        QTest::newRow("count_beyond_a_byte") << Settings{{"usdo_server_cnt", "256"}, {"usdo_server_enabled", "0"}} << Settings{{"usdo_server_enabled", "0"}};
        // clang-format on
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
        columns<QByteArray, QString, QString>("text", "general", "j1939");
        const auto row = [](const char *name, const QByteArray &text, const char *general,
                            const char *j1939) { QTest::newRow(name) << text << general << j1939; };
        row("both_stores", "GeneralSettings:key:1\nJ1939Settings:key:2", "1", "2");
        row("dos_line_ends", "\r\nGeneralSettings:key:1\r\n", "1", "");
        row("utf8", "GeneralSettings:key:\xC3\xBC\n", "\u00FC", "");
        row("last_wins", "GeneralSettings:key:1\nGeneralSettings:key:2", "2", "");
        row("four_fields", "GeneralSettings:key:C:/x.h\n", "", "");
        row("comments", "#GeneralSettings:key:1\n #GeneralSettings:key:1\n", "", "");
        row("bytes", QByteArrayLiteral("\0\xFF:\x80:\n::\nJ1939Settings:key:3"), "", "3");
    }
    void appliesModifierFile()
    {
        QFETCH(QByteArray, text);
        store->setLockWriteAccess(true);
        QVERIFY(apply(text));
        QTEST(store->getGeneralSettingsValue("key"), "general");
        QTEST(store->getJ1939SettingsValue("key"), "j1939");
    }

    void otherStoresAreOutOfReach()
    {
        QVERIFY(apply("MiscSettings:generateML:true\n"));
        QVERIFY(!store->existMiscSettingsValue("generateML"));
    }

    void refusesWhatIsNoFile()
    {
        DatabaseModifier modifier(store.get());
        QVERIFY(!modifier.setModifierFile(fixture.path("none")));
        QVERIFY(!modifier.setModifierFile(fixture.path()));
        QVERIFY(!modifier.getLastError().isEmpty());
        QVERIFY(!modifier.applyModifierFile());
    }

private:
    bool apply(const QByteArray &text)
    {
        DatabaseModifier modifier(store.get());
        return writeFile(fixture.path("mod.txt"), text) &&
               modifier.setModifierFile(fixture.path("mod.txt")) && modifier.applyModifierFile();
    }

    StoreFixture fixture;
    std::unique_ptr<ObjectDataBase> store;
};

QTEST_GUILESS_MAIN(tst_ProjectCorrections)
#include "tst_projectcorrections.moc"
