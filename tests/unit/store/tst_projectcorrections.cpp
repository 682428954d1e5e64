// Corrections of a project that has just been opened, and the modifier file.
#include "store/databasemodifier.h"
#include "store/projectconverter.h"
#include "tests/fixtures/problemrecorder.h"
#include "tests/fixtures/storefixture.h"

using Settings = QMap<QString, QString>;

class tst_ProjectCorrections : public StoreTest
{
    Q_OBJECT

private slots:
    void init() { store = makeStore(); }

    void correctsCANopenSettings_data()
    {
        columns<Settings, Settings>("before", "after");
        const auto row = [](const char *name, const Settings &before, const Settings &after) {
            QTest::newRow(name) << before << after;
        };
        // clang-format off
        row("master_list", {{"co_ml_ms", "1,0"}, {"nmtmaster", "0"}}, {{"co_ml_ms", ""}, {"nmtmaster", "1,0"}});
        row("master_value", {{"co_ml_ms", "1"}, {"nmtmaster", "0"}}, {{"co_ml_ms", "1"}, {"nmtmaster", "0"}});
        row("server", {{"usdo_server_cnt", "2"}}, {{"usdo_server_enabled", "1"}, {"usdo_client_enabled", ""}});
        row("client", {{"usdo_client_cnt", "255"}, {"usdo_client_enabled", "256"}}, {{"usdo_client_enabled", "1"}});
        row("beyond_a_byte", {{"usdo_server_cnt", "256"}, {"usdo_server_enabled", "0"}},
            {{"usdo_server_enabled", "0"}});
        // clang-format on
    }
    void correctsCANopenSettings()
    {
        const auto [before, after] = fetchRow<Settings, Settings>();
        for (auto entry = before.cbegin(); entry != before.cend(); ++entry)
            store->setGeneralSettingsValue(entry.key(), entry.value());
        ProjectConverter converter;
        converter.setDatabase(store.get());
        QVERIFY(converter.doCANopenCorrection());
        for (auto entry = after.cbegin(); entry != after.cend(); ++entry)
            QCOMPARE(store->getGeneralSettingsValue(entry.key()), entry.value());
    }

    void appliesModifierFile()
    {
        store->setLockWriteAccess(true);
        const auto applied = [this](const QByteArray &text) { // the values in both stores
            store->setGeneralSettingsValue("key", "");
            store->setJ1939SettingsValue("key", "");
            return apply(text) ? store->getGeneralSettingsValue("key") + '|' +
                                     store->getJ1939SettingsValue("key")
                               : "failed";
        };
        QCOMPARE(applied("GeneralSettings:key:1\nJ1939Settings:key:2"), "1|2");
        QCOMPARE(applied("\r\nGeneralSettings:key:1\r\n"), "1|");
        QCOMPARE(applied("GeneralSettings:key:\xC3\xBC\n"), "\u00FC|");
        QCOMPARE(applied("GeneralSettings:key:1\nGeneralSettings:key:2"), "2|");
        QCOMPARE(applied("GeneralSettings:key:C:/x.h\n"), "|"); // four fields
        QCOMPARE(applied("#GeneralSettings:key:1\n #GeneralSettings:key:1\n"), "|");
        QCOMPARE(applied(QByteArrayLiteral("\0\xFF:\x80:\n::\nJ1939Settings:key:3")), "|3");
    }

    void tellsOfLinesWithoutEffect_data()
    {
        columns<QByteArray, QString>("text", "told");
        // clang-format off
        const auto row = [](const char *name, const QByteArray &text, const QString &told) {
            QTest::newRow(name) << text << told;
        };
        const QString noGroup = " is no group of settings here, and the line is passed over: a modifier file sets "
                                "GeneralSettings and J1939Settings, and nothing else";
        const QString sets = " sets nothing and is passed over: write <group>:<key>:<value>, or begin the "
                             "line with # to make it a comment";
        row("nothing_to_tell", " # x\n#\n\t\r\nGeneralSettings:key:\nJ1939Settings:key:'\n", "");
        row("no_colon", "\nGeneralSettings", "2: \"GeneralSettings\"" + sets);
        row("one_colon", "GeneralSettings:key=1\x1b", "1: \"GeneralSettings:key=1\\x1b\"" + sets);
        row("three_colons", "GeneralSettings:key:C:/x", "1: \"GeneralSettings:key:C:/x\" has more than two "
            "colons and is passed over: neither a key nor a value can hold one");
        row("misspelt_group", "GeneralSetting:key:1",
            "1: \"GeneralSetting\"" + noGroup + "; did you mean \"GeneralSettings\"");
        row("another_group", "MiscSettings:key:1",
            "1: \"MiscSettings\"" + noGroup);
        row("apostrophe", "GeneralSettings:key:'", "1: \"'\" cannot be stored, and \"key\" stays as it is: "
            "a value of GeneralSettings cannot hold an apostrophe");
        // clang-format on
    }
    void tellsOfLinesWithoutEffect()
    {
        QFETCH(QByteArray, text);
        QFETCH(QString, told);
        const ProblemRecorder recorder;
        QVERIFY(apply(text));
        const QString start = fixture.path("mod.txt:") + told.left(1) + ": warning:";
        QCOMPARE(recorder.lines.join('|'),
                 told.isEmpty() ? told : start + told.mid(2) + " [modifier-line]");
    }

    void passesOverLongLines()
    {
        const ProblemRecorder recorder;
        const QByteArray longest = QByteArray("GeneralSettings:a:").leftJustified(1 << 20, 'x');
        for (const QByteArray &end : {QByteArray(), QByteArray(1 << 20, 'x')}) {
            const QByteArray tooLong = QByteArray(longest).replace(":a:", ":b:") + 'x' + end;
            QVERIFY(apply(longest + "\n\n" + tooLong + "\nJ1939Settings:key:3\n" + tooLong));
        }
        QCOMPARE(store->getGeneralSettingsValue("a").size(), (1 << 20) - 18);
        QCOMPARE(store->getGeneralSettingsValue("b"), "");
        QCOMPARE(store->getJ1939SettingsValue("key"), "3");
        const QString text =
            ": warning: the line is longer than 1 MiB and is passed over [line-too-long]";
        QCOMPARE(recorder.lines.mid(2),
                 (QStringList{fixture.path("mod.txt:3") + text, fixture.path("mod.txt:5") + text}));
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
};

QTEST_GUILESS_MAIN(tst_ProjectCorrections)
#include "tst_projectcorrections.moc"
